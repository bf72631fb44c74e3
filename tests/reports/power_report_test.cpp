#include "reports/power_report.h"

#include "reports/report_reader.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using ReadPowerReportTest = ReportReader;

}  // namespace

TEST_F(ReadPowerReportTest, AddsARowForEachChildOfTheRoot) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  Read("<?xml version=\"1.0\"?><!-- c --><Srum>" +
       Row("\\Device\\C\\a.exe", "02:10:46", Energy("17")) + "<!-- c -->text" +
       "<Other AppId='Orchard.Notes_1' TimeStamp='2026-11-13:23:00:00'>" + Energy("5") +
       "</Other></Srum>");
  EXPECT_EQ(Rows(),
            "\\Device\\C\\a.exe|File|2026-11-14:02:10:46|17\n"
            "Orchard.Notes_1|Orchard Notes|2026-11-13:23:00:00|5\n");
}

TEST_F(ReadPowerReportTest, ReadsOnlyTheFirstRootAndItsChildren) {
  Read("<First>" + Row("a", "02:00:00", Energy("1") + Row("inner", "02:00:00", Energy("2"))) +
       "</First><Second>" + Row("b", "02:00:00", Energy("3")) + "</Second>");
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|1\n");
}

TEST_F(ReadPowerReportTest, ReadsTheFirstEnergyAmongTheChildrenOfARow) {
  Read(Report(Row("a", "02:00:00",
                  "<x>" + Energy("9") + "</x><totalEnergyConsumption Value=\"8\"/>" + Energy("1") +
                      Energy("2"))));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|1\n");
}

TEST_F(ReadPowerReportTest, SumsUpRowsOfOneIdentity) {
  Read(Report(Row("a", "02:00:00", Energy("1")) + Row("b", "02:00:00", Energy("10")) +
              Row("a", "02:00:00", Energy("2")) + Row("a", "03:00:00", Energy("100")) +
              Row("a", "02:00:00", Energy("-7"))));
  EXPECT_EQ(Rows(),
            "a||2026-11-14:02:00:00|-4\n"
            "b||2026-11-14:02:00:00|10\n"
            "a||2026-11-14:03:00:00|100\n");
}

TEST_F(ReadPowerReportTest, SumsUpIn64Bits) {
  Read(Report(Row("a", "02:00:00", Energy("2147483647")) +
              Row("a", "02:00:00", Energy("2147483647")) +
              Row("a", "02:00:00", Energy("2147483647"))));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|6442450941\n");
}

TEST_F(ReadPowerReportTest, ReadsEnergyIn32Bits) {
  Read(Report(Row("a", "02:00:00", Energy("4294967296")) +
              Row("b", "02:00:00", Energy("-99999999999")) +
              Row("c", "02:00:00", Energy(" 12 W"))));
  EXPECT_EQ(Rows(),
            "a||2026-11-14:02:00:00|2147483647\n"
            "b||2026-11-14:02:00:00|-2147483648\n"
            "c||2026-11-14:02:00:00|12\n");
}

TEST_F(ReadPowerReportTest, OmitsUnknownAndSystemInterrupts) {
  Read(Report(Row("Unknown", "02:00:00", Energy("1")) +
              Row("System Interrupts", "02:00:00", Energy("2")) +
              Row("unknown", "02:00:00", Energy("3")) + Row("Unknown ", "02:00:00", Energy("4")) +
              Row("System Interrupts2", "02:00:00", Energy("5"))));
  EXPECT_EQ(Rows(),
            "unknown||2026-11-14:02:00:00|3\n"
            "Unknown ||2026-11-14:02:00:00|4\n"
            "System Interrupts2||2026-11-14:02:00:00|5\n");
}

TEST_F(ReadPowerReportTest, KeepsARowAtTheCutoffAndDropsOlderOnes) {
  const auto rowAt = [](const char* time) {
    return "<Row AppId='a' TimeStamp='" + std::string(time) + "'>" + Energy("1") + "</Row>";
  };
  Read(Report(rowAt("2026-10-15:10:30:14") + rowAt("2026-10-15:10:30:15")));
  EXPECT_EQ(Rows(), "a||2026-10-15:10:30:15|1\n");
}

TEST_F(ReadPowerReportTest, DropsARowWithoutATime) {
  for (const char* time : {"", "TimeStamp=''", "TimeStamp='yesterday'", "TimeStamp='14.11.2026'",
                           "timestamp='2026-11-14:02:00:00'"}) {
    Read(Report("<Row AppId='a' " + std::string(time) + ">" + Energy("1") + "</Row>"));
    EXPECT_EQ(Rows(), "") << time;
  }
}

