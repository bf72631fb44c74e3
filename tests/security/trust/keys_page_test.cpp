// docs/keys.md says for each position of the key lists which uses trust it. The page must show what
// the lists of the library contain.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "security/trust/trusted_keys.h"

using namespace Zq::Gantry::Security;

namespace {

struct RowOfKeysPage {
  std::string list;
  std::set<std::size_t> positions;
  std::size_t bits = 0;
  bool isForService = false;
  bool isForExtended = false;
};

/// Of "0 to 2, 7": 0, 1, 2 and 7.
std::set<std::size_t> PositionsIn(const std::string& text) {
  std::set<std::size_t> positions;
  const std::regex range(R"((\d+)(?: to (\d+))?)");
  for (std::sregex_iterator it(text.begin(), text.end(), range), end; it != end; ++it) {
    const std::size_t first = std::stoul((*it)[1]);
    const std::size_t last = (*it)[2].matched ? std::stoul((*it)[2]) : first;
    for (std::size_t position = first; position <= last; ++position) positions.insert(position);
  }
  return positions;
}

std::vector<RowOfKeysPage> RowsOfKeysPage() {
  std::ifstream file(WATTLEAF_KEYS_PAGE);
  const std::regex row(R"(\| `(\w+)\.txt` \| ([\d, to]+) \| (\d+) \| (yes|no) \| (yes|no) \|)");
  std::vector<RowOfKeysPage> rows;
  std::smatch cells;
  for (std::string line; std::getline(file, line);) {
    if (!std::regex_match(line, cells, row)) continue;
    rows.push_back({cells[1], PositionsIn(cells[2]), std::stoul(cells[3]), cells[4] == "yes",
                    cells[5] == "yes"});
  }
  return rows;
}

bool Contains(const KeyList& list, const std::string& key) {
  return std::find(list.begin(), list.end(), key) != list.end();
}

/// The key lists of the page by the names of their files. The service key is in no list of its own:
/// it comes first.
std::map<std::string, KeyList> ListsOfKeysPage() {
  return {{"service_key", {ServiceTrustedKeys.at(0)}},
          {"single_key_list", SingleKeyList},
          {"second_key_list", SecondKeyList},
          {"public_key_pool", PublicKeyPool}};
}

}  // namespace

TEST(KeysPage, SaysForEachPositionWhichUsesTrustIt) {
  const std::map<std::string, KeyList> lists = ListsOfKeysPage();
  const std::vector<RowOfKeysPage> rows = RowsOfKeysPage();
  ASSERT_EQ(rows.size(), 11u);
  for (const RowOfKeysPage& row : rows) {
    for (const std::size_t position : row.positions) {
      SCOPED_TRACE(row.list + " " + std::to_string(position));
      const std::string& key = lists.at(row.list).at(position);
      EXPECT_EQ(Contains(ServiceTrustedKeys, key), row.isForService);
      EXPECT_EQ(Contains(ExtendedTrustedKeys, key), row.isForExtended);
      // 809 and 1193 characters.
      EXPECT_EQ(key.size(), row.bits == 2048 ? 809u : 1193u);
    }
  }
}

TEST(KeysPage, HasEachPositionOnce) {
  std::map<std::string, std::multiset<std::size_t>> found;
  for (const RowOfKeysPage& row : RowsOfKeysPage()) {
    found[row.list].insert(row.positions.begin(), row.positions.end());
  }
  for (const auto& [name, list] : ListsOfKeysPage()) {
    SCOPED_TRACE(name);
    EXPECT_EQ(found[name].size(), list.size());
    for (std::size_t i = 0; i < list.size(); ++i) EXPECT_EQ(found[name].count(i), 1u) << i;
  }
}
