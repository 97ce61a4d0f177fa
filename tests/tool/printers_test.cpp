// The report printers: JSON that any parser takes, text in the compiler style.
#include <gmock/gmock.h>

#include <limits>

#include "platform/wide_text.h"

#include "tool/check.h"
#include "tool/json_writer.h"
#include "tool/keys_reference.h"
#include "tool/report.h"

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

TEST(CheckJson, CarriesEveryPartOfTheReport) {
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nUSE_VLP=1\nGAMMA=abc\n");
  const std::string json = FormatCheckJson(report, "dir\\Vantor.ini");
  EXPECT_THAT(json, HasSubstr("\"schema\": \"hublet-check/1\""));
  EXPECT_THAT(json, HasSubstr("\"file\": \"dir\\\\Vantor.ini\""));
  EXPECT_THAT(json, HasSubstr("\"encoding\": \"ansi\""));
  EXPECT_THAT(json, HasSubstr("{\"section\": \"MYVIEW\", \"key\": \"GAMMA\", \"field\": \"displayGamma\", "
                              "\"read\": \"gamma\", \"value\": 0, \"text\": \"abc\", \"source\": {\"line\": 3}}"));
  EXPECT_THAT(json, HasSubstr("\"key\": \"FPS\", \"field\": \"frameRate\", \"read\": \"frame-rate\", \"value\": 0, "
                              "\"source\": \"default\"}"));
  EXPECT_THAT(json, HasSubstr("{\"line\": 2, \"severity\": \"error\", \"code\": \"unknown-key\""));
  EXPECT_THAT(json, HasSubstr("\"key\": \"USE_VLP\", \"suggestion\": \"USE_VPL\"}"));
  EXPECT_THAT(json, HasSubstr("\"summary\": {\"errors\": 1, \"warnings\": 1}"));
}

TEST(CheckJson, AWholeFileDiagnosticHasANullLineAndNoOptionalMembers) {
  const CheckReport report = CheckPreferenceFile(std::string("\xFE\xFF\0[", 4));
  const std::string json = FormatCheckJson(report, "x.ini");
  EXPECT_THAT(json, HasSubstr("\"encoding\": \"utf-16be\""));
  EXPECT_THAT(json, HasSubstr("{\"line\": null, \"severity\": \"error\", \"code\": \"encoding\""));
  EXPECT_THAT(json, Not(HasSubstr("\"suggestion\"")));
}

TEST(CheckText, PrintsValuesByStageAndDiagnosticsInCompilerStyle) {
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nUSE_GAMMA=1\nGAMMA=2.2x\nFPS=24\nFPS=25\n");
  const std::string text = FormatCheckText(report, "Vantor.ini");
  EXPECT_THAT(text, HasSubstr("Vantor.ini: ANSI (code page 1252), 5 lines\n"));
  EXPECT_THAT(text, HasSubstr("Gamma stage of each preference pass: runs (USE_GAMMA = 1):\n"));
  EXPECT_THAT(text, HasSubstr("Layout stage of each preference pass: does not run (USE_VPL = 0):\n"));
  EXPECT_THAT(text, HasSubstr("GAMMA       2.2 (text \"2.2x\")  line 3   displayGamma\n"));
  EXPECT_THAT(text, HasSubstr("\nVantor.ini:3: warning: GAMMA = \"2.2x\""));
  EXPECT_THAT(text, HasSubstr("[gamma-not-a-number]\n"));
  EXPECT_THAT(text, HasSubstr("\nVantor.ini:5: error: "));
  EXPECT_THAT(text, HasSubstr("\n1 error, 1 warning.\n"));
}

TEST(KeysReference, ListsEveryRowOfTheTableAndTheNotes) {
  const std::string markdown = KeysMarkdown();
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k)
    EXPECT_THAT(markdown, HasSubstr("`" + WideToUtf8(KeyName(kPreferenceKeys[k], 0))));
  EXPECT_THAT(markdown, HasSubstr("| MYVIEW | `VP0TYPE to VP3TYPE` | `viewType[0..3]` | 0 | every pass, layout stage (USE_VPL) | value |"));
  EXPECT_THAT(markdown, HasSubstr("| FLINT | `EMPTYMTLO` | `emptyMtlOnOpen` | 0 | at start | exactly 1 |"));
  EXPECT_THAT(markdown, HasSubstr("| \"2.2\" |"));
  EXPECT_THAT(markdown, HasSubstr("NUMVP above 4 sets up only the 4 viewports"));
  EXPECT_THAT(KeysText(), HasSubstr("[MYVIEW] USE_FPS\n  field useFrameRate, default 0, read at start, non-zero\n"));
}

}  // namespace
}  // namespace tool
}  // namespace hublet
