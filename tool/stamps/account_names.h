#pragma once
// hublet stamps: Windows account names, which name one account whatever their case
// ("Anna" and "anna" sign in as one user).
#include <string>

namespace hublet {
namespace tool {

// Whether two account names are one, their letters compared without case: the letters of
// Latin (ASCII, Latin-1 and Latin Extended-A), Greek and Cyrillic, by one table on every
// system, so that the Windows and the Linux build judge alike. Any other difference counts.
bool SameAccount(const std::wstring& a, const std::wstring& b);

}  // namespace tool
}  // namespace hublet
