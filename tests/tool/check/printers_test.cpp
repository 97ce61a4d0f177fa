// The report printers: JSON that any parser takes, text in the compiler style.
#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>

#include "tool/check/check.h"
#include "tool/check/report.h"
#include "tool/common/json_writer.h"

namespace hublet {
namespace tool {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(JsonString, EscapesWhatJsonRequiresAndKeepsUtf8) {
  const struct {
    std::string in;
    std::string out;
  } cases[] = {
      {"plain", "\"plain\""},
      {"a\"b\\c", "\"a\\\"b\\\\c\""},
      {"\n\r\t\b\f", "\"\\n\\r\\t\\b\\f\""},
      {std::string("\x01\x1F\x00", 3), "\"\\u0001\\u001F\\u0000\""},
      {"\x7F", "\"\x7F\""},
      {"J\xC3\xB6rg \xE2\x82\xAC \xF0\x9F\x98\x80", "\"J\xC3\xB6rg \xE2\x82\xAC \xF0\x9F\x98\x80\""},
      {"J\xF6rg", "\"J\xEF\xBF\xBDrg\""},  // not UTF-8: U+FFFD, so the document stays valid
  };
  for (const auto& c : cases) EXPECT_EQ(JsonString(c.in), c.out);
}

TEST(JsonFloat, GivesNumbersAndNamesWhereJsonHasNoNumber) {
  EXPECT_EQ(JsonFloat(2.2f), "2.2");
  EXPECT_EQ(JsonFloat(0.0f), "0");
  EXPECT_EQ(JsonFloat(1e10f), "1e+10");
  EXPECT_EQ(JsonFloat(std::numeric_limits<float>::infinity()), "\"inf\"");
  EXPECT_EQ(JsonFloat(-std::numeric_limits<float>::infinity()), "\"-inf\"");
  EXPECT_EQ(JsonFloat(std::numeric_limits<float>::quiet_NaN()), "\"nan\"");
}

TEST(CheckJson, AWholeFileDiagnosticHasANullLineAndNoOptionalMembers) {
  const CheckReport report = CheckPreferenceFile(std::string("\xFE\xFF\0[", 4));
  const std::string json = FormatCheckJson(report, "x.ini");
  EXPECT_THAT(json, HasSubstr("\"encoding\": \"utf-16be\""));
  EXPECT_THAT(json, HasSubstr("{\"line\": null, \"severity\": \"error\", \"code\": \"encoding\""));
  EXPECT_THAT(json, Not(HasSubstr("\"suggestion\"")));
}

// Thousands of slips: the first thousand diagnostics are kept, what the values do among
// them however late its line, every one is counted, and a hundred are printed.
TEST(CheckText, KeepsAThousandCountsAllPrintsAHundred) {
  std::string file = "[MYVIEW]\n";
  for (int i = 0; i < 1500; ++i) file += "X" + std::to_string(i) + "=1\n";
  const CheckReport report = CheckPreferenceFile(file + "[FLINT]\nEMPTYMTLO=2\n");
  EXPECT_EQ(report.Total(), 1501u);
  ASSERT_EQ(report.diagnostics.size(), kMaxKeptDiagnostics);
  EXPECT_EQ(report.diagnostics.back().code, "switch-not-one");
  const std::string printed = FormatDiagnostics(report, "f");
  EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 101);
  EXPECT_THAT(printed, HasSubstr("\nf: ... and 1401 more diagnostics"));
}

}  // namespace
}  // namespace tool
}  // namespace hublet
