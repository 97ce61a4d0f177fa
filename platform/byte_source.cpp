#include "platform/byte_source.h"

#include <cstring>

namespace hublet {

bool MemoryBytes::ReadAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  if (offset > bytes_.size() || count > bytes_.size() - offset) return false;
  if (count != 0) std::memcpy(out, bytes_.data() + offset, count);
  return true;
}

}  // namespace hublet
