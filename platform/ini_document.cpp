#include "platform/ini_document.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace hublet {
namespace {

// Code page 1252 from 0x80 to 0x9F; its five unassigned bytes map to the C1 control of
// the same number, as Windows' MultiByteToWideChar does. Every other byte is Latin-1.
const char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// The largest value length Windows keeps; a longer value's length wraps modulo 65536.
const std::size_t kMaxValueLength = 65535;
// GetPrivateProfileIntW reads the value's text into 30 characters.
const std::size_t kIntBufferSize = 30;
// Key lengths below this are told apart by one bit each before a key is compared.
const std::size_t kLengthBits = 64;
// The entries a walk remembers besides those looked up, in the sections looked up and in
// others each: far more than the sections of any preference file hold. Longer names are
// not remembered, nor are the sections that hold them remembered whole.
const std::size_t kRememberedEntries = 1024;
const std::size_t kLongestRemembered = 256;

// The text's units as the reader decodes them: code page 1252 bytes, or UTF-16LE pairs
// after the byte-order mark. The structure of a line is all ASCII, which both decodings
// keep as it is.
struct Units {
  const unsigned char* data;
  std::size_t size;
  bool utf16;
  char16_t operator[](std::size_t i) const {
    if (utf16) return static_cast<char16_t>(data[2 * i] | (data[2 * i + 1] << 8));
    const unsigned byte = data[i];
    return byte - 0x80u < 0x20u ? kCp1252High[byte - 0x80u] : static_cast<char16_t>(byte);
  }
  bool HasNul() const {
    if (!utf16) return size != 0 && std::memchr(data, 0, size) != nullptr;
    for (std::size_t i = 0; i < size; ++i)
      if ((*this)[i] == 0) return true;
    return false;
  }
  // Where the line from `from` ends: at the first CR or LF, or the text's end. Code page
  // 1252 bytes are searched as they are.
  std::size_t LineEnd(std::size_t from) const {
    if (!utf16) {
      while (from < size && data[from] != '\r' && data[from] != '\n') ++from;
      return from;
    }
    while (from < size && (*this)[from] != u'\r' && (*this)[from] != u'\n') ++from;
    return from;
  }
};

Units UnitsOf(const std::string& bytes, IniEncoding encoding, std::size_t count) {
  const unsigned char* const data = reinterpret_cast<const unsigned char*>(bytes.data());
  const bool utf16 = encoding == IniEncoding::Utf16Le;
  return Units{utf16 ? data + 2 : data, count, utf16};
}

// A caller's argument.
struct WideUnits {
  const wchar_t* data;
  std::size_t size;
  wchar_t operator[](std::size_t i) const { return data[i]; }
};

bool StartsWith(const std::string& bytes, const char* mark, std::size_t length) {
  return bytes.size() >= length && bytes.compare(0, length, mark, length) == 0;
}

// The blanks the file reader trims around lines, names and values; Ctrl-Z included, a
// leftover of DOS end-of-file marks.
bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r' ||
         c == 0x1A;
}

template <class Units>
void TrimBlanks(const Units& text, std::size_t& begin, std::size_t& end) {
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
}

// Names and values are C strings inside Windows: a NUL ends them. The length kept.
template <class Units>
std::size_t KeptLength(const Units& text, bool hasNul, std::size_t begin, std::size_t end) {
  if (!hasNul) return end - begin;
  std::size_t i = begin;
  while (i < end && text[i] != 0) ++i;
  return i - begin;
}

// Lines end at CR LF, at a lone CR or at a lone LF. Calls visit(begin, end) for each
// line until it returns false.
template <class Units, class Visit>
void ForEachLineRange(const Units& text, const Visit& visit) {
  for (std::size_t begin = 0; begin < text.size;) {
    const std::size_t end = text.LineEnd(begin);
    if (!visit(begin, end)) return;
    begin = end + 1;
    if (end + 1 < text.size && text[end] == u'\r' && text[end + 1] == u'\n') ++begin;
  }
}

