#include "platform/compound_file.h"

#include <algorithm>
#include <cstring>

namespace hublet {
namespace {

const std::uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
const std::uint32_t kHeaderSize = 512;
const std::uint32_t kHeaderDifatEntries = 109;
const std::uint32_t kMaxRegularSector = 0xFFFFFFFA;
const std::uint32_t kEndOfChain = 0xFFFFFFFE;
const std::uint32_t kNoStream = 0xFFFFFFFF;
const std::uint32_t kDirectoryEntrySize = 128;
const std::uint32_t kMiniSectorSize = 64;
const std::uint8_t kStreamObject = 2;
const std::uint8_t kRootObject = 5;

std::uint16_t Le16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }
std::uint32_t Le32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
std::uint64_t Le64(const std::uint8_t* p) { return Le32(p) | static_cast<std::uint64_t>(Le32(p + 4)) << 32; }

std::string Number(std::uint64_t value) { return std::to_string(value); }

// The directory's order: shorter names first, then code unit by code unit without case.
char16_t Folded(char16_t c) {
  if ((c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) return static_cast<char16_t>(c - 0x20);
  return c;
}
int CompareNames(const std::u16string& a, const std::u16string& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const char16_t x = Folded(a[i]), y = Folded(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  return 0;
}

}  // namespace

struct CompoundFile::DirectoryEntry {
  std::u16string name;
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
    if ((size_ + unit_ - 1) / unit_ > sectorLimit_)
      throw CompoundFileError(what_ + " claims " + Number(size_) + " bytes, more than the file holds: it is damaged or cut short");
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
        file_.MiniStream().ReadAt(static_cast<std::uint64_t>(sector) * kMiniSectorSize + within, out, piece);
      else
        file_.ReadSector(sector, within, out, piece);
      out += piece;
      offset += piece;
      count -= piece;
    }
  }

 private:
  std::uint32_t SectorAt(std::uint64_t index) {
    while (sectors_.size() <= index) {
      const std::uint32_t next =
          sectors_.empty() ? first_ : mini_ ? file_.NextMiniSector(sectors_.back()) : file_.NextSector(sectors_.back());
      if (next == kEndOfChain)
        throw CompoundFileError(what_ + "'s chain ends after " + Number(sectors_.size()) + " sectors, short of its " +
                                Number(size_) + " bytes");
      if (next > kMaxRegularSector || next >= sectorLimit_)
        throw CompoundFileError(what_ + "'s chain leads to sector " + Number(next) + ", past the end");
      if (visited_.empty()) visited_.resize(static_cast<std::size_t>(sectorLimit_));
      if (visited_[next]) throw CompoundFileError(what_ + "'s chain loops back to sector " + Number(next));
      visited_[next] = true;
      sectors_.push_back(next);
    }
    return sectors_[static_cast<std::size_t>(index)];
  }

  CompoundFile& file_;
  const bool mini_;
  const std::uint32_t unit_;
  const std::uint32_t first_;
  const std::uint64_t size_;
  const std::uint64_t sectorLimit_;  // sectors that exist: a chain never goes past them
  const std::string what_;
  std::vector<std::uint32_t> sectors_;
  std::vector<bool> visited_;
};

bool CompoundFile::HasSignature(ByteSource& source) {
  std::uint8_t start[sizeof kSignature];
  return source.ReadAt(0, start, sizeof start) && std::memcmp(start, kSignature, sizeof start) == 0;
}

CompoundFile::CompoundFile(ByteSource& source) : source_(source) {
  std::uint8_t header[kHeaderSize];
  if (!source.ReadAt(0, header, sizeof header))
    throw CompoundFileError("the header is cut short: the file has " + Number(source.Size()) + " bytes");
  if (Le16(header + 28) != 0xFFFE) throw CompoundFileError("the header's byte order mark is not FFFE");
  const std::uint16_t major = Le16(header + 26), sectorShift = Le16(header + 30);
  if (!((major == 3 && sectorShift == 9) || (major == 4 && sectorShift == 12)))
    throw CompoundFileError("version " + Number(major) + " with sectors of 2^" + Number(sectorShift) +
                            " bytes is not a known format");
  if (Le16(header + 32) != 6) throw CompoundFileError("mini sectors are not 64 bytes");
  sectorSize_ = 1u << sectorShift;
  const std::uint64_t size = source.Size();
  sectorCount_ = static_cast<std::uint32_t>(
      std::min<std::uint64_t>(size <= sectorSize_ ? 0 : (size - sectorSize_ + sectorSize_ - 1) / sectorSize_,
                              kMaxRegularSector + std::uint64_t{1}));
  fatSectors_ = Le32(header + 44);
  firstDirectorySector_ = Le32(header + 48);
  miniStreamCutoff_ = Le32(header + 56);
  firstMiniFatSector_ = Le32(header + 60);
  miniFatSectors_ = Le32(header + 64);
  firstDifatSector_ = Le32(header + 68);
  difatSectors_ = Le32(header + 72);
  if (miniStreamCutoff_ != 4096) throw CompoundFileError("the mini stream cutoff is not 4096 bytes");
  if (fatSectors_ > sectorCount_ || difatSectors_ > sectorCount_ || miniFatSectors_ > sectorCount_)
    throw CompoundFileError("the header counts more FAT sectors than the file's " + Number(sectorCount_));
  for (std::uint32_t i = 0; i < kHeaderDifatEntries; ++i) headerDifat_.push_back(Le32(header + 76 + 4 * i));
  directory_.reset(new SectorChain(*this, false, firstDirectorySector_,
                                   static_cast<std::uint64_t>(sectorCount_) * sectorSize_, sectorCount_,
                                   "the directory"));
}

