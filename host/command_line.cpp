#include "command_line.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/win32/owners.h"
#include "wide_text.h"

namespace WattleafHost {

std::vector<std::string> CommandLineArguments() {
  int count = 0;
  wchar_t** texts = CommandLineToArgvW(GetCommandLineW(), &count);
  const Zq::Gantry::Platform::UniqueLocalBlock block(texts);
  std::vector<std::string> arguments;
  for (int i = 1; texts != nullptr && i < count; ++i) arguments.push_back(ToUtf8(texts[i]));
  return arguments;
}

}  // namespace WattleafHost
