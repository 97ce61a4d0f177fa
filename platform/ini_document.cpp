#include "platform/ini_document.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace hublet {
namespace {

// Code page 1252 from 0x80 to 0x9F; its five unassigned bytes map to the C1 control of
// the same number, as Windows' MultiByteToWideChar does. Every other byte is Latin-1.
const char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// The largest value length Windows keeps; a longer value's length wraps modulo 65536.
const std::size_t kMaxValueLength = 65535;
// GetPrivateProfileIntW reads the value's text into 30 characters.
const std::size_t kIntBufferSize = 30;
// A section of up to this many entries is searched by comparing its names, which is
// cheaper than indexing it; a larger one gets a key index on its first lookup.
const std::size_t kScanLimit = 32;

// Decoded through a small buffer and appended, so that the large text is written once
// rather than cleared first. Bytes 0x80 to 0x9F are rare: they are patched afterwards,
// which leaves the common loop simple enough to vectorise. Returns whether a NUL occurred.
bool DecodeAnsi(const std::string& bytes, std::u16string& text) {
  text.reserve(bytes.size());
  const unsigned char* const in = reinterpret_cast<const unsigned char*>(bytes.data());
  char16_t chunk[4096];
  bool nul = false;
  for (std::size_t done = 0; done < bytes.size();) {
    const std::size_t count = std::min(bytes.size() - done, sizeof chunk / sizeof chunk[0]);
    unsigned anyBits = 0;
    unsigned smallest = 0xFF;
    for (std::size_t i = 0; i < count; ++i) {
      const unsigned byte = in[done + i];
      chunk[i] = static_cast<char16_t>(byte);
      anyBits |= byte;
      smallest = std::min(smallest, byte);
    }
    for (std::size_t i = 0; (anyBits & 0x80u) != 0 && i < count; ++i) {
      if (chunk[i] - 0x80u < 0x20u) chunk[i] = kCp1252High[chunk[i] - 0x80u];
    }
    nul = nul || smallest == 0;
    text.append(chunk, count);
    done += count;
  }
  return nul;
}

// From offset 2, after the byte-order mark; an odd last byte is dropped. Returns whether
// a NUL occurred.
bool DecodeUtf16Le(const std::string& bytes, std::u16string& text) {
  text.resize((bytes.size() - 2) / 2);
  bool nul = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned low = static_cast<unsigned char>(bytes[2 + 2 * i]);
    const unsigned high = static_cast<unsigned char>(bytes[3 + 2 * i]);
    text[i] = static_cast<char16_t>(low | (high << 8));
    nul |= text[i] == 0;
  }
  return nul;
}

bool StartsWith(const std::string& bytes, const char* mark, std::size_t length) {
  return bytes.size() >= length && bytes.compare(0, length, mark, length) == 0;
}

// The blanks the file reader trims around lines, names and values; Ctrl-Z included, a
// leftover of DOS end-of-file marks.
bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r' ||
         c == 0x1A;
}

void TrimBlanks(const char16_t* text, std::size_t& begin, std::size_t& end) {
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
}

// Names and values are C strings inside Windows: a NUL ends them. The length kept.
template <class Char>
std::size_t LengthToNul(const Char* text, std::size_t begin, std::size_t end) {
  return static_cast<std::size_t>(std::find(text + begin, text + end, Char()) - (text + begin));
}

// A name or value: in the document's text, or in a caller's argument.
template <class Char>
struct Span {
  const Char* data;
  std::size_t length;
};
using TextSpan = Span<char16_t>;

// Profile names compare case-insensitively for ASCII letters only.
template <class Char>
std::uint32_t FoldAscii(Char c) {
  const std::uint32_t unit = static_cast<std::uint32_t>(c);
  return unit - 0x41u < 26u ? unit | 0x20u : unit;
}

template <class Char>
bool SameName(TextSpan stored, Span<Char> wanted) {
  if (stored.length != wanted.length) return false;
  for (std::size_t i = 0; i < stored.length; ++i) {
    if (FoldAscii(stored.data[i]) != FoldAscii(wanted.data[i])) return false;
  }
  return true;
}

