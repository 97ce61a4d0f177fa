#include "tool/stamps/stamps.h"

#include <utility>

#include "platform/file_time.h"
#include "tool/common/calendar.h"
#include "tool/stamps/stale_stamp.h"

namespace hublet {
namespace tool {
namespace {

// A number as "%i" prints it: digits without a leading zero.
bool TakeNumber(const std::wstring& text, std::size_t& at, int& value) {
  const std::size_t start = at;
  value = 0;
  while (at < text.size() && text[at] >= L'0' && text[at] <= L'9' && at - start < 5)
    value = value * 10 + (text[at++] - L'0');
  return at > start && text[start] != L'0';
}

std::string Irregularity(const SceneStamp& stamp) {
  if (!stamp.savedAs.isText) return stamp.savedAs.present ? "the title is not text" : "no title";
  if (stamp.saveDate.empty()) return "the title is not a date written as D-M-YYYY";
  if (!stamp.saver.isText) return stamp.saver.present ? "the subject is not text" : "no subject";
  if (stamp.saver.value.find(L" on ") == std::wstring::npos) return "the subject is not \"USER on MACHINE\"";
  if (!stamp.previous.isText) return stamp.previous.present ? "the author is not text" : "no author";
  return std::string();
}

}  // namespace

const char* StampStatusName(StampStatus status) {
  switch (status) {
    case StampStatus::kStamped: return "stamped";
    case StampStatus::kStale: return "stale";
    case StampStatus::kNeverStamped: return "never-stamped";
    case StampStatus::kIrregular: return "irregular";
    case StampStatus::kNotCompoundFile: return "not-compound-file";
    case StampStatus::kNoSummaryInformation: return "no-summary-information";
    case StampStatus::kUnreadable: return "unreadable";
  }
  return "unreadable";
}

std::string StampDateAsIso(const std::wstring& text) {
  std::size_t at = 0;
  int day = 0, month = 0, year = 0;
  if (!TakeNumber(text, at, day) || at >= text.size() || text[at++] != L'-' || !TakeNumber(text, at, month) ||
      at >= text.size() || text[at++] != L'-' || !TakeNumber(text, at, year) || at != text.size() ||
      !IsCalendarDay(day, month, year))
    return std::string();
  // Without printf: this runs for every file of an audit. A year may have five digits.
  std::string iso = std::to_string(year);
  if (iso.size() < 4) iso.insert(0, 4 - iso.size(), '0');
  const char monthAndDay[] = {'-', static_cast<char>('0' + month / 10), static_cast<char>('0' + month % 10),
                              '-', static_cast<char>('0' + day / 10),   static_cast<char>('0' + day % 10)};
  return iso.append(monthAndDay, sizeof monthAndDay);
}

std::string IsoTime(const FileTime& time) { return time.isTime ? FileTimeToIso8601(time.ticks) : std::string(); }

SceneStamp JudgeStamp(const std::string& file, SummaryInformation info) {
  SceneStamp stamp;
  stamp.file = file;
  stamp.note = std::move(info.reason);
  stamp.saver = std::move(info.subject);
  stamp.previous = std::move(info.author);
  stamp.savedAs = std::move(info.title);
  stamp.lastSavedBy = std::move(info.lastSavedBy);
  stamp.lastSaved = info.lastSaved;
  stamp.created = info.created;
  if (stamp.savedAs.isText) stamp.saveDate = StampDateAsIso(stamp.savedAs.value);
  switch (info.status) {
    case SummaryStatus::kNotCompoundFile: stamp.status = StampStatus::kNotCompoundFile; return stamp;
    case SummaryStatus::kNoSummaryInformation: stamp.status = StampStatus::kNoSummaryInformation; return stamp;
    case SummaryStatus::kUnreadable: stamp.status = StampStatus::kUnreadable; return stamp;
    case SummaryStatus::kRead: break;
  }
  stamp.note = Irregularity(stamp);
  if (!stamp.savedAs.present && !stamp.saver.present)
    stamp.status = StampStatus::kNeverStamped;
  else
    stamp.status = stamp.note.empty() ? StampStatus::kStamped : StampStatus::kIrregular;
  if (stamp.status == StampStatus::kNeverStamped) stamp.note.clear();
  if (stamp.status == StampStatus::kStamped) {
    stamp.note = WhyStale(stamp.saver.value, stamp.saveDate, stamp.lastSavedBy, stamp.lastSaved);
    if (!stamp.note.empty()) stamp.status = StampStatus::kStale;
  }
  return stamp;
}

}  // namespace tool
}  // namespace hublet
