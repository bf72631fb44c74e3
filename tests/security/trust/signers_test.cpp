#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "security/trust/fake_trust.h"
#include "support/log_capture.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

SignatureList Read(FakeTrust& trust, const FakeSignature& signature) {
  trust.embedded = {signature};
  return Helper::GetSignatures(L"C:\\file.dll", false);
}

bool IsEmptyRecord(const SignerDescriptor& record) {
  return record.publicKey.empty() && record.commonName.empty() && record.organization.empty() &&
         record.country.empty() && record.issuer.empty();
}

CERT_NAME_BLOB BlobOf(std::vector<std::uint8_t>& bytes) {
  return {static_cast<DWORD>(bytes.size()), bytes.data()};
}

// The arguments of the last fake name conversion.
DWORD passedChars = 0;
DWORD passedFormat = 0;
DWORD passedEncoding = 0;

DWORD WINAPI FailingNameToStr(DWORD, PCERT_NAME_BLOB, DWORD, LPWSTR, DWORD) { return 0; }

/// Writes nothing and reports success.
DWORD WINAPI IdleNameToStr(DWORD, PCERT_NAME_BLOB, DWORD, LPWSTR, DWORD capacity) {
  return capacity;
}

/// Fills the whole buffer, without a terminator.
DWORD WINAPI GreedyNameToStr(DWORD encoding, PCERT_NAME_BLOB, DWORD format, LPWSTR text,
                             DWORD capacity) {
  passedEncoding = encoding;
  passedFormat = format;
  passedChars = capacity;
  for (DWORD i = 0; i < capacity; ++i) text[i] = L'x';
  return capacity;
}

// A block size that only GetNameText requests: for a name of 70,001 bytes, four characters each, a
// terminator written by the call and one written by GetNameText.
constexpr DWORD kRareNameBytes = 70001;
constexpr std::size_t kRareBlockBytes = (4 * kRareNameBytes + 2) * sizeof(wchar_t);

void* rareBlock = nullptr;
bool failRareBlock = false;
int rareBlockFrees = 0;
void* (*realSignersMalloc)(std::size_t) = nullptr;
void (*realSignersFree)(void*) = nullptr;

void* FakeMalloc(std::size_t size) {
  if (size != kRareBlockBytes) return realSignersMalloc(size);
  if (failRareBlock) return nullptr;
  rareBlock = realSignersMalloc(size);
  // So that unwritten memory has no terminator.
  if (rareBlock != nullptr) std::memset(rareBlock, 0x41, size);
  return rareBlock;
}

void FakeFree(void* block) {
  if (block != nullptr && block == rareBlock) ++rareBlockFrees;
  realSignersFree(block);
}

struct FakeHeap {
  FakeHeap() {
    realSignersMalloc = malloc_.Original<void*(std::size_t)>();
    realSignersFree = free_.Original<void(void*)>();
    rareBlock = nullptr;
    failRareBlock = false;
    rareBlockFrees = 0;
  }

 private:
  Standin::ImportPatch malloc_{"malloc", &FakeMalloc};
  Standin::ImportPatch free_{"free", &FakeFree};
};

}  // namespace

TEST(GetSignerDescriptor, ReadsKeyAndSubjectOfTheSignersCertificate) {
  FakeTrust trust;
  FakeSignature signature;
  signature.key = {0x30, 0x82, 0x01, 0x0a, 0xff};
  signature.subject = L"C=US, S=California, L=Elmhurst, O=Firm, OU=One, OU=Two, CN=Name";
  const SignatureList signatures = Read(trust, signature);

  ASSERT_EQ(signatures.size(), 1u);
  EXPECT_EQ(signatures[0].publicKey, "30 82 01 0a ff");
  EXPECT_EQ(signatures[0].commonName, L"Name");
  EXPECT_EQ(signatures[0].organizationalUnit, L"Two");
  EXPECT_EQ(signatures[0].organization, L"Firm");
  EXPECT_EQ(signatures[0].locality, L"Elmhurst");
  EXPECT_EQ(signatures[0].state, L"California");
  EXPECT_EQ(signatures[0].country, L"US");
}

TEST(GetSignerDescriptor, LogsTheSubjectOnceAndNothingElse) {
  FakeTrust trust;
  const LogCapture log;
  FakeSignature signature;
  signature.subject = L"O=Firm, CN=100% %s %n";
  static_cast<void>(Read(trust, signature));
  EXPECT_EQ(log.Records(), (std::vector<LogRecord>{Info(L"Subject = O=Firm\r\nCN=100% %s %n")}));
}

TEST(GetSignerDescriptor, ReadsTheIssuerAndDropsIt) {
  FakeTrust trust;
  FakeSignature signature;
  signature.issuer = L"CN=Other, O=Authority";
  const SignatureList signatures = Read(trust, signature);
  EXPECT_EQ(signatures[0].issuer, L"");
  EXPECT_EQ(signatures[0].organization, L"");
}

TEST(GetSignerDescriptor, LogsEachNameThatCannotBeReadAndKeepsTheKey) {
  FakeTrust trust;
  const Standin::ImportPatch failing("CertNameToStrW", &FailingNameToStr);
  const LogCapture log;
  const SignatureList signatures = Read(trust, {});
  EXPECT_EQ(log.Records(), (std::vector<LogRecord>{Error(L"Error while retrieving Subject field."),
                                                   Error(L"Error while retrieving Subject field."),
                                                   Info(L"Subject = ")}));
  ASSERT_EQ(signatures.size(), 1u);
  EXPECT_EQ(signatures[0].publicKey, "30 0a");
  EXPECT_EQ(signatures[0].commonName, L"");
}

