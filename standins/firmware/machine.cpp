#include "machine.h"

#include "firmware_script.h"
#include "variants.h"

namespace Standin::Firmware {

namespace {

constexpr LONG kRead = 1;
constexpr LONG kWrite = 2;
constexpr unsigned int kProbeItem = 0x010A;
constexpr unsigned int kFlagItem = 0x010B;

unsigned int ItemOf(const ReceivedCommand& command) {
  if (command.data.size() < 2) return 0;
  return static_cast<unsigned int>(command.data[0] + command.data[1] * 256);
}

std::uint8_t ReadItem(const std::map<unsigned int, std::uint8_t>& items, unsigned int item) {
  if (item == kFlagItem) return TheScript().Has("flag-clear") ? 0 : 1;
  if (item == kProbeItem && TheScript().Has("reads-six")) return 6;
  const auto found = items.find(item);
  return found == items.end() ? std::uint8_t{0} : found->second;
}

void MakeTwoDimensionalBytes(VARIANT* value, std::size_t bytes) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(bytes), 0}, {2, 0}};
  value->vt = VT_ARRAY | VT_UI1;
  value->parray = SafeArrayCreate(VT_UI1, 2, bounds);
}

}  // namespace

void Machine::Reset() {
  const std::lock_guard guard(lock_);
  items_.clear();
  received_.clear();
}

std::vector<std::uint8_t> Machine::Run(const ReceivedCommand& command, std::size_t outputBytes) {
  const std::lock_guard guard(lock_);
  received_.push_back(command);
  std::vector<std::uint8_t> answer(outputBytes);
  const unsigned int item = ItemOf(command);
  if (command.command == kWrite && command.data.size() > 2 && !TheScript().Has("drops-write")) {
    items_[item] = command.data[2];
  }
  if (command.command == kRead && !answer.empty()) answer[0] = ReadItem(items_, item);
  return answer;
}

std::vector<ReceivedCommand> Machine::Received() const {
  const std::lock_guard guard(lock_);
  return received_;
}

Machine& TheMachine() {
  static Machine machine;
  return machine;
}

void MakeAnswerData(VARIANT* value, std::vector<std::uint8_t> bytes) {
  const Script& script = TheScript();
  if (script.Has("data-short")) bytes.pop_back();
  if (script.Has("data-long")) bytes.push_back(0);
  if (script.Has("data-two-dimensional")) return MakeTwoDimensionalBytes(value, bytes.size());
  if (script.Has("data-numbers")) {
    return MakeElements<LONG>(value, VT_I4, 0, std::vector<LONG>(bytes.begin(), bytes.end()));
  }
  const LONG lowerBound = script.Has("data-from-one")         ? 1
                          : script.Has("data-from-minus-one") ? -1
                                                              : 0;
  MakeElements<std::uint8_t>(value, VT_UI1, lowerBound, bytes);
}

void MakeOemStrings(VARIANT* value) {
  const Script& script = TheScript();
  std::wstring third = L"Features: CarbonSupport=1";
  if (script.Has("no-marker")) third = L"Features: none";
  if (script.Has("marker-lower-case")) third = L"Features: carbonsupport=1";
  if (script.Has("marker-goes-on")) third = L"CarbonSupport=10";
  MakeTexts(value, {L"Simulated notebook", L"Stand-in firmware", third, L"End"});
}

}  // namespace Standin::Firmware
