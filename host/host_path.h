#pragma once
#include <string>

namespace hublet {

// A path under a host directory, built as in a 260-character buffer: a backslash between
// the two only when the directory is not empty and does not already end in one, and the
// result cut to 259 characters when it would not fit.
std::wstring JoinHostPath(const std::wstring& directory, const wchar_t* relative);

}  // namespace hublet
