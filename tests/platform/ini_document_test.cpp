// The parsed document's structure, as a checker will read it: sections, entries and
// skipped lines with their line numbers, and the encoding that was detected.
#include "platform/ini_document.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/wide_text.h"

namespace hublet {
namespace {

using namespace std::string_literals;

const char* ReasonName(IniIgnoreReason reason) {
  switch (reason) {
    case IniIgnoreReason::Comment: return "comment";
    case IniIgnoreReason::BeforeFirstSection: return "before first section";
    case IniIgnoreReason::TextAfterHeader: return "text after header";
    case IniIgnoreReason::TextAfterNul: return "text after NUL";
  }
  return "?";
}

// One line per header, entry and skipped line, in the order a checker would list them.
std::string Dump(const IniDocument& document) {
  std::string out = std::to_string(document.LineCount()) + " lines\n";
  for (const IniSection& section : document.Sections()) {
    out += std::to_string(section.line) + " [" + WideToUtf8(document.Name(section)) + "]\n";
    for (const IniEntry& entry : document.Entries(section)) {
      out += std::to_string(entry.line) + "   " + WideToUtf8(document.Name(entry)) +
             (entry.hasEquals ? "=" + WideToUtf8(document.Value(entry)) : " (no =)") + "\n";
    }
  }
  for (const IniIgnoredLine& ignored : document.IgnoredLines()) {
    out += std::to_string(ignored.line) + " ignored: " + ReasonName(ignored.reason) + "\n";
  }
  return out;
}

TEST(IniDocument, StructureWithLineNumbers) {
  const std::string file =
      "FPS=11\r\n"                  // 1: above the first header
      "; note\n"                    // 2
      "[MYVIEW] trailing\r"         // 3: lone CR ends the line
      "  FPS = \"24\" \r\n"         // 4
      "NUMVP\r\n"                   // 5
      "\r\n"                        // 6
      "[A]B] \n"                    // 7
      "GAMMA=2.2\0junk\r\n"         // 8
      "[myview]\r\n"                // 9: a repeat, never searched
      "FPS=30\r\n"                  // 10
      "[FLINT\r\n"                  // 11: a header without ']'
      "\tBOX=1"s;                   // 12: no line end
  EXPECT_EQ(
      "12 lines\n"
      "3 [MYVIEW]\n"
      "4   FPS=\"24\"\n"
      "5   NUMVP (no =)\n"
      "7 [A]\n"
      "8   GAMMA=2.2\n"
      "9 [myview]\n"
      "10   FPS=30\n"
      "11 [FLINT]\n"
      "12   BOX=1\n"
      "1 ignored: before first section\n"
      "2 ignored: comment\n"
      "3 ignored: text after header\n"
      "7 ignored: text after header\n"
      "8 ignored: text after NUL\n",
      Dump(IniDocument::Parse(file)));
}

TEST(IniDocument, FindReturnsTheEntryLookupsRead) {
  const IniDocument document =
      IniDocument::Parse("[S]\nK=1\n[s]\nK=2\nL=3\n[S]\nk=4\nK=5\n"s);
  const IniEntry* entry = document.Find(L" s ", L"k");
  ASSERT_NE(nullptr, entry);
  EXPECT_EQ(2u, entry->line);
  EXPECT_EQ(nullptr, document.Find(L"S", L"L"));
}

// Small sections are scanned and large ones indexed: both must answer the same, with the
// first entry of a name winning whatever its case, value or lack of '='.
TEST(IniDocument, FirstEntryWinsInSectionsOfAnySize) {
  for (const int filler : {0, 23, 24, 5000}) {
    std::string bytes = "[Other]\nDUP=other\n[Sect]\n";
    for (int i = 0; i < filler; ++i) bytes += "F" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    bytes += "dup=first\nDUP=second\nBare\nbare=late\nEmpty=\nEMPTY=7\n"
             "Cut\0tail=1\nCUT=2\n=blank\n[sect]\nNEW=1\n"s;
    const IniDocument document = IniDocument::Parse(bytes);
    SCOPED_TRACE(filler);
    EXPECT_EQ(L"first", document.LookupText(L"SECT", L"Dup", L"d"));
    EXPECT_EQ(L"d", document.LookupText(L"sect", L"BARE", L"d"));
    EXPECT_EQ(4294967197u, document.LookupInt(L"Sect", L"empty", -99));
    EXPECT_EQ(L"", document.LookupText(L"Sect", L"empty", L"d"));
    EXPECT_EQ(L"blank", document.LookupText(L"Sect", L"", L"d"));
    const IniEntry* cut = document.Find(L"Sect", L"cut");
    ASSERT_NE(nullptr, cut);
    EXPECT_EQ(L"Cut", document.Name(*cut));
    EXPECT_EQ(L"1", document.Value(*cut));
    EXPECT_EQ(L"d", document.LookupText(L"Sect", L"NEW", L"d"));
    EXPECT_EQ(L"d", document.LookupText(L"Sect", L"F" + std::to_wstring(filler), L"d"));
    if (filler > 0) {
      EXPECT_EQ(static_cast<std::uint32_t>(filler - 1),
                document.LookupInt(L"Sect", L"f" + std::to_wstring(filler - 1), -1));
    }
    EXPECT_EQ(L"other", document.LookupText(L"Other", L"dup", L"d"));
  }
}

// Entries refer to the text by position: a moved or copied document answers from its own
// text and entries, whether the text sits in the string's inline storage (seven UTF-16
// units do on Windows) or its key index was built before the move.
TEST(IniDocument, AnswersAfterMoveAndCopy) {
  IniDocument small = IniDocument::Parse("[S]\nK=1"s);
  const IniDocument smallCopy = small;
  const IniDocument smallMoved(std::move(small));
  for (const IniDocument* document : {&smallCopy, &smallMoved}) {
    EXPECT_EQ(L"1", document->LookupText(L"s", L"k", L""));
  }

  std::string bytes = "[S]\n";
  for (int i = 0; i < 100; ++i) bytes += "K" + std::to_string(i) + "=v" + std::to_string(i) + "\n";
  IniDocument large = IniDocument::Parse(bytes);
  ASSERT_EQ(L"v1", large.LookupText(L"S", L"K1", L""));
  const IniDocument largeCopy = large;
  IniDocument largeMoved;
  largeMoved = std::move(large);
  for (const IniDocument* document : {&largeCopy, static_cast<const IniDocument*>(&largeMoved)}) {
    EXPECT_EQ(L"v99", document->LookupText(L"S", L"k99", L""));
    const IniEntry* entry = document->Find(L"S", L"K7");
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(L"v7", document->Value(*entry));
    EXPECT_EQ(document->Entries(document->Sections()[0]).begin() + 7, entry);
  }
}

TEST(IniDocument, DetectsEncodings) {
  struct Row {
    std::string bytes;
    IniEncoding encoding;
    std::size_t lines;
  };
  const Row rows[] = {
      {"", IniEncoding::Ansi, 0},
      {"[S]\r\nK=1\r\n", IniEncoding::Ansi, 2},
      {"\xEF\xBB\xBF[S]\nK=1", IniEncoding::Utf8BomAsAnsi, 2},
      {"\xFF\xFE[\0S\0]\0\r\0\n\0K\0=\0" "1\0"s, IniEncoding::Utf16Le, 2},
      {"[\0S\0]\0\r\0\n\0"s, IniEncoding::Utf16LeNoBom, 3},
      {"\xFE\xFF\0[\0S\0]"s, IniEncoding::Utf16BeUnsupported, 0},
  };
  for (const Row& row : rows) {
    const IniDocument document = IniDocument::Parse(row.bytes);
    EXPECT_EQ(row.encoding, document.Encoding()) << row.bytes;
    EXPECT_EQ(row.lines, document.LineCount()) << row.bytes;
  }
}

TEST(IniDocument, Utf16HeaderKeepsItsLineNumber) {
  std::string bytes = "\xFF\xFE";
  for (const char c : "\n\n[S]\r\nK=\xE9\r\n"s) {
    bytes += c;
    bytes += '\0';
  }
  const IniDocument document = IniDocument::Parse(bytes);
  ASSERT_EQ(1u, document.Sections().size());
  EXPECT_EQ(3u, document.Sections()[0].line);
  EXPECT_EQ(L"\xE9", document.LookupText(L"S", L"K", L""));
}

// Code page 1252's own characters and NUL bytes are found wherever they sit: at the
// start, in the middle or towards the end of a large file.
TEST(IniDocument, DecodesBytesAnywhereInTheFile) {
  for (const std::size_t padding : {0u, 5000u, 70000u}) {
    const std::string comment = ";" + std::string(padding, 'x') + "\n";
    const std::string bytes =
        comment + "[S]\nK=\x80\x9F\xFF\xE9\nN=a\0b\nM\0=c\n"s + comment + comment;
    const IniDocument document = IniDocument::Parse(bytes);
    SCOPED_TRACE(padding);
    EXPECT_EQ(L"\x20AC\x0178\x00FF\x00E9", document.LookupText(L"S", L"K", L""));
    EXPECT_EQ(L"a", document.LookupText(L"S", L"N", L""));
    EXPECT_EQ(L"c", document.LookupText(L"S", L"M", L""));
    ASSERT_EQ(5u, document.IgnoredLines().size());
    EXPECT_EQ(IniIgnoreReason::TextAfterNul, document.IgnoredLines()[1].reason);
    EXPECT_EQ(5u, document.IgnoredLines()[2].line);
  }
  // The same for UTF-16: a NUL unit cuts the value.
  std::string utf16 = "\xFF\xFE";
  for (const char c : "[S]\nN=a\0b\n"s) {
    utf16 += c;
    utf16 += '\0';
  }
  const IniDocument document = IniDocument::Parse(utf16);
  EXPECT_EQ(L"a", document.LookupText(L"S", L"N", L""));
  ASSERT_EQ(1u, document.IgnoredLines().size());
  EXPECT_EQ(IniIgnoreReason::TextAfterNul, document.IgnoredLines()[0].reason);
}

// Other callers of the API pass smaller buffers; the plug-in always passes 260.
TEST(IniDocument, SmallBuffers) {
  const IniDocument document = IniDocument::Parse("[S]\nK=abc\nQ=\"ab\"\n"s);
  EXPECT_EQ(L"", document.LookupText(L"S", L"K", L"d", 0));
  EXPECT_EQ(L"", document.LookupText(L"S", L"K", L"d", 1));
  EXPECT_EQ(L"a", document.LookupText(L"S", L"K", L"d", 2));
  EXPECT_EQ(L"a", document.LookupText(L"S", L"Q", L"d", 3));
  EXPECT_EQ(L"de", document.LookupText(L"S", L"X", L"def", 3));
}

// Ten MiB of awkward input (a line-long header without ']', a run of NULs, half a million
// entries in one section) must parse in linear time, and looking up every entry must not
// take quadratic time.
TEST(IniDocument, LargeFileParsesInLinearTime) {
  std::string bytes = "[" + std::string(2 << 20, 'x') + "\n[S]\n";
  bytes += std::string(2 << 20, '\0') + "\n";
  for (int i = 0; bytes.size() < (10u << 20); ++i) {
    bytes += "KEY" + std::to_string(i) + " = " + std::to_string(i) + "\r\n";
  }
  const auto start = std::chrono::steady_clock::now();
  const IniDocument document = IniDocument::Parse(bytes);
  for (int i = 0; i < 40; ++i) {
    EXPECT_EQ(static_cast<std::uint32_t>(i * 1000),
              document.LookupInt(L"S", L"KEY" + std::to_wstring(i * 1000), -1));
  }
  // A checker looks up every entry it lists; each must find itself.
  const IniSection& section = document.Sections()[1];
  std::size_t foundThemselves = 0;
  for (const IniEntry& entry : document.Entries(section)) {
    if (document.Find(L"S", document.Name(entry)) == &entry) ++foundThemselves;
  }
  EXPECT_EQ(section.entryCount, foundThemselves);
  const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start);
  EXPECT_LT(seconds.count(), 30.0);
  EXPECT_EQ(2u, document.Sections().size());
}

}  // namespace
}  // namespace hublet
