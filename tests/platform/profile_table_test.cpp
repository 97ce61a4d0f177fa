// One table of preference-file cases, kept as text in profile_cases.txt (its head explains
// the format). Each row writes a file and asks OpenProfile's reader: natively our own
// parser, which must answer as Windows does; in the Windows cross-build the real profile
// API under Wine. Rows are decoded as their tests run, so that a bad line fails by name.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/profile.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

using Bad = std::runtime_error;
const std::size_t kNone = std::string::npos;
const char kHex[] = "0123456789abcdefABCDEF";

struct Row {
  int line, fileLine;
  std::string file;                 // the file line above the row
  std::vector<std::string> fields;  // the row split at |
};

struct Answer {
  std::uint32_t number;
  std::wstring text;  // UTF-16 code units, as the reader takes them
};

std::string Trim(const std::string& s) {
  const std::size_t first = s.find_first_not_of(' ');
  return first == kNone ? "" : s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// One character of a field, escaped or not; i moves past it.
char32_t Character(const std::string& s, std::size_t& i) {
  const char c = i < s.size() ? s[i++] : '\0', e = c == '\\' && i < s.size() ? s[i++] : '\0';
  const std::string plain = "rntvf0s\\|{", meant("\r\n\t\v\f\0 \\|{", 10);
  const std::size_t digits = e == 'x' ? 2 : e == 'u' ? 4 : e == 'U' ? 8 : 0;
  if (c < 0x20 || c > 0x7E) throw Bad("raw control or non-ASCII byte, or a field cut short");
  if (c != '\\') return static_cast<char32_t>(c);
  if (e != '\0' && plain.find(e) != kNone) return static_cast<char32_t>(meant[plain.find(e)]);
  const std::string hex = s.substr(i, digits);
  i += digits;
  const bool good = digits > 0 && hex.size() == digits && hex.find_first_not_of(kHex) == kNone;
  if (!good || std::stoul(hex, nullptr, 16) > 0x10FFFF) throw Bad("bad escape in " + s);
  return static_cast<char32_t>(std::stoul(hex, nullptr, 16));
}

std::u32string Decode(const std::string& s) {
  std::u32string out;
  for (std::size_t i = 0; i < s.size();) {
    if (s[i] != '{') {
      out += Character(s, i);
      continue;
    }
    const char32_t unit = Character(s, ++i);
    const std::size_t close = s.find('}', i);
    if (close == kNone || s[i] != '*' || s.find_first_not_of("0123456789", i + 1) != close ||
        close == i + 1)
      throw Bad("a repetition is {C*N}");
    out.append(std::stoul(s.substr(i + 1, close - i - 1)), unit);
    i = close + 1;
  }
  return out;
}

std::string Bytes(const std::string& field) {
  std::string bytes;
  for (const char32_t c : Decode(field)) {
    if (c > 0xFF) throw Bad("a character past \\xFF in bytes: " + field);
    bytes += static_cast<char>(c);
  }
  return bytes;
}

std::wstring Units(const std::string& field) {
  std::wstring units;
  for (const char32_t c : Decode(field)) {
    if (c > 0xFFFF) units += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
    units += static_cast<wchar_t>(c > 0xFFFF ? 0xDC00 + (c & 0x3FF) : c);
  }
  return units;
}

// The bytes of a file line's file; where is "" for a file, else missing or directory.
std::string FileBytes(const std::string& line, std::string& where) {
  const std::size_t eq = line.find('=');
  const std::string kind = Trim(line.substr(4, eq == kNone ? eq : eq - 4));
  where = eq == kNone ? kind : "";
  if (where == "missing" || where == "directory") return "";
  const bool big = kind == "utf-16be-bom", bom = big || kind == "utf-16le-bom";
  if (eq == kNone || !(kind.empty() || bom || kind == "utf-16le"))
    throw Bad("a file line is file [utf-16le-bom|utf-16le|utf-16be-bom] = .. or file missing");
  if (kind.empty()) return Bytes(Trim(line.substr(eq + 1)));
  std::string bytes = !bom ? "" : big ? "\xFE\xFF" : "\xFF\xFE";
  for (const wchar_t unit : Units(Trim(line.substr(eq + 1)))) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>((unit >> 8) & 0xFF);
    bytes += big ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

Answer Parse(const std::string& field, bool isInt) {
  char* end = nullptr;
  const long long n = std::strtoll(field.c_str(), &end, 10);
  if (isInt && (field.empty() || *end != '\0' || n < -2147483648LL || n > 4294967295LL))
    throw Bad("not a 32-bit number: " + field);
  return isInt ? Answer{static_cast<std::uint32_t>(n), L""} : Answer{0, Units(field)};
}

std::vector<Row> LoadRows() {
  std::ifstream in(HUBLET_PROFILE_CASES, std::ios::binary);
  std::vector<Row> rows(in ? 0 : 1, Row{0, 0, "", {"", "cannot open the table"}});
  std::string line, file;
  int fileLine = 0;
  for (int number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // a checkout with CR LF
    if (line.compare(0, 4, "file") == 0) file = line, fileLine = number;
    if (line.compare(0, 4, "file") == 0 || Trim(line).empty() || line[0] == '#') continue;
    rows.push_back(Row{number, fileLine, file, {""}});
    std::vector<std::string>& fields = rows.back().fields;
    for (std::size_t i = 0; i < line.size(); ++i) {
      const bool escaped = line[i] == '\\' && i + 1 < line.size();
      if (line[i] == '|') fields.emplace_back();
      if (line[i] != '|') fields.back() += escaped ? line.substr(i++, 2) : line.substr(i, 1);
    }
    for (std::string& field : fields) field = Trim(field);
  }
  return rows;
}

// A row decoded: the file to write and the question to ask of it.
struct Case {
  bool isInt;
  std::string where, bytes;  // where: "" for a file, else missing or directory
  std::wstring section, key;
  Answer fallback, windows, wine;
};

Case Read(const Row& row) {
  const std::vector<std::string>& f = row.fields;
  if (row.line == 0) throw Bad("cannot open " HUBLET_PROFILE_CASES);
  if (row.file.empty()) throw Bad("no file line above this row");
  if (f.size() < 5 || (f[0] != "int" && f[0] != "text"))
    throw Bad("a row is int|text | DESCRIPTION | SECTION | KEY | ANSWER [| NAME = VALUE]...");
  Case c{f[0] == "int", "", "", Units(f[2]), Units(f[3]), {}, {}, {}};
  c.bytes = FileBytes(row.file, c.where);
  c.fallback = Parse(c.isInt ? "-99" : "2.2", c.isInt);
  c.windows = c.wine = Parse(f[4], c.isInt);
  for (std::size_t i = 5; i < f.size(); ++i) {
    const std::size_t eq = f[i].find('=');
    const std::string name = Trim(f[i].substr(0, eq));
    if (eq == kNone || (name != "wine" && name != "default")) throw Bad("not wine = or default =");
    (name == "wine" ? c.wine : c.fallback) = Parse(Trim(f[i].substr(eq + 1)), c.isInt);
  }
  Bytes(f[1]);  // the description names the test, so it must decode too
  return c;
}

// Failure messages point at the row's line; test names show what it checks.
void PrintTo(const Row& row, std::ostream* out) { *out << "profile_cases.txt line " << row.line; }

class ProfileTable : public ::testing::TestWithParam<Row> {};

TEST_P(ProfileTable, ReaderAnswersAsTheProfileApi) {
  Case row;
  try {
    row = Read(GetParam());
  } catch (const std::exception& e) {
    FAIL() << "profile_cases.txt line " << GetParam().line << " (file line "
           << GetParam().fileLine << ") does not parse: " << e.what();
  }
  testing::ScratchFile file;
  if (row.where.empty()) file.Rewrite(row.bytes);
  if (row.where == "directory") file.MakeDirectory();
#ifdef _WIN32
  const Answer& expected = row.wine;
#else
  const Answer& expected = row.windows;
#endif
  const std::unique_ptr<ProfileReader> reader = OpenProfile(file.path());
  if (row.isInt) {
    EXPECT_EQ(expected.number, reader->ReadInt(row.section, row.key,
                                               static_cast<std::int32_t>(row.fallback.number)));
  } else {
    EXPECT_EQ(expected.text, reader->ReadText(row.section, row.key, row.fallback.text));
  }
}

std::string CaseName(const ::testing::TestParamInfo<Row>& info) {
  std::string name = std::to_string(info.index) + "_", what;
  try {
    what = Bytes(info.param.fields.at(1));
  } catch (const std::exception&) {
    what = "line " + std::to_string(info.param.line);
  }
  for (const char c : what) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    name += plain ? c : '_';
  }
  return name.substr(0, 60);
}

INSTANTIATE_TEST_SUITE_P(Cases, ProfileTable, ::testing::ValuesIn(LoadRows()), CaseName);

std::string InS(const std::string& lines) { return "[S]\r\n" + lines + "\r\n"; }

// The Windows reader asks the API afresh each time; ours reads the file when opened. Both
// see an edit made between two lookups by the time the file is opened again.
TEST(ProfileReader, SeesTheFileRewritten) {
  testing::ScratchFile file;
  file.Rewrite(InS("K=1"));
  EXPECT_EQ(1u, OpenProfile(file.path())->ReadInt(L"S", L"K", 0));
  file.Rewrite(InS("K=22"));
  const std::unique_ptr<ProfileReader> reader = OpenProfile(file.path());
  EXPECT_EQ(22u, reader->ReadInt(L"S", L"K", 0));
#ifdef _WIN32
  file.Rewrite(InS("K=333"));
  EXPECT_EQ(333u, reader->ReadInt(L"S", L"K", 0));
#endif
}

}  // namespace
}  // namespace hublet
