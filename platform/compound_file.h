#pragma once
// A reader of OLE compound files (the container of a .max scene) that reads only the
// sectors it needs and checks every number it takes from the file: a sector past the end,
// a chain that loops or ends early, an absurd size or count is a CompoundFileError, never
// a read outside the file or an unbounded allocation.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/byte_source.h"

namespace hublet {

// The file is damaged; what() says how.
class CompoundFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
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
  // Whether bytes begin with the compound-file signature.
  static bool HasSignature(ByteSource& source);
  // Reads and checks the header; throws CompoundFileError.
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
  DirectoryEntry ReadDirectoryEntry(std::uint32_t id);
  SectorChain& MiniStream();
  std::uint32_t FatSectorLocation(std::uint32_t index);

  ByteSource& source_;
  std::uint32_t sectorSize_ = 512;
  std::uint32_t sectorCount_ = 0;  // whole or partial sectors after the header
  std::uint32_t fatSectors_ = 0;
  std::uint32_t firstDirectorySector_ = 0;
  std::uint32_t miniStreamCutoff_ = 4096;
  std::uint32_t firstMiniFatSector_ = 0;
  std::uint32_t miniFatSectors_ = 0;
  std::uint32_t firstDifatSector_ = 0;
  std::uint32_t difatSectors_ = 0;
  std::vector<std::uint32_t> headerDifat_;
  std::vector<std::uint32_t> difatChain_;  // DIFAT sectors found so far, in chain order
  std::unordered_map<std::uint32_t, std::vector<std::uint8_t>> fatCache_;
  std::unique_ptr<SectorChain> directory_;
  std::unique_ptr<SectorChain> miniFat_;
  std::unique_ptr<SectorChain> miniStream_;
};

}  // namespace hublet
