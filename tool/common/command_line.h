#pragma once
// The command line of the hublet program: arguments as UTF-8, option scanning, output
// streams, and the exit statuses.
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace hublet {
namespace tool {

constexpr int kExitOk = 0;        // nothing to report
constexpr int kExitProblems = 1;  // the check found problems
constexpr int kExitUsage = 2;     // bad usage, or an input that cannot be read

// Bad usage: the message goes to standard error with a pointer to --help.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An input file that cannot be read: the message says which and why, and the JSON error
// code is "unreadable", as for a file that `check` cannot read.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The program's arguments after its name, as UTF-8 (on Windows taken from the UTF-16
// command line, so non-ASCII names survive).
std::vector<std::string> Utf8Arguments(int argc, char** argv);

// Binary standard streams (no "\r\n" translation on Windows, so output is the same
// everywhere) and UTF-8 for the Windows console.
void PrepareStandardStreams();
// A reader that has gone away (a pipe closed early, as by `head`) ends the program at once
// and quietly, as it ends other command-line programs: by SIGPIPE where there is one.
void WriteOut(const std::string& text);
// Flushes standard output; false with the reason when anything written to it was lost.
bool FinishOutput(std::string& error);
void WriteError(const std::string& text);

// Scans one command's arguments: options in the forms "--name=value" and "--name value",
// flags, and positionals; "--" ends the options.
class ArgumentScanner {
 public:
  explicit ArgumentScanner(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

  bool Done() const { return next_ >= arguments_.size(); }
  // Whether the next argument is "-h" or "--help" (before any "--").
  bool HelpRequested() const;
  // Takes the next argument if it is the option name; value receives its value.
  bool Option(const char* name, std::string& value);
  // Takes the next argument if it is the flag name.
  bool Flag(const char* name);
  // Takes the next argument as a positional; throws UsageError for an unknown option.
  std::string Positional();

 private:
  bool OptionsEnded() const { return endOfOptions_ != 0 && next_ >= endOfOptions_; }
  std::vector<std::string> arguments_;
  std::size_t next_ = 0;
  std::size_t endOfOptions_ = 0;  // index after "--", 0 when none was seen
};

// A decimal 32-bit signed integer ("-1", "+7", "25"); throws UsageError naming what.
int ParseInt32(const std::string& text, const std::string& what);
// The same, from low to high; the message gives that range.
int ParseIntInRange(const std::string& text, const std::string& what, int low, int high);

}  // namespace tool
}  // namespace hublet
