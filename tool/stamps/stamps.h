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
  kNeverStamped,          // no title and no subject
  kIrregular,             // stamped by hand or only partly: see note
  kNotCompoundFile,
  kNoSummaryInformation,
  kUnreadable,            // see note
};
const char* StampStatusName(StampStatus status);
constexpr int kStampStatusCount = 6;

// One row of the report: a file found, or a folder that could not be listed.
struct SceneStamp {
  std::string file;     // as given, or as found under a folder given (ShownPath)
  bool isFolder = false;  // a folder that could not be listed (status kUnreadable)
  bool reached = true;    // false: the file or folder could not be opened, so nothing in it was read
  StampStatus status = StampStatus::kUnreadable;
  std::string note;     // why it is irregular or unreadable
  SummaryText saver;     // subject
  SummaryText previous;  // author
  SummaryText savedAs;   // title
  std::string saveDate;  // the title as an ISO date (YYYY-MM-DD), empty when it is none
};

SceneStamp JudgeStamp(const std::string& file, const SummaryInformation& info);

// "D-M-YYYY" as the plug-in writes it (no leading zeros) as "YYYY-MM-DD"; empty when the
// text is not such a date or not a day of the calendar.
std::string StampDateAsIso(const std::wstring& text);

}  // namespace tool
}  // namespace hublet
