#include "tool/stamps/stamp_fields.h"

#include "platform/wide_text.h"

namespace hublet {
namespace tool {
namespace {

bool Text(const std::string& value, std::string& text) {
  text.assign(value);
  return true;
}

bool TextOrNone(const std::string& value, std::string& text) {
  text.assign(value);
  return !value.empty();
}

bool FileText(const SummaryText& value, std::string& text) {
  text.clear();
  if (value.isText) AppendAsUtf8(text, value.value);
  return value.isText;
}

}  // namespace

const std::vector<StampField>& StampFields() {
  static const std::vector<StampField> fields = {
      {"file", "file", [](const SceneStamp& stamp, std::string& text) { return Text(stamp.file, text); }},
      {"status", "status",
       [](const SceneStamp& stamp, std::string& text) { return Text(StampStatusName(stamp.status), text); }},
      {"saver", "saver", [](const SceneStamp& stamp, std::string& text) { return FileText(stamp.saver, text); }},
      {"previousSaver", "previous_saver",
       [](const SceneStamp& stamp, std::string& text) { return FileText(stamp.previous, text); }},
      {"savedAs", "saved_as", [](const SceneStamp& stamp, std::string& text) { return FileText(stamp.savedAs, text); }},
      {"saveDate", "save_date",
       [](const SceneStamp& stamp, std::string& text) { return TextOrNone(stamp.saveDate, text); }},
      {"note", "note", [](const SceneStamp& stamp, std::string& text) { return TextOrNone(stamp.note, text); }},
      // 3ds Max's own, last so that CSV readers of the columns before find them where they were.
      {"lastSavedBy", "last_saved_by",
       [](const SceneStamp& stamp, std::string& text) { return FileText(stamp.lastSavedBy, text); }},
      {"lastSaved", "last_saved",
       [](const SceneStamp& stamp, std::string& text) { return TextOrNone(IsoTime(stamp.lastSaved), text); }},
      {"created", "created",
       [](const SceneStamp& stamp, std::string& text) { return TextOrNone(IsoTime(stamp.created), text); }},
  };
  return fields;
}

}  // namespace tool
}  // namespace hublet
