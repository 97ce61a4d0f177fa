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

// The UTC day ("YYYY-MM-DD") of ticks, empty past 9999.
std::string Day(std::uint64_t ticks) { return FileTimeToIso8601(ticks).substr(0, 10); }

bool WithinADay(const std::string& saveDate, std::uint64_t ticks) {
  return saveDate == Day(ticks) || (ticks >= kTicksPerDay && saveDate == Day(ticks - kTicksPerDay)) ||
         (ticks <= std::numeric_limits<std::uint64_t>::max() - kTicksPerDay && saveDate == Day(ticks + kTicksPerDay));
}

}  // namespace

std::string WhyStale(const std::wstring& subject, const std::string& saveDate, const SummaryText& lastSavedBy,
                     const FileTime& lastSaved) {
  std::string why;
  // A host name holds no space, so the last " on " ends the user's name, which may hold one.
  const std::wstring user = subject.substr(0, subject.rfind(L" on "));
  if (lastSavedBy.isText && !lastSavedBy.value.empty() && !SameAccount(lastSavedBy.value, user))
    why = "3ds Max's last saver " + Quoted(lastSavedBy.value) + " is not the stamp's user " + Quoted(user);
  const std::string saved = IsoTime(lastSaved);
  if (!saved.empty() && !WithinADay(saveDate, lastSaved.ticks))
    why += (why.empty() ? "" : "; ") + std::string("3ds Max's last save ") + saved +
           " is more than a day from the stamp's date";
  return why;
}

}  // namespace tool
}  // namespace hublet
