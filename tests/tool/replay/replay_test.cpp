// The replay's events as the command line and session files write them. What they do is
// in the golden transcripts (tests/tool/replay/golden/replay-*.txt).
#include <gmock/gmock.h>

#include <string>

#include "tool/common/command_line.h"
#include "tool/replay/replay.h"

namespace hublet {
namespace tool {
namespace {

TEST(ReplayEvents, NamesPairsAndParameters) {
  const std::vector<ReplayEvent> news = ParseReplayEvent("new");
  ASSERT_EQ(news.size(), 2u);
  EXPECT_EQ(news[0].name, "pre-new");
  EXPECT_EQ(news[0].code, 7);
  EXPECT_EQ(news[1].code, 8);
  EXPECT_EQ(ParseReplayEvent("start-up").at(0).code, 80);
  EXPECT_EQ(ParseReplayEvent("post-export").at(0).code, 28);
  EXPECT_EQ(ParseReplayEvent("notify:99").at(0).code, 99);

  const ReplayEvent redraw = ParseReplayEvent("redraw:6:2").at(0);
  EXPECT_EQ(redraw.kind, ReplayEvent::Kind::Redraw);
  EXPECT_TRUE(redraw.setsType);
  EXPECT_EQ(redraw.viewType, 6);
  EXPECT_EQ(redraw.viewport, 2);
  EXPECT_FALSE(ParseReplayEvent("redraw").at(0).setsType);
  EXPECT_EQ(ParseReplayEvent("redraw").at(0).viewport, -1);

  const ReplayEvent call = ParseReplayEvent("call:12:-5").at(0);
  EXPECT_EQ(call.functionId, 12);
  EXPECT_TRUE(call.hasArgument);
  EXPECT_EQ(call.argument, -5);
  EXPECT_FALSE(ParseReplayEvent("call:12").at(0).hasArgument);

  // A host change takes everything after its first colon, blanks and colons included.
  const HostChange dir = ParseReplayEvent("dir:plugcfg=D:\\a b:c\\").at(0).change;
  EXPECT_EQ(dir.number, host::kDirPlugCfg);
  EXPECT_EQ(dir.text, L"D:\\a b:c\\");
  EXPECT_TRUE(ParseReplayEvent("dir:15=").at(0).change.text.empty());
}

TEST(ReplayEvents, MalformedOnesAreUsageErrors) {
  for (const char* bad : {"bogus", "", "pre-startup", "redraw:x", "redraw:6:4", "redraw:6:-1", "redraw:1:2:3",
                          "call", "call:", "call:1:2:3", "call:12:x", "notify:", "toolbar:1",
                          "state:1", "redraw-no-view:1", "user", "toolbar-script:1", "no-ini:x", "ini:", "active:4",
                          "no-shading-extension:-1", "viewport-type:1", "dir:scripts", "dir:x=C:\\", "date:31-2-2020",
                          "renderer:0x1", "property:owner=x", "time:soon"})
    EXPECT_THROW(ParseReplayEvent(bad), UsageError) << bad;
}

// The Gregorian calendar: every fourth year a leap year, but not a century unless it is
// divisible by 400.
TEST(ReplayEvents, DatesFollowTheCalendarsCenturyRule) {
  for (const char* day : {"29-2-2024", "29-2-2000", "31-12-9999", "1-1-1000"})
    EXPECT_NO_THROW(ParseReplayEvent(std::string("date:") + day)) << day;
  for (const char* day : {"29-2-2100", "29-2-1900", "29-2-2023", "31-4-2020", "0-1-2020", "1-13-2020", "1-1-999"})
    EXPECT_THROW(ParseReplayEvent(std::string("date:") + day), UsageError) << day;
  EXPECT_EQ(ParseReplayEvent("date:29-2-2000").at(0).change.date.day, 29);
}

// The message of a mistake quotes as much of it as a person reads, with control
// characters escaped: never a whole huge value, never a raw escape sequence.
std::string Message(const std::string& word) {
  try {
    ParseReplayEvent(word);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "no mistake";
}

TEST(ReplayEvents, MistakesAreToldBrieflyAndEscaped) {
  const std::string huge(1000000, '7');
  for (const std::string& word : {"redraw:x" + huge, "call:" + huge, "renderer:" + huge + ",1", "bogus" + huge,
                                  "date:" + huge, "property:" + huge, "dir:" + huge + "=x"})
    EXPECT_LT(Message(word).size(), 300u) << word.substr(0, 12);
  EXPECT_THAT(Message("redraw:\x1B[2J"), ::testing::HasSubstr("\"redraw:\\x1B[2J\""));
  EXPECT_THAT(Message("dir:music=D:\\"), ::testing::HasSubstr("plugcfg, scripts or a directory ID"));
  // A value longer than any name or path is refused, not carried through the session.
  const std::string longest(kMaxValueBytes, 'a');
  EXPECT_EQ(ParseReplayEvent("user:" + longest).at(0).change.text.size(), kMaxValueBytes);
  EXPECT_THAT(Message("user:" + longest + "a"), ::testing::HasSubstr("at most 4096 bytes"));
}

}  // namespace
}  // namespace tool
}  // namespace hublet
