// The file as lines of text: its encoding, lines the reader skips, and UTF-8 that the
// reader will decode as code page 1252.
#include <algorithm>
#include <vector>

#include "platform/wide_text.h"
#include "tool/check_jobs.h"

namespace hublet {
namespace tool {
namespace {

// How much of the file the binary test looks at, and how many control bytes in it make
// the file binary rather than text with a stray byte.
constexpr std::size_t kBinaryProbe = 64 * 1024;
constexpr std::size_t kBinaryControlsPerMille = 100;

bool IsControlByte(unsigned char c) { return c < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f' && c != '\v'; }

bool LooksBinary(const std::string& bytes) {
  const std::size_t probe = std::min(bytes.size(), kBinaryProbe);
  const std::size_t controls = static_cast<std::size_t>(std::count_if(
      bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(probe), [](char c) { return IsControlByte(static_cast<unsigned char>(c)); }));
  return probe != 0 && controls * 1000 > probe * kBinaryControlsPerMille;
}

// The first byte of each line, one line after another, as the reader splits them
// (CR LF, lone CR, lone LF). Calls visit(line, begin, end) until it returns false.
template <class Visit>
void ForEachAnsiLine(const std::string& bytes, Visit visit) {
  std::size_t line = 1;
  std::size_t i = 0;
  const std::size_t size = bytes.size();
  while (i < size) {
    std::size_t end = i;
    while (end < size && bytes[end] != '\r' && bytes[end] != '\n') ++end;
    if (!visit(line, i, end)) return;
    i = end + 1;
    if (end + 1 < size && bytes[end] == '\r' && bytes[end + 1] == '\n') ++i;
    ++line;
  }
}

// A UTF-8 sequence of two to four bytes at bytes[i], valid and not overlong; its length
// or 0.
std::size_t Utf8SequenceAt(const std::string& bytes, std::size_t i, std::size_t end) {
  const unsigned char lead = static_cast<unsigned char>(bytes[i]);
  std::size_t length = 0;
  if (lead >= 0xC2 && lead <= 0xDF) length = 2;
  if (lead >= 0xE0 && lead <= 0xEF) length = 3;
  if (lead >= 0xF0 && lead <= 0xF4) length = 4;
  if (length == 0 || i + length > end) return 0;
  for (std::size_t k = 1; k < length; ++k)
    if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0) != 0x80) return 0;
  // The replacement character is what a decoder makes of garbage: not a real letter.
  const std::wstring decoded = Utf8ToWide(bytes.substr(i, length));
  return decoded.find(L'\xFFFD') == std::wstring::npos ? length : 0;
}

// Whether a line above the first header starts with '#': a comment in other formats.
std::vector<std::size_t> HashLinesBeforeFirstSection(const CheckContext& context) {
  std::vector<std::size_t> hashLines;
  if (context.report.encoding == IniEncoding::Utf16Le) return hashLines;
  const std::size_t last = context.document.Sections().empty() ? context.report.lineCount
                                                               : context.document.Sections().front().line;
  ForEachAnsiLine(context.bytes, [&](std::size_t line, std::size_t begin, std::size_t end) {
    while (begin < end && (context.bytes[begin] == ' ' || context.bytes[begin] == '\t')) ++begin;
    if (begin < end && context.bytes[begin] == '#') hashLines.push_back(line);
    return line < last;
  });
  return hashLines;
}

}  // namespace

bool CheckEncoding(CheckContext& context) {
  const std::string& bytes = context.bytes;
  switch (context.report.encoding) {
    case IniEncoding::Ansi:
      if (bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] != '\0') {
        context.Add(0, Severity::Error, "encoding",
                    "the file looks like UTF-16BE without a byte-order mark, which the Windows profile reader "
                    "does not understand: nothing in it is read; save it as UTF-16LE with a byte-order mark or as ANSI");
        return false;
      }
      if (LooksBinary(bytes)) {
        context.Add(0, Severity::Error, "encoding",
                    "the file is not text (one byte in ten or more is a control character): the plug-in "
                    "finds no usable key in it; is this the right file?");
        return false;
      }
      return true;
    case IniEncoding::Utf16Le:
      return true;
    case IniEncoding::Utf8BomAsAnsi:
      context.Add(1, Severity::Error, "encoding",
                  "the file starts with a UTF-8 byte-order mark, which Windows does not recognise: it "
                  "reads the file as code page 1252, the mark's bytes become part of line 1 (a header "
                  "there is lost) and non-ASCII text turns into mojibake; save it as ANSI or as UTF-16LE "
                  "with a byte-order mark");
      return true;
    case IniEncoding::Utf16LeNoBom:
      context.Add(0, Severity::Error, "encoding",
                  "the file looks like UTF-16LE without a byte-order mark: the reader takes it as code "
                  "page 1252, where the NUL bytes cut every name short, so nothing in it is read; save it "
                  "with a byte-order mark (FF FE)");
      return false;
    case IniEncoding::Utf16BeUnsupported:
      context.Add(0, Severity::Error, "encoding",
                  "the file is UTF-16BE, which the Windows profile reader does not understand: nothing in "
                  "it is read; save it as UTF-16LE with a byte-order mark or as ANSI");
      return false;
  }
  return true;
}

