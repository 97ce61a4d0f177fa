#include "tool/replay/session_file.h"

namespace hublet {
namespace tool {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::string Trimmed(const std::string& text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

}  // namespace

std::vector<SessionLine> SplitSessionFile(const std::string& bytes) {
  std::vector<SessionLine> lines;
  std::size_t begin = 0;
  for (int number = 1; begin < bytes.size(); ++number) {
    std::size_t end = bytes.find('\n', begin);
    if (end == std::string::npos) end = bytes.size();
    const std::string text = Trimmed(bytes.substr(begin, end - begin));
    begin = end + 1;
    if (text.empty() || text[0] == '#') continue;
    SessionLine line;
    line.number = number;
    const std::size_t blank = text.find_first_of(" \t");
    if (text.compare(0, 2, "--") == 0 && blank != std::string::npos && text.find('=') > blank) {
      line.words.push_back(text.substr(0, blank));
      line.words.push_back(Trimmed(text.substr(blank)));
    } else {
      line.words.push_back(text);
    }
    lines.push_back(line);
  }
  return lines;
}

}  // namespace tool
}  // namespace hublet
