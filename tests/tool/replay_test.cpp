// The replay: events as the command line names them, and the host answers the options
// choose, seen through the transcript.
#include <gmock/gmock.h>

#include <memory>

#include "tests/support/scratch_file.h"
#include "tool/command_line.h"
#include "tool/replay.h"

namespace hublet {
namespace tool {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

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
}

TEST(ReplayEvents, MalformedOnesAreUsageErrors) {
  for (const char* bad : {"bogus", "", "pre-startup", "redraw:x", "redraw:6:4", "redraw:6:-1", "redraw:1:2:3",
                          "call", "call:", "call:1:2:3", "call:12:x", "notify:", "toolbar:1"})
    EXPECT_THROW(ParseReplayEvent(bad), UsageError) << bad;
}

}  // namespace
}  // namespace tool
}  // namespace hublet
