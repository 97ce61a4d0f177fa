#pragma once
// hublet stamps: what the end of a report needs from all its rows, gathered row by row so
// that the rows themselves need not be kept: the count of each status and, per saver, the
// files they saved last.
#include <map>
#include <string>
#include <vector>

#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

struct SaverSummary {
  std::wstring saver;
  int files = 0;
  std::string latestDate;  // ISO, empty when none of their files has a date
  std::string latestFile;  // of the latest date; of several on that day, the first in the report
};

class StampTally {
 public:
  void Add(const SceneStamp& stamp);

  int Files() const { return files_; }
  int Folders() const { return folders_; }
  int Count(StampStatus status) const { return counts_[static_cast<int>(status)]; }
  bool AllStamped() const { return Count(StampStatus::kStamped) == files_ + folders_; }
  // Sorted by saver.
  std::vector<SaverSummary> Savers() const;

 private:
  int files_ = 0;
  int folders_ = 0;
  int counts_[kStampStatusCount] = {};
  std::map<std::wstring, SaverSummary> savers_;
};

}  // namespace tool
}  // namespace hublet
