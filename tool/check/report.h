#pragma once
// The printers of a check report: one for people, one for programs.
#include <string>

#include "tool/check/check.h"

namespace hublet {
namespace tool {

// Effective values grouped by when the plug-in reads them, then the diagnostics in the
// compiler style "FILE:LINE: severity: message [code]", then a count.
std::string FormatCheckText(const CheckReport& report, const std::string& fileName);

// Only the diagnostics, one a line in that style, for editors and CI logs.
std::string FormatDiagnostics(const CheckReport& report, const std::string& fileName);

// The "hublet-check/1" JSON document (see docs/hublet.md), ended by a newline.
std::string FormatCheckJson(const CheckReport& report, const std::string& fileName);

// The switch that gates a stage of the preference pass, or null for values read at start.
const PreferenceKey* StageSwitch(ReadWhen stage);

const char* SeverityName(Severity severity);

}  // namespace tool
}  // namespace hublet
