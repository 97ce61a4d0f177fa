#include "tool/stamps/account_names.h"

namespace hublet {
namespace tool {
namespace {

// A letter as its capital, where the blocks above pair them; other characters as they are.
wchar_t Capital(wchar_t c) {
  if ((c >= L'a' && c <= L'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) return static_cast<wchar_t>(c - 0x20);
  if (c == 0xFF) return 0x178;
  // Latin Extended-A pairs capital and small letters, the capital first, except in the
  // two runs where a lone letter (U+0138, U+0149) shifts the pairs by one.
  if ((c >= 0x100 && c <= 0x12F) || (c >= 0x132 && c <= 0x137) || (c >= 0x14A && c <= 0x177))
    return static_cast<wchar_t>(c & ~1);
  if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return static_cast<wchar_t>(c - ((c & 1) == 0));
  if (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) return static_cast<wchar_t>(c - 0x20);
  if (c == 0x3C2) return 0x3A3;  // final sigma
  if (c >= 0x430 && c <= 0x44F) return static_cast<wchar_t>(c - 0x20);
  if (c >= 0x450 && c <= 0x45F) return static_cast<wchar_t>(c - 0x50);
  return c;
}

}  // namespace

bool SameAccount(const std::wstring& a, const std::wstring& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (Capital(a[i]) != Capital(b[i])) return false;
  return true;
}

}  // namespace tool
}  // namespace hublet
