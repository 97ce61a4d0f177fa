#pragma once
// What a preference file will make the plug-in do: every value it reads, where that value
// comes from, and the places where the file says something other than what its author
// most likely meant. The values come from the plug-in's own reader and settings code; the
// line numbers and diagnostics come from the same parse of the file that the reader uses.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ini_document.h"
#include "platform/profile.h"
#include "settings/preference_keys.h"

namespace hublet {
namespace tool {

// An error: what the author wrote is not read at all, or turns a switch on or off against
// its evident meaning. A warning: it is read, but the plug-in does something other than
// what the text suggests. A note: it is read and has no effect.
enum class Severity { Note, Warning, Error };

struct Diagnostic {
  std::size_t line;  // 1-based; 0 when it concerns the whole file
  Severity severity;
  std::string code;  // stable identifier, e.g. "unknown-key"
  std::string message;
  std::string section;     // may be empty; names from the file are cut at 256 characters
  std::string key;         // may be empty; the same
  std::string suggestion;  // may be empty: the known name the author probably meant
};

// One value the plug-in reads: a row of the preference table, or one viewport's entry of
// a per-view row.
struct SettingValue {
  const PreferenceKey* key;
  int viewIndex;  // 0 to 3 for per-view rows, -1 otherwise
  std::string section;
  std::string name;   // the key as looked up, e.g. "VP2TYPE"
  std::string field;  // the settings field, e.g. "viewType[2]"
  bool isText;        // a gamma text: floatValue and text hold it
  std::int32_t intValue;
  float floatValue;
  std::string text;  // the text the reader returned (gamma keys only)
  std::size_t line;  // the line the lookup reads, 0 when the default applies
};

constexpr std::size_t kMaxKeptDiagnostics = 1000;

struct CheckReport {
  IniEncoding encoding = IniEncoding::Ansi;
  std::size_t lineCount = 0;
  // Which stages of the preference pass run (their switches are non-zero).
  bool layoutStage = false;
  bool gammaStage = false;
  bool frameRateStage = false;
  std::vector<SettingValue> settings;
  // Ordered by line, whole-file ones first. At most kMaxKeptDiagnostics are kept, so a
  // file of a million bad lines does not take a million messages' memory; the counts
  // cover every diagnostic found.
  std::vector<Diagnostic> diagnostics;
  std::size_t counts[3] = {0, 0, 0};  // by Severity

  std::size_t Count(Severity severity) const { return counts[static_cast<int>(severity)]; }
  std::size_t Total() const { return counts[0] + counts[1] + counts[2]; }
};

// Checks a preference file: bytes are the file's content, reader the profile reader that
// the plug-in would use on that same file. The check keeps the bytes while it runs, and
// besides them little more than its report: move them in.
CheckReport CheckPreferenceFile(std::string bytes, ProfileReader& reader);

// The same, reading the values from the parse of bytes itself (what the reader does on
// every build but Windows).
CheckReport CheckPreferenceFile(std::string bytes);

// Display names of the encodings, shared by the printers.
const char* EncodingId(IniEncoding encoding);           // "ansi", "utf-16le", ...
const char* EncodingDescription(IniEncoding encoding);  // a phrase for people

}  // namespace tool
}  // namespace hublet
