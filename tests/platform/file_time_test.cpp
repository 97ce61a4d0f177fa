// FILETIMEs as ISO 8601 UTC text, by arithmetic alone: known instants across leap days,
// centuries that are and are not leap years, and the ends of the range.
#include "platform/file_time.h"

#include <gtest/gtest.h>

namespace hublet {
namespace {

TEST(FileTime, KnownInstants) {
  const struct {
    std::uint64_t ticks;
    const char* text;
  } cases[] = {
      {0, "1601-01-01T00:00:00Z"},
      {9999999, "1601-01-01T00:00:00Z"},  // the fraction of a second dropped
      {1261440000000000, "1604-12-31T00:00:00Z"},
      {31292352000000000, "1700-03-01T00:00:00Z"},
      {94405824000000000, "1900-03-01T00:00:00Z"},
      {116444736000000000, "1970-01-01T00:00:00Z"},
      {125962560000000000, "2000-02-29T00:00:00Z"},
      {133536836960000000, "2024-02-29T12:34:56Z"},
      {157520159990000000, "2100-02-28T23:59:59Z"},
      {157520160000000000, "2100-03-01T00:00:00Z"},
      {2650467743990000000, "9999-12-31T23:59:59Z"},
  };
  for (const auto& c : cases) EXPECT_EQ(FileTimeToIso8601(c.ticks), c.text) << c.ticks;
  EXPECT_EQ(FileTimeToIso8601(2650467744000000000), "");  // year 10000
  EXPECT_EQ(FileTimeToIso8601(~std::uint64_t{0}), "");
}

// Every day from 1601 to 2401 follows the one before: the text counts up through every
// month's last day and every year's, and no day is skipped or repeated.
TEST(FileTime, EveryDayFollowsTheOneBefore) {
  const std::uint64_t day = std::uint64_t{864000000000};
  std::string before = FileTimeToIso8601(0);
  int year = 1601, month = 1, dayOfMonth = 1;
  for (std::uint64_t ticks = day; ticks < day * 292194; ticks += day) {
    const std::string text = FileTimeToIso8601(ticks);
    const int y = std::stoi(text.substr(0, 4)), m = std::stoi(text.substr(5, 2)), d = std::stoi(text.substr(8, 2));
    const bool nextDay = y == year && m == month && d == dayOfMonth + 1;
    const bool nextMonth = y == year && m == month + 1 && d == 1 && dayOfMonth >= 28;
    const bool nextYear = y == year + 1 && m == 1 && d == 1 && month == 12 && dayOfMonth == 31;
    ASSERT_TRUE(nextDay || nextMonth || nextYear) << before << " then " << text;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (nextMonth) {
      ASSERT_EQ(dayOfMonth, month == 2                                              ? (leap ? 29 : 28)
                            : month == 4 || month == 6 || month == 9 || month == 11 ? 30
                                                                                    : 31)
          << before << " then " << text;
    }
    year = y, month = m, dayOfMonth = d, before = text;
  }
  EXPECT_EQ(before, "2400-12-31T00:00:00Z");
}

}  // namespace
}  // namespace hublet