// FNV-1a over the folded units.
template <class Char>
std::size_t HashName(Span<Char> name) {
  std::uint64_t hash = 14695981039346656037ull;
  for (std::size_t i = 0; i < name.length; ++i) {
    hash = (hash ^ FoldAscii(name.data[i])) * 1099511628211ull;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

// A table for `count` names: a power of two, at most half full, so probes end.
std::size_t SlotCount(std::size_t count) {
  std::size_t slots = 8;
  while (slots < 2 * count) slots *= 2;
  return slots;
}

// The slot holding an item named `name`, or the free slot where it would go. Slots hold
// an item number + 1; nameOf gives an item's name.
template <class Char, class NameOf>
std::size_t SlotOf(const std::vector<std::size_t>& slots, Span<Char> name,
                   const NameOf& nameOf) {
  const std::size_t mask = slots.size() - 1;
  for (std::size_t i = HashName(name) & mask;; i = (i + 1) & mask) {
    const std::size_t held = slots[i];
    if (held == 0 || SameName(nameOf(held - 1), name)) return i;
  }
}

// Items first..first+count into fresh slots; of equal names, the first keeps its slot.
template <class NameOf>
std::vector<std::size_t> BuildSlots(std::size_t first, std::size_t count,
                                    const NameOf& nameOf) {
  std::vector<std::size_t> slots(SlotCount(count), 0);
  for (std::size_t item = first; item < first + count; ++item) {
    const std::size_t slot = SlotOf(slots, nameOf(item), nameOf);
    if (slots[slot] == 0) slots[slot] = item + 1;
  }
  return slots;
}

// A caller's argument as Windows takes it: a C string with its outer spaces (only
// spaces, not tabs) ignored.
Span<wchar_t> ArgumentName(const std::wstring& argument) {
  std::size_t begin = 0;
  std::size_t end = LengthToNul(argument.data(), 0, argument.size());
  while (begin < end && argument[begin] == L' ') ++begin;
  while (end > begin && argument[end - 1] == L' ') --end;
  return {argument.data() + begin, end - begin};
}

// What the API copies into a buffer of `size` characters for a found value: one pair of
// matching outer quotes is dropped, and the text is cut to size - 1 characters. The cut
// is taken before the closing quote is dropped, so when exactly the inner text fills the
// buffer its last character is lost too.
TextSpan CopiedPart(TextSpan value, std::size_t size) {
  std::size_t begin = 0;
  bool quoted = false;
  if (value.length >= 2 && (value.data[0] == u'"' || value.data[0] == u'\'') &&
      value.data[value.length - 1] == value.data[0]) {
    quoted = true;
    begin = 1;
  }
  const std::size_t rest = value.length - begin;
  std::size_t copied = std::min(rest, size - 1);
  if (quoted && size >= rest && copied > 0) --copied;
  return {value.data + begin, copied};
}

// A value as Windows keeps it: a longer one's length wraps modulo 65536.
TextSpan StoredValue(const std::u16string& text, const IniEntry& entry) {
  std::size_t length = entry.valueLength;
  if (length > kMaxValueLength) length %= kMaxValueLength + 1;
  return {text.data() + entry.valueBegin, length};
}

template <class Char>
std::uint32_t ParseInt(const Char* text, std::size_t size) {
  std::size_t i = 0;
  while (i < size && static_cast<std::uint32_t>(text[i]) <= 0x20) ++i;
  bool negative = false;
  if (i < size && (text[i] == '+' || text[i] == '-')) {
    negative = text[i] == '-';
    ++i;
  }
  std::uint32_t base = 10;
  if (i + 1 < size && text[i] == '0') {
    const Char mark = text[i + 1];
    if (mark == 'x') base = 16;
    if (mark == 'o') base = 8;
    if (mark == 'b') base = 2;
    if (base != 10) i += 2;
  }
  std::uint32_t total = 0;
  for (; i < size; ++i) {
    const Char c = text[i];
    std::uint32_t digit = 36;
    if (c >= '0' && c <= '9') digit = static_cast<std::uint32_t>(c - '0');
    if (c >= 'a' && c <= 'z') digit = static_cast<std::uint32_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'Z') digit = static_cast<std::uint32_t>(c - 'A' + 10);
    if (digit >= base) break;
    total = total * base + digit;
  }
  return negative ? 0u - total : total;
}

}  // namespace

