#pragma once
// A reader of OLE compound files (the container of a .max scene) that reads only the
// sectors it needs and checks every number it takes from the file: a sector past the end,
// a chain that loops or ends early, an absurd size or count is a CompoundFileError, never
// a read outside the file or an allocation the file's contents size. What it costs in
// time and memory follows what it reads, not how large the file is.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/block_reader.h"
#include "platform/byte_source.h"
#include "platform/loop_watch.h"

namespace hublet {

// The file is damaged; what() says how.
class CompoundFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The file does not start with a compound file's signature.
class NotCompoundFile : public CompoundFileError {
 public:
  NotCompoundFile() : CompoundFileError("not an OLE compound file") {}
};

// The bytes of one stream, read on demand.
class StreamBytes {
 public:
  virtual ~StreamBytes() = default;
  virtual std::uint64_t Size() const = 0;
  // Throws CompoundFileError when the stream's sectors cannot be followed that far.
  virtual void ReadAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) = 0;
};

class CompoundFile {
 public:
  // Reads and checks the header; throws NotCompoundFile or CompoundFileError.
  explicit CompoundFile(ByteSource& source);
  ~CompoundFile();
  CompoundFile(const CompoundFile&) = delete;
  CompoundFile& operator=(const CompoundFile&) = delete;

  // The stream called name directly under the root storage, or null when there is none.
  // Throws CompoundFileError when the directory cannot be searched.
  std::unique_ptr<StreamBytes> OpenRootStream(const std::u16string& name);

 private:
  class SectorChain;
  struct DirectoryEntry;

  std::uint32_t NextSector(std::uint32_t sector);
  std::uint32_t NextMiniSector(std::uint32_t sector);
  void ReadSector(std::uint32_t sector, std::uint32_t offset, std::uint8_t* out, std::size_t count);
  std::uint32_t FatSectorLocation(std::uint32_t index);
  DirectoryEntry ReadDirectoryEntry(std::uint32_t id);
  std::uint32_t SearchSiblings(std::uint32_t top, const std::u16string& name);
  std::uint32_t VisitSiblings(std::uint32_t top, const std::u16string& name);

  BlockReader bytes_;
  std::uint32_t sectorSize_ = 512;
  std::uint32_t sectorCount_ = 0;  // whole or partial sectors after the header
  std::uint32_t fatSectors_ = 0;
  std::uint32_t firstMiniFatSector_ = 0;
  std::uint32_t miniFatSectors_ = 0;
  std::uint32_t firstDifatSector_ = 0;
  std::uint32_t difatSectors_ = 0;
  static const std::uint32_t kHeaderDifatEntries = 109;
  std::uint32_t headerDifat_[kHeaderDifatEntries];  // the first FAT sectors, as the header lists them
  std::vector<std::uint32_t> difatChain_;  // DIFAT sectors found so far, in chain order
  LoopWatch difatLoopWatch_;
  std::unique_ptr<SectorChain> directory_;
  std::unique_ptr<SectorChain> miniFat_;
  std::unique_ptr<SectorChain> miniStream_;  // the root's stream, known once the root is read
};

}  // namespace hublet
