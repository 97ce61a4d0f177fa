// The plug-in's life and its scene-event hooks, driven through the simulated host.
#include <gmock/gmock.h>

#include "frame/hook_table.h"
#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char kClearScript[] = "ExecuteScript(\"macros.run \\\"Medit Tools\\\" \\\"clear_medit_slots\\\"\", false) -> true";

TEST(PluginLife, LoadRegistersEverythingAndUnloadUnregistersTheHooksOnly) {
  SimSession session;
  session.Load();
  const std::vector<std::string>& lines = session.transcript.lines();
  ASSERT_EQ(lines.size(), 2u + kHookCount);
  EXPECT_THAT(std::vector<std::string>(lines.begin(), lines.begin() + 3),
              ElementsAre("InitializeCom()", "RegisterDisplayCallback(true)", "RegisterNotification(pre, 5)"));
  EXPECT_EQ(session.hublet->state.sceneBusy, 1);
  EXPECT_EQ(session.host.RegistrationCount(), kHookCount);
  for (std::size_t i = 0; i < kHookCount; ++i)
    EXPECT_TRUE(session.host.HasRegistration(kHooks[i].group, kHooks[i].code)) << kHooks[i].code;

  // Never started: the sockets library was not started, so it is not released either.
  session.transcript.Clear();
  session.Unload();
  EXPECT_EQ(session.transcript.lines().size(), kHookCount);
  EXPECT_EQ(session.host.RegistrationCount(), 0u);
  EXPECT_EQ(session.system.socketUses, 0);

  // The callback stays with the host, but a redraw after the unload reaches nothing (a
  // call into the destroyed object would be caught by the sanitizers).
  session.transcript.Clear();
  session.host.Redraw(3);
  session.host.Redraw(-1);
  EXPECT_TRUE(session.transcript.lines().empty());
}

TEST(PluginLife, StartCapturesTheTimeOnceAndLoadsTheSettings) {
  SimSession session;
  ScratchFile ini("[FLINT]\nFORCEPERSP=1\n[MYVIEW]\nUSE_FPS=7\n");
  session.UsePreferenceFile(ini.path());
  session.host.SetTime(4800);
  session.Load();
  session.transcript.Clear();
  EXPECT_EQ(session.hublet->Start(), 0u);
  EXPECT_THAT(session.transcript.lines(),
              ElementsAre("StartSockets()", "CurrentTime() -> 4800", "Directory(9) -> \"C:\\\\3dsMax2017\\\\plugcfg\"",
                          "OpenProfile(\"C:\\\\3dsMax2017\\\\plugcfg\\\\Vantor.ini\")"));
  EXPECT_EQ(session.hublet->state.sceneTime, 4800);
  EXPECT_EQ(session.hublet->state.settings.forcePersp, 1);
  EXPECT_EQ(session.hublet->state.settings.useFrameRate, 7);
  session.host.SetTime(9600);
  session.host.Raise(host::kNotifySystemPostNew);
  EXPECT_EQ(session.hublet->state.sceneTime, 4800);
  // Started once, released once: the process's use of the sockets library is balanced.
  session.Unload();
  EXPECT_EQ(session.system.socketUses, 0);
  const std::vector<std::string>& unloaded = session.transcript.lines();
  ASSERT_GT(unloaded.size(), kHookCount);
  EXPECT_EQ(unloaded[unloaded.size() - kHookCount - 1], "ReleaseSockets()");
}

class HookTest : public PluginTest {};

TEST_F(HookTest, EveryPreEventClearsBusyAndEveryPostEventSetsIt) {
  StartWith("");
  const int pairs[][2] = {{5, 6}, {7, 8}, {9, 10}, {11, 12}, {13, 14}, {20, 21}, {24, 25}, {27, 28}};
  for (const auto& pair : pairs) {
    session.host.Raise(pair[0]);
    EXPECT_EQ(plugin().state.sceneBusy, 0) << pair[0];
    session.host.Raise(pair[1]);
    EXPECT_EQ(plugin().state.sceneBusy, 1) << pair[1];
  }
}

TEST_F(HookTest, StartUpRunsThePassLeavingBusyNewAndResetSetItFirst) {
  StartWith("[MYVIEW]\nUSE_FPS=1\nFPS=25\n");
  for (int code : {host::kNotifySystemStartup, host::kNotifySystemPostNew, host::kNotifySystemPostReset}) {
    session.host.Raise(host::kNotifySystemPreNew);
    EXPECT_EQ(LastLine(Raise(code)), "SetFrameRate(25)") << code;
    EXPECT_EQ(plugin().state.sceneBusy, code == host::kNotifySystemStartup ? 0 : 1) << code;
  }
}

TEST_F(HookTest, OtherSceneOperationsOnlyMoveBusy) {
  StartWith("[FLINT]\nEMPTYMTLO=1\n[MYVIEW]\nUSE_VPL=1\nUSE_GAMMA=1\nUSE_FPS=1\n");
  for (int code : {5, 7, 9, 11, 12, 14, 20, 21, 24, 25, 27, 28}) EXPECT_THAT(Raise(code), IsEmpty()) << code;
  EXPECT_THAT(Raise(99), IsEmpty());  // not a hooked code
}

TEST_F(HookTest, PostOpenClearsTheMaterialEditorOnlyForExactlyOne) {
  StartWith("[FLINT]\nEMPTYMTLO=1\n");
  EXPECT_THAT(Raise(host::kNotifyFilePostOpen), ElementsAre(kClearScript));

  StartWith("[FLINT]\nEMPTYMTLO=2\n");
  EXPECT_THAT(Raise(host::kNotifyFilePostOpen), IsEmpty());
  EXPECT_EQ(plugin().state.settings.emptyMtlOnOpen, 2);
}

TEST_F(HookTest, PreSaveClearsBusyThenStamps) {
  StartWith("");
  const std::vector<std::string> lines = Raise(host::kNotifyFilePreSave);
  EXPECT_EQ(plugin().state.sceneBusy, 0);
  EXPECT_EQ(FirstLine(lines), "Today() -> 3-7-2020");
  EXPECT_EQ(host().Property(1, 3).value, L"anna on RENDER07");
}

}  // namespace
}  // namespace testing
}  // namespace hublet
