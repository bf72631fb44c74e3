// Reading a JSON file into a document: the samples of a day, one a second.
#include <memory>

#include "base/json_document.h"
#include "operation.h"
#include "raw_parsers.h"
#include "written_samples.h"

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

std::size_t Samples() { return Bench::Sized(86'400, 100); }
std::filesystem::path Path() { return Bench::Folder() / "day.json"; }
void Prepare() { Bench::WriteSamples(Path(), {.count = Samples()}); }

bool Load() {
  const std::unique_ptr<GenericDocument> document(LoadJsonDocument(Path().wstring()));
  return document && document->Size() == Samples();
}

bool LoadRaw() { return Bench::ParseJson(Path()).Size() == Samples(); }

const Bench::Registration ours{{"load/ours", Prepare, Load}};
const Bench::Registration raw{{"load/raw", Prepare, LoadRaw}};

}  // namespace
