#include "toolbar/toolbar.h"

#include "host/host_path.h"

namespace hublet {

std::wstring ToolbarScriptPath(Host& host) {
  return JoinHostPath(host.Directory(host::kDirScripts), L"Orvo_Software\\Orvo_Toolbar_V1.3.ms");
}

void ReinstallToolbar(Host& host) {
  const std::wstring path = ToolbarScriptPath(host);
  if (!host.FileExists(path, true)) return;
  wchar_t errorText[host::kTextCapacity] = {};
  host.LoadScriptFile(path, errorText);
}

}  // namespace hublet
