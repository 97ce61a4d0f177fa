#pragma once
// Text from a preference file as the tool shows it to people.
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

}  // namespace tool
}  // namespace hublet
