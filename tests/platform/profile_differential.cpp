// Our reader against the real profile API, on random files: every lookup of every file is
// answered by both, in one process, and the first disagreements are shrunk to a small file
// and printed as rows for profile_cases.txt. Built for Windows only, where the API is
// there (under Wine in the test command).
//
//   profile_differential [SEED [COUNT]]      files 0 to COUNT - 1 of SEED
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

bool IsQuote(wchar_t c) { return c == L'"' || c == L'\''; }

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

// Whether a header line of the document passes the test.
template <class Test>
bool AnyHeader(const IniDocument& document, const Test& test) {
  bool any = false;
  document.ForEachLine([&](const IniLine& line) { any = any || (line.kind == IniLineKind::Header && test(line)); });
  return any;
}

// Where Wine's profile API is known to answer otherwise than Windows, which our reader
// follows. A disagreement on an input of such a shape is Wine's: it is counted, not
// failed. Every other disagreement is a fault of our reader, or a difference to add here
// once its Windows side is known. (Sources: Microsoft's pages, Wine's own conformance
// tests run on Windows, third-party black-box tests on Windows 10.)
struct WineDifference {
  const char* shape;
  const char* why;
  bool (*applies)(const IniDocument&, const ProfileQuery&);
};
const WineDifference kWineDifferences[] = {
    {"UTF-8 byte-order mark", "Wine decodes UTF-8; Windows reads code page 1252, the mark glued to line 1",
     [](const IniDocument& d, const ProfileQuery&) { return d.Encoding() == IniEncoding::Utf8BomAsAnsi; }},
    {"UTF-16BE byte-order mark", "Wine decodes it; Windows reads nothing",
     [](const IniDocument& d, const ProfileQuery&) { return d.Encoding() == IniEncoding::Utf16BeUnsupported; }},
    {"section or key argument with an outer blank other than a space",
     "Wine trims tabs and the like from the arguments too; Windows only spaces",
     [](const IniDocument&, const ProfileQuery& q) { return HasOuterBlank(q.section) || HasOuterBlank(q.key); }},
    {"empty section name", "Wine finds the entries above the first header; Windows a header [] and never those",
     [](const IniDocument&, const ProfileQuery& q) { return Trimmed(q.section).empty(); }},
    {"key argument starting with ';'", "Wine keeps comment lines as entries named ';...'; Windows skips them",
     [](const IniDocument&, const ProfileQuery& q) { return Trimmed(q.key)[0] == L';'; }},
    {"quoted text default answered", "Wine drops the default's outer quotes as a value's; Windows copies it as given",
     [](const IniDocument& document, const ProfileQuery& q) {
       const std::wstring d = q.textDefault.substr(0, q.textDefault.find_last_not_of(L' ') + 1);
       const IniFound found = document.Find(q.section, q.key);
       return !q.isInt && d.size() >= 2 && IsQuote(d[0]) && d.back() == d[0] && !(found.line != 0 && found.hasEquals);
     }},
    {"header with a second ']'", "Wine cuts the name at the last ']', Windows at the first",
     [](const IniDocument& d, const ProfileQuery&) {
       return AnyHeader(d, [&d](const IniLine& l) {
         const std::wstring text = d.Text(l.content);
         return text.find(L']') != text.rfind(L']');
       });
     }},
    {"header without ']'", "Windows takes the line as a header to its end; Wine as an entry of the section above",
     [](const IniDocument& d, const ProfileQuery&) { return AnyHeader(d, [](const IniLine& l) { return l.unclosedHeader; }); }},
    {"value longer than 65535 characters", "Windows keeps a value's length in 16 bits; Wine the whole value",
     [](const IniDocument& d, const ProfileQuery&) {
       bool any = false;
       d.ForEachLine([&any](const IniLine& l) { any = any || l.value.length > 65535; });
       return any;
     }},
};
const std::size_t kDifferenceCount = sizeof kWineDifferences / sizeof *kWineDifferences;

// The known difference that explains a disagreement on this input; kDifferenceCount if none.
std::size_t KnownDifference(const IniDocument& document, const ProfileQuery& query) {
  std::size_t row = 0;
  while (row < kDifferenceCount && !kWineDifferences[row].applies(document, query)) ++row;
  return row;
}

