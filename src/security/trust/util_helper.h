#pragma once

#include <string>
#include <utility>
#include <vector>

#include "wattleaf_export.h"

namespace Zq::Gantry::Server::Services {

/// Helpers of the checks on paths and arguments. Stateless; any thread may call them.
/// `component` is the name under which they log; it is borrowed for the call.
class WATTLEAF_API UtilHelper {
 public:
  UtilHelper() = delete;

  /// `filePath` with its variables expanded, absolute and normalised. The variables are those of
  /// the calling client on a thread that serves a remote procedure call (that client's token), and
  /// those of this process otherwise. Empty for a null path, if the variables cannot be expanded,
  /// and if the expanded or the full path takes more than 260 characters with its terminator.
  /// Failures are logged as warnings, the result as information.
  [[nodiscard]] static std::wstring GetFullExpandedPath(const wchar_t* filePath,
                                                        const wchar_t* component);

  /// Whether `text` begins with `prefix`, without regard to case; true for an empty prefix.
  [[nodiscard]] static bool BeginsWith(const std::wstring& text, const std::wstring& prefix);

  /// For NullChecker: an argument, which is only compared with null, and the name under which it is
  /// logged.
  using NamedArgument = std::pair<const void*, std::string>;

  /// Whether one of the arguments is null. Logs one warning for each that is, by its name. The list
  /// is empty afterwards.
  [[nodiscard]] static bool NullChecker(std::vector<NamedArgument>& arguments,
                                        const wchar_t* component);
};

}  // namespace Zq::Gantry::Server::Services
