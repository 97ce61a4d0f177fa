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
// classifies the lines afresh. What lookups learn on their walks is remembered, within
// bounds (IniLookupMemo), so that a preference file is walked about once.
//
// Wide strings hold UTF-16 code units, as everywhere in this project. The reader's parts:
// ini_text (encodings, units, lines), ini_lookup_memo (the walks of lookups),
// ini_document (the document and the API's answers).
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
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

// A place in the text: the start of a line and the number of lines before it.
struct IniCursor {
  std::size_t at;
  std::size_t lines;
};

struct IniUnits;

// A name folded for comparison: its units in a buffer of the memo's (the names of its
// records, or of the lookups at hand), and their hash.
struct IniName {
  std::uint64_t hash;
  std::size_t at;
  std::size_t length;
};

// What lookups in a document have learnt of it; the document's own. The first lookup in a
// section walks from the start of the file to that section's first header, noting the
// first header of every name on the way (up to a thousand names), then the section's
// body, remembering the first entry of every name (up to a thousand entries). A lookup in
// a section whose header was noted walks only that section's body; in a section
// remembered whole, nothing. In a larger section a lookup that misses walks the body
// again; Prepare answers many lookups with one walk of each section's body.
class IniLookupMemo {
 public:
  IniLookupMemo();
  IniFound Find(const IniUnits& text, const std::wstring& section, const std::wstring& key);
  void Prepare(const IniUnits& text,
               const std::vector<std::pair<std::wstring, std::wstring>>& lookups);

 private:
  enum class State : unsigned char { Sought, Found, Missing };
  struct Section {
    IniName name;
    State state;
    IniCursor body;       // the line after its first header, once found
    bool remembered;      // its body has been walked
    bool whole;           // and every entry of it is remembered
    bool walk;            // a walk of its body is due for the lookups at hand
    std::size_t room;     // entries its first walk may still remember
    std::size_t sought;   // keys of the lookups at hand not yet met in it
    std::uint64_t soughtLengths;  // bit n: a key sought is n units long
    std::size_t longestSought;
  };
  struct Entry {
    std::size_t section;
    IniName name;
    IniFound found;  // line 0: the section has no entry of that name
    bool sought;     // a key of the lookups at hand, not yet met
  };
  struct Asked {
    IniName section;
    IniName key;
  };

  const IniFound* Answer(const IniUnits& text, const Asked& asked) const;
  void Learn(const IniUnits& text, const Asked* asked, std::size_t count);
  void Discover(const IniUnits& text);
  std::size_t OnHeader(const IniUnits& text, const IniLine& header, IniCursor at, IniCursor body);
  IniCursor WalkBody(const IniUnits& text, std::size_t section);
  void Remember(const IniUnits& text, std::size_t section, const IniLine& entry);
  void EndWalk(std::size_t section);

  IniName Fold(const IniUnits& text, IniSpan span);
  IniName Stash(const IniName& asked);
  std::size_t FindSection(const std::wstring& units, const IniName& name) const;
  std::size_t FindEntry(std::size_t section, const std::wstring& units, const IniName& name) const;
  std::size_t AddSection(const IniName& name, State state, IniCursor body);
  std::size_t AddEntry(std::size_t section, const IniName& name, const IniFound& found, bool sought);

  std::vector<Section> sections_;
  std::vector<Entry> entries_;
  // Open addressing over sections_ and entries_: a record's index + 1, 0 when free.
  std::vector<std::uint32_t> sectionSlots_;
  std::vector<std::uint32_t> entrySlots_;
  std::wstring names_;  // the units of the records' names
  std::wstring asked_;  // the units of the lookups at hand
  // Every header before it has its name's first header in sections_; it moves on while
  // indexing_, which stops at a name too many or too long.
  IniCursor discovered_;
  bool indexing_;
  std::size_t indexed_;
  std::size_t soughtSections_;
  std::size_t longestSoughtSection_;
  std::vector<std::size_t> walking_;        // sections of the lookups at hand
  std::vector<std::size_t> soughtEntries_;  // their entries of the lookups at hand
};

class IniDocument {
 public:
  // The empty document: every lookup answers its default.
  IniDocument();

  // Never fails; bytes that the profile API cannot read make a document without lines.
  // The document keeps the bytes: move them in when the caller is done with them.
  static IniDocument Parse(std::string bytes);

  IniEncoding Encoding() const { return encoding_; }
  std::size_t LineCount() const;
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
  IniUnits Units() const;

  std::string bytes_;
  IniEncoding encoding_;
  std::size_t unitCount_;         // 0 when nothing of the file is read
  bool hasNul_;
  mutable std::size_t lineCount_;  // counted when first asked
  mutable IniLookupMemo memo_;
};

// A profile reader answering from a parsed document: the POSIX reader, and anything that
// holds a file's bytes already (the checker, the fuzzer).
class IniDocumentReader final : public ProfileReader {
 public:
  explicit IniDocumentReader(IniDocument document)
      : document_(std::make_shared<const IniDocument>(std::move(document))) {}
  // A document that other readers share (the replay's, kept for many passes).
  explicit IniDocumentReader(std::shared_ptr<const IniDocument> document) : document_(std::move(document)) {}
  const IniDocument& Document() const { return *document_; }
  std::uint32_t ReadInt(const std::wstring& section, const std::wstring& key,
                        std::int32_t defaultValue) override {
    return document_->LookupInt(section, key, defaultValue);
  }
  std::wstring ReadText(const std::wstring& section, const std::wstring& key,
                        const std::wstring& defaultValue) override {
    return document_->LookupText(section, key, defaultValue);
  }

 private:
  std::shared_ptr<const IniDocument> document_;
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
