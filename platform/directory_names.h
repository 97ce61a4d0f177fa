#pragma once
// The order of sibling names in a compound file's directory: a shorter name first, then
// unit by unit after simple Unicode upper-casing, as the format defines it.
#include <string>

namespace hublet {

// A UTF-16 unit upper-cased by Unicode's simple mapping (surrogates stay as they are).
char16_t SimpleUpperCase(char16_t unit);

// Below zero when a sorts before b, zero when the directory takes them for one name.
int CompareDirectoryNames(const char16_t* a, std::size_t aLength, const char16_t* b, std::size_t bLength);
int CompareDirectoryNames(const std::u16string& a, const std::u16string& b);

}  // namespace hublet
