#include "answers/answer_csv.h"

#include <gtest/gtest.h>

#include <string>

#include "host/export/hostile_names.h"

using namespace WattleafHost;

namespace {

const std::string kHead = "command,position,label,value,unit,icon\r\n";

}  // namespace

TEST(AnswersCsv, HasTheEntriesOfASeries) {
  const Answer hours = MakeAnswer(
      4, 0,
      R"({"Range":[0.0,2.5],"Value":[{"Time":"2:00","Value":2.5},{"Time":"3:00","Value":0.0}]})");
  EXPECT_EQ(AnswersCsv({hours}), kHead + "4,1,2:00,2.5,Wh,\r\n4,2,3:00,0,Wh,\r\n");
}

TEST(AnswersCsv, HasTheRankingAndTheShareOfEverythingElse) {
  const Answer ranking = MakeAnswer(
      2, 0,
      R"([{"Name":"Meadow, Office","Icon":"C:\\i\\m.png","Value":50.0},{"Name":"=b","Icon":"","Value":12.5}])");
  EXPECT_EQ(AnswersCsv({ranking}), kHead +
                                       "2,1,\"Meadow, Office\",50,percent,C:\\i\\m.png\r\n"
                                       "2,2,'=b,12.5,percent,\r\n"
                                       "2,,everything else,37.5,percent,\r\n");
}

TEST(AnswersCsv, LeavesOutWhatIsNoTable) {
  EXPECT_EQ(AnswersCsv({MakeAnswer(1, 0, "2.5"), MakeAnswer(2, 0x20000002, ""),
                        MakeAnswer(2, 0, "[]"), MakeAnswer(5, 0, "{")}),
            kHead);
}

TEST(AnswersCsv, HasOneRecordForEachHostileName) {
  Ranking ranking;
  for (const std::string& name : TestSupport::kHostileNames) ranking.push_back({name, "", 1.0});
  Answer answer{2, 0, "", ranking};
  const std::string csv = AnswersCsv({answer});
  EXPECT_NE(csv.find("\r\n2,1,\"say \"\"hi\"\"\",1,percent,\r\n2,2,back\\slash,1,"),
            std::string::npos);
  EXPECT_NE(csv.find("\r\n2,7,\"'=HYPERLINK(\"\"http://x\"\",\"\"y\"\")\",1,"), std::string::npos);
  EXPECT_NE(csv.find("\r\n2,10," + std::string(10'000, 'n') + ",1,"), std::string::npos);
}

TEST(IsTable, IsTrueForTheSeriesAndTheRanking) {
  std::string tables;
  for (unsigned int number = 0; number < 12; ++number) tables += IsTable(number) ? '+' : '-';
  EXPECT_EQ(tables, "--+-+++-----");
}
