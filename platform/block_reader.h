#pragma once
// A file read in aligned 4 KiB blocks, each asked of the file once while it is kept: a
// reader that takes a few bytes at a time costs a read per block, which on network
// storage is a round trip, not one per question. The first 16 KiB, where compound files
// keep their header, FAT, directory and mini FAT, come in a single read.
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/byte_source.h"

namespace hublet {

class BlockReader : public ByteSource {
 public:
  static const std::uint32_t kBlockSize = 4096;
  static const std::uint32_t kHeadBlocks = 4;
  // At most this many blocks besides the head are kept (256 KiB).
  static const std::size_t kKeptBlocks = 64;

  explicit BlockReader(ByteSource& source) : source_(source) {}
  std::uint64_t Size() const override { return source_.Size(); }

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override;
  // The block, read if need be; null when the file cannot be read there.
  const std::vector<std::uint8_t>* Block(std::uint64_t index);

  ByteSource& source_;
  std::unordered_map<std::uint64_t, std::vector<std::uint8_t>> blocks_;
};

}  // namespace hublet
