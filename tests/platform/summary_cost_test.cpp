// What reading a scene's summary costs follows what is read, never what the file claims
// or how large it is: sizes near 2^64 are refused, sparse files of 64 GiB and 1 TiB take
// a few reads and little memory, and a scene laid out as 3ds Max writes it takes a few
// reads.
#include <gmock/gmock.h>

#ifdef _WIN32
#include <windows.h>
#include <winioctl.h>
#else
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

#include <cstring>
#include <memory>

#include "platform/block_reader.h"
#include "platform/summary_information.h"
#include "platform/wide_text.h"
#include "tests/support/compound_builder.h"
#include "tests/support/counting_bytes.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace {

using testing::CompoundImage;
using testing::CountingBytes;
using ::testing::HasSubstr;
using testing::MaxSceneFile;
using testing::MaxSummary;
using testing::PutLe32;
using testing::SummarySet;
using testing::Utf16Property;

const std::uint32_t kSummaryEntry = 11;  // MaxSceneFile's streams follow the root in order

std::vector<testing::RawProperty> Stamp() {
  return {Utf16Property(2, u"3-7-2020"), Utf16Property(3, u"anna on RENDER07"), Utf16Property(4, u"bob on WS12")};
}

// Under the compound file: any range reads back as the file holds it, across the head's end
// and a block's; and 64 blocks besides the head are kept at most, so after 65 others the
// first is asked of the file again.
TEST(BlockReader, ReadsAnyRangeAndKeepsABoundedNumberOfBlocks) {
  std::string bytes(80 * 4096 + 100, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 4096);
  MemoryBytes memory(bytes);
  CountingBytes counted(memory);
  BlockReader reader(counted);
  const std::size_t ranges[][2] = {{0, 10}, {12280, 20}, {16380, 10}, {5000, 9000}, {80 * 4096, 100}};
  for (const auto& range : ranges) {
    std::string out(range[1], '\0');
    ASSERT_TRUE(reader.ReadAt(range[0], reinterpret_cast<std::uint8_t*>(&out[0]), out.size())) << range[0];
    EXPECT_EQ(out, bytes.substr(range[0], range[1])) << range[0];
  }
  std::uint8_t byte = 0;
  EXPECT_FALSE(reader.ReadAt(bytes.size(), &byte, 1));

  const std::uint64_t before = counted.reads;
  for (std::uint64_t block = 10; block <= 10 + 65; ++block) ASSERT_TRUE(reader.ReadAt(block * 4096, &byte, 1));
  ASSERT_TRUE(reader.ReadAt(10 * 4096, &byte, 1));
  EXPECT_EQ(counted.reads - before, 66u + 1u);
}

// The bytes written, then zeros the file system does not store, up to size.
bool WriteSparseFile(const std::wstring& path, const std::string& bytes, std::uint64_t size) {
#ifdef _WIN32
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD unused = 0;
  DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &unused, nullptr);
  LARGE_INTEGER end;
  end.QuadPart = static_cast<LONGLONG>(size);
  const bool written = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &unused, nullptr) &&
                       SetFilePointerEx(file, end, nullptr, FILE_BEGIN) && SetEndOfFile(file);
  return CloseHandle(file) && written;
