#include "platform/block_reader.h"

#include <algorithm>
#include <cstring>

namespace hublet {

const std::uint32_t BlockReader::kBlockSize;
const std::uint32_t BlockReader::kHeadBlocks;
const std::size_t BlockReader::kKeptBlocks;

std::size_t BlockReader::ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  const std::uint64_t index = offset / kBlockSize;
  std::size_t held = 0;
  const std::uint8_t* bytes = Block(index, held);
  // The head is held from its start: an offset inside it is from there.
  const std::size_t within = static_cast<std::size_t>(index < kHeadBlocks ? offset : offset % kBlockSize);
  if (bytes == nullptr || within >= held) return 0;
  const std::size_t piece = std::min(count, held - within);
  std::memcpy(out, bytes + within, piece);
  return piece;
}

const std::uint8_t* BlockReader::Block(std::uint64_t index, std::size_t& held) {
  if (index < kHeadBlocks) {
    if (!headRead_) {
      headSize_ = static_cast<std::size_t>(std::min<std::uint64_t>(sizeof head_, Size()));
      if (!source_.ReadAt(0, head_, headSize_)) return nullptr;
      headRead_ = true;
    }
    held = headSize_;
    return head_;
  }
  for (const KeptBlock& block : kept_) {
    if (block.index == index) {
      held = block.size;
      return block.bytes.get();
    }
  }
  if (kept_.size() >= kKeptBlocks) kept_.clear();
  const std::uint64_t start = index * kBlockSize;
  if (start >= Size()) return nullptr;
  KeptBlock block = {index, static_cast<std::size_t>(std::min<std::uint64_t>(kBlockSize, Size() - start)),
                     std::unique_ptr<std::uint8_t[]>(new std::uint8_t[kBlockSize])};
  if (!source_.ReadAt(start, block.bytes.get(), block.size)) return nullptr;
  kept_.push_back(std::move(block));
  held = kept_.back().size;
  return kept_.back().bytes.get();
}

}  // namespace hublet
