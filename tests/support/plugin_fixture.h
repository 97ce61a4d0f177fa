#pragma once
// A started plug-in in the simulated host, with a preference file of the test's choosing.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "harness/sim_session.h"
#include "tests/support/scratch_file.h"

namespace hublet {
namespace testing {

class PluginTest : public ::testing::Test {
 protected:
  // Loads and starts the plug-in with ini as its preference file, then clears the
  // transcript so that a test sees only what it causes.
  void StartWith(const std::string& ini) {
    file_.reset(new ScratchFile(ini));
    session.UsePreferenceFile(file_->path());
    session.LoadAndStart();
    session.transcript.Clear();
  }
  void RewriteIni(const std::string& ini) { file_->Rewrite(ini); }

  // Raises one notification and returns what the plug-in asked of the host.
  std::vector<std::string> Raise(int code) {
    session.transcript.Clear();
    session.host.Raise(code);
    return session.transcript.lines();
  }
  std::vector<std::string> Redraw(int viewport) {
    session.transcript.Clear();
    session.host.Redraw(viewport);
    return session.transcript.lines();
  }

  Hublet& plugin() { return *session.hublet; }
  SimHost& host() { return session.host; }

  SimSession session;

 private:
  std::unique_ptr<ScratchFile> file_;
};

// Lines of a transcript that start with prefix.
inline std::vector<std::string> LinesStartingWith(const std::vector<std::string>& lines,
                                                  const std::string& prefix) {
  std::vector<std::string> found;
  for (const std::string& line : lines)
    if (line.compare(0, prefix.size(), prefix) == 0) found.push_back(line);
  return found;
}

}  // namespace testing
}  // namespace hublet
