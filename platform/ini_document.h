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
  UnclosedHeader,      // a header without ']': its name runs to the line's end
  TextAfterNul,        // a NUL ends the name or value early; the rest is not read
};

// Entries and sections point into the document's text by offset, so that parsing
// allocates nothing per line; IniDocument::Name and Value turn them into strings.
struct IniEntry {
  std::size_t nameBegin;    // outer blanks trimmed, cut at a NUL
  std::size_t nameLength;
  std::size_t valueBegin;   // what follows the first '=': trimmed, quotes kept, cut at a NUL
  std::size_t valueLength;
  std::size_t line;         // 1-based
  bool hasEquals;           // false: a line without '='; lookups of it answer the default
};

struct IniSection {
  std::size_t nameBegin;    // between '[' and the first ']' (or the line end), blanks trimmed
  std::size_t nameLength;
  std::size_t line;
  std::size_t firstEntry;   // the entries under it: see IniDocument::Entries
  std::size_t entryCount;
};

// A section's entries, as a range for range-for.
class IniEntryRange {
 public:
  IniEntryRange(const IniEntry* first, std::size_t count) : first_(first), count_(count) {}
  const IniEntry* begin() const { return first_; }
  const IniEntry* end() const { return first_ + count_; }
  std::size_t size() const { return count_; }

 private:
  const IniEntry* first_;
  std::size_t count_;
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
  // The entries under a header, in file order, duplicates kept.
  IniEntryRange Entries(const IniSection& section) const {
    return IniEntryRange(entries_.data() + section.firstEntry, section.entryCount);
  }
  const std::vector<IniIgnoredLine>& IgnoredLines() const { return ignored_; }

  std::wstring Name(const IniSection& section) const {
    return Widen(section.nameBegin, section.nameLength);
  }
  std::wstring Name(const IniEntry& entry) const {
    return Widen(entry.nameBegin, entry.nameLength);
  }
  std::wstring Value(const IniEntry& entry) const {
    return Widen(entry.valueBegin, entry.valueLength);
  }

  // The entry that a lookup of (section, key) reads, or nullptr. Arguments are taken as
  // the API takes them: cut at a NUL, outer spaces ignored, ASCII letters in any case.
  // A large section gets a key index on its first lookup, so a document must not be
  // looked up from two threads at once.
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
  void AddLine(std::size_t begin, std::size_t end, std::size_t line);
  // The length of text_[begin, end) up to its first NUL.
  std::size_t KeptLength(std::size_t begin, std::size_t end) const;
  void IndexSections();
  const std::vector<std::size_t>& KeyIndex(std::size_t section) const;
  std::wstring Widen(std::size_t begin, std::size_t length) const;

  IniEncoding encoding_;
  std::size_t lineCount_;
  // The whole file, decoded once; names and values are ranges of it. Two-byte units,
  // where a wstring would take four on Linux: the text is the bulk of the document.
  std::u16string text_;
  bool hasNul_;  // if not, names and values need no search for a NUL
  std::vector<IniSection> sections_;
  std::vector<IniEntry> entries_;
  std::vector<IniIgnoredLine> ignored_;
  // Open-addressing hash tables holding an index + 1 (0: free slot), keyed by the
  // ASCII-folded name. Sections: the first header of each name. Keys: built on demand
  // for the first header of a name when it has too many entries to scan, holding the
  // first entry of each name; indexed by section.
  std::vector<std::size_t> sectionSlots_;
  mutable std::vector<std::vector<std::size_t>> keySlots_;
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

// The whole-number reading of GetPrivateProfileIntW applied to a value's text: leading
// characters up to U+0020 skipped, one sign, a lower-case 0x / 0o / 0b prefix, then digits
// until the first that does not fit, wrapping modulo 2^32.
std::uint32_t ParseProfileInt(const std::wstring& text);

}  // namespace hublet
