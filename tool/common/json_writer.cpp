#include "tool/common/json_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/sim/transcript.h"
#include "platform/wide_text.h"

namespace hublet {
namespace tool {

std::string JsonString(const std::string& text) {
  // ASCII is UTF-8 already; only other text goes through the conversion that replaces
  // what is not UTF-8, which a long transcript would otherwise pay for every string.
  const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  const std::string utf8 = ascii ? text : WideToUtf8(Utf8ToWide(text));
  std::string json = "\"";
  json.reserve(utf8.size() + 2);
  for (const char c : utf8) {
    const unsigned char byte = static_cast<unsigned char>(c);
    switch (c) {
      case '"': json += "\\\""; break;
      case '\\': json += "\\\\"; break;
      case '\b': json += "\\b"; break;
      case '\f': json += "\\f"; break;
      case '\n': json += "\\n"; break;
      case '\r': json += "\\r"; break;
      case '\t': json += "\\t"; break;
      default:
        if (byte < 0x20) {
          char escape[8];
          std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(byte));
          json += escape;
        } else {
          json += c;
        }
    }
  }
  return json + "\"";
}

std::string JsonFloat(float value) {
  if (std::isnan(value)) return "\"nan\"";
  if (std::isinf(value)) return value > 0 ? "\"inf\"" : "\"-inf\"";
  // The transcript's shortest form is valid JSON for every finite value ("1e+10", "-0").
  return FormatFloat(value);
}

std::string JsonError(const std::string& code, const std::string& message) {
  return "{\"code\": " + JsonString(code) + ", \"message\": " + JsonString(message) + "}";
}

}  // namespace tool
}  // namespace hublet
