#include "platform/compound_file.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "platform/directory_names.h"
#include "platform/loop_watch.h"

namespace hublet {
namespace {

const std::uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
const std::uint32_t kHeaderSize = 512;
const std::uint32_t kMaxRegularSector = 0xFFFFFFFA;
const std::uint32_t kEndOfChain = 0xFFFFFFFE;
const std::uint32_t kNoStream = 0xFFFFFFFF;
const std::uint32_t kDirectoryEntrySize = 128;
const std::uint32_t kMiniSectorSize = 64;
const std::uint32_t kMiniStreamCutoff = 4096;
const std::uint8_t kStreamObject = 2;
const std::uint8_t kRootObject = 5;

std::uint16_t Le16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }
std::uint32_t Le32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
std::uint64_t Le64(const std::uint8_t* p) { return Le32(p) | static_cast<std::uint64_t>(Le32(p + 4)) << 32; }

std::string Number(std::uint64_t value) { return std::to_string(value); }

}  // namespace

const std::uint32_t CompoundFile::kHeaderDifatEntries;

struct CompoundFile::DirectoryEntry {
  char16_t name[32];
  std::size_t nameLength = 0;
  std::uint8_t type = 0;
  std::uint32_t left = kNoStream, right = kNoStream, child = kNoStream;
  std::uint32_t start = kEndOfChain;
  std::uint64_t size = 0;
};

// A chain of sectors (regular or mini) read as one stream of size bytes. The chain is
// followed only as far as a read needs, and every sector on it is checked.
class CompoundFile::SectorChain : public StreamBytes {
 public:
  SectorChain(CompoundFile& file, bool mini, std::uint32_t first, std::uint64_t size, std::uint64_t sectorLimit,
              std::string what)
      : file_(file),
        mini_(mini),
        unit_(mini ? kMiniSectorSize : file.sectorSize_),
        first_(first),
        size_(size),
        sectorLimit_(sectorLimit),
        what_(std::move(what)) {
    // Neither factor is large enough for the product to wrap: it stays below 2^45.
    if (size_ > sectorLimit_ * unit_)
      throw CompoundFileError(what_ + " claims " + Number(size_) +
                              " bytes, more than the file holds: it is damaged or cut short");
  }

  std::uint64_t Size() const override { return size_; }

  void ReadAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    if (offset > size_ || count > size_ - offset)
      throw CompoundFileError(what_ + " is too short: " + Number(size_) + " bytes");
    while (count > 0) {
      const std::uint32_t within = static_cast<std::uint32_t>(offset % unit_);
      const std::size_t piece = std::min<std::size_t>(count, unit_ - within);
      const std::uint32_t sector = SectorAt(offset / unit_);
      if (mini_)
        file_.miniStream_->ReadAt(static_cast<std::uint64_t>(sector) * kMiniSectorSize + within, out, piece);
      else
        file_.ReadSector(sector, within, out, piece);
      out += piece;
      offset += piece;
      count -= piece;
    }
  }

  // Whether the chain goes on to its index-th sector; false when it ends before.
  bool Reaches(std::uint64_t index) {
    while (sectors_.size() <= index && !ended_) Follow();
    return sectors_.size() > index;
  }

 private:
  std::uint32_t SectorAt(std::uint64_t index) {
    if (!Reaches(index))
      throw CompoundFileError(what_ + "'s chain ends after " + Number(sectors_.size()) + " sectors, short of its " +
                              Number(size_) + " bytes");
    return sectors_[static_cast<std::size_t>(index)];
  }

  void Follow() {
    const std::uint32_t next = sectors_.empty() ? first_
                               : mini_          ? file_.NextMiniSector(sectors_.back())
                                                : file_.NextSector(sectors_.back());
    if (next == kEndOfChain) {
      ended_ = true;
      return;
    }
    if (next > kMaxRegularSector || next >= sectorLimit_)
      throw CompoundFileError(what_ + "'s chain leads to sector " + Number(next) + ", past the end");
    if (loopWatch_.Returns(next)) throw CompoundFileError(what_ + "'s chain loops back to sector " + Number(next));
    sectors_.push_back(next);
  }

  CompoundFile& file_;
  const bool mini_;
  const std::uint32_t unit_;
  const std::uint32_t first_;
  const std::uint64_t size_;
  const std::uint64_t sectorLimit_;  // sectors that exist: a chain never goes past them
  const std::string what_;
  std::vector<std::uint32_t> sectors_;  // the chain as far as it has been followed
  bool ended_ = false;
  LoopWatch loopWatch_;
};

