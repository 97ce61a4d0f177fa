#include <algorithm>

#include "host/sim/transcript.h"
#include "platform/wide_text.h"
#include "tool/check/report.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

// A file of a million bad lines should not print a million lines.
constexpr std::size_t kMaxPrintedDiagnostics = 100;

std::string Plural(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string Pad(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string ValueText(const SettingValue& value) {
  if (!value.isText) return std::to_string(value.intValue);
  const std::string number = FormatFloat(value.floatValue);
  return number == value.text ? number : number + " (text " + Quoted(Utf8ToWide(value.text)) + ")";
}

std::string SourceText(const SettingValue& value) {
  return value.line == 0 ? "default" : "line " + std::to_string(value.line);
}

std::string StageHeading(const CheckReport& report, ReadWhen stage) {
  const PreferenceKey* gate = StageSwitch(stage);
  if (gate == nullptr) return "Read once, when the plug-in starts:";
  const char* name = stage == ReadWhen::LayoutStage ? "Layout" : stage == ReadWhen::GammaStage ? "Gamma" : "Frame-rate";
  int gateValue = 0;
  for (const SettingValue& value : report.settings)
    if (value.key == gate) gateValue = value.intValue;
  return std::string(name) + " stage of each preference pass: " + (gateValue != 0 ? "runs" : "does not run") + " (" +
         WideToUtf8(gate->name) + " = " + std::to_string(gateValue) + "):";
}

}  // namespace

const PreferenceKey* StageSwitch(ReadWhen stage) {
  int HubletSettings::*field = nullptr;
  if (stage == ReadWhen::LayoutStage) field = &HubletSettings::useViewLayout;
  if (stage == ReadWhen::GammaStage) field = &HubletSettings::useGamma;
  if (stage == ReadWhen::FrameRateStage) field = &HubletSettings::useFrameRate;
  if (field == nullptr) return nullptr;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k)
    if (kPreferenceKeys[k].intField == field) return &kPreferenceKeys[k];
  return nullptr;
}

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Note: return "note";
    case Severity::Warning: return "warning";
    case Severity::Error: return "error";
  }
  return "error";
}

std::string FormatCheckText(const CheckReport& report, const std::string& fileName) {
  std::string out = fileName + ": " + EncodingDescription(report.encoding) + ", " +
                    Plural(report.lineCount, "line", "lines") + "\n";

  std::size_t sectionWidth = 0;
  std::size_t keyWidth = 0;
  std::size_t valueWidth = 0;
  std::size_t sourceWidth = 0;
  for (const SettingValue& value : report.settings) {
    sectionWidth = std::max(sectionWidth, value.section.size() + 2);
    keyWidth = std::max(keyWidth, value.name.size());
    valueWidth = std::max(valueWidth, ValueText(value).size());
    sourceWidth = std::max(sourceWidth, SourceText(value).size());
  }
  for (ReadWhen stage : {ReadWhen::AtStart, ReadWhen::LayoutStage, ReadWhen::GammaStage, ReadWhen::FrameRateStage}) {
    out += "\n" + StageHeading(report, stage) + "\n";
    for (const SettingValue& value : report.settings) {
      if (value.key->when != stage) continue;
      out += "  " + Pad("[" + value.section + "]", sectionWidth) + " " + Pad(value.name, keyWidth) + "  " + Pad(ValueText(value), valueWidth) +
             "  " + Pad(SourceText(value), sourceWidth) + "  " + value.field + "\n";
    }
  }

  out += "\n" + FormatDiagnostics(report, fileName);
  const std::size_t errors = report.Count(Severity::Error);
  const std::size_t warnings = report.Count(Severity::Warning);
  const std::size_t notes = report.Count(Severity::Note);
  if (errors + warnings + notes == 0)
    out += "No problems found.\n";
  else
    out += Plural(errors, "error", "errors") + ", " + Plural(warnings, "warning", "warnings") + ", " +
           Plural(notes, "note", "notes") + ".\n";
  return out;
}

std::string FormatDiagnostics(const CheckReport& report, const std::string& fileName) {
  std::string out;
  const std::size_t shown = std::min(report.diagnostics.size(), kMaxPrintedDiagnostics);
  for (std::size_t i = 0; i < shown; ++i) {
    const Diagnostic& d = report.diagnostics[i];
    out += fileName + ":" + (d.line != 0 ? std::to_string(d.line) + ":" : std::string()) + " " +
           SeverityName(d.severity) + ": " + d.message + " [" + d.code + "]\n";
  }
  if (shown < report.Total())
    out += fileName + ": ... and " + std::to_string(report.Total() - shown) + " more diagnostics (--format json lists up to " +
           std::to_string(kMaxKeptDiagnostics) + " and counts them all)\n";
  return out;
}

}  // namespace tool
}  // namespace hublet
