#pragma once
// The plug-in living in the simulated host: what tests, the hublet tool, the fuzzer and
// the benchmarks drive. Load and Unload stand for the library's load and unload (the
// plug-in object's construction and destruction); Start is the host starting it.
#include <memory>
#include <string>

#include "frame/hublet.h"
#include "host/sim/sim_host.h"
#include "host/sim/sim_system.h"
#include "host/sim/transcript.h"

namespace hublet {

class SimSession {
 public:
  SimSession() : host(transcript), system(transcript) {}
  ~SimSession() { Unload(); }

  // Serves realPath where the plug-in looks for its preference file.
  void UsePreferenceFile(const std::wstring& realPath);
  // Where the plug-in looks for it, as the host's plug-in configuration directory now says.
  std::wstring PreferenceFileHostPath() const;
  void Load();
  void Start();
  void Unload() {
    hublet.reset();
  }
  // Load and Start, as the host does at its start.
  void LoadAndStart() {
    Load();
    Start();
  }

  Transcript transcript;
  SimHost host;
  SimSystem system;
  std::unique_ptr<Hublet> hublet;
};

}  // namespace hublet
