#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

// The files of a notebook before and after a pass, worked out from the description of a pass alone.
// Days are counted back from kToday; a day with samples has the four of SamplesOfDay.
namespace TestSupport {

/// The oldest day that a pass walks over.
inline constexpr int kOldestDay = 210;

/// Energy in watt-hours by day.
using DayEnergies = std::map<int, float>;

/// What a data folder holds. A file that is missing or not whole counts as absent.
struct FolderState {
  std::optional<DayEnergies> ledger;
  std::set<int> samples;
  /// Days with a whole plain copy of their samples.
  std::set<int> copies;
  /// The rows of the 30-day store.
  std::optional<std::vector<std::string>> store;
};

/// All of it as a text, to be compared and printed.
[[nodiscard]] std::string Describe(const FolderState& folder);

/// A machine that was used for months and not in the last twenty days: 185 booked days without
/// samples, twenty days with samples that no pass has seen, one old day with samples that is not
/// booked yet (kLateDay), and one of which only a plain copy is left (kCopiedDay).
[[nodiscard]] FolderState FolderBeforeThePass();
inline constexpr int kUnseenDays = 20;
inline constexpr int kCopiedDay = 24;
inline constexpr int kLateDay = 30;

/// The writes of a pass that do not reach the disk whole.
struct FailedWrites {
  /// Whether the plain copy of the `reading`-th reading of samples, from 1, lacks a part of its
  /// text.
  std::function<bool(int reading)> copy = [](int) { return false; };
  bool ledger = false;
  bool report = false;
  bool store = false;
};

/// What a pass leaves of a folder. `memory` is the ledger of the process, empty before its first
/// pass.
[[nodiscard]] FolderState AfterPass(FolderState folder, DayEnergies& memory,
                                    const FailedWrites& failed = {});

/// How many plain copies a pass writes, if nothing fails.
[[nodiscard]] int CopiesOfAPass(const FolderState& folder);

/// Two samples at noon, and one near each midnight, as JSON.
[[nodiscard]] std::string SamplesOfDay(int back);

/// The report of application energy that the tool writes in each pass.
[[nodiscard]] std::string ReportOfApplications();

}  // namespace TestSupport
