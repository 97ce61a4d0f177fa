// Windows only: the portable decoding of 8-bit strings held against the system's own
// (MultiByteToWideChar) for every code page the reader accepts: every byte alone, every
// lead byte with every trail byte, and random strings; UTF-8 on every code point and every
// input of one or two bytes.
#include <windows.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/code_pages.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

std::wstring SystemDecoding(unsigned codePage, const std::string& bytes) {
  wchar_t units[64];
  const int made = MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), units, 64);
  return std::wstring(units, static_cast<std::size_t>(made > 0 ? made : 0));
}

std::string Hex(const std::string& bytes) {
  std::string text;
  char digits[4];
  for (unsigned char byte : bytes) std::snprintf(digits, sizeof digits, "%02X", byte), text += digits;
  return text;
}

// Counts the inputs decoded otherwise than the system decodes them; shows the first few.
class Comparison {
 public:
  explicit Comparison(unsigned codePage) : codePage_(codePage) {}
  void Check(const std::string& bytes) {
    if (CodePageToWide(codePage_, bytes) == SystemDecoding(codePage_, bytes)) return;
    if (++differences_ <= 5) ADD_FAILURE() << "code page " << codePage_ << ": " << Hex(bytes) << " decodes otherwise";
  }
  int differences() const { return differences_; }

 private:
  unsigned codePage_;
  int differences_ = 0;
};

TEST(CodePageCrossCheck, TablesDecodeAsWindowsDoes) {
  std::mt19937 random(24);
  for (unsigned codePage : TableCodePages()) {
    Comparison comparison(codePage);
    std::string leads;
    for (int byte = 0; byte < 256; ++byte) {
      comparison.Check(std::string(1, static_cast<char>(byte)));
      if (IsDBCSLeadByteEx(codePage, static_cast<BYTE>(byte))) leads += static_cast<char>(byte);
    }
    for (char lead : leads)
      for (int trail = 0; trail < 256; ++trail) comparison.Check(std::string{lead, static_cast<char>(trail)});
    // Strings of up to 12 bytes, mostly from the upper half, where the code pages differ.
    for (int i = 0; i < 20000; ++i) {
      std::string bytes(1 + random() % 12, '\0');
      for (char& byte : bytes) byte = static_cast<char>(random() % 4 == 0 ? random() % 128 : 128 + random() % 128);
      comparison.Check(bytes);
    }
    EXPECT_EQ(comparison.differences(), 0) << "code page " << codePage;
  }
}

// Where a sequence of three or four bytes is cut short by the end of the text, Wine gives
// one U+FFFD for all that is left (E2 41 gives U+FFFD alone); the portable decoder, as
// Unicode advises, one for the cut sequence and the byte after it as it is.
bool WineCutsTheEnd(const std::string& bytes) {
  return bytes.size() == 2 && static_cast<unsigned char>(bytes[0]) >= 0xE0 &&
         static_cast<unsigned char>(bytes[0]) <= 0xF4;
}

TEST(CodePageCrossCheck, Utf8DecodesAsWindowsDoes) {
  Comparison comparison(65001);
  for (char32_t code = 0; code < 0x110000; ++code) {
    if (code >= 0xD800 && code < 0xE000) continue;
    std::wstring unit;
    if (code < 0x10000)
      unit += static_cast<wchar_t>(code);
    else
      unit = {static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10)), static_cast<wchar_t>(0xDC00 + (code & 0x3FF))};
    comparison.Check(WideToUtf8(unit));
  }
  for (int first = 0; first < 256; ++first) {
    comparison.Check(std::string(1, static_cast<char>(first)));
    for (int second = 0; second < 256; ++second) {
      const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
      if (!WineCutsTheEnd(bytes)) comparison.Check(bytes);
    }
  }
  EXPECT_EQ(comparison.differences(), 0);
}

}  // namespace
}  // namespace hublet
