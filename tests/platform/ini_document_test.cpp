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

// A lookup answers from what an earlier walk remembered only where that is the whole
// truth: after any first lookup, any second answers as in a fresh document, on a file
// whose sections hold more names than a walk remembers.
TEST(IniDocument, AnEarlierLookupChangesNoAnswer) {
  std::string bytes = "[A]\nk=a\n";
  for (int s = 0; s < 100; ++s) {
    bytes += "[T" + std::to_string(s) + "]\n";
    for (int k = 0; k < 20; ++k) bytes += "K" + std::to_string(k) + "=" + std::to_string(s) + "\n";
  }
  bytes += "[B]\nk=b\n[t5]\nK1=late\nK20=new\n[C]\nk=c\n";
  std::vector<std::pair<std::wstring, std::wstring>> lookups = {
      {L"A", L"k"}, {L"B", L"k"}, {L"t5", L"K20"}, {L"C", L"k"}, {L"B", L"x"}, {L"D", L"k"}, {L"a", L"K"}};
  for (int s = 0; s < 100; ++s) lookups.push_back({L"T" + std::to_wstring(s), L"k" + std::to_wstring(s % 21)});
  const IniDocument fresh = IniDocument::Parse(bytes);
  for (std::size_t first = 0; first < 3; ++first) {
    for (const auto& second : lookups) {
      const IniDocument asked = IniDocument::Parse(bytes);
      asked.Find(lookups[first].first, lookups[first].second);
      EXPECT_EQ(IniDocument(fresh).Find(second.first, second.second).line, asked.Find(second.first, second.second).line)
          << WideToUtf8(lookups[first].second) << " then " << WideToUtf8(second.first) << " " << WideToUtf8(second.second);
    }
  }
  EXPECT_EQ(L"b|c|5|d", fresh.LookupText(L"B", L"k", L"") + L"|" + fresh.LookupText(L"C", L"k", L"") + L"|" +
                            fresh.LookupText(L"T5", L"K1", L"") + L"|" + fresh.LookupText(L"T5", L"K20", L"d"));
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
