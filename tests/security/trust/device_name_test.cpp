#include "security/trust/path_rules.h"

#include <gtest/gtest.h>

namespace Zq::Gantry::Security {
namespace {

struct Row {
  const char* label;
  const wchar_t* path;
};

TEST(NamesADevice, IsTrueForPipesAndMailslotsOfThisMachine) {
  const Row rows[] = {
      {"pipe", L"\\\\.\\pipe\\name"},
      {"other case", L"\\\\.\\PiPe\\name"},
      {"slashes", L"//./pipe/name"},
      {"unparsed prefix", L"\\\\?\\pipe\\name"},
      {"prefix of the system's own names", L"\\??\\pipe\\name"},
      {"pipe of several components", L"\\\\.\\pipe\\folder\\name"},
      {"several separators", L"\\\\.\\\\pipe\\\\name"},
      {"the folder of pipes", L"\\\\.\\pipe\\"},
      {"mailslot", L"\\\\.\\mailslot\\name"},
      {"through the global folder", L"\\\\.\\Global\\pipe\\name"},
      {"through the root", L"\\\\?\\GLOBALROOT\\Device\\NamedPipe\\name"},
      {"mailslot through the root", L"\\\\?\\GLOBALROOT\\Device\\Mailslot\\name"},
      {"through the root's names", L"\\\\?\\GLOBALROOT\\??\\pipe\\name"},
      {"through the global names", L"\\\\?\\GLOBALROOT\\GLOBAL??\\pipe\\name"},
      {"through the old names", L"\\\\?\\GLOBALROOT\\DosDevices\\pipe\\name"},
  };
  for (const Row& row : rows) EXPECT_TRUE(NamesADevice(row.path)) << row.label;
}

TEST(NamesADevice, IsTrueForPipesAndMailslotsOfAServer) {
  const Row rows[] = {
      {"pipe", L"\\\\server\\pipe\\name"},
      {"other case", L"\\\\SERVER\\PIPE\\name"},
      {"slashes", L"//server/pipe/name"},
      {"mailslot", L"\\\\server\\mailslot\\name"},
      {"share of pipes", L"\\\\server\\IPC$\\name"},
      {"unparsed prefix", L"\\\\?\\UNC\\server\\pipe\\name"},
      {"device prefix", L"\\\\.\\unc\\server\\pipe\\name"},
      {"through the root", L"\\\\?\\GLOBALROOT\\??\\UNC\\server\\pipe\\name"},
  };
  for (const Row& row : rows) EXPECT_TRUE(NamesADevice(row.path)) << row.label;
}

TEST(NamesADevice, IsTrueForDevicesAndVolumes) {
  const Row rows[] = {
      {"port", L"\\\\.\\COM1"},
      {"null device", L"\\\\.\\NUL"},
      {"console", L"\\\\.\\CONIN$"},
      {"disk", L"\\\\.\\PhysicalDrive0"},
      {"volume", L"\\\\.\\C:"},
      {"volume, unparsed", L"\\\\?\\C:"},
      {"root of a volume", L"\\\\?\\C:\\"},
      {"volume by its number", L"\\\\?\\Volume{00000000-0000-0000-0000-000000000000}"},
      {"device of the root", L"\\\\?\\GLOBALROOT\\Device\\Null"},
      {"no device", L"\\\\.\\"},
      {"no device without end", L"\\\\."},
  };
  for (const Row& row : rows) EXPECT_TRUE(NamesADevice(row.path)) << row.label;
}

TEST(NamesADevice, IsFalseForFilesOnADiskOrAShare) {
  const Row rows[] = {
      {"empty", L""},
      {"separator", L"\\"},
      {"absolute", L"C:\\pipe\\name"},
      {"relative", L"pipe\\name"},
      {"below the current root", L"\\pipe\\name"},
      {"question marks further on", L"\\x??\\pipe\\name"},
      {"unparsed", L"\\\\?\\C:\\folder\\file.dll"},
      {"folder called pipe", L"\\\\?\\C:\\pipe\\file.dll"},
      {"device prefix", L"\\\\.\\C:\\folder\\file.dll"},
      {"volume by its number", L"\\\\?\\Volume{0}\\file.dll"},
      {"volume of the root", L"\\\\?\\GLOBALROOT\\Device\\HarddiskVolume1\\file.dll"},
      {"share", L"\\\\server\\share\\file.dll"},
      {"share, unparsed", L"\\\\?\\UNC\\server\\share\\file.dll"},
      {"share called almost so", L"\\\\server\\pipes\\file.dll"},
      {"share called shorter", L"\\\\server\\pip\\file.dll"},
      {"server called so", L"\\\\pipe\\share\\file.dll"},
      {"folder of a share", L"\\\\server\\share\\pipe\\file.dll"},
      {"hidden share", L"\\\\server\\c$\\file.dll"},
      {"letters beyond ASCII", L"\\\\server\\p\u0131pe\\file.dll"},
  };
  for (const Row& row : rows) EXPECT_FALSE(NamesADevice(row.path)) << row.label;
}

}  // namespace
}  // namespace Zq::Gantry::Security
