// Our reader against the real profile API, on random files: every lookup of every file is
// answered by both, in one process, and the first disagreements are shrunk to a small file
// and printed as rows for profile_cases.txt. Built for Windows only, where the API is
// there (under Wine in the test command).
//
//   profile_differential [SEED [COUNT [FIRST]]]    files FIRST to FIRST + COUNT - 1 of SEED
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/ini_document.h"
#include "platform/profile.h"
#include "tests/platform/profile_file_generator.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace testing {
namespace {

// A caller's argument as Windows takes it: cut at a NUL, outer spaces ignored.
std::wstring Trimmed(const std::wstring& argument) {
  const std::wstring cut = argument.substr(0, argument.find(L'\0'));
  const std::size_t begin = cut.find_first_not_of(L' ');
  return begin == std::wstring::npos ? L"" : cut.substr(begin, cut.find_last_not_of(L' ') + 1 - begin);
}

bool HasOuterBlank(const std::wstring& argument) {
  const std::wstring name = Trimmed(argument);
  return !name.empty() && (name.front() <= L' ' || name.back() <= L' ');
}

bool Quoted(const std::wstring& text) {
  return text.size() >= 2 && (text[0] == L'"' || text[0] == L'\'') && text.back() == text[0];
}

template <class Test>
bool AnyLine(const IniDocument& document, const Test& test) {
  bool any = false;
  document.ForEachLine([&](const IniLine& line) { any = any || test(line); });
  return any;
}

// Where Wine's profile API is known to answer otherwise than Windows, which our reader
// follows. A disagreement on an input of such a shape is Wine's: it is counted, not
// failed. Any other disagreement is a fault of our reader, or a difference to add here
// once its Windows side is known. (Sources: Microsoft's pages, Wine's own conformance
// tests run on Windows, third-party black-box tests on Windows 10.)
using Input = const IniDocument&;
using Query = const ProfileQuery&;
struct WineDifference {
  const char* shape;
  const char* why;
  bool (*applies)(Input, Query);
};
const WineDifference kWineDifferences[] = {
    {"UTF-8 byte-order mark", "Wine decodes UTF-8; Windows reads code page 1252, the mark glued to line 1",
     [](Input d, Query) { return d.Encoding() == IniEncoding::Utf8BomAsAnsi; }},
    {"UTF-16BE byte-order mark", "Wine decodes it; Windows reads nothing",
     [](Input d, Query) { return d.Encoding() == IniEncoding::Utf16BeUnsupported; }},
    {"UTF-16LE file of an odd length", "Wine reads the last byte with whatever byte follows it in memory",
     [](Input d, Query) { return d.Encoding() == IniEncoding::Utf16Le && d.Bytes().size() % 2 != 0; }},
    {"argument with an outer blank other than a space", "Wine trims tabs and the like from arguments; Windows only spaces",
     [](Input, Query q) { return HasOuterBlank(q.section) || HasOuterBlank(q.key); }},
    {"empty section name", "Wine finds the entries above the first header; Windows a header [] and never those",
     [](Input, Query q) { return Trimmed(q.section).empty(); }},
    {"key argument starting with ';'", "Wine keeps comment lines as entries named ';...'; Windows skips them",
     [](Input, Query q) { return Trimmed(q.key)[0] == L';'; }},
    {"quoted text default answered", "Wine drops the default's outer quotes as a value's; Windows copies it as given",
     [](Input d, Query q) {
       const IniFound found = d.Find(q.section, q.key);
       return !q.isInt && Quoted(q.textDefault.substr(0, q.textDefault.find_last_not_of(L' ') + 1)) &&
              !(found.line != 0 && found.hasEquals);
     }},
    {"header with a second ']'", "Wine cuts the name at the last ']', Windows at the first",
     [](Input d, Query) {
       return AnyLine(d, [&d](const IniLine& l) {
         const std::wstring text = d.Text(l.content);
         return l.kind == IniLineKind::Header && text.find(L']') != text.rfind(L']');
       });
     }},
    {"header without ']'", "Windows takes the line as a header to its end; Wine as an entry of the section above",
     [](Input d, Query) { return AnyLine(d, [](const IniLine& l) { return l.unclosedHeader; }); }},
    {"value longer than 65535 characters", "Windows keeps a value's length in 16 bits; Wine the whole value",
     [](Input d, Query) { return AnyLine(d, [](const IniLine& l) { return l.value.length > 65535; }); }},
};
const std::size_t kDifferenceCount = sizeof kWineDifferences / sizeof *kWineDifferences;

// The row of the known difference that explains a disagreement on this input, or
// kDifferenceCount.
std::size_t KnownDifference(const IniDocument& document, const ProfileQuery& query) {
  std::size_t row = 0;
  while (row < kDifferenceCount && !kWineDifferences[row].applies(document, query)) ++row;
  return row;
}

std::wstring Answer(ProfileReader& reader, const ProfileQuery& q) {
  if (!q.isInt) return reader.ReadText(q.section, q.key, q.textDefault);
  return std::to_wstring(static_cast<std::int32_t>(reader.ReadInt(q.section, q.key, q.intDefault)));
}

// Our answer and the API's for a file.
struct Answers {
  std::wstring ours, api;
  std::size_t known;  // the known difference that applies, or kDifferenceCount
};
Answers Ask(const std::string& bytes, const ProfileQuery& query) {
  const ScratchFile file(bytes);
  IniDocumentReader ours(IniDocument::Parse(bytes));
  return {Answer(ours, query), Answer(*OpenProfile(file.path()), query), KnownDifference(ours.Document(), query)};
}

bool Disagree(const Answers& a) { return a.ours != a.api && a.known == kDifferenceCount; }

// Drops ever smaller runs of the file's characters while the disagreement stays, within
// a budget of lookups. A UTF-16 file keeps its mark and whole code units.
std::string Shrink(std::string bytes, const ProfileQuery& query) {
  const std::size_t head = bytes.compare(0, 2, "\xFF\xFE") == 0 ? 2 : 0, unit = head != 0 ? 2 : 1;
  int budget = 3000;
  for (std::size_t run = (bytes.size() - head) / 2; budget > 0; run /= 2) {
    run = std::max(unit, run / unit * unit);
    for (std::size_t at = head; at < bytes.size() && budget-- > 0;) {
      const std::string smaller = bytes.substr(0, at) + bytes.substr(std::min(bytes.size(), at + run));
      if (Disagree(Ask(smaller, query))) bytes = smaller;
      else at += run;
    }
    if (run == unit) break;
  }
  return bytes;
}

// Text in the escapes of profile_cases.txt.
std::string Escaped(const std::wstring& units) {
  std::string out;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const wchar_t c = units[i];
    const std::size_t plain = std::wstring(L"\r\n\t\v\f\\|{", 8).find(c);
    char hex[8];
    std::snprintf(hex, sizeof hex, c > 0xFF ? "\\u%04X" : "\\x%02X", static_cast<unsigned>(c));
    if (c == 0) out += "\\0";
    else if (plain != std::wstring::npos) out += std::string("\\") + "rntvf\\|{"[plain];
    else if (c == L' ' && (i == 0 || i + 1 == units.size())) out += "\\s";
    else out += c >= L' ' && c < 0x7F ? std::string(1, static_cast<char>(c)) : hex;
  }
  return out;
}

