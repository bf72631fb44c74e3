// Any keys, names and verdicts as the signatures of two files, against any list of keys: what the
// signatures are trusted for and whether they match is what sets of their keys and names say. The
// first byte of each line chooses what it is, the second a verdict.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>

#include "fuzz_input.h"
#include "security/trust/zq_authenticode_helper.h"

using namespace Zq::Gantry::Security;
using Fuzz::Require;
using Helper = ZQAuthenticodeHelper;

namespace {

constexpr std::uint32_t kVerdicts[] = {kVerified, kVerifiedButExpired, kUntrustedRoot, 0x800B0100};

SignerDescriptor Signer(const std::string& line) {
  const std::string text = line.size() > 2 ? line.substr(2) : "";
  const std::size_t end = std::min(text.find('/'), text.size());
  SignerDescriptor signer;
  signer.verifyResult = line.size() > 1 ? kVerdicts[static_cast<unsigned char>(line[1]) % 4] : 0;
  signer.publicKey = text.substr(0, end);
  for (const char c : text.substr(end)) signer.commonName += static_cast<wchar_t>(c);
  return signer;
}

template <typename Field>
auto Values(const SignatureList& signatures, Field field) {
  std::set<std::decay_t<decltype(SignerDescriptor().*field)>> values;
  for (const SignerDescriptor& one : signatures) values.insert(one.*field);
  return values;
}

template <typename Value>
bool Intersect(const std::set<Value>& left, const std::set<Value>& right) {
  return std::any_of(left.begin(), left.end(),
                     [&](const Value& value) { return right.contains(value); });
}

std::set<std::string> Keys(const SignatureList& signatures) {
  auto keys = Values(signatures, &SignerDescriptor::publicKey);
  keys.erase("");
  return keys;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SignatureList first;
  SignatureList second;
  KeyList keys;
  for (Fuzz::Input input(data, size); !input.IsEmpty();) {
    const std::string line = input.Line();
    const int kind = line.empty() ? 0 : line[0] % 3;
    if (kind == 0) keys.push_back(line.empty() ? "" : line.substr(1));
    if (kind == 1) first.push_back(Signer(line));
    if (kind == 2) second.push_back(Signer(line));
  }
  auto verdicts = Values(first, &SignerDescriptor::verifyResult);
  Require(Helper::IsTrustedByWindows(first) ==
          (verdicts.contains(0) || verdicts.contains(0x800B0101)));
  Require(Helper::IsTrustedByMeridian(first, &keys) ==
          Intersect(Keys(first), std::set<std::string>(keys.begin(), keys.end())));
  Require(!Helper::IsTrustedByMeridian(first, nullptr));
  Require(Helper::PublicKeysMatch(first, second) == Intersect(Keys(first), Keys(second)));
  const auto names = Values(first, &SignerDescriptor::commonName);
  Require(Helper::SubjectsMatch(first, second) ==
          Intersect(names, Values(second, &SignerDescriptor::commonName)));
  return 0;
}