template <class Units>
IniLine ClassifyLine(const Units& text, bool hasNul, std::size_t begin, std::size_t end,
                     std::size_t number, bool& seenHeader) {
  IniLine line = IniLine();
  line.number = number;
  TrimBlanks(text, begin, end);
  line.content = {begin, end - begin};
  if (begin == end) return line;

  if (text[begin] == u'[') {
    // The name ends at the first ']'; without one, a header still runs to the line end.
    line.kind = IniLineKind::Header;
    seenHeader = true;
    std::size_t close = begin + 1;
    while (close < end && text[close] != u']') ++close;
    line.textAfterHeader = close + 1 < end;
    line.unclosedHeader = close == end;
    std::size_t nameBegin = begin + 1;
    std::size_t nameEnd = close;
    TrimBlanks(text, nameBegin, nameEnd);
    line.name = {nameBegin, KeptLength(text, hasNul, nameBegin, nameEnd)};
    line.cutAtNul = line.name.length != nameEnd - nameBegin;
    return line;
  }
  if (text[begin] == u';') {
    line.kind = IniLineKind::Comment;
    return line;
  }
  line.kind = IniLineKind::Entry;
  if (!seenHeader) {
    line.beforeFirstSection = true;
    return line;
  }
  std::size_t equals = begin;
  while (equals < end && text[equals] != u'=') ++equals;
  std::size_t nameEnd = equals;
  TrimBlanks(text, begin, nameEnd);
  line.name = {begin, KeptLength(text, hasNul, begin, nameEnd)};
  line.hasEquals = equals < end;
  line.value = {end, 0};
  bool cut = line.name.length != nameEnd - begin;
  if (line.hasEquals) {
    std::size_t valueBegin = equals + 1;
    TrimBlanks(text, valueBegin, end);
    line.value = {valueBegin, KeptLength(text, hasNul, valueBegin, end)};
    cut = cut || line.value.length != end - valueBegin;
  }
  line.cutAtNul = cut;
  return line;
}

// Every line, classified, until visit returns false.
template <class Units, class Visit>
void WalkLines(const Units& text, bool hasNul, const Visit& visit) {
  bool seenHeader = false;
  std::size_t number = 0;
  ForEachLineRange(text, [&](std::size_t begin, std::size_t end) {
    return visit(ClassifyLine(text, hasNul, begin, end, ++number, seenHeader));
  });
}

// Profile names compare case-insensitively for ASCII letters only.
template <class Char>
wchar_t FoldAscii(Char c) {
  const std::uint32_t unit = static_cast<std::uint32_t>(c);
  return static_cast<wchar_t>(unit - 0x41u < 26u ? unit | 0x20u : unit);
}

template <class Units>
void FoldInto(const Units& text, IniSpan span, std::wstring& folded) {
  folded.resize(span.length);
  for (std::size_t i = 0; i < span.length; ++i) folded[i] = FoldAscii(text[span.begin + i]);
}

// Whether the span holds the already folded name.
template <class Units>
bool HoldsFolded(const Units& text, IniSpan span, const std::wstring& folded) {
  if (span.length != folded.size()) return false;
  for (std::size_t i = 0; i < span.length; ++i) {
    if (FoldAscii(text[span.begin + i]) != folded[i]) return false;
  }
  return true;
}

// A caller's argument as Windows takes it: a C string with its outer spaces (only
// spaces, not tabs) ignored; folded for comparison.
void AppendFoldedArgument(const std::wstring& argument, std::wstring& folded) {
  std::size_t begin = 0;
  std::size_t end = std::min(argument.find(L'\0'), argument.size());
  while (begin < end && argument[begin] == L' ') ++begin;
  while (end > begin && argument[end - 1] == L' ') --end;
  for (std::size_t i = begin; i < end; ++i) folded += FoldAscii(argument[i]);
}

std::wstring FoldedArgument(const std::wstring& argument) {
  std::wstring folded;
  AppendFoldedArgument(argument, folded);
  return folded;
}

