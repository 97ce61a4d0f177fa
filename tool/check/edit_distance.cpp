#include "tool/check/edit_distance.h"

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
std::size_t EditDistanceWithin(const std::wstring& a, const std::wstring& b, std::size_t limit) {
  const std::size_t beyond = limit + 1;
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return beyond;
  const std::size_t cols = b.size() + 1;
  std::vector<std::size_t> before(cols), previous(cols), current(cols);
  for (std::size_t j = 0; j < cols; ++j) previous[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = i;
    std::size_t rowBest = current[0];
    for (std::size_t j = 1; j < cols; ++j) {
      const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      std::size_t best = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) best = std::min(best, before[j - 2] + 1);
      current[j] = best;
      rowBest = std::min(rowBest, best);
    }
    // A row's smallest entry never shrinks further down, except through a swap, which
    // reaches back one row: two rows above the limit end the search.
    if (rowBest > limit && std::min(*std::min_element(previous.begin(), previous.end()), rowBest) > limit) return beyond;
    std::swap(before, previous);
    std::swap(previous, current);
  }
  return std::min(previous[cols - 1], beyond);
}

}  // namespace tool
}  // namespace hublet