CompoundFile::CompoundFile(ByteSource& source) : bytes_(source) {
  std::uint8_t header[kHeaderSize];
  if (bytes_.Size() < sizeof kSignature) throw NotCompoundFile();
  if (!bytes_.ReadAt(0, header, sizeof kSignature)) throw CompoundFileError("the file cannot be read");
  if (std::memcmp(header, kSignature, sizeof kSignature) != 0) throw NotCompoundFile();
  if (!bytes_.ReadAt(0, header, sizeof header))
    throw CompoundFileError("the header is cut short: the file has " + Number(bytes_.Size()) + " bytes");
  if (Le16(header + 28) != 0xFFFE) throw CompoundFileError("the header's byte order mark is not FFFE");
  const std::uint16_t major = Le16(header + 26), sectorShift = Le16(header + 30);
  if (!((major == 3 && sectorShift == 9) || (major == 4 && sectorShift == 12)))
    throw CompoundFileError("version " + Number(major) + " with sectors of 2^" + Number(sectorShift) +
                            " bytes is not a known format");
  if (Le16(header + 32) != 6) throw CompoundFileError("mini sectors are not 64 bytes");
  sectorSize_ = 1u << sectorShift;
  const std::uint64_t size = bytes_.Size();
  sectorCount_ = static_cast<std::uint32_t>(
      std::min<std::uint64_t>(size <= sectorSize_ ? 0 : (size - sectorSize_ + sectorSize_ - 1) / sectorSize_,
                              kMaxRegularSector + std::uint64_t{1}));
  fatSectors_ = Le32(header + 44);
  const std::uint32_t firstDirectorySector = Le32(header + 48);
  firstMiniFatSector_ = Le32(header + 60);
  miniFatSectors_ = Le32(header + 64);
  firstDifatSector_ = Le32(header + 68);
  difatSectors_ = Le32(header + 72);
  if (Le32(header + 56) != kMiniStreamCutoff) throw CompoundFileError("the mini stream cutoff is not 4096 bytes");
  if (fatSectors_ > sectorCount_ || difatSectors_ > sectorCount_ || miniFatSectors_ > sectorCount_)
    throw CompoundFileError("the header counts more FAT sectors than the file's " + Number(sectorCount_));
  for (std::uint32_t i = 0; i < kHeaderDifatEntries; ++i) headerDifat_[i] = Le32(header + 76 + 4 * i);
  // The directory is as long as its chain: entries are looked for only as far as it goes.
  directory_.reset(new SectorChain(*this, false, firstDirectorySector, std::uint64_t{sectorCount_} * sectorSize_,
                                   sectorCount_, "the directory"));
}

CompoundFile::~CompoundFile() = default;

void CompoundFile::ReadSector(std::uint32_t sector, std::uint32_t offset, std::uint8_t* out, std::size_t count) {
  if (sector >= sectorCount_) throw CompoundFileError("sector " + Number(sector) + " is past the end of the file");
  const std::uint64_t at = (static_cast<std::uint64_t>(sector) + 1) * sectorSize_ + offset;
  if (at > bytes_.Size() || count > bytes_.Size() - at) throw CompoundFileError("the file ends inside sector " + Number(sector));
  if (!bytes_.ReadAt(at, out, count)) throw CompoundFileError("the file cannot be read at sector " + Number(sector));
}

std::uint32_t CompoundFile::FatSectorLocation(std::uint32_t index) {
  if (index >= fatSectors_)
    throw CompoundFileError("the FAT has " + Number(fatSectors_) + " sectors, not the " +
                            Number(index + std::uint64_t{1}) + " a chain needs");
  if (index < kHeaderDifatEntries) return headerDifat_[index];
  // Further FAT sectors are listed in DIFAT sectors, each ending with the next one's number.
  const std::uint32_t perSector = sectorSize_ / 4 - 1;
  const std::uint32_t difatIndex = (index - kHeaderDifatEntries) / perSector;
  if (difatIndex >= difatSectors_) throw CompoundFileError("the DIFAT is shorter than the FAT it must list");
  while (difatChain_.size() <= difatIndex) {
    std::uint32_t next = firstDifatSector_;
    if (!difatChain_.empty()) {
      std::uint8_t bytes[4];
      ReadSector(difatChain_.back(), perSector * 4, bytes, 4);
      next = Le32(bytes);
    }
    if (difatLoopWatch_.Returns(next))
      throw CompoundFileError("the DIFAT's chain loops back to sector " + Number(next));
    difatChain_.push_back(next);
  }
  std::uint8_t bytes[4];
  ReadSector(difatChain_[difatIndex], (index - kHeaderDifatEntries) % perSector * 4, bytes, 4);
  return Le32(bytes);
}

std::uint32_t CompoundFile::NextSector(std::uint32_t sector) {
  const std::uint32_t perSector = sectorSize_ / 4;
  std::uint8_t bytes[4];
  ReadSector(FatSectorLocation(sector / perSector), sector % perSector * 4, bytes, 4);
  return Le32(bytes);
}