void Report(std::uint64_t seed, std::uint64_t index, const std::string& bytes, const ProfileQuery& q) {
  const bool utf16 = bytes.compare(0, 2, "\xFF\xFE") == 0 && bytes.size() % 2 == 0;
  std::wstring text;
  for (std::size_t i = utf16 ? 2 : 0; i < bytes.size(); i += utf16 ? 2 : 1)
    text += static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) | (utf16 ? static_cast<unsigned char>(bytes[i + 1]) << 8 : 0));
  const Answers answers = Ask(bytes, q);
  std::printf("seed %llu, file %llu: our reader and the profile API disagree. Shrunk:\nfile%s = %s\n",
              static_cast<unsigned long long>(seed), static_cast<unsigned long long>(index),
              utf16 ? " utf-16le-bom" : "", Escaped(text).c_str());
  std::printf("%s | differential | %s | %s | %s | wine = %s | default = %s\n\n", q.isInt ? "int" : "text",
              Escaped(q.section).c_str(), Escaped(q.key).c_str(), Escaped(answers.ours).c_str(),
              Escaped(answers.api).c_str(), Escaped(q.isInt ? std::to_wstring(q.intDefault) : q.textDefault).c_str());
}

}  // namespace
}  // namespace testing
}  // namespace hublet

int main(int argc, char** argv) {
  using namespace hublet;
  using namespace hublet::testing;
  const std::uint64_t seed = argc > 1 ? std::stoull(argv[1]) : 1;
  const std::uint64_t count = argc > 2 ? std::stoull(argv[2]) : 1000;
  const std::uint64_t first = argc > 3 ? std::stoull(argv[3]) : 0;
  std::vector<unsigned long long> excused(kDifferenceCount);
  unsigned long long lookups = 0, found = 0, failures = 0;
  for (std::uint64_t index = first; index < first + count && failures < 3; ++index) {
    const GeneratedProfile profile = GenerateProfile(seed, index);
    const ScratchFile file(profile.bytes);
    const std::unique_ptr<ProfileReader> api = OpenProfile(file.path());
    IniDocumentReader ours(IniDocument::Parse(profile.bytes));
    for (const ProfileQuery& query : profile.queries) {
      ++lookups;
      found += ours.Document().Find(query.section, query.key).line != 0;
      if (Answer(ours, query) == Answer(*api, query)) continue;
      const std::size_t row = KnownDifference(ours.Document(), query);
      if (row < kDifferenceCount) {
        ++excused[row];
        continue;
      }
      Report(seed, index, Shrink(profile.bytes, query), query);
      ++failures;
      break;
    }
  }
  std::printf("seed %llu, files %llu to %llu, %llu lookups (%llu of an entry): %llu files where our reader and the API disagree\n",
              static_cast<unsigned long long>(seed), static_cast<unsigned long long>(first),
              static_cast<unsigned long long>(first + count - 1), lookups, found, failures);
  for (std::size_t row = 0; row < kDifferenceCount; ++row)
    if (excused[row] != 0)
      std::printf("  %llu lookups differ as Wine is known to, %s: %s\n", excused[row], kWineDifferences[row].shape,
                  kWineDifferences[row].why);
  return failures == 0 ? 0 : 1;
}
