#include "platform/summary_information.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "platform/code_pages.h"
#include "platform/compound_file.h"

namespace hublet {
namespace {

// F29F85E0-4FF9-1068-AB91-08002B27B3D9 as stored: the first three fields little-endian.
const std::uint8_t kSummaryFormatId[16] = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                           0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
const char16_t kStreamName[] = u"\x0005SummaryInformation";
const std::uint32_t kCodePageId = 1, kTitleId = 2, kSubjectId = 3, kAuthorId = 4, kLastSavedById = 8,
                    kCreatedId = 12, kLastSavedId = 13;
const std::uint16_t kVtI2 = 2, kVtLpstr = 30, kVtLpwstr = 31, kVtFiletime = 64;
const unsigned kUtf16CodePage = 1200, kDefaultCodePage = 1252;
// No stamp is near this long; a longer string is damage, not a name.
const std::uint32_t kLongestString = 1u << 20;
// Sets hold tens of properties; a table this long is damage, and reading it would cost
// what the file claims.
const std::uint32_t kMostProperties = 1u << 16;

std::uint32_t Le32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// UTF-16LE bytes as text, up to the first NUL.
std::wstring Utf16ToWide(const std::string& bytes) {
  std::wstring text(bytes.size() / 2, L'\0');
  std::size_t length = 0;
  for (; length < text.size(); ++length) {
    const wchar_t unit = static_cast<wchar_t>(static_cast<std::uint8_t>(bytes[2 * length]) |
                                              static_cast<std::uint8_t>(bytes[2 * length + 1]) << 8);
    if (unit == L'\0') break;
    text[length] = unit;
  }
  text.resize(length);
  return text;
}

std::wstring UpToNul(std::wstring text) {
  const std::size_t nul = text.find(L'\0');
  if (nul != std::wstring::npos) text.erase(nul);
  return text;
}

// The start of a stream, read in one piece: the set's header, its table and the values 3ds
// Max writes lie in its first KiB, and a dozen small reads through the sector chain cost more
// than one copy. Anything further is read from the stream, and so is everything when that KiB
// cannot be read: damage past the values a reading needs must not cost it the stamp.
class StreamStart : public StreamBytes {
 public:
  explicit StreamStart(StreamBytes& stream)
      : stream_(stream), held_(static_cast<std::size_t>(std::min<std::uint64_t>(stream.Size(), sizeof bytes_))) {
    try {
      stream.ReadAt(0, bytes_, held_);
    } catch (const CompoundFileError&) {
      held_ = 0;
    }
  }
  std::uint64_t Size() const override { return stream_.Size(); }
  void ReadAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    if (offset <= held_ && count <= held_ - offset)
      std::memcpy(out, bytes_ + offset, count);
    else
      stream_.ReadAt(offset, out, count);
  }

 private:
  StreamBytes& stream_;
  std::size_t held_;
  std::uint8_t bytes_[1024];
};

// One section of a property set, bounded by the stream: Wine writes section sizes that
// count padding the stream lacks, so the stream's end is the section's end when earlier.
class Section {
 public:
  Section(StreamBytes& stream, std::uint64_t offset) : stream_(stream), offset_(offset) {
    if (offset > stream.Size() || stream.Size() - offset < 8)
      throw CompoundFileError("the property section lies outside the stream");
    std::uint8_t header[8];
    stream.ReadAt(offset, header, sizeof header);
    size_ = std::min<std::uint64_t>(Le32(header), stream.Size() - offset);
    count_ = Le32(header + 4);
    if (size_ < 8 || count_ > (size_ - 8) / 8)
      throw CompoundFileError("the property section counts " + std::to_string(count_) +
                              " properties, more than it holds");
    if (count_ > kMostProperties)
      throw CompoundFileError("the property section counts " + std::to_string(count_) + " properties: absurd");
  }

  // Where each wanted property's value starts (0 when the section lacks it).
  void Locate(const std::uint32_t* ids, std::uint64_t* offsets, std::size_t wanted) {
    std::fill(offsets, offsets + wanted, 0);
    std::uint8_t entries[8 * 64];
    for (std::uint32_t first = 0; first < count_; first += 64) {
      const std::uint32_t batch = std::min<std::uint32_t>(64, count_ - first);
      stream_.ReadAt(offset_ + 8 + first * std::uint64_t{8}, entries, batch * 8);
      for (std::uint32_t i = 0; i < batch; ++i)
        for (std::size_t w = 0; w < wanted; ++w)
          if (Le32(entries + 8 * i) == ids[w] && offsets[w] == 0) offsets[w] = Le32(entries + 8 * i + 4);
    }
  }

  // count bytes at offset within the section, which must hold them; kept until the next call.
  const std::string& Bytes(std::uint64_t offset, std::uint64_t count) {
    if (offset > size_ || count > size_ - offset)
      throw CompoundFileError("a property runs past the end of its section");
    bytes_.resize(static_cast<std::size_t>(count));
    if (count != 0) stream_.ReadAt(offset_ + offset, reinterpret_cast<std::uint8_t*>(&bytes_[0]), bytes_.size());
    return bytes_;
  }

  std::uint16_t Type(std::uint64_t offset) {
    const std::string& type = Bytes(offset, 4);
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(type[0]) | static_cast<std::uint8_t>(type[1]) << 8);
  }

