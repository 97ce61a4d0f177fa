#pragma once
// The preference switches and the stored view values, and where they are read from.
#include <string>

#include "host/host.h"
#include "platform/profile.h"

namespace hublet {

constexpr int kStoredViewCount = 4;  // only VP0... to VP3... keys exist
constexpr const wchar_t* kPreferenceFileName = L"Vantor.ini";

// Every field is a 32-bit value; the file may hold any integer in a switch, while the
// preference interface stores only 0 or 1.
struct HubletSettings {
  // "FLINT", read at start.
  int forcePersp;
  int forceOrtho;
  int emptyMtlOnOpen;
  int emptyMtlOnSave;
  int shadedOnOpen;
  int objColourOnOpen;
  int boxOnSave;
  int objColourOnSave;
  // "MYVIEW" switches, read at start.
  int useViewLayout;
  int useDisplayModes;
  int spareViewFlag;
  int useGamma;
  int useFrameRate;
  // "MYVIEW" values, read afresh by every preference pass: the last values applied.
  int viewLayout;
  int expertMode;
  int commandPanel;
  int viewCount;
  int viewType[kStoredViewCount];
  int viewStyle[kStoredViewCount];
  int viewEdges[kStoredViewCount];
  float displayGamma;
  float fileInGamma;
  float fileOutGamma;
  float rendererGamma;
  int frameRate;
};

// "Vantor.ini" in the host's plug-in configuration directory, rebuilt on every use.
std::wstring PreferenceFilePath(Host& host);

// Reads the start-up switches ("FLINT" and the "MYVIEW" switches) into settings; a
// missing file or key leaves the default.
void LoadSettings(ProfileReader& reader, HubletSettings& settings);

// The preference text as the plug-in turns it into a number: the C library's wide
// text-to-double conversion (0.0 when nothing parses), stored as a 32-bit float.
float ParseGamma(const std::wstring& text);

}  // namespace hublet
