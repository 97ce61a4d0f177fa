// The parsed document's structure, as a checker will read it, compared with the dumps in
// ini_documents.txt (its head explains the format); then what a dump cannot show.
#include "platform/ini_document.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/wide_text.h"
#include "tests/platform/escaped_text.h"

namespace hublet {
namespace {

using namespace std::string_literals;

// In the order of the enum.
const char* const kEncodings[] = {"ansi", "utf-16le", "utf-8 bom read as ansi",
                                  "utf-16le without bom read as ansi", "utf-16be, not read"};

// Headers with the entries under them, each entry "(shadowed)" when the lookup of its
// section and name reads another line; then the lines or parts of lines not read.
std::string Dump(const IniDocument& document) {
  std::string out = kEncodings[int(document.Encoding())] + ", "s +
                    std::to_string(document.LineCount()) + " lines\n";
  std::string ignored;
  std::wstring section;
  document.ForEachLine([&](const IniLine& line) {
    const std::string number = std::to_string(line.number);
    const bool flags[] = {line.kind == IniLineKind::Comment, line.beforeFirstSection,
                          line.textAfterHeader, line.unclosedHeader, line.cutAtNul};
    const char* const reasons[] = {"comment", "before first section", "text after header",
                                   "unclosed header", "text after NUL"};
    for (int i = 0; i < 5; ++i)
      if (flags[i]) ignored += number + " ignored: " + reasons[i] + "\n";
    if (line.kind == IniLineKind::Header) {
      section = document.Text(line.name);
      out += number + " [" + WideToUtf8(section) + "]\n";
    } else if (line.kind == IniLineKind::Entry && !line.beforeFirstSection) {
      const std::wstring name = document.Text(line.name);
      out += number + "   " + WideToUtf8(name) +
             (line.hasEquals ? "=" + WideToUtf8(document.Text(line.value)) : " (no =)") +
             (document.Find(section, name).line == line.number ? "" : " (shadowed)") + "\n";
    }
  });
  return out + ignored;
}

TEST(IniDocument, StructureAsInTheDocumentsFile) {
  struct Case { int line; std::string title, bytes, dump; };
  std::vector<Case> cases;
  std::ifstream in(HUBLET_INI_DOCUMENTS, std::ios::binary);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // a checkout with CR LF
    const std::string kind = line.substr(0, 2), rest = line.size() > 2 ? line.substr(2) : "";
    if (kind == "==") cases.push_back({number, rest, "", ""});
    else if (kind == "< " && !cases.empty()) cases.back().bytes += testing::Bytes(rest);
    else if (kind == "> " && !cases.empty()) cases.back().dump += rest + "\n";
    else ASSERT_TRUE(line.empty() || line[0] == '#') << "ini_documents.txt line " << number;
  }
  ASSERT_GE(cases.size(), 9u) << "cannot read " HUBLET_INI_DOCUMENTS;
  for (const Case& c : cases) {
    EXPECT_EQ(c.dump, Dump(IniDocument::Parse(c.bytes)))
        << "ini_documents.txt line " << c.line << ":" << c.title;
  }
}

// Spans are positions in the document's own bytes, and answers found before a copy or a
// move stay right, whether the bytes sit in the string's inline storage or not.
TEST(IniDocument, AnswersAfterMoveAndCopy) {
  for (const std::string& bytes : {"[S]\nK=7"s, "[S]\nK=7\n" + std::string(100, ';')}) {
    IniDocument original = IniDocument::Parse(bytes);
    ASSERT_EQ(L"7", original.LookupText(L"S", L"K", L""));
    const IniDocument copy = original, moved(std::move(original));
    for (const IniDocument* document : {&copy, &moved}) {
      EXPECT_EQ(2u, document->Find(L"s", L"k").line);
      EXPECT_EQ(L"7", document->LookupText(L"S", L"K", L""));
    }
  }
}

// What a lookup must find, worked out from the lines alone: the first entry of the key
// under the first header of the section.
IniFound FromLines(const IniDocument& document, const std::wstring& section, const std::wstring& key) {
  IniFound found = IniFound();
  bool seen = false, inside = false;
  document.ForEachLine([&](const IniLine& line) {
    if (line.kind == IniLineKind::Header) {
      inside = !seen && document.NameIs(line.name, section);
      seen = seen || inside;
    } else if (inside && found.line == 0 && line.kind == IniLineKind::Entry && document.NameIs(line.name, key)) {
      found = {line.number, line.hasEquals, line.value};
    }
  });
  return found;
}

struct BoundCase {
  std::string bytes;
  std::vector<std::pair<std::wstring, std::wstring>> lookups;
  std::wstring texts;  // the text answers of the lookups, default "-", joined by '|'
};

// Files past every bound of what lookups note and remember: more headers than are noted,
// a header and a key too long to note, a section with more entries than are remembered;
// with headers repeated in another case, an empty section name, entries above the first
// header.
std::vector<BoundCase> BoundCases() {
  std::string many = "K=before\n[A]\nk=a\n";
  for (int s = 0; s < 1100; ++s) {
    const std::string n = std::to_string(s);
    many += "[T" + n + "]\nK" + std::to_string(s % 7) + "=" + n + "\nX=" + n + "\n";
  }
  many += "[t5]\nK5=late\nNEW=late\n[B]\nk=b\n[]\nk=empty\n[T1050]\nK0=late\n";
  const std::string longHeader(300, 'L'), longKey(300, 'q');
  const std::string longNames = "[S]\nk=s\n[" + longHeader + "]\nk=long\n[T]\nk=t\n" + longKey +
                                "=longkey\nk2=after\n[S]\nk=late\n[U2]\nk=u2\n";
  std::string big = "[BIG]\n";
  for (int i = 0; i < 1200; ++i) big += "E" + std::to_string(i % 1100) + "=" + std::to_string(i) + "\n";
  big += "LATE=1\n[SMALL]\nk=1\n";
  const std::wstring l(300, L'l'), q(300, L'Q');
  return {
      {many,
       {{L"A", L"k"}, {L"a", L"K"}, {L"B", L"k"}, {L"B", L"x"}, {L"T5", L"K5"}, {L"t5", L"NEW"},
        {L"T1050", L"K0"}, {L"T1099", L"X"}, {L"T0", L"X"}, {L"T1023", L"X"}, {L"T1024", L"X"},
        {L"D", L"k"}, {L"", L"k"}},
       L"a|a|b|-|5|-|1050|1099|0|1023|1024|-|empty"},
      {longNames,
       {{l, L"k"}, {L"T", L"k"}, {L"T", q}, {L"T", L"k2"}, {L"S", L"k"}, {L"S", L"none"}, {L"U", L"k"},
        {L"U2", L"k"}},
       L"long|t|longkey|after|s|-|-|u2"},
      {big,
       {{L"BIG", L"E0"}, {L"big", L"e1023"}, {L"BIG", L"E1024"}, {L"BIG", L"E1099"}, {L"BIG", L"LATE"},
        {L"BIG", L"NONE"}, {L"SMALL", L"k"}, {L"BIG", L"E5"}},
       L"0|1023|1024|1099|1|-|1|5"},
  };
}

// Whatever was looked up before, in whatever order or all prepared at once, a lookup
// finds what the lines say.
TEST(IniDocument, LookupsFindWhatTheLinesSayInAnyOrder) {
  for (const BoundCase& c : BoundCases()) {
    const IniDocument reference = IniDocument::Parse(c.bytes);
    const std::size_t n = c.lookups.size();
    std::vector<IniFound> expected;
    std::wstring texts;
    for (const auto& lookup : c.lookups) {
      expected.push_back(FromLines(reference, lookup.first, lookup.second));
      texts += (texts.empty() ? L"" : L"|") + reference.LookupText(lookup.first, lookup.second, L"-");
    }
    EXPECT_EQ(WideToUtf8(c.texts), WideToUtf8(texts));
    // Each lookup first, the rest after it; backwards; all prepared.
    std::vector<std::vector<std::size_t>> orders;
    for (std::size_t first = 0; first < n; ++first) {
      orders.push_back({first});
      for (std::size_t i = 0; i < n; ++i) orders.back().push_back(i);
    }
    orders.push_back({});
    for (std::size_t i = n; i-- > 0;) orders.back().push_back(i);
    for (std::size_t o = 0; o <= orders.size(); ++o) {
      const IniDocument document = IniDocument::Parse(c.bytes);
      if (o == orders.size()) document.Prepare(c.lookups);
      for (const std::size_t i : o < orders.size() ? orders[o] : orders.back()) {
        const IniFound found = document.Find(c.lookups[i].first, c.lookups[i].second);
        EXPECT_TRUE(found.line == expected[i].line && found.hasEquals == expected[i].hasEquals &&
                    found.value.begin == expected[i].value.begin && found.value.length == expected[i].value.length)
            << "order " << o << ", lookup " << i << " found line " << found.line << ", not " << expected[i].line;
      }
    }
  }
}

// Other callers of the API pass smaller buffers; the plug-in always passes 260.
TEST(IniDocument, SmallBuffers) {
  const IniDocument document = IniDocument::Parse("[S]\nK=abc\nQ=\"ab\"\n");
  const auto text = [&](const wchar_t* key, std::size_t size) {
    return document.LookupText(L"S", key, L"def", size) + L"|";
  };
  EXPECT_EQ(L"||a|a|de|", text(L"K", 0) + text(L"K", 1) + text(L"K", 2) + text(L"Q", 3) +
                              text(L"X", 3));
}

// Awkward input (a long header without ']', a long run of NULs, a hundred thousand
// entries in one section) is walked in linear time, and lookups prepared together take one
// walk: each finds its own line, as the first of a name wins whatever its case, value or
// lack of '='.
TEST(IniDocument, LargeFileInLinearTime) {
  std::string bytes = "[" + std::string(1 << 18, 'x') + "\n[S]\n" + std::string(1 << 18, '\0');
  for (int i = 0; i < 100000; ++i) bytes += "\r\nK" + std::to_string(i) + " = " + std::to_string(i);
  bytes += "\r\nk7=late\r\nBare\r\nbare=late\r\nCut\0x=c\r\nCUT=late"s;
  const auto start = std::chrono::steady_clock::now();
  const IniDocument document = IniDocument::Parse(bytes);
  std::vector<std::pair<std::wstring, std::wstring>> lookups;
  for (int i = 0; i < 100000; ++i) lookups.push_back({L"s", L"K" + std::to_wstring(i)});
  document.Prepare(lookups);
  std::size_t foundThemselves = 0;
  for (int i = 0; i < 100000; ++i) foundThemselves += document.Find(L"S", L"k" + std::to_wstring(i)).line == 4u + i;
  EXPECT_EQ(100000u, foundThemselves);
  EXPECT_EQ(L"7|d|c|d", document.LookupText(L"S", L"k7", L"") + L"|" +
                            document.LookupText(L"S", L"bare", L"d") + L"|" +
                            document.LookupText(L"S", L"cut", L"") + L"|" +
                            document.LookupText(L"S", L"k100000", L"d"));
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 3.0);
}

}  // namespace
}  // namespace hublet
