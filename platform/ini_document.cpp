#include "platform/ini_document.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/ini_text.h"

namespace hublet {
namespace {

// The largest value length Windows keeps; a longer value's length wraps modulo 65536.
const std::size_t kMaxValueLength = 65535;
// GetPrivateProfileIntW reads the value's text into 30 characters.
const std::size_t kIntBufferSize = 30;
const std::size_t kNotCounted = static_cast<std::size_t>(-1);

// A caller's argument.
struct WideUnits {
  const wchar_t* data;
  std::size_t size;
  wchar_t operator[](std::size_t i) const { return data[i]; }
};

std::wstring Widen(const IniUnits& text, IniSpan span) {
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
IniSpan CopiedPart(const IniUnits& text, IniSpan value, std::size_t size) {
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

template <class Text>
ProfileIntReading ReadInt(const Text& text, std::size_t i, std::size_t end) {
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
    : encoding_(IniEncoding::Ansi), unitCount_(0), hasNul_(false), lineCount_(0) {}

IniDocument IniDocument::Parse(std::string bytes) {
  IniDocument document;
  document.bytes_ = std::move(bytes);
  const IniDecoding decoding = DecodingOf(document.bytes_);
  document.encoding_ = decoding.encoding;
  document.unitCount_ = decoding.unitCount;
  document.hasNul_ = HasNul(document.Units());
  document.lineCount_ = kNotCounted;
  return document;
}

IniUnits IniDocument::Units() const { return UnitsOf(bytes_, {encoding_, unitCount_}, hasNul_); }

std::size_t IniDocument::LineCount() const {
  if (lineCount_ == kNotCounted) {
    IniCursor cursor{0, 0};
    WalkLines(Units(), cursor, [](std::size_t, std::size_t, std::size_t) { return true; });
    lineCount_ = cursor.lines;
  }
  return lineCount_;
}

void IniDocument::ForEachLine(const std::function<void(const IniLine&)>& visit) const {
  const IniUnits text = Units();
  IniCursor cursor{0, 0};
  bool seenHeader = false;
  WalkLines(text, cursor, [&](std::size_t begin, std::size_t end, std::size_t number) {
    visit(ClassifyLine(text, begin, end, number, seenHeader));
    return true;
  });
}

std::wstring IniDocument::Text(IniSpan span, std::size_t limit) const {
  return Widen(Units(), {span.begin, std::min(span.length, limit)});
}

char16_t IniDocument::Unit(std::size_t at) const { return Units()[at]; }

bool IniDocument::NameIs(IniSpan span, const std::wstring& name) const {
  if (span.length != name.size()) return false;
  const IniUnits text = Units();
  for (std::size_t i = 0; i < span.length; ++i)
    if (FoldAscii(text[span.begin + i]) != FoldAscii(static_cast<std::uint32_t>(name[i]))) return false;
  return true;
}

void IniDocument::Prepare(const std::vector<std::pair<std::wstring, std::wstring>>& lookups) const {
  memo_.Prepare(Units(), lookups);
}

IniFound IniDocument::Find(const std::wstring& section, const std::wstring& key) const {
  return memo_.Find(Units(), section, key);
}

std::wstring IniDocument::LookupText(const std::wstring& section, const std::wstring& key,
                                     const std::wstring& defaultValue,
                                     std::size_t bufferSize) const {
  if (bufferSize == 0) return std::wstring();
  const IniFound found = Find(section, key);
  if (found.line != 0 && found.hasEquals) {
    const IniUnits text = Units();
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
  const IniUnits text = Units();
  const IniSpan part = CopiedPart(text, StoredValue(found.value), kIntBufferSize);
  if (part.length == 0) return static_cast<std::uint32_t>(defaultValue);
  return ReadInt(text, part.begin, part.begin + part.length).value;
}

ProfileIntReading ReadProfileInt(const std::wstring& text) {
  return ReadInt(WideUnits{text.data(), text.size()}, 0, text.size());
}

}  // namespace hublet
