#include "reports/power_budget.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <pugixml.hpp>
#include <string>

#include "base/text_builders.h"
#include "reports/report_reader.h"

// The memory of the parser for a report does not exceed the bound that is computed before parsing.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

std::size_t g_bytes = 0;
std::size_t g_peakBytes = 0;
constexpr std::size_t kHeadBytes = 16;

void* CountedAllocation(std::size_t bytes) {
  auto* const block = static_cast<std::size_t*>(std::malloc(kHeadBytes + bytes));
  *block = bytes;
  g_bytes += bytes;
  g_peakBytes = std::max(g_peakBytes, g_bytes);
  return reinterpret_cast<char*>(block) + kHeadBytes;
}

void CountedRelease(void* block) {
  void* const head = static_cast<char*>(block) - kHeadBytes;
  g_bytes -= *static_cast<std::size_t*>(head);
  std::free(head);
}

/// Counts the bytes that the parser allocates.
class MostReportTreeBytesTest : public ReportReader {
 protected:
  MostReportTreeBytesTest() {
    g_bytes = 0;
    g_peakBytes = 0;
    pugi::set_memory_management_functions(&CountedAllocation, &CountedRelease);
  }
  ~MostReportTreeBytesTest() override {
    EXPECT_EQ(g_bytes, 0U);
    pugi::set_memory_management_functions(allocate_, release_);
  }

  /// The peak number of bytes of the parser while it reads a report.
  std::size_t PeakOf(const std::string& text) {
    g_peakBytes = 0;
    Read(text);
    return g_peakBytes;
  }

 private:
  const pugi::allocation_function allocate_ = pugi::get_memory_allocation_function();
  const pugi::deallocation_function release_ = pugi::get_memory_deallocation_function();
};

