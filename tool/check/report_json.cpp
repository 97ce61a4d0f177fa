#include "tool/check/report.h"
#include "tool/common/json_writer.h"
#include "tool/common/read_times.h"

namespace hublet {
namespace tool {
namespace {

std::string Bool(bool value) { return value ? "true" : "false"; }

std::string Member(const char* name, const std::string& json) { return JsonString(name) + ": " + json; }

std::string SettingJson(const SettingValue& value) {
  std::string json = "{" + Member("section", JsonString(value.section)) + ", " +
                     Member("key", JsonString(value.name)) + ", " + Member("field", JsonString(value.field)) +
                     ", " + Member("read", JsonString(ReadWhenId(value.key->when))) + ", ";
  if (value.isText) {
    json += Member("value", JsonFloat(value.floatValue)) + ", " + Member("text", JsonString(value.text)) + ", ";
  } else {
    json += Member("value", std::to_string(value.intValue)) + ", ";
  }
  json += Member("source", value.line == 0 ? JsonString("default")
                                           : "{" + Member("line", std::to_string(value.line)) + "}");
  return json + "}";
}

std::string DiagnosticJson(const Diagnostic& d) {
  std::string json = "{" + Member("line", d.line == 0 ? "null" : std::to_string(d.line)) + ", " +
                     Member("severity", JsonString(SeverityName(d.severity))) + ", " +
                     Member("code", JsonString(d.code)) + ", " + Member("message", JsonString(d.message));
  if (!d.section.empty()) json += ", " + Member("section", JsonString(d.section));
  if (!d.key.empty()) json += ", " + Member("key", JsonString(d.key));
  if (!d.suggestion.empty()) json += ", " + Member("suggestion", JsonString(d.suggestion));
  return json + "}";
}

template <class T, class Format>
std::string Array(const std::vector<T>& items, Format format) {
  if (items.empty()) return "[]";
  std::string json = "[\n";
  for (std::size_t i = 0; i < items.size(); ++i) json += "    " + format(items[i]) + (i + 1 < items.size() ? ",\n" : "\n");
  return json + "  ]";
}

}  // namespace

std::string FormatCheckJson(const CheckReport& report, const std::string& fileName) {
  const std::size_t errors = report.Count(Severity::Error);
  const std::size_t warnings = report.Count(Severity::Warning);
  const std::size_t notes = report.Count(Severity::Note);
  std::string json = "{\n";
  json += "  " + Member("schema", JsonString("hublet-check/1")) + ",\n";
  json += "  " + Member("file", JsonString(fileName)) + ",\n";
  json += "  " + Member("encoding", JsonString(EncodingId(report.encoding))) + ",\n";
  json += "  " + Member("lines", std::to_string(report.lineCount)) + ",\n";
  json += "  " + Member("stages", "{" + Member("layout", Bool(report.layoutStage)) + ", " +
                                      Member("gamma", Bool(report.gammaStage)) + ", " +
                                      Member("frameRate", Bool(report.frameRateStage)) + "}") + ",\n";
  json += "  " + Member("settings", Array(report.settings, SettingJson)) + ",\n";
  json += "  " + Member("diagnostics", Array(report.diagnostics, DiagnosticJson)) + ",\n";
  json += "  " + Member("summary", "{" + Member("errors", std::to_string(errors)) + ", " +
                                       Member("warnings", std::to_string(warnings)) + ", " +
                                       Member("notes", std::to_string(notes)) + ", " +
                                       Member("listed", std::to_string(report.diagnostics.size())) + "}") + "\n";
  return json + "}\n";
}

}  // namespace tool
}  // namespace hublet
