#include "tool/check/check.h"

#include <algorithm>
#include <utility>

#include "platform/wide_text.h"
#include "tool/check/check_jobs.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

// Names longer than this are cut in the report: nothing the plug-in reads comes close.
constexpr std::size_t kKeptNameLength = 256;

}  // namespace

void CheckContext::Add(std::size_t line, Severity severity, const char* code, std::string message,
                       const std::wstring& section, const std::wstring& key, const std::wstring& suggestion) {
  const bool keep = Keeps();
  Count(severity);
  if (!keep) return;
  report.diagnostics.push_back({line, severity, code, std::move(message), WideToUtf8(section), WideToUtf8(key),
                                WideToUtf8(suggestion)});
}

std::wstring CheckContext::Name(IniSpan span) const { return document.Text(span, kKeptNameLength); }

std::string DefaultText(const PreferenceKey& key) {
  return key.kind == KeyKind::GammaText ? Quoted(key.defaultText) : std::to_string(key.defaultInt);
}

namespace {

// What the values do is checked before the lines, so that the diagnostics kept when a
// file has thousands are those that matter most; within a line, it is reported after
// what the line's form and names say.
CheckReport Check(const IniDocument& document, ProfileReader& reader) {
  CheckContext context(document);
  CheckReport& report = context.report;
  report.encoding = document.Encoding();
  report.lineCount = document.LineCount();
  ReadValues(context, reader);
  if (CheckEncoding(context)) {
    const std::size_t before = report.diagnostics.size();
    CheckMeaning(context);
    const std::size_t meaning = report.diagnostics.size() - before;
    const std::unique_ptr<LineCheck> checks[] = {LineLayoutCheck(context), NameCheck(context), Utf8AsAnsiCheck(context)};
    document.ForEachLine([&checks](const IniLine& line) {
      for (const std::unique_ptr<LineCheck>& check : checks)
        if (check) check->Visit(line);
    });
    std::rotate(report.diagnostics.begin() + static_cast<std::ptrdiff_t>(before),
                report.diagnostics.begin() + static_cast<std::ptrdiff_t>(before + meaning), report.diagnostics.end());
  }
  std::stable_sort(report.diagnostics.begin(), report.diagnostics.end(),
                   [](const Diagnostic& a, const Diagnostic& b) { return a.line < b.line; });
  return std::move(report);
}

}  // namespace

CheckReport CheckPreferenceFile(std::string bytes, ProfileReader& reader) {
  return Check(IniDocument::Parse(std::move(bytes)), reader);
}

// The reader's own parse serves both the values and the diagnostics.
CheckReport CheckPreferenceFile(std::string bytes) {
  IniDocumentReader reader(IniDocument::Parse(std::move(bytes)));
  return Check(reader.Document(), reader);
}

const char* EncodingId(IniEncoding encoding) {
  switch (encoding) {
    case IniEncoding::Ansi: return "ansi";
    case IniEncoding::Utf16Le: return "utf-16le";
    case IniEncoding::Utf8BomAsAnsi: return "utf-8-bom";
    case IniEncoding::Utf16LeNoBom: return "utf-16le-no-bom";
    case IniEncoding::Utf16BeUnsupported: return "utf-16be";
  }
  return "ansi";
}

const char* EncodingDescription(IniEncoding encoding) {
  switch (encoding) {
    case IniEncoding::Ansi: return "ANSI (code page 1252)";
    case IniEncoding::Utf16Le: return "UTF-16LE with byte-order mark";
    case IniEncoding::Utf8BomAsAnsi: return "UTF-8 with byte-order mark (read as code page 1252)";
    case IniEncoding::Utf16LeNoBom: return "UTF-16LE without byte-order mark (unreadable)";
    case IniEncoding::Utf16BeUnsupported: return "UTF-16BE (unreadable)";
  }
  return "ANSI (code page 1252)";
}

}  // namespace tool
}  // namespace hublet
