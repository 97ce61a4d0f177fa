#pragma once
// The outputs of hublet stamps: a table for people, JSON ("hublet-stamps/1") and CSV, each
// with the savers' summary on request.
#include <string>
#include <vector>

#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

std::string StampsText(const std::vector<SceneStamp>& stamps, bool summary);
std::string StampsJson(const std::vector<SceneStamp>& stamps, bool summary);
// With summary, the summary's table instead of the files'.
std::string StampsCsv(const std::vector<SceneStamp>& stamps, bool summary);

}  // namespace tool
}  // namespace hublet
