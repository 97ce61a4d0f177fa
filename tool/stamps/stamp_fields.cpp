#include "tool/stamps/stamp_fields.h"

#include "platform/wide_text.h"

namespace hublet {
namespace tool {
namespace {

FieldValue Text(const std::string& text) { return FieldValue{true, text}; }
FieldValue TextOrNone(const std::string& text) { return FieldValue{!text.empty(), text}; }
FieldValue FileText(const SummaryText& text) {
  return text.isText ? Text(WideToUtf8(text.value)) : FieldValue{false, std::string()};
}

}  // namespace

const std::vector<StampField>& StampFields() {
  static const std::vector<StampField> fields = {
      {"file", "file", [](const SceneStamp& stamp) { return Text(stamp.file); }},
      {"status", "status", [](const SceneStamp& stamp) { return Text(StampStatusName(stamp.status)); }},
      {"saver", "saver", [](const SceneStamp& stamp) { return FileText(stamp.saver); }},
      {"previousSaver", "previous_saver", [](const SceneStamp& stamp) { return FileText(stamp.previous); }},
      {"savedAs", "saved_as", [](const SceneStamp& stamp) { return FileText(stamp.savedAs); }},
      {"saveDate", "save_date", [](const SceneStamp& stamp) { return TextOrNone(stamp.saveDate); }},
      {"note", "note", [](const SceneStamp& stamp) { return TextOrNone(stamp.note); }},
      // 3ds Max's own, last so that CSV readers of the columns before find them where they were.
      {"lastSavedBy", "last_saved_by", [](const SceneStamp& stamp) { return FileText(stamp.lastSavedBy); }},
      {"lastSaved", "last_saved", [](const SceneStamp& stamp) { return TextOrNone(IsoTime(stamp.lastSaved)); }},
      {"created", "created", [](const SceneStamp& stamp) { return TextOrNone(IsoTime(stamp.created)); }},
  };
  return fields;
}

}  // namespace tool
}  // namespace hublet
