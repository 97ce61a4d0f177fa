#include "platform/wide_text.h"

#include <cstddef>
#include <cstdint>

namespace hublet {
namespace {

const char32_t kReplacement = 0xFFFD;

void AppendUtf16(std::wstring& out, char32_t code) {
  if (code < 0x10000) {
    out += static_cast<wchar_t>(code);
  } else {
    code -= 0x10000;
    out += static_cast<wchar_t>(0xD800 + (code >> 10));
    out += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
  }
}

void AppendUtf8(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

// Each maximal ill-formed subsequence becomes one U+FFFD, as Unicode recommends, so a
// truncated sequence costs one replacement and the byte after it is decoded afresh.
std::wstring Utf8ToWide(const std::string& utf8) {
  std::wstring out;
  out.reserve(utf8.size());
  const std::size_t size = utf8.size();
  std::size_t i = 0;
  while (i < size) {
    const unsigned char lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      out += static_cast<wchar_t>(lead);
      ++i;
      continue;
    }
    std::size_t length = 0;
    char32_t code = 0;
    // Bounds for the second byte exclude overlong forms, surrogates and values past
    // U+10FFFF up front, so every completed sequence is valid.
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2;
      code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      code = lead & 0x0F;
      if (lead == 0xE0) low = 0xA0;
      if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      code = lead & 0x07;
      if (lead == 0xF0) low = 0x90;
      if (lead == 0xF4) high = 0x8F;
    } else {
      AppendUtf16(out, kReplacement);
      ++i;
      continue;
    }
    std::size_t used = 1;
    while (used < length && i + used < size) {
      const unsigned char byte = static_cast<unsigned char>(utf8[i + used]);
      if (used == 1 ? (byte < low || byte > high) : !IsContinuation(byte)) break;
      code = (code << 6) | (byte & 0x3F);
      ++used;
    }
    AppendUtf16(out, used == length ? code : kReplacement);
    i += used;
  }
  return out;
}

std::string WideToUtf8(const std::wstring& wide) {
  std::string out;
  AppendAsUtf8(out, wide);
  return out;
}

void AppendAsUtf8(std::string& out, const std::wstring& wide) {
  const std::size_t size = wide.size();
  // Text up to its first character past ASCII, most often all of it, is copied as it is.
  const wchar_t* const from = wide.data();
  std::size_t ascii = 0;
  while (ascii < size && static_cast<std::uint32_t>(from[ascii]) < 0x80) ++ascii;
  const std::size_t start = out.size();
  out.resize(start + ascii);
  char* const to = &out[start];
  for (std::size_t i = 0; i < ascii; ++i) to[i] = static_cast<char>(from[i]);
  for (std::size_t i = ascii; i < size; ++i) {
    // wchar_t may be signed and 32 bits wide; only 0 to 0x10FFFF are code points.
    const std::uint32_t unit = static_cast<std::uint32_t>(wide[i]);
    char32_t code = kReplacement;
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      if (i + 1 < size) {
        const std::uint32_t next = static_cast<std::uint32_t>(wide[i + 1]);
        if (next >= 0xDC00 && next <= 0xDFFF) {
          code = 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
          ++i;
        }
      }
    } else if (unit < 0xDC00 || (unit > 0xDFFF && unit <= 0x10FFFF)) {
      code = unit;
    }
    AppendUtf8(out, code);
  }
}

}  // namespace hublet
