#pragma once
// Near-miss matching of preference names, for "did you mean" suggestions.
#include <cstddef>
#include <string>

namespace hublet {
namespace tool {

// ASCII letters folded to upper case, as the profile reader compares names.
std::wstring FoldUpperAscii(std::wstring text);

// Edits (insert, delete, replace, swap of neighbours) between a and b when they are at
// most limit; otherwise some number above limit. Stops as soon as no alignment can stay
// within the limit, and keeps three rows, never a matrix.
std::size_t EditDistanceWithin(const std::wstring& a, const std::wstring& b, std::size_t limit);

}  // namespace tool
}  // namespace hublet
