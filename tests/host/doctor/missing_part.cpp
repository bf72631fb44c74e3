// A library that the collector needs and that is not installed on the notebook.
extern "C" __declspec(dllexport) int MissingPart() { return 1; }