TEST_F(ReadPowerReportTest, KeepsTheParsedPartOfAMalformedTime) {
  Read(Report("<Row AppId='a' TimeStamp='2026-11-14T02:00:00'>" + Energy("1") + "</Row>" +
              "<Row AppId='b' TimeStamp='2026-11-14:02:10'>" + Energy("2") + "</Row>" +
              "<Row AppId='c' TimeStamp='2026-11-14:02:10:46 and more'>" + Energy("3") + "</Row>"));
  EXPECT_EQ(Rows(),
            "a||2026-11-14:00:00:00|1\n"
            "b||2026-11-14:02:10:00|2\n"
            "c||2026-11-14:02:10:46|3\n");
}

TEST_F(ReadPowerReportTest, AddsARowWithoutNamesForAnElementWithoutAppId) {
  packages["a"] = {"A", ""};
  Read(Report("<Row TimeStamp='2026-11-14:02:00:00'>" + Energy("1") + "</Row>" +
              "<Row AppId='' TimeStamp='2026-11-14:02:00:00'>" + Energy("2") + "</Row>"));
  EXPECT_EQ(Rows(), "||2026-11-14:02:00:00|3\n");
}

TEST_F(ReadPowerReportTest, ReadsEnergyWithoutAValueAsZero) {
  Read(Report(Row("a", "02:00:00", Energy("5")) +
              Row("b", "02:00:00", "<TotalEnergyConsumption/>") +
              Row("c", "02:00:00", "<TotalEnergyConsumption value='7'/>") +
              Row("d", "02:00:00", Energy("many"))));
  EXPECT_EQ(Rows(),
            "a||2026-11-14:02:00:00|5\n"
            "b||2026-11-14:02:00:00|0\n"
            "c||2026-11-14:02:00:00|0\n"
            "d||2026-11-14:02:00:00|0\n");
}

TEST_F(ReadPowerReportTest, RowWithoutEnergyRepeatsThatOfThePrecedingRow) {
  Read(Report(Row("first", "02:00:00", "") + Row("a", "02:00:00", Energy("17")) +
              Row("b", "02:00:00", "") + Row("c", "02:00:00", "<Other Value='1'/>")));
  EXPECT_EQ(Rows(),
            "first||2026-11-14:02:00:00|0\n"
            "a||2026-11-14:02:00:00|17\n"
            "b||2026-11-14:02:00:00|17\n"
            "c||2026-11-14:02:00:00|17\n");
}

TEST_F(ReadPowerReportTest, RowWithoutEnergyRepeatsThatOfASummedRow) {
  Read(Report(Row("a", "02:00:00", Energy("1")) + Row("a", "02:00:00", Energy("20")) +
              Row("b", "02:00:00", "")));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|21\nb||2026-11-14:02:00:00|20\n");
}

TEST_F(ReadPowerReportTest, RowWithoutEnergyIgnoresOmittedRows) {
  Read(Report(Row("a", "02:00:00", Energy("1")) + Row("Unknown", "02:00:00", Energy("30")) +
              Row("System Interrupts", "02:00:00", Energy("40")) +
              "<Row AppId='old' TimeStamp='2026-09-01:00:00:00'>" + Energy("50") + "</Row>" +
              Row("b", "02:00:00", "")));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|1\nb||2026-11-14:02:00:00|1\n");
}

TEST_F(ReadPowerReportTest, SecondRowOfAnIdentityWithoutEnergyAddsNothing) {
  Read(Report(Row("a", "02:00:00", Energy("17")) + Row("a", "02:00:00", "") +
              Row("b", "02:00:00", "")));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|17\nb||2026-11-14:02:00:00|17\n");
}

TEST_F(ReadPowerReportTest, CarriesNoEnergyFromOneRunToTheNext) {
  Read(Report(Row("a", "02:00:00", Energy("17"))));
  Read(Report(Row("b", "02:00:00", "")));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|17\nb||2026-11-14:02:00:00|0\n");
}

TEST_F(ReadPowerReportTest, ConvertsNamesToUtf8) {
  const std::string name =
      "Stra\xC3\x9F"
      "e \xE9\x9B\xBB \xF0\x9F\x8D\x83 &amp; &#x1F343;";
  Read(Report(Row(name, "02:00:00", Energy("1"))));
  EXPECT_EQ(RowsOf(log).front().Name,
            "Stra\xC3\x9F"
            "e \xE9\x9B\xBB \xF0\x9F\x8D\x83 & \xF0\x9F\x8D\x83");
}

TEST_F(ReadPowerReportTest, ReplacesALoneSurrogate) {
  Read(Report(Row("a&#xD83C;b", "02:00:00", Energy("1"))));
  EXPECT_EQ(RowsOf(log).front().Name,
            "a\xEF\xBF\xBD"
            "b");
}
