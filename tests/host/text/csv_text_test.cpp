#include "text/csv_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using WattleafHost::CsvField;
using WattleafHost::CsvRecord;

TEST(CsvField, LeavesAPlainTextAsItIs) {
  EXPECT_EQ(CsvField("Meadow Office; 2 = b"), "Meadow Office; 2 = b");
  EXPECT_EQ(CsvField("w\xC3\xA4rme"), "w\xC3\xA4rme");
  EXPECT_EQ(CsvField(""), "");
}

TEST(CsvField, QuotesATextWithACommaAQuotationMarkOrALineBreak) {
  EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
  EXPECT_EQ(CsvField("say \"hi\""), "\"say \"\"hi\"\"\"");
  EXPECT_EQ(CsvField("a\nb"), "\"a\nb\"");
  EXPECT_EQ(CsvField("a\rb"), "\"a\rb\"");
}

TEST(CsvField, PutsAnApostropheBeforeATextThatASpreadsheetWouldCalculate) {
  EXPECT_EQ(CsvField("=1+1"), "'=1+1");
  EXPECT_EQ(CsvField("+a"), "'+a");
  EXPECT_EQ(CsvField("-a"), "'-a");
  EXPECT_EQ(CsvField("@SUM(A1)"), "'@SUM(A1)");
  EXPECT_EQ(CsvField("\t=1"), "'\t=1");
  EXPECT_EQ(CsvField("\r=1"), "\"'\r=1\"");
  EXPECT_EQ(CsvField("=cmd(\"x\",1)"), "\"'=cmd(\"\"x\"\",1)\"");
}

TEST(CsvField, KeepsALongText) {
  const std::string text(10'000, 'x');
  EXPECT_EQ(CsvField(text), text);
}

TEST(CsvField, HasTheDigitsThatANumberNeeds) {
  EXPECT_EQ(CsvField(37.5), "37.5");
  EXPECT_EQ(CsvField(-2.0), "-2");
  EXPECT_EQ(CsvField(0.1), "0.1");
  EXPECT_EQ(CsvField(0.0), "0");
}

TEST(CsvField, IsEmptyForANumberThatIsNotFinite) {
  EXPECT_EQ(CsvField(std::numeric_limits<double>::infinity()), "");
  EXPECT_EQ(CsvField(std::numeric_limits<double>::quiet_NaN()), "");
}

TEST(CsvRecord, SeparatesFieldsByCommasAndEndsInCarriageReturnAndLineFeed) {
  EXPECT_EQ(CsvRecord({"a", "", "c"}), "a,,c\r\n");
}
