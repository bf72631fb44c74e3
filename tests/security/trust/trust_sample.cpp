// A library for the build to sign and for tests to judge; nobody loads it.

extern "C" __declspec(dllexport) int WattleafTrustSample() { return 1; }
