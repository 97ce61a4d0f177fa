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

// What a lead byte past ASCII begins: the sequence's length (0 for none) and the bounds of
// its second byte, which exclude overlong forms, surrogates and values past U+10FFFF up
// front, so that every completed sequence is valid.
struct Utf8Lead {
  std::size_t length;
  unsigned char low, high;
};

Utf8Lead LeadOf(unsigned char lead) {
  Utf8Lead result = {0, 0x80, 0xBF};
  if (lead >= 0xC2 && lead <= 0xDF) {
    result.length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    result.length = 3;
    if (lead == 0xE0) result.low = 0xA0;
    if (lead == 0xED) result.high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    result.length = 4;
    if (lead == 0xF0) result.low = 0x90;
    if (lead == 0xF4) result.high = 0x8F;
  }
  return result;
}

// How many bytes from bytes[at] on (before end) continue the sequence that lead begins.
std::size_t Continued(const std::string& bytes, std::size_t at, std::size_t end, const Utf8Lead& lead) {
  std::size_t used = 1;
  while (used < lead.length && at + used < end) {
    const unsigned char byte = static_cast<unsigned char>(bytes[at + used]);
    if (used == 1 ? (byte < lead.low || byte > lead.high) : !IsContinuation(byte)) break;
    ++used;
  }
  return used;
}

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
    const Utf8Lead sequence = LeadOf(lead);
    if (sequence.length == 0) {
      AppendUtf16(out, kReplacement);
      ++i;
      continue;
    }
    const std::size_t used = Continued(utf8, i, size, sequence);
    char32_t code = lead & (0x7F >> sequence.length);
    for (std::size_t k = 1; k < used; ++k) code = (code << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
    AppendUtf16(out, used == sequence.length ? code : kReplacement);
    i += used;
  }
  return out;
}

std::size_t Utf8SequenceAt(const std::string& bytes, std::size_t at, std::size_t end) {
  const unsigned char lead = static_cast<unsigned char>(bytes[at]);
  if (lead < 0x80) return 1;
  const Utf8Lead sequence = LeadOf(lead);
  return sequence.length != 0 && Continued(bytes, at, end, sequence) == sequence.length ? sequence.length : 0;
}

bool IsUtf8(const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = Utf8SequenceAt(bytes, at, bytes.size());
    if (length == 0) return false;
    at += length;
  }
  return true;
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
