// The checker's analysis. Its diagnostics are a table in diagnostic_cases.txt (the head
// explains the format): each row a file and the full report it must get. Below the driver,
// the messages and the values and sources the checker reports.
#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

#include "tool/check/check.h"
#include "tool/check/report.h"

namespace hublet {
namespace tool {
namespace {

std::string Trim(const std::string& s) {
  const std::size_t first = s.find_first_not_of(" \r");
  return first == std::string::npos ? "" : s.substr(first, s.find_last_not_of(" \r") - first + 1);
}

std::string Unescape(const std::string& s) {
  const std::string plain = "nrt0s\\|", meant("\n\r\t\0 \\|", 7);
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const char e = s[i] == '\\' && i + 1 < s.size() ? s[++i] : '\0';
    const std::string hex = e == 'x' ? s.substr(i + 1, 2) : "";
    if (e == '\0') out += s[i];
    else if (plain.find(e) != std::string::npos) out += meant[plain.find(e)];
    else if (hex.size() == 2 && hex.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos)
      out += static_cast<char>(std::stoi(hex, nullptr, 16)), i += 2;
    else ADD_FAILURE() << "bad escape \\" << e;
  }
  return out;
}

// The FILE field's bytes: escaped bytes, or ASCII text in a UTF-16 form.
std::string FileBytes(const std::string& field) {
  const std::string form = field.substr(0, field.find(':'));
  if (form != "utf-16le" && form != "utf-16le-bom" && form != "utf-16be-bom") return Unescape(field);
  std::string bytes = form == "utf-16le" ? "" : form == "utf-16le-bom" ? "\xFF\xFE" : "\xFE\xFF";
  for (const char c : Unescape(field.substr(form.size() + 1)))
    bytes += form == "utf-16be-bom" ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

// The report in the table's notation.
std::string Diagnostics(const CheckReport& report) {
  std::string out;
  for (const Diagnostic& d : report.diagnostics)
    out += (out.empty() ? "" : ", ") + std::to_string(d.line) + " " + SeverityName(d.severity) + " " +
           d.code + (d.suggestion.empty() ? "" : " -> " + d.suggestion) + (d.message.empty() ? " (no message)" : "");
  return out.empty() ? "none" : out;
}

TEST(CheckDiagnostics, EachRowOfTheTableGetsExactlyItsReport) {
  std::ifstream in(HUBLET_DIAGNOSTIC_CASES, std::ios::binary);
  int rows = 0, number = 1;
  for (std::string line; std::getline(in, line); ++number) {
    if (Trim(line).empty() || line[0] == '#') continue;
    SCOPED_TRACE("diagnostic_cases.txt line " + std::to_string(number));
    std::vector<std::string> f{""};
    for (std::size_t i = 0; i < line.size(); ++i)  // split at bars, keeping escapes whole
      if (line[i] == '|') f.emplace_back();
      else f.back() += line.substr(i, line[i] == '\\' ? 2 : 1), i += line[i] == '\\';
    ++rows;
    if (f.size() == 3)
      EXPECT_EQ(Diagnostics(CheckPreferenceFile(FileBytes(Trim(f[1])))), Trim(f[2])) << Trim(f[0]);
    else ADD_FAILURE() << "a row is DESCRIPTION | FILE | DIAGNOSTICS";
  }
  EXPECT_GE(rows, 50) << "read from " HUBLET_DIAGNOSTIC_CASES;
}

TEST(CheckDiagnostics, MessagesSayWhatTheReaderDoesInstead) {
  const CheckReport report = CheckPreferenceFile(
      "[MYVIEW]\nUSE_FPS=1\nUSE_GAMMA=1\nFPS=24\nFPS=30\nNUMVP\nGAMMA=abc\n[FLINT]\nEMPTYMTLO=2\n");
  const char* const says[] = {"first, at line 4", "the default, 0", "applies 0", "exactly 1"};
  ASSERT_EQ(report.diagnostics.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_THAT(report.diagnostics[i].message, ::testing::HasSubstr(says[i]));
}

// However often a key repeats, each repeat names the occurrence the reader uses.
TEST(CheckDiagnostics, EveryRepeatOfAKeyCitesItsFirstLine) {
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nFPS=24\nFPS=25\nfps=30\n");
  ASSERT_EQ(report.diagnostics.size(), 3u);
  for (std::size_t i = 1; i < 3; ++i) EXPECT_THAT(report.diagnostics[i].message, ::testing::HasSubstr("first, at line 2"));
}

// A file the reader cannot read still has its lines counted, in its own encoding.
TEST(CheckReportLines, CountsTheLinesOfEveryUtf16Form) {
  for (const char* form : {"utf-16le-bom:", "utf-16be-bom:", "utf-16le:"})
    EXPECT_EQ(CheckPreferenceFile(FileBytes(std::string(form) + "[MYVIEW]\\r\\nFPS=25\\rX=1")).lineCount, 3u) << form;
  EXPECT_EQ(CheckPreferenceFile(std::string("\0[\0M\0]\0\n\0X\0=\0\x31", 14)).lineCount, 2u) << "UTF-16BE without a mark";
}

// A file whose first line only looks like UTF-16LE: the reader takes it as code page 1252
// and finds the values below, so the lines counted are the ones the report names.
TEST(CheckReportLines, AFileReadAfterAllCountsTheLinesAsRead) {
  const CheckReport report = CheckPreferenceFile(std::string(";\0\0\0\0\0\r\n[MYVIEW]\r\nFPS=30\r\n", 26));
  EXPECT_EQ(report.encoding, IniEncoding::Utf16LeNoBom);
  EXPECT_EQ(report.lineCount, 3u);
  for (const SettingValue& value : report.settings) EXPECT_LE(value.line, report.lineCount) << value.name;
}

TEST(CheckDiagnostics, MessagesEscapeControlCharactersAndCutHugeNames) {
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nBE\aLL=1\n" + std::string(500, 'K') + "=1\n");
  ASSERT_EQ(report.diagnostics.size(), 2u);
  EXPECT_THAT(report.diagnostics[0].message, ::testing::HasSubstr("\"BE\\x07LL\""));
  EXPECT_THAT(report.diagnostics[1].message, ::testing::HasSubstr(std::string(80, 'K') + "...\""));
  EXPECT_LT(report.diagnostics[1].message.size(), 200u);
}

// The named settings as "field = value @ line", gammas with their float and their text.
std::string Settings(const CheckReport& report, const std::vector<std::string>& names) {
  std::string out;
  for (const std::string& name : names)
    for (const SettingValue& v : report.settings)
      if (v.name == name)
        out += (out.empty() ? "" : ", ") + v.field + " = " +
               (v.isText ? std::to_string(v.floatValue) + " \"" + v.text + "\"" : std::to_string(v.intValue)) +
               " @ " + std::to_string(v.line);
  return out;
}

TEST(CheckSettings, EveryKeyIsReportedWithItsValueAndSource) {
  const CheckReport report =
      CheckPreferenceFile("[FLINT]\nFORCEPERSP=1\n[MYVIEW]\nUSE_GAMMA=1\nNUMVP=2\nVP1TYPE=6\nGAMMA=1.8\nFPS=\n");
  // 12 switches, 4 layout values, 3 x 4 per-view values, 4 gammas, the frame rate.
  EXPECT_EQ(report.settings.size(), 33u);
  // Line 0: the default applies. The empty FPS value answers the default too.
  EXPECT_EQ(Settings(report, {"FORCEPERSP", "SHADEDOPEN", "VP1TYPE", "GAMMA", "GAMMAIN", "FPS"}),
            "forcePersp = 1 @ 2, shadedOnOpen = 1 @ 0, viewType[1] = 6 @ 6, displayGamma = 1.800000 \"1.8\" @ 7, "
            "fileInGamma = 2.200000 \"2.2\" @ 0, frameRate = 0 @ 8");
  EXPECT_TRUE(!report.layoutStage && report.gammaStage && !report.frameRateStage);
  // Sources follow the first occurrence and ignore lines without a value or under a
  // repeated header.
  const CheckReport repeated = CheckPreferenceFile("[MYVIEW]\nNUMVP\nFPS=24\nFPS=30\n[myview]\nUSE_FPS=1\n");
  EXPECT_EQ(Settings(repeated, {"NUMVP", "FPS", "USE_FPS"}),
            "viewCount = 0 @ 0, frameRate = 24 @ 3, useFrameRate = 0 @ 0");
}

// Answers 1 to every whole-number lookup and "7" to every text lookup.
struct ConstantReader final : ProfileReader {
  std::uint32_t ReadInt(const std::wstring&, const std::wstring&, std::int32_t) override { return 1; }
  std::wstring ReadText(const std::wstring&, const std::wstring&, const std::wstring&) override { return L"7"; }
};

TEST(CheckSettings, ValuesComeFromTheGivenReaderAndLinesFromTheFile) {
  ConstantReader reader;
  const CheckReport report = CheckPreferenceFile("[MYVIEW]\nFPS=30\n", reader);
  EXPECT_EQ(Settings(report, {"FPS", "FORCEORTHO", "VRAYGAMMA"}),
            "frameRate = 1 @ 2, forceOrtho = 1 @ 0, rendererGamma = 7.000000 \"7\" @ 0");
  // Both switches read 1, so the checker warns as the plug-in would behave.
  EXPECT_EQ(Diagnostics(report), "0 warning force-both");
}

}  // namespace
}  // namespace tool
}  // namespace hublet
