// A library that the build signs and the tests verify; it is never loaded.

extern "C" __declspec(dllexport) int WattleafTrustSample() { return 1; }