TEST(GetSignerDescriptor, ReturnsAnEmptyRecordAndLogsNothingForANullState) {
  const FakeTrust trust;
  const LogCapture log;
  EXPECT_TRUE(IsEmptyRecord(Helper::GetSignerDescriptor(nullptr)));
  EXPECT_TRUE(log.Records().empty());
}

TEST(GetSignerDescriptor, ReturnsAnEmptyRecordWithTheVerdictWhenAStepFails) {
  struct Row {
    const char* label;
    bool FakeTrust::*failure;
  };
  const Row rows[] = {
      {"no state", &FakeTrust::leaveStateNull},
      {"no provider data", &FakeTrust::hideProvider},
      {"no signer", &FakeTrust::hideSigner},
      {"no certificate", &FakeTrust::hideCertificate},
      {"no certificate context", &FakeTrust::hideCertificateContext},
  };
  for (const Row& row : rows) {
    FakeTrust trust;
    trust.*row.failure = true;
    const LogCapture log;
    FakeSignature signature;
    signature.verdict = static_cast<LONG>(0x800B0109);
    const SignatureList signatures = Read(trust, signature);
    ASSERT_EQ(signatures.size(), 1u) << row.label;
    EXPECT_TRUE(IsEmptyRecord(signatures[0])) << row.label;
    EXPECT_EQ(signatures[0].verifyResult, 0x800B0109u) << row.label;
    EXPECT_TRUE(log.Records().empty()) << row.label;
    EXPECT_EQ(trust.openStates, 0) << row.label;
  }
}

TEST(GetSignerDescriptor, ThrowsOutOfRangeForAKeyWithoutBytes) {
  FakeTrust trust;
  FakeSignature signature;
  signature.key.clear();
  EXPECT_THROW(static_cast<void>(Read(trust, signature)), std::out_of_range);
}

TEST(GetNameText, WritesEachRelativeNameOnItsOwnLine) {
  std::vector<std::uint8_t> name = EncodeName(L"C=US, O=Firm, CN=Name");
  EXPECT_EQ(Helper::GetNameText(BlobOf(name)), L"C=US\r\nO=Firm\r\nCN=Name");
}

TEST(GetNameText, RequestsUnquotedNamesOnSeparateLines) {
  const Standin::ImportPatch greedy("CertNameToStrW", &GreedyNameToStr);
  std::vector<std::uint8_t> name(1, 0x30);
  static_cast<void>(Helper::GetNameText(BlobOf(name)));
  EXPECT_EQ(passedFormat, 0x18000003u);
  EXPECT_EQ(passedEncoding, 1u);
}

TEST(GetNameText, PassesRoomForFourCharactersPerByteAndATerminator) {
  const Standin::ImportPatch greedy("CertNameToStrW", &GreedyNameToStr);
  std::vector<std::uint8_t> name(100, 0x30);
  // The greedy call fills the room of its own terminator too.
  EXPECT_EQ(Helper::GetNameText(BlobOf(name)).size(), 401u);
  EXPECT_EQ(passedChars, 401u);
}

TEST(GetNameText, TerminatesATextThatFillsItsBlock) {
  const Standin::ImportPatch greedy("CertNameToStrW", &GreedyNameToStr);
  std::vector<std::uint8_t> name(kRareNameBytes, 0x30);
  std::wstring text;
  {
    const FakeHeap heap;
    text = Helper::GetNameText(BlobOf(name));
  }
  ASSERT_NE(rareBlock, nullptr);
  EXPECT_EQ(text.size(), 4u * kRareNameBytes + 1);
}

TEST(GetNameText, ReturnsAnEmptyTextWhenTheCallWritesNothing) {
  const Standin::ImportPatch idle("CertNameToStrW", &IdleNameToStr);
  std::vector<std::uint8_t> name(kRareNameBytes, 0x30);
  std::wstring text = L"unset";
  {
    const FakeHeap heap;
    text = Helper::GetNameText(BlobOf(name));
  }
  ASSERT_NE(rareBlock, nullptr);
  EXPECT_EQ(text.size(), 0u);
}

TEST(GetNameText, ReturnsAnEmptyTextForANameWithoutBytes) {
  std::vector<std::uint8_t> name;
  EXPECT_EQ(Helper::GetNameText(BlobOf(name)), L"");
}

TEST(GetNameText, LogsAFailedConversionAndFreesItsBlock) {
  const Standin::ImportPatch failing("CertNameToStrW", &FailingNameToStr);
  const LogCapture log;
  std::vector<std::uint8_t> name(kRareNameBytes, 0x30);
  std::wstring text = L"unset";
  {
    const FakeHeap heap;
    text = Helper::GetNameText(BlobOf(name));
  }
  EXPECT_EQ(text, L"");
  EXPECT_NE(rareBlock, nullptr);
  EXPECT_EQ(rareBlockFrees, 1);
  EXPECT_EQ(log.Records(),
            (std::vector<LogRecord>{Error(L"Error while retrieving Subject field.")}));
}

TEST(GetNameText, LogsAFailedAllocationAndConvertsNothing) {
  const Standin::ImportPatch greedy("CertNameToStrW", &GreedyNameToStr);
  passedChars = 0;
  const LogCapture log;
  std::vector<std::uint8_t> name(kRareNameBytes, 0x30);
  std::wstring text = L"unset";
  {
    const FakeHeap heap;
    failRareBlock = true;
    text = Helper::GetNameText(BlobOf(name));
  }
  EXPECT_EQ(text, L"");
  EXPECT_EQ(passedChars, 0u);
  EXPECT_EQ(log.Records(),
            (std::vector<LogRecord>{Error(L"NULL pointer returned by Malloc() to pszString.")}));
}
