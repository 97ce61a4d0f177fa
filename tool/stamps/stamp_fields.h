#pragma once
// hublet stamps: the fields of a row as the machine-readable outputs (JSON and CSV) carry
// them, in their order. A field added to SceneStamp and to this table appears in both.
#include <string>
#include <vector>

#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

struct StampField {
  const char* jsonName;
  const char* csvName;
  // Puts the field's value (UTF-8) in text, in place of what it held, so that one string serves
  // a whole report; false when there is none (JSON null, an empty CSV field).
  bool (*value)(const SceneStamp& stamp, std::string& text);
};

const std::vector<StampField>& StampFields();

}  // namespace tool
}  // namespace hublet