template <class Units>
std::wstring Widen(const Units& text, IniSpan span) {
  std::wstring wide(span.length, L'\0');
  for (std::size_t i = 0; i < span.length; ++i) wide[i] = text[span.begin + i];
  return wide;
}

// A value as Windows keeps it: a longer one's length wraps modulo 65536.
IniSpan StoredValue(IniSpan value) {
  if (value.length > kMaxValueLength) value.length %= kMaxValueLength + 1;
  return value;
}

// What the API copies into a buffer of `size` characters for a found value: one pair of
// matching outer quotes is dropped, and the text is cut to size - 1 characters. The cut
// is taken before the closing quote is dropped, so when exactly the inner text fills the
// buffer its last character is lost too.
template <class Units>
IniSpan CopiedPart(const Units& text, IniSpan value, std::size_t size) {
  std::size_t begin = 0;
  bool quoted = false;
  if (value.length >= 2) {
    const char16_t first = text[value.begin];
    quoted = (first == u'"' || first == u'\'') && text[value.begin + value.length - 1] == first;
    if (quoted) begin = 1;
  }
  const std::size_t rest = value.length - begin;
  std::size_t copied = std::min(rest, size - 1);
  if (quoted && size >= rest && copied > 0) --copied;
  return {value.begin + begin, copied};
}

template <class Units>
ProfileIntReading ReadInt(const Units& text, std::size_t i, std::size_t end) {
  ProfileIntReading reading = ProfileIntReading();
  while (i < end && static_cast<std::uint32_t>(text[i]) <= 0x20) ++i;
  bool negative = false;
  if (i < end && (text[i] == '+' || text[i] == '-')) {
    negative = text[i] == '-';
    ++i;
  }
  std::uint32_t base = 10;
  if (i + 1 < end && text[i] == '0') {
    const std::uint32_t mark = static_cast<std::uint32_t>(text[i + 1]);
    if (mark == 'x') base = 16;
    if (mark == 'o') base = 8;
    if (mark == 'b') base = 2;
    if (base != 10) i += 2;
  }
  // The magnitude wraps at 32 bits as the API's does; beyond records that it did.
  std::uint64_t magnitude = 0;
  bool beyond = false;
  for (; i < end; ++i) {
    const std::uint32_t c = static_cast<std::uint32_t>(text[i]);
    std::uint32_t digit = 36;
    if (c >= '0' && c <= '9') digit = c - '0';
    if (c >= 'a' && c <= 'z') digit = c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') digit = c - 'A' + 10;
    if (digit >= base) break;
    reading.anyDigit = true;
    magnitude = magnitude * base + digit;
    if (magnitude > 0xFFFFFFFFull) {
      beyond = true;
      magnitude &= 0xFFFFFFFFull;
    }
  }
  const std::uint32_t total = static_cast<std::uint32_t>(magnitude);
  reading.value = negative ? 0u - total : total;
  reading.wraps = beyond || magnitude > (negative ? 0x80000000ull : 0x7FFFFFFFull);
  reading.end = i;
  return reading;
}

}  // namespace

IniDocument::IniDocument()
    : encoding_(IniEncoding::Ansi), lineCount_(0), unitCount_(0), hasNul_(false) {}

IniDocument IniDocument::Parse(std::string bytes) {
  IniDocument document;
  document.bytes_ = std::move(bytes);
  const std::string& kept = document.bytes_;
  if (StartsWith(kept, "\xFF\xFE", 2)) {
    document.encoding_ = IniEncoding::Utf16Le;
    document.unitCount_ = (kept.size() - 2) / 2;  // an odd last byte is dropped
  } else if (StartsWith(kept, "\xFE\xFF", 2)) {
    document.encoding_ = IniEncoding::Utf16BeUnsupported;
    return document;
  } else {
    if (StartsWith(kept, "\xEF\xBB\xBF", 3)) {
      document.encoding_ = IniEncoding::Utf8BomAsAnsi;
    } else if (kept.size() >= 2 && kept[0] != '\0' && kept[1] == '\0') {
      document.encoding_ = IniEncoding::Utf16LeNoBom;
    }
    document.unitCount_ = kept.size();
  }
  const Units text = UnitsOf(document.bytes_, document.encoding_, document.unitCount_);
  document.hasNul_ = text.HasNul();
  ForEachLineRange(text, [&document](std::size_t, std::size_t) {
    ++document.lineCount_;
    return true;
  });
  return document;
}

