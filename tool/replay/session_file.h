#pragma once
// A replay session kept in a file: one option or event a line, the same words as on the
// command line, so that a day of work can live in version control. The file is read as
// editors save it: UTF-8 with or without a byte-order mark, or UTF-16 with one, its lines
// ended by LF, CRLF or CR.
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace hublet {
namespace tool {

// A line holds one option or event: anything longer is a mistake, not a session.
constexpr std::size_t kMaxSessionLineBytes = 4096;

struct SessionLine {
  int number;  // 1-based
  std::vector<std::string> words;
};

// A mistake at a line of a session file, as it is told: "NAME:LINE: what".
std::string AtSessionLine(const std::string& name, int line, const std::string& what);

// For reading a session file (ReadFileBytes' readEnough): whether the bytes so far already
// hold a line longer than kMaxSessionLineBytes, whose mistake they tell alone, so that a file
// without line ends, or a sparse one, is not read on. UTF-16 is read whole: a mistake
// anywhere in its units is told before those of its lines.
std::function<bool(const std::string& bytes)> SessionReadEnough();

// The file's text as UTF-8, its byte-order mark dropped and UTF-16 converted. Throws
// UsageError, with name and the line where it can, for other bytes: UTF-16 without a mark,
// a lone half of a UTF-16 pair, half a UTF-16 character at the end.
std::string SessionText(std::string bytes, const std::string& name);

// Each line that holds something, in order: blanks around a line are dropped, and so are
// empty lines and those starting with "#". An event is the whole line (so that a
// directory may hold blanks); an option line "--name value" gives two words. Throws
// UsageError "NAME:LINE: ..." for a line longer than kMaxSessionLineBytes, with a NUL
// byte, or not UTF-8.
void ForEachSessionLine(const std::string& text, const std::string& name,
                        const std::function<void(const SessionLine&)>& take);

}  // namespace tool
}  // namespace hublet
