#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "security/trust/signer_descriptor.h"
#include "wattleaf_export.h"

struct _CRYPTOAPI_BLOB;  // CERT_NAME_BLOB of wincrypt.h

namespace Zq::Gantry::Security {

struct VerificationData;  // WINTRUST_DATA with its signature settings: wintrust_layout.h

/// The hash by which security catalogs list a file.
struct FileHash {
  /// As the system computed it (CryptCATAdminCalcHashFromFileHandle2); 32 bytes of SHA-256.
  std::vector<std::uint8_t> bytes;
  /// The same in upper-case hexadecimal, two digits for each byte; empty after a failure.
  std::wstring hexText;
};

/// Who signed a file, and whether the file lies in an allowed place. Stateless: every operation may
/// be called on any thread. Nothing is cached; each call looks anew and blocks until the system
/// answers. Paths are wide C strings.
///
/// A file's signatures come from catalogs, which list its hash, and from the file itself. Each is
/// verified on its own, and has a verdict of the system and the key of its signer. A host trusts a
/// file by both (IsFileTrusted), and by its place (IsPathAllowed). Exceptions propagate, bad_alloc
/// among them, unless stated otherwise.
class WATTLEAF_API ZQAuthenticodeHelper {
 public:
  ZQAuthenticodeHelper() = delete;

  /// Whether the system accepts a signature of the file and the public key of a signature is in
  /// `keys`; the two need not be the same signature. False for a null path or list. Logs one line
  /// with both verdicts, unless the file has no signature or the list no key.
  [[nodiscard]] static bool IsFileTrusted(const wchar_t* path, const KeyList* keys);

  /// Whether the path lies below one of AllowedRootPaths, or below a WindowsApps folder at a
  /// drive's root whose access list gives full control to TrustedInstaller and SYSTEM, even if it
  /// lets in others too. Ordinary users may still be able to write there. A root that cannot be
  /// expanded allows every path. May take more than a second for a WindowsApps folder. Logs each
  /// check that fails.
  [[nodiscard]] static bool IsPathAllowed(const wchar_t* path);

  /// Whether the access list of a file or folder (GetNamedSecurityInfoW) gives full control to
  /// TrustedInstaller and to SYSTEM. Nothing is thrown; an exception inside is logged and gives
  /// false.
  [[nodiscard]] static bool CheckForFullConrolByTrustedInstallAndSystem(const wchar_t* path);

  /// The signatures of both sources (GetSignatures), those from catalogs first.
  [[nodiscard]] static SignatureList GetAllSignatures(const wchar_t* path);

  /// The signatures of one source that the system accepts (WinVerifyTrust), or would accept but for
  /// an expired certificate or an unknown root. Empty for a null path, and for a pipe, a device or
  /// anything else that is known not to be a file on a disk. Throws std::out_of_range for a signer
  /// whose key has no bytes.
  [[nodiscard]] static SignatureList GetSignatures(const wchar_t* path, bool useCatalog);

  /// The signer of the verification in progress; an empty record if it cannot be reached.
  /// `stateData` is the open state handle of WinVerifyTrust; it stays the caller's.
  [[nodiscard]] static SignerDescriptor GetSignerDescriptor(void* stateData);

  /// Finds the catalog that lists `file`. 1: `data` is ready for WinVerifyTrust, and the caller
  /// owns data.pCatalog with all that it points to, except `file` (UniqueCatalogInfo takes it
  /// over); `file` must outlive it. 0: `data` is unchanged and there is nothing to release.
  [[nodiscard]] static std::int32_t GetSecurityCatalogInfo(const wchar_t* file,
                                                           VerificationData& data);

  /// The SHA-256 hash of `file` as catalogs use it. A null administrator context is replaced by one
  /// of the operation's own. After a failure the text is empty; nothing is logged.
  [[nodiscard]] static FileHash CalculateFileHash(const wchar_t* file, void* catalogAdministrator);

  /// Whether one of the signatures verified, with or without an expired certificate. An unknown
  /// root does not count.
  [[nodiscard]] static bool IsTrustedByWindows(SignatureList signatures);

  /// Whether the public key of any signature, with any verdict, is in `keys`. A signer without a
  /// readable key never counts, not even if the list holds an empty text. False for a null list.
  [[nodiscard]] static bool IsTrustedByMeridian(SignatureList signatures, const KeyList* keys);

  /// Whether the lists have a common name in common. Case-sensitive; no other field is compared.
  [[nodiscard]] static bool SubjectsMatch(SignatureList first, SignatureList second);

  /// Whether the lists have a public key in common. A signer that could not be read has none.
  [[nodiscard]] static bool PublicKeysMatch(SignatureList first, SignatureList second);

  /// Reads a subject with one "key=value" on each line, lines separated by CR LF, into `record`.
  static void ParseSubject(const std::wstring& subject, SignerDescriptor& record);

  /// Reads one such line. A repeated key replaces the earlier value; unknown keys are ignored.
  static void ParseSubjectField(const std::wstring& line, SignerDescriptor& record);

  /// An X.500 name as text in the form of ParseSubject (CertNameToStrW). Empty, with a logged
  /// error, on failure.
  [[nodiscard]] static std::wstring GetNameText(const _CRYPTOAPI_BLOB& nameBlob);

  /// Each byte as two lower-case hexadecimal digits and one blank; empty for null.
  [[nodiscard]] static std::string BytesToHexText(const std::uint8_t* bytes, std::size_t count);

  /// `text` without leading and trailing characters of the given set. Throws std::out_of_range if
  /// nothing remains.
  [[nodiscard]] static std::string TrimText(const std::string& text, const char* characters);
};

}  // namespace Zq::Gantry::Security