std::uint32_t CompoundFile::NextMiniSector(std::uint32_t sector) {
  if (!miniFat_)
    miniFat_.reset(new SectorChain(*this, false, firstMiniFatSector_,
                                   static_cast<std::uint64_t>(miniFatSectors_) * sectorSize_, sectorCount_,
                                   "the mini FAT"));
  if (static_cast<std::uint64_t>(sector) * 4 + 4 > miniFat_->Size())
    throw CompoundFileError("mini sector " + Number(sector) + " has no entry in the mini FAT");
  std::uint8_t bytes[4];
  miniFat_->ReadAt(static_cast<std::uint64_t>(sector) * 4, bytes, 4);
  return Le32(bytes);
}

CompoundFile::DirectoryEntry CompoundFile::ReadDirectoryEntry(std::uint32_t id) {
  const std::uint64_t offset = static_cast<std::uint64_t>(id) * kDirectoryEntrySize;
  if (!directory_->Reaches(offset / sectorSize_))
    throw CompoundFileError("directory entry " + Number(id) + " is past the end of the directory");
  std::uint8_t bytes[kDirectoryEntrySize];
  directory_->ReadAt(offset, bytes, sizeof bytes);
  DirectoryEntry entry;
  const std::uint16_t nameBytes = Le16(bytes + 64);
  if (nameBytes > 64 || nameBytes % 2 != 0)
    throw CompoundFileError("directory entry " + Number(id) + " has a name of " + Number(nameBytes) + " bytes");
  // The length counts the closing NUL.
  entry.nameLength = nameBytes == 0 ? 0 : nameBytes / 2 - 1;
  for (std::size_t i = 0; i < entry.nameLength; ++i) entry.name[i] = static_cast<char16_t>(Le16(bytes + 2 * i));
  entry.type = bytes[66];
  entry.left = Le32(bytes + 68);
  entry.right = Le32(bytes + 72);
  entry.child = Le32(bytes + 76);
  entry.start = Le32(bytes + 116);
  // Version 3 files may hold anything in the size's high half.
  entry.size = sectorSize_ == 512 ? Le32(bytes + 120) : Le64(bytes + 120);
  return entry;
}

// The siblings form a search tree in the directory's order of names; a search that comes back
// to an entry means the tree loops.
std::uint32_t CompoundFile::SearchSiblings(std::uint32_t top, const std::u16string& name) {
  LoopWatch loopWatch;
  for (std::uint32_t id = top; id != kNoStream;) {
    if (loopWatch.Returns(id)) throw CompoundFileError("the directory's tree loops back to entry " + Number(id));
    const DirectoryEntry entry = ReadDirectoryEntry(id);
    const int order = CompareDirectoryNames(name.data(), name.size(), entry.name, entry.nameLength);
    if (order == 0) return id;
    id = order < 0 ? entry.left : entry.right;
  }
  return kNoStream;
}

// Some writers order siblings otherwise than Windows does; other readers still find a
// stream among them by visiting every sibling, as this does, each entry once at most, so
// that the walk ends within the directory's length.
std::uint32_t CompoundFile::VisitSiblings(std::uint32_t top, const std::u16string& name) {
  std::vector<std::uint32_t> pending(1, top);
  std::unordered_set<std::uint32_t> visited;
  while (!pending.empty()) {
    const std::uint32_t id = pending.back();
    pending.pop_back();
    if (id == kNoStream) continue;
    if (!visited.insert(id).second) throw CompoundFileError("the directory's tree loops back to entry " + Number(id));
    const DirectoryEntry entry = ReadDirectoryEntry(id);
    if (CompareDirectoryNames(name.data(), name.size(), entry.name, entry.nameLength) == 0) return id;
    pending.push_back(entry.left);
    pending.push_back(entry.right);
  }
  return kNoStream;
}

std::unique_ptr<StreamBytes> CompoundFile::OpenRootStream(const std::u16string& name) {
  const DirectoryEntry root = ReadDirectoryEntry(0);
  if (root.type != kRootObject) throw CompoundFileError("the directory does not start with the root storage");
  // The root's stream is the mini stream.
  miniStream_.reset(new SectorChain(*this, false, root.start, root.size, sectorCount_, "the mini stream"));
  std::uint32_t id = SearchSiblings(root.child, name);
  if (id == kNoStream) id = VisitSiblings(root.child, name);
  if (id == kNoStream) return nullptr;
  const DirectoryEntry entry = ReadDirectoryEntry(id);
  if (entry.type != kStreamObject) return nullptr;
  if (entry.size < kMiniStreamCutoff)
    return std::unique_ptr<StreamBytes>(new SectorChain(*this, true, entry.start, entry.size,
                                                        (miniStream_->Size() + kMiniSectorSize - 1) / kMiniSectorSize,
                                                        "the stream"));
  return std::unique_ptr<StreamBytes>(
      new SectorChain(*this, false, entry.start, entry.size, sectorCount_, "the stream"));
}

}  // namespace hublet
