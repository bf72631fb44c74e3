#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <wincrypt.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "import_patch.h"
#include "platform/win32/owners.h"
#include "security/trust/fake_trust.h"

// CertNameToStrW never writes more than the block of the name holds. Each block that GetNameText
// allocates ends at an inaccessible page, so that one character too many ends the test program.

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

using Bytes = std::vector<std::uint8_t>;

// Encoded values.

constexpr std::uint8_t kPrintable = 0x13;
constexpr std::uint8_t kUtf8 = 0x0C;
constexpr std::uint8_t kWide = 0x1E;
constexpr std::uint8_t kSequence = 0x30;
constexpr std::uint8_t kSet = 0x31;

Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Bytes Encode(std::uint8_t tag, const Bytes& content) {
  const std::size_t size = content.size();
  Bytes header = {tag};
  if (size >= 256) {
    header.insert(header.end(), {0x82, static_cast<std::uint8_t>(size >> 8)});
  } else if (size >= 128) {
    header.push_back(0x81);
  }
  header.push_back(static_cast<std::uint8_t>(size));
  return Join({header, content});
}

Bytes Attribute(const Bytes& type, std::uint8_t valueTag, const Bytes& value) {
  return Encode(kSequence, Join({Encode(0x06, type), Encode(valueTag, value)}));
}

Bytes NameOf(std::initializer_list<Bytes> attributes) {
  Bytes sets;
  for (const Bytes& attribute : attributes) sets = Join({sets, Encode(kSet, attribute)});
  return Encode(kSequence, sets);
}

/// "2.47.127.127...": four characters for each byte, the most that a type can take.
Bytes LongType(std::size_t bytes) { return Bytes(bytes, 0x7F); }

const Bytes kCommonName = {0x55, 0x04, 0x03};

struct CertificatePolicy {
  using Type = const CERT_CONTEXT*;
  static Type Empty() { return nullptr; }
  static void Release(Type certificate) { CertFreeCertificateContext(certificate); }
};
using UniqueCertificate = Zq::Gantry::Platform::UniqueResource<CertificatePolicy>;

/// An unsigned certificate with an invalid key.
Bytes CertificateOf(const Bytes& subject) {
  const Bytes rsa =
      Encode(kSequence, Join({Encode(0x06, {0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x0B}),
                              Encode(0x05, {})}));
  const std::string day = "250101000000Z";
  const Bytes date = Encode(0x17, Bytes(day.begin(), day.end()));
  const Bytes key = Encode(0x03, {0x00, 0x30, 0x0A});
  const Bytes content = Encode(
      kSequence, Join({Encode(0x02, {0x01}), rsa, NameOf({}), Encode(kSequence, Join({date, date})),
                       subject, Encode(kSequence, Join({rsa, key}))}));
  return Encode(kSequence, Join({content, rsa, key}));
}

// The guarded heap.

constexpr std::size_t kPageBytes = 4096;

std::array<void*, 64> guardedBlocks{};  // fixed size, because a container would allocate
void* (*realMalloc)(std::size_t) = nullptr;
void (*realFree)(void*) = nullptr;

