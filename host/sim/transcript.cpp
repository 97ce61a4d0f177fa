#include "host/sim/transcript.h"

#include <cstdio>

#include "platform/wide_text.h"

namespace hublet {

std::string Transcript::Text() const {
  std::string text;
  for (const std::string& line : lines_) {
    text += line;
    text += '\n';
  }
  return text;
}

std::string FormatFloat(float value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.6g", static_cast<double>(value));
  return buffer;
}

std::string FormatText(const std::wstring& text) {
  const std::string utf8 = WideToUtf8(text);
  std::string quoted = "\"";
  for (const char c : utf8) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (c == '\n') {
      quoted += "\\n";
    } else if (c == '\t') {
      quoted += "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", byte);
      quoted += escape;
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

std::string FormatMatrix(const Matrix43& matrix) {
  std::string text = "[";
  for (int row = 0; row < 4; ++row) {
    if (row > 0) text += " | ";
    for (int col = 0; col < 3; ++col) {
      if (col > 0) text += ' ';
      text += FormatFloat(matrix.m[row][col]);
    }
  }
  return text + "]";
}

std::string FormatClassId(ClassId id) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "(0x%08X, 0x%08X)", static_cast<unsigned>(id.partA),
                static_cast<unsigned>(id.partB));
  return buffer;
}

}  // namespace hublet
