// The preference file's location, its start-up keys and the gamma text conversion.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

TEST(PreferenceFilePath, JoinsTheConfigurationDirectoryWithOneBackslash) {
  Transcript transcript;
  SimHost host(transcript);
  const struct {
    const wchar_t* directory;
    const wchar_t* path;
  } cases[] = {
      {L"C:\\max\\plugcfg", L"C:\\max\\plugcfg\\Vantor.ini"},
      {L"C:\\max\\plugcfg\\", L"C:\\max\\plugcfg\\Vantor.ini"},
      {L"", L"Vantor.ini"},
  };
  for (const auto& c : cases) {
    host.SetDirectory(host::kDirPlugCfg, c.directory);
    EXPECT_EQ(PreferenceFilePath(host), c.path);
  }
  host.SetDirectory(host::kDirPlugCfg, std::wstring(300, L'x'));
  EXPECT_EQ(PreferenceFilePath(host).size(), 259u);
}

class LoadSettingsTest : public PluginTest {};

TEST_F(LoadSettingsTest, NoFileLeavesEveryDefault) {
  SimSession bare;  // no file mapped: the host path does not exist here
  bare.LoadAndStart();
  const HubletSettings& s = bare.hublet->state.settings;
  for (int value : {s.forcePersp, s.forceOrtho, s.emptyMtlOnOpen, s.emptyMtlOnSave, s.useViewLayout,
                    s.useDisplayModes, s.spareViewFlag, s.useGamma, s.useFrameRate})
    EXPECT_EQ(value, 0);
  for (int value : {s.shadedOnOpen, s.objColourOnOpen, s.boxOnSave, s.objColourOnSave}) EXPECT_EQ(value, 1);
}

TEST_F(LoadSettingsTest, EveryStartKeyIsReadFromItsOwnSection) {
  // Each key in its section gets a distinct value; the same keys in the wrong section
  // must not leak in.
  StartWith(
      "[FLINT]\nFORCEPERSP=11\nFORCEORTHO=12\nEMPTYMTLO=13\nEMPTYMTLS=14\nSHADEDOPEN=15\n"
      "OBJCOLOPEN=16\nBOXSAVE=17\nOBJCOLSAVE=18\nUSE_VPL=90\n"
      "[MYVIEW]\nUSE_VPL=21\nUSE_DR=22\nUSE_GAMMA=23\nUSE_FPS=24\nFORCEPERSP=91\n");
  const HubletSettings& s = plugin().state.settings;
  EXPECT_EQ(s.forcePersp, 11);
  EXPECT_EQ(s.forceOrtho, 12);
  EXPECT_EQ(s.emptyMtlOnOpen, 13);
  EXPECT_EQ(s.emptyMtlOnSave, 14);
  EXPECT_EQ(s.shadedOnOpen, 15);
  EXPECT_EQ(s.objColourOnOpen, 16);
  EXPECT_EQ(s.boxOnSave, 17);
  EXPECT_EQ(s.objColourOnSave, 18);
  EXPECT_EQ(s.useViewLayout, 21);
  EXPECT_EQ(s.useDisplayModes, 22);
  EXPECT_EQ(s.useGamma, 23);
  EXPECT_EQ(s.useFrameRate, 24);
  EXPECT_EQ(s.viewLayout, 0);  // pass keys wait for a pass
}

TEST_F(LoadSettingsTest, NegativeAndWrappedIntegersAreStoredAsSigned32Bit) {
  StartWith("[FLINT]\nFORCEPERSP=-1\nFORCEORTHO=4294967295\nEMPTYMTLO=2147483648\n");
  EXPECT_EQ(plugin().state.settings.forcePersp, -1);
  EXPECT_EQ(plugin().state.settings.forceOrtho, -1);
  EXPECT_EQ(plugin().state.settings.emptyMtlOnOpen, -2147483647 - 1);
}

TEST(ParseGamma, ReadsLikeTheCLibraryAndNeverOverflows) {
  const struct {
    const wchar_t* text;
    float value;
  } cases[] = {{L"2.2", 2.2f}, {L"+2.5", 2.5f}, {L".5", 0.5f},   {L"2.2abc", 2.2f}, {L"2,2", 2.0f},
               {L"abc", 0.0f}, {L"", 0.0f},     {L";2.0", 0.0f}, {L"1e1", 10.0f},  {L"1e-50", 0.0f}};
  for (const auto& c : cases) EXPECT_EQ(ParseGamma(c.text), c.value);
  EXPECT_TRUE(std::isinf(ParseGamma(L"1e40")));
  EXPECT_TRUE(std::isinf(ParseGamma(L"-1e300")));
  EXPECT_TRUE(std::isnan(ParseGamma(L"nan")));
}

}  // namespace
}  // namespace testing
}  // namespace hublet
