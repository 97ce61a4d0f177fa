#include "tool/stamps/stale_stamp.h"

#include <limits>

#include "platform/file_time.h"
#include "tool/common/shown_text.h"
#include "tool/stamps/account_names.h"
#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {
namespace {

constexpr std::uint64_t kTicksPerDay = 864000000000;

// Whether the stamp's date ("YYYY-MM-DD") lies past the day after the UTC day of ticks:
// past any time zone's date of that moment. A longer year is a later one.
bool DatedAfter(const std::string& saveDate, std::uint64_t ticks) {
  if (ticks > std::numeric_limits<std::uint64_t>::max() - kTicksPerDay) return false;
  const std::string dayAfter = FileTimeToIso8601(ticks + kTicksPerDay).substr(0, 10);
  if (dayAfter.empty()) return false;
  return saveDate.size() != dayAfter.size() ? saveDate.size() > dayAfter.size() : saveDate > dayAfter;
}

}  // namespace

std::string WhyStale(const std::wstring& subject, const std::string& saveDate, const SummaryText& lastSavedBy,
                     const FileTime& lastSaved) {
  std::string why;
  // A host name holds no space, so the last " on " ends the user's name, which may hold one.
  const std::wstring user = subject.substr(0, subject.rfind(L" on "));
  if (lastSavedBy.isText && !lastSavedBy.value.empty() && !SameAccount(lastSavedBy.value, user))
    why = "3ds Max's last saver " + Quoted(lastSavedBy.value) + " is not the stamp's user " + Quoted(user);
  // A later save by the same account is no evidence: the plug-in leaves a stamp as it is
  // while its saver saves again, so the stamp keeps the first day of such a run. A save
  // before the stamp's date is: the plug-in dates a stamp at the save that writes it.
  if (lastSaved.isTime && DatedAfter(saveDate, lastSaved.ticks))
    why += (why.empty() ? "" : "; ") + std::string("3ds Max's last save ") + IsoTime(lastSaved) +
           " is more than a day before the stamp's date";
  return why;
}

}  // namespace tool
}  // namespace hublet
