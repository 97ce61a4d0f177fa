#include <cstdint>
#include <memory>

#include "platform/profile.h"
#include "platform/wide_text.h"
#include "tool/check/commands.h"
#include "tool/common/command_line.h"
#include "tool/common/file_access.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet read FILE SECTION KEY (--int DEFAULT | --text DEFAULT)\n"
    "\n"
    "Prints what the plug-in's profile reader returns for one key, then a newline:\n"
    "  --int DEFAULT    the whole number, as the 32-bit signed value the plug-in stores\n"
    "  --text DEFAULT   the text, as returned into the plug-in's 260-character buffer\n"
    "\n"
    "A negative default is written --int=-1. SECTION and KEY may be empty (\"\"); put \"--\"\n"
    "before them when they start with \"--\". A missing or unreadable file is not an error:\n"
    "the reader answers the default, as it does for the plug-in.\n"
    "\n"
    "Exit status: 0, or 2 for bad usage.\n";

}  // namespace

int RunReadCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  std::vector<std::string> positionals;
  std::string intDefault;
  std::string textDefault;
  bool isInt = false;
  bool isText = false;
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--int", intDefault)) {
      isInt = true;
      continue;
    }
    if (scanner.Option("--text", textDefault)) {
      isText = true;
      continue;
    }
    positionals.push_back(scanner.Positional());
  }
  if (positionals.size() != 3) throw UsageError("read takes FILE, SECTION and KEY");
  if (isInt == isText) throw UsageError("read needs one of --int DEFAULT and --text DEFAULT");

  const std::unique_ptr<ProfileReader> reader = OpenProfile(ProfilePath(positionals[0]));
  const std::wstring section = Utf8ToWide(positionals[1]);
  const std::wstring key = Utf8ToWide(positionals[2]);
  if (isInt) {
    const int defaultValue = ParseInt32(intDefault, "the --int default");
    const std::int32_t value = static_cast<std::int32_t>(reader->ReadInt(section, key, defaultValue));
    WriteOut(std::to_string(value) + "\n");
  } else {
    WriteOut(WideToUtf8(reader->ReadText(section, key, Utf8ToWide(textDefault))) + "\n");
  }
  return kExitOk;
}

}  // namespace tool
}  // namespace hublet