IniDocument::IniDocument() : encoding_(IniEncoding::Ansi), lineCount_(0), hasNul_(false) {}

IniDocument IniDocument::Parse(const std::string& bytes) {
  IniDocument document;
  std::u16string& text = document.text_;
  if (StartsWith(bytes, "\xFF\xFE", 2)) {
    document.encoding_ = IniEncoding::Utf16Le;
    document.hasNul_ = DecodeUtf16Le(bytes, text);
  } else if (StartsWith(bytes, "\xFE\xFF", 2)) {
    document.encoding_ = IniEncoding::Utf16BeUnsupported;
    return document;
  } else {
    if (StartsWith(bytes, "\xEF\xBB\xBF", 3)) {
      document.encoding_ = IniEncoding::Utf8BomAsAnsi;
    } else if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0') {
      document.encoding_ = IniEncoding::Utf16LeNoBom;
    }
    document.hasNul_ = DecodeAnsi(bytes, text);
  }

  // Lines end at CR LF, at a lone CR or at a lone LF. Room for an entry per line, as
  // far as LFs tell, saves copying the entries as they grow.
  const char16_t* const data = text.data();
  const std::size_t size = text.size();
  document.entries_.reserve(static_cast<std::size_t>(std::count(data, data + size, u'\n')) + 1);
  std::size_t line = 0;
  std::size_t begin = 0;
  while (begin < size) {
    std::size_t end = begin;
    while (end < size && data[end] != u'\r' && data[end] != u'\n') ++end;
    document.AddLine(begin, end, ++line);
    begin = end + 1;
    if (end + 1 < size && data[end] == u'\r' && data[end + 1] == u'\n') ++begin;
  }
  document.lineCount_ = line;
  document.IndexSections();
  return document;
}

void IniDocument::AddLine(std::size_t begin, std::size_t end, std::size_t line) {
  const char16_t* const text = text_.data();
  TrimBlanks(text, begin, end);
  if (begin == end) return;

  if (text[begin] == u'[') {
    // The name ends at the first ']'; without one, a header still runs to the line end.
    std::size_t close = begin + 1;
    while (close < end && text[close] != u']') ++close;
    if (close + 1 < end) ignored_.push_back({line, IniIgnoreReason::TextAfterHeader});
    if (close == end) ignored_.push_back({line, IniIgnoreReason::UnclosedHeader});
    std::size_t nameBegin = begin + 1;
    std::size_t nameEnd = close;
    TrimBlanks(text, nameBegin, nameEnd);
    const std::size_t nameLength = KeptLength(nameBegin, nameEnd);
    if (nameLength != nameEnd - nameBegin) {
      ignored_.push_back({line, IniIgnoreReason::TextAfterNul});
    }
    sections_.push_back({nameBegin, nameLength, line, entries_.size(), 0});
    return;
  }
  if (text[begin] == u';') {
    ignored_.push_back({line, IniIgnoreReason::Comment});
    return;
  }
  if (sections_.empty()) {
    ignored_.push_back({line, IniIgnoreReason::BeforeFirstSection});
    return;
  }

  std::size_t equals = begin;
  while (equals < end && text[equals] != u'=') ++equals;
  std::size_t nameEnd = equals;
  TrimBlanks(text, begin, nameEnd);
  IniEntry entry{begin, KeptLength(begin, nameEnd), equals, 0, line, equals < end};
  bool cut = entry.nameLength != nameEnd - begin;
  if (entry.hasEquals) {
    entry.valueBegin = equals + 1;
    TrimBlanks(text, entry.valueBegin, end);
    entry.valueLength = KeptLength(entry.valueBegin, end);
    cut = cut || entry.valueLength != end - entry.valueBegin;
  }
  if (cut) ignored_.push_back({line, IniIgnoreReason::TextAfterNul});
  entries_.push_back(entry);
  ++sections_.back().entryCount;
}

