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

// In the order of the enums.
const char* const kEncodings[] = {"ansi", "utf-16le", "utf-8 bom read as ansi",
                                  "utf-16le without bom read as ansi", "utf-16be, not read"};
const char* const kReasons[] = {"comment", "before first section", "text after header",
                                "unclosed header", "text after NUL"};

std::string Dump(const IniDocument& document) {
  std::string out = kEncodings[int(document.Encoding())] + ", "s +
                    std::to_string(document.LineCount()) + " lines\n";
  for (const IniSection& section : document.Sections()) {
    out += std::to_string(section.line) + " [" + WideToUtf8(document.Name(section)) + "]\n";
    for (const IniEntry& entry : document.Entries(section)) {
      const bool found = document.Find(document.Name(section), document.Name(entry)) == &entry;
      out += std::to_string(entry.line) + "   " + WideToUtf8(document.Name(entry)) +
             (entry.hasEquals ? "=" + WideToUtf8(document.Value(entry)) : " (no =)") +
             (found ? "" : " (shadowed)") + "\n";
    }
  }
  for (const IniIgnoredLine& skipped : document.IgnoredLines())
    out += std::to_string(skipped.line) + " ignored: " + kReasons[int(skipped.reason)] + "\n";
  return out;
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

// Entries refer to the text by position: a copy or a moved document answers from its own
// text, whether that sits in the string's inline storage (seven UTF-16 units do) or its
// section is large enough for a key index, built here before the move.
TEST(IniDocument, AnswersAfterMoveAndCopy) {
  std::string large = "[S]\nK=7\n";
  for (int i = 0; i < 100; ++i) large += "K" + std::to_string(i) + "=v\n";
  for (const std::string& bytes : {"[S]\nK=7"s, large}) {
    IniDocument original = IniDocument::Parse(bytes);
    ASSERT_EQ(L"7", original.LookupText(L"S", L"K", L""));
    const IniDocument copy = original, moved(std::move(original));
    for (const IniDocument* document : {&copy, &moved}) {
      ASSERT_EQ(document->Sections().size(), 1u);
      EXPECT_EQ(document->Entries(document->Sections()[0]).begin(), document->Find(L"s", L"k"));
      EXPECT_EQ(L"7", document->LookupText(L"S", L"K", L""));
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
// entries in one section) parses in linear time. A checker looks up every entry it lists:
// each finds itself, the NUL run's included, but for later duplicates, as the key index
// keeps the first of a name whatever its case, value or lack of '='.
TEST(IniDocument, LargeFileParsesInLinearTime) {
  std::string bytes = "[" + std::string(1 << 18, 'x') + "\n[S]\n" + std::string(1 << 18, '\0');
  for (int i = 0; i < 100000; ++i) bytes += "\r\nK" + std::to_string(i) + " = " + std::to_string(i);
  bytes += "\r\nk7=late\r\nBare\r\nbare=late\r\nCut\0x=c\r\nCUT=late"s;
  const auto start = std::chrono::steady_clock::now();
  const IniDocument document = IniDocument::Parse(bytes);
  std::size_t foundThemselves = 0;
  for (const IniEntry& entry : document.Entries(document.Sections().at(1))) {
    if (document.Find(L"s", document.Name(entry)) == &entry) ++foundThemselves;
  }
  EXPECT_EQ(100003u, foundThemselves);
  EXPECT_EQ(L"7|d|c|d", document.LookupText(L"S", L"k7", L"") + L"|" +
                            document.LookupText(L"S", L"bare", L"d") + L"|" +
                            document.LookupText(L"S", L"cut", L"") + L"|" +
                            document.LookupText(L"S", L"k100000", L"d"));
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 3.0);
}

}  // namespace
}  // namespace hublet
