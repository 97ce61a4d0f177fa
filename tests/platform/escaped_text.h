#pragma once
// The escapes of the platform tests' case files (profile_cases.txt explains them).
#include <regex>
#include <stdexcept>
#include <string>

namespace hublet {
namespace testing {

// A field as UTF-16 code units: escapes decoded, {C*N} repeated; anything else throws, as
// does a character past limit.
inline std::wstring Units(const std::string& s, unsigned long limit = 0x10FFFF) {
  static const std::string one =
      R"((\\[rntvf0s\\|{]|\\x[0-9a-fA-F]{2}|\\u[0-9a-fA-F]{4}|\\U[0-9a-fA-F]{8}|[ -\[\]-z|}~]))";
  static const std::regex token("\\{" + one + "\\*([0-9]+)\\}|" + one);
  std::wstring out;
  std::smatch m;
  for (auto at = s.cbegin(); at != s.cend(); at = m[0].second) {
    if (!std::regex_search(at, s.cend(), m, token, std::regex_constants::match_continuous))
      throw std::runtime_error("a raw control or non-ASCII byte, or a bad escape or {C*N}, in " + s);
    const std::string c = m[1].matched ? m[1] : m[3];
    const std::size_t plain = std::string("rntvf0s\\|{").find(c[1]);
    const unsigned long value = c[0] != '\\' ? static_cast<unsigned long>(c[0])
                                : plain != std::string::npos ? U"\r\n\t\v\f\0 \\|{"[plain]
                                                             : std::stoul(c.substr(2), nullptr, 16);
    if (value > limit) throw std::runtime_error("a character out of range in " + s);
    std::wstring units(1, static_cast<wchar_t>(value));
    if (value > 0xFFFF) units = {static_cast<wchar_t>(0xD7C0 + (value >> 10)),  // a pair
                                 static_cast<wchar_t>(0xDC00 + (value & 0x3FF))};
    for (std::size_t n = m[1].matched ? std::stoul(m[2]) : 1; n > 0; --n) out += units;
  }
  return out;
}

// A field as bytes: every character must be below 0x100.
inline std::string Bytes(const std::string& field) {
  const std::wstring units = Units(field, 0xFF);
  return std::string(units.begin(), units.end());
}

}  // namespace testing
}  // namespace hublet
