// Functions of msvcp140.dll that throw. In Wine 8 they are stubs, which end the program.

#include <functional>
#include <iterator>
#include <regex>
#include <system_error>

// Under the names that the headers declare.
[[noreturn]] void BadFunctionCall() __asm__("?_Xbad_function_call@std@@YAXXZ");
[[noreturn]] void RegexError(std::regex_constants::error_type code) __asm__(
    "?_Xregex_error@std@@YAXW4error_type@regex_constants@1@@Z");
[[noreturn]] void ThreadError(int code) __asm__("?_Throw_Cpp_error@std@@YAXH@Z");

void BadFunctionCall() { throw std::bad_function_call(); }
void RegexError(std::regex_constants::error_type code) { throw std::regex_error(code); }

void ThreadError(int code) {
  // In the order of the library's own codes.
  static constexpr std::errc kCodes[] = {std::errc::device_or_resource_busy,
                                         std::errc::invalid_argument,
                                         std::errc::no_such_process,
                                         std::errc::not_enough_memory,
                                         std::errc::operation_not_permitted,
                                         std::errc::resource_deadlock_would_occur,
                                         std::errc::resource_unavailable_try_again};
  const bool known = code >= 0 && code < static_cast<int>(std::size(kCodes));
  throw std::system_error(std::make_error_code(known ? kCodes[code] : std::errc::invalid_argument));
}
