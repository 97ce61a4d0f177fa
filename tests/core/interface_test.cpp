// The preference interface for companion tools, and the toolbar installer.
#include <gmock/gmock.h>

#include <cstring>

#include "host/sim/sim_arguments.h"
#include "toolbar/toolbar.h"
#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InterfaceTest : public PluginTest {
 protected:
  int Call(int id, std::vector<int> arguments) {
    return plugin().CallInterface(id, SimArguments(std::move(arguments)));
  }
};

TEST_F(InterfaceTest, EachFunctionSetsItsOwnSwitchToZeroOrOne) {
  const struct {
    int id;
    int HubletSettings::*field;
  } functions[] = {{10, &HubletSettings::forcePersp},      {11, &HubletSettings::forceOrtho},
                   {12, &HubletSettings::emptyMtlOnOpen},  {13, &HubletSettings::emptyMtlOnSave},
                   {14, &HubletSettings::shadedOnOpen},    {15, &HubletSettings::objColourOnOpen},
                   {16, &HubletSettings::boxOnSave},       {17, &HubletSettings::objColourOnSave},
                   {18, &HubletSettings::useViewLayout},   {19, &HubletSettings::useDisplayModes},
                   {20, &HubletSettings::spareViewFlag},   {21, &HubletSettings::useGamma},
                   {22, &HubletSettings::useFrameRate}};
  StartWith("[FLINT]\nFORCEPERSP=7\n");
  for (const auto& f : functions) {
    for (const int argument : {0, 1, 5, -1}) {
      HubletSettings expected = plugin().state.settings;
      expected.*f.field = argument != 0 ? 1 : 0;
      session.transcript.Clear();
      EXPECT_EQ(Call(f.id, {argument}), host::kFunctionStatusOk);
      EXPECT_EQ(std::memcmp(&expected, &plugin().state.settings, sizeof expected), 0) << f.id << " " << argument;
      EXPECT_THAT(session.transcript.lines(), IsEmpty());
    }
  }
}

TEST_F(InterfaceTest, UnknownFunctionsAndMissingArgumentsChangeNothing) {
  StartWith("");
  const HubletSettings before = plugin().state.settings;
  for (const int id : {9, 23, 0, -1, 32767}) EXPECT_EQ(Call(id, {1}), host::kFunctionStatusNoSuchFunction) << id;
  EXPECT_EQ(Call(9, {}), host::kFunctionStatusNoSuchFunction);
  try {
    Call(10, {});
    FAIL() << "no error for an empty argument list";
  } catch (const OutOfRangeError& error) {
    EXPECT_EQ(error.Message(), L"Argument index out of bounds, passed into a MaxSDK::Array::operator[]");
  }
  EXPECT_EQ(std::memcmp(&before, &plugin().state.settings, sizeof before), 0);
}

TEST_F(InterfaceTest, SwitchesSetAtRunTimeDriveTheNextHookAndDieAtTheNextStart) {
  StartWith("[MYVIEW]\nUSE_VPL=1\nUSE_GAMMA=1\nUSE_FPS=1\n");
  Call(12, {5});
  EXPECT_EQ(Raise(host::kNotifyFilePostOpen).size(), 1u);  // the clearing script
  Call(18, {0});
  const std::vector<std::string> pass = Raise(host::kNotifySystemPostNew);
  EXPECT_THAT(LinesStartingWith(pass, "SetViewportLayout"), IsEmpty());
  EXPECT_EQ(LinesStartingWith(pass, "SetDisplayGamma").size(), 1u);
  EXPECT_EQ(LinesStartingWith(pass, "SetFrameRate").size(), 1u);
  session.LoadAndStart();
  EXPECT_EQ(plugin().state.settings.useViewLayout, 1);
  EXPECT_EQ(plugin().state.settings.emptyMtlOnOpen, 0);
}

class ToolbarTest : public ::testing::Test {
 protected:
  std::vector<std::string> Reinstall() {
    transcript.Clear();
    ReinstallToolbar(host);
    return transcript.lines();
  }
  Transcript transcript;
  SimHost host{transcript};
};

TEST_F(ToolbarTest, ThePathGetsOneBackslashAndTheScriptRunsEachTimeItExists) {
  const struct {
    const wchar_t* directory;
    const wchar_t* path;
  } cases[] = {{L"C:\\max\\scripts", L"C:\\max\\scripts\\Orvo_Software\\Orvo_Toolbar_V1.3.ms"},
               {L"C:\\max\\scripts\\", L"C:\\max\\scripts\\Orvo_Software\\Orvo_Toolbar_V1.3.ms"},
               {L"", L"Orvo_Software\\Orvo_Toolbar_V1.3.ms"}};
  for (const auto& c : cases) {
    host.SetDirectory(host::kDirScripts, c.directory);
    EXPECT_EQ(ToolbarScriptPath(host), c.path);
    host.AddFile(c.path);
    Reinstall();
    Reinstall();
  }
  EXPECT_EQ(host.scriptFilesLoaded.size(), 6u);
  EXPECT_EQ(host.scriptFilesLoaded[5], L"Orvo_Software\\Orvo_Toolbar_V1.3.ms");
}

TEST_F(ToolbarTest, AMissingScriptLoadsNothing) {
  EXPECT_THAT(Reinstall(), ElementsAre("Directory(15) -> \"C:\\\\3dsMax2017\\\\scripts\"",
                                       "FileExists(\"C:\\\\3dsMax2017\\\\scripts\\\\Orvo_Software\\\\Orvo_"
                                       "Toolbar_V1.3.ms\", true) -> false"));
  EXPECT_TRUE(host.scriptFilesLoaded.empty());
}

}  // namespace
}  // namespace testing
}  // namespace hublet