void IniDocument::ForEachLine(const std::function<void(const IniLine&)>& visit) const {
  WalkLines(UnitsOf(bytes_, encoding_, unitCount_), hasNul_, [&visit](const IniLine& line) {
    visit(line);
    return true;
  });
}

std::wstring IniDocument::Text(IniSpan span, std::size_t limit) const {
  return Widen(UnitsOf(bytes_, encoding_, unitCount_), {span.begin, std::min(span.length, limit)});
}

char16_t IniDocument::Unit(std::size_t at) const { return UnitsOf(bytes_, encoding_, unitCount_)[at]; }

bool IniDocument::NameIs(IniSpan span, const std::wstring& name) const {
  if (span.length != name.size()) return false;
  const Units text = UnitsOf(bytes_, encoding_, unitCount_);
  for (std::size_t i = 0; i < span.length; ++i)
    if (FoldAscii(text[span.begin + i]) != FoldAscii(name[i])) return false;
  return true;
}

void IniDocument::Prepare(const std::vector<std::pair<std::wstring, std::wstring>>& lookups) const {
  // The sections looked up, each with the keys still to find under its first header.
  struct Wanted {
    std::wstring section;
    std::unordered_map<std::wstring, IniFound*> keys;
    std::uint64_t lengths;  // bit n: a key is n units long
    std::size_t longest;
    bool passed;            // its first header is behind
  };
  std::vector<Wanted> wanted;
  for (const auto& lookup : lookups) {
    const std::wstring section = FoldedArgument(lookup.first);
    const std::wstring key = FoldedArgument(lookup.second);
    if (completeSections_.count(section) != 0) continue;
    const auto answer = found_.emplace(section + L'\0' + key, IniFound());
    if (!answer.second) continue;
    auto it = std::find_if(wanted.begin(), wanted.end(),
                           [&](const Wanted& w) { return w.section == section; });
    if (it == wanted.end()) it = wanted.insert(wanted.end(), Wanted{section, {}, 0, 0, false});
    it->keys.emplace(key, &answer.first->second);
    if (key.size() < kLengthBits) it->lengths |= std::uint64_t(1) << key.size();
    it->longest = std::max(it->longest, key.size());
  }
  if (wanted.empty()) return;

  // Besides the keys looked up, the walk remembers the first entry of every name under
  // the first header of each section, while there is room. A section remembered whole
  // needs no walk again.
  std::size_t rooms[2] = {kRememberedEntries, kRememberedEntries};  // sections looked up, others
  std::unordered_set<std::wstring> headers;  // the names of the headers met, while there is room
  std::wstring learning;                     // the section remembered now and a NUL, or empty
  bool whole = false;                        // nothing of it was left out
  const auto finishSection = [&] {
    if (!learning.empty() && whole) completeSections_.insert(learning.substr(0, learning.size() - 1));
    learning.clear();
  };
  const Units text = UnitsOf(bytes_, encoding_, unitCount_);
  Wanted* current = nullptr;
  std::size_t ahead = wanted.size();
  std::wstring name;
  WalkLines(text, hasNul_, [&](const IniLine& line) {
    if (line.kind == IniLineKind::Header) {
      finishSection();
      current = nullptr;
      for (Wanted& w : wanted) {
        if (w.passed || !HoldsFolded(text, line.name, w.section)) continue;
        w.passed = true;
        current = &w;
        --ahead;
        break;
      }
      const bool fits = line.name.length <= kLongestRemembered;
      if (fits) FoldInto(text, line.name, name);
      const bool first = fits && headers.size() < kRememberedEntries && headers.insert(name).second;
      // A section an earlier walk remembered whole is not remembered again.
      if ((first && completeSections_.count(name) == 0) || (current != nullptr && fits)) {
        learning.assign(name) += L'\0';
        whole = true;
      }
      const bool more = ahead > 0 || current != nullptr || (rooms[1] > 0 && headers.size() < kRememberedEntries);
      if (!more) learning.clear();  // the walk ends before this section's body
      return more;
    }
    if (line.kind != IniLineKind::Entry) return true;
    const IniFound entry{line.number, line.hasEquals, line.value};
    std::size_t& room = rooms[current != nullptr ? 0 : 1];
    if (!learning.empty() && (room == 0 || line.name.length > kLongestRemembered)) whole = false;
    if (!learning.empty() && room > 0 && line.name.length <= kLongestRemembered) {
      // Every entry takes room, a repeated name too, so a section of a million
      // repeats is not folded a million times.
      FoldInto(text, line.name, name);
      memo_.assign(learning).append(name);
      if (found_.find(memo_) == found_.end()) found_.emplace(memo_, entry);
      --room;
    }
    if (current == nullptr) return true;
    const std::size_t length = line.name.length;
    if (length > current->longest || (length < kLengthBits && (current->lengths >> length & 1) == 0))
      return true;
    FoldInto(text, line.name, name);
    const auto key = current->keys.find(name);
    if (key != current->keys.end()) {
      // The first entry of a name is the one read; later ones are not looked for.
      *key->second = entry;
      current->keys.erase(key);
    }
    return true;
  });
  finishSection();
  // A section looked up that the whole walk did not meet has no keys at all.
  for (const Wanted& w : wanted)
    if (!w.passed) completeSections_.insert(w.section);
}

