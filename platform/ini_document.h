#pragma once
// A preference file as the Windows profile API sees it: code page 1252 or UTF-16LE with
// its byte-order mark; headers cut at the first ']'; ';' lines are comments; entries above
// the first header are out of reach; a lookup reads the first entry of its name under the
// first header of its section's name. The Lookup functions answer what
// GetPrivateProfileIntW and GetPrivateProfileStringW would; ForEachLine shows a checker
// every line as the reader takes it.
//
// The document keeps the file's bytes and nothing per line, so that it takes the file's
// size in memory whatever the file holds (a million tiny lines included): each walk
// classifies the lines afresh. A lookup in a section walks the text and remembers the
// first entry of every name in that section, up to a thousand entries: for a preference
// file that is all of them, and later lookups in the section walk nothing. In a larger
// section a lookup that misses walks again; Prepare answers many lookups in one walk.
//
// Wide strings hold UTF-16 code units, as everywhere in this project.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/profile.h"

namespace hublet {

enum class IniEncoding {
  Ansi,                // no byte-order mark: code page 1252
  Utf16Le,             // FF FE
  Utf8BomAsAnsi,       // EF BB BF, which Windows does not know: read as code page 1252,
                       // the mark's bytes become the start of line 1
  Utf16LeNoBom,        // looks like UTF-16LE without its mark: read as code page 1252,
                       // where the NUL bytes cut every name short
  Utf16BeUnsupported,  // FE FF: Windows reads nothing from it
};

// A stretch of the text, counted in its units: bytes for code page 1252, UTF-16 code
// units for UTF-16LE (from after the mark).
struct IniSpan {
  std::size_t begin;
  std::size_t length;
};

enum class IniLineKind {
  Blank,    // nothing but blanks
  Comment,  // starts with ';'
  Header,   // starts with '['
  Entry,    // anything else: a key, with or without '='
};

// One line as the reader takes it.
struct IniLine {
  std::size_t number;  // 1-based
  IniLineKind kind;
  IniSpan content;     // the line without its outer blanks
  // A header's name: between '[' and the first ']' (or the line end). An entry's: before
  // the first '='. Blanks trimmed, cut at a NUL.
  IniSpan name;
  IniSpan value;             // after the first '=': trimmed, quotes kept, cut at a NUL
  bool hasEquals;            // false: a line without '='; lookups of it answer the default
  bool beforeFirstSection;   // an entry above the first header, which no lookup reaches
                             // (its name and value are left empty)
  bool textAfterHeader;      // characters after the header's closing ']'
  bool unclosedHeader;       // a header without ']': its name runs to the line's end
  bool cutAtNul;             // a NUL ends the name or value early; the rest is not read
};

// What a lookup of a section and key reads.
struct IniFound {
  std::size_t line;  // the entry's line; 0 when there is none
  bool hasEquals;
  IniSpan value;
};

class IniDocument {
 public:
  // The empty document: every lookup answers its default.
  IniDocument();

  // Never fails; bytes that the profile API cannot read make a document without lines.
  // The document keeps the bytes: move them in when the caller is done with them.
  static IniDocument Parse(std::string bytes);

  IniEncoding Encoding() const { return encoding_; }
  std::size_t LineCount() const { return lineCount_; }
  // The file as given.
  const std::string& Bytes() const { return bytes_; }

  // Every line, in file order.
  void ForEachLine(const std::function<void(const IniLine&)>& visit) const;

  // A span's text, at most limit units of it.
  std::wstring Text(IniSpan span, std::size_t limit = static_cast<std::size_t>(-1)) const;
  // The unit at a position: what the reader decodes there.
  char16_t Unit(std::size_t at) const;
  // Whether a span holds name, matched as the API matches names: ASCII letters in any case.
  bool NameIs(IniSpan span, const std::wstring& name) const;

  // What a lookup of (section, key) reads. Arguments are taken as the API takes them: cut
  // at a NUL, outer spaces ignored, ASCII letters in any case. Answers are remembered, so
  // a document must not be looked up from two threads at once.
  IniFound Find(const std::wstring& section, const std::wstring& key) const;
  // Finds these (section, key) pairs in one walk, for lookups to come.
  void Prepare(const std::vector<std::pair<std::wstring, std::wstring>>& lookups) const;

  // As GetPrivateProfileIntW: the UINT it returns.
  std::uint32_t LookupInt(const std::wstring& section, const std::wstring& key,
                          std::int32_t defaultValue) const;
  // As GetPrivateProfileStringW into a buffer of bufferSize characters: the text it
  // leaves there (its length is the count the call returns).
  std::wstring LookupText(const std::wstring& section, const std::wstring& key,
                          const std::wstring& defaultValue,
                          std::size_t bufferSize = 260) const;

 private:
  std::string bytes_;
  IniEncoding encoding_;
  std::size_t lineCount_;
  std::size_t unitCount_;  // 0 when nothing of the file is read
  bool hasNul_;            // if not, names and values need no search for a NUL
  // Lookups answered so far, by folded section name, a NUL and folded key name.
  mutable std::unordered_map<std::wstring, IniFound> found_;
  // Folded names of the sections whose every key found_ holds.
  mutable std::unordered_set<std::wstring> completeSections_;
  // The key of found_ being built, kept so that a lookup allocates nothing.
  mutable std::wstring memo_;
};

// A profile reader answering from a parsed document: the POSIX reader, and anything that
// holds a file's bytes already (the checker, the fuzzer).
class IniDocumentReader final : public ProfileReader {
 public:
  explicit IniDocumentReader(IniDocument document) : document_(std::move(document)) {}
  const IniDocument& Document() const { return document_; }
  std::uint32_t ReadInt(const std::wstring& section, const std::wstring& key,
                        std::int32_t defaultValue) override {
    return document_.LookupInt(section, key, defaultValue);
  }
  std::wstring ReadText(const std::wstring& section, const std::wstring& key,
                        const std::wstring& defaultValue) override {
    return document_.LookupText(section, key, defaultValue);
  }

 private:
  IniDocument document_;
};

// How GetPrivateProfileIntW reads a whole number from a value's text: leading characters
// up to U+0020 skipped, one sign, a lower-case 0x / 0o / 0b prefix, then digits until the
// first that does not fit, wrapping modulo 2^32.
struct ProfileIntReading {
  std::uint32_t value;  // what the API returns
  bool anyDigit;        // false: the text holds no number, and reads 0
  bool wraps;           // the number written does not fit 32 signed bits: value is another
  std::size_t end;      // the first character not read
};
ProfileIntReading ReadProfileInt(const std::wstring& text);

}  // namespace hublet
