#pragma once

#include <cstddef>
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
  static constexpr std::size_t kLongTextBytes = 4U * 1024 * 1024;

  /// The content of the plain copy for a file with exactly this encrypted text. Null if it is not
  /// kept; otherwise valid until the next Keep.
  [[nodiscard]] const std::string* Find(const std::string& encrypted) const;

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