void CheckIgnoredLines(CheckContext& context) {
  const std::vector<std::size_t> hashLines = HashLinesBeforeFirstSection(context);
  for (const IniIgnoredLine& ignored : context.document.IgnoredLines()) {
    switch (ignored.reason) {
      case IniIgnoreReason::Comment:
        break;  // meant to be ignored
      case IniIgnoreReason::BeforeFirstSection:
        if (std::binary_search(hashLines.begin(), hashLines.end(), ignored.line))
          context.Add(ignored.line, Severity::Warning, "hash-comment",
                      "a line starting with '#' is not a comment in this file (only ';' starts one); here, above "
                      "the first [section] header, no lookup reaches it anyway; start the line with ';'");
        else
          context.Add(ignored.line, Severity::Error, "before-first-section",
                      "this line comes before the first [section] header, where no lookup reaches it");
        break;
      case IniIgnoreReason::TextAfterHeader:
        context.Add(ignored.line, Severity::Warning, "text-after-header",
                    "the text after the header's closing ']' is ignored (there are no trailing comments)");
        break;
      case IniIgnoreReason::UnclosedHeader:
        context.Add(ignored.line, Severity::Warning, "unclosed-header",
                    "the section header has no closing ']': the reader takes the rest of the line as its name");
        break;
      case IniIgnoreReason::TextAfterNul:
        context.Add(ignored.line, Severity::Error, "nul-byte",
                    "a NUL byte ends the name or value early; the rest of the line is not read");
        break;
    }
  }
}

// Non-ASCII bytes that form UTF-8: the author saved UTF-8, the reader decodes code page
// 1252. One warning per line, showing what the first such character becomes; comments
// are nobody's business.
void CheckUtf8AsAnsi(CheckContext& context) {
  // Ignored lines come in line order.
  std::vector<std::size_t> comments;
  for (const IniIgnoredLine& ignored : context.document.IgnoredLines())
    if (ignored.reason == IniIgnoreReason::Comment) comments.push_back(ignored.line);
  const std::string& bytes = context.bytes;
  ForEachAnsiLine(bytes, [&](std::size_t line, std::size_t begin, std::size_t end) {
    const bool comment = std::binary_search(comments.begin(), comments.end(), line);
    for (std::size_t k = begin; k < end && !comment; ++k) {
      const std::size_t length = Utf8SequenceAt(bytes, k, end);
      if (length == 0) continue;
      const std::string sequence = bytes.substr(k, length);
      const std::wstring asRead = IniDocument::Parse("[S]\nK=" + sequence).LookupText(L"S", L"K", std::wstring());
      context.Add(line, Severity::Warning, "utf8-as-ansi",
                  "\"" + sequence + "\" is written in UTF-8, but a file without a byte-order mark is read as code page 1252: " +
                      "the plug-in sees " + Quoted(asRead) + "; use ASCII or save as UTF-16LE with a byte-order mark");
      break;
    }
    return true;
  });
}

}  // namespace tool
}  // namespace hublet
