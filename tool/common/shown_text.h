#pragma once
// Text from a file or the command line as the tool shows it to people: nothing of it
// reaches a terminal raw, and no message grows with it.
#include <string>

namespace hublet {
namespace tool {

// UTF-8 with control characters (C0, DEL and C1) escaped as \xNN, so that nothing read
// from a file reaches a terminal raw.
std::string Escaped(const std::wstring& text);
// The same, and cut at 80 characters ("...") so that a huge name
// stays readable.
std::string Shown(const std::wstring& text);
// The same in double quotes.
std::string Quoted(const std::wstring& text);
// Quoted, for UTF-8 text: an argument, a line of a session file.
std::string QuotedArgument(const std::string& utf8);

}  // namespace tool
}  // namespace hublet
