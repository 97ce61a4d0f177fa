#include "harness/sim_session.h"

#include "host/host_path.h"

namespace hublet {

void SimSession::UsePreferenceFile(const std::wstring& realPath) {
  system.MapFile(PreferenceFileHostPath(), realPath);
}

std::wstring SimSession::PreferenceFileHostPath() const {
  return JoinHostPath(host.DirectoryOf(host::kDirPlugCfg), kPreferenceFileName);
}

void SimSession::Load() { hublet.reset(new Hublet(host, system)); }

void SimSession::Start() {
  if (hublet) hublet->Start();
}

}  // namespace hublet