  const std::string& CountedBytes(std::uint64_t offset, std::uint32_t unit) {
    const std::uint32_t units = Le32(reinterpret_cast<const std::uint8_t*>(Bytes(offset + 4, 4).data()));
    if (units > kLongestString) throw CompoundFileError("a string of " + std::to_string(units) + " units is absurd");
    return Bytes(offset + 8, std::uint64_t{units} * unit);
  }

 private:
  StreamBytes& stream_;
  std::uint64_t offset_;
  std::uint64_t size_ = 0;
  std::uint32_t count_ = 0;
  std::string bytes_;
};

unsigned CodePage(Section& section, std::uint64_t offset) {
  if (offset == 0 || section.Type(offset) != kVtI2) return kDefaultCodePage;
  const std::string& value = section.Bytes(offset + 4, 2);
  return static_cast<std::uint8_t>(value[0]) | static_cast<unsigned>(static_cast<std::uint8_t>(value[1])) << 8;
}

// An 8-bit string in a code page this reader does not know is damage in the stamp; in what
// 3ds Max records beside it (optional), it is there but not text, and the stamp still reads.
SummaryText ReadText(Section& section, std::uint64_t offset, unsigned codePage, bool optional = false) {
  SummaryText text;
  if (offset == 0) return text;
  text.present = true;
  const std::uint16_t type = section.Type(offset);
  if (type == kVtLpwstr) {
    text.value = Utf16ToWide(section.CountedBytes(offset, 2));
  } else if (type == kVtLpstr) {
    if (optional && codePage != kUtf16CodePage && !IsKnownCodePage(codePage)) return text;
    // A Unicode set stores even its 8-bit strings as UTF-16, the count in bytes.
    const std::string& bytes = section.CountedBytes(offset, 1);
    text.value = codePage == kUtf16CodePage ? Utf16ToWide(bytes) : UpToNul(CodePageToWide(codePage, bytes));
  } else {
    return text;
  }
  text.isText = true;
  return text;
}

FileTime ReadTime(Section& section, std::uint64_t offset) {
  FileTime time;
  if (offset == 0) return time;
  time.present = true;
  if (section.Type(offset) != kVtFiletime) return time;
  const std::string& value = section.Bytes(offset + 4, 8);
  for (int i = 7; i >= 0; --i) time.ticks = time.ticks << 8 | static_cast<std::uint8_t>(value[i]);
  time.isTime = true;
  return time;
}

void ReadSet(StreamBytes& wholeStream, SummaryInformation& info) {
  info.status = SummaryStatus::kRead;
  // A committed empty set may be left as an empty stream.
  if (wholeStream.Size() == 0) return;
  StreamStart stream(wholeStream);
  std::uint8_t header[48];
  if (stream.Size() < sizeof header) throw CompoundFileError("the property set's header is cut short");
  stream.ReadAt(0, header, sizeof header);
  if (header[0] != 0xFE || header[1] != 0xFF) throw CompoundFileError("the property set's byte order mark is not FFFE");
  if (Le32(header + 24) == 0) throw CompoundFileError("the property set has no section");
  if (std::memcmp(header + 28, kSummaryFormatId, sizeof kSummaryFormatId) != 0) {
    info.status = SummaryStatus::kNoSummaryInformation;
    return;
  }
  Section section(stream, Le32(header + 44));
  // One pass over the table finds them all; the thumbnail (17), most of a stream 3ds Max
  // writes, is never read.
  const std::uint32_t ids[] = {kCodePageId, kTitleId, kSubjectId, kAuthorId, kLastSavedById, kCreatedId, kLastSavedId};
  std::uint64_t offsets[7];
  section.Locate(ids, offsets, 7);
  const unsigned codePage = CodePage(section, offsets[0]);
  info.title = ReadText(section, offsets[1], codePage);
  info.subject = ReadText(section, offsets[2], codePage);
  info.author = ReadText(section, offsets[3], codePage);
  info.lastSavedBy = ReadText(section, offsets[4], codePage, true);
  info.created = ReadTime(section, offsets[5]);
  info.lastSaved = ReadTime(section, offsets[6]);
}

}  // namespace

SummaryInformation ReadSummaryFromBytes(ByteSource& source) {
  SummaryInformation info;
  try {
    CompoundFile file(source);
    const std::unique_ptr<StreamBytes> stream = file.OpenRootStream(kStreamName);
    if (!stream) {
      info.status = SummaryStatus::kNoSummaryInformation;
      return info;
    }
    ReadSet(*stream, info);
  } catch (const NotCompoundFile&) {
    info = SummaryInformation();
    info.status = SummaryStatus::kNotCompoundFile;
  } catch (const std::exception& error) {
    info = SummaryInformation();
    info.status = SummaryStatus::kUnreadable;
    info.reason = error.what();
  }
  return info;
}

SummaryInformation ReadSummaryInformation(const std::wstring& path) {
  std::string error;
  const std::unique_ptr<ByteSource> bytes = OpenFileBytes(path, error);
  if (!bytes) {
    SummaryInformation info;
    info.reason = error;
    return info;
  }
  return ReadSummaryFromBytes(*bytes);
}

}  // namespace hublet
