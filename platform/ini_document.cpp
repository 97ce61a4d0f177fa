#include "platform/ini_document.h"

#include <algorithm>
#include <cstddef>

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

std::wstring DecodeAnsi(const std::string& bytes) {
  std::wstring text(bytes.size(), L'\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const unsigned char byte = static_cast<unsigned char>(bytes[i]);
    text[i] = static_cast<wchar_t>(byte >= 0x80 && byte < 0xA0 ? kCp1252High[byte - 0x80]
                                                               : byte);
  }
  return text;
}

// From offset 2, after the byte-order mark; an odd last byte is dropped.
std::wstring DecodeUtf16Le(const std::string& bytes) {
  std::wstring text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const unsigned low = static_cast<unsigned char>(bytes[i]);
    const unsigned high = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<wchar_t>(low | (high << 8));
  }
  return text;
}

bool StartsWith(const std::string& bytes, const char* mark, std::size_t length) {
  return bytes.size() >= length && bytes.compare(0, length, mark, length) == 0;
}

// The blanks the file reader trims around lines, names and values; Ctrl-Z included, a
// leftover of DOS end-of-file marks.
bool IsBlank(wchar_t c) {
  return c == L' ' || c == L'\t' || c == L'\n' || c == L'\v' || c == L'\f' ||
         c == L'\r' || c == 0x1A;
}

void TrimBlanks(const std::wstring& text, std::size_t& begin, std::size_t& end) {
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
}

// Names and values are C strings inside Windows: a NUL ends them.
std::wstring CutAtNul(const std::wstring& text, std::size_t begin, std::size_t end,
                      bool& cut) {
  const auto first = text.begin() + static_cast<std::ptrdiff_t>(begin);
  const auto last = text.begin() + static_cast<std::ptrdiff_t>(end);
  const auto nul = std::find(first, last, L'\0');
  cut = nul != last;
  return std::wstring(first, nul);
}

// Profile names compare case-insensitively for ASCII letters only.
std::wstring FoldAscii(std::wstring name) {
  for (wchar_t& c : name) {
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
  }
  return name;
}

// A caller's argument as Windows takes it: a C string with its outer spaces (only
// spaces, not tabs) ignored, folded for comparison.
std::wstring ArgumentKey(const std::wstring& argument) {
  const std::size_t length = std::min(argument.find(L'\0'), argument.size());
  std::size_t begin = 0;
  std::size_t end = length;
  while (begin < end && argument[begin] == L' ') ++begin;
  while (end > begin && argument[end - 1] == L' ') --end;
  return FoldAscii(argument.substr(begin, end - begin));
}

// What the API copies into a buffer of `size` characters for a found value: one pair of
// matching outer quotes is dropped, and the text is cut to size - 1 characters. The cut
// is taken before the closing quote is dropped, so when exactly the inner text fills the
// buffer its last character is lost too.
std::wstring CopyValue(const std::wstring& value, std::size_t size) {
  std::size_t begin = 0;
  bool quoted = false;
  if (value.size() >= 2 && (value[0] == L'"' || value[0] == L'\'') &&
      value.back() == value[0]) {
    quoted = true;
    begin = 1;
  }
  const std::size_t rest = value.size() - begin;
  std::size_t copied = std::min(rest, size - 1);
  if (quoted && size >= rest && copied > 0) --copied;
  return value.substr(begin, copied);
}

}  // namespace

IniDocument::IniDocument()
    : encoding_(IniEncoding::Ansi), lineCount_(0), indexingCurrent_(false) {}

IniDocument IniDocument::Parse(const std::string& bytes) {
  IniDocument document;
  std::wstring text;
  if (StartsWith(bytes, "\xFF\xFE", 2)) {
    document.encoding_ = IniEncoding::Utf16Le;
    text = DecodeUtf16Le(bytes);
  } else if (StartsWith(bytes, "\xFE\xFF", 2)) {
    document.encoding_ = IniEncoding::Utf16BeUnsupported;
    return document;
  } else {
    if (StartsWith(bytes, "\xEF\xBB\xBF", 3)) {
      document.encoding_ = IniEncoding::Utf8BomAsAnsi;
    } else if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0') {
      document.encoding_ = IniEncoding::Utf16LeNoBom;
    }
    text = DecodeAnsi(bytes);
  }

  // Lines end at CR LF, at a lone CR or at a lone LF.
  const std::size_t size = text.size();
  std::size_t line = 0;
  std::size_t begin = 0;
  while (begin < size) {
    std::size_t end = begin;
    while (end < size && text[end] != L'\r' && text[end] != L'\n') ++end;
    document.AddLine(text, begin, end, ++line);
    begin = end + 1;
    if (end + 1 < size && text[end] == L'\r' && text[end + 1] == L'\n') ++begin;
  }
  document.lineCount_ = line;
  return document;
}

