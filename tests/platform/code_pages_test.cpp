// The portable decoding of 8-bit strings, on a few known texts per kind of code page; the
// Windows build holds every byte and pair of every code page against the system's own
// (code_page_cross_check_test.cpp).
#include <gmock/gmock.h>

#include <stdexcept>

#include "platform/code_pages.h"

namespace hublet {
namespace {

TEST(CodePages, KnownTexts) {
  const struct {
    unsigned codePage;
    const char* bytes;
    const wchar_t* text;
  } cases[] = {
      {1251, "\xc8\xe2\xe0\xed", L"\u0418\u0432\u0430\u043d"},
      {1252, "J\xf6rg \x80", L"J\u00f6rg \u20ac"},
      {28591, "J\xf6rg \x80", L"J\u00f6rg \u0080"},
      {20127, "\xc1\xff", L"A\u007f"},  // the high bit dropped
      {874, "\xa1", L"\u0e01"},
      // As Windows does, no composition: a base letter and a mark stay two units.
      {1255, "\xe0\xc8", L"\u05d0\u05b8"},
      {1258, "A\xcc", L"A\u0300"},
      {932, "\x88\x9f\xb1", L"\u4e9c\uff71"},  // a kanji, then a half-width katakana
      {936, "\xb0\xa1", L"\u554a"},
      {949, "\xb0\xa1", L"\uac00"},
      {950, "\xa4\x40", L"\u4e00"},
      {950, "\x81\x40", L"\ueeb8"},  // the user-defined area: private use, as Windows maps it
      // A lead byte takes any byte after it as its trail, but a NUL; alone at the end it
      // is the code page's default character.
      {932, "\x81\x20" "A", L"\u30fbA"},
      {932, "A\x81", L"A\u30fb"},
      {950, "\xa4", L"?"},
      {65001, "J\xc3\xb6rg", L"J\u00f6rg"},
  };
  for (const auto& c : cases) EXPECT_EQ(CodePageToWide(c.codePage, c.bytes), c.text) << c.codePage << " " << c.bytes;
  EXPECT_EQ(CodePageToWide(932, std::string("\x81\0A", 3)), std::wstring(L"\u30fb\0A", 3));
}

TEST(CodePages, OnlyKnownCodePages) {
  EXPECT_THAT(TableCodePages(), ::testing::Contains(28591u));
  EXPECT_THROW(CodePageToWide(7, "x"), std::runtime_error);
  EXPECT_THROW(CodePageToWide(1200, "x"), std::runtime_error);  // UTF-16 is no 8-bit code page
}

}  // namespace
}  // namespace hublet
