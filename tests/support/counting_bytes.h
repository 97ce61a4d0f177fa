#pragma once
// A byte source that counts what a reader asks of the one it wraps: each request is a
// read (a pread, or a round trip on network storage).
#include <cstdint>

#include "platform/byte_source.h"

namespace hublet {
namespace testing {

class CountingBytes : public ByteSource {
 public:
  explicit CountingBytes(ByteSource& source) : source_(source) {}
  std::uint64_t Size() const override { return source_.Size(); }

  std::uint64_t reads = 0;
  std::uint64_t bytesRead = 0;

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    ++reads;
    bytesRead += count;
    return source_.ReadAt(offset, out, count) ? count : 0;
  }
  ByteSource& source_;
};

}  // namespace testing
}  // namespace hublet
