#include "tool/common/shown_text.h"

#include "platform/wide_text.h"

namespace hublet {
namespace tool {
namespace {

// Longer text is cut in messages; the report's fields keep more of it.
constexpr std::size_t kShownLength = 80;

bool IsControl(wchar_t c) { return c < 0x20 || (c >= 0x7F && c <= 0x9F); }

}  // namespace

std::string Escaped(const std::wstring& text) {
  std::wstring escaped;
  for (const wchar_t c : text) {
    if (IsControl(c)) {
      const wchar_t* const hex = L"0123456789ABCDEF";
      escaped += std::wstring(L"\\x") + hex[(c >> 4) & 0xF] + hex[c & 0xF];
    } else {
      escaped += c;
    }
  }
  return WideToUtf8(escaped);
}

std::string Shown(const std::wstring& text) {
  if (text.size() <= kShownLength) return Escaped(text);
  return Escaped(text.substr(0, kShownLength)) + "...";
}

std::string Quoted(const std::wstring& text) { return "\"" + Shown(text) + "\""; }

// Only as much is decoded as can be shown: a UTF-8 character takes at most four bytes.
std::string QuotedArgument(const std::string& utf8) { return Quoted(Utf8ToWide(utf8.substr(0, 4 * (kShownLength + 1)))); }

}  // namespace tool
}  // namespace hublet
