// The plug-in's life and its scene-event hooks, driven through the simulated host.
#include <gmock/gmock.h>

#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char kClearScript[] = "ExecuteScript(\"macros.run \\\"Medit Tools\\\" \\\"clear_medit_slots\\\"\", false) -> true";

TEST(PluginLife, LoadRegistersEverythingAndUnloadUnregistersTheHooksOnly) {
  // The calls in their order are pinned by the replay's golden transcript; what each hook
  // does, by the random sessions and the tests below.
  SimSession session;
  session.Load();
  EXPECT_EQ(session.host.RegistrationCount(), 17u);
  EXPECT_EQ(session.hublet->state.sceneBusy, 1);
  // Never started: the sockets library was not started, so it is not released either.
  session.transcript.Clear();
  session.Unload();
  EXPECT_THAT(LinesStartingWith(session.transcript.lines(), "ReleaseSockets"), IsEmpty());
  EXPECT_EQ(session.host.RegistrationCount(), 0u);

  // The callback stays with the host, but a redraw after the unload reaches nothing (a
  // call into the destroyed object would be caught by the sanitizers).
  session.transcript.Clear();
  session.host.Redraw(3);
  session.host.Redraw(-1);
  EXPECT_THAT(session.transcript.lines(), IsEmpty());
}

TEST(PluginLife, StartCapturesTheTimeOnceAndLoadsTheSettings) {
  SimSession session;
  ScratchFile ini("[FLINT]\nFORCEPERSP=1\n[MYVIEW]\nUSE_FPS=7\n");
  session.UsePreferenceFile(ini.path());
  session.host.SetTime(4800);
  session.Load();
  EXPECT_EQ(session.hublet->Start(), 0u);
  EXPECT_EQ(session.hublet->state.sceneTime, 4800);
  EXPECT_EQ(session.hublet->state.settings.forcePersp, 1);
  EXPECT_EQ(session.hublet->state.settings.useFrameRate, 7);
  session.host.SetTime(9600);
  session.host.Raise(host::kNotifySystemPostNew);
  EXPECT_EQ(session.hublet->state.sceneTime, 4800);
  // Started once, released once: the process's use of the sockets library is balanced.
  session.Unload();
  EXPECT_EQ(session.system.socketUses, 0);
}

class HookTest : public PluginTest {};

TEST_F(HookTest, StartUpRunsThePassLeavingBusyNewAndResetSetItFirst) {
  StartWith("[MYVIEW]\nUSE_FPS=1\nFPS=25\n");
  for (int code : {host::kNotifySystemStartup, host::kNotifySystemPostNew, host::kNotifySystemPostReset}) {
    session.host.Raise(host::kNotifySystemPreNew);
    EXPECT_THAT(LinesStartingWith(Raise(code), "SetFrameRate"), ElementsAre("SetFrameRate(25)")) << code;
    EXPECT_EQ(plugin().state.sceneBusy, code == host::kNotifySystemStartup ? 0 : 1) << code;
  }
}

TEST_F(HookTest, PostOpenClearsTheMaterialEditorOnlyForExactlyOne) {
  StartWith("[FLINT]\nEMPTYMTLO=1\n");
  EXPECT_THAT(Raise(host::kNotifyFilePostOpen), ElementsAre(kClearScript));

  StartWith("[FLINT]\nEMPTYMTLO=2\n");
  EXPECT_THAT(Raise(host::kNotifyFilePostOpen), IsEmpty());
  EXPECT_EQ(plugin().state.settings.emptyMtlOnOpen, 2);
}

}  // namespace
}  // namespace testing
}  // namespace hublet
