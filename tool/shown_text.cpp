#include "tool/shown_text.h"

#include "platform/wide_text.h"

namespace hublet {
namespace tool {
namespace {

// Longer text is cut in messages; the report's fields keep more of it.
constexpr std::size_t kShownLength = 80;

bool IsControl(wchar_t c) { return c < 0x20 || (c >= 0x7F && c <= 0x9F); }

}  // namespace

std::string Shown(const std::wstring& text) {
  const bool cut = text.size() > kShownLength;
  std::wstring escaped;
  for (std::size_t i = 0; i < text.size() && i < kShownLength; ++i) {
    const wchar_t c = text[i];
    if (IsControl(c)) {
      const wchar_t* const hex = L"0123456789ABCDEF";
      escaped += std::wstring(L"\\x") + hex[(c >> 4) & 0xF] + hex[c & 0xF];
    } else {
      escaped += c;
    }
  }
  return WideToUtf8(escaped) + (cut ? "..." : "");
}

std::string Quoted(const std::wstring& text) { return "\"" + Shown(text) + "\""; }

}  // namespace tool
}  // namespace hublet
