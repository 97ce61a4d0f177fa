#include "settings/settings.h"

#include <cwchar>

#include "host/host_path.h"
#include "host/numeric.h"
#include "settings/preference_keys.h"

namespace hublet {

std::wstring PreferenceFilePath(Host& host) {
  return JoinHostPath(host.Directory(host::kDirPlugCfg), kPreferenceFileName);
}

void LoadSettings(ProfileReader& reader, HubletSettings& settings) {
  ReadPreferenceKeys(reader, settings, ReadWhen::AtStart);
}

float ParseGamma(const std::wstring& text) {
  return NarrowToFloat(std::wcstod(text.c_str(), nullptr));
}

}  // namespace hublet
