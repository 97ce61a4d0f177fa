#include "tool/check.h"

#include <algorithm>

#include "platform/wide_text.h"
#include "tool/check_jobs.h"

namespace hublet {
namespace tool {
namespace {

// Longer names and values are cut in messages; the report's fields keep them whole.
constexpr std::size_t kShownLength = 80;

}  // namespace

void CheckContext::Add(std::size_t line, Severity severity, const char* code, std::string message,
                       const std::wstring& section, const std::wstring& key, const std::wstring& suggestion) {
  const bool keep = Keeps();
  Count(severity);
  if (!keep) return;
  report.diagnostics.push_back({line, severity, code, std::move(message), WideToUtf8(section), WideToUtf8(key),
                                WideToUtf8(suggestion)});
}

std::string Shown(const std::wstring& text) {
  const bool cut = text.size() > kShownLength;
  std::string out;
  for (const char c : WideToUtf8(cut ? text.substr(0, kShownLength) : text)) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
      const char* const hex = "0123456789ABCDEF";
      out += std::string("\\x") + hex[byte >> 4] + hex[byte & 0xF];
    } else {
      out += c;
    }
  }
  return cut ? out + "..." : out;
}

std::string Quoted(const std::wstring& text) { return "\"" + Shown(text) + "\""; }

std::string DefaultText(const PreferenceKey& key) {
  return key.kind == KeyKind::GammaText ? Quoted(key.defaultText) : std::to_string(key.defaultInt);
}

namespace {

CheckReport Check(const std::string& bytes, const IniDocument& document, ProfileReader& reader) {
  CheckContext context(bytes, document);
  CheckReport& report = context.report;
  report.encoding = document.Encoding();
  report.lineCount = document.LineCount();
  ReadValues(context, reader);
  if (CheckEncoding(context)) {
    CheckIgnoredLines(context);
    CheckNames(context);
    CheckMeaning(context);
    if (report.encoding == IniEncoding::Ansi) CheckUtf8AsAnsi(context);
  }
  std::stable_sort(report.diagnostics.begin(), report.diagnostics.end(),
                   [](const Diagnostic& a, const Diagnostic& b) { return a.line < b.line; });
  return std::move(report);
}

}  // namespace

CheckReport CheckPreferenceFile(const std::string& bytes, ProfileReader& reader) {
  return Check(bytes, IniDocument::Parse(bytes), reader);
}

// One parse serves both the values and the diagnostics.
CheckReport CheckPreferenceFile(const std::string& bytes) {
  IniDocumentReader reader(IniDocument::Parse(bytes));
  return Check(bytes, reader.Document(), reader);
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

const char* ReadWhenId(ReadWhen when) {
  switch (when) {
    case ReadWhen::AtStart: return "start";
    case ReadWhen::LayoutStage: return "layout";
    case ReadWhen::GammaStage: return "gamma";
    case ReadWhen::FrameRateStage: return "frame-rate";
  }
  return "start";
}

}  // namespace tool
}  // namespace hublet
