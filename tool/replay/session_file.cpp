#include "tool/replay/session_file.h"

#include "platform/wide_text.h"
#include "tool/common/command_line.h"

namespace hublet {
namespace tool {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string Trimmed(const std::string& text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

UsageError LineError(const std::string& name, int line, const std::string& what) {
  return UsageError(AtSessionLine(name, line, what));
}

bool IsSurrogate(char16_t unit, char16_t first) { return unit >= first && unit < first + 0x400; }

// UTF-16 after its byte-order mark, as UTF-8.
std::string FromUtf16(const std::string& bytes, bool bigEndian, const std::string& name) {
  if (bytes.size() % 2 != 0) throw UsageError(name + ": the UTF-16 text ends in half a character");
  std::wstring units;
  units.reserve(bytes.size() / 2 - 1);
  int line = 1;
  for (std::size_t i = 2; i < bytes.size(); i += 2) {
    const unsigned char high = static_cast<unsigned char>(bytes[bigEndian ? i : i + 1]);
    const unsigned char low = static_cast<unsigned char>(bytes[bigEndian ? i + 1 : i]);
    units += static_cast<wchar_t>(high << 8 | low);
  }
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = static_cast<char16_t>(units[i]);
    if (unit == u'\n' || (unit == u'\r' && (i + 1 == units.size() || units[i + 1] != L'\n'))) ++line;
    const bool pairs = IsSurrogate(unit, 0xD800) && i + 1 < units.size() &&
                       IsSurrogate(static_cast<char16_t>(units[i + 1]), 0xDC00);
    if (pairs) ++i;
    else if (IsSurrogate(unit, 0xD800) || IsSurrogate(unit, 0xDC00))
      throw LineError(name, line, "half of a UTF-16 surrogate pair, alone");
  }
  return WideToUtf8(units);
}

}  // namespace

std::string AtSessionLine(const std::string& name, int line, const std::string& what) {
  return name + ":" + std::to_string(line) + ": " + what;
}

std::function<bool(const std::string& bytes)> SessionReadEnough() {
  std::size_t scanned = 0, lineBytes = 0;
  return [scanned, lineBytes](const std::string& bytes) mutable {
    if (bytes.size() < 2 || bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0)
      return false;
    for (; scanned < bytes.size(); ++scanned) {
      lineBytes = bytes[scanned] == '\n' || bytes[scanned] == '\r' ? 0 : lineBytes + 1;
      // UTF-8's byte-order mark, 3 bytes, is no part of the first line.
      if (lineBytes > kMaxSessionLineBytes + 3) return true;
    }
    return false;
  };
}

std::string SessionText(std::string bytes, const std::string& name) {
  if (bytes.compare(0, 2, "\xFF\xFE") == 0) return FromUtf16(bytes, false, name);
  if (bytes.compare(0, 2, "\xFE\xFF") == 0) return FromUtf16(bytes, true, name);
  if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) bytes.erase(0, 3);
  else if (bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0'))
    throw UsageError(name + ": the file looks like UTF-16 without a byte-order mark; save it as UTF-8, or as "
                            "UTF-16 with a byte-order mark");
  return bytes;
}

void ForEachSessionLine(const std::string& text, const std::string& name,
                        const std::function<void(const SessionLine&)>& take) {
  std::size_t begin = 0;
  for (int number = 1; begin < text.size(); ++number) {
    std::size_t end = text.find_first_of("\r\n", begin);
    if (end == std::string::npos) end = text.size();
    const std::size_t next = text.compare(end, 2, "\r\n") == 0 ? end + 2 : end + 1;
    if (end - begin > kMaxSessionLineBytes)
      throw LineError(name, number, "the line is longer than " + std::to_string(kMaxSessionLineBytes) +
                                        " bytes; a line holds one option or event");
    const std::string line = text.substr(begin, end - begin);
    begin = next;
    if (line.find('\0') != std::string::npos) throw LineError(name, number, "a NUL byte in the line");
    if (!IsUtf8(line)) throw LineError(name, number, "the line is not UTF-8; save the file as UTF-8 or UTF-16");
    const std::string trimmed = Trimmed(line);
    if (trimmed.empty() || trimmed[0] == '#') continue;
    SessionLine session{number, {}};
    const std::size_t blank = trimmed.find_first_of(" \t");
    if (trimmed.compare(0, 2, "--") == 0 && blank != std::string::npos && trimmed.find('=') > blank) {
      session.words.push_back(trimmed.substr(0, blank));
      session.words.push_back(Trimmed(trimmed.substr(blank)));
    } else {
      session.words.push_back(trimmed);
    }
    take(session);
  }
}

}  // namespace tool
}  // namespace hublet
