#include "tool/common/command_line.h"

#include <cerrno>
#include <csignal>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#include <shellapi.h>
#endif

#include "platform/wide_text.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
  std::vector<std::string> arguments;
#ifdef _WIN32
  (void)argc;
  (void)argv;
  int count = 0;
  wchar_t** wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (wide != nullptr) {
    for (int i = 1; i < count; ++i) arguments.push_back(WideToUtf8(wide[i]));
    ::LocalFree(wide);
  }
#else
  for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
#endif
  return arguments;
}

void PrepareStandardStreams() {
#ifndef _WIN32
  // A closed pipe is then an error of the write, which tells it from the others (a full
  // disk): those are reported, a closed pipe ends the program as SIGPIPE would have.
  std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  ::SetConsoleOutputCP(CP_UTF8);
#endif
}

namespace {

// Why standard output first failed, kept from the write that failed: later calls on the
// failed stream leave errno as they like.
std::string& OutputError() {
  static std::string error;
  return error;
}

// The reader has gone: nothing more is worth computing or saying.
[[noreturn]] void EndQuietly() {
#ifndef _WIN32
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
#endif
  std::_Exit(kExitUsage);
}

void NoteOutputError() {
  if (errno == EPIPE) EndQuietly();
  if (OutputError().empty()) OutputError() = errno != 0 ? std::strerror(errno) : "write error";
}

}  // namespace

void WriteOut(const std::string& text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) NoteOutputError();
}

bool FinishOutput(std::string& error) {
  errno = 0;
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) NoteOutputError();
  error = OutputError();
  return error.empty();
}

void WriteError(const std::string& text) {
  std::fflush(stdout);
  std::fwrite(text.data(), 1, text.size(), stderr);
}

bool ArgumentScanner::HelpRequested() const {
  if (Done() || OptionsEnded()) return false;
  return arguments_[next_] == "-h" || arguments_[next_] == "--help";
}

bool ArgumentScanner::Option(const char* name, std::string& value) {
  if (Done() || OptionsEnded()) return false;
  const std::string& argument = arguments_[next_];
  const std::size_t length = std::strlen(name);
  if (argument.compare(0, length, name) != 0) return false;
  if (argument.size() > length && argument[length] == '=') {
    value = argument.substr(length + 1);
    ++next_;
    return true;
  }
  if (argument.size() != length) return false;
  if (next_ + 1 >= arguments_.size()) throw UsageError(std::string(name) + " needs a value");
  value = arguments_[next_ + 1];
  next_ += 2;
  return true;
}

bool ArgumentScanner::Flag(const char* name) {
  if (Done() || OptionsEnded() || arguments_[next_] != name) return false;
  ++next_;
  return true;
}

std::string ArgumentScanner::Positional() {
  if (!OptionsEnded() && arguments_[next_] == "--" && endOfOptions_ == 0) {
    endOfOptions_ = ++next_;
    if (Done()) throw UsageError("nothing follows \"--\"");
  }
  const std::string& argument = arguments_[next_];
  if (!OptionsEnded() && argument.size() > 1 && argument[0] == '-')
    throw UsageError("unknown option " + Shown(Utf8ToWide(argument)));
  ++next_;
  return argument;
}

int ParseIntInRange(const std::string& text, const std::string& what, int low, int high) {
  const char* begin = text.c_str();
  char* end = nullptr;
  errno = 0;
  const long long value = std::strtoll(begin, &end, 10);
  if (text.empty() || end != begin + text.size() || text[0] == ' ' || errno == ERANGE || value < low ||
      value > high)
    throw UsageError(what + " must be a whole number from " + std::to_string(low) + " to " + std::to_string(high) +
                     ", not " + QuotedArgument(text));
  return static_cast<int>(value);
}

int ParseInt32(const std::string& text, const std::string& what) { return ParseIntInRange(text, what, INT_MIN, INT_MAX); }

}  // namespace tool
}  // namespace hublet
