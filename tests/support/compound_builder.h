#pragma once
// Writes OLE compound files and summary-information property sets, laid out simply and
// predictably so that tests can damage them at known places. Streams under 4096 bytes go
// into the mini stream, as the format requires.
#include <cstdint>
#include <string>
#include <vector>

namespace hublet {
namespace testing {

struct CompoundStream {
  std::u16string name;
  std::string bytes;
  std::uint64_t zeroBytes = 0;  // zero bytes after bytes: the size of a scene, without the disk
};

// The file's bytes up to where only zeros follow, and its whole size; where things are.
struct CompoundImage {
  std::string bytes;
  std::uint64_t size = 0;
  std::uint32_t sectorSize = 512;
  std::uint32_t fatSector = 0;        // the first FAT sector
  std::uint32_t directorySector = 0;  // the first directory sector
  std::vector<std::uint32_t> streamStarts;  // each stream's first (mini) sector, in order given

  std::string FullBytes() const { return bytes + std::string(static_cast<std::size_t>(size - bytes.size()), '\0'); }
  // The byte offset of a sector and of the FAT entry of a regular sector.
  std::uint64_t SectorOffset(std::uint32_t sector) const { return (std::uint64_t{sector} + 1) * sectorSize; }
  std::uint64_t FatEntryOffset(std::uint32_t sector) const { return SectorOffset(fatSector) + 4u * sector; }
};

// Root streams only; sectorSize 512 (version 3) or 4096 (version 4).
CompoundImage BuildCompoundFile(const std::vector<CompoundStream>& streams, std::uint32_t sectorSize = 512);

// One property of a set: its ID, its variant type and its value's bytes after the type.
struct RawProperty {
  std::uint32_t id;
  std::uint16_t type;
  std::string value;
};
RawProperty Utf16Property(std::uint32_t id, const std::u16string& text);    // VT_LPWSTR
RawProperty CodePageProperty(std::uint32_t id, const std::string& bytes);   // VT_LPSTR
RawProperty CodePageIdProperty(std::uint16_t codePage);                     // property 1, VT_I2

// A summary-information property set stream holding properties.
std::string SummarySet(const std::vector<RawProperty>& properties);

void PutLe32(std::string& bytes, std::uint64_t offset, std::uint32_t value);

}  // namespace testing
}  // namespace hublet
