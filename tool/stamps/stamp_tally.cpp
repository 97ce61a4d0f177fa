#include "tool/stamps/stamp_tally.h"

namespace hublet {
namespace tool {

const char* SaverSourceName(SaverSource source) { return source == SaverSource::kStamp ? "stamp" : "3ds-max"; }

void StampTally::Add(const SceneStamp& stamp) {
  ++(stamp.isFolder ? folders_ : files_);
  ++counts_[static_cast<int>(stamp.status)];
  if (!withSavers_) return;
  SaverSource source;
  std::wstring saver;
  std::string saved;
  if (stamp.status == StampStatus::kStamped) {
    source = SaverSource::kStamp;
    saver = stamp.saver.value;
    saved = stamp.saveDate;
  } else if (stamp.lastSavedBy.isText && !stamp.lastSavedBy.value.empty()) {
    source = SaverSource::kMax;
    saver = stamp.lastSavedBy.value;
    saved = IsoTime(stamp.lastSaved);
  } else {
    return;
  }
  SaverSummary& summary = savers_[std::make_pair(saver, source)];
  summary.saver = saver;
  summary.source = source;
  ++summary.files;
  // Of two saves at one time (a stamp holds only the day), the first file in the report
  // stays the latest, so the answer does not depend on how the files were read.
  if (saved > summary.latest) {
    summary.latest = saved;
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
