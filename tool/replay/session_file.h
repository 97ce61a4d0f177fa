#pragma once
// A replay session kept in a file: one option or event a line, the same words as on the
// command line, so that a day of work can live in version control.
#include <string>
#include <vector>

namespace hublet {
namespace tool {

struct SessionLine {
  int number;  // 1-based
  std::vector<std::string> words;
};

// The lines that hold something: blanks around a line are dropped, and so are empty
// lines and those starting with "#". An event is the whole line (so that a directory may
// hold blanks); an option line "--name value" gives two words.
std::vector<SessionLine> SplitSessionFile(const std::string& bytes);

}  // namespace tool
}  // namespace hublet
