// A collector that the system cannot load where missing_part.cpp's library is not installed.
extern "C" __declspec(dllimport) int MissingPart();
extern "C" __declspec(dllexport) int CreateZQXExportClass() { return MissingPart(); }
