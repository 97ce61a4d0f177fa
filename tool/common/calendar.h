#pragma once
// The Gregorian calendar, for dates the tool reads: a replay's date and a stamp's.

namespace hublet {
namespace tool {

// Whether day, month (1 to 12) and year name a day of the calendar.
bool IsCalendarDay(int day, int month, int year);

}  // namespace tool
}  // namespace hublet
