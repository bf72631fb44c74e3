#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The sample files that were decrypted last, so that the same text need not be decrypted again. A
/// daily pass reads a file up to three times: as its own day and as either neighbour of another,
/// with at most two other files in between.
class RecentSamples {
 public:
  static constexpr std::size_t kMostFiles = 3;
  /// Only one text that is longer is kept. A day of one sample a minute has 0.3 MiB; this is one
  /// sample every five seconds. With the plain copies, at most 126 MiB are kept.
  static constexpr std::size_t kLongTextBytes = std::size_t{4} * 1024 * 1024;

  /// What Read finds.
  struct Samples {
    /// The text of a file that is not kept; empty if it cannot be read whole.
    std::string encrypted{};
    /// The content of the plain copy, if a file with exactly this text is kept. Valid until the
    /// next Keep.
    const std::string* plainCopy = nullptr;
  };
  /// Reads a file of `length` bytes from its start. A text that is kept is only compared, piece by
  /// piece, so that a long one is not in memory twice.
  [[nodiscard]] Samples Read(std::FILE* file, std::size_t length) const;

  /// Keeps a file in place of the oldest one, and a long one also in place of another long one.
  void Keep(std::string encrypted, std::string plainCopy);

 private:
  struct File {
    std::string encrypted;
    std::string plainCopy;
  };
  std::vector<File> files_;  ///< the oldest first
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
