// A stamp's date as the plug-in writes it (D-M-YYYY, no leading zeros) read as ISO 8601, which
// the report, the summary's latest save and the stale check all compare as text.
#include <gtest/gtest.h>

#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {
namespace {

TEST(StampDate, ReadAsIsoWithFourDigitsOfYearOrMore) {
  EXPECT_EQ(StampDateAsIso(L"14-11-2023"), "2023-11-14");
  EXPECT_EQ(StampDateAsIso(L"3-7-2020"), "2020-07-03");
  EXPECT_EQ(StampDateAsIso(L"29-2-2024"), "2024-02-29");
  EXPECT_EQ(StampDateAsIso(L"1-1-999"), "0999-01-01");
  EXPECT_EQ(StampDateAsIso(L"1-1-7"), "0007-01-01");
  EXPECT_EQ(StampDateAsIso(L"31-12-12345"), "12345-12-31");
}

TEST(StampDate, AnythingElseIsNoDate) {
  for (const wchar_t* text : {L"29-2-2023", L"31-4-2020", L"03-7-2020", L"3-07-2020", L"3-7-02020", L"3-7-123456",
                              L"3/7/2020", L"3-7-2020 ", L"3-7", L"", L"0-1-2020", L"1-13-2020"})
    EXPECT_EQ(StampDateAsIso(text), "") << text;
}

}  // namespace
}  // namespace tool
}  // namespace hublet
