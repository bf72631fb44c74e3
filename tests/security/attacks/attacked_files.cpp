#include "security/attacks/attacked_files.h"

#include <wincrypt.h>
#include <wintrust.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>

#include "base/json_document.h"
#include "base/utf8_text.h"
#include "security/facade/zq_authenticode_facade.h"
#include "security/trust/wintrust_layout.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/program_folder.h"
#include "support/temp_folder.h"

namespace TestSupport {

using Zq::Gantry::Security::IsListedResult;
using Zq::Gantry::Security::KeyList;
using Zq::Gantry::Security::VerificationData;
using Zq::Gantry::Security::ZQAuthenticodeFacade;
using Helper = Zq::Gantry::Security::ZQAuthenticodeHelper;
namespace Wattleaf = Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr const wchar_t* kIssuer = L"CN=Throw-away authority";

std::vector<std::uint8_t> BytesOf(const std::string& hexText) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < hexText.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(hexText.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

RecordedSignature ReadSignature(const rapidjson::Value& row) {
  RecordedSignature signature;
  signature.answer = static_cast<LONG>(row["answer"].GetUint());
  signature.key = Wattleaf::TextOf(row["key"]);
  signature.subject = Wattleaf::FromUtf8(Wattleaf::TextOf(row["subject"]));
  signature.encodedSubject = BytesOf(Wattleaf::TextOf(row["encoded"]));
  return signature;
}

AttackedFile ReadRow(const rapidjson::Value& row) {
  AttackedFile file;
  file.name = Wattleaf::TextOf(row["file"]);
  file.done = Wattleaf::TextOf(row["done"]);
  for (const auto& one : row["signatures"].GetArray())
    file.signatures.push_back(ReadSignature(one));
  file.isTrusted = row["trusted"].GetBool();
  file.isDropbox = row["dropbox"].GetBool();
  file.unlike = Wattleaf::TextOf(row["unlike"]);
  file.unasked = Wattleaf::TextOf(row["unasked"]);
  return file;
}

std::vector<AttackedFile> ReadRows() {
  const std::unique_ptr<Wattleaf::GenericDocument> document(
      Wattleaf::LoadJsonDocument(AttackedPath("attacked_files.json")));
  std::vector<AttackedFile> files;
  if (!document) return files;
  for (const auto& row : document->GetArray()) files.push_back(ReadRow(row));
  return files;
}

bool IsListed(LONG answer) { return IsListedResult(static_cast<std::uint32_t>(answer)); }

// The file whose answers are given back; one at a time.
const AttackedFile* judged = nullptr;

// The texts in the documented form. Not every system follows the caller's flags.
DWORD WINAPI RecordedNameToStr(DWORD, PCERT_NAME_BLOB name, DWORD, LPWSTR text, DWORD chars) {
  std::wstring found = kIssuer;
  for (const RecordedSignature& one : judged->signatures) {
    if (std::equal(one.encodedSubject.begin(), one.encodedSubject.end(), name->pbData,
                   name->pbData + name->cbData)) {
      found = one.subject;
    }
  }
  if (chars <= found.size()) return 0;
  found.copy(text, found.size());
  text[found.size()] = L'\0';
  return static_cast<DWORD>(found.size() + 1);
}

std::vector<FakeSignature> SignaturesOf(const AttackedFile& file, std::optional<LONG> refusal) {
  std::vector<FakeSignature> signatures;
  for (const RecordedSignature& one : file.signatures) {
    const LONG answer = refusal && !IsListed(one.answer) ? *refusal : one.answer;
    signatures.push_back(
        {answer, JudgedFiles::KeyBytes(one.key), L"", kIssuer, one.encodedSubject});
  }
  return signatures;
}

decltype(&WinVerifyTrust) realWinVerifyTrust = nullptr;
std::vector<LONG> systemAnswers;

LONG WINAPI RecordingWinVerifyTrust(HWND window, GUID* action, LPVOID pointer) {
  const LONG real = realWinVerifyTrust(window, action, pointer);
  const auto& data = *static_cast<VerificationData*>(pointer);
  if (data.dwStateAction != WTD_STATEACTION_VERIFY) return real;
  systemAnswers.push_back(real);
  const DWORD index = data.pSignatureSettings->dwIndex;
  if (!IsListed(real) || index >= judged->signatures.size()) return real;
  const LONG recorded = judged->signatures[index].answer;
  return IsAboutTheBytes(recorded) ? real : recorded;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const AttackedFile& file) {
  return out << file.name << ": " << file.done;
}

std::ostream& operator<<(std::ostream& out, const Decisions& decisions) {
  return out << (decisions.isTrusted ? "trusted" : "not trusted") << ", "
             << (decisions.isDropbox ? "Dropbox" : "not Dropbox");
}

const std::vector<AttackedFile>& AttackedFiles() {
  static const std::vector<AttackedFile> files = ReadRows();
  return files;
}

std::wstring AttackedPath(const std::string& name) {
  return PathBesideProgram(L"attacked-files\\" + std::wstring(name.begin(), name.end()));
}

const KeyList& ListedKey() {
  static const KeyList keys = [] {
    const std::string line = ReadWholeFile(AttackedPath("listed_key.txt"));
    return KeyList{line.substr(0, line.find('\n'))};
  }();
  return keys;
}

Decisions DecideByRecord(const AttackedFile& file, std::optional<LONG> refusal) {
  JudgedFiles files;
  files.trust.embedded = SignaturesOf(file, refusal);
  judged = &file;
  const Standin::ImportPatch names("CertNameToStrW", &RecordedNameToStr);
  return {Helper::IsFileTrusted(kProtected, &ListedKey()),
          ZQAuthenticodeFacade().IsDropboxFileTrusted(kProtected)};
}

SystemJudgement JudgeBySystem(const AttackedFile& file) {
  const FakeCatalogs catalogs;
  const LogCapture log;
  judged = &file;
  systemAnswers.clear();
  const Standin::ImportPatch verify("WinVerifyTrust", &RecordingWinVerifyTrust);
  realWinVerifyTrust = verify.Original<std::remove_pointer_t<decltype(&WinVerifyTrust)>>();
  SystemJudgement judgement;
  judgement.signatures = Helper::GetSignatures(AttackedPath(file.name).c_str(), false);
  judgement.answers = systemAnswers;
  judgement.isTrusted = Helper::IsTrustedByWindows(judgement.signatures) &&
                        Helper::IsTrustedByMeridian(judgement.signatures, &ListedKey());
  return judgement;
}

bool IsAboutTheBytes(LONG answer) {
  static const std::set<DWORD> answers = {
      0x800B0100,  // TRUST_E_NOSIGNATURE
      0x80090006,  // NTE_BAD_SIGNATURE
      0x80091007,  // CRYPT_E_HASH_VALUE
      0x80096004,  // TRUST_E_CERT_SIGNATURE
      0x80096010,  // TRUST_E_BAD_DIGEST
  };
  return answers.contains(static_cast<DWORD>(answer));
}

}  // namespace TestSupport
