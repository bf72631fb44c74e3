#include "command_line/console.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <utility>

#include "base/utf8_text.h"
#include "command_line/places.h"
#include "platform/win32/unique_resource.h"

namespace WattleafHost {

namespace {

constexpr std::chrono::seconds kPlainInterval{10};

bool IsTerminal(DWORD standardHandle) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(standardHandle), &mode) != 0;
}

/// The stream to the standard output that this program was started with.
std::FILE*& OwnOutput() {
  static std::FILE* file = stdout;
  return file;
}

/// Descriptor of a file of the C library: empty is -1.
struct DescriptorPolicy {
  using Type = int;
  static Type Empty() { return -1; }
  static void Release(Type file) { _close(file); }
};
using UniqueDescriptor = Zq::Gantry::Platform::UniqueResource<DescriptorPolicy>;

/// Empty if the log goes to standard error or its file cannot be opened.
UniqueDescriptor OpenLogForAppending() {
  const std::wstring path = Zq::Gantry::Server::Services::Wattleaf::FromUtf8(LogFile());
  UniqueDescriptor file;
  if (path.empty()) return file;
  const int mode = _O_WRONLY | _O_CREAT | _O_APPEND | _O_BINARY;
  const int failed = _wsopen_s(file.out(), path.c_str(), mode, _SH_DENYNO, _S_IREAD | _S_IWRITE);
  return failed == 0 ? std::move(file) : UniqueDescriptor();
}

}  // namespace

void PrepareConsole() {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
}

void UseSystemZone() {
  // The C library reads the variable TZ as a POSIX text, in which "Europe/Berlin" is UTC, and days
  // would begin at another hour than in Windows. Without TZ it uses the system's zone. It reads TZ
  // once, so this call comes before the first local time.
  _putenv("TZ=");
  _tzset();
}

void ReserveStandardOutput() {
  std::fflush(stdout);
  const int kept = _dup(_fileno(stdout));
  if (kept < 0) return;
  OwnOutput() = _fdopen(kept, "wb");
  const UniqueDescriptor log = OpenLogForAppending();
  _dup2(log ? log.get() : _fileno(stderr), _fileno(stdout));
  // With a buffer, the service's lines would follow log lines that are written after them.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
}

void Print(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), OwnOutput());
  std::fflush(OwnOutput());
}

void Notice(const std::string& text) {
  const std::string line = "wattleaf_host: " + text + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
}

ProgressLine::ProgressLine(std::string text)
    : text_(std::move(text)),
      visible_(IsTerminal(STD_ERROR_HANDLE)),
      nextPlainLine_(kPlainInterval) {
  Update(std::chrono::seconds(0));
}

ProgressLine::~ProgressLine() {
  if (!visible_) return;
  std::fprintf(stderr, "\r%*s\r", static_cast<int>(text_.size()) + 12, "");
  std::fflush(stderr);
}

void ProgressLine::Update(std::chrono::seconds elapsed) {
  if (!visible_) {
    if (elapsed >= nextPlainLine_) {
      Notice(text_ + ": " + std::to_string(elapsed.count()) + " s");
      nextPlainLine_ = elapsed + kPlainInterval;
    }
    return;
  }
  std::fprintf(stderr, "\r%s: %lld s", text_.c_str(), static_cast<long long>(elapsed.count()));
  std::fflush(stderr);
}

}  // namespace WattleafHost