CompoundFile::~CompoundFile() = default;

void CompoundFile::ReadSector(std::uint32_t sector, std::uint32_t offset, std::uint8_t* out, std::size_t count) {
  if (sector >= sectorCount_) throw CompoundFileError("sector " + Number(sector) + " is past the end of the file");
  if (!source_.ReadAt((static_cast<std::uint64_t>(sector) + 1) * sectorSize_ + offset, out, count))
    throw CompoundFileError("the file ends inside sector " + Number(sector));
}

std::uint32_t CompoundFile::FatSectorLocation(std::uint32_t index) {
  if (index >= fatSectors_)
    throw CompoundFileError("the FAT has " + Number(fatSectors_) + " sectors, not the " + Number(index + 1) +
                            " a chain needs");
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
    difatChain_.push_back(next);
  }
  std::uint8_t bytes[4];
  ReadSector(difatChain_[difatIndex], (index - kHeaderDifatEntries) % perSector * 4, bytes, 4);
  return Le32(bytes);
}

std::uint32_t CompoundFile::NextSector(std::uint32_t sector) {
  const std::uint32_t perSector = sectorSize_ / 4;
  const std::uint32_t index = sector / perSector;
  auto cached = fatCache_.find(index);
  if (cached == fatCache_.end()) {
    std::vector<std::uint8_t> fat(sectorSize_);
    ReadSector(FatSectorLocation(index), 0, fat.data(), fat.size());
    cached = fatCache_.emplace(index, std::move(fat)).first;
  }
  return Le32(cached->second.data() + sector % perSector * 4);
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
  std::uint8_t bytes[kDirectoryEntrySize];
  if (static_cast<std::uint64_t>(id) * kDirectoryEntrySize >= directory_->Size())
    throw CompoundFileError("directory entry " + Number(id) + " is past the end of the file");
  directory_->ReadAt(static_cast<std::uint64_t>(id) * kDirectoryEntrySize, bytes, sizeof bytes);
  DirectoryEntry entry;
  const std::uint16_t nameBytes = Le16(bytes + 64);
  if (nameBytes > 64 || nameBytes % 2 != 0)
    throw CompoundFileError("directory entry " + Number(id) + " has a name of " + Number(nameBytes) + " bytes");
  for (std::uint16_t i = 0; i + 2 < nameBytes; i += 2) entry.name += static_cast<char16_t>(Le16(bytes + i));
  entry.type = bytes[66];
  entry.left = Le32(bytes + 68);
  entry.right = Le32(bytes + 72);
  entry.child = Le32(bytes + 76);
  entry.start = Le32(bytes + 116);
  // Version 3 files may hold anything in the size's high half.
  entry.size = sectorSize_ == 512 ? Le32(bytes + 120) : Le64(bytes + 120);
  return entry;
}

CompoundFile::SectorChain& CompoundFile::MiniStream() {
  if (!miniStream_) {
    const DirectoryEntry root = ReadDirectoryEntry(0);
    miniStream_.reset(new SectorChain(*this, false, root.start, root.size, sectorCount_, "the mini stream"));
  }
  return *miniStream_;
}

std::unique_ptr<StreamBytes> CompoundFile::OpenRootStream(const std::u16string& name) {
  const DirectoryEntry root = ReadDirectoryEntry(0);
  if (root.type != kRootObject) throw CompoundFileError("the directory does not start with the root storage");
  // The root's children form a search tree; a damaged one could send the search round in
  // circles, so it may visit each entry the directory can hold once at most.
  const std::uint64_t entryLimit = directory_->Size() / kDirectoryEntrySize;
  std::uint32_t id = root.child;
  for (std::uint64_t visited = 0; id != kNoStream; ++visited) {
    if (visited > entryLimit) throw CompoundFileError("the directory's tree loops");
    const DirectoryEntry entry = ReadDirectoryEntry(id);
    const int order = CompareNames(name, entry.name);
    if (order == 0) {
      if (entry.type != kStreamObject) return nullptr;
      if (entry.size < miniStreamCutoff_)
        return std::unique_ptr<StreamBytes>(new SectorChain(*this, true, entry.start, entry.size,
                                                            MiniStream().Size() / kMiniSectorSize,
                                                            "the stream"));
      return std::unique_ptr<StreamBytes>(
          new SectorChain(*this, false, entry.start, entry.size, sectorCount_, "the stream"));
    }
    id = order < 0 ? entry.left : entry.right;
  }
  return nullptr;
}

}  // namespace hublet
