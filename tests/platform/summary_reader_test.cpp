// The portable reader of summary information in compound files: well-formed files of every
// layout read back, and damaged ones end in a status with a reason, never a bad read (the
// sanitizer builds watch that).
#include <gmock/gmock.h>

#include <cstring>
#include <functional>

#include "platform/summary_information.h"
#include "tests/support/compound_builder.h"

namespace hublet {
namespace {

using testing::BuildCompoundFile;
using testing::CompoundImage;
using testing::CompoundStream;
using ::testing::HasSubstr;
using testing::RawProperty;
using testing::SummarySet;
using testing::Utf16Property;

const char16_t kSummaryName[] = u"\x0005SummaryInformation";

SummaryInformation Read(const std::string& bytes) {
  MemoryBytes source(bytes);
  return ReadSummaryFromBytes(source);
}

std::vector<RawProperty> Stamp() {
  return {Utf16Property(2, u"3-7-2020"), Utf16Property(3, u"anna on RENDER07"), Utf16Property(4, u"bob on WS12")};
}

CompoundImage SceneFile(const std::string& summary, std::uint32_t sectorSize = 512, int otherStreams = 3) {
  std::vector<CompoundStream> streams;
  for (int i = 0; i < otherStreams; ++i)
    streams.push_back(
        {u"Stream" + std::u16string(1, static_cast<char16_t>(u'A' + i % 26)), std::string(100 + i, 'x'), 0});
  streams.push_back({kSummaryName, summary, 0});
  streams.push_back({u"Scene", std::string(5000, 's'), 0});
  return BuildCompoundFile(streams, sectorSize);
}

TEST(SummaryReader, ReadsEveryLayout) {
  // Large enough to leave the mini stream for regular sectors.
  std::vector<RawProperty> large = Stamp();
  large.push_back(Utf16Property(6, std::u16string(3000, u'c')));
  for (std::uint32_t sectorSize : {512u, 4096u}) {
    for (const auto& properties : {Stamp(), large}) {
      for (int others : {0, 200}) {
        SCOPED_TRACE(::testing::Message() << sectorSize << " " << properties.size() << " " << others);
        const SummaryInformation info = Read(SceneFile(SummarySet(properties), sectorSize, others).FullBytes());
        ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
        EXPECT_EQ(info.title.value, L"3-7-2020");
        EXPECT_EQ(info.subject.value, L"anna on RENDER07");
        EXPECT_EQ(info.author.value, L"bob on WS12");
        EXPECT_TRUE(info.author.present && info.author.isText);
      }
    }
  }
}

// Damage at known places, each with the reason it must give.
TEST(SummaryReader, DamagedFilesGiveAReason) {
  // The stamp in regular sectors, behind a long comment, so that its chain can be damaged
  // before the reader reaches it.
  std::vector<RawProperty> large = Stamp();
  large.insert(large.begin(), Utf16Property(6, std::u16string(3000, u'c')));
  const CompoundImage regular = SceneFile(SummarySet(large), 512, 1);
  const std::uint32_t summary = regular.streamStarts[1];
  const std::uint64_t summaryEntry = regular.SectorOffset(regular.directorySector) + 128 * 2;
  struct Damage {
    const char* reason;
    std::function<void(std::string&)> apply;
  };
  const Damage damages[] = {
      {"byte order mark", [](std::string& b) { b[28] = 'x'; }},
      {"not a known format", [](std::string& b) { b[30] = 10; }},
      {"counts more FAT sectors", [](std::string& b) { testing::PutLe32(b, 44, 0x7FFFFFFF); }},
      {"loops back", [&](std::string& b) { testing::PutLe32(b, regular.FatEntryOffset(summary + 1), summary); }},
      {"ends after 2 sectors",
       [&](std::string& b) { testing::PutLe32(b, regular.FatEntryOffset(summary + 1), 0xFFFFFFFE); }},
      {"leads to sector 16777215",
       [&](std::string& b) { testing::PutLe32(b, regular.FatEntryOffset(summary + 1), 0xFFFFFF); }},
      {"past the end", [](std::string& b) { testing::PutLe32(b, 48, 0x00FFFFFF); }},
      {"claims", [&](std::string& b) { testing::PutLe32(b, summaryEntry + 120, 0x7FFFFFF0); }},
      {"tree loops", [&](std::string& b) { testing::PutLe32(b, summaryEntry - 128 + 72, 1); }},
      {"name of 66 bytes", [&](std::string& b) { b[summaryEntry - 128 + 64] = 66; }},
      {"entry 1000 is past the end of the directory",
       [&](std::string& b) { testing::PutLe32(b, regular.DirectoryEntryOffset(0) + 76, 1000); }},
      {"header is cut short", [](std::string& b) { b.resize(300); }},
      {"cut short", [&](std::string& b) { b.resize(regular.SectorOffset(summary + 2) + 100); }},
  };
  for (const Damage& damage : damages) {
    std::string bytes = regular.FullBytes();
    damage.apply(bytes);
    const SummaryInformation info = Read(bytes);
    EXPECT_EQ(info.status, SummaryStatus::kUnreadable) << damage.reason;
    EXPECT_THAT(info.reason, HasSubstr(damage.reason));
  }
}

// Damage the reading never reaches leaves the stamp readable: a chain broken after the
// stamp's sector (a comment fills the rest), a free entry on the way to the summary.
TEST(SummaryReader, DamageOffTheWayIsNotReached) {
  std::vector<RawProperty> stampFirst = Stamp();
  stampFirst.push_back(Utf16Property(6, std::u16string(3000, u'c')));
  CompoundImage brokenAfter = SceneFile(SummarySet(stampFirst), 512, 1);
  testing::PutLe32(brokenAfter.bytes, brokenAfter.FatEntryOffset(brokenAfter.streamStarts[1]), 0xFFFFFFFE);

  // Entries 0 to 2 are the root, the scene and the summary; entry 3 is free, all zeros, with a
  // name of no length.
  CompoundImage freeEntry = BuildCompoundFile({{u"Scene", "s", 0}, {kSummaryName, SummarySet(Stamp()), 0}});
  testing::PutLe32(freeEntry.bytes, freeEntry.DirectoryEntryOffset(0) + 76, 3);
  testing::PutLe32(freeEntry.bytes, freeEntry.DirectoryEntryOffset(3) + 68, 0xFFFFFFFF);
  testing::PutLe32(freeEntry.bytes, freeEntry.DirectoryEntryOffset(3) + 72, 2);

  for (const CompoundImage* image : {&brokenAfter, &freeEntry}) {
    const SummaryInformation info = Read(image->FullBytes());
    ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
    EXPECT_EQ(info.author.value, L"bob on WS12");
  }
}

std::vector<RawProperty> LargeStamp() {
  std::vector<RawProperty> large = Stamp();
  large.insert(large.begin(), Utf16Property(6, std::u16string(3000, u'c')));
  return large;
}

// The edges of the layout: a stream of exactly the mini-stream cutoff lives in regular
// sectors; version 3 files may hold anything in a size's high half; a stream may end on
// the file's last byte, in a sector the file cuts short.
TEST(SummaryReader, TheLayoutsEdges) {
  std::string cutoff = SummarySet(Stamp());
  cutoff.resize(4096, '\0');
  const CompoundImage atCutoff = SceneFile(cutoff);
  ASSERT_EQ(atCutoff.streamStarts[3], atCutoff.streamStarts[4] - 8);  // regular sectors, before the scene's

  CompoundImage highHalves = SceneFile(SummarySet(Stamp()));
  testing::PutLe32(highHalves.bytes, highHalves.DirectoryEntryOffset(0) + 124, 0xFFFFFFFF);
  testing::PutLe32(highHalves.bytes, highHalves.DirectoryEntryOffset(4) + 124, 0xDEADBEEF);

  // "bob on WS12" and its NUL fill 24 bytes: the set ends without padding.
  const CompoundImage lastByte =
      BuildCompoundFile({{u"Scene", std::string(5000, 's'), 0}, {kSummaryName, SummarySet(LargeStamp()), 0}});
  ASSERT_EQ(lastByte.bytes.size() % 512, (SummarySet(LargeStamp()).size()) % 512);
  ASSERT_NE(lastByte.bytes.size(), lastByte.size);

  for (const std::string& bytes : {atCutoff.FullBytes(), highHalves.FullBytes(), lastByte.bytes}) {
    const SummaryInformation info = Read(bytes);
    ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
    EXPECT_EQ(info.author.value, L"bob on WS12");
  }
}

// Past the header's 109 FAT sectors (about 7 MB in 512-byte sectors) each DIFAT sector
// lists 127 more and the next DIFAT sector: a summary past 15.5 MB is found through the
// second.
TEST(SummaryReader, ASummaryListedInTheSecondDifatSector) {
  const CompoundImage image =
      BuildCompoundFile({{u"Scene", "s", 16u << 20}, {kSummaryName, SummarySet(LargeStamp()), 0}});
  ASSERT_GE(image.streamStarts[1] / 128, 109u + 127u);
  testing::ImageBytes source(image);
  const SummaryInformation info = ReadSummaryFromBytes(source);
  ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
  EXPECT_EQ(info.author.value, L"bob on WS12");

  // The first DIFAT sector names itself as the next.
  CompoundImage looping = image;
  const std::uint32_t firstDifat = static_cast<std::uint32_t>(static_cast<std::uint8_t>(looping.bytes[68]) |
                                                              static_cast<std::uint8_t>(looping.bytes[69]) << 8);
  testing::PutLe32(looping.bytes, looping.SectorOffset(firstDifat) + 508, firstDifat);
  testing::ImageBytes loopingSource(looping);
  EXPECT_THAT(ReadSummaryFromBytes(loopingSource).reason, HasSubstr("DIFAT's chain loops back"));
}

// Makes the root's children a chain of right siblings in the order given.
void LinkSiblings(CompoundImage& image, const std::vector<std::uint32_t>& ids) {
  testing::PutLe32(image.bytes, image.DirectoryEntryOffset(0) + 76, ids.front());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    testing::PutLe32(image.bytes, image.DirectoryEntryOffset(ids[i]) + 68, 0xFFFFFFFF);
    testing::PutLe32(image.bytes, image.DirectoryEntryOffset(ids[i]) + 72,
                     i + 1 < ids.size() ? ids[i + 1] : 0xFFFFFFFF);
  }
}

// Siblings out of Windows' order (some writers leave them so), and siblings ordered by
// upper-casing beyond Latin-1 (U+0131 dotless i is I, U+017F long s is S), still lead to
// the summary.
TEST(SummaryReader, SiblingsInAnyOrder) {
  CompoundImage unsorted = BuildCompoundFile({{u"Config", "c", 0},
                                              {u"\x0005DocumentSummaryInformation", "d", 0},
                                              {kSummaryName, SummarySet(Stamp()), 0},
                                              {u"Scene", "s", 0},
                                              {u"VideoPostQueue", "v", 0}});
  LinkSiblings(unsorted, {2, 5, 4, 3, 1});  // longest name first: the search turns left and finds nothing
  // In Windows' order: "...a(long s)ion" < "...at(dotless i)om" < "...ation".
  CompoundImage upperCased = BuildCompoundFile({{u"\x0005SummaryInforma\u017fion", "a", 0},
                                                {u"\x0005SummaryInformat\u0131om", "b", 0},
                                                {kSummaryName, SummarySet(Stamp()), 0}});
  LinkSiblings(upperCased, {1, 2, 3});
  for (const CompoundImage* image : {&unsorted, &upperCased}) {
    const SummaryInformation info = Read(image->FullBytes());
    ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
    EXPECT_EQ(info.subject.value, L"anna on RENDER07");
  }
}

// A file whose reads fail (a disk error, a share gone away) is unreadable, never taken
// for a file of another kind.
class FailingBytes : public ByteSource {
 public:
  FailingBytes(const std::string& bytes, std::uint64_t failFrom) : bytes_(bytes), failFrom_(failFrom) {}
  std::uint64_t Size() const override { return bytes_.size(); }

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    if (offset + count > failFrom_) return 0;
    std::memcpy(out, bytes_.data() + offset, count);
    return count;
  }
  std::string bytes_;
  std::uint64_t failFrom_;
};

TEST(SummaryReader, AFileThatCannotBeRead) {
  const CompoundImage image = testing::MaxSceneFile(SummarySet(testing::MaxSummary(Stamp())));
  const std::string bytes = image.FullBytes();
  const std::uint32_t summary = image.streamStarts.back();
  FailingBytes failsAtOnce(bytes, 0), failsAtTheSummary(bytes, image.SectorOffset(summary));
  EXPECT_EQ(ReadSummaryFromBytes(failsAtOnce).reason, "the file cannot be read");
  EXPECT_EQ(ReadSummaryFromBytes(failsAtTheSummary).reason,
            "the file cannot be read at sector " + std::to_string(summary));
}

TEST(SummaryReader, ACutFileReadsWhollyOrNotAtAll) {
  const std::string bytes = SceneFile(SummarySet(Stamp()), 512, 1).FullBytes();
  for (std::size_t size = 0; size < bytes.size(); size += 61) {
    const SummaryInformation info = Read(bytes.substr(0, size));
    if (info.status == SummaryStatus::kRead) {
      EXPECT_EQ(info.author.value, L"bob on WS12") << size;
    }
  }
}

}  // namespace
}  // namespace hublet
