#include "console.h"

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

#include "places.h"
#include "wide_text.h"

namespace WattleafHost {

namespace {

constexpr std::chrono::seconds kPlainInterval{10};

bool IsTerminal(DWORD standardHandle) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(standardHandle), &mode) != 0;
}

/// Standard output as this program was given it.
std::FILE*& OwnOutput() {
  static std::FILE* file = stdout;
  return file;
}

/// Below 0 where the log goes to standard error.
int OpenLogForAppending() {
  const std::wstring path = ToWide(LogFile());
  if (path.empty()) return -1;
  int file = -1;
  const int mode = _O_WRONLY | _O_CREAT | _O_APPEND | _O_BINARY;
  const int failed = _wsopen_s(&file, path.c_str(), mode, _SH_DENYNO, _S_IREAD | _S_IWRITE);
  return failed == 0 ? file : -1;
}

}  // namespace

void PrepareConsole() {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
}

void UseSystemZone() {
  // A TZ variable in the environment would be taken as a POSIX text ("Europe/Berlin" then means
  // UTC), and days would begin at another hour than Windows' own. Without it the C library asks the
  // system. It reads TZ once, so this comes before any local time.
  _putenv("TZ=");
  _tzset();
}

void KeepOutputToOurselves() {
  std::fflush(stdout);
  const int kept = _dup(_fileno(stdout));
  if (kept < 0) return;
  OwnOutput() = _fdopen(kept, "wb");
  const int log = OpenLogForAppending();
  _dup2(log < 0 ? _fileno(stderr) : log, _fileno(stdout));
  if (log >= 0) _close(log);
  // Otherwise its lines would stand behind those that the log gets meanwhile.
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
