#pragma once
// JSON text pieces for the machine-readable reports.
#include <string>

namespace hublet {
namespace tool {

// A JSON string literal of text: quotes, backslashes and control characters escaped,
// everything else as UTF-8 (bytes that are not UTF-8 become U+FFFD).
std::string JsonString(const std::string& text);

// A JSON number for a 32-bit float, or a string ("inf", "-inf", "nan") where JSON has no
// number for the value.
std::string JsonFloat(float value);

// An error object: {"code": CODE, "message": MESSAGE}.
std::string JsonError(const std::string& code, const std::string& message);

}  // namespace tool
}  // namespace hublet
