#pragma once
// The text of a preference file as the reader decodes it, for the reader's own files:
// which encoding the profile API takes the bytes in, the units that gives, where lines
// end, and what each line is.
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/ini_document.h"

namespace hublet {

// Code page 1252 from 0x80 to 0x9F; every other byte is Latin-1.
extern const char16_t kCp1252High[32];

// The text's units: code page 1252 bytes, or UTF-16LE pairs after the byte-order mark.
// The structure of a line is all ASCII, which both decodings keep as it is.
struct IniUnits {
  const unsigned char* data;
  std::size_t size;  // in units
  bool utf16;
  bool hasNul;  // if not, names and values need no search for a NUL

  char16_t operator[](std::size_t i) const {
    if (utf16) return static_cast<char16_t>(data[2 * i] | (data[2 * i + 1] << 8));
    const unsigned byte = data[i];
    return byte - 0x80u < 0x20u ? kCp1252High[byte - 0x80u] : static_cast<char16_t>(byte);
  }
  // Where the line from `from` ends: at the first CR or LF, or the text's end.
  std::size_t LineEnd(std::size_t from) const;
  // Where the next line starts after a line that ends at `end`: a CR LF is one line end.
  std::size_t NextLine(std::size_t end) const {
    return end + 1 < size && (*this)[end] == u'\r' && (*this)[end + 1] == u'\n' ? end + 2 : end + 1;
  }
};

// How the API reads the bytes, and how many units that gives (none when it reads nothing).
struct IniDecoding {
  IniEncoding encoding;
  std::size_t unitCount;
};
IniDecoding DecodingOf(const std::string& bytes);
IniUnits UnitsOf(const std::string& bytes, IniDecoding decoding, bool hasNul);
bool HasNul(const IniUnits& text);

// The blanks the file reader trims around lines, names and values; Ctrl-Z included, a
// leftover of DOS end-of-file marks.
inline bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r' ||
         c == 0x1A;
}

// Profile names compare case-insensitively for ASCII letters only.
inline wchar_t FoldAscii(std::uint32_t unit) {
  return static_cast<wchar_t>(unit - 0x41u < 26u ? unit | 0x20u : unit);
}

// The line from begin to end as the reader takes it. seenHeader says whether a header
// came before; a header sets it.
IniLine ClassifyLine(const IniUnits& text, std::size_t begin, std::size_t end, std::size_t number,
                     bool& seenHeader);

// Calls visit(begin, end, number) for each line from the cursor, moving the cursor past
// each line it accepts, until visit returns false or the text ends.
template <class Visit>
void WalkLines(const IniUnits& text, IniCursor& cursor, const Visit& visit) {
  while (cursor.at < text.size) {
    const std::size_t end = text.LineEnd(cursor.at);
    if (!visit(cursor.at, end, cursor.lines + 1)) return;
    cursor.at = text.NextLine(end);
    ++cursor.lines;
  }
}

}  // namespace hublet
