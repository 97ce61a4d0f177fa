#pragma once
// The checker's jobs, each in a file of its own, over one shared context: what the plug-in
// reads (check_values.cpp), what its values will make the plug-in do (check_meaning.cpp),
// the file's encoding and the layout of its lines (check_lines.cpp), and its section and
// key names (check_names.cpp). The last two look at every line, in one walk of the file.
#include <memory>
#include <string>

#include "platform/ini_document.h"
#include "platform/profile.h"
#include "settings/preference_keys.h"
#include "tool/check/check.h"

namespace hublet {
namespace tool {

struct CheckContext {
  explicit CheckContext(const IniDocument& parsed) : bytes(parsed.Bytes()), document(parsed) {}

  // Whether another diagnostic is still kept with its message; when not, only Count it,
  // which spares building messages nobody will see.
  bool Keeps() const { return report.diagnostics.size() < kMaxKeptDiagnostics; }
  void Count(Severity severity) { ++report.counts[static_cast<int>(severity)]; }

  void Add(std::size_t line, Severity severity, const char* code, std::string message,
           const std::wstring& section = std::wstring(), const std::wstring& key = std::wstring(),
           const std::wstring& suggestion = std::wstring());

  // A name from the file as a diagnostic keeps it: cut at 256 characters.
  std::wstring Name(IniSpan span) const;

  const std::string& bytes;
  const IniDocument& document;
  HubletSettings settings{};  // as the plug-in holds them after a start and a pass
  CheckReport report;
};

// Reads every value as the plug-in does, with the lines they come from.
void ReadValues(CheckContext& context, ProfileReader& reader);

// False when the reader sees nothing of the file's lines, so nothing else is worth saying.
bool CheckEncoding(CheckContext& context);

void CheckMeaning(CheckContext& context);

// A job that looks at each line in turn.
class LineCheck {
 public:
  virtual ~LineCheck() = default;
  virtual void Visit(const IniLine& line) = 0;
};
// Lines and parts of lines the reader skips.
std::unique_ptr<LineCheck> LineLayoutCheck(CheckContext& context);
// UTF-8 that the reader decodes as code page 1252; null unless the file is ANSI.
std::unique_ptr<LineCheck> Utf8AsAnsiCheck(CheckContext& context);
// Names that are never read because of their spelling or place.
std::unique_ptr<LineCheck> NameCheck(CheckContext& context);

// The default a lookup of key answers, as the report shows it.
std::string DefaultText(const PreferenceKey& key);

}  // namespace tool
}  // namespace hublet