#else
  const int fd = ::open(WideToUtf8(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (fd < 0) return false;
  const bool written = ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                       ::ftruncate(fd, static_cast<off_t>(size)) == 0;
  return ::close(fd) == 0 && written;
#endif
}

// The most memory the process has held so far, in KiB; 0 where it cannot be asked.
long PeakMemoryKiB() {
#ifdef _WIN32
  return 0;
#else
  struct rusage usage;
  return ::getrusage(RUSAGE_SELF, &usage) == 0 ? usage.ru_maxrss : 0;
#endif
}

struct Reading {
  SummaryInformation info;
  std::uint64_t reads = 0;
  long memoryKiB = 0;  // what the read added to the process's peak
};

Reading ReadCounted(ByteSource& source) {
  CountingBytes counted(source);
  Reading reading;
  const long before = PeakMemoryKiB();
  reading.info = ReadSummaryFromBytes(counted);
  reading.memoryKiB = PeakMemoryKiB() - before;
  reading.reads = counted.reads;
  return reading;
}

Reading ReadSparseFile(const std::string& bytes, std::uint64_t size) {
  testing::ScratchFile file;
  EXPECT_TRUE(WriteSparseFile(file.path(), bytes, size));
  std::string error;
  const std::unique_ptr<ByteSource> source = OpenFileBytes(file.path(), error);
  EXPECT_TRUE(source) << error;
  if (!source) return Reading();
  EXPECT_EQ(source->Size(), size);
  return ReadCounted(*source);
}

TEST(SummaryCost, SizesNearTwoToThe64AreRefused) {
  const CompoundImage scene = MaxSceneFile(SummarySet(MaxSummary(Stamp())));
  const std::uint64_t summarySize = scene.DirectoryEntryOffset(kSummaryEntry) + 120;
  const std::uint64_t rootSize = scene.DirectoryEntryOffset(0) + 120;
  const struct {
    std::uint64_t field;
    std::uint64_t size;
  } claims[] = {
      {summarySize, ~std::uint64_t{0}},      {summarySize, ~std::uint64_t{0} - 4095},
      {summarySize, std::uint64_t{1} << 63}, {summarySize, std::uint64_t{1} << 44},
      {rootSize, ~std::uint64_t{0}},         {rootSize, ~std::uint64_t{0} - 63},
  };
  for (const auto& claim : claims) {
    std::string bytes = scene.FullBytes();
    PutLe32(bytes, claim.field, static_cast<std::uint32_t>(claim.size));
    PutLe32(bytes, claim.field + 4, static_cast<std::uint32_t>(claim.size >> 32));
    MemoryBytes source(bytes);
    const SummaryInformation info = ReadSummaryFromBytes(source);
    EXPECT_EQ(info.status, SummaryStatus::kUnreadable) << claim.size;
    EXPECT_THAT(info.reason, HasSubstr("claims " + std::to_string(claim.size) + " bytes"));
  }
}

TEST(SummaryCost, ALoopingTreeIn64GiBSparseFile) {
  CompoundImage scene = MaxSceneFile(SummarySet(MaxSummary(Stamp())));
  // The root's first child points to itself on both sides: the search goes round it.
  std::uint8_t child[4];
  std::memcpy(child, scene.bytes.data() + scene.DirectoryEntryOffset(0) + 76, 4);
  const std::uint32_t top = child[0] | child[1] << 8 | child[2] << 16 | static_cast<std::uint32_t>(child[3]) << 24;
  PutLe32(scene.bytes, scene.DirectoryEntryOffset(top) + 68, top);
  PutLe32(scene.bytes, scene.DirectoryEntryOffset(top) + 72, top);
  const Reading reading = ReadSparseFile(scene.bytes, std::uint64_t{64} << 30);
  EXPECT_EQ(reading.info.status, SummaryStatus::kUnreadable);
  EXPECT_THAT(reading.info.reason, HasSubstr("tree loops back to entry " + std::to_string(top)));
  EXPECT_LE(reading.reads, 2u);
  EXPECT_LT(reading.memoryKiB, 16 * 1024);
}

TEST(SummaryCost, AValid1TiBSparseFile) {
  const CompoundImage scene = MaxSceneFile(SummarySet(MaxSummary(Stamp())));
  const Reading reading = ReadSparseFile(scene.bytes, std::uint64_t{1} << 40);
  ASSERT_EQ(reading.info.status, SummaryStatus::kRead) << reading.info.reason;
  EXPECT_EQ(reading.info.author.value, L"bob on WS12");
  EXPECT_LE(reading.reads, 3u);
  EXPECT_LT(reading.memoryKiB, 16 * 1024);
}

// The header, FAT, directory and mini FAT come in one read, the summary's table, strings
// and times in one more; stamps written after the thumbnail cost one read besides.
TEST(SummaryCost, AFileAs3dsMaxWritesItInFewReads) {
  std::vector<testing::RawProperty> stampAfterThumbnail = MaxSummary({});
  for (const testing::RawProperty& property : Stamp()) stampAfterThumbnail.push_back(property);
  const struct {
    std::vector<testing::RawProperty> properties;
    std::uint64_t reads;
  } cases[] = {{MaxSummary(Stamp()), 2}, {MaxSummary({}), 2}, {stampAfterThumbnail, 3}};
  for (const auto& scene : cases) {
    const CompoundImage image = MaxSceneFile(SummarySet(scene.properties));
    testing::ImageBytes source(image);
    const Reading reading = ReadCounted(source);
    ASSERT_EQ(reading.info.status, SummaryStatus::kRead) << reading.info.reason;
    EXPECT_EQ(reading.info.author.present, scene.properties.size() > MaxSummary({}).size());
    EXPECT_EQ(reading.info.lastSavedBy.value, L"adavis4");
    EXPECT_TRUE(reading.info.created.isTime && reading.info.lastSaved.isTime);
    EXPECT_EQ(reading.reads, scene.reads);
  }
}

}  // namespace
}  // namespace hublet
