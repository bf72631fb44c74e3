#include "ledger/encrypted_samples.h"

#include <windows.h>

#include <wincrypt.h>

#include <cstring>

#include <gtest/gtest.h>

#include "platform/win32/owners.h"

namespace TestSupport {

std::string Base64(const std::string& bytes) {
  DWORD chars = 0;
  const auto* data = reinterpret_cast<const BYTE*>(bytes.data());
  const auto size = static_cast<DWORD>(bytes.size());
  CryptBinaryToStringA(data, size, CRYPT_STRING_BASE64, nullptr, &chars);
  std::string text(chars, '\0');
  EXPECT_TRUE(CryptBinaryToStringA(data, size, CRYPT_STRING_BASE64, text.data(), &chars));
  // Wine counts two characters too many if the last group is padded and would begin a line.
  text.resize(std::strlen(text.c_str()));
  return text;
}

std::string Encrypted(const std::string& plain) {
  std::string bytes = plain;
  DATA_BLOB input{static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())};
  DATA_BLOB encrypted{};
  if (!CryptProtectData(&input, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_LOCAL_MACHINE,
                        &encrypted)) {
    ADD_FAILURE() << "CryptProtectData: " << GetLastError();
    return {};
  }
  const Zq::Gantry::Platform::UniqueLocalBlock owner(encrypted.pbData);
  return Base64({reinterpret_cast<const char*>(encrypted.pbData), encrypted.cbData});
}

}  // namespace TestSupport
