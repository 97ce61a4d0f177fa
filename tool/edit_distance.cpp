#include "tool/edit_distance.h"

#include <algorithm>
#include <vector>

namespace hublet {
namespace tool {

std::wstring FoldUpperAscii(std::wstring text) {
  for (wchar_t& c : text)
    if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - L'a' + L'A');
  return text;
}

// Optimal string alignment: Levenshtein plus the swap of two neighbours, the commonest
// typing slip ("USE_VLP").
std::size_t EditDistance(const std::wstring& a, const std::wstring& b) {
  const std::size_t rows = a.size() + 1;
  const std::size_t cols = b.size() + 1;
  std::vector<std::size_t> d(rows * cols);
  auto at = [cols, &d](std::size_t i, std::size_t j) -> std::size_t& { return d[i * cols + j]; };
  for (std::size_t i = 0; i < rows; ++i) at(i, 0) = i;
  for (std::size_t j = 0; j < cols; ++j) at(0, j) = j;
  for (std::size_t i = 1; i < rows; ++i) {
    for (std::size_t j = 1; j < cols; ++j) {
      const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      std::size_t best = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + cost});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        best = std::min(best, at(i - 2, j - 2) + 1);
      at(i, j) = best;
    }
  }
  return at(rows - 1, cols - 1);
}

}  // namespace tool
}  // namespace hublet
