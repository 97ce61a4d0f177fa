// The preference pass at start-up, new and reset: transcripts of what it asks the host.
#include <gmock/gmock.h>

#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The four switches on with one value; any but 0 must do.
std::string SwitchesOn(const std::string& value = "1") {
  return "[MYVIEW]\nUSE_VPL=" + value + "\nUSE_DR=" + value + "\nUSE_GAMMA=" + value + "\nUSE_FPS=" + value + "\n";
}
const std::string kSwitchesOn = SwitchesOn();
const char kFullValues[] =
    "VPLAYOUT=116\nVPEXPERT=1\nVPCMDPANEL=0\nNUMVP=2\n"
    "VP0TYPE=2\nVP0STYLE=3\nVP0EDGES=1\nVP1TYPE=7\nVP1STYLE=1\nVP1EDGES=0\n"
    "GAMMA=1.8\nGAMMAIN=2.0\nGAMMAOUT=2.4\nVRAYGAMMA=2.6\nFPS=25\n";
const char kHome[] = "[0.707107 0.353553 -0.612372 | -0.707107 0.353553 -0.612372 | 0 0.866025 0.5 | 0 0 -250]";
// The two V-Ray renderers, whose gamma the pass sets.
const ClassId kGammaRenderers[] = {{0x73BAB286u, 0x77F8FD0Cu}, {0x698A4B98u, 0x4EDD05F5u}};

class ViewPreferencesTest : public PluginTest {
 protected:
  std::vector<std::string> Pass() { return Raise(host::kNotifySystemPostNew); }
};

TEST_F(ViewPreferencesTest, AFullPassSetsLayoutViewsGammasAndFrameRateInOrder) {
  host().SetRenderer(kGammaRenderers[0]);
  for (const char* on : {"2", "-1"}) {
    host().SetTime(1234);
    StartWith(SwitchesOn(on) + kFullValues);
    host().SetTime(9999);  // the renderer gamma uses the time captured at start
    EXPECT_THAT(Pass(), ElementsAre("Directory(9) -> \"C:\\\\3dsMax2017\\\\plugcfg\"",
                                    "OpenProfile(\"C:\\\\3dsMax2017\\\\plugcfg\\\\Vantor.ini\")",
                                    "SetViewportLayout(116)", "SetExpertMode(1)", "SetCommandPanelOpen(0)",
                                    // viewport 0: top view, shading from the file, no home matrix
                                    "SetActiveViewport(0)", "ExecuteCommand(138)", "ActiveView() -> view[0]",
                                    "view[0].HasShadingExtension() -> true", "view[0].SetShadingStyle(3)",
                                    "SetActiveViewportEdgedFaces(1)", "view[0].IsPerspective() -> false",
                                    // viewport 1: perspective, gets the home matrix
                                    "SetActiveViewport(1)", "ExecuteCommand(127)", "ActiveView() -> view[1]",
                                    "view[1].HasShadingExtension() -> true", "view[1].SetShadingStyle(1)",
                                    "SetActiveViewportEdgedFaces(0)", "view[1].IsPerspective() -> true",
                                    std::string("view[1].SetAffineTransform(") + kHome + ")",
                                    "SetDisplayGamma(1.8)", "SetFileInGamma(2)", "SetFileOutGamma(2.4)",
                                    "CurrentRendererClass(true) -> (0x73BAB286, 0x77F8FD0C)",
                                    "SetRendererFloat(9, 265, 1234, 2.6, 0)", "SetFrameRate(25)"))
        << "switches at " << on;
  }
  EXPECT_EQ(plugin().state.settings.viewCount, 2);
}

TEST_F(ViewPreferencesTest, ViewportCountBelowOneTouchesNoViewportAboveFourSetsUpFour) {
  for (const char* count : {"0", "-3"}) {
    StartWith(kSwitchesOn + "NUMVP=" + count + "\n");
    const std::vector<std::string> lines = Pass();
    EXPECT_EQ(LinesStartingWith(lines, "SetCommandPanelOpen").size(), 1u);
    EXPECT_THAT(LinesStartingWith(lines, "SetActiveViewport("), IsEmpty()) << count;
  }
  StartWith(kSwitchesOn + "NUMVP=9\n");
  EXPECT_THAT(LinesStartingWith(Pass(), "SetActiveViewport("),
              ElementsAre("SetActiveViewport(0)", "SetActiveViewport(1)", "SetActiveViewport(2)",
                          "SetActiveViewport(3)"));
  EXPECT_EQ(plugin().state.settings.viewCount, 9);
}

TEST_F(ViewPreferencesTest, ATypeOutsideTheTableKeepsTheViewAndTheRestOfItsSetup) {
  for (const char* type : {"10", "-1", "2147483647"}) {
    StartWith(kSwitchesOn + "NUMVP=1\nVP0TYPE=" + type + "\nVP0STYLE=4\n");
    host().viewport(0).type = host::kViewPerspUser;
    const std::vector<std::string> lines = Pass();
    EXPECT_THAT(LinesStartingWith(lines, "ExecuteCommand"), IsEmpty()) << type;
    EXPECT_EQ(LinesStartingWith(lines, "view[0].SetShadingStyle(4)").size(), 1u) << type;
    EXPECT_EQ(LinesStartingWith(lines, "view[0].SetAffineTransform").size(), 1u) << type;
  }
}

