#pragma once
// Writes OLE compound files and summary-information property sets, laid out simply and
// predictably so that tests can damage them at known places. Streams under 4096 bytes go
// into the mini stream, as the format requires.
#include <cstdint>
#include <string>
#include <vector>

#include "platform/byte_source.h"

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
  std::uint32_t fatSector = 0;              // the first FAT sector
  std::uint32_t directorySector = 0;        // the first directory sector
  std::vector<std::uint32_t> streamStarts;  // each stream's first (mini) sector, in order given

  std::string FullBytes() const { return bytes + std::string(static_cast<std::size_t>(size - bytes.size()), '\0'); }
  // The byte offset of a sector and of the FAT entry of a regular sector.
  std::uint64_t SectorOffset(std::uint32_t sector) const { return (std::uint64_t{sector} + 1) * sectorSize; }
  std::uint64_t FatEntryOffset(std::uint32_t sector) const { return SectorOffset(fatSector) + 4u * sector; }
  // Entry 0 is the root, entry i the i-th stream given; the directory's sectors follow
  // one another.
  std::uint64_t DirectoryEntryOffset(std::uint32_t id) const { return SectorOffset(directorySector) + 128u * id; }
};

// The image as a file, its zeros never held in memory: a file of any size costs only the
// bytes before its zeros.
class ImageBytes : public ByteSource {
 public:
  explicit ImageBytes(const CompoundImage& image) : image_(image) {}
  std::uint64_t Size() const override { return image_.size; }

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override;
  const CompoundImage& image_;
};

// Root streams only; sectorSize 512 (version 3) or 4096 (version 4).
CompoundImage BuildCompoundFile(const std::vector<CompoundStream>& streams, std::uint32_t sectorSize = 512);

// One property of a set: its ID, its variant type and its value's bytes after the type.
struct RawProperty {
  std::uint32_t id;
  std::uint16_t type;
  std::string value;
};
RawProperty Utf16Property(std::uint32_t id, const std::u16string& text);   // VT_LPWSTR
RawProperty CodePageProperty(std::uint32_t id, const std::string& bytes);  // VT_LPSTR
RawProperty CodePageIdProperty(std::uint16_t codePage);                    // property 1, VT_I2

RawProperty FileTimeProperty(std::uint32_t id, std::uint64_t ticks);  // VT_FILETIME

// A summary-information property set stream holding properties.
std::string SummarySet(const std::vector<RawProperty>& properties);

// What 3ds Max (2017 to 2023) writes: code page 65001, locale 1033, the stamp's
// properties where given, last saved by (8), revision (9), created and last saved (12, 13),
// a thumbnail of thumbnailBytes (17) and two properties of its own (35, 37).
std::vector<RawProperty> MaxSummary(const std::vector<RawProperty>& stamp, std::uint32_t thumbnailBytes = 30000);
// A scene laid out as 3ds Max writes them: version 4, 4096-byte sectors, its eleven
// streams, the summary information after the scene's body (sceneBytes, all but its first
// sector zeros).
CompoundImage MaxSceneFile(const std::string& summary, std::uint64_t sceneBytes = 204096);

void PutLe32(std::string& bytes, std::uint64_t offset, std::uint32_t value);
void Append32(std::string& bytes, std::uint32_t value);

}  // namespace testing
}  // namespace hublet
