#pragma once
// The checker's jobs, each in a file of its own, over one shared context: what the plug-in
// reads (check_values.cpp), the file as lines of text (check_lines.cpp), its section and
// key names (check_names.cpp) and what its values will make the plug-in do
// (check_meaning.cpp).
#include <string>

#include "platform/ini_document.h"
#include "platform/profile.h"
#include "settings/preference_keys.h"
#include "tool/check.h"

namespace hublet {
namespace tool {

struct CheckContext {
  CheckContext(const std::string& fileBytes, const IniDocument& parsed) : bytes(fileBytes), document(parsed) {}

  // Whether another diagnostic is still kept with its message; when not, only Count it,
  // which spares building messages nobody will see.
  bool Keeps() const { return report.diagnostics.size() < kMaxKeptDiagnostics; }
  void Count(Severity severity) { ++report.counts[static_cast<int>(severity)]; }

  void Add(std::size_t line, Severity severity, const char* code, std::string message,
           const std::wstring& section = std::wstring(), const std::wstring& key = std::wstring(),
           const std::wstring& suggestion = std::wstring());

  const std::string& bytes;
  const IniDocument& document;
  HubletSettings settings{};  // as the plug-in holds them after a start and a pass
  CheckReport report;
};

// Reads every value as the plug-in does, with the lines they come from.
void ReadValues(CheckContext& context, ProfileReader& reader);

// False when the reader sees nothing of the file's lines, so nothing else is worth saying.
bool CheckEncoding(CheckContext& context);
void CheckIgnoredLines(CheckContext& context);
void CheckUtf8AsAnsi(CheckContext& context);

void CheckNames(CheckContext& context);

void CheckMeaning(CheckContext& context);

// The default a lookup of key answers, as the report shows it.
std::string DefaultText(const PreferenceKey& key);

// Text from the file as a message shows it: UTF-8, control characters escaped (\xNN) so
// nothing raw reaches a terminal, and cut at 80 characters so a huge name stays readable.
std::string Shown(const std::wstring& text);
// The same in double quotes.
std::string Quoted(const std::wstring& text);

}  // namespace tool
}  // namespace hublet
