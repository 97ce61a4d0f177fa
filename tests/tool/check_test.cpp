// The checker's analysis: for each diagnostic a file that triggers it and one that does
// not, and the values and sources it reports.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tool/check.h"

namespace hublet {
namespace tool {
namespace {

using ::testing::ElementsAre;

const Diagnostic* FindCode(const CheckReport& report, const std::string& code) {
  for (const Diagnostic& d : report.diagnostics)
    if (d.code == code) return &d;
  return nullptr;
}

const SettingValue& Setting(const CheckReport& report, const std::string& name) {
  for (const SettingValue& value : report.settings)
    if (value.name == name) return value;
  throw std::runtime_error("no setting " + name);
}

// A literal with its NUL bytes.
template <std::size_t N>
std::string Bytes(const char (&literal)[N]) {
  return std::string(literal, N - 1);
}

std::string Utf16Le(const std::string& ascii, bool withMark) {
  std::string bytes = withMark ? std::string("\xFF\xFE", 2) : std::string();
  for (const char c : ascii) {
    bytes += c;
    bytes += '\0';
  }
  return bytes;
}

std::string Utf16Be(const std::string& ascii) {
  std::string bytes("\xFE\xFF", 2);
  for (const char c : ascii) {
    bytes += '\0';
    bytes += c;
  }
  return bytes;
}

struct DiagnosticCase {
  const char* name;
  std::string bytes;
  const char* code;
  bool triggers;
  std::size_t line;  // expected line when it triggers
  Severity severity;
  const char* suggestion;
};

const Severity E = Severity::Error;
const Severity W = Severity::Warning;

const DiagnosticCase kCases[] = {
    {"misspelt section", "[MYVEIW]\nFPS=2\n", "unknown-section", true, 1, E, "MYVIEW"},
    {"section in another case", "[myview]\nFPS=2\n", "unknown-section", false, 0, E, ""},
    {"swapped letters in a key", "[MYVIEW]\nUSE_VLP=1\n", "unknown-key", true, 2, E, "USE_VPL"},
    {"far from every key", "[MYVIEW]\nCOLOUR=1\n", "unknown-key", true, 2, E, ""},
    {"a fifth viewport's key", "[MYVIEW]\nVP4TYPE=7\n", "unknown-key", true, 2, E, ""},
    {"key in another case", "[MYVIEW]\nuse_vpl=1\n", "unknown-key", false, 0, E, ""},
    {"key of the other section", "[FLINT]\nFPS=25\n", "wrong-section", true, 2, E, "MYVIEW"},
    {"key in its own section", "[MYVIEW]\nFPS=25\n", "wrong-section", false, 0, E, ""},
    {"key twice", "[MYVIEW]\nFPS=24\nfps=30\n", "duplicate-key", true, 3, E, ""},
    {"same key in two sections", "[MYVIEW]\nFPS=24\n[FLINT]\nFPS=2\n", "duplicate-key", false, 0, E, ""},
    {"section twice", "[MYVIEW]\nFPS=24\n[myview]\nNUMVP=2\n", "duplicate-section", true, 3, E, ""},
    {"two sections", "[MYVIEW]\nFPS=24\n[FLINT]\nEMPTYMTLO=1\n", "duplicate-section", false, 0, E, ""},
    {"exactly-one switch at 2", "[FLINT]\nEMPTYMTLO=2\n", "switch-not-one", true, 2, W, ""},
    {"exactly-one switch at 1", "[FLINT]\nEMPTYMTLO=1\n", "switch-not-one", false, 0, W, ""},
    {"non-zero switch at 2", "[MYVIEW]\nUSE_VPL=2\n", "switch-not-one", false, 0, W, ""},
    {"held-only switch at 5", "[FLINT]\nBOXSAVE=5\n", "switch-not-one", false, 0, W, ""},
    {"gamma in words", "[MYVIEW]\nGAMMA=abc\n", "gamma-not-a-number", true, 2, W, ""},
    {"gamma with a trailing comment", "[MYVIEW]\nGAMMAIN=2.2 ; linear\n", "gamma-not-a-number", true, 2, W, ""},
    {"empty gamma", "[MYVIEW]\nGAMMAOUT=\n", "gamma-not-a-number", true, 2, W, ""},
    {"gamma infinity", "[MYVIEW]\nVRAYGAMMA=inf\n", "gamma-not-a-number", true, 2, W, ""},
    {"gamma number", "[MYVIEW]\nGAMMA=2.2\nGAMMAIN=\"1.8\"\nGAMMAOUT=1e0\n", "gamma-not-a-number", false, 0, W, ""},
    {"five viewports", "[MYVIEW]\nNUMVP=5\n", "view-count-range", true, 2, W, ""},
    {"negative viewports", "[MYVIEW]\nNUMVP=-1\n", "view-count-range", true, 2, W, ""},
    {"four viewports", "[MYVIEW]\nNUMVP=4\n", "view-count-range", false, 0, W, ""},
    {"view type 12 set up", "[MYVIEW]\nNUMVP=2\nVP1TYPE=12\n", "view-type-range", true, 3, W, ""},
    {"view type -1 set up", "[MYVIEW]\nVP0TYPE=-1\nNUMVP=9\n", "view-type-range", true, 2, W, ""},
    {"view type 12 not set up", "[MYVIEW]\nNUMVP=1\nVP1TYPE=12\n", "view-type-range", false, 0, W, ""},
    {"view type 9", "[MYVIEW]\nNUMVP=1\nVP0TYPE=9\n", "view-type-range", false, 0, W, ""},
    {"both projections forced", "[FLINT]\nFORCEORTHO=1\nFORCEPERSP=1\n", "force-both", true, 3, W, ""},
    {"one projection forced", "[FLINT]\nFORCEPERSP=1\nFORCEORTHO=0\n", "force-both", false, 0, W, ""},
    {"ortho at 2 is not forced", "[FLINT]\nFORCEPERSP=1\nFORCEORTHO=2\n", "force-both", false, 0, W, ""},
    {"key above the first header", "FPS=25\n[MYVIEW]\n", "before-first-section", true, 1, E, ""},
    {"comment above the first header", "; settings\n[MYVIEW]\n", "before-first-section", false, 0, E, ""},
    {"comment after a header", "[MYVIEW] ; views\nFPS=2\n", "text-after-header", true, 1, W, ""},
    {"plain header", "[MYVIEW]\nFPS=2\n", "text-after-header", false, 0, W, ""},
    {"NUL inside a value", Bytes("[MYVIEW]\nFPS=2\0" "5\n"), "nul-byte", true, 2, E, ""},
    {"known key without '='", "[MYVIEW]\nFPS\n", "no-equals", true, 2, E, ""},
    {"key with '='", "[MYVIEW]\nFPS = 25\n", "no-equals", false, 0, E, ""},
    {"empty integer", "[MYVIEW]\nFPS=\n", "empty-value", true, 2, W, ""},
    {"integer 0", "[MYVIEW]\nFPS=0\n", "empty-value", false, 0, W, ""},
    {"switch in words", "[MYVIEW]\nUSE_VPL=yes\n", "not-an-integer", true, 2, W, ""},
    {"quoted number", "[MYVIEW]\nUSE_VPL=\"1\"\n", "not-an-integer", false, 0, W, ""},
    {"UTF-8 byte-order mark", "\xEF\xBB\xBF[MYVIEW]\nFPS=25\n", "encoding", true, 1, E, ""},
    {"UTF-16BE", Utf16Be("[MYVIEW]\r\nFPS=25\r\n"), "encoding", true, 0, E, ""},
    {"UTF-16LE without mark", Utf16Le("[MYVIEW]\r\nFPS=25\r\n", false), "encoding", true, 0, E, ""},
    {"UTF-16LE with mark", Utf16Le("[MYVIEW]\r\nFPS=25\r\n", true), "encoding", false, 0, E, ""},
    {"UTF-8 text without mark", "[MYVIEW]\nGAMMA=2.2\nAUTHOR=J\xC3\xB6rg\n", "utf8-as-ansi", true, 3, W, ""},
    {"UTF-8 in a comment", "[MYVIEW]\n; J\xC3\xB6rg\nFPS=2\n", "utf8-as-ansi", false, 0, W, ""},
    {"code page 1252 text", "[MYVIEW]\nAUTHOR=J\xF6rg\n", "utf8-as-ansi", false, 0, W, ""},
};

TEST(CheckDiagnostics, EachTriggersOnItsCaseAndOnlyThere) {
  for (const DiagnosticCase& c : kCases) {
    SCOPED_TRACE(c.name);
    const CheckReport report = CheckPreferenceFile(c.bytes);
    const Diagnostic* found = FindCode(report, c.code);
    if (!c.triggers) {
      EXPECT_EQ(found, nullptr) << found->message;
      continue;
    }
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->line, c.line) << found->message;
    EXPECT_EQ(found->severity, c.severity);
    EXPECT_EQ(found->suggestion, c.suggestion);
    EXPECT_FALSE(found->message.empty());
  }
}

TEST(CheckDiagnostics, AnEmptyFileAndTheCommentedExampleStyleAreClean) {
  for (const std::string& bytes : {std::string(), std::string("; only a comment\r\n"),
                                   std::string("[FLINT]\r\nFORCEPERSP=1\r\n[MYVIEW]\r\nUSE_VPL=1\r\nNUMVP=4\r\n")}) {
    const CheckReport report = CheckPreferenceFile(bytes);
    EXPECT_TRUE(report.diagnostics.empty()) << report.diagnostics.front().message;
  }
}

TEST(CheckDiagnostics, MessagesSayWhatTheReaderDoesInstead) {
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nFPS=24\nFPS=30\nNUMVP\nGAMMA=abc\n[FLINT]\nEMPTYMTLO=2\n");
  ASSERT_EQ(report.diagnostics.size(), 4u);
  EXPECT_THAT(report.diagnostics[0].message, ::testing::HasSubstr("first, at line 2"));
  EXPECT_THAT(report.diagnostics[1].message, ::testing::HasSubstr("the default, 0"));
  EXPECT_THAT(report.diagnostics[2].message, ::testing::HasSubstr("applies 0"));
  EXPECT_THAT(report.diagnostics[3].message, ::testing::HasSubstr("exactly 1"));
}

TEST(CheckDiagnostics, ComeInLineOrderWithWholeFileOnesFirst) {
  const CheckReport report = CheckPreferenceFile(Utf16Le("[MYVIEW]\r\n", false));
  ASSERT_EQ(report.diagnostics.size(), 1u);  // nothing else is worth saying about it
  const CheckReport mixed = CheckPreferenceFile("[FLINT]\nFORCEPERSP=3\n[MYVIEW]\nUSE_VLP=1\nFPS\nX=1\n");
  std::vector<std::size_t> lines;
  for (const Diagnostic& d : mixed.diagnostics) lines.push_back(d.line);
  EXPECT_THAT(lines, ElementsAre(2u, 4u, 5u, 6u));
}

TEST(CheckSettings, EveryKeyIsReportedWithItsValueAndSource) {
  const CheckReport report =
      CheckPreferenceFile("[FLINT]\nFORCEPERSP=1\n[MYVIEW]\nUSE_GAMMA=1\nNUMVP=2\nVP1TYPE=6\nGAMMA=1.8\nFPS=\n");
  // 12 switches, 4 layout values, 3 x 4 per-view values, 4 gammas, the frame rate.
  EXPECT_EQ(report.settings.size(), 33u);
  EXPECT_EQ(Setting(report, "FORCEPERSP").intValue, 1);
  EXPECT_EQ(Setting(report, "FORCEPERSP").line, 2u);
  EXPECT_EQ(Setting(report, "SHADEDOPEN").intValue, 1);  // its default
  EXPECT_EQ(Setting(report, "SHADEDOPEN").line, 0u);
  EXPECT_EQ(Setting(report, "VP1TYPE").intValue, 6);
  EXPECT_EQ(Setting(report, "VP1TYPE").field, "viewType[1]");
  EXPECT_EQ(Setting(report, "VP1TYPE").line, 6u);
  EXPECT_FLOAT_EQ(Setting(report, "GAMMA").floatValue, 1.8f);
  EXPECT_EQ(Setting(report, "GAMMA").text, "1.8");
  EXPECT_EQ(Setting(report, "GAMMAIN").text, "2.2");
  EXPECT_EQ(Setting(report, "GAMMAIN").line, 0u);
  EXPECT_EQ(Setting(report, "FPS").intValue, 0);  // an empty value answers the default
  EXPECT_EQ(Setting(report, "FPS").line, 8u);
  EXPECT_FALSE(report.layoutStage);
  EXPECT_TRUE(report.gammaStage);
  EXPECT_FALSE(report.frameRateStage);
}

TEST(CheckSettings, SourcesFollowTheFirstOccurrenceAndIgnoreValuelessLines) {
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nNUMVP\nFPS=24\nFPS=30\n[myview]\nUSE_FPS=1\n");
  EXPECT_EQ(Setting(report, "NUMVP").line, 0u);
  EXPECT_EQ(Setting(report, "FPS").intValue, 24);
  EXPECT_EQ(Setting(report, "FPS").line, 3u);
  EXPECT_EQ(Setting(report, "USE_FPS").intValue, 0);  // under the repeated header
}

// Answers 1 to every whole-number lookup and "7" to every text lookup.
class ConstantReader final : public ProfileReader {
 public:
  std::uint32_t ReadInt(const std::wstring&, const std::wstring&, std::int32_t) override { return 1; }
  std::wstring ReadText(const std::wstring&, const std::wstring&, const std::wstring&) override { return L"7"; }
};

TEST(CheckSettings, ValuesComeFromTheGivenReaderAndLinesFromTheFile) {
  ConstantReader reader;
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nFPS=30\n", reader);
  EXPECT_EQ(Setting(report, "FPS").intValue, 1);
  EXPECT_EQ(Setting(report, "FPS").line, 2u);
  EXPECT_EQ(Setting(report, "FORCEORTHO").intValue, 1);
  EXPECT_FLOAT_EQ(Setting(report, "VRAYGAMMA").floatValue, 7.0f);
  // Both switches read 1, so the checker warns as the plug-in would behave.
  EXPECT_NE(FindCode(report, "force-both"), nullptr);
}

}  // namespace
}  // namespace tool
}  // namespace hublet
