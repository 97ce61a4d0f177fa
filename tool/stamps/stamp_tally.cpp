#include "tool/stamps/stamp_tally.h"

namespace hublet {
namespace tool {

void StampTally::Add(const SceneStamp& stamp) {
  ++(stamp.isFolder ? folders_ : files_);
  ++counts_[static_cast<int>(stamp.status)];
  if (!stamp.saver.isText) return;
  SaverSummary& summary = savers_[stamp.saver.value];
  summary.saver = stamp.saver.value;
  ++summary.files;
  // A stamp holds the day only: of two saves on one day, the first file in the report
  // stays the latest, so the answer does not depend on how the files were read.
  if (stamp.saveDate > summary.latestDate) {
    summary.latestDate = stamp.saveDate;
    summary.latestFile = stamp.file;
  }
}

std::vector<SaverSummary> StampTally::Savers() const {
  std::vector<SaverSummary> summaries;
  for (const auto& entry : savers_) summaries.push_back(entry.second);
  return summaries;
}

}  // namespace tool
}  // namespace hublet
