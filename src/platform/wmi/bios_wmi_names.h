#pragma once

// The firmware's WMI classes in \\.\root\wmi and their members, spelled as in the firmware: the
// case of the first letter differs between kMethodClass and kInstanceClass on purpose.
//
// One command takes these steps (ZQBiosWmi::ExecuteCommand):
//   1. The input signature of a method of kMethodClass is fetched. The method's name is
//      kMethodPrefix and the size of the output in bytes.
//   2. An instance of kInputClass is filled: kSignMember, kCommandMember, kCommandTypeMember,
//      kSizeMember, kInputMember. It becomes kInputParameter of an instance of the signature.
//   3. The method is called on the one instance of kInstanceClass, by its kPathProperty.
//   4. kOutputParameter of the result has kReturnCodeMember and kDataMember.
namespace Zq::Gantry::Server::Shared::WMI {

inline constexpr wchar_t kBiosNamespace[] = L"\\\\.\\root\\wmi";

inline constexpr wchar_t kMethodClass[] = L"zqqBIntM";     // definition, carries the methods
inline constexpr wchar_t kInstanceClass[] = L"ZqqBIntM";   // its one instance gets the calls
inline constexpr wchar_t kMethodPrefix[] = L"zqqBIOSInt";  // + output size, as in zqqBIOSInt128
inline constexpr wchar_t kPathProperty[] = L"__PATH";      // VT_BSTR
inline constexpr wchar_t kInputParameter[] = L"InData";    // VT_UNKNOWN, a zqqBDataIn instance
inline constexpr wchar_t kOutputParameter[] = L"OutData";  // VT_UNKNOWN

inline constexpr wchar_t kInputClass[] = L"zqqBDataIn";
inline constexpr wchar_t kSignMember[] = L"Sign";                // VT_ARRAY | VT_UI1, "SECU"
inline constexpr wchar_t kCommandMember[] = L"Command";          // VT_I4, 1 reads, 2 writes
inline constexpr wchar_t kCommandTypeMember[] = L"CommandType";  // VT_I4, 0x45
inline constexpr wchar_t kSizeMember[] = L"Size";                // VT_I4, bytes in zqqBData
inline constexpr wchar_t kInputMember[] = L"zqqBData";           // VT_ARRAY | VT_UI1

inline constexpr wchar_t kReturnCodeMember[] = L"rwReturnCode";  // VT_I4
inline constexpr wchar_t kDataMember[] = L"Data";  // VT_ARRAY | VT_UI1, as long as the output

}  // namespace Zq::Gantry::Server::Shared::WMI
