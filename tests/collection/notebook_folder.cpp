#include "collection/notebook_folder.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>

#include <gtest/gtest.h>

#include "collection/ledger_fixture.h"
#include "ledger/encrypted_samples.h"
#include "platform/win32/owners.h"

namespace TestSupport {

namespace {

std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

std::wstring SampleName(int back) {
  return L"PcmSampleData_" + Wide(DateBefore(kToday, back)) + L".json";
}

std::string EncryptedText(int back) { return Base64(Utf16(SamplesOfDay(back))); }

bool IsWholeList(const std::string& text) {
  return text.size() >= 2 && text.front() == '[' && text.back() == ']';
}

/// The objects of a list, which contain no braces inside.
std::vector<std::string> Objects(const std::string& list) {
  std::vector<std::string> objects;
  for (auto begin = list.find('{'); begin != list.npos; begin = list.find('{', begin + 1)) {
    objects.push_back(list.substr(begin, list.find('}', begin) + 1 - begin));
  }
  return objects;
}

const std::map<std::string, int>& DaysByDate() {
  static const std::map<std::string, int> days = [] {
    std::map<std::string, int> all;
    for (int back = 0; back <= kOldestDay; ++back) all[DateBefore(kToday, back)] = back;
    return all;
  }();
  return days;
}

std::optional<DayEnergies> ReadLedger(const std::string& text) {
  if (!IsWholeList(text)) return std::nullopt;
  DayEnergies ledger;
  for (const std::string& object : Objects(text)) {
    char date[16] = "";
    float energyWh = 0.0F;
    EXPECT_EQ(std::sscanf(object.c_str(), R"({"Key":"%10[0-9-]","Value":%f})", date, &energyWh), 2)
        << object;
    ledger[DaysByDate().at(date)] = energyWh;
  }
  return ledger;
}

std::optional<std::vector<std::string>> ReadStore(const std::string& text) {
  if (!IsWholeList(text)) return std::nullopt;
  return Objects(text);
}

std::string TextOf(const std::wstring& path) {
  return FileExists(path) ? ReadWholeFile(path) : std::string();
}

}  // namespace

std::string LedgerText(const DayEnergies& ledger) {
  std::vector<std::string> elements;
  for (auto entry = ledger.rbegin(); entry != ledger.rend(); ++entry) {
    char value[40];
    std::snprintf(value, sizeof(value), "%.17g", static_cast<double>(entry->second));
    elements.push_back(LedgerElement(DateBefore(kToday, entry->first), value));
  }
  return StoreText(elements);
}

std::string StoreText(const std::vector<std::string>& rows) {
  std::string text = "[";
  for (const std::string& row : rows) text += (text.size() > 1 ? "," : "") + row;
  return text + "]";
}

NotebookFolder::NotebookFolder(const FolderState& state) {
  for (const int back : state.samples) WriteWholeFile(SamplePath(back), EncryptedText(back));
  for (const int back : state.copies) {
    const std::string text = SamplesOfDay(back);
    WriteWholeFile(folder_.File(L"unencrypt-" + SampleName(back)),
                   text + std::string(text.size(), '\0'));
  }
  if (state.ledger) WriteWholeFile(LedgerPath(), LedgerText(*state.ledger));
  if (state.store) WriteWholeFile(StorePath(), StoreText(*state.store));
}

NotebookFolder::NotebookFolder(const NotebookFolder& other) {
  for (const std::wstring& name : other.Names(L"*.*")) {
    CopyFileW(other.folder_.File(name).c_str(), folder_.File(name).c_str(), /*failIfExists=*/TRUE);
  }
}

std::wstring NotebookFolder::SamplePath(int back) const { return folder_.File(SampleName(back)); }

FolderState NotebookFolder::State() const {
  FolderState state;
  state.ledger = ReadLedger(TextOf(LedgerPath()));
  state.store = ReadStore(TextOf(StorePath()));
  for (const auto& [date, back] : DaysByDate()) {
    if (FileExists(SamplePath(back))) {
      state.samples.insert(back);
      EXPECT_EQ(ReadWholeFile(SamplePath(back)), EncryptedText(back)) << date;
    }
    const std::string copy = TextOf(folder_.File(L"unencrypt-" + SampleName(back)));
    if (IsWholeList(copy.substr(0, copy.find('\0')))) state.copies.insert(back);
  }
  return state;
}

std::vector<std::wstring> NotebookFolder::Names(const std::wstring& pattern) const {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW entry{};
  const Zq::Gantry::Platform::UniqueFindHandle search(
      FindFirstFileW(folder_.File(pattern).c_str(), &entry));
  if (!search) return names;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) names.push_back(entry.cFileName);
  } while (FindNextFileW(search.get(), &entry));
  return names;
}

bool AreAllMomentsWanted() { return std::getenv("WATTLEAF_ALL_MOMENTS") != nullptr; }

}  // namespace TestSupport
