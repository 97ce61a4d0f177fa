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
    "the files, without 3ds Max, beside what 3ds Max records on every save (the account\n"
    "that saved last, the times of the last save and of the creation, UTC), and tells for\n"
    "each file whether it carries a stamp as the plug-in writes it, and whether it still\n"
    "holds.\n"
    "\n"
    "  PATH...            scene files, and folders to search (with every folder under them)\n"
    "  --files-from FILE  also the paths in FILE, one a line (\"-\": standard input)\n"
    "  --all-files        in folders, read every file, not only *.max\n"
    "  --jobs N           read up to N files at once (default 16: on network storage each\n"
    "                     read waits a round trip); more than one a core only while reads\n"
    "                     wait on the storage\n"
    "  --format text      a table for people (default)\n"
    "  --format json      a \"hublet-stamps/1\" JSON document\n"
    "  --format csv       comma-separated values with a header line\n"
    "  --summary          also (with csv: instead) per saver, the files they saved last and\n"
    "                     their latest save; the saver is the stamp's where it holds, else\n"
    "                     3ds Max's\n"
    "\n"
    "Rows come in the order of the paths, and by name within a folder, whatever N.\n"
    "Statuses: stamped, stale (stamped, but 3ds Max records a save since by another user or\n"
    "on another day), never-stamped (no title and no subject), irregular (stamped by hand\n"
    "or only partly), not-compound-file, no-summary-information, unreadable (with why).\n"
    "Exit status: 0 every file stamped; 1 some file not (or stale), or a folder without\n"
    "scene files; 2 bad usage, or not everything was read (a path that does not exist, a\n"
    "folder that cannot be listed, a file that cannot be opened).\n";

// Threads that mostly wait on the storage, not on a core: see --help.
constexpr int kDefaultJobs = 16;
constexpr int kMostJobs = 256;

// Standard output failed (a full disk; a closed pipe ends the program at once): the rest of
// an archive is not read for nothing; the program reports the failure as it ends.
struct OutputFailed {};

std::string Plural(int count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string ShownInMessage(const std::string& shown) { return Escaped(Utf8ToWide(shown)); }

// Each step of the walk as the report and standard error show it, and what the run could
// not read, for the closing line and the exit status.
class StampsRun {
 public:
  StampsRun(StampsPrinter& printer, bool allFiles, bool summary)
      : printer_(printer), allFiles_(allFiles), tally_(summary) {
    WriteOut(printer_.Begin());
  }

  // On the thread that read the step.
  void Prepare(ReadStep& read) const {
    if (read.step.kind == WalkStep::Kind::kFile || read.step.kind == WalkStep::Kind::kUnlistedFolder)
      read.text = printer_.Row(read.stamp);
  }

  // In the walk's order.
  void Step(const ReadStep& read) {
    const WalkStep& step = read.step;
    switch (step.kind) {
      case WalkStep::Kind::kFile:
      case WalkStep::Kind::kUnlistedFolder: Report(read.stamp, read.text); break;
      case WalkStep::Kind::kUnreadablePath:
        ++unreadPaths_;
        WriteError("hublet: cannot read " + ShownInMessage(step.shown) + ": " + step.reason + "\n");
        break;
      case WalkStep::Kind::kUnreadableList:
        ++unreadPaths_;
        WriteError("hublet: " + step.reason + "\n");
        break;
      case WalkStep::Kind::kNoSceneFiles:
        foldersWithoutScenes_ = true;
        WriteError("hublet: no " + std::string(allFiles_ ? "file" : "scene file (*.max)") + " in " +
                   ShownInMessage(step.shown) + " or the folders under it\n");
        break;
    }
  }

  int Finish() {
    WriteOut(printer_.End(tally_));
    if (unreadFolders_ + unreadFiles_ > 0) {
      std::string what;
      if (unreadFolders_ > 0) what = Plural(unreadFolders_, "folder", "folders") + " could not be listed";
      if (unreadFiles_ > 0)
        what += (what.empty() ? "" : ", ") + Plural(unreadFiles_, "file", "files") + " could not be opened";
      WriteError("hublet: not everything was read: " + what + "\n");
    }
    if (unreadPaths_ + unreadFolders_ + unreadFiles_ > 0) return kExitUsage;
    return tally_.AllStamped() && !foldersWithoutScenes_ ? kExitOk : kExitProblems;
  }

 private:
  void Report(const SceneStamp& stamp, const std::string& row) {
    WriteOut(printer_.BeforeRow(tally_.Rows() == 0));
    WriteOut(row);
    tally_.Add(stamp);
    if (!stamp.reached) ++(stamp.isFolder ? unreadFolders_ : unreadFiles_);
    if (std::ferror(stdout)) throw OutputFailed();
  }

  StampsPrinter& printer_;
  const bool allFiles_;
  StampTally tally_;
  int unreadPaths_ = 0, unreadFolders_ = 0, unreadFiles_ = 0;
  bool foldersWithoutScenes_ = false;
};

struct CloseList {
  void operator()(std::FILE* list) const {
    if (list != stdin) std::fclose(list);
  }
};

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
  std::unique_ptr<std::FILE, CloseList> list;
  if (!filesFrom.empty()) {
    std::string error;
    list.reset(OpenInput(filesFrom, error));
    if (!list) throw UsageError("cannot read " + filesFrom + ": " + error);
  }

  PathList pathList(paths, list.get(), filesFrom == "-" ? "standard input" : filesFrom);
  SceneWalk walk(pathList, allFiles);
  StampsRun run(*printer, allFiles, summary);
  try {
    ReadInWalkOrder(
        walk, jobs, OpenFileBytes, [&run](ReadStep& read) { run.Prepare(read); },
        [&run](ReadStep& read) { run.Step(read); });
  } catch (const OutputFailed&) {
    return kExitUsage;
  }
  return run.Finish();
}

}  // namespace tool
}  // namespace hublet
