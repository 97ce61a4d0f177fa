#pragma once
// Conversions between UTF-8 (files, terminals) and the UTF-16 code units that wide
// strings hold on every platform here. Invalid input becomes U+FFFD.
#include <cstddef>
#include <string>

namespace hublet {

std::wstring Utf8ToWide(const std::string& utf8);
// The length of the valid UTF-8 sequence at bytes[at] that ends by end (1 for ASCII), or 0
// where none does: overlong forms, surrogates and values past U+10FFFF are not valid.
std::size_t Utf8SequenceAt(const std::string& bytes, std::size_t at, std::size_t end);
bool IsUtf8(const std::string& bytes);
std::string WideToUtf8(const std::wstring& wide);
// WideToUtf8 written at the end of out: a caller that writes many strings reuses one.
void AppendAsUtf8(std::string& out, const std::wstring& wide);

}  // namespace hublet
