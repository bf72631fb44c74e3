#include "security/access/tool_launch_table.h"

#include "security/access/tool_launch.h"

namespace Zq::Gantry::Security {

namespace {

constexpr const wchar_t* kHarbourDesk = L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa";

}  // namespace

// The columns of a rule: families, allowed when restricted, check of the command line.
const ToolLaunchRules ToolLaunchTable = {
    {L"%windir%\\System32\\regsvr32.exe", {{kHarbourDesk}, true, CheckRegsvr32Arguments}},
    {L"%windir%\\System32\\DISM.exe", {{kHarbourDesk}, true, nullptr}},
    {L"%windir%\\System32\\sfc.exe", {{kHarbourDesk}, true, nullptr}},
    {L"%windir%\\System32\\rundll32.exe", {{kHarbourDesk}, true, CheckRundll32Arguments}},
    {L"%windir%\\System32\\mmc.exe", {{kHarbourDesk}, true, nullptr}},
    {L"%windir%\\System32\\rstrui.exe", {{kHarbourDesk}, true, nullptr}},
};

}  // namespace Zq::Gantry::Security
