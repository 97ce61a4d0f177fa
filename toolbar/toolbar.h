#pragma once
// Reinstalls the companion tools' toolbar by running its script again.
#include <string>

#include "host/host.h"

namespace hublet {

// Where the toolbar script is: under the host's scripts directory.
std::wstring ToolbarScriptPath(Host& host);

// Runs the toolbar script through the host's script-file loader when the file exists;
// does nothing otherwise. The loader's error text is not shown.
void ReinstallToolbar(Host& host);

}  // namespace hublet
