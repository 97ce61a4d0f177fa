#include "harness/sim_session.h"

#include "host/host_path.h"

namespace hublet {

void SimSession::UsePreferenceFile(const std::wstring& realPath) {
  system.MapFile(JoinHostPath(host.DirectoryOf(host::kDirPlugCfg), kPreferenceFileName), realPath);
}

void SimSession::Load() { hublet.reset(new Hublet(host, system)); }

void SimSession::Start() {
  if (hublet) hublet->Start();
}

}  // namespace hublet
