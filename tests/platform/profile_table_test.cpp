// One table of preference-file cases, kept as text in profile_cases.txt (its head explains
// the format). Each row writes a file and asks OpenProfile's reader: natively our own
// parser, which must answer as Windows does; in the Windows cross-build the real profile
// API under Wine. Rows are decoded as their tests run: a bad line fails its own test, and
// gtest names the line with the failure.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <memory>
#include <ostream>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/profile.h"
#include "tests/platform/escaped_text.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

using Bad = std::runtime_error;
using testing::Bytes;
using testing::Units;

// An int answer as the decimal text of the UINT it stands for.
std::wstring Number(const std::string& field) {
  const bool digits = std::regex_match(field, std::regex("-?[0-9]{1,10}"));
  const long long n = digits ? std::stoll(field) : -1;
  if (!digits || n < -2147483648LL || n > 4294967295LL) throw Bad("not a 32-bit number: " + field);
  return std::to_wstring(static_cast<std::uint32_t>(n));
}

// Makes what a file line describes.
void Write(const std::string& line, const testing::ScratchFile& file) {
  static const std::regex form(
      R"(file *(|utf-16le|utf-16le-bom|utf-16be-bom) *= *(.*?) *|file +(missing|directory) *)");
  std::smatch m;
  if (!std::regex_match(line, m, form)) throw Bad("no file line above, or a bad one: " + line);
  if (m[3] == "directory") return file.MakeDirectory();
  if (m[3] == "missing") return;
  if (m[1] == "") return file.Rewrite(Bytes(m[2]));
  const bool big = m[1] == "utf-16be-bom";
  std::string bytes = big ? "\xFE\xFF" : m[1] == "utf-16le" ? "" : "\xFF\xFE";
  for (const wchar_t unit : Units(m[2])) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8 & 0xFF);
    bytes += big ? std::string{high, low} : std::string{low, high};
  }
  file.Rewrite(bytes);
}

// A row's line (0: the table cannot be read), the file line above it, and its fields:
// split at unescaped bars and trimmed, escapes kept.
struct Row { int line; std::string file; std::vector<std::string> fields; };

std::vector<Row> LoadRows() {
  std::ifstream in(HUBLET_PROFILE_CASES, std::ios::binary);
  std::vector<Row> rows(in ? 0 : 1, Row{0, "", {}});
  static const std::regex skipped("(file|#).*| *"), outerSpaces("^ +| +$");
  std::string line, file;
  for (int number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // a checkout with CR LF
    if (line.compare(0, 4, "file") == 0) file = line;
    if (std::regex_match(line, skipped)) continue;
    rows.push_back(Row{number, file, {""}});
    std::vector<std::string>& fields = rows.back().fields;
    for (std::size_t i = 0; i < line.size(); i += line[i] == '\\' ? 2 : 1) {
      if (line[i] == '|') fields.emplace_back();
      else fields.back() += line.substr(i, line[i] == '\\' ? 2 : 1);
    }
    for (std::string& field : fields) field = std::regex_replace(field, outerSpaces, "");
  }
  return rows;
}

void PrintTo(const Row& row, std::ostream* out) { *out << "profile_cases.txt line " << row.line; }

class ProfileTable : public ::testing::TestWithParam<Row> {};

TEST_P(ProfileTable, ReaderAnswersAsTheProfileApi) {
  const std::vector<std::string>& f = GetParam().fields;
  if (GetParam().line == 0) throw Bad("cannot open " HUBLET_PROFILE_CASES);
  if (f.size() < 5 || (f[0] != "int" && f[0] != "text"))
    throw Bad("a row is int|text | DESCRIPTION | SECTION | KEY | ANSWER [| NAME = VALUE]...");
  const bool isInt = f[0] == "int";
  const auto parse = [&](const std::string& a) { return isInt ? Number(a) : Units(a); };
  // Windows', Wine's and the default; every one must parse, asked for or not.
  std::wstring answers[] = {parse(f[4]), parse(f[4]), parse(isInt ? "-99" : "2.2")};
  static const std::regex option("(wine|default) *= *(.*)");
  std::smatch m;
  for (std::size_t i = 5; i < f.size(); ++i) {
    if (!std::regex_match(f[i], m, option)) throw Bad("not wine = or default =: " + f[i]);
    answers[m[1] == "wine" ? 1 : 2] = parse(m[2]);
  }
#ifdef _WIN32
  answers[0] = answers[1];  // the Windows build asks the real API, under Wine
#endif
  Bytes(f[1]);  // the description names the test, so it must decode too
  const testing::ScratchFile file;
  Write(GetParam().file, file);
  const std::unique_ptr<ProfileReader> reader = OpenProfile(file.path());
  const std::wstring section = Units(f[2]), key = Units(f[3]);
  const auto fallback = static_cast<std::int32_t>(isInt ? std::stoul(answers[2]) : 0);
  EXPECT_EQ(answers[0], isInt ? std::to_wstring(reader->ReadInt(section, key, fallback))
                              : reader->ReadText(section, key, answers[2]));
}

std::string CaseName(const ::testing::TestParamInfo<Row>& info) {
  const std::string what = info.param.fields.size() > 1 ? info.param.fields[1] : "";
  const std::string name = std::to_string(info.index) + "_" + what;
  return std::regex_replace(name, std::regex("[^A-Za-z0-9_]"), "_").substr(0, 60);
}

INSTANTIATE_TEST_SUITE_P(Cases, ProfileTable, ::testing::ValuesIn(LoadRows()), CaseName);

}  // namespace
}  // namespace hublet
