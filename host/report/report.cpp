#include "report/report.h"

#include <windows.h>

#include <cstdint>
#include <cstdio>

#include "base/utf8_text.h"
#include "base/wide_file.h"
#include "command_line/console.h"
#include "command_line/places.h"
#include "files/private_folder.h"
#include "files/saved_file.h"
#include "report/report_page.h"
#include "simulated_calls.h"
#include "snapshot/take_snapshot.h"
#include "text/png_data_uri.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

/// Holds the icons until the page is made. A folder of the user's would keep those of programs that
/// were removed long ago.
class IconFolder {
 public:
  IconFolder() : path_(MakePrivateFolder()) {}
  IconFolder(const IconFolder&) = delete;
  IconFolder& operator=(const IconFolder&) = delete;
  ~IconFolder() { RemoveFolderTree(path_); }

  [[nodiscard]] const std::wstring& Path() const { return path_; }

 private:
  const std::wstring path_;
};

/// Empty for a file that cannot be read or is too large for a page.
std::string ReadIcon(const std::string& path) {
  const UniqueFile file = OpenSharedForReading(FromUtf8(path));
  if (!file) return {};
  const auto length = LengthBytes(file.get());
  if (length < 0 || static_cast<std::uint64_t>(length) > kMostIconBytes) return {};
  std::string bytes(static_cast<std::size_t>(length), '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
  return bytes;
}

/// The path as the page's reader can open it: from the drive on.
std::string FullPath(const std::string& path) {
  const std::wstring wide = FromUtf8(path);
  constexpr DWORD kLongestPathChars = 32768;
  std::wstring full(kLongestPathChars, L'\0');
  const DWORD length =
      GetFullPathNameW(wide.c_str(), kLongestPathChars, full.data(), /*filePart=*/nullptr);
  return length == 0 || length >= kLongestPathChars ? path : ToUtf8({full.data(), length});
}

}  // namespace

int Run(const ReportRequest& request, const Options& options) {
  // The library's code is part of this program, so the program's own calls are replaced.
  const Standin::SimulatedCalls simulated(GetModuleHandleW(nullptr), options.simulateCalls);
  const IconFolder icons;
  const Snapshot snapshot = TakeSnapshot({FromUtf8(kDataFolder), options.days, icons.Path()});
  SaveFile(request.output, ReportPage(snapshot, &ReadIcon));
  Print(FullPath(request.output) + "\n");
  return kDone;
}

}  // namespace WattleafHost
