#include "platform/file_time.h"

#include <algorithm>

namespace hublet {
namespace {

const std::uint64_t kTicksPerSecond = 10000000;
const std::uint64_t kSecondsPerDay = 86400;
// 1601 starts a 400-year cycle of the Gregorian calendar; the cycles split into centuries,
// four-year spans and years whose day counts differ only in their last member (1700 is no
// leap year, 2000 is; 1604 is one, 1601 is not).
const std::uint64_t kDaysPer400Years = 146097, kDaysPerCentury = 36524, kDaysPer4Years = 1461, kDaysPerYear = 365;

bool IsLeapYear(std::uint64_t year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

}  // namespace

std::string FileTimeToIso8601(std::uint64_t ticks) {
  const std::uint64_t seconds = ticks / kTicksPerSecond;
  std::uint64_t days = seconds / kSecondsPerDay;
  const std::uint64_t secondOfDay = seconds % kSecondsPerDay;
  std::uint64_t year = 1601 + 400 * (days / kDaysPer400Years);
  days %= kDaysPer400Years;
  const std::uint64_t centuries = std::min<std::uint64_t>(days / kDaysPerCentury, 3);
  year += 100 * centuries;
  days -= centuries * kDaysPerCentury;
  year += 4 * (days / kDaysPer4Years);
  days %= kDaysPer4Years;
  const std::uint64_t years = std::min<std::uint64_t>(days / kDaysPerYear, 3);
  year += years;
  days -= years * kDaysPerYear;
  if (year > 9999) return std::string();
  static const int kMonthDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  int month = 0;
  for (;; ++month) {
    const std::uint64_t length = kMonthDays[month] + (month == 1 && IsLeapYear(year) ? 1 : 0);
    if (days < length) break;
    days -= length;
  }
  // Written digit by digit: this runs for every file of an audit, twice.
  const std::uint64_t fields[6] = {year, static_cast<std::uint64_t>(month) + 1, days + 1,
                                   secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60};
  std::string text = "0000-00-00T00:00:00Z";
  static const std::size_t kEnds[6] = {4, 7, 10, 13, 16, 19};
  for (int field = 0; field < 6; ++field) {
    std::uint64_t value = fields[field];
    for (std::size_t at = kEnds[field]; value != 0; value /= 10) text[--at] = static_cast<char>('0' + value % 10);
  }
  return text;
}

}  // namespace hublet
