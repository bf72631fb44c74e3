#pragma once

#include <cstddef>
#include <string>

namespace WattleafHost {

/// What became of one day's sample file when it was read.
enum class SampleFileState {
  kAbsent,
  kLeftOut,       ///< a link, a folder or the like in its place; see SampleFile::leftOut
  kNotDecrypted,  ///< it is not what the collector writes on this machine
  kNoList,        ///< decrypted, but no JSON list
  kRead,
};

struct SampleFile {
  std::string date;  ///< "2026-11-22"
  SampleFileState state = SampleFileState::kAbsent;
  std::string leftOut;      ///< what is in its place: "a link"; otherwise empty
  std::size_t samples = 0;  ///< elements of the list
  /// The samples are those of a plain copy that a broken-off pass left, since there is no file that
  /// can be decrypted.
  bool isLeftoverCopy = false;
};

/// The state in words: "no file", "480 samples".
[[nodiscard]] std::string SampleFileText(const SampleFile& file);

}  // namespace WattleafHost