IniFound IniDocument::Find(const std::wstring& section, const std::wstring& key) const {
  memo_.clear();
  AppendFoldedArgument(section, memo_);
  const std::size_t sectionLength = memo_.size();
  memo_ += L'\0';
  AppendFoldedArgument(key, memo_);
  auto answer = found_.find(memo_);
  // Not remembered: a section remembered whole has no such key; another needs a walk.
  if (answer == found_.end() && completeSections_.count(memo_.substr(0, sectionLength)) == 0) {
    const std::wstring memo = memo_;  // the walk writes memo_
    Prepare({{section, key}});
    answer = found_.find(memo);
  }
  return answer != found_.end() ? answer->second : IniFound();
}

std::wstring IniDocument::LookupText(const std::wstring& section, const std::wstring& key,
                                     const std::wstring& defaultValue,
                                     std::size_t bufferSize) const {
  if (bufferSize == 0) return std::wstring();
  const IniFound found = Find(section, key);
  if (found.line != 0 && found.hasEquals) {
    const Units text = UnitsOf(bytes_, encoding_, unitCount_);
    return Widen(text, CopiedPart(text, StoredValue(found.value), bufferSize));
  }
  // The default loses its trailing spaces (though never its first character) and is
  // otherwise copied as given, quotes included.
  std::size_t length = std::min(defaultValue.find(L'\0'), defaultValue.size());
  while (length > 1 && defaultValue[length - 1] == L' ') --length;
  return defaultValue.substr(0, std::min(length, bufferSize - 1));
}

std::uint32_t IniDocument::LookupInt(const std::wstring& section, const std::wstring& key,
                                     std::int32_t defaultValue) const {
  // The text a lookup into kIntBufferSize characters would leave, read in place.
  const IniFound found = Find(section, key);
  if (found.line == 0 || !found.hasEquals) return static_cast<std::uint32_t>(defaultValue);
  const Units text = UnitsOf(bytes_, encoding_, unitCount_);
  const IniSpan part = CopiedPart(text, StoredValue(found.value), kIntBufferSize);
  if (part.length == 0) return static_cast<std::uint32_t>(defaultValue);
  return ReadInt(text, part.begin, part.begin + part.length).value;
}

ProfileIntReading ReadProfileInt(const std::wstring& text) {
  return ReadInt(WideUnits{text.data(), text.size()}, 0, text.size());
}

}  // namespace hublet
