#pragma once

#include <string>
#include <vector>

#include "base/json_rows.h"
#include "days/sample_file.h"
#include "files/data_copy.h"
#include "ledger/day_energy.h"

namespace WattleafHost {

/// Reads the sample files of a copy as the library reads those of the data folder, and notes what
/// became of each. A day may be read again and again.
class SampleDays {
 public:
  /// Borrows the copy, to which the files of the days have been added.
  explicit SampleDays(const DataCopy& copy) : copy_(copy) {}

  /// A reader that borrows this object.
  [[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::DayReader Reader();

  /// One entry for each reading, in order.
  [[nodiscard]] const std::vector<SampleFile>& Files() const { return files_; }

 private:
  bool Read(const Zq::Gantry::Server::Services::Wattleaf::DateTime& day,
            Zq::Gantry::Server::Services::Wattleaf::JsonRowSink& sink);

  const DataCopy& copy_;
  std::vector<SampleFile> files_;
};

}  // namespace WattleafHost
