// Save stamping: who saved the scene, who saved it before and when.
#include <gmock/gmock.h>

#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Summary properties 4 (author), 3 (subject) and 2 (title), in that order below.
constexpr int kSet = 1;
constexpr int kIds[] = {4, 3, 2};
const wchar_t* const kNoValue = L"(no value)";  // present, but holds no value
const wchar_t* const kSaver = L"anna on RENDER07";

std::wstring Shown(const SimHost& host, int id) {
  const Lookup<std::wstring> property = host.Property(kSet, id);
  return property.found ? property.value : kNoValue;
}

TEST(SaveStamp, TheExistingPropertiesDecideWhatASaveWrites) {
  const struct {
    const wchar_t* before[3];  // author, subject, title; null: absent
    const wchar_t* after[3];
  } cases[] = {
      {{nullptr, nullptr, nullptr}, {kSaver, kSaver, L"3-7-2020"}},  // never stamped
      {{L"x", kSaver, L"1-1-2019"}, {L"x", kSaver, L"1-1-2019"}},    // the same saver: nothing written
      // The comparison is exact: a saver that differs in case is another saver.
      {{L"x", L"Anna on RENDER07", L"1-1-2019"}, {L"Anna on RENDER07", kSaver, L"3-7-2020"}},
      {{L"someone", nullptr, nullptr}, {kSaver, kSaver, L"3-7-2020"}},  // an author typed by hand
      {{nullptr, L"carl on X", nullptr}, {L"carl on X", kSaver, L"3-7-2020"}},
      {{nullptr, nullptr, L"1-1-2019"}, {L"", kSaver, L"3-7-2020"}},  // the old subject counts as empty
      // A property without a value leaves the author's answer standing.
      {{L"dora on Y", kNoValue, nullptr}, {L"", kSaver, L"3-7-2020"}},
      {{kNoValue, kNoValue, nullptr}, {kSaver, kSaver, L"3-7-2020"}},
      {{nullptr, nullptr, kNoValue}, {kSaver, kSaver, L"3-7-2020"}},  // a title without a value is no stamp
  };
  for (const auto& c : cases) {
    SimSession session;
    for (int i = 0; i < 3; ++i) {
      if (c.before[i] == kNoValue) session.host.SetPropertyWithoutValue(kSet, kIds[i]);
      else if (c.before[i] != nullptr) session.host.SetProperty(kSet, kIds[i], c.before[i]);
    }
    session.LoadAndStart();
    session.host.Raise(host::kNotifyFilePreSave);
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(Shown(session.host, kIds[i]), c.after[i]) << "case " << (&c - cases) << ", property " << kIds[i];
  }
}

class SaveStampTest : public PluginTest {
 protected:
  void SetUp() override { StartWith(""); }
  std::vector<std::string> Save() { return Raise(host::kNotifyFilePreSave); }
};

TEST_F(SaveStampTest, ReadsAuthorSubjectTitleThenWritesSubjectAuthorTitle) {
  EXPECT_THAT(Save(), ElementsAre("Today() -> 3-7-2020", "UserName() -> \"anna\"", "HostName() -> \"RENDER07\"",
                                  "FindProperty(1, 4) -> none", "FindProperty(1, 3) -> none",
                                  "FindProperty(1, 2) -> none", "DeleteProperty(1, 3)", "FindProperty(1, 3) -> none",
                                  "AddStringProperty(1, 3, \"anna on RENDER07\")", "DeleteProperty(1, 4)",
                                  "FindProperty(1, 4) -> none", "AddStringProperty(1, 4, \"anna on RENDER07\")",
                                  "DeleteProperty(1, 2)", "FindProperty(1, 2) -> none",
                                  "AddStringProperty(1, 2, \"3-7-2020\")"));
  EXPECT_EQ(plugin().state.saveDay, 3);
  EXPECT_EQ(plugin().state.saveMonth, 7);
  EXPECT_EQ(plugin().state.saveYear, 2020);
}

TEST_F(SaveStampTest, TheSameSaverAgainKeepsTheFirstDateASecondMovesTheFirstIntoAuthor) {
  Save();
  session.system.today = LocalDate{4, 7, 2020};
  EXPECT_THAT(LinesStartingWith(Save(), "AddStringProperty"), IsEmpty());
  EXPECT_EQ(Shown(host(), 2), L"3-7-2020");
  EXPECT_EQ(plugin().state.saveDay, 4);  // the object keeps the date of the last save all the same

  session.system.userName = L"ben";
  session.system.hostName = L"WS12";
  session.system.today = LocalDate{31, 12, 2021};
  EXPECT_THAT(LinesStartingWith(Save(), "AddStringProperty"),
              ElementsAre("AddStringProperty(1, 3, \"ben on WS12\")", "AddStringProperty(1, 4, \"anna on RENDER07\")",
                          "AddStringProperty(1, 2, \"31-12-2021\")"));
}

}  // namespace
}  // namespace testing
}  // namespace hublet