/// The end of the block, rounded up to a whole character, is the beginning of the inaccessible
/// page.
void* GuardedMalloc(std::size_t bytes) {
  const std::size_t room = (bytes + kPageBytes - 1) / kPageBytes * kPageBytes;
  auto* pages = static_cast<char*>(
      VirtualAlloc(nullptr, room + kPageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (pages == nullptr) return nullptr;
  DWORD before = 0;
  if (!VirtualProtect(pages + room, kPageBytes, PAGE_NOACCESS, &before)) return nullptr;
  void* block = pages + room - (bytes + 1) / 2 * 2;
  for (void*& slot : guardedBlocks) {
    if (slot != nullptr) continue;
    slot = block;
    return block;
  }
  return nullptr;
}

void GuardedFree(void* block) {
  for (void*& slot : guardedBlocks) {
    if (slot == nullptr || slot != block) continue;
    slot = nullptr;
    MEMORY_BASIC_INFORMATION pages{};
    VirtualQuery(block, &pages, sizeof(pages));
    VirtualFree(pages.AllocationBase, 0, MEM_RELEASE);
    return;
  }
  realFree(block);
}

struct GuardedHeap {
  GuardedHeap() {
    realMalloc = malloc_.Original<void*(std::size_t)>();
    realFree = free_.Original<void(void*)>();
  }

 private:
  Standin::ImportPatch malloc_{"malloc", &GuardedMalloc};
  Standin::ImportPatch free_{"free", &GuardedFree};
};

// The capacity that the last conversion got, and the characters that it reported.
DWORD capacityChars = 0;
DWORD writtenChars = 0;
decltype(&CertNameToStrW) realNameToStr = nullptr;

DWORD WINAPI MeasuredNameToStr(DWORD encoding, PCERT_NAME_BLOB name, DWORD format, LPWSTR text,
                               DWORD chars) {
  capacityChars = chars;
  return writtenChars = realNameToStr(encoding, name, format, text, chars);
}

class GetNameTextOnGuardedHeap : public testing::Test {
 protected:
  GetNameTextOnGuardedHeap() {
    realNameToStr = measured_.Original<std::remove_pointer_t<decltype(&CertNameToStrW)>>();
  }

  /// The text of an encoded name; GetNameText runs on the guarded heap.
  static std::wstring Read(Bytes name) {
    const CERT_NAME_BLOB blob = {static_cast<DWORD>(name.size()), name.data()};
    std::wstring text;
    text.reserve(4 * name.size() + 64);  // on the normal heap, because it outlives the guarded one
    const GuardedHeap heap;
    text = static_cast<const std::wstring&>(Helper::GetNameText(blob));
    return text;
  }

 private:
  const Standin::ImportPatch measured_{"CertNameToStrW", &MeasuredNameToStr};
};

}  // namespace

TEST_F(GetNameTextOnGuardedHeap, StaysInsideItsBlockForANameOf5454Bytes) {
  // The type alone fills two characters per byte of the name; the quotes follow it.
  const Bytes name = NameOf({Attribute(LongType(2800), kPrintable, Bytes(2634, '"'))});
  ASSERT_EQ(name.size(), 5454u);
  const std::wstring text = Read(name);
  EXPECT_LE(writtenChars, capacityChars);
  EXPECT_NE(text.find(L".127.127="), std::wstring::npos) << "the type must be complete";
  EXPECT_EQ(text.back(), L'"');
}

TEST_F(GetNameTextOnGuardedHeap, ReadsATypeOfManyNumbersCompletely) {
  const std::wstring text = Read(NameOf({Attribute(LongType(5000), kPrintable, {'x'})}));
  ASSERT_GT(text.size(), 4u * 4999);
  EXPECT_EQ(text.substr(text.size() - 6), L".127=x");
}

TEST_F(GetNameTextOnGuardedHeap, FitsShortTypesWithLongNamesAndSeparators) {
  Bytes attributes;
  for (int i = 0; i < 200; ++i) {
    attributes = Join({attributes, Attribute({0x55, 0x04, 0x05}, kPrintable, {'"'})});
  }
  const std::wstring text = Read(Encode(kSequence, Encode(kSet, attributes)));
  EXPECT_LE(writtenChars, capacityChars);
  EXPECT_EQ(text.back(), L'"');
}

TEST_F(GetNameTextOnGuardedHeap, ReadsACommonNameAfterAVeryLongType) {
  const Bytes subject = NameOf({Attribute(LongType(2000), kPrintable, Bytes(2000, '"')),
                                Attribute(kCommonName, kPrintable, {'N', 'a', 'm', 'e'})});
  const Bytes encoded = CertificateOf(subject);
  const UniqueCertificate certificate(CertCreateCertificateContext(
      X509_ASN_ENCODING, encoded.data(), static_cast<DWORD>(encoded.size())));
  ASSERT_TRUE(static_cast<bool>(certificate));
  const CERT_NAME_BLOB& read = certificate.get()->pCertInfo->Subject;
  FakeTrust trust;
  trust.embedded.emplace_back();
  trust.embedded[0].encodedSubject.assign(read.pbData, read.pbData + read.cbData);
  ASSERT_EQ(trust.embedded[0].encodedSubject, subject);

  const SignatureList signatures = Helper::GetSignatures(L"C:\\file.dll", false);
  ASSERT_EQ(signatures.size(), 1u);
  EXPECT_EQ(signatures[0].commonName, L"Name");
}

TEST_F(GetNameTextOnGuardedHeap, StaysInsideItsBlockFor2000RandomNames) {
  std::mt19937 random(20240229);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  const std::string characters = "\"\"\"\"a,=+\r\n <>#;\\\x01\x7f\xc3\xff";
  const std::uint8_t valueTags[] = {kPrintable, kUtf8, 0x04, 0x12, 0x14, 0x16, 0x1C, kWide};
  const Bytes types[] = {
      kCommonName, {0x55, 0x04, 0x05}, {0x2A}, {}, {0x55, 0x88, 0x80, 0x80, 0x00}};
  for (int i = 0; i < 2000; ++i) {
    Bytes sets;
    for (std::size_t set = below(6); set > 0; --set) {
      Bytes attributes;
      for (std::size_t attribute = below(4); attribute > 0; --attribute) {
        const Bytes type = below(3) == 0 ? LongType(below(400)) : types[below(std::size(types))];
        const std::uint8_t tag = valueTags[below(std::size(valueTags))];
        // Some systems read far outside the buffer for an empty wide text.
        Bytes value(below(300) + (tag == kWide ? 2 : 0));
        for (std::uint8_t& byte : value) {
          byte = static_cast<std::uint8_t>(characters[below(characters.size())]);
        }
        attributes = Join({attributes, Attribute(type, tag, value)});
      }
      sets = Join({sets, Encode(kSet, attributes)});
    }
    const Bytes name = Encode(kSequence, sets);
    const std::wstring text = Read(name);
    ASSERT_LE(writtenChars, capacityChars) << "name " << i;
    ASSERT_LE(text.size(), 4 * name.size()) << "name " << i;
  }
}
