#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "import_patch.h"
#include "security/access/judged_files.h"
#include "security/trust/signer_descriptor.h"

namespace TestSupport {

/// What the system answers about one signature of a file.
struct RecordedSignature {
  LONG answer = 0;                           ///< of WinVerifyTrust
  std::string key;                           ///< in the form of the key lists
  std::wstring subject;                      ///< as CertNameToStrW writes it
  std::vector<std::uint8_t> encodedSubject;  ///< as it stands in the certificate
};

/// One row of attacked_files.json, which make_attacked_files.py writes.
struct AttackedFile {
  std::string name;
  std::string done;                           ///< what was done to the file
  std::vector<RecordedSignature> signatures;  ///< the outer one first
  bool isTrusted = false;                     ///< what IsFileTrusted must decide
  bool isDropbox = false;                     ///< what IsDropboxFileTrusted must decide
  std::string unlike;   ///< if not empty, why this system may answer otherwise
  std::string unasked;  ///< if not empty, why this system must not be asked
};

std::ostream& operator<<(std::ostream& out, const AttackedFile& file);

/// All rows, in the order of the script.
[[nodiscard]] const std::vector<AttackedFile>& AttackedFiles();

/// The path of a file in the folder of the attacked files.
[[nodiscard]] std::wstring AttackedPath(const std::string& name);

/// The one key that these tests list.
[[nodiscard]] const Zq::Gantry::Security::KeyList& ListedKey();

/// What the library decides about a file.
struct Decisions {
  bool isTrusted = false;
  bool isDropbox = false;

  bool operator==(const Decisions&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Decisions& decisions);

/// The decisions when the system gives the recorded answers. With `refusal`, it is the answer for
/// each signature whose recorded answer does not list it.
[[nodiscard]] Decisions DecideByRecord(const AttackedFile& file, std::optional<LONG> refusal = {});

/// What this machine's system says about a file, and what the library decides by it. The machine
/// does not know the authorities of the attacked files: where the system finds a signature intact,
/// the recorded answer takes the place of its answer about the certificate.
struct SystemJudgement {
  std::vector<LONG> answers;  ///< of the system itself, for each signature that was visited
  Zq::Gantry::Security::SignatureList signatures;
  bool isTrusted = false;
};

[[nodiscard]] SystemJudgement JudgeBySystem(const AttackedFile& file);

/// Whether the answer is about the file's bytes, so that the system has to read them to find it,
/// and not about its certificates.
[[nodiscard]] bool IsAboutTheBytes(LONG answer);

}  // namespace TestSupport
