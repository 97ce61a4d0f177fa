// Save stamping: who saved the scene, who saved it before and when.
#include <gmock/gmock.h>

#include "tests/support/plugin_fixture.h"

namespace hublet {
namespace testing {
namespace {

using ::testing::ElementsAre;

constexpr int kSet = host::kPropertySetSummary;
constexpr int kTitle = host::kPropertyTitle;
constexpr int kSubject = host::kPropertySubject;
constexpr int kAuthor = host::kPropertyAuthor;

class SaveStampTest : public PluginTest {
 protected:
  void SetUp() override { StartWith(""); }
  std::vector<std::string> Save() { return Raise(host::kNotifyFilePreSave); }
  std::wstring Text(int id) const { return session.host.Property(kSet, id).value; }
  std::vector<std::string> Writes(const std::vector<std::string>& lines) {
    return LinesStartingWith(lines, "AddStringProperty");
  }
};

TEST_F(SaveStampTest, ANeverStampedSceneGetsTheSaverTwiceAndTheDateInNineCalls) {
  const std::vector<std::string> lines = Save();
  const std::vector<std::string> writes(lines.end() - 9, lines.end());
  EXPECT_THAT(writes, ElementsAre("DeleteProperty(1, 3)", "FindProperty(1, 3) -> none",
                                  "AddStringProperty(1, 3, \"anna on RENDER07\")", "DeleteProperty(1, 4)",
                                  "FindProperty(1, 4) -> none", "AddStringProperty(1, 4, \"anna on RENDER07\")",
                                  "DeleteProperty(1, 2)", "FindProperty(1, 2) -> none",
                                  "AddStringProperty(1, 2, \"3-7-2020\")"));
  EXPECT_EQ(plugin().state.saveDay, 3);
  EXPECT_EQ(plugin().state.saveMonth, 7);
  EXPECT_EQ(plugin().state.saveYear, 2020);
  // The existing values are read author, subject, title: the order the found flag follows.
  const std::vector<std::string> lookups = LinesStartingWith(lines, "FindProperty");
  ASSERT_GE(lookups.size(), 3u);
  EXPECT_THAT(std::vector<std::string>(lookups.begin(), lookups.begin() + 3),
              ElementsAre("FindProperty(1, 4) -> none", "FindProperty(1, 3) -> none", "FindProperty(1, 2) -> none"));
}

TEST_F(SaveStampTest, TheSameSaverAgainWritesNothingAndKeepsTheFirstDate) {
  Save();
  session.system.today = LocalDate{4, 7, 2020};
  EXPECT_THAT(Writes(Save()), ::testing::IsEmpty());
  EXPECT_EQ(Text(kTitle), L"3-7-2020");
  EXPECT_EQ(plugin().state.saveDay, 4);  // the object keeps the date of the last save all the same
}

TEST_F(SaveStampTest, ASecondSaverMovesTheFirstIntoAuthor) {
  Save();
  session.system.userName = L"ben";
  session.system.hostName = L"WS12";
  session.system.today = LocalDate{31, 12, 2021};
  EXPECT_THAT(Writes(Save()), ElementsAre("AddStringProperty(1, 3, \"ben on WS12\")",
                                          "AddStringProperty(1, 4, \"anna on RENDER07\")",
                                          "AddStringProperty(1, 2, \"31-12-2021\")"));
}

TEST_F(SaveStampTest, TheSaverIsComparedExactlyWithCase) {
  host().SetProperty(kSet, kSubject, L"ANNA on RENDER07");
  host().SetProperty(kSet, kTitle, L"1-1-2019");
  Save();
  EXPECT_EQ(Text(kSubject), L"anna on RENDER07");
  EXPECT_EQ(Text(kAuthor), L"ANNA on RENDER07");
  EXPECT_EQ(Text(kTitle), L"3-7-2020");
}

TEST_F(SaveStampTest, ATitleWithoutValueAloneCountsAsNeverStamped) {
  host().SetPropertyWithoutValue(kSet, kTitle);
  Save();
  EXPECT_EQ(Text(kAuthor), L"anna on RENDER07");
  EXPECT_EQ(Text(kTitle), L"3-7-2020");
}

TEST_F(SaveStampTest, AnAuthorSetByHandAloneIsOverwrittenInFull) {
  host().SetProperty(kSet, kAuthor, L"someone");
  Save();
  EXPECT_EQ(Text(kSubject), L"anna on RENDER07");
  EXPECT_EQ(Text(kAuthor), L"anna on RENDER07");
}

TEST_F(SaveStampTest, ASubjectWithoutTitleIsComparedAndRewritten) {
  host().SetProperty(kSet, kSubject, L"carl on X");
  Save();
  EXPECT_EQ(Text(kSubject), L"anna on RENDER07");
  EXPECT_EQ(Text(kAuthor), L"carl on X");
  EXPECT_EQ(Text(kTitle), L"3-7-2020");
}

TEST_F(SaveStampTest, ATitleWithoutSubjectWritesAnEmptyAuthor) {
  host().SetProperty(kSet, kTitle, L"1-1-2019");
  Save();
  EXPECT_EQ(Text(kSubject), L"anna on RENDER07");
  EXPECT_TRUE(host().Property(kSet, kAuthor).found);
  EXPECT_EQ(Text(kAuthor), L"");
}

TEST_F(SaveStampTest, AValuelessSubjectLeavesTheAuthorsAnswer) {
  // Author found with a value, subject present without one: still a stamped scene.
  host().SetProperty(kSet, kAuthor, L"dora on Y");
  host().SetPropertyWithoutValue(kSet, kSubject);
  Save();
  EXPECT_EQ(Text(kAuthor), L"");
  // Both valueless and no title: never stamped.
  SimSession fresh;
  fresh.host.SetPropertyWithoutValue(kSet, kAuthor);
  fresh.host.SetPropertyWithoutValue(kSet, kSubject);
  fresh.LoadAndStart();
  fresh.host.Raise(host::kNotifyFilePreSave);
  EXPECT_EQ(fresh.host.Property(kSet, kAuthor).value, L"anna on RENDER07");
}

}  // namespace
}  // namespace testing
}  // namespace hublet
