// The file as lines of text: its encoding, lines and parts of lines the reader skips, and
// UTF-8 that the reader will decode as code page 1252.
#include <algorithm>

#include "platform/wide_text.h"
#include "tool/check/check_jobs.h"
#include "tool/common/shown_text.h"

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

// A UTF-8 sequence of two to four bytes at bytes[i], valid and not overlong; its length
// or 0. The replacement character is what a decoder makes of garbage: not a real letter.
std::size_t LetterPastAsciiAt(const std::string& bytes, std::size_t i, std::size_t end) {
  const std::size_t length = Utf8SequenceAt(bytes, i, end);
  return length < 2 || bytes.compare(i, length, "\xEF\xBF\xBD") == 0 ? 0 : length;
}

// The lines of UTF-16 text from byte `begin` on, counted as the reader counts lines (CR,
// LF or CRLF ends one): the reader itself sees none of them in a file it cannot read.
std::size_t Utf16LineCount(const std::string& bytes, std::size_t begin, bool bigEndian) {
  const auto unit = [&bytes, bigEndian](std::size_t i) {
    const unsigned first = static_cast<unsigned char>(bytes[i]);
    const unsigned second = static_cast<unsigned char>(bytes[i + 1]);
    return bigEndian ? first << 8 | second : second << 8 | first;
  };
  std::size_t lines = 0;
  bool open = false;  // a line has begun and not ended
  for (std::size_t i = begin; i + 1 < bytes.size(); i += 2) {
    const unsigned c = unit(i);
    if (c != '\r' && c != '\n') {
      open = true;
      continue;
    }
    if (c == '\r' && i + 3 < bytes.size() && unit(i + 2) == '\n') i += 2;
    ++lines;
    open = false;
  }
  return lines + (open ? 1 : 0);
}

class LayoutCheck final : public LineCheck {
 public:
  explicit LayoutCheck(CheckContext& context) : context_(context) {}

  void Visit(const IniLine& line) override {
    if (line.kind == IniLineKind::Comment) return;  // meant to be ignored
    if (line.beforeFirstSection) BeforeFirstSection(line);
    if (line.textAfterHeader)
      context_.Add(line.number, Severity::Warning, "text-after-header",
                   "the text after the header's closing ']' is ignored (there are no trailing comments)");
    if (line.unclosedHeader)
      context_.Add(line.number, Severity::Warning, "unclosed-header",
                   "the section header has no closing ']': the reader takes the rest of the line as its name");
    if (line.cutAtNul)
      context_.Add(line.number, Severity::Error, "nul-byte",
                   "a NUL byte ends the name or value early; the rest of the line is not read");
  }

 private:
  void BeforeFirstSection(const IniLine& line) {
    if (context_.document.Unit(line.content.begin) == u'#')
      context_.Add(line.number, Severity::Warning, "hash-comment",
                   "a line starting with '#' is not a comment in this file (only ';' starts one); here, above "
                   "the first [section] header, no lookup reaches it anyway; start the line with ';'");
    else
      context_.Add(line.number, Severity::Error, "before-first-section",
                   "this line comes before the first [section] header, where no lookup reaches it");
  }

  CheckContext& context_;
};

// Non-ASCII bytes that form UTF-8 in an ANSI file: the author saved UTF-8, the reader
// decodes code page 1252. One warning per line, showing what the first such character
// becomes.
class Utf8Check final : public LineCheck {
 public:
  explicit Utf8Check(CheckContext& context) : context_(context) {}

  void Visit(const IniLine& line) override {
    if (line.kind == IniLineKind::Comment) return;
    const std::string& bytes = context_.bytes;
    const std::size_t end = line.content.begin + line.content.length;
    for (std::size_t k = line.content.begin; k < end; ++k) {
      if (static_cast<unsigned char>(bytes[k]) < 0x80) continue;
      const std::size_t length = LetterPastAsciiAt(bytes, k, end);
      if (length == 0) continue;
      if (!context_.Keeps()) {
        context_.Count(Severity::Warning);
        return;
      }
      const std::string sequence = bytes.substr(k, length);
      const std::wstring seen = IniDocument::Parse(sequence).Text({0, sequence.size()});
      context_.Add(line.number, Severity::Warning, "utf8-as-ansi",
                   Quoted(Utf8ToWide(sequence)) + " is written in UTF-8, but a file without a byte-order mark is read as code page 1252: " +
                       "the plug-in sees " + Quoted(seen) + "; use ASCII or save as UTF-16LE with a byte-order mark");
      return;
    }
  }

 private:
  CheckContext& context_;
};

// A file in a UTF-16 the reader cannot read is counted in its text's lines; but where the
// reader, taking it as code page 1252, still found a value, its lines are the reader's, so
// that every line the report names is one of them.
void CountUtf16Lines(CheckContext& context, std::size_t begin, bool bigEndian) {
  for (const SettingValue& value : context.report.settings)
    if (value.line != 0) return;
  context.report.lineCount = Utf16LineCount(context.bytes, begin, bigEndian);
}

}  // namespace

bool CheckEncoding(CheckContext& context) {
  const std::string& bytes = context.bytes;
  switch (context.report.encoding) {
    case IniEncoding::Ansi:
      if (bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] != '\0') {
        CountUtf16Lines(context, 0, true);
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
      CountUtf16Lines(context, 0, false);
      context.Add(0, Severity::Error, "encoding",
                  "the file looks like UTF-16LE without a byte-order mark: the reader takes it as code "
                  "page 1252, where the NUL bytes cut every name short, so nothing in it is read; save it "
                  "with a byte-order mark (FF FE)");
      return false;
    case IniEncoding::Utf16BeUnsupported:
      CountUtf16Lines(context, 2, true);
      context.Add(0, Severity::Error, "encoding",
                  "the file is UTF-16BE, which the Windows profile reader does not understand: nothing in "
                  "it is read; save it as UTF-16LE with a byte-order mark or as ANSI");
      return false;
  }
  return true;
}

std::unique_ptr<LineCheck> LineLayoutCheck(CheckContext& context) {
  return std::unique_ptr<LineCheck>(new LayoutCheck(context));
}

std::unique_ptr<LineCheck> Utf8AsAnsiCheck(CheckContext& context) {
  if (context.report.encoding != IniEncoding::Ansi) return nullptr;
  return std::unique_ptr<LineCheck>(new Utf8Check(context));
}

}  // namespace tool
}  // namespace hublet
