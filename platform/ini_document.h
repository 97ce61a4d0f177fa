#pragma once
// A preference file as the Windows profile API sees it. Parse() reads the bytes once,
// with Windows' rules (code page 1252 or UTF-16LE with its byte-order mark; headers cut
// at the first ']'; ';' lines are comments; entries above the first header are out of
// reach); the Lookup functions then answer what GetPrivateProfileIntW and
// GetPrivateProfileStringW would. Line numbers are kept so that a checker can point at
// what the lookups see and what they skip.
//
// Wide strings hold UTF-16 code units, as everywhere in this project.
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
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

enum class IniIgnoreReason {
  Comment,             // the line starts with ';'
  BeforeFirstSection,  // an entry above the first header, which no section name reaches
  TextAfterHeader,     // characters after the header's closing ']'
  TextAfterNul,        // a NUL ends the name or value early; the rest is not read
};

struct IniEntry {
  std::wstring name;   // outer blanks trimmed, cut at a NUL
  std::wstring value;  // what follows the first '=': trimmed, quotes kept, cut at a NUL
  bool hasEquals;      // false: a line without '='; lookups of it answer the default
  std::size_t line;    // 1-based
};

struct IniSection {
  std::wstring name;  // between '[' and the first ']' (or the line end), blanks trimmed
  std::size_t line;
  std::vector<IniEntry> entries;  // in file order, duplicates kept
};

struct IniIgnoredLine {
  std::size_t line;
  IniIgnoreReason reason;
};

class IniDocument {
 public:
  // The empty document: every lookup answers its default.
  IniDocument();

  // Never fails; bytes that the profile API cannot read make an empty document.
  static IniDocument Parse(const std::string& bytes);

  IniEncoding Encoding() const { return encoding_; }
  std::size_t LineCount() const { return lineCount_; }
  // Every header in file order, repeated names included; lookups use the first of a name.
  const std::vector<IniSection>& Sections() const { return sections_; }
  const std::vector<IniIgnoredLine>& IgnoredLines() const { return ignored_; }

  // The entry that a lookup of (section, key) reads, or nullptr. Arguments are taken as
  // the API takes them: cut at a NUL, outer spaces ignored, ASCII letters in any case.
  const IniEntry* Find(const std::wstring& section, const std::wstring& key) const;

  // As GetPrivateProfileIntW: the UINT it returns.
  std::uint32_t LookupInt(const std::wstring& section, const std::wstring& key,
                          std::int32_t defaultValue) const;
  // As GetPrivateProfileStringW into a buffer of bufferSize characters: the text it
  // leaves there (its length is the count the call returns).
  std::wstring LookupText(const std::wstring& section, const std::wstring& key,
                          const std::wstring& defaultValue,
                          std::size_t bufferSize = 260) const;

 private:
  void AddLine(const std::wstring& text, std::size_t begin, std::size_t end,
               std::size_t line);

  IniEncoding encoding_;
  std::size_t lineCount_;
  std::vector<IniSection> sections_;
  std::vector<IniIgnoredLine> ignored_;
  // Folded section name -> index of its first header.
  std::unordered_map<std::wstring, std::size_t> sectionIndex_;
  // Folded section name, NUL, folded key name -> (section, entry) of the first occurrence
  // within the first header of that name.
  std::unordered_map<std::wstring, std::pair<std::size_t, std::size_t>> keyIndex_;
  // Whether entries now being read belong to the first header of their name.
  bool indexingCurrent_;
};

// A profile reader answering from a parsed document: the POSIX reader, and anything that
// holds a file's bytes already (the checker, the fuzzer).
class IniDocumentReader final : public ProfileReader {
 public:
  explicit IniDocumentReader(IniDocument document) : document_(std::move(document)) {}
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

// The whole-number reading of GetPrivateProfileIntW applied to a value's text: leading
// characters up to U+0020 skipped, one sign, a lower-case 0x / 0o / 0b prefix, then digits
// until the first that does not fit, wrapping modulo 2^32.
std::uint32_t ParseProfileInt(const std::wstring& text);

}  // namespace hublet
