#pragma once
// Before every save: who saved the scene (subject), who saved it before (author) and
// when (title), in the scene's summary properties.
#include <string>

namespace hublet {

struct PluginState;

void StampSaveProperties(PluginState& state);

// "anna on RENDER07": the account name and the host name.
std::wstring SaverText(const std::wstring& userName, const std::wstring& hostName);

}  // namespace hublet
