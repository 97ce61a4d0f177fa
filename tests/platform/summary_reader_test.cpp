// The portable reader of summary information in compound files: well-formed files of every
// layout read back, and damaged ones end in a status with a reason, never a bad read (the
// sanitizer builds watch that).
#include <gmock/gmock.h>

#include <functional>

#include "platform/summary_information.h"
#include "tests/support/compound_builder.h"

namespace hublet {
namespace {

using testing::BuildCompoundFile;
using testing::CompoundImage;
using testing::CompoundStream;
using testing::RawProperty;
using testing::SummarySet;
using testing::Utf16Property;
using ::testing::HasSubstr;

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
  for (int i = 0; i < otherStreams; ++i) streams.push_back({u"Stream" + std::u16string(1, static_cast<char16_t>(u'A' + i % 26)), std::string(100 + i, 'x'), 0});
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

TEST(SummaryReader, StringsInTheSetsCodePage) {
  // 1252: "Jörg" as one byte a letter; 65001: as UTF-8; a UTF-16 set stores 8-bit strings
  // as UTF-16 too, the count in bytes.
  RawProperty utf16Bytes{3, 30, std::string("\x0a\x00\x00\x00J\x00\xf6\x00r\x00g\x00\x00\x00", 14)};
  const std::vector<RawProperty> cases[] = {
      {testing::CodePageIdProperty(1252), testing::CodePageProperty(3, "J\xf6rg")},
      {testing::CodePageIdProperty(65001), testing::CodePageProperty(3, "J\xc3\xb6rg")},
      {testing::CodePageIdProperty(1200), utf16Bytes},
      {testing::CodePageProperty(3, "J\xf6rg")},  // no code page: Windows-1252
  };
  for (const auto& properties : cases) {
    const SummaryInformation info = Read(SceneFile(SummarySet(properties)).FullBytes());
    ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
    EXPECT_EQ(info.subject.value, L"J\u00f6rg");
    EXPECT_FALSE(info.title.present);
  }
  const SummaryInformation unknown =
      Read(SceneFile(SummarySet({testing::CodePageIdProperty(7), testing::CodePageProperty(3, "x")})).FullBytes());
  EXPECT_EQ(unknown.status, SummaryStatus::kUnreadable);
  EXPECT_THAT(unknown.reason, HasSubstr("code page 7"));
}

// The statuses of whole files are pinned by hublet stamps' golden run.
TEST(SummaryReader, AnEmptyFileAndANumberAreNoText) {
  EXPECT_EQ(Read("").status, SummaryStatus::kNotCompoundFile);
  const SummaryInformation number = Read(SceneFile(SummarySet({{2, 3, std::string(4, '\0')}})).FullBytes());
  EXPECT_TRUE(number.title.present);
  EXPECT_FALSE(number.title.isText);
}

TEST(SummaryReader, SectionSizeLongerThanTheStream) {
  // As Wine writes it: the size counts padding that the stream lacks.
  std::string set = SummarySet({Utf16Property(2, u"1-1-2021")});
  set.resize(set.size() - 2);
  testing::PutLe32(set, 48, static_cast<std::uint32_t>(set.size() - 48 + 3));
  const SummaryInformation info = Read(SceneFile(set).FullBytes());
  ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
  EXPECT_EQ(info.title.value, L"1-1-2021");
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
      {"ends after 2 sectors", [&](std::string& b) { testing::PutLe32(b, regular.FatEntryOffset(summary + 1), 0xFFFFFFFE); }},
      {"leads to sector 16777215", [&](std::string& b) { testing::PutLe32(b, regular.FatEntryOffset(summary + 1), 0xFFFFFF); }},
      {"past the end", [](std::string& b) { testing::PutLe32(b, 48, 0x00FFFFFF); }},
      {"claims", [&](std::string& b) { testing::PutLe32(b, summaryEntry + 120, 0x7FFFFFF0); }},
      {"tree loops", [&](std::string& b) { testing::PutLe32(b, summaryEntry - 128 + 72, 1); }},
      {"name of 66 bytes", [&](std::string& b) { b[summaryEntry - 128 + 64] = 66; }},
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

TEST(SummaryReader, DamagedPropertySetsGiveAReason) {
  const struct {
    const char* reason;
    std::uint64_t offset;
    std::uint32_t value;
  } damages[] = {
      {"byte order mark", 0, 0},
      {"no section", 24, 0},
      {"outside the stream", 44, 100000},
      {"more than it holds", 52, 0x10000000},
      {"absurd", 48 + 8 + 3 * 8 + 4, 0x7FFFFFFF},  // the first value's length
      {"past the end of its section", 48 + 8 + 4, 0x100000},
  };
  for (const auto& damage : damages) {
    std::string set = SummarySet(Stamp());
    testing::PutLe32(set, damage.offset, damage.value);
    const SummaryInformation info = Read(SceneFile(set).FullBytes());
    EXPECT_EQ(info.status, SummaryStatus::kUnreadable) << damage.reason;
    EXPECT_THAT(info.reason, HasSubstr(damage.reason));
  }
  std::string foreign = SummarySet(Stamp());
  foreign[28] = 0;  // another property set's format ID
  EXPECT_EQ(Read(SceneFile(foreign).FullBytes()).status, SummaryStatus::kNoSummaryInformation);
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
