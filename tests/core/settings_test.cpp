// The preference file's location, its start-up keys and the gamma text conversion.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/expected_tables.h"
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
  for (const ExpectedSwitch& s : kExpectedSwitches)
    EXPECT_EQ(bare.hublet->state.settings.*s.field, s.defaultValue) << s.functionId;
}

TEST_F(LoadSettingsTest, EveryStartKeyIsReadFromItsOwnSection) {
  // Each key in its section gets a distinct value; the same key in the other section,
  // another value that must not leak in.
  std::string own[2], other[2];  // FLINT, MYVIEW
  for (const ExpectedSwitch& s : kExpectedSwitches) {
    if (s.key == nullptr) continue;
    const bool flint = std::string(s.section) == "FLINT";
    own[flint ? 0 : 1] += s.key + ("=" + std::to_string(s.functionId)) + "\n";
    other[flint ? 1 : 0] += s.key + std::string("=99\n");
  }
  StartWith("[FLINT]\n" + own[0] + other[0] + "[MYVIEW]\n" + other[1] + own[1]);
  for (const ExpectedSwitch& s : kExpectedSwitches)
    EXPECT_EQ(plugin().state.settings.*s.field, s.key != nullptr ? s.functionId : 0) << s.functionId;
  EXPECT_EQ(plugin().state.settings.viewLayout, 0);  // pass keys wait for a pass
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
