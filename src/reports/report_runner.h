#pragma once

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Makes `folder` the current directory of the whole process and leaves it so, then passes
/// `commandLine` to the command interpreter and waits until it ends. Returns the interpreter's exit
/// status: 0 means success, -1 may also mean that the interpreter could not be started. If the
/// directory cannot be entered, the tool runs in the current one; that failure is not reported.
///
/// During the call, programs are not searched for in the current directory of this process or of
/// its children, since ordinary users may write to it.
[[nodiscard]] int RunReportTool(const wchar_t* folder, const char* commandLine);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
