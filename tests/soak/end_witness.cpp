// A library that reports when it is detached. Loaded before the service, so that it is detached
// after it: its line shows that the service did not crash on the way.

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason == DLL_PROCESS_DETACH) {
    static constexpr char kLine[] = "the witness is detached\n";
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), kLine, sizeof(kLine) - 1, &written, nullptr);
  }
  return TRUE;
}
