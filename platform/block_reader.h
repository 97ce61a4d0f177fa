#pragma once
// A file read in aligned 4 KiB blocks, each asked of the file once while it is kept: a reader
// that takes a few bytes at a time costs a read per block, which on network storage is a round
// trip, not one per question. The first 12 KiB, where the files 3ds Max writes keep their
// header, FAT and directory, come in a single read; what a read costs is mostly the copying, so
// the mini FAT after them, which their summaries never need, is left to a read of its own.
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/byte_source.h"

namespace hublet {

class BlockReader : public ByteSource {
 public:
  static const std::uint32_t kBlockSize = 4096;
  static const std::uint32_t kHeadBlocks = 3;
  // At most this many blocks besides the head are kept (256 KiB).
  static const std::size_t kKeptBlocks = 64;

  explicit BlockReader(ByteSource& source) : source_(source) {}
  std::uint64_t Size() const override { return source_.Size(); }

 private:
  struct KeptBlock {
    std::uint64_t index;
    std::size_t size;
    std::unique_ptr<std::uint8_t[]> bytes;
  };

  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override;
  // The bytes from the start of a block to the end of what is held there (the head, or the
  // block), read if need be; null when the file cannot be read there.
  const std::uint8_t* Block(std::uint64_t index, std::size_t& held);

  ByteSource& source_;
  bool headRead_ = false;
  std::size_t headSize_ = 0;
  // Not zeroed: the read fills it, and a file costs only what it reads.
  std::uint8_t head_[kHeadBlocks * kBlockSize];
  std::vector<KeptBlock> kept_;
};

}  // namespace hublet
