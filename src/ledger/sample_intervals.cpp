#include "ledger/sample_intervals.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void SampleIntervals::Take(JsonRow row) {
  const bool endsInterval = count_ > 1 && last_.isCounted;
  DaySample sample{IsCountedSample(row), SamplePowerWatts(row), std::nullopt};
  const char* const time = SampleTimeText(row);
  unreadTime_.reset();
  if (sample.isCounted || endsInterval || count_ == 0) {
    sample.time = TryReadTime(times_, time);
  } else if (time != nullptr) {
    unreadTime_ = time;
  }
  if (endsInterval) TakeInterval(last_, sample);
  if (count_ == 0) first_ = sample;
  last_ = sample;
  ++count_;
}

DaySample SampleIntervals::ReadLast() {
  DaySample last = last_;
  if (unreadTime_) last.time = TryReadTime(times_, unreadTime_->c_str());
  return last;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
