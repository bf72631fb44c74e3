#pragma once

namespace WattleafHost {

// How the program ends.
inline constexpr int kDone = 0;
/// A command gave a status other than 0.
inline constexpr int kCommandFailed = 1;
inline constexpr int kWrongArguments = 2;
/// serve-once: no pass was completed; the commands have been asked nevertheless.
inline constexpr int kNoPass = 3;
/// The library could not be loaded or failed in a way that it must not.
inline constexpr int kNoService = 4;

}  // namespace WattleafHost
