// The replay's events as the command line and session files write them. What they do is
// in the golden transcripts (tests/tool/replay/golden/replay-*.txt).
#include <gmock/gmock.h>

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

}  // namespace
}  // namespace tool
}  // namespace hublet
