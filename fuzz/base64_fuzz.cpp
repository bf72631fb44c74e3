// Any text as Base64: the decoder must return what the literal algorithm makes of it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ledger/base64_text.h"
#include "ledger/literal_base64.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  using Zq::Gantry::Server::Services::Wattleaf::TryDecodeBase64;
  if (TryDecodeBase64(text) != TestSupport::LiteralBase64(text)) std::abort();
  return 0;
}
