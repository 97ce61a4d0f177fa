#include "platform/ini_text.h"

#include <cstddef>
#include <cstring>
#include <string>

namespace hublet {

// Its five unassigned bytes map to the C1 control of the same number, as Windows'
// MultiByteToWideChar does.
const char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

namespace {

bool StartsWith(const std::string& bytes, const char* mark, std::size_t length) {
  return bytes.size() >= length && bytes.compare(0, length, mark, length) == 0;
}

void TrimBlanks(const IniUnits& text, std::size_t& begin, std::size_t& end) {
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
}

// Names and values are C strings inside Windows: a NUL ends them. The length kept.
std::size_t KeptLength(const IniUnits& text, std::size_t begin, std::size_t end) {
  if (!text.hasNul) return end - begin;
  std::size_t i = begin;
  while (i < end && text[i] != 0) ++i;
  return i - begin;
}

}  // namespace

IniDecoding DecodingOf(const std::string& bytes) {
  // An odd last byte of UTF-16LE is no unit: the reader drops it.
  if (StartsWith(bytes, "\xFF\xFE", 2)) return {IniEncoding::Utf16Le, (bytes.size() - 2) / 2};
  if (StartsWith(bytes, "\xFE\xFF", 2)) return {IniEncoding::Utf16BeUnsupported, 0};
  if (StartsWith(bytes, "\xEF\xBB\xBF", 3)) return {IniEncoding::Utf8BomAsAnsi, bytes.size()};
  if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0')
    return {IniEncoding::Utf16LeNoBom, bytes.size()};
  return {IniEncoding::Ansi, bytes.size()};
}

IniUnits UnitsOf(const std::string& bytes, IniDecoding decoding, bool hasNul) {
  const unsigned char* const data = reinterpret_cast<const unsigned char*>(bytes.data());
  const bool utf16 = decoding.encoding == IniEncoding::Utf16Le;
  return IniUnits{utf16 ? data + 2 : data, decoding.unitCount, utf16, hasNul};
}

bool HasNul(const IniUnits& text) {
  if (!text.utf16) return text.size != 0 && std::memchr(text.data, 0, text.size) != nullptr;
  for (std::size_t i = 0; i < text.size; ++i)
    if (text[i] == 0) return true;
  return false;
}

std::size_t IniUnits::LineEnd(std::size_t from) const {
  // Code page 1252 bytes are searched as they are.
  if (!utf16) {
    while (from < size && data[from] != '\r' && data[from] != '\n') ++from;
    return from;
  }
  while (from < size && (*this)[from] != u'\r' && (*this)[from] != u'\n') ++from;
  return from;
}

IniLine ClassifyLine(const IniUnits& text, std::size_t begin, std::size_t end, std::size_t number,
                     bool& seenHeader) {
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
    line.name = {nameBegin, KeptLength(text, nameBegin, nameEnd)};
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
  line.name = {begin, KeptLength(text, begin, nameEnd)};
  line.hasEquals = equals < end;
  line.value = {end, 0};
  bool cut = line.name.length != nameEnd - begin;
  if (line.hasEquals) {
    std::size_t valueBegin = equals + 1;
    TrimBlanks(text, valueBegin, end);
    line.value = {valueBegin, KeptLength(text, valueBegin, end)};
    cut = cut || line.value.length != end - valueBegin;
  }
  line.cutAtNul = cut;
  return line;
}

}  // namespace hublet