TEST_F(ViewPreferencesTest, WithoutDisplayModesPerspectiveGetsStyle0OthersStyle5AndNoEdges) {
  StartWith("[MYVIEW]\nUSE_VPL=1\nNUMVP=2\nVP0TYPE=2\nVP0STYLE=9\nVP0EDGES=1\nVP1TYPE=7\nVP1STYLE=9\n");
  const std::vector<std::string> lines = Pass();
  EXPECT_THAT(LinesStartingWith(lines, "view[0].SetShadingStyle"), ElementsAre("view[0].SetShadingStyle(5)"));
  EXPECT_THAT(LinesStartingWith(lines, "view[1].SetShadingStyle"), ElementsAre("view[1].SetShadingStyle(0)"));
  EXPECT_THAT(LinesStartingWith(lines, "SetActiveViewportEdgedFaces"),
              ElementsAre("SetActiveViewportEdgedFaces(0)", "SetActiveViewportEdgedFaces(0)"));
}

TEST_F(ViewPreferencesTest, AViewWithoutShadingExtensionStillGetsEdgesAndTheHomeMatrix) {
  StartWith(kSwitchesOn + "NUMVP=1\nVP0TYPE=7\nVP0STYLE=3\nVP0EDGES=1\n");
  host().viewport(0).hasShadingExtension = false;
  const std::vector<std::string> lines = Pass();
  EXPECT_THAT(LinesStartingWith(lines, "view[0].SetShadingStyle"), IsEmpty());
  EXPECT_EQ(LinesStartingWith(lines, "SetActiveViewportEdgedFaces(1)").size(), 1u);
  EXPECT_THAT(LinesStartingWith(lines, "view[0].SetAffineTransform"),
              ElementsAre(std::string("view[0].SetAffineTransform(") + kHome + ")"));
}

TEST_F(ViewPreferencesTest, RendererGammaGoesToBothTargetsOnlyAtTheirParameter) {
  for (const ClassId renderer : kGammaRenderers) {
    host().SetRenderer(renderer);
    StartWith("[MYVIEW]\nUSE_GAMMA=1\nVRAYGAMMA=1.5\n");
    EXPECT_EQ(LinesStartingWith(Pass(), "SetRendererFloat(9, 265, 0, 1.5, 0)").size(), 1u);
  }
  host().SetRenderer(ClassId{0x60, 0});
  StartWith("[MYVIEW]\nUSE_GAMMA=1\nGAMMA=1.5\nVRAYGAMMA=1.5\n");
  const std::vector<std::string> lines = Pass();
  EXPECT_THAT(LinesStartingWith(lines, "SetRendererFloat"), IsEmpty());
  EXPECT_THAT(LinesStartingWith(lines, "SetDisplayGamma"), ElementsAre("SetDisplayGamma(1.5)"));
}

TEST_F(ViewPreferencesTest, UnparsableGammaAppliesZeroAndMissingGammaAppliesTheDefault) {
  StartWith("[MYVIEW]\nUSE_GAMMA=1\nGAMMA=abc\n");
  const std::vector<std::string> lines = Pass();
  EXPECT_THAT(LinesStartingWith(lines, "SetDisplayGamma"), ElementsAre("SetDisplayGamma(0)"));
  EXPECT_THAT(LinesStartingWith(lines, "SetFileInGamma"), ElementsAre("SetFileInGamma(2.2)"));
}

// Which stages run for which switches is checked across random sessions.
TEST_F(ViewPreferencesTest, AMissingFrameRatePassesZeroOnAndNoSwitchOpensNoFile) {
  StartWith("[MYVIEW]\nUSE_FPS=1\n");
  EXPECT_THAT(LinesStartingWith(Pass(), "SetFrameRate"), ElementsAre("SetFrameRate(0)"));
  StartWith("[MYVIEW]\nFPS=30\n");
  EXPECT_THAT(Pass(), ElementsAre("Directory(9) -> \"C:\\\\3dsMax2017\\\\plugcfg\""));
}

TEST_F(ViewPreferencesTest, PassKeysAreReadAfreshOnEveryPassSwitchesOnlyAtStart) {
  StartWith(kSwitchesOn + "VPLAYOUT=116\n");
  EXPECT_EQ(LinesStartingWith(Pass(), "SetViewportLayout"), std::vector<std::string>{"SetViewportLayout(116)"});
  RewriteIni("[MYVIEW]\nUSE_VPL=0\nVPLAYOUT=33\n");
  EXPECT_EQ(LinesStartingWith(Pass(), "SetViewportLayout"), std::vector<std::string>{"SetViewportLayout(33)"});
  EXPECT_EQ(plugin().state.settings.viewLayout, 33);
}

}  // namespace
}  // namespace testing
}  // namespace hublet
