#include "tool/common/calendar.h"

namespace hublet {
namespace tool {

bool IsCalendarDay(int day, int month, int year) {
  static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12 || day < 1) return false;
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return day <= (month == 2 && leap ? 29 : kDays[month - 1]);
}

}  // namespace tool
}  // namespace hublet
