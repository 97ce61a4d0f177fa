#pragma once
// The one table of the preference file: every key with its section, the settings field it
// fills, when it is read, its default and what it does. Loading, the preference pass, the
// checker of the hublet tool and the documentation all read this table.
#include <cstddef>
#include <string>

#include "platform/profile.h"
#include "settings/settings.h"

namespace hublet {

// When the plug-in reads a key: once at start, or afresh by a stage of every preference pass.
enum class ReadWhen { AtStart, LayoutStage, GammaStage, FrameRateStage };

// How the plug-in tests a switch; the checker warns where the file's value would surprise.
enum class SwitchTest {
  NotASwitch,  // a stored value, applied as it stands
  ExactlyOne,  // acts only on 1
  NonZero,     // acts on any value but 0
  HeldOnly,    // kept in the record for companion tools; nothing here acts on it
};

enum class KeyKind {
  Integer,   // a whole number parsed by the profile API
  PerView,   // one integer key per stored viewport, the name a pattern with %i
  GammaText  // text parsed as a number
};

struct PreferenceKey {
  const wchar_t* section;
  const wchar_t* name;
  const char* field;
  KeyKind kind;
  ReadWhen when;
  SwitchTest test;
  int HubletSettings::*intField;
  int (HubletSettings::*viewField)[kStoredViewCount];
  float HubletSettings::*floatField;
  int defaultInt;
  const wchar_t* defaultText;
  const char* effect;
};

extern const PreferenceKey kPreferenceKeys[];
extern const std::size_t kPreferenceKeyCount;

// The key name of a per-view row for one viewport ("VP%iTYPE", 2 -> "VP2TYPE"); the
// row's name for any other row.
std::wstring KeyName(const PreferenceKey& key, int viewIndex);

// Reads every key of the table that is read at `when` into settings.
void ReadPreferenceKeys(ProfileReader& reader, HubletSettings& settings, ReadWhen when);

}  // namespace hublet
