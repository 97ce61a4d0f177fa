#pragma once
// The simulated host of a replay: the changes options and events make to its answers,
// and where it keeps the two files the plug-in looks for.
#include "harness/sim_session.h"
#include "tool/replay/replay.h"

namespace hublet {
namespace tool {

// The host's answers as a replay sets them. The preference file and the toolbar script
// stay in their directories: when a directory changes, a file that is there moves along.
class ReplayHostState {
 public:
  explicit ReplayHostState(SimSession& session) : session_(session) {}
  // Not recorded: setting up the host is not the plug-in's doing.
  void Apply(const HostChange& change);
  ReplayHost Describe() const;

 private:
  void PlaceFiles();
  SimSession& session_;
  bool preferenceFile_ = false;
  std::wstring preferencePath_;
  std::string preferenceGiven_;
  std::wstring placedPreferenceFile_;
  bool toolbarScript_ = false;
  std::wstring placedToolbarScript_;
};

}  // namespace tool
}  // namespace hublet
