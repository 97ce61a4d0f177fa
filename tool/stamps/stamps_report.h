#pragma once
// The outputs of hublet stamps: a table for people, JSON ("hublet-stamps/1") and CSV. Each
// row is made on the thread that read its file, the same whichever rows come before it, and
// written in the report's order; the end (counts, the savers' summary) comes from the tally
// of all rows.
#include <memory>
#include <string>

#include "tool/stamps/stamp_tally.h"
#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

class StampsPrinter {
 public:
  virtual ~StampsPrinter() = default;
  virtual std::string Begin() = 0;
  // What goes before a row: the header before the first, a separator between rows.
  virtual std::string BeforeRow(bool first) const = 0;
  // Safe to call from several threads at once.
  virtual std::string Row(const SceneStamp& stamp) const = 0;
  virtual std::string End(const StampTally& tally) = 0;
};

// format: "text", "json" or "csv"; summary: the savers' summary at the end (in CSV instead
// of the rows). Null for another format.
std::unique_ptr<StampsPrinter> MakeStampsPrinter(const std::string& format, bool summary);

}  // namespace tool
}  // namespace hublet
