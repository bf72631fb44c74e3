// Any bytes as the ledger's file: loading by rows gives the same as loading by a document and
// looking each day up in the map, and both are saved as the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "base/scratch_folder.h"
#include "ledger/ledger_file.h"
#include "ledger/literal_ledger.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

// 2024-06-01.
constexpr DateTime kOldest{.tm_mday = 1, .tm_mon = 5, .tm_year = 124};

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int zone = setenv("TZ", "Europe/Berlin", /*overwrite=*/1);
  Require(zone == 0);
  static const ScratchFolder folder;
  static const std::filesystem::path file = folder.File("ledger.json");
  static const std::filesystem::path literalFile = folder.File("literal.json");
  WriteBytes(file, {reinterpret_cast<const char*>(data), size});

  PowerLedger ledger;
  PowerLedger literal;
  LoadLedger(file.wstring(), kOldest, ledger);
  LiteralLoad(file.wstring(), kOldest, literal);
  Require(BitsOf(ledger) == BitsOf(literal));
  Require(HoldsLedger(file.wstring(), ledger) == LiteralHolds(file.wstring(), literal));

  Require(SaveLedger(file.wstring(), ledger) && LiteralSave(literalFile.wstring(), literal));
  Require(ReadBytes(file) == ReadBytes(literalFile));
  Require(HoldsLedger(file.wstring(), ledger));
  return 0;
}
