// The summary-information property set: strings in the set's code page, the properties
// the reader takes and how it takes them, and damaged sets, each with its reason.
#include <gmock/gmock.h>

#include "platform/file_time.h"
#include "platform/summary_information.h"
#include "tests/support/compound_builder.h"

namespace hublet {
namespace {

using testing::CodePageIdProperty;
using testing::CodePageProperty;
using ::testing::HasSubstr;
using testing::PutLe32;
using testing::RawProperty;
using testing::SummarySet;
using testing::Utf16Property;

SummaryInformation ReadSet(const std::string& set) {
  MemoryBytes source(testing::BuildCompoundFile({{u"\x0005SummaryInformation", set, 0}}).FullBytes());
  return ReadSummaryFromBytes(source);
}

std::vector<RawProperty> Stamp() {
  return {Utf16Property(2, u"3-7-2020"), Utf16Property(3, u"anna on RENDER07"), Utf16Property(4, u"bob on WS12")};
}

TEST(SummaryProperties, StringsInTheSetsCodePage) {
  // 1252: "Jörg" as one byte a letter; 65001: as UTF-8; a UTF-16 set stores 8-bit strings
  // as UTF-16 too, the count in bytes.
  RawProperty utf16Bytes{3, 30, std::string("\x0a\x00\x00\x00J\x00\xf6\x00r\x00g\x00\x00\x00", 14)};
  const std::vector<RawProperty> cases[] = {
      {CodePageIdProperty(1252), CodePageProperty(3, "J\xf6rg")},
      {CodePageIdProperty(65001), CodePageProperty(3, "J\xc3\xb6rg")},
      {CodePageIdProperty(1200), utf16Bytes},
      {CodePageProperty(3, "J\xf6rg")},  // no code page: Windows-1252
  };
  for (const auto& properties : cases) {
    const SummaryInformation info = ReadSet(SummarySet(properties));
    ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
    EXPECT_EQ(info.subject.value, L"J\u00f6rg");
    EXPECT_FALSE(info.title.present);
  }
  const SummaryInformation unknown = ReadSet(SummarySet({CodePageIdProperty(7), CodePageProperty(3, "x")}));
  EXPECT_EQ(unknown.status, SummaryStatus::kUnreadable);
  EXPECT_THAT(unknown.reason, HasSubstr("code page 7"));
}

// The statuses of whole files are pinned by hublet stamps' golden run.
TEST(SummaryProperties, AnEmptyFileAndANumberAreNoText) {
  MemoryBytes empty("");
  EXPECT_EQ(ReadSummaryFromBytes(empty).status, SummaryStatus::kNotCompoundFile);
  const SummaryInformation number = ReadSet(SummarySet({{2, 3, std::string(4, '\0')}}));
  EXPECT_TRUE(number.title.present);
  EXPECT_FALSE(number.title.isText);
}

TEST(SummaryProperties, SectionSizeLongerThanTheStream) {
  // As Wine writes it: the size counts padding that the stream lacks.
  std::string set = SummarySet({Utf16Property(2, u"1-1-2021")});
  set.resize(set.size() - 2);
  PutLe32(set, 48, static_cast<std::uint32_t>(set.size() - 48 + 3));
  const SummaryInformation info = ReadSet(set);
  ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
  EXPECT_EQ(info.title.value, L"1-1-2021");
}

TEST(SummaryProperties, DamagedPropertySetsGiveAReason) {
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
    PutLe32(set, damage.offset, damage.value);
    const SummaryInformation info = ReadSet(set);
    EXPECT_EQ(info.status, SummaryStatus::kUnreadable) << damage.reason;
    EXPECT_THAT(info.reason, HasSubstr(damage.reason));
  }
  // A table long enough for 65,537 properties, in a section long enough to hold it.
  std::string longTable = SummarySet(Stamp());
  longTable.resize(600000, '\0');
  PutLe32(longTable, 48, 590000);
  PutLe32(longTable, 52, 65537);
  EXPECT_THAT(ReadSet(longTable).reason, HasSubstr("counts 65537 properties: absurd"));
  std::string foreign = SummarySet(Stamp());
  foreign[28] = 0;  // another property set's format ID
  EXPECT_EQ(ReadSet(foreign).status, SummaryStatus::kNoSummaryInformation);
}

// Code page 28591 is Latin-1, byte for byte (1252 differs at 0x80 to 0x9F); an 8-bit
// string longer than any buffer a converter works in comes out whole.
TEST(SummaryProperties, Latin1AndLongStrings) {
  const SummaryInformation latin1 =
      ReadSet(SummarySet({CodePageIdProperty(28591), CodePageProperty(3, "J\xf6rg \x80\x9f\xff on WS")}));
  ASSERT_EQ(latin1.status, SummaryStatus::kRead) << latin1.reason;
  EXPECT_EQ(latin1.subject.value, L"J\u00f6rg \u0080\u009f\u00ff on WS");
  std::string longBytes;
  std::wstring longText;
  for (int i = 0; i < 3000; ++i) {
    longBytes += i % 3 == 0 ? "\xe9" : "a";
    longText += i % 3 == 0 ? L'\u00e9' : L'a';
  }
  const SummaryInformation long1252 = ReadSet(SummarySet({CodePageIdProperty(1252), CodePageProperty(4, longBytes)}));
  ASSERT_EQ(long1252.status, SummaryStatus::kRead) << long1252.reason;
  EXPECT_EQ(long1252.author.value, longText);
}

// A table that lists an ID twice is read by its first entry.
TEST(SummaryProperties, AnIdListedTwiceIsReadByItsFirstEntry) {
  const SummaryInformation info = ReadSet(
      SummarySet({Utf16Property(3, u"anna on WS01"), Utf16Property(2, u"3-7-2020"), Utf16Property(3, u"bob on WS02")}));
  ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
  EXPECT_EQ(info.subject.value, L"anna on WS01");
  EXPECT_EQ(info.title.value, L"3-7-2020");
}

// Wine leaves a committed empty set as an empty stream: a set without properties.
TEST(SummaryProperties, AnEmptyStreamIsAnEmptySet) {
  const SummaryInformation info = ReadSet("");
  ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
  EXPECT_FALSE(info.title.present || info.subject.present || info.author.present);
}

// What 3ds Max records beside the stamp, read in the same pass: its last saver (8) in the
// set's code page, creation (12) and last save (13) as FILETIMEs.
TEST(SummaryProperties, WhatMaxRecordsBesideTheStamp) {
  const SummaryInformation info = ReadSet(SummarySet(testing::MaxSummary(Stamp())));
  ASSERT_EQ(info.status, SummaryStatus::kRead) << info.reason;
  EXPECT_EQ(info.author.value, L"bob on WS12");
  EXPECT_TRUE(info.lastSavedBy.isText);
  EXPECT_EQ(info.lastSavedBy.value, L"adavis4");
  ASSERT_TRUE(info.created.present && info.created.isTime);
  ASSERT_TRUE(info.lastSaved.present && info.lastSaved.isTime);
  EXPECT_EQ(FileTimeToIso8601(info.created.ticks), "2020-07-03T09:15:00Z");
  EXPECT_EQ(FileTimeToIso8601(info.lastSaved.ticks), "2023-11-14T17:40:12Z");

  // A saver beyond ASCII in UTF-8, times of another type, none at all.
  const SummaryInformation other =
      ReadSet(SummarySet({CodePageIdProperty(65001), CodePageProperty(8, "J\xc3\xb6rg"), Utf16Property(12, u"yesterday"),
                          RawProperty{13, 3, std::string("\1\0\0\0", 4)}}));
  ASSERT_EQ(other.status, SummaryStatus::kRead) << other.reason;
  EXPECT_EQ(other.lastSavedBy.value, L"J\u00f6rg");
  EXPECT_TRUE(other.created.present && !other.created.isTime);
  EXPECT_TRUE(other.lastSaved.present && !other.lastSaved.isTime);
  EXPECT_FALSE(ReadSet(SummarySet(Stamp())).lastSaved.present);

  // A saver in a code page this reader does not know costs only the saver, not the stamp.
  std::vector<RawProperty> unknown = Stamp();
  unknown.push_back(CodePageIdProperty(850));
  unknown.push_back(CodePageProperty(8, "adavis4"));
  const SummaryInformation unknownSaver = ReadSet(SummarySet(unknown));
  ASSERT_EQ(unknownSaver.status, SummaryStatus::kRead) << unknownSaver.reason;
  EXPECT_EQ(unknownSaver.author.value, L"bob on WS12");
  EXPECT_TRUE(unknownSaver.lastSavedBy.present && !unknownSaver.lastSavedBy.isText);
}

// A FILETIME is 8 bytes: one cut short by the section's end is damage.
TEST(SummaryProperties, AFileTimeCutShort) {
  std::string set = SummarySet({testing::FileTimeProperty(13, 133444572120000000)});
  set.resize(set.size() - 4);
  PutLe32(set, 48, static_cast<std::uint32_t>(set.size() - 48));
  const SummaryInformation info = ReadSet(set);
  EXPECT_EQ(info.status, SummaryStatus::kUnreadable);
  EXPECT_THAT(info.reason, HasSubstr("past the end of its section"));
}

}  // namespace
}  // namespace hublet
