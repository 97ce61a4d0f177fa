#include "tool/stamps/stamps_command.h"

#include "platform/wide_text.h"
#include "tool/common/command_line.h"
#include "tool/common/file_access.h"
#include "tool/common/shown_text.h"
#include "tool/stamps/path_list.h"
#include "tool/stamps/scene_walk.h"
#include "tool/stamps/stamp_reading.h"
#include "tool/stamps/stamps_report.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet stamps PATH... [--format text|json|csv] [--summary] [--all-files]\n"
    "                     [--jobs N] [--files-from FILE]\n"
    "\n"
    "Reads the save stamps the plug-in writes into scene files (the summary information:\n"
    "subject = who saved last, author = who saved before, title = the date) straight from\n"
    "the files, without 3ds Max, and tells for each file whether it carries a stamp as the\n"
    "plug-in writes it.\n"
    "\n"
    "  PATH...            scene files, and folders to search (with every folder under them)\n"
    "  --files-from FILE  also the paths in FILE, one a line (\"-\": standard input)\n"
    "  --all-files        in folders, read every file, not only *.max\n"
    "  --jobs N           read N files at once (default 16: on network storage each read\n"
    "                     waits a round trip)\n"
    "  --format text      a table for people (default)\n"
    "  --format json      a \"hublet-stamps/1\" JSON document\n"
    "  --format csv       comma-separated values with a header line\n"
    "  --summary          also (with csv: instead) per saver, the files they saved last and\n"
    "                     their latest save\n"
    "\n"
    "Rows come in the order of the paths, and by name within a folder, whatever N.\n"
    "Statuses: stamped, never-stamped (no title and no subject), irregular (stamped by hand\n"
    "or only partly), not-compound-file, no-summary-information, unreadable (with why).\n"
    "Exit status: 0 every file stamped; 1 some file not, or a folder without scene files;\n"
    "2 bad usage, or not everything was read (a path that does not exist, a folder that\n"
    "cannot be listed, a file that cannot be opened).\n";

// Threads that mostly wait on the storage, not on a core: see --help.
constexpr int kDefaultJobs = 16;
constexpr int kMostJobs = 256;

// What the run could not read, for the exit status and the closing message.
struct Unread {
  int paths = 0, folders = 0, files = 0;
  bool Any() const { return paths + folders + files > 0; }
};

std::string Plural(int count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string ShownInMessage(const std::string& shown) { return Escaped(Utf8ToWide(shown)); }

}  // namespace

int RunStampsCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  std::string format = "text", jobsText, filesFrom;
  bool summary = false, allFiles = false;
  std::vector<std::string> paths;
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--format", format) || scanner.Option("--jobs", jobsText) ||
        scanner.Option("--files-from", filesFrom))
      continue;
    if (scanner.Flag("--summary")) {
      summary = true;
      continue;
    }
    if (scanner.Flag("--all-files")) {
      allFiles = true;
      continue;
    }
    paths.push_back(scanner.Positional());
  }
  const std::unique_ptr<StampsPrinter> printer = MakeStampsPrinter(format, summary);
  if (!printer) throw UsageError("--format must be text, json or csv, not \"" + format + "\"");
  const int jobs = jobsText.empty() ? kDefaultJobs : ParseInt32(jobsText, "--jobs");
  if (jobs < 1 || jobs > kMostJobs)
    throw UsageError("--jobs must be from 1 to " + std::to_string(kMostJobs) + ", not " + jobsText);
  if (paths.empty() && filesFrom.empty()) throw UsageError("name the scene files or folders to read");
  std::FILE* list = nullptr;
  if (!filesFrom.empty()) {
    std::string error;
    list = OpenInput(filesFrom, error);
    if (list == nullptr) throw UsageError("cannot read " + filesFrom + ": " + error);
  }

  PathList pathList(paths, list, filesFrom == "-" ? "standard input" : filesFrom);
  SceneWalk walk(pathList, allFiles);
  StampTally tally;
  Unread unread;
  bool foldersWithoutScenes = false;
  WriteOut(printer->Begin());
  const auto report = [&](const SceneStamp& stamp) {
    tally.Add(stamp);
    if (!stamp.reached) ++(stamp.isFolder ? unread.folders : unread.files);
    WriteOut(printer->Row(stamp));
  };
  ReadInWalkOrder(walk, jobs, OpenFileBytes, [&](const WalkStep& step, const SceneStamp& fileStamp) {
    switch (step.kind) {
      case WalkStep::Kind::kFile: report(fileStamp); break;
      case WalkStep::Kind::kUnlistedFolder: report(UnlistedFolderStamp(step)); break;
      case WalkStep::Kind::kUnreadablePath:
        ++unread.paths;
        WriteError("hublet: cannot read " + ShownInMessage(step.shown) + ": " + step.reason + "\n");
        break;
      case WalkStep::Kind::kUnreadableList:
        ++unread.paths;
        WriteError("hublet: " + step.reason + "\n");
        break;
      case WalkStep::Kind::kNoSceneFiles:
        foldersWithoutScenes = true;
        WriteError("hublet: no " + std::string(allFiles ? "file" : "scene file (*.max)") + " in " +
                   ShownInMessage(step.shown) + " or the folders under it\n");
        break;
    }
  });
  if (list != nullptr && list != stdin) std::fclose(list);
  WriteOut(printer->End(tally));
  if (unread.folders + unread.files > 0) {
    std::string what;
    if (unread.folders > 0) what = Plural(unread.folders, "folder", "folders") + " could not be listed";
    if (unread.files > 0)
      what += (what.empty() ? "" : ", ") + Plural(unread.files, "file", "files") + " could not be opened";
    WriteError("hublet: not everything was read: " + what + "\n");
  }
  if (unread.Any()) return kExitUsage;
  return tally.AllStamped() && !foldersWithoutScenes ? kExitOk : kExitProblems;
}

}  // namespace tool
}  // namespace hublet
