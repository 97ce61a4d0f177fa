#include "host/sim/transcript.h"

#include <cstdio>

#include "platform/wide_text.h"

namespace hublet {

namespace {

CallValue Value(CallValue::Kind kind, std::string text) {
  CallValue value;
  value.kind = kind;
  value.text = std::move(text);
  return value;
}

}  // namespace

CallValue IntValue(int number) {
  CallValue value = Value(CallValue::Kind::Integer, std::to_string(number));
  value.integers.push_back(number);
  return value;
}

CallValue BoolValue(bool flag) {
  CallValue value = Value(CallValue::Kind::Boolean, flag ? "true" : "false");
  value.integers.push_back(flag ? 1 : 0);
  return value;
}

CallValue RealValue(float number) {
  CallValue value = Value(CallValue::Kind::Real, FormatFloat(number));
  value.reals.push_back(number);
  return value;
}

CallValue TextValue(const std::wstring& text) {
  CallValue value = Value(CallValue::Kind::Text, FormatText(text));
  value.utf8 = WideToUtf8(text);
  return value;
}

CallValue MatrixValue(const Matrix43& matrix) {
  CallValue value = Value(CallValue::Kind::Matrix, FormatMatrix(matrix));
  for (const auto& row : matrix.m) value.reals.insert(value.reals.end(), row, row + 3);
  return value;
}

CallValue ClassIdValue(ClassId id) {
  CallValue value = Value(CallValue::Kind::ClassId, FormatClassId(id));
  value.integers = {id.partA, id.partB};
  return value;
}

CallValue WordValue(const std::string& word) {
  CallValue value = Value(CallValue::Kind::Word, word);
  value.utf8 = word;
  return value;
}

CallValue NothingValue() { return Value(CallValue::Kind::Nothing, "none"); }

std::string HostCall::Line() const {
  std::string line = view >= 0 ? "view[" + std::to_string(view) + "]." + name + "(" : name + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) line += (i > 0 ? ", " : "") + arguments[i].text;
  line += ")";
  if (answered) line += " -> " + answer.text;
  return line;
}

HostCall Call(std::string name, std::vector<CallValue> arguments) {
  HostCall call;
  call.view = -1;
  call.name = std::move(name);
  call.arguments = std::move(arguments);
  call.answered = false;
  call.answer = NothingValue();
  return call;
}

HostCall Query(std::string name, std::vector<CallValue> arguments, CallValue answer) {
  HostCall call = Call(std::move(name), std::move(arguments));
  call.answered = true;
  call.answer = std::move(answer);
  return call;
}

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
