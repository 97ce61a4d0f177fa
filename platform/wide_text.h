#pragma once
// Conversions between UTF-8 (files, terminals) and the UTF-16 code units that wide
// strings hold on every platform here. Invalid input becomes U+FFFD.
#include <string>

namespace hublet {

std::wstring Utf8ToWide(const std::string& utf8);
std::string WideToUtf8(const std::wstring& wide);
// WideToUtf8 written at the end of out: a caller that writes many strings reuses one.
void AppendAsUtf8(std::string& out, const std::wstring& wide);

}  // namespace hublet
