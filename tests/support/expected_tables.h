#pragma once
// What the host and the preference file must see, written out once for the tests and
// kept apart from the plug-in's own tables, so that a wrong entry there cannot carry an
// expectation along with it.
#include "settings/settings.h"

namespace hublet {
namespace testing {

// Each switch: its section and key in the preference file (none for the one set only
// through the interface), its default, and the interface function that sets it.
struct ExpectedSwitch {
  const char* section;
  const char* key;
  int HubletSettings::*field;
  int defaultValue;
  int functionId;
};

constexpr ExpectedSwitch kExpectedSwitches[] = {
    {"FLINT", "FORCEPERSP", &HubletSettings::forcePersp, 0, 10},
    {"FLINT", "FORCEORTHO", &HubletSettings::forceOrtho, 0, 11},
    {"FLINT", "EMPTYMTLO", &HubletSettings::emptyMtlOnOpen, 0, 12},
    {"FLINT", "EMPTYMTLS", &HubletSettings::emptyMtlOnSave, 0, 13},
    {"FLINT", "SHADEDOPEN", &HubletSettings::shadedOnOpen, 1, 14},
    {"FLINT", "OBJCOLOPEN", &HubletSettings::objColourOnOpen, 1, 15},
    {"FLINT", "BOXSAVE", &HubletSettings::boxOnSave, 1, 16},
    {"FLINT", "OBJCOLSAVE", &HubletSettings::objColourOnSave, 1, 17},
    {"MYVIEW", "USE_VPL", &HubletSettings::useViewLayout, 0, 18},
    {"MYVIEW", "USE_DR", &HubletSettings::useDisplayModes, 0, 19},
    {nullptr, nullptr, &HubletSettings::spareViewFlag, 0, 20},
    {"MYVIEW", "USE_GAMMA", &HubletSettings::useGamma, 0, 21},
    {"MYVIEW", "USE_FPS", &HubletSettings::useFrameRate, 0, 22},
};

// The hooked scene operations as NOTIFY_* codes (pre-event, post-event); start-up is
// hooked as a post-event alone.
constexpr int kHookedPairs[][2] = {{5, 6}, {7, 8}, {9, 10}, {11, 12}, {13, 14}, {20, 21}, {24, 25}, {27, 28}};
constexpr int kStartupCode = 80;

// MAXCOM_VPT_LEFT, _RIGHT, _TOP, _BOTTOM, _FRONT, _BACK, _ISO_USER, _PERSP_USER, _CAMERA,
// _GRID: the command that gives the active viewport each view type.
constexpr int kViewCommands[] = {120, 130, 138, 107, 113, 119, 118, 127, 109, 114};

}  // namespace testing
}  // namespace hublet
