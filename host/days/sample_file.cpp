#include "days/sample_file.h"

namespace WattleafHost {

std::string SampleFileText(const SampleFile& file) {
  switch (file.state) {
    case SampleFileState::kAbsent:
      return "no file";
    case SampleFileState::kLeftOut:
      return "not read: " + file.leftOut;
    case SampleFileState::kNotDecrypted:
      return "cannot be decrypted on this machine";
    case SampleFileState::kNoList:
      return "decrypted, but not a list of samples";
    case SampleFileState::kRead:
      return std::to_string(file.samples) + (file.samples == 1 ? " sample" : " samples") +
             (file.isLeftoverCopy ? ", from a plain copy that a broken-off pass left" : "");
  }
  return {};
}

}  // namespace WattleafHost
