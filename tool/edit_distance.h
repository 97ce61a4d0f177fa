#pragma once
// Near-miss matching of preference names, for "did you mean" suggestions.
#include <cstddef>
#include <string>

namespace hublet {
namespace tool {

// ASCII letters folded to upper case, as the profile reader compares names.
std::wstring FoldUpperAscii(std::wstring text);

// Edits (insert, delete, replace, swap of neighbours) between a and b.
std::size_t EditDistance(const std::wstring& a, const std::wstring& b);

}  // namespace tool
}  // namespace hublet