std::string InUtf16(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

std::u16string RepeatedWide(std::u16string_view part, std::size_t count) {
  std::u16string text;
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

constexpr std::size_t kMany = 20'000;

}  // namespace

TEST_F(MostReportTreeBytesTest, IsAnUpperBoundForReportsOfAnyShape) {
  for (const std::string& part :
       {std::string("<a/>"), std::string("<a/>x"), std::string("<a>x</a>x"),
        std::string("<a> </a>"), std::string("<a b=''/>"), std::string("<a b='>' c='='>x</a>"),
        std::string("<![CDATA[x]]>"), std::string("<![CDATA[<>=]]>x"), std::string("x<!-- <a> -->"),
        std::string("x<?p <a> ?>"), std::string("<a>x> <b/></a>"), std::string("&lt;=<a/>"),
        Row("\\Device\\C\\a.exe", "02:10:46", Energy("17"))}) {
    const std::string text = Report(Repeated(part, kMany));
    EXPECT_LE(PeakOf(text), MostReportTreeBytes(text)) << part;
    EXPECT_GE(g_peakBytes, text.size() * (1 + sizeof(wchar_t))) << part << " was not parsed";
  }
}

TEST_F(MostReportTreeBytesTest, IsAnUpperBoundForReportsInUtf16) {
  // One byte of U+2020 is that of a blank, one byte of U+013C that of "<".
  for (const std::u16string& part :
       {std::u16string(u"<a>\u2020</a>"), std::u16string(u"<\u012F/>\u0920"),
        std::u16string(u"<a>\u013C</a>"), std::u16string(u"<a b=''/>x")}) {
    const std::string text = InUtf16(u"<r>" + RepeatedWide(part, kMany) + u"</r>");
    EXPECT_LE(PeakOf(text), MostReportTreeBytes(text));
    EXPECT_GE(g_peakBytes, kMany * 64) << "was not parsed";
  }
}

TEST_F(MostReportTreeBytesTest, CountsEachOfManyEqualSigns) {
  // An attribute is five words, and one byte in a hundred is lost to pages.
  const std::uint64_t none = MostReportTreeBytes(std::string(100'000, ' '));
  const std::uint64_t each = MostReportTreeBytes(std::string(100'000, '='));
  constexpr std::uint64_t kAttributes = 100'000 * 5 * sizeof(void*);
  EXPECT_EQ(each, 100'000 * sizeof(wchar_t) + kAttributes + kAttributes / 100 + 32 * 1024);
  EXPECT_LT(none, each);
}

TEST_F(MostReportTreeBytesTest, CountsEndTagsAsElementsOnlyInATextWithZeroBytes) {
  // An element is eight words, and one byte in a hundred is lost to pages.
  constexpr std::uint64_t kElements = 100'000 * 8 * sizeof(void*);
  const std::string text = Repeated("<a></a>", 100'000);
  EXPECT_EQ(MostReportTreeBytes(text),
            text.size() * sizeof(wchar_t) + kElements + kElements / 100 + 32 * 1024);
  const std::string withZero = std::string(1, '\0') + text;
  EXPECT_EQ(MostReportTreeBytes(withZero),
            withZero.size() * sizeof(wchar_t) + 2 * kElements + 2 * kElements / 100 + 32 * 1024);
}

TEST_F(MostReportTreeBytesTest, OverestimatesARealReportByLessThanHalf) {
  const std::string text = Report(Repeated(
      Row("\\Device\\HarddiskVolume3\\Program Files\\Meadow\\meadow.exe", "02:10:46", Energy("17")),
      kMany));
  EXPECT_LT(MostReportTreeBytes(text), PeakOf(text) * 3 / 2);
}

TEST_F(MostReportTreeBytesTest, CountsTheCopyInTheParsersCharacters) {
  EXPECT_EQ(MostReportTextBytes(1000), 1000 * (1 + sizeof(wchar_t)));
  const std::string text = Report(Row("a", "02:00:00", std::string(1'000'000, ' ')));
  EXPECT_GE(MostReportTreeBytes(text), MostReportTextBytes(text.size()));
  EXPECT_LT(MostReportTreeBytes(text), MostReportTextBytes(text.size()) + 100'000);
}

TEST_F(MostReportTreeBytesTest, ReportAtTheLimitIsReadAndALargerOneIsNot) {
  for (const std::string& text :
       {Report(Row("a", "02:00:00", Energy("1"))),
        Report(Row("a", "02:00:00", Energy("1") + std::string(1'000'000, ' '))),
        Report(Row("a", "02:00:00", Energy("1") + Repeated("<x/>", 10'000)))}) {
    const std::size_t most = MostReportTreeBytes(text);
    const ScratchFolder folder;
    WriteBytes(folder.File("report.xml"), text);
    DisplayNames names("", packages, [](const std::string&) { return ""; });
    const ReportingPeriod period(At("2026-11-14:10:30:15"), 30);
    PowerLog tooLarge;
    ReadPowerReport(folder.File("report.xml").wstring(), period, names, tooLarge, most - 1);
    EXPECT_EQ(tooLarge.Size(), 0U);
    PowerLog read;
    ReadPowerReport(folder.File("report.xml").wstring(), period, names, read, most);
    EXPECT_EQ(read.Size(), 1U);
  }
}

// The length is checked before anything is read. The sparse file takes no room on the disk.
TEST_F(MostReportTreeBytesTest, FileAboveTheLimitIsNotRead) {
  const ScratchFolder folder;
  const std::filesystem::path path = folder.File("report.xml");
  WriteBytes(path, Report(Row("a", "02:00:00", Energy("1"))));
  std::filesystem::resize_file(path, 576U * 1024 * 1024 / (1 + sizeof(wchar_t)) + 1);
  DisplayNames names("", packages, [](const std::string&) { return ""; });
  ReadPowerReport(path.wstring(), ReportingPeriod(At("2026-11-14:10:30:15"), 30), names, log);
  EXPECT_EQ(Rows(), "");
  EXPECT_EQ(g_peakBytes, 0U);
}
