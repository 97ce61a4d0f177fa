// One table of preference-file cases, each run by writing the bytes to a file and asking
// OpenProfile's reader. Natively that is our own parser, which must answer as Windows
// does; in the Windows cross-build it is the real profile API under Wine. Where Wine is
// known to differ from Windows a row carries both answers.
#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "platform/profile.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

using namespace std::string_literals;

const std::uint32_t kDefault = 4294967197u;  // the default -99, as the UINT returned

std::wstring Wide(const std::u16string& text) { return std::wstring(text.begin(), text.end()); }

// A UTF-16LE file with its byte-order mark; `bom` lets a row drop or swap it.
std::string Utf16(const std::u16string& text, const std::string& bom = "\xFF\xFE",
                  bool bigEndian = false) {
  std::string bytes = bom;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

enum class Call { Int, Text };
enum class Where { File, Missing, Directory };

struct Answer {
  std::uint32_t number;
  std::u16string text;
};

struct ProfileCase {
  std::string what;
  std::string file;
  Call call;
  std::u16string section;
  std::u16string key;
  std::int32_t intDefault;
  std::u16string textDefault;
  Answer windows;
  bool wineDiffers;
  Answer wine;
  Where where;

  ProfileCase Is(std::uint32_t number) const { return Expect(number, u""); }
  ProfileCase Is(const std::u16string& text) const { return Expect(0, text); }
  ProfileCase OnWine(std::uint32_t number) const { return ExpectOnWine(number, u""); }
  ProfileCase OnWine(const std::u16string& text) const { return ExpectOnWine(0, text); }
  ProfileCase Default(std::int32_t value) const {
    ProfileCase copy = *this;
    copy.intDefault = value;
    return copy;
  }
  ProfileCase Default(const std::u16string& value) const {
    ProfileCase copy = *this;
    copy.textDefault = value;
    return copy;
  }
  ProfileCase At(Where place) const {
    ProfileCase copy = *this;
    copy.where = place;
    return copy;
  }

 private:
  ProfileCase Expect(std::uint32_t number, const std::u16string& text) const {
    ProfileCase copy = *this;
    copy.windows = Answer{number, text};
    return copy;
  }
  ProfileCase ExpectOnWine(std::uint32_t number, const std::u16string& text) const {
    ProfileCase copy = *this;
    copy.wineDiffers = true;
    copy.wine = Answer{number, text};
    return copy;
  }
};

ProfileCase Int(const std::string& what, const std::string& file,
                const std::u16string& section, const std::u16string& key) {
  return ProfileCase{what, file, Call::Int, section, key, -99, u"2.2", {}, false, {},
                     Where::File};
}

ProfileCase Str(const std::string& what, const std::string& file,
                const std::u16string& section, const std::u16string& key) {
  ProfileCase row = Int(what, file, section, key);
  row.call = Call::Text;
  return row;
}

// The common shape: one section S with the given lines.
std::string InS(const std::string& lines) { return "[S]\r\n" + lines + "\r\n"; }

std::vector<ProfileCase> WholeFileCases() {
  return {
      Int("missing file", "", u"S", u"K").At(Where::Missing).Is(kDefault),
      Str("missing file text", "", u"S", u"K").At(Where::Missing).Is(u"2.2"),
      Int("directory", "", u"S", u"K").At(Where::Directory).Is(kDefault),
      Str("empty file", "", u"S", u"K").Is(u"2.2"),
      Int("only blank lines", "\r\n\r\n  \r\n", u"", u"").Is(kDefault),
      Str("only a UTF-8 BOM", "\xEF\xBB\xBF", u"", u"").Is(u"2.2"),
  };
}

std::vector<ProfileCase> EncodingCases() {
  const std::string bomMyview = "\xEF\xBB\xBF[MYVIEW]\r\nFPS=30\r\n";
  const std::string bomLater = "\xEF\xBB\xBF\r\n[S]\r\nT=\xC3\xA9t\xC3\xA9\r\nE=\xE2\x82\xAC\r\n"
                               "P=\xF0\x9F\x98\x80\r\nX=a\xFF" "b\r\n";
  return {
      Str("ANSI e-acute", InS("T=\xE9t\xE9"), u"S", u"T").Is(u"\u00E9t\u00E9"),
      Str("ANSI code page 1252 high half", InS("T=\x80\x81\x8D\x8F\x90\x9D\x9F\xFF"), u"S",
          u"T")
          .Is(u"\u20AC\x0081\x008D\x008F\x0090\x009D\u0178\u00FF"),
      Str("UTF-8 without BOM is ANSI", InS("T=\xC3\xA9t\xC3\xA9"), u"S", u"T")
          .Is(u"\u00C3\u00A9t\u00C3\u00A9"),
      Int("UTF-8 key not found as itself", InS("\xC3\x84KEY=1"), u"S", u"\u00C4KEY")
          .Is(kDefault),
      Int("UTF-8 key found as its ANSI reading", InS("\xC3\x84KEY=1"), u"S", u"\u00C3\u201EKEY")
          .Is(1),
      Int("UTF-8 BOM glues onto a header on line 1", bomMyview, u"MYVIEW", u"FPS")
          .Is(kDefault)
          .OnWine(30),
      Str("UTF-8 BOM, later section, e-acute", bomLater, u"S", u"T")
          .Is(u"\u00C3\u00A9t\u00C3\u00A9")
          .OnWine(u"\u00E9t\u00E9"),
      Str("UTF-8 BOM, euro", bomLater, u"S", u"E").Is(u"\u00E2\u201A\u00AC").OnWine(u"\u20AC"),
      Str("UTF-8 BOM, emoji", bomLater, u"S", u"P")
          .Is(u"\u00F0\u0178\u02DC\u20AC")
          .OnWine(u"\U0001F600"),
      Str("UTF-8 BOM, invalid byte", bomLater, u"S", u"X").Is(u"a\u00FFb").OnWine(u"a\uFFFDb"),
      Str("UTF-16LE CR LF", Utf16(u"[S]\r\nT=\u00E9t\u00E9 \u3000\r\n"), u"S", u"T")
          .Is(u"\u00E9t\u00E9 \u3000"),
      Str("UTF-16LE LF, surrogate pair", Utf16(u"[S]\nA=1\nT=x\U0001F600y\n"), u"S", u"T")
          .Is(u"x\U0001F600y"),
      Int("UTF-16LE lone CR", Utf16(u"[S]\rA=1\rB=2"), u"S", u"B").Is(2),
      Str("UTF-16BE with BOM", Utf16(u"[S]\r\nT=\u00E9t\u00E9\r\n", "\xFE\xFF", true), u"S",
          u"T")
          .Is(u"2.2")
          .OnWine(u"\u00E9t\u00E9"),
      Int("UTF-16LE without BOM", Utf16(u"[S]\r\nK=5\r\n", ""), u"S", u"K").Is(kDefault),
  };
}

std::vector<ProfileCase> LineCases() {
  const std::string mixed = "[S]\rA=1\nB=2\r\n\r\r\nC=3\n\rD=4";
  return {
      Int("lone CR", mixed, u"S", u"A").Is(1),
      Int("LF", mixed, u"S", u"B").Is(2),
      Int("CR CR LF", mixed, u"S", u"C").Is(3),
      Int("LF CR, last line unterminated", mixed, u"S", u"D").Is(4),
      Str("lone CR splits a value", "[S]\r\nSPLIT=ab\rcd\r\n", u"S", u"SPLIT").Is(u"ab"),
      Str("text after lone CR is a line of its own", "[S]\r\nSPLIT=ab\rcd\r\n", u"S", u"cd")
          .Is(u"2.2"),
      Int("spaces around name and value", "   [MYVIEW]   \r\n  FPS  =  30  \r\n", u"MYVIEW",
          u"FPS")
          .Is(30),
      Int("tabs around name and value", "[MYVIEW]\r\n\tNUMVP\t=\t2\t\r\n", u"MYVIEW", u"NUMVP")
          .Is(2),
      Str("VT trimmed", InS("VT=\v5\v"), u"S", u"VT").Is(u"5"),
      Str("FF trimmed", InS("FF=\f5\f"), u"S", u"FF").Is(u"5"),
      Str("Ctrl-Z trimmed", InS("CZ=\x1A" "5\x1A"), u"S", u"CZ").Is(u"5"),
      Str("NBSP kept", InS("NBSP=\xA0" "8\xA0"), u"S", u"NBSP").Is(u"\u00A0" u"8\u00A0"),
      Str("control character kept", InS("C=\x01" "5\x01"), u"S", u"C").Is(u"\x01" u"5\x01"),
      Str("ideographic space kept", Utf16(u"[S]\r\nT=\u3000" u"8\u3000\r\n"), u"S", u"T")
          .Is(u"\u3000" u"8\u3000"),
      Int("Ctrl-Z line and Ctrl-Z at end", "[S]\r\n\x1A\r\nK=7\r\n\x1A", u"S", u"K").Is(7),
      Str("inner blanks kept", InS("VPLAYOUT= 1 2 "), u"S", u"VPLAYOUT").Is(u"1 2"),
      Int("inner blanks stop the number", InS("VPLAYOUT= 1 2 "), u"S", u"VPLAYOUT").Is(1),
      Int("name with a space, other spelling", InS("USE VPL=1"), u"S", u"USE_VPL").Is(kDefault),
      Int("name with a space", InS("USE VPL=1"), u"S", u"USE VPL").Is(1),
      Int("caller's outer spaces ignored", "[MYVIEW]\r\nFPS=5\r\n", u"  MYVIEW  ", u"  FPS  ")
          .Is(5),
      Int("caller's tab in section", "[MYVIEW]\r\nFPS=5\r\n", u"\tMYVIEW", u"FPS")
          .Is(kDefault)
          .OnWine(5),
      Int("caller's tab in key", "[MYVIEW]\r\nFPS=5\r\n", u"MYVIEW", u"FPS\t")
          .Is(kDefault)
          .OnWine(5),
  };
}

std::vector<ProfileCase> HeaderCases() {
  const std::string flint = "[MYVIEW]\r\nFPS=1\r\n[FLINT\r\nFPS=2\r\nBOX=3\r\n";
  const std::string other = "[MYVIEW]\r\n[OTHER=5\r\nK=6\r\n";
  const std::string dup = "[MYVIEW]\r\nFPS=24\r\n[A]\r\n[myview]\r\nFPS=30\r\nNUMVP=2\r\n";
  const std::string preHeader = "FPS=11\r\n[MYVIEW]\r\n";
  return {
      Int("spaced header", "   [MYVIEW]   \r\nK=1\r\n", u"MYVIEW", u"K").Is(1),
      Int("blanks inside brackets", "[\t FLINT \t]\r\nK=1\r\n", u"FLINT", u"K").Is(1),
      Int("inner blanks of a name kept", "[  SPACED  NAME  ]\r\nK=1\r\n", u"SPACED  NAME", u"K")
          .Is(1),
      Int("inner blanks must match", "[  SPACED  NAME  ]\r\nK=1\r\n", u"SPACED NAME", u"K")
          .Is(kDefault),
      Int("= in a header", "[MY=VIEW]\r\nK=1\r\n", u"MY=VIEW", u"K").Is(1),
      Int("; in a header", "[;SEMI]\r\nK=1\r\n", u";SEMI", u"K").Is(1),
      Int("# in a header", "[#HASH]\r\nK=1\r\n", u"#HASH", u"K").Is(1),
      Int("quotes in a header kept", "[\"MYVIEW\"]\r\nK=1\r\n", u"\"MYVIEW\"", u"K").Is(1),
      Int("quoted header is another name", "[\"MYVIEW\"]\r\nK=1\r\n", u"MYVIEW", u"K")
          .Is(kDefault),
      Int("tab in a header", "[MY\tVIEW]\r\nK=1\r\n", u"MY\tVIEW", u"K").Is(1),
      Int("junk after header", "[E] junk after\r\nK=1\r\n", u"E", u"K").Is(1),
      Int("key after header on the same line", "[F]G=9\r\n", u"F", u"G").Is(kDefault),
      Int("double opening bracket", "[[D]\r\nK=1\r\n", u"[D", u"K").Is(1),
      Int("first ] ends the name", "[A]B]\r\nK=1\r\n", u"A", u"K").Is(1).OnWine(kDefault),
      Int("not up to the last ]", "[A]B]\r\nK=1\r\n", u"A]B", u"K").Is(kDefault).OnWine(1),
      Int("]] ends at the first", "[C]] \r\nK=1\r\n", u"C", u"K").Is(1).OnWine(kDefault),
      Int("] in a comment after header", "[H] ; comment ]\r\nK=1\r\n", u"H", u"K")
          .Is(1)
          .OnWine(kDefault),
      Int("header without ] starts a section", flint, u"FLINT", u"BOX").Is(3).OnWine(kDefault),
      Int("keys above it stay", flint, u"MYVIEW", u"FPS").Is(1),
      Int("keys below it leave the previous section", flint, u"MYVIEW", u"BOX")
          .Is(kDefault)
          .OnWine(3),
      Int("[OTHER=5 is a header", other, u"OTHER=5", u"K").Is(6).OnWine(kDefault),
      Int("[OTHER=5 is no entry", other, u"MYVIEW", u"[OTHER").Is(kDefault).OnWine(5),
      Int("[] reachable by the empty name", "[]\r\nK=1\r\n", u"", u"K").Is(1).OnWine(kDefault),
      Int("[   ] reachable by the empty name", "[   ]\r\nK=1\r\n", u"", u"K")
          .Is(1)
          .OnWine(kDefault),
      Int("long section name", "[" + std::string(1100, 'N') + "]\r\nK=1\r\n",
          std::u16string(1100, u'N'), u"K")
          .Is(1),
      Int("repeated header: first wins", dup, u"MYVIEW", u"FPS").Is(24),
      Int("repeated header: second not searched", dup, u"MYVIEW", u"NUMVP").Is(kDefault),
      Int("header right after header", "[A]\r\n[B]\r\nK=1\r\n", u"A", u"K").Is(kDefault),
      Int("keys above the first header", preHeader, u"", u"FPS").Is(kDefault).OnWine(11),
      Int("keys above the first header, blank name", preHeader, u"   ", u"FPS")
          .Is(kDefault)
          .OnWine(11),
      Int("no prefix match, longer", "[MYVIEW2]\r\nK=1\r\n", u"MYVIEW", u"K").Is(kDefault),
      Int("no prefix match, shorter", "[MYVIE]\r\nK=1\r\n", u"MYVIEW", u"K").Is(kDefault),
  };
}

std::vector<ProfileCase> KeyCases() {
  const std::string empties = InS("USE_DR=\r\nB=   \r\nT=\t\r\nE3=\"\"\r\nE4=''\r\nE5=\" \"");
  return {
      Int("key case", "[MYVIEW]\r\nfps=25\r\n", u"MyView", u"FPS").Is(25),
      Str("value as written", "[myview]\r\nGamma=AbC\r\n", u"MYVIEW", u"GAMMA").Is(u"AbC"),
      Str("first = splits", InS("VPLAYOUT = 8 = 9"), u"S", u"VPLAYOUT").Is(u"8 = 9"),
      Str("==", InS("VPEXPERT==1"), u"S", u"VPEXPERT").Is(u"=1"),
      Str("second = kept", InS("GAMMA=2.2=2.4"), u"S", u"GAMMA").Is(u"2.2=2.4"),
      Str("line without =", InS("FPS"), u"S", u"FPS").Is(u"2.2"),
      Int("line without =, number", InS("NUMVP 4"), u"S", u"NUMVP").Is(kDefault),
      Int("line without =, whole line", InS("NUMVP 4"), u"S", u"NUMVP 4").Is(kDefault),
      Str("empty key name", InS("=5\r\n  =  6"), u"S", u"").Is(u"5"),
      Str("empty value", empties, u"S", u"USE_DR").Is(u""),
      Str("blank value", empties, u"S", u"B").Is(u""),
      Str("tab value", empties, u"S", u"T").Is(u""),
      Str("\"\" value", empties, u"S", u"E3").Is(u""),
      Str("'' value", empties, u"S", u"E4").Is(u""),
      Int("empty value, number", empties, u"S", u"USE_DR").Is(kDefault),
      Int("empty value, default 0", empties, u"S", u"USE_DR").Default(0).Is(0),
      Int("quoted space", empties, u"S", u"E5").Is(0),
      Str("quoted space text", empties, u"S", u"E5").Is(u" "),
      Int("first of repeated keys", InS("FPS=24\r\nfps=30\r\nFPS=60"), u"S", u"FPS").Is(24),
      Int("first wins even empty", InS("NUMVP=\r\nNUMVP=4"), u"S", u"NUMVP").Is(kDefault),
      Str("first wins even empty, text", InS("NUMVP=\r\nNUMVP=4"), u"S", u"NUMVP").Is(u""),
      Int("no prefix match, FPS2", InS("FPS2=3\r\nXFPS=4"), u"S", u"FPS").Is(kDefault),
      Str("no prefix match, GAMMAIN", InS("GAMMAIN=1.5\r\nGAMMA=2.4"), u"S", u"GAMMA")
          .Is(u"2.4"),
      Int("no prefix match, VP0TYPEX", InS("VP0TYPEX=5"), u"S", u"VP0TYPE").Is(kDefault),
      Int("quoted key", InS("\"VP2TYPE\"=5"), u"S", u"VP2TYPE").Is(kDefault),
      Int("quoted key, literal", InS("\"VP2TYPE\"=5"), u"S", u"\"VP2TYPE\"").Is(5),
      Int("apostrophe in key", InS("VP1TYPE'=4"), u"S", u"VP1TYPE").Is(kDefault),
      Int("dash in key", InS("VP3-TYPE=6"), u"S", u"VP3TYPE").Is(kDefault),
      Int("300-character key", InS(std::string(300, 'K') + "=7"), u"S",
          std::u16string(300, u'K'))
          .Is(7),
      Int("no case folding past ASCII, Latin", Utf16(u"[S]\r\n\u00C4rger=1\r\n"), u"S",
          u"\u00E4rger")
          .Is(kDefault),
      Int("no case folding past ASCII, Greek", Utf16(u"[S]\r\n\u03A3\u0399\u03A3=1\r\n"), u"S",
          u"\u03C3\u03B9\u03C3")
          .Is(kDefault),
      Int("no case folding past ASCII, Cyrillic", Utf16(u"[S]\r\n\u0401=1\r\n"), u"S",
          u"\u0451")
          .Is(kDefault),
      Int("no case folding past ASCII, section", "[\xC4RGER]\r\nK=1\r\n", u"\u00E4rger", u"K")
          .Is(kDefault),
  };
}

std::vector<ProfileCase> CommentCases() {
  const std::string comments = InS(";FPS=10\r\n   ;NUMVP=9\r\n\t;VPLAYOUT=8\r\nVPLAYOUT=3");
  return {
      Int("comment is not FPS", comments, u"S", u"FPS").Is(kDefault),
      Int("real key after comments", comments, u"S", u"VPLAYOUT").Is(3),
      Int("comment is no key", comments, u"S", u";FPS").Is(kDefault).OnWine(10),
      Int("indented comment is no key", comments, u"S", u";NUMVP").Is(kDefault).OnWine(9),
      Int("# is an ordinary character", InS("#VPEXPERT=1"), u"S", u"#VPEXPERT").Is(1),
      Int("# key is not the plain key", InS("#VPEXPERT=1"), u"S", u"VPEXPERT").Is(kDefault),
      Str("no trailing comments", InS("FPS=30 ; trailing comment"), u"S", u"FPS")
          .Is(u"30 ; trailing comment"),
      Int("no trailing comments, number", InS("FPS=30 ; trailing comment"), u"S", u"FPS").Is(30),
      Str("; at value start", InS("GAMMAIN=;2.0"), u"S", u"GAMMAIN").Is(u";2.0"),
      Str("# at value start", InS("VRAYGAMMA=#2.0"), u"S", u"VRAYGAMMA").Is(u"#2.0"),
      Int("; inside a key", InS("USE;DR=5"), u"S", u"USE;DR").Is(5),
  };
}

std::vector<ProfileCase> QuoteCases() {
  struct Quote {
    const char* value;
    const char16_t* text;
    std::uint32_t number;
  };
  const Quote quotes[] = {
      {"\"2.5\"", u"2.5", 2},
      {"'2.6'", u"2.6", 2},
      {"  \"  2.9  \"  ", u"  2.9  ", 2},
      {"\"\"", u"", kDefault},
      {"''", u"", kDefault},
      {"\"\"2.2\"\"", u"\"2.2\"", 0},
      {"'\"2.8\"'", u"\"2.8\"", 0},
      {"\"a\"b\"", u"a\"b", 0},
      {"\"2.7'", u"\"2.7'", 0},
      {"\"3.0", u"\"3.0", 0},
      {"3.1\"", u"3.1\"", 3},
      {"3\"2", u"3\"2", 3},
      {"\"", u"\"", 0},
      {"\"12\"", u"12", 12},
      {"'-3'", u"-3", 4294967293u},
      {"\" 14\"", u" 14", 14},
      {"\"\t15\"", u"\t15", 15},
      {"\"0x1F\"", u"0x1F", 31},
  };
  std::vector<ProfileCase> rows;
  for (const Quote& quote : quotes) {
    const std::string file = InS(std::string("Q=") + quote.value);
    rows.push_back(Str(std::string("quotes ") + quote.value, file, u"S", u"Q").Is(quote.text));
    rows.push_back(Int(std::string("quotes ") + quote.value, file, u"S", u"Q").Is(quote.number));
  }
  return rows;
}

std::vector<ProfileCase> IntCases() {
  struct Number {
    std::string value;
    std::uint32_t number;
  };
  const std::vector<Number> numbers = {
      {"0", 0}, {"42", 42}, {"+7", 7}, {"-0", 0}, {"-1", 4294967295u}, {"007", 7}, {"08", 8},
      {"2147483647", 2147483647u}, {"2147483648", 2147483648u}, {"-2147483648", 2147483648u},
      {"-2147483649", 2147483647u}, {"4294967295", 4294967295u}, {"4294967296", 0},
      {"-4294967296", 0}, {"4294967297", 1}, {"-4294967295", 1}, {"-4294967297", 4294967295u},
      {"99999999999999999999", 1661992959u}, {"18446744073709551616", 0},
      {std::string(27, '0') + "12", 12}, {std::string(28, '0') + "12", 1},
      {std::string(29, '0') + "12", 0}, {std::string(40, '1'), 1729917383u},
      {"0x1F", 31}, {"0xff", 255}, {"+0x10", 16}, {"0X1F", 0}, {"0x", 0}, {"0xG", 0},
      {"0x-1", 0}, {"-0x10", 4294967280u}, {"0x7FFFFFFF", 2147483647u},
      {"0x80000000", 2147483648u}, {"0xFFFFFFFF", 4294967295u}, {"0x100000000", 0},
      {"0o17", 15}, {"0b101", 5}, {"0O17", 0}, {"0B101", 0}, {"0o8", 0}, {"0b2", 0},
      {"0b", 0}, {"0h10", 0}, {"#10", 0}, {"&H10", 0}, {"1.9", 1}, {"1e3", 1}, {"1,000", 1},
      {"7abc", 7}, {"12 34", 12}, {"abc", 0}, {"- 5", 0}, {"--5", 0}, {"+-5", 0}, {"-+5", 0},
      {"\xB9", 0}, {"\xA0" "5", 0}, {"\x01" "9", 9}, {"", kDefault}, {"   ", kDefault},
      {"42A94967297", 42}, {"B4294967297", 0}, {"42\x1A", 42},
  };
  std::vector<ProfileCase> rows;
  for (const Number& n : numbers) {
    rows.push_back(Int("int " + n.value, InS("K=" + n.value), u"S", u"K").Is(n.number));
  }
  rows.push_back(Int("Arabic-Indic digit", Utf16(u"[S]\r\nK=\u0661\r\n"), u"S", u"K").Is(0));
  rows.push_back(Int("full-width digit", Utf16(u"[S]\r\nK=\uFF11\r\n"), u"S", u"K").Is(0));
  rows.push_back(Int("missing key, default -1", InS(""), u"S", u"K").Default(-1).Is(4294967295u));
  rows.push_back(Int("missing section, default 0", InS("K=1"), u"T", u"K").Default(0).Is(0));
  return rows;
}

std::vector<ProfileCase> TruncationCases() {
  const std::u16string x259(259, u'x');
  const auto value = [](std::size_t length) { return InS("T=" + std::string(length, 'x')); };
  const auto quoted = [](std::size_t inner) {
    return InS("T=\"" + std::string(inner, 'x') + "\"");
  };
  std::vector<ProfileCase> rows = {
      Str("259 characters", value(259), u"S", u"T").Is(x259),
      Str("quoted, 258 inside", quoted(258), u"S", u"T").Is(std::u16string(258, u'x')),
      Str("quoted, 259 inside loses one", quoted(259), u"S", u"T").Is(std::u16string(258, u'x')),
      Str("quoted, 260 inside", quoted(260), u"S", u"T").Is(x259),
      Str("quoted, 300 inside", quoted(300), u"S", u"T").Is(x259),
      Str("number with 300 zeros", InS("GAMMA=2.4" + std::string(300, '0')), u"S", u"GAMMA")
          .Is(u"2.4" + std::u16string(256, u'0')),
      Str("default when value-less", InS("T"), u"S", u"T").Default(u"dflt").Is(u"dflt"),
      Str("default loses trailing spaces", "", u"S", u"T").Default(u"trail   ").Is(u"trail"),
      Str("default keeps leading spaces", "", u"S", u"T").Default(u"  lead").Is(u"  lead"),
      Str("default keeps a trailing tab", "", u"S", u"T").Default(u"tab\t").Is(u"tab\t"),
      Str("default of spaces only", "", u"S", u"T").Default(u"   ").Is(u" "),
      Str("quoted default", "", u"S", u"T").Default(u"\"2.5\"").Is(u"\"2.5\"").OnWine(u"2.5"),
      Str("single-quoted default", "", u"S", u"T").Default(u"'2.5'").Is(u"'2.5'").OnWine(u"2.5"),
      Str("long default", "", u"S", u"T").Default(std::u16string(300, u'd'))
          .Is(std::u16string(259, u'd')),
      // Windows keeps a value's length in 16 bits.
      Str("value past 65535 characters", InS("T=abc" + std::string(65536, 'x')), u"S", u"T")
          .Is(u"abc")
          .OnWine(u"abc" + std::u16string(256, u'x')),
  };
  for (const std::size_t length : {260, 261, 300, 1030, 2000}) {
    rows.push_back(
        Str("value of " + std::to_string(length), value(length), u"S", u"T").Is(x259));
  }
  return rows;
}

std::vector<ProfileCase> NulCases() {
  const std::string preHeader = "\0[MYVIEW]\r\nFPS=4\r\n"s;
  return {
      Str("NUL ends a value", InS("FPS=2\0" "5"s), u"S", u"FPS").Is(u"2"),
      Int("NUL ends a name", InS("NU\0" "MVP=3"s), u"S", u"NU").Is(3),
      Int("name after NUL unread", InS("NU\0" "MVP=3"s), u"S", u"NUMVP").Is(kDefault),
      Int("NUL line", InS("\0\r\nK=5"s), u"S", u"K").Is(5),
      Int("NUL before first header", preHeader, u"MYVIEW", u"FPS").Is(kDefault),
      Int("NUL before first header, empty name", preHeader, u"", u"FPS").Is(kDefault).OnWine(4),
      Int("NUL in a header", "[FL\0INT]\r\nK=1\r\n"s, u"FL", u"K").Is(1),
  };
}

std::vector<ProfileCase> AllCases() {
  std::vector<ProfileCase> all;
  for (auto group : {WholeFileCases(), EncodingCases(), LineCases(), HeaderCases(), KeyCases(),
                     CommentCases(), QuoteCases(), IntCases(), TruncationCases(), NulCases()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

// Test names and failure messages show what a row checks, not its bytes.
void PrintTo(const ProfileCase& row, std::ostream* out) { *out << row.what; }

class ProfileTable : public ::testing::TestWithParam<ProfileCase> {};

TEST_P(ProfileTable, ReaderAnswersAsTheProfileApi) {
  const ProfileCase& row = GetParam();
  testing::ScratchFile file;
  if (row.where == Where::File) file.Rewrite(row.file);
  if (row.where == Where::Directory) file.MakeDirectory();
#ifdef _WIN32
  const Answer& expected = row.wineDiffers ? row.wine : row.windows;
#else
  const Answer& expected = row.windows;
#endif
  const std::unique_ptr<ProfileReader> reader = OpenProfile(file.path());
  if (row.call == Call::Int) {
    EXPECT_EQ(expected.number,
              reader->ReadInt(Wide(row.section), Wide(row.key), row.intDefault));
  } else {
    EXPECT_EQ(Wide(expected.text),
              reader->ReadText(Wide(row.section), Wide(row.key), Wide(row.textDefault)));
  }
}

std::string CaseName(const ::testing::TestParamInfo<ProfileCase>& info) {
  std::string name = std::to_string(info.index) + "_";
  for (const char c : info.param.what) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    name += plain ? c : '_';
  }
  return name.substr(0, 60);
}

INSTANTIATE_TEST_SUITE_P(Cases, ProfileTable, ::testing::ValuesIn(AllCases()), CaseName);

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
