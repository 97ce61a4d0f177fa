#include "platform/byte_source.h"

#include <cstring>

namespace hublet {

bool ByteSource::ReadAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  const std::uint64_t size = Size();
  if (offset > size || count > size - offset) return false;
  while (count > 0) {
    const std::size_t got = ReadSome(offset, out, count);
    if (got == 0) return false;
    out += got;
    offset += got;
    count -= got;
  }
  return true;
}

std::size_t MemoryBytes::ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  std::memcpy(out, bytes_.data() + offset, count);
  return count;
}

}  // namespace hublet
