#pragma once

#include <string>
#include <utility>
#include <vector>

#include "wattleaf_export.h"

namespace Zq::Gantry::Server::Services {

/// Small helpers of the checks on paths and arguments. Stateless; from any thread.
class WATTLEAF_API UtilHelper {
 public:
  UtilHelper() = delete;

  /// `filePath` with its variables expanded, absolute and normalised. The variables are those of
  /// the calling client on a thread that serves a remote procedure call, and those of this process
  /// otherwise. Empty for a null path, and where the expanded or the full path takes more than 260
  /// characters with its terminator. Failures are logged for `component`.
  static std::wstring GetFullExpandedPath(const wchar_t* filePath, const wchar_t* component);

  /// Whether `text` starts with `prefix`, without regard to case; true for an empty prefix.
  static bool BeginsWith(const std::wstring& text, const std::wstring& prefix);

  /// An argument and its name.
  using NamedArgument = std::pair<const void*, std::string>;

  /// Whether one of the arguments is null; each that is gets a warning of its own for `component`.
  /// The list is consumed: it comes back empty.
  static bool NullChecker(std::vector<NamedArgument>& arguments, const wchar_t* component);
};

}  // namespace Zq::Gantry::Server::Services
