#pragma once
// hublet stamps: the save stamps the plug-in leaves in scene files, read back from the
// files and judged against what the plug-in writes.
#include <string>
#include <vector>

#include "platform/summary_information.h"

namespace hublet {
namespace tool {

enum class StampStatus {
  kStamped,               // title, subject and author as the plug-in writes them
  kStale,                 // stamped, but 3ds Max records a save since: see note
  kNeverStamped,          // no title and no subject
  kIrregular,             // stamped by hand or only partly: see note
  kNotCompoundFile,
  kNoSummaryInformation,
  kUnreadable,            // see note
};
const char* StampStatusName(StampStatus status);
constexpr int kStampStatusCount = 7;

// One row of the report: a file found, or a folder that could not be listed.
struct SceneStamp {
  std::string file;     // as given, or as found under a folder given (ShownPath)
  bool isFolder = false;  // a folder that could not be listed (status kUnreadable)
  bool reached = true;    // false: the file or folder could not be opened, so nothing in it was read
  StampStatus status = StampStatus::kUnreadable;
  std::string note;     // why it is stale, irregular or unreadable
  SummaryText saver;     // subject
  SummaryText previous;  // author
  SummaryText savedAs;   // title
  std::string saveDate;  // the title as an ISO date (YYYY-MM-DD), empty when it is none
  // What 3ds Max itself records on every save, with or without the plug-in.
  SummaryText lastSavedBy;  // property 8: the Windows account
  FileTime lastSaved;       // property 13, UTC
  FileTime created;         // property 12, UTC
};

SceneStamp JudgeStamp(const std::string& file, SummaryInformation info);

// "D-M-YYYY" as the plug-in writes it (no leading zeros) as "YYYY-MM-DD"; empty when the
// text is not such a date or not a day of the calendar.
std::string StampDateAsIso(const std::wstring& text);

// A FILETIME as ISO 8601 UTC ("2020-07-03T09:15:00Z"), the same on every system; empty
// when absent, not a FILETIME, or past the year 9999.
std::string IsoTime(const FileTime& time);

}  // namespace tool
}  // namespace hublet