std::size_t IniDocument::KeptLength(std::size_t begin, std::size_t end) const {
  return hasNul_ ? LengthToNul(text_.data(), begin, end) : end - begin;
}

void IniDocument::IndexSections() {
  if (sections_.empty()) return;
  sectionSlots_ = BuildSlots(0, sections_.size(), [this](std::size_t i) {
    return TextSpan{text_.data() + sections_[i].nameBegin, sections_[i].nameLength};
  });
}

const std::vector<std::size_t>& IniDocument::KeyIndex(std::size_t section) const {
  if (keySlots_.empty()) keySlots_.resize(sections_.size());
  std::vector<std::size_t>& slots = keySlots_[section];
  if (slots.empty()) {
    const IniSection& header = sections_[section];
    slots = BuildSlots(header.firstEntry, header.entryCount, [this](std::size_t i) {
      return TextSpan{text_.data() + entries_[i].nameBegin, entries_[i].nameLength};
    });
  }
  return slots;
}

std::wstring IniDocument::Widen(std::size_t begin, std::size_t length) const {
  const char16_t* const first = text_.data() + begin;
  return std::wstring(first, first + length);
}

const IniEntry* IniDocument::Find(const std::wstring& section,
                                  const std::wstring& key) const {
  if (sectionSlots_.empty()) return nullptr;
  const char16_t* const text = text_.data();
  const std::size_t sectionSlot =
      SlotOf(sectionSlots_, ArgumentName(section), [&](std::size_t i) {
        return TextSpan{text + sections_[i].nameBegin, sections_[i].nameLength};
      });
  if (sectionSlots_[sectionSlot] == 0) return nullptr;
  const std::size_t index = sectionSlots_[sectionSlot] - 1;
  const IniSection& header = sections_[index];
  const Span<wchar_t> wanted = ArgumentName(key);
  const auto entryName = [&](std::size_t i) {
    return TextSpan{text + entries_[i].nameBegin, entries_[i].nameLength};
  };

  if (header.entryCount <= kScanLimit) {
    for (std::size_t i = header.firstEntry; i < header.firstEntry + header.entryCount; ++i) {
      if (SameName(entryName(i), wanted)) return &entries_[i];
    }
    return nullptr;
  }
  const std::vector<std::size_t>& slots = KeyIndex(index);
  const std::size_t held = slots[SlotOf(slots, wanted, entryName)];
  return held == 0 ? nullptr : &entries_[held - 1];
}

std::wstring IniDocument::LookupText(const std::wstring& section, const std::wstring& key,
                                     const std::wstring& defaultValue,
                                     std::size_t bufferSize) const {
  if (bufferSize == 0) return std::wstring();
  const IniEntry* entry = Find(section, key);
  if (entry != nullptr && entry->hasEquals) {
    const TextSpan part = CopiedPart(StoredValue(text_, *entry), bufferSize);
    return std::wstring(part.data, part.data + part.length);
  }
  // The default loses its trailing spaces (though never its first character) and is
  // otherwise copied as given, quotes included.
  std::size_t length = std::min(defaultValue.find(L'\0'), defaultValue.size());
  while (length > 1 && defaultValue[length - 1] == L' ') --length;
  return defaultValue.substr(0, std::min(length, bufferSize - 1));
}

std::uint32_t IniDocument::LookupInt(const std::wstring& section, const std::wstring& key,
                                     std::int32_t defaultValue) const {
  // The text a lookup into kIntBufferSize characters would leave, parsed in place.
  const IniEntry* entry = Find(section, key);
  if (entry == nullptr || !entry->hasEquals) return static_cast<std::uint32_t>(defaultValue);
  const TextSpan part = CopiedPart(StoredValue(text_, *entry), kIntBufferSize);
  if (part.length == 0) return static_cast<std::uint32_t>(defaultValue);
  return ParseInt(part.data, part.length);
}

std::uint32_t ParseProfileInt(const std::wstring& text) {
  return ParseInt(text.data(), text.size());
}

}  // namespace hublet
