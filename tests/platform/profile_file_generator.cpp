#include "tests/platform/profile_file_generator.h"

#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <string>

namespace hublet {
namespace testing {
namespace {

// SplitMix64: tiny, and the same sequence from every standard library, which the
// standard distributions do not promise.
class Random {
 public:
  explicit Random(std::uint64_t state) : state_(state) {}
  std::size_t Below(std::size_t n) {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return static_cast<std::size_t>((z ^ (z >> 31)) % n);
  }
  bool OneIn(std::size_t n) { return Below(n) == 0; }
  template <class T, std::size_t N>
  T Of(const T (&items)[N]) { return items[Below(N)]; }
  wchar_t CharOf(const wchar_t* set) { return set[Below(std::wcslen(set))]; }

 private:
  std::uint64_t state_;
};

// Names shared by the files and the lookups: blanks inside, non-ASCII letters (whose
// case the API does not fold), and the characters it treats specially.
const wchar_t* const kSections[] = {L"S", L"MyView", L"FLINT", L"sp  ace", L"\u00C4rger",
                                    L"\u03A3\u03B9", L";S", L"\"S\"", L"A=B", L"[S", L""};
const wchar_t* const kKeys[] = {L"FPS", L"K", L"USE VPL", L"Gamma", L"\u00C4", L"\u03C3",
                                L"#K", L"'K'", L";K", L"K;1", L""};
const wchar_t* const kLineEnds[] = {L"\r\n", L"\n", L"\r", L"\r\r\n", L"\n\r"};

// Around names and values: mostly the blanks the reader trims, now and then a character
// it keeps, or a NUL.
std::wstring Pad(Random& r) {
  std::wstring pad;
  for (std::size_t n = r.OneIn(2) ? 0 : 1 + r.Below(3); n > 0; --n)
    pad += r.OneIn(40) ? L'\0' : r.CharOf(r.OneIn(12) ? L"\x01\x1F\u00A0\u3000\uFEFF" : L"      \t\t\t\v\f\r\x1A");
  return pad;
}

// A pool's name; now and then one far longer than usual.
template <std::size_t N>
std::wstring Name(Random& r, const wchar_t* const (&pool)[N]) {
  return r.OneIn(60) ? std::wstring(r.OneIn(2) ? 300 : 1100, L'N') : r.Of(pool);
}

// The few names one file uses, so that most lookups meet something.
struct Vocabulary {
  std::wstring sections[2];
  std::wstring keys[4];
};

// Whether a letter's other case is the unit 0x20 away: ASCII, Latin-1 and Greek ones.
bool HasCase(wchar_t c) {
  const wchar_t lower = c | 0x20;
  return (lower >= L'a' && lower <= L'z') || (lower >= 0xE0 && lower <= 0xFE && lower != 0xF7) ||
         (lower >= 0x3B1 && lower <= 0x3C9 && lower != 0x3C2);
}

// One of them, its letters in any case (the reader folds only ASCII).
template <std::size_t N>
std::wstring Cased(Random& r, const std::wstring (&names)[N]) {
  std::wstring name = r.Of(names);
  if (r.OneIn(3))
    for (wchar_t& c : name)
      if (r.OneIn(2) && HasCase(c)) c ^= 0x20;
  return name;
}

// Text of n characters: mostly printable ASCII with the API's special characters, some
// code page 1252 bytes, and in a UTF-16 file any code unit, lone surrogates included.
std::wstring Text(Random& r, bool wide, std::size_t n) {
  std::wstring text(n, L'x');
  for (wchar_t& c : text) {
    const std::size_t kind = r.Below(10);
    if (kind < 7) c = r.CharOf(L"abcXYZ 019;=#\"'[]-+.");
    else c = static_cast<wchar_t>(1 + r.Below(kind < 9 || !wide ? 0xFF : 0xFFFF));
  }
  return text;
}

// Numbers in every form GetPrivateProfileIntW meets: signs, prefixes in both cases,
// digits of the wrong base, leading zeros past the 29 characters it reads, overflow,
// and junk after.
std::wstring Number(Random& r) {
  static const wchar_t* const kEdges[] = {
      L"2147483647", L"2147483648", L"-2147483648", L"-2147483649", L"4294967295",
      L"4294967296", L"4294967297", L"99999999999999999999", L"18446744073709551616",
      L"0x7FFFFFFF", L"0xffffffff", L"0x100000000", L"-0x10", L"0b", L"0x"};
  static const wchar_t* const kSigns[] = {L"", L"", L"", L"+", L"-", L"--", L"+-", L"- "};
  static const wchar_t* const kPrefixes[] = {L"", L"", L"", L"0x", L"0X", L"0o", L"0O", L"0b", L"0B"};
  static const wchar_t* const kTails[] = {L"", L"", L"", L".5", L"e3", L",000", L" 12", L"abc"};
  if (r.OneIn(5)) return r.Of(kEdges);
  std::wstring number = std::wstring(r.Of(kSigns)) + r.Of(kPrefixes);
  number.append(r.OneIn(4) ? r.Below(32) : 0, L'0');
  for (std::size_t n = r.OneIn(6) ? r.Below(40) : 1 + r.Below(9); n > 0; --n)
    number += r.CharOf(r.OneIn(4) ? L"0123456789abcdefABCDEFxz" : L"0123456789");
  return number + r.Of(kTails);
}

// Lengths around the buffers: the 260 characters of a text lookup, and the 65535 a
// value may hold.
std::size_t LongLength(Random& r) {
  if (r.OneIn(100)) return 65530 + r.Below(10);
  return r.OneIn(4) ? 1000 : 250 + r.Below(20);
}

std::wstring Value(Random& r, bool wide) {
  switch (r.Below(9)) {
    case 0: return L"";
    case 1: return Pad(r) + Number(r) + Pad(r);
    case 2: case 3: return Number(r);
    case 4: return Text(r, wide, r.Below(12));
    case 5: return Text(r, wide, LongLength(r));
    default: {
      // Quoted, the pair matched or not, around a number, a text, blanks or nothing.
      const wchar_t quote = r.OneIn(2) ? L'"' : L'\'';
      const std::wstring inner = r.OneIn(2) ? Number(r) : r.OneIn(4) ? Text(r, wide, LongLength(r))
                                                                   : Pad(r) + Text(r, wide, r.Below(4));
      return quote + inner + (r.OneIn(5) ? std::wstring(r.OneIn(2) ? L"" : L"\"'") : std::wstring(1, quote));
    }
  }
}

std::wstring Line(Random& r, const Vocabulary& v, bool wide) {
  static const wchar_t* const kClosers[] = {L"]", L"]", L"]", L"]", L"]]", L"] junk", L"]K=9",
                                            L"", L"]x]", L"] ; c ]"};
  switch (r.Below(12)) {
    case 0: return Pad(r) + L"[" + Pad(r) + Cased(r, v.sections) + Pad(r) + r.Of(kClosers) + Pad(r);
    case 1: return Pad(r) + Cased(r, v.keys) + (r.OneIn(2) ? L" 4" : L"");  // no '='
    case 2: return Pad(r) + L";" + Cased(r, v.keys) + L"=" + Value(r, wide);
    case 3: return Pad(r);
    case 4: {  // what a broken tool leaves: stray structure, controls and NULs
      std::wstring junk(r.Below(8), L'\0');
      for (wchar_t& c : junk) c = r.OneIn(9) ? L'\0' : r.CharOf(L"=[];\x01 ab");
      return junk;
    }
    default: return Pad(r) + Cased(r, v.keys) + Pad(r) + L"=" + Pad(r) + Value(r, wide) + Pad(r);
  }
}

// A caller's argument: mostly a name of the file's, sometimes with outer blanks.
template <std::size_t N, std::size_t M>
std::wstring Argument(Random& r, const std::wstring (&names)[N], const wchar_t* const (&pool)[M]) {
  const std::wstring name = r.OneIn(8) ? Name(r, pool) : Cased(r, names);
  const std::wstring blank(1, r.CharOf(L"\t\v\x1A\u00A0\u3000"));
  if (r.OneIn(20)) return r.OneIn(2) ? blank + name : name + blank;
  return r.OneIn(8) ? L"  " + name + L" " : name;
}

ProfileQuery Query(Random& r, const Vocabulary& v) {
  static const std::int32_t kIntDefaults[] = {-99, 0, -1, 7, 2147483647, -2147483647 - 1};
  static const wchar_t* const kTextDefaults[] = {L"2.2", L"", L"d  ", L"  lead", L"tab\t",
                                                 L" ", L"\"q\"", L"'q'"};
  ProfileQuery query;
  query.isInt = r.OneIn(2);
  query.section = Argument(r, v.sections, kSections);
  query.key = Argument(r, v.keys, kKeys);
  query.intDefault = r.Of(kIntDefaults);
  query.textDefault = r.OneIn(30) ? std::wstring(300, L'd') : r.Of(kTextDefaults);
  return query;
}

}  // namespace

GeneratedProfile GenerateProfile(std::uint64_t seed, std::uint64_t index) {
  Random r(seed * 0x100000001B3ull ^ index);
  // Mostly code page 1252 and UTF-16LE; now and then what Windows misreads.
  enum Encoding { kAnsi, kUtf16Le, kUtf16LeNoMark, kUtf8Mark, kUtf16Be };
  static const Encoding kEncodings[] = {kAnsi, kAnsi, kAnsi, kAnsi, kUtf16Le, kUtf16Le, kUtf16Le,
                                        kUtf16LeNoMark, kUtf8Mark, kUtf16Be};
  static const char* const kMarks[] = {"", "\xFF\xFE", "", "\xEF\xBB\xBF", "\xFE\xFF"};
  const Encoding encoding = r.Of(kEncodings);
  const bool wide = encoding == kUtf16Le;
  Vocabulary v;
  for (std::wstring& name : v.sections) name = Name(r, kSections);
  for (std::wstring& name : v.keys) name = Name(r, kKeys);
  // Text above the first header, or none; one line-end style, or a mix of all.
  std::wstring text = r.OneIn(4) ? L"" : L"[" + v.sections[0] + L"]\r\n";
  const std::size_t style = r.Below(4);
  for (std::size_t n = r.OneIn(10) ? r.Below(200) : 4 + r.Below(25); n > 0; --n)
    text += Line(r, v, wide) + (style < 3 ? kLineEnds[style] : r.Of(kLineEnds));
  if (r.OneIn(3)) text += Line(r, v, wide);  // a last line without its end
  GeneratedProfile profile;
  profile.bytes = kMarks[encoding];
  for (const wchar_t c : text) {
    const char low = static_cast<char>(c & 0xFF), high = static_cast<char>(c >> 8 & 0xFF);
    if (encoding == kUtf16Be) profile.bytes += {high, low};
    else if (encoding == kUtf16Le || encoding == kUtf16LeNoMark) profile.bytes += {low, high};
    else profile.bytes += c > 0xFF ? '?' : low;  // a code page 1252 file cannot hold it
  }
  if (wide && r.OneIn(20)) profile.bytes += 'x';  // a UTF-16 file cut inside a unit
  for (int n = 0; n < 16; ++n) profile.queries.push_back(Query(r, v));
  return profile;
}

}  // namespace testing
}  // namespace hublet
