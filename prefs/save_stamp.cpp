#include "prefs/save_stamp.h"

#include <initializer_list>
#include <utility>

#include "settings/plugin_state.h"

namespace hublet {
namespace {

constexpr int kSet = host::kPropertySetSummary;

// A summary property as it stands before the save.
struct ExistingProperty {
  bool found;     // the lookup succeeded
  bool hasValue;  // ... and the property holds a value
  std::wstring text;
};

ExistingProperty ReadProperty(Host& host, int id) {
  const Lookup<int> index = host.FindProperty(kSet, id);
  if (!index.found) return {false, false, {}};
  Lookup<std::wstring> value = host.PropertyText(kSet, index.value);
  return {true, value.found, value.found ? std::move(value.value) : std::wstring()};
}

void WriteProperty(Host& host, int id, const std::wstring& text) {
  host.DeleteProperty(kSet, id);
  host.FindProperty(kSet, id);  // the host is asked again; the answer is not needed
  host.AddStringProperty(kSet, id, text);
}

std::wstring DateText(const LocalDate& date) {
  return std::to_wstring(date.day) + L"-" + std::to_wstring(date.month) + L"-" +
         std::to_wstring(date.year);
}

}  // namespace

std::wstring SaverText(const std::wstring& userName, const std::wstring& hostName) {
  return userName + L" on " + hostName;
}

void StampSaveProperties(PluginState& state) {
  Host& host = state.host;
  System& system = state.system;
  const LocalDate today = system.Today();
  state.saveDay = today.day;
  state.saveMonth = today.month;
  state.saveYear = today.year;
  // Asked one after the other, so the system sees the same order on every compiler.
  const std::wstring userName = system.UserName();
  const std::wstring hostName = system.HostName();
  const std::wstring saver = SaverText(userName, hostName);
  const std::wstring date = DateText(today);

  const ExistingProperty author = ReadProperty(host, host::kPropertyAuthor);
  const ExistingProperty subject = ReadProperty(host, host::kPropertySubject);
  const ExistingProperty title = ReadProperty(host, host::kPropertyTitle);
  // `found` follows the author and then the subject lookup: a miss clears it, a value sets
  // it, a property without a value leaves it. So it tells whether a subject was found.
  bool found = false;
  for (const ExistingProperty* p : {&author, &subject}) {
    if (!p->found) found = false;
    else if (p->hasValue) found = true;
  }

  if (title.hasValue || found) {
    if (saver == subject.text) return;  // the same saver again: the stamp stands
    WriteProperty(host, host::kPropertySubject, saver);
    WriteProperty(host, host::kPropertyAuthor, subject.text);
  } else {
    // Never stamped.
    WriteProperty(host, host::kPropertySubject, saver);
    WriteProperty(host, host::kPropertyAuthor, saver);
  }
  WriteProperty(host, host::kPropertyTitle, date);
}

}  // namespace hublet