void IniDocument::AddLine(const std::wstring& text, std::size_t begin, std::size_t end,
                          std::size_t line) {
  TrimBlanks(text, begin, end);
  if (begin == end) return;
  bool cut = false;

  if (text[begin] == L'[') {
    // The name ends at the first ']'; without one, a header still runs to the line end.
    std::size_t close = begin + 1;
    while (close < end && text[close] != L']') ++close;
    if (close + 1 < end) ignored_.push_back({line, IniIgnoreReason::TextAfterHeader});
    std::size_t nameBegin = begin + 1;
    std::size_t nameEnd = close;
    TrimBlanks(text, nameBegin, nameEnd);
    IniSection section{CutAtNul(text, nameBegin, nameEnd, cut), line, {}};
    if (cut) ignored_.push_back({line, IniIgnoreReason::TextAfterNul});
    const bool first =
        sectionIndex_.emplace(FoldAscii(section.name), sections_.size()).second;
    indexingCurrent_ = first;
    sections_.push_back(std::move(section));
    return;
  }
  if (text[begin] == L';') {
    ignored_.push_back({line, IniIgnoreReason::Comment});
    return;
  }
  if (sections_.empty()) {
    ignored_.push_back({line, IniIgnoreReason::BeforeFirstSection});
    return;
  }

  std::size_t equals = begin;
  while (equals < end && text[equals] != L'=') ++equals;
  std::size_t nameEnd = equals;
  TrimBlanks(text, begin, nameEnd);
  IniEntry entry{CutAtNul(text, begin, nameEnd, cut), std::wstring(), equals < end, line};
  bool valueCut = false;
  if (entry.hasEquals) {
    std::size_t valueBegin = equals + 1;
    TrimBlanks(text, valueBegin, end);
    entry.value = CutAtNul(text, valueBegin, end, valueCut);
  }
  if (cut || valueCut) ignored_.push_back({line, IniIgnoreReason::TextAfterNul});

  IniSection& section = sections_.back();
  if (indexingCurrent_) {
    std::wstring key = FoldAscii(section.name);
    key += L'\0';
    key += FoldAscii(entry.name);
    keyIndex_.emplace(std::move(key),
                      std::make_pair(sections_.size() - 1, section.entries.size()));
  }
  section.entries.push_back(std::move(entry));
}

const IniEntry* IniDocument::Find(const std::wstring& section,
                                  const std::wstring& key) const {
  std::wstring folded = ArgumentKey(section);
  folded += L'\0';
  folded += ArgumentKey(key);
  const auto found = keyIndex_.find(folded);
  if (found == keyIndex_.end()) return nullptr;
  return &sections_[found->second.first].entries[found->second.second];
}

std::wstring IniDocument::LookupText(const std::wstring& section, const std::wstring& key,
                                     const std::wstring& defaultValue,
                                     std::size_t bufferSize) const {
  if (bufferSize == 0) return std::wstring();
  const IniEntry* entry = Find(section, key);
  if (entry != nullptr && entry->hasEquals) {
    const std::wstring& value = entry->value;
    if (value.size() <= kMaxValueLength) return CopyValue(value, bufferSize);
    return CopyValue(value.substr(0, value.size() % (kMaxValueLength + 1)), bufferSize);
  }
  // The default loses its trailing spaces (though never its first character) and is
  // otherwise copied as given, quotes included.
  std::size_t length = std::min(defaultValue.find(L'\0'), defaultValue.size());
  while (length > 1 && defaultValue[length - 1] == L' ') --length;
  return defaultValue.substr(0, std::min(length, bufferSize - 1));
}

std::uint32_t IniDocument::LookupInt(const std::wstring& section, const std::wstring& key,
                                     std::int32_t defaultValue) const {
  const std::wstring text = LookupText(section, key, std::wstring(), kIntBufferSize);
  if (text.empty()) return static_cast<std::uint32_t>(defaultValue);
  return ParseProfileInt(text);
}

std::uint32_t ParseProfileInt(const std::wstring& text) {
  const std::size_t size = text.size();
  std::size_t i = 0;
  while (i < size && static_cast<std::uint32_t>(text[i]) <= 0x20) ++i;
  bool negative = false;
  if (i < size && (text[i] == L'+' || text[i] == L'-')) {
    negative = text[i] == L'-';
    ++i;
  }
  std::uint32_t base = 10;
  if (i + 1 < size && text[i] == L'0') {
    const wchar_t mark = text[i + 1];
    if (mark == L'x') base = 16;
    if (mark == L'o') base = 8;
    if (mark == L'b') base = 2;
    if (base != 10) i += 2;
  }
  std::uint32_t total = 0;
  for (; i < size; ++i) {
    const wchar_t c = text[i];
    std::uint32_t digit = 36;
    if (c >= L'0' && c <= L'9') digit = static_cast<std::uint32_t>(c - L'0');
    if (c >= L'a' && c <= L'z') digit = static_cast<std::uint32_t>(c - L'a' + 10);
    if (c >= L'A' && c <= L'Z') digit = static_cast<std::uint32_t>(c - L'A' + 10);
    if (digit >= base) break;
    total = total * base + digit;
  }
  return negative ? 0u - total : total;
}

}  // namespace hublet
