#pragma once
// The record of every call the plug-in makes on the simulated host: one line per call,
// its name, its arguments and, for queries, "-> answer". Numbers print the same on every
// build, so two runs can be compared line by line.
#include <string>
#include <vector>

#include "host/host_constants.h"
#include "host/matrix.h"

namespace hublet {

class Transcript {
 public:
  void Add(std::string line) { lines_.push_back(std::move(line)); }
  const std::vector<std::string>& lines() const { return lines_; }
  // Every line, each ended by a newline.
  std::string Text() const;
  void Clear() { lines_.clear(); }

 private:
  std::vector<std::string> lines_;
};

// Argument formatting shared by the simulated host and system.
std::string FormatFloat(float value);               // shortest of %.6g
std::string FormatText(const std::wstring& text);   // "quoted", UTF-8, with \" \\ \n \t \xNN escapes
std::string FormatMatrix(const Matrix43& matrix);   // [x y z | x y z | x y z | x y z]
std::string FormatClassId(ClassId id);              // (0x73BAB286, 0x77F8FD0C)

}  // namespace hublet
