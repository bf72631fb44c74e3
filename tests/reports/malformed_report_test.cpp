#include <algorithm>

#include "base/text_builders.h"
#include "reports/report_reader.h"

// Malformed and very large reports: every program of the user can replace the report of the tool.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using ReadPowerReportTest = ReportReader;

const std::string kRow = Row("a", "02:00:00", Energy("1"));
constexpr char kOneRow[] = "a||2026-11-14:02:00:00|1\n";

/// An ASCII text in a wider encoding: each byte with zeros before and after it.
std::string Units(const std::string& ascii, std::size_t before, std::size_t after) {
  std::string text;
  for (const char c : ascii) text += std::string(before, '\0') + c + std::string(after, '\0');
  return text;
}

}  // namespace

TEST_F(ReadPowerReportTest, MalformedReportHasNoRows) {
  for (const std::string& text :
       {std::string(), std::string("   "), std::string("text"), std::string("<!-- only -->"),
        "<Report>" + kRow, "<Report>" + kRow + "</Other>", Report(kRow) + "<", kRow.substr(1),
        Report(kRow + "<Row AppId=a/>"), Report(kRow + "<Row AppId='a/>"), Report(kRow + "<>"),
        Report(kRow + "<![CDATA["), std::string("\0", 1), std::string("<\0>", 3),
        std::string("\xFF\xFE"), std::string("[{\"Name\":\"a\"}]")}) {
    Read(text);
    EXPECT_EQ(Rows(), "") << text;
  }
}

TEST_F(ReadPowerReportTest, EmptyReportHasNoRows) {
  Read("<Report/>");
  EXPECT_EQ(Rows(), "");
  Read("<Report></Report>");
  EXPECT_EQ(Rows(), "");
}

TEST_F(ReadPowerReportTest, ReadsEveryEncodingThatTheParserDetects) {
  const std::string text = Report(kRow);
  int readings = 0;  // each adds its energy to the one row
  for (const std::string& bytes :
       {"\xEF\xBB\xBF" + text, "\xFF\xFE" + Units(text, 0, 1), Units(text, 0, 1),
        "\xFE\xFF" + Units(text, 1, 0), Units(text, 1, 0),
        std::string("\xFF\xFE\0\0", 4) + Units(text, 0, 3), Units(text, 3, 0)}) {
    Read(bytes);
    ++readings;
    EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|" + std::to_string(readings) + "\n");
  }
}

TEST_F(ReadPowerReportTest, AcceptsNestingOfAMillionLevels) {
  constexpr std::size_t kDepth = 1'000'000;
  Read(Repeated("<a>", kDepth));
  EXPECT_EQ(Rows(), "");
  Read(Report(kRow + Repeated("<a>", kDepth) + Repeated("</a>", kDepth)));
  EXPECT_EQ(Rows(), kOneRow);
}

TEST_F(ReadPowerReportTest, AcceptsAMillionAttributes) {
  Read(Report("<Row " + Repeated("x='' ", 1'000'000) + kRow.substr(5)));
  EXPECT_EQ(Rows(), kOneRow);
}

TEST_F(ReadPowerReportTest, AcceptsNamesAndTimesOfManyMegabytes) {
  const std::string name(5'000'000, 'n');
  Read(Report("<Row AppId='" + name + "' TimeStamp='2026-11-14:02:00:00'/>" +
              "<Row AppId='b' TimeStamp='2026-11-14:02:00:00" + std::string(5'000'000, '0') +
              "'/>" + "<Row AppId='c' TimeStamp='" + std::string(5'000'000, '9') + "'/>" +
              "<Row AppId='d' TimeStamp='2026-11-14:02:00:00'>" +
              Energy(std::string(5'000'000, '9')) + "</Row>"));
  ASSERT_EQ(log.Size(), 3U);
  EXPECT_EQ(RowsOf(log).front().Name, name);
  EXPECT_EQ(RowsOf(log).back().TotalEnergy, 2147483647);
}

TEST_F(ReadPowerReportTest, DoesNotResolveCustomEntities) {
  Read("<!DOCTYPE r [<!ENTITY x SYSTEM \"file:///etc/passwd\"><!ENTITY y \"&x;&x;\">]>" +
       Report(Row("&y;", "02:00:00", Energy("1"))));
  EXPECT_EQ(Rows(), "&y;||2026-11-14:02:00:00|1\n");
}

TEST_F(ReadPowerReportTest, EndsANameAtAnEscapedZero) {
  Read(Report(Row("Unknown&#0;x", "02:00:00", Energy("1")) +
              Row("a&#0;b", "02:00:00", Energy("1"))));
  EXPECT_EQ(Rows(), kOneRow);
}

TEST_F(ReadPowerReportTest, MissingReportHasNoRows) {
  const ScratchFolder folder;
  DisplayNames names("", packages, [](const std::string&) { return ""; });
  const ReportingPeriod period(At("2026-11-14:10:30:15"), 30);
  ReadPowerReport(folder.File("missing.xml").wstring(), period, names, log);
  ReadPowerReport(folder.File("").wstring(), period, names, log);
  EXPECT_EQ(log.Size(), 0U);
}

// The file is extended with zeros, which the parser treats as the end. Its text is in the parser's
// own characters.
TEST_F(ReadPowerReportTest, AcceptsAFileWhoseTextAndCopyFitTheLimit) {
  const std::string text = Report(kRow);
  const std::wstring wide(text.begin(), text.end());
  const ScratchFolder folder;
  const std::filesystem::path path = folder.File("report.xml");
  WriteBytes(
      path, std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)));
  DisplayNames names("", packages, [](const std::string&) { return ""; });
  const ReportingPeriod period(At("2026-11-14:10:30:15"), 30);

  constexpr std::size_t kBudget = 1024U * 1024;
  const std::size_t longest = kBudget / (1 + sizeof(wchar_t));
  std::filesystem::resize_file(path, longest + 1);
  ReadPowerReport(path.wstring(), period, names, log, kBudget);
  EXPECT_EQ(Rows(), "");
  std::filesystem::resize_file(path, longest);
  ReadPowerReport(path.wstring(), period, names, log, kBudget);
  EXPECT_EQ(Rows(), kOneRow);
}

TEST_F(ReadPowerReportTest, OmitsARowWithANameThatIsTooLongForTheStore) {
  Read(Report(Row("a", "02:00:00", Energy("1")) +
              Row(std::string(16U * 1024 * 1024, 'n'), "03:00:00", Energy("20")) +
              Row("b", "01:00:00", "")));
  EXPECT_EQ(Rows(), "a||2026-11-14:02:00:00|1\nb||2026-11-14:01:00:00|20\n");
}

TEST_F(ReadPowerReportTest, ReadsATimeAfterMegabytesOfBlanks) {
  Read(Report("<Row AppId='a' TimeStamp='" + std::string(5'000'000, ' ') + "2026-11-14:02:00:00'>" +
              Energy("1") + "</Row>"));
  EXPECT_EQ(Rows(), kOneRow);
}