std::wstring Answer(ProfileReader& reader, const ProfileQuery& q) {
  if (!q.isInt) return reader.ReadText(q.section, q.key, q.textDefault);
  return std::to_wstring(static_cast<std::int32_t>(reader.ReadInt(q.section, q.key, q.intDefault)));
}

// Whether our reader and the API disagree on this file and query, Wine's known
// differences aside.
bool Disagree(const std::string& bytes, const ProfileQuery& query) {
  const ScratchFile file(bytes);
  IniDocumentReader ours(IniDocument::Parse(bytes));
  return Answer(ours, query) != Answer(*OpenProfile(file.path()), query) &&
         KnownDifference(ours.Document(), query) == kDifferenceCount;
}

// Drops ever smaller runs of the file's characters while the disagreement stays, within
// a budget of lookups. A UTF-16 file keeps its mark and whole code units.
std::string Shrink(std::string bytes, const ProfileQuery& query) {
  const std::size_t head = bytes.compare(0, 2, "\xFF\xFE") == 0 ? 2 : 0, unit = head != 0 ? 2 : 1;
  int budget = 3000;
  for (std::size_t run = (bytes.size() - head) / 2; budget > 0; run /= 2) {
    run = std::max(unit, run / unit * unit);
    for (std::size_t at = head; at < bytes.size() && budget-- > 0;) {
      const std::string smaller = bytes.substr(0, at) + bytes.substr(std::min(bytes.size(), at + run));
      if (Disagree(smaller, query)) bytes = smaller;
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
    const std::size_t plain = std::wstring(L"\r\n\t\v\f\\|{").find(c);
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
  const ScratchFile file(bytes);
  IniDocumentReader ours(IniDocument::Parse(bytes));
  const bool utf16 = ours.Document().Encoding() == IniEncoding::Utf16Le && bytes.size() % 2 == 0;
  std::wstring text;
  for (std::size_t i = utf16 ? 2 : 0; i < bytes.size(); i += utf16 ? 2 : 1)
    text += static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) | (utf16 ? static_cast<unsigned char>(bytes[i + 1]) << 8 : 0));
  const std::wstring fallback = q.isInt ? std::to_wstring(q.intDefault) : q.textDefault;
  std::printf("seed %llu, file %llu: our reader and the profile API disagree. Shrunk:\nfile%s = %s\n",
              static_cast<unsigned long long>(seed), static_cast<unsigned long long>(index),
              utf16 ? " utf-16le-bom" : "", Escaped(text).c_str());
  std::printf("%s | differential | %s | %s | %s | wine = %s | default = %s\n\n", q.isInt ? "int" : "text",
              Escaped(q.section).c_str(), Escaped(q.key).c_str(), Escaped(Answer(ours, q)).c_str(),
              Escaped(Answer(*OpenProfile(file.path()), q)).c_str(), Escaped(fallback).c_str());
}

}  // namespace
}  // namespace testing
}  // namespace hublet

int main(int argc, char** argv) {
  using namespace hublet;
  using namespace hublet::testing;
  const std::uint64_t seed = argc > 1 ? std::stoull(argv[1]) : 1;
  const std::uint64_t count = argc > 2 ? std::stoull(argv[2]) : 1000;
  std::vector<std::size_t> excused(kDifferenceCount);
  std::size_t lookups = 0, found = 0, failures = 0;
  for (std::uint64_t index = 0; index < count && failures < 3; ++index) {
    const GeneratedProfile profile = GenerateProfile(seed, index);
    const ScratchFile file(profile.bytes);
    const std::unique_ptr<ProfileReader> api = OpenProfile(file.path());
    IniDocumentReader ours(IniDocument::Parse(profile.bytes));
    for (const ProfileQuery& query : profile.queries) {
      ++lookups;
      if (ours.Document().Find(query.section, query.key).line != 0) ++found;
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
  std::printf("seed %llu, %llu files, %llu lookups (%llu of an entry): %llu files where our reader and the API disagree\n",
              static_cast<unsigned long long>(seed), static_cast<unsigned long long>(count),
              static_cast<unsigned long long>(lookups), static_cast<unsigned long long>(found),
              static_cast<unsigned long long>(failures));
  for (std::size_t row = 0; row < kDifferenceCount; ++row)
    if (excused[row] != 0)
      std::printf("  %llu lookups differ as Wine is known to, %s: %s\n", static_cast<unsigned long long>(excused[row]),
                  kWineDifferences[row].shape, kWineDifferences[row].why);
  return failures == 0 ? 0 : 1;
}
