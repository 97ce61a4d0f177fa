// The preference interface for companion tools, and the toolbar installer.
#include <gmock/gmock.h>

#include <cstring>

#include "host/sim/sim_arguments.h"
#include "tests/support/expected_tables.h"
#include "tests/support/plugin_fixture.h"
#include "toolbar/toolbar.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InterfaceTest : public PluginTest {
 protected:
  // The host's status: 1 done (FPS_OK), -1 no such function.
  int Call(int id, std::vector<int> arguments) {
    return plugin().CallInterface(id, SimArguments(std::move(arguments)));
  }
};

TEST_F(InterfaceTest, EachFunctionSetsItsOwnSwitchToZeroOrOne) {
  StartWith("[FLINT]\nFORCEPERSP=7\n");
  for (const ExpectedSwitch& f : kExpectedSwitches) {
    for (const int argument : {0, 1, 5, -1}) {
      HubletSettings expected = plugin().state.settings;
      expected.*f.field = argument != 0 ? 1 : 0;
      session.transcript.Clear();
      EXPECT_EQ(Call(f.functionId, {argument}), 1);
      EXPECT_EQ(std::memcmp(&expected, &plugin().state.settings, sizeof expected), 0) << f.functionId << " " << argument;
      EXPECT_THAT(session.transcript.lines(), IsEmpty());
    }
  }
}

TEST_F(InterfaceTest, UnknownFunctionsAndMissingArgumentsChangeNothing) {
  StartWith("");
  const HubletSettings before = plugin().state.settings;
  for (const int id : {9, 23, 0, -1, 32767}) EXPECT_EQ(Call(id, {1}), -1) << id;
  EXPECT_EQ(Call(9, {}), -1);
  try {
    Call(10, {});
    FAIL() << "no error for an empty argument list";
  } catch (const OutOfRangeError& error) {
    EXPECT_EQ(error.Message(), L"Argument index out of bounds, passed into a MaxSDK::Array::operator[]");
  }
  EXPECT_EQ(std::memcmp(&before, &plugin().state.settings, sizeof before), 0);
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

TEST_F(ToolbarTest, TheScriptRunsEachTimeItExistsAndNeverWhenItIsMissing) {
  const char kPath[] = "\"C:\\\\3dsMax2017\\\\scripts\\\\Orvo_Software\\\\Orvo_Toolbar_V1.3.ms\"";
  EXPECT_THAT(Reinstall(), ElementsAre("Directory(15) -> \"C:\\\\3dsMax2017\\\\scripts\"",
                                       "FileExists(" + std::string(kPath) + ", true) -> false"));
  host.AddFile(L"C:\\3dsMax2017\\scripts\\Orvo_Software\\Orvo_Toolbar_V1.3.ms");
  Reinstall();
  EXPECT_THAT(Reinstall(), ElementsAre("Directory(15) -> \"C:\\\\3dsMax2017\\\\scripts\"",
                                       "FileExists(" + std::string(kPath) + ", true) -> true",
                                       "LoadScriptFile(" + std::string(kPath) + ") -> true"));
  EXPECT_EQ(host.scriptFilesLoaded.size(), 2u);
}

}  // namespace
}  // namespace testing
}  // namespace hublet
