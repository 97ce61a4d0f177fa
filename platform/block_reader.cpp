#include "platform/block_reader.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace hublet {

const std::uint32_t BlockReader::kBlockSize;
const std::uint32_t BlockReader::kHeadBlocks;
const std::size_t BlockReader::kKeptBlocks;

std::size_t BlockReader::ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  const std::vector<std::uint8_t>* block = Block(offset / kBlockSize);
  const std::size_t within = static_cast<std::size_t>(offset % kBlockSize);
  if (block == nullptr || within >= block->size()) return 0;
  const std::size_t piece = std::min(count, block->size() - within);
  std::memcpy(out, block->data() + within, piece);
  return piece;
}

const std::vector<std::uint8_t>* BlockReader::Block(std::uint64_t index) {
  const auto kept = blocks_.find(index);
  if (kept != blocks_.end()) return &kept->second;
  if (blocks_.size() >= kHeadBlocks + kKeptBlocks) {
    for (auto block = blocks_.begin(); block != blocks_.end();)
      block = block->first < kHeadBlocks ? std::next(block) : blocks_.erase(block);
  }
  // A block of the head brings the whole head.
  const std::uint64_t first = index < kHeadBlocks ? 0 : index;
  const std::uint64_t start = first * kBlockSize;
  const std::uint64_t end =
      std::min<std::uint64_t>((index < kHeadBlocks ? kHeadBlocks : index + 1) * kBlockSize, Size());
  if (start >= end) return nullptr;
  // Not zeroed first: the read fills it, and a file costs only what it reads.
  const std::size_t size = static_cast<std::size_t>(end - start);
  const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[size]);
  if (!source_.ReadAt(start, bytes.get(), size)) return nullptr;
  for (std::uint64_t at = start; at < end; at += kBlockSize) {
    const std::uint8_t* from = bytes.get() + (at - start);
    blocks_[at / kBlockSize].assign(from, from + std::min<std::uint64_t>(kBlockSize, end - at));
  }
  return &blocks_[index];
}

}  // namespace hublet
