#pragma once
// The record of every call the plug-in makes on the simulated host: per call its name,
// its arguments and, for queries, its answer, both as values a program can read and as
// one line of text, "Name(arguments) -> answer". Numbers print the same on every build,
// so two runs can be compared line by line.
#include <cstdint>
#include <string>
#include <vector>

#include "host/host_constants.h"
#include "host/matrix.h"

namespace hublet {

// One argument or answer.
struct CallValue {
  enum class Kind { Integer, Boolean, Real, Text, Matrix, ClassId, Word, Nothing };
  Kind kind;
  std::string text;                    // as the line shows it
  std::string utf8;                    // Text: the text itself; Word: the word
  std::vector<std::int64_t> integers;  // Integer, Boolean: the value; ClassId: both parts
  std::vector<float> reals;            // Real: the value; Matrix: twelve, row by row
};

CallValue IntValue(int value);
CallValue BoolValue(bool value);
CallValue RealValue(float value);
CallValue TextValue(const std::wstring& text);
CallValue MatrixValue(const Matrix43& matrix);
CallValue ClassIdValue(ClassId id);
CallValue WordValue(const std::string& word);  // a name or reference: pre, camera#1, 3-7-2020
CallValue NothingValue();                      // a lookup that found nothing: "none"

struct HostCall {
  int view;  // the viewport whose view was called, or -1 for a call on the host or system
  std::string name;
  std::vector<CallValue> arguments;
  bool answered;  // a query: answer holds what it returned
  CallValue answer;

  // "Name(arguments)", "view[I].Name(arguments)", with " -> answer" for a query.
  std::string Line() const;
};

HostCall Call(std::string name, std::vector<CallValue> arguments);
HostCall Query(std::string name, std::vector<CallValue> arguments, CallValue answer);

class Transcript {
 public:
  void Add(HostCall call) {
    lines_.push_back(call.Line());
    calls_.push_back(std::move(call));
  }
  const std::vector<HostCall>& calls() const { return calls_; }
  const std::vector<std::string>& lines() const { return lines_; }
  // Every line, each ended by a newline.
  std::string Text() const;
  void Clear() {
    calls_.clear();
    lines_.clear();
  }

 private:
  std::vector<HostCall> calls_;
  std::vector<std::string> lines_;
};

// Argument formatting shared by the simulated host and system.
std::string FormatFloat(float value);               // shortest of %.6g
std::string FormatText(const std::wstring& text);   // "quoted", UTF-8, with \" \\ \n \t \xNN escapes
std::string FormatMatrix(const Matrix43& matrix);   // [x y z | x y z | x y z | x y z]
std::string FormatClassId(ClassId id);              // (0x73BAB286, 0x77F8FD0C)

}  // namespace hublet
