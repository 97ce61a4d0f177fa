#include "host/host_path.h"

#include "host/host_constants.h"

namespace hublet {

std::wstring JoinHostPath(const std::wstring& directory, const wchar_t* relative) {
  std::wstring path = directory;
  if (!path.empty() && path.back() != L'\\') path += L'\\';
  path += relative;
  const std::size_t maxLength = host::kTextCapacity - 1;
  if (path.size() > maxLength) path.resize(maxLength);
  return path;
}

}  // namespace hublet
