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

std::vector<ReplayEvent> Events(const std::vector<std::string>& texts) {
  std::vector<ReplayEvent> events;
  for (const std::string& text : texts) {
    const std::vector<ReplayEvent> parsed = ParseReplayEvent(text);
    events.insert(events.end(), parsed.begin(), parsed.end());
  }
  return events;
}

class ReplayTest : public ::testing::Test {
 protected:
  std::string Replay(const std::string& ini, const std::vector<std::string>& events) {
    file_.reset(new testing::ScratchFile(ini));
    options.usePreferenceFile = true;
    options.preferenceFile = file_->path();
    return RunReplay(options, Events(events));
  }
  ReplayOptions options;

 private:
  std::unique_ptr<testing::ScratchFile> file_;
};

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

TEST_F(ReplayTest, InterfaceCallsReportStatusSwitchAndTheMissingArgument) {
  const std::string out = Replay("", {"call:12:5", "call:99:1", "call:18", "open"});
  EXPECT_THAT(out, HasSubstr("== call 12 5\n  -> status 1, emptyMtlOnOpen = 1\n"));
  EXPECT_THAT(out, HasSubstr("== call 99 1\n  -> status -1\n"));
  EXPECT_THAT(out, HasSubstr("== call 18 (no argument)\n  -> throws OutOfRangeException(\"Argument index out of "
                             "bounds, passed into a MaxSDK::Array::operator[]\")\n"));
  // The switch set through the interface is in force for the next open.
  EXPECT_THAT(out, HasSubstr("== post-open (notification 10)\n  ExecuteScript("));
}

TEST_F(ReplayTest, TheHostAnswersWhatTheOptionsSay) {
  options.userName = L"bob";
  options.hostName = L"WS12";
  options.date = LocalDate{9, 11, 2021};
  options.renderer = ReplayOptions::Renderer::Chosen;
  options.rendererId = host::rendererGammaTargets[0];
  options.time = 4800;
  options.properties.push_back({host::kPropertySubject, true, L"anna on RENDER07"});
  options.properties.push_back({host::kPropertyTitle, false, L""});
  options.viewportTypes.push_back({0, 9});
  options.toolbarScriptExists = true;
  const std::string out = Replay("[MYVIEW]\nUSE_GAMMA=1\nVRAYGAMMA=2.4\n", {"startup", "pre-save", "toolbar"});
  EXPECT_THAT(out, HasSubstr("# host: user \"bob\", machine \"WS12\", date 9-11-2021, time 4800\n"
                             "# renderer: (0x73BAB286, 0x77F8FD0C)\n"
                             "# viewports: 0=type 9 1=type 4 2=type 0 3=type 7, active 3\n"
                             "# summary properties: subject \"anna on RENDER07\", title (no value)\n"
                             "# toolbar script: present\n"));
  EXPECT_THAT(out, HasSubstr("SetRendererFloat(9, 265, 4800, 2.4, 0)"));
  EXPECT_THAT(out, HasSubstr("PropertyText(1, 1) -> none"));  // the title without a value
  EXPECT_THAT(out, HasSubstr("AddStringProperty(1, 3, \"bob on WS12\")\n"));
  EXPECT_THAT(out, HasSubstr("AddStringProperty(1, 4, \"anna on RENDER07\")\n"));
  EXPECT_THAT(out, HasSubstr("AddStringProperty(1, 2, \"9-11-2021\")\n"));
  EXPECT_THAT(out, HasSubstr("== toolbar\n  Directory(15) -> \"C:\\\\3dsMax2017\\\\scripts\"\n  FileExists("));
  EXPECT_THAT(out, HasSubstr("  LoadScriptFile(\"C:\\\\3dsMax2017\\\\scripts\\\\Orvo_Software\\\\Orvo_Toolbar_V1.3.ms\")"));
}

TEST_F(ReplayTest, WithoutARendererOrToolbarScriptTheHostSaysSo) {
  options.renderer = ReplayOptions::Renderer::None;
  const std::string out = Replay("[MYVIEW]\nUSE_GAMMA=1\n", {"startup", "toolbar"});
  EXPECT_THAT(out, HasSubstr("# renderer: none\n"));
  EXPECT_THAT(out, HasSubstr("CurrentRendererClass(true) -> (0x00000060, 0x00000000)"));  // created on request
  EXPECT_THAT(out, HasSubstr("-> false\n== unload"));
  EXPECT_THAT(out, Not(HasSubstr("LoadScriptFile")));
}

}  // namespace
}  // namespace tool
}  // namespace hublet
