#pragma once
// hublet stamps: what the end of a report needs from all its rows, gathered row by row so
// that the rows themselves need not be kept: the count of each status and, per saver, the
// files they saved last.
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

// Where a file's last saver is read from: a stamp that still holds ("anna on RENDER07"),
// else 3ds Max's last saver ("anna"), which every save records.
enum class SaverSource { kStamp, kMax };
const char* SaverSourceName(SaverSource source);

struct SaverSummary {
  std::wstring saver;
  SaverSource source = SaverSource::kStamp;
  int files = 0;
  std::string latest;      // ISO: a stamp's date, or 3ds Max's last save (UTC); empty when none is known
  std::string latestFile;  // of the latest; of several on that day or second, the first in the report
  std::string LatestDate() const { return latest.substr(0, 10); }
};

class StampTally {
 public:
  // withSavers: whether to gather the savers' summary too, which costs a lookup a row and
  // memory a saver.
  explicit StampTally(bool withSavers) : withSavers_(withSavers) {}

  void Add(const SceneStamp& stamp);

  int Files() const { return files_; }
  int Folders() const { return folders_; }
  // The report's rows so far: the files and the folders that could not be listed.
  int Rows() const { return files_ + folders_; }
  int Count(StampStatus status) const { return counts_[static_cast<int>(status)]; }
  bool AllStamped() const { return Count(StampStatus::kStamped) == Rows(); }
  // Sorted by saver, then source; none without withSavers.
  std::vector<SaverSummary> Savers() const;

 private:
  const bool withSavers_;
  int files_ = 0;
  int folders_ = 0;
  int counts_[kStampStatusCount] = {};
  std::map<std::pair<std::wstring, SaverSource>, SaverSummary> savers_;
};

}  // namespace tool
}  // namespace hublet
