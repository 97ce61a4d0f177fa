#pragma once
// hublet stamps: the fields of a row as the machine-readable outputs (JSON and CSV) carry
// them, in their order. A field added to SceneStamp and to this table appears in both.
#include <string>
#include <vector>

#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

// A field's value: UTF-8 text, or none (JSON null, an empty CSV field).
struct FieldValue {
  bool present;
  std::string text;
};

struct StampField {
  const char* jsonName;
  const char* csvName;
  FieldValue (*value)(const SceneStamp& stamp);
};

const std::vector<StampField>& StampFields();

}  // namespace tool
}  // namespace hublet
