// A replay as it runs: each group leaves as soon as it is complete, and followed redraws
// stop where the plug-in would ask forever, however many were allowed.
#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "tool/replay/redraw_loop.h"
#include "tool/replay/replay.h"

namespace hublet {
namespace tool {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// The group headers as they arrive, with why following stopped.
struct Recorder final : ReplayOutput {
  void Host(const ReplayHost&) override {}
  void Group(const ReplayGroup& group) override {
    std::string line = group.event;
    for (const ReplayFact& fact : group.facts)
      if (fact.jsonMember == "stopped") line += " " + fact.text;
    headers.push_back(line);
  }
  void End() override { ended = true; }
  std::vector<std::string> headers;
  bool ended = false;
};

HostChange Change(const char* name, const std::string& value) {
  HostChange change;
  ParseHostChange(name, &value, change);
  return change;
}

// As many followed redraws as a test allows: a loop not found shows as that many groups,
// quickly, instead of a test that runs for hours.
constexpr int kFollowMany = 100000;

// The headers of a replay of words, from the first followed redraw on.
std::vector<std::string> Followed(int follow, const std::vector<HostChange>& host, const std::vector<std::string>& words) {
  ReplayOptions options;
  options.followRedraws = follow;
  options.host = host;
  Recorder recorder;
  Replay replay(options, recorder);
  replay.Start();
  for (const std::string& word : words)
    for (const ReplayEvent& event : ParseReplayEvent(word)) replay.Run(event);
  replay.End();
  std::vector<std::string> followed;
  for (const std::string& header : recorder.headers)
    if (header.compare(0, 9, "requested") == 0) followed.push_back(header);
  return followed;
}

TEST(ReplayOutput, EachGroupLeavesWhenTheNextBegins) {
  Recorder recorder;
  Replay replay(ReplayOptions(), recorder);
  replay.Start();
  EXPECT_THAT(recorder.headers, ElementsAre("load"));
  for (const ReplayEvent& event : ParseReplayEvent("new")) replay.Run(event);
  EXPECT_THAT(recorder.headers, ElementsAre("load", "start", "pre-new (notification 7)"));
  EXPECT_FALSE(recorder.ended);
  replay.End();
  EXPECT_EQ(recorder.headers.size(), 5u);
  EXPECT_EQ(recorder.headers.back(), "unload");
  EXPECT_TRUE(recorder.ended);
}

// FORCEORTHO with a perspective view that is not the active one: the view command turns
// the active viewport, the perspective view stays, and every redraw asks for another.
TEST(FollowRedraws, StopsWhenTheViewportsAreAsBeforeAnEarlierRedraw) {
  EXPECT_THAT(Followed(kFollowMany, {Change("active", "0")}, {"call:11:1", "redraw:7:3"}),
              ElementsAre("requested redraw 1 (every viewport) [stopped following: the plug-in asked for another "
                          "redraw with the viewports as they were before requested redraw 1, so it would ask forever]"));
  // With FORCEPERSP too each round makes a camera of the view the command turned; the
  // viewports come back all the same.
  EXPECT_EQ(Followed(kFollowMany, {Change("active", "0")}, {"call:10:1", "call:11:1", "redraw:7:3"}).size(), 1u);
}

// Here the first followed redraw changes the viewports (two cameras), the second does not.
TEST(FollowRedraws, FindsALoopThatBeginsLaterAndKeepsItsBound) {
  const std::vector<HostChange> host = {Change("active", "2"), Change("viewport-type", "1=6")};
  const std::vector<std::string> words = {"call:10:1", "call:11:1", "redraw:7:0"};
  const std::vector<std::string> followed = Followed(kFollowMany, host, words);
  ASSERT_EQ(followed.size(), 2u);
  EXPECT_THAT(followed[1], HasSubstr("as they were before requested redraw 2,"));
  EXPECT_THAT(Followed(1, host, words),
              ElementsAre(HasSubstr("[stopped following: the plug-in asked for another redraw after 1 in a row]")));
  EXPECT_TRUE(Followed(0, host, words).empty());
}

// Brent's method over a made-up run of states: a lead-in, then a cycle.
int FoundAt(const std::vector<int>& lead, const std::vector<int>& cycle, int& earlier) {
  RedrawLoopFinder finder;
  for (int number = 1; number < 1000; ++number) {
    const std::size_t i = static_cast<std::size_t>(number - 1);
    ViewportsState state{};
    state.activeViewport = i < lead.size() ? lead[i] : cycle[(i - lead.size()) % cycle.size()];
    if (finder.Repeats(state, number, earlier)) return number;
  }
  return 0;
}

// Views that differ only in their transforms are other states; a transform holding a NaN is
// the same state again, or a loop through it would never be found.
TEST(ViewportsState, TransformsCountBitForBit) {
  ViewportsState a{}, b{};
  EXPECT_TRUE(a == b);
  b.transforms[2].m[3][1] = 1.0f;
  EXPECT_FALSE(a == b);
  a.transforms[1].m[0][0] = b.transforms[1].m[0][0] = std::numeric_limits<float>::quiet_NaN();
  a.transforms[2] = b.transforms[2];
  EXPECT_TRUE(a == b);
}

TEST(RedrawLoopFinder, FindsEveryCycleWithinThriceItsStartAndLength) {
  int earlier = 0;
  EXPECT_EQ(FoundAt({}, {5}, earlier), 2);
  EXPECT_EQ(earlier, 1);
  EXPECT_EQ(FoundAt({}, {1, 2}, earlier), 4);
  EXPECT_EQ(earlier, 2);
  for (std::size_t lead = 0; lead < 20; ++lead)
    for (int length = 1; length < 20; ++length) {
      std::vector<int> before;
      std::vector<int> cycle;
      for (std::size_t i = 0; i < lead; ++i) before.push_back(100 + static_cast<int>(i));
      for (int i = 0; i < length; ++i) cycle.push_back(i);
      const int at = FoundAt(before, cycle, earlier);
      ASSERT_GT(at, 0) << lead << " " << length;
      EXPECT_LE(static_cast<std::size_t>(at), 3 * (lead + static_cast<std::size_t>(length) + 1));
      // The state found is the cycle's: the same distance apart as its length, or a multiple.
      EXPECT_EQ((at - earlier) % length, 0) << lead << " " << length;
      EXPECT_GT(static_cast<std::size_t>(earlier), lead);
    }
  std::vector<int> distinct;
  for (int i = 0; i < 1000; ++i) distinct.push_back(i);
  EXPECT_EQ(FoundAt(distinct, {0}, earlier), 0);
}

}  // namespace
}  // namespace tool
}  // namespace hublet
