#include "tool/replay/replay.h"

#include "frame/interface_table.h"
#include "harness/sim_session.h"
#include "host/sim/sim_arguments.h"
#include "settings/preference_keys.h"
#include "tool/common/command_line.h"
#include "tool/common/host_codes.h"
#include "tool/common/json_writer.h"
#include "tool/common/read_times.h"
#include "tool/replay/profile_cache.h"
#include "tool/replay/replay_host.h"
#include "toolbar/toolbar.h"

namespace hublet {
namespace tool {
namespace {

struct NamedNotification {
  const char* name;
  int code;
};

// Single notifications, and the pairs that a scene operation raises.
const NamedNotification kNotifications[] = {
    {"pre-reset", host::kNotifySystemPreReset},   {"post-reset", host::kNotifySystemPostReset},
    {"pre-new", host::kNotifySystemPreNew},       {"post-new", host::kNotifySystemPostNew},
    {"pre-open", host::kNotifyFilePreOpen},       {"post-open", host::kNotifyFilePostOpen},
    {"pre-merge", host::kNotifyFilePreMerge},     {"post-merge", host::kNotifyFilePostMerge},
    {"pre-save", host::kNotifyFilePreSave},       {"post-save", host::kNotifyFilePostSave},
    {"pre-render", host::kNotifyPreRender},       {"post-render", host::kNotifyPostRender},
    {"pre-import", host::kNotifyPreImport},       {"post-import", host::kNotifyPostImport},
    {"pre-export", host::kNotifyPreExport},       {"post-export", host::kNotifyPostExport},
    {"startup", host::kNotifySystemStartup},
};
const char* const kPairs[] = {"reset", "new", "open", "merge", "save", "render", "import", "export"};

ReplayEvent OfKind(ReplayEvent::Kind kind, const std::string& word) {
  ReplayEvent event;
  event.kind = kind;
  event.word = word;
  return event;
}

ReplayEvent Notification(const std::string& name, int code) {
  ReplayEvent event = OfKind(ReplayEvent::Kind::Notification, name);
  event.name = name;
  event.code = code;
  return event;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t at = text.find(separator, begin);
    parts.push_back(text.substr(begin, at - begin));
    if (at == std::string::npos) return parts;
    begin = at + 1;
  }
}

std::string Int(int value) { return std::to_string(value); }

int EventNumber(const std::string& text, const std::string& event, const char* what) {
  return ParseInt32(text, std::string(what) + " in \"" + event + "\"");
}

ReplayEvent ParseRedraw(const std::string& text, const std::vector<std::string>& parts) {
  ReplayEvent event = OfKind(ReplayEvent::Kind::Redraw, text);
  if (parts.size() >= 2) {
    event.setsType = true;
    event.viewType = EventNumber(parts[1], text, "the view type");
  }
  if (parts.size() == 3) {
    event.viewport = EventNumber(parts[2], text, "the viewport");
    if (event.viewport < 0 || event.viewport >= SimHost::kViewportCount)
      throw UsageError("the viewport in \"" + text + "\" must be 0 to " + Int(SimHost::kViewportCount - 1));
  }
  return event;
}

// A host change written as an event: NAME or NAME:VALUE.
bool ParseHostEvent(const std::string& text, ReplayEvent& event) {
  const std::size_t colon = text.find(':');
  const std::string name = text.substr(0, colon);
  const std::string value = colon == std::string::npos ? std::string() : text.substr(colon + 1);
  HostChange change;
  try {
    if (!ParseHostChange(name, colon == std::string::npos ? nullptr : &value, change)) return false;
  } catch (const UsageError& error) {
    throw UsageError("\"" + text + "\": " + error.what());
  }
  event = OfKind(ReplayEvent::Kind::Host, text);
  event.change = change;
  return true;
}

std::string FunctionNote(int id) {
  const InterfaceFunction* function = FindInterfaceFunction(id);
  return function == nullptr ? "no such function" : function->fieldName;
}

// --- The plug-in's state, as the state event shows it ---

// One settings field's value, for the transcript or as JSON.
std::string FieldValue(const HubletSettings& s, const PreferenceKey& key, bool json) {
  if (key.intField != nullptr) return Int(s.*key.intField);
  if (key.floatField != nullptr) return json ? JsonFloat(s.*key.floatField) : FormatFloat(s.*key.floatField);
  std::string list = "[";
  for (int i = 0; i < kStoredViewCount; ++i) list += (i == 0 ? "" : json ? ", " : " ") + Int((s.*key.viewField)[i]);
  return list + "]";
}

std::string StateText(const PluginState& state) {
  const bool saved = state.saveDay != 0;
  std::string text = "sceneTime " + Int(state.sceneTime) + ", sceneBusy " + Int(state.sceneBusy) +
                     ", last save " +
                     (saved ? FormatDate(LocalDate{state.saveDay, state.saveMonth, state.saveYear}) : "none");
  const HubletSettings& s = state.settings;
  for (const ReadWhen when : {ReadWhen::AtStart, ReadWhen::LayoutStage, ReadWhen::GammaStage, ReadWhen::FrameRateStage}) {
    text += std::string("\n") + ReadWhenId(when) + ":";
    const char* separator = " ";
    for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
      const PreferenceKey& key = kPreferenceKeys[k];
      if (key.when != when) continue;
      text += separator + std::string(key.field) + " " + FieldValue(s, key, false);
      separator = ", ";
    }
  }
  return text;
}

std::string StateJson(const PluginState& state) {
  const bool saved = state.saveDay != 0;
  std::string json = "{\"sceneTime\": " + Int(state.sceneTime) + ", \"sceneBusy\": " + Int(state.sceneBusy) +
                     ", \"lastSave\": " +
                     (saved ? JsonString(FormatDate(LocalDate{state.saveDay, state.saveMonth, state.saveYear}))
                            : "null") +
                     ", \"settings\": {";
  const HubletSettings& s = state.settings;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    json += (k > 0 ? ", " : "") + JsonString(key.field) + ": " + FieldValue(s, key, true);
  }
  return json + "}}";
}

// --- Running ---

class Runner {
 public:
  explicit Runner(const ReplayOptions& options) : options_(options), hostState_(session_) {
    session_.system.openFile = [this](const std::wstring& path) { return preferenceFiles_.Open(path); };
  }

  ReplayRecord Run(const std::vector<ReplayEvent>& events) {
    for (const HostChange& change : options_.host) hostState_.Apply(change);
    record_.host = hostState_.Describe();
    Begin("load", std::string());
    session_.Load();
    Finish();
    Begin("start", std::string());
    session_.Start();
    Finish();
    for (const ReplayEvent& event : events) {
      const int requests = session_.host.redrawRequests;
      RunEvent(event);
      FollowRedraws(requests);
    }
    Begin("unload", std::string());
    session_.Unload();
    Finish();
    return std::move(record_);
  }

 private:
  void Begin(const std::string& header, const std::string& note) {
    ReplayGroup group;
    group.event = header;
    group.note = note;
    record_.groups.push_back(group);
    busyBefore_ = session_.hublet ? session_.hublet->state.sceneBusy : 0;
  }

  // The calls since Begin, and sceneBusy when the group changed it.
  void Finish() {
    ReplayGroup& group = record_.groups.back();
    group.calls = session_.transcript.calls();
    session_.transcript.Clear();
    if (session_.hublet && session_.hublet->state.sceneBusy != busyBefore_) {
      group.busyChanged = true;
      group.busy = session_.hublet->state.sceneBusy;
    }
  }

  void Fact(std::string text, const char* member, std::string json) {
    ReplayFact fact;
    fact.text = std::move(text);
    fact.jsonMember = member;
    fact.json = std::move(json);
    record_.groups.back().facts.push_back(fact);
  }

  void RunEvent(const ReplayEvent& event) {
    SimHost& host = session_.host;
    switch (event.kind) {
      case ReplayEvent::Kind::Notification:
        Begin(event.name + " (notification " + Int(event.code) + ")", HostCodeText(kNotificationCodes, event.code));
        host.Raise(event.code);
        break;
      case ReplayEvent::Kind::Redraw: {
        if (event.noView) {
          Begin("redraw without a view", std::string());
          host.Redraw(-1);
          break;
        }
        const int index = event.viewport >= 0 ? event.viewport : host.activeViewport;
        if (event.setsType) {
          HostChange change{};
          change.what = HostChange::What::ViewType;
          change.viewport = index;
          change.number = event.viewType;
          hostState_.Apply(change);
        }
        const int type = host.viewport(index).type;
        Begin("redraw viewport " + Int(index) + " (type " + Int(type) + ")", HostCodeText(kViewTypes, type));
        host.Redraw(index);
        break;
      }
      case ReplayEvent::Kind::Call:
        Begin("call " + Int(event.functionId) + (event.hasArgument ? " " + Int(event.argument) : " (no argument)"),
              FunctionNote(event.functionId));
        Call(event);
        break;
      case ReplayEvent::Kind::Toolbar:
        Begin("toolbar", std::string());
        ReinstallToolbar(host);
        break;
      case ReplayEvent::Kind::Host:
        Begin(event.word, std::string());
        hostState_.Apply(event.change);
        break;
      case ReplayEvent::Kind::State:
        Begin("state", std::string());
        if (session_.hublet) Fact(StateText(session_.hublet->state), "state", StateJson(session_.hublet->state));
        break;
    }
    Finish();
  }

  void Call(const ReplayEvent& event) {
    Hublet& hublet = *session_.hublet;
    const std::string function = "\"function\": " + Int(event.functionId);
    try {
      const SimArguments arguments = event.hasArgument ? SimArguments({event.argument}) : SimArguments();
      const int status = hublet.CallInterface(event.functionId, arguments);
      std::string text = "-> status " + Int(status);
      std::string json = "{" + function + ", \"status\": " + Int(status);
      if (const InterfaceFunction* f = FindInterfaceFunction(event.functionId)) {
        const int value = hublet.state.settings.*f->field;
        text += ", " + std::string(f->fieldName) + " = " + Int(value);
        json += ", \"field\": " + JsonString(f->fieldName) + ", \"value\": " + Int(value);
      }
      Fact(text, "interface", json + "}");
    } catch (const OutOfRangeError& error) {
      const std::string message = WideToUtf8(error.Message());
      Fact("-> throws OutOfRangeException(" + FormatText(error.Message()) + ")", "interface",
           "{" + function + ", \"throws\": \"OutOfRangeException\", \"message\": " + JsonString(message) + "}");
    }
  }

  // A complete redraw, every viewport in turn, for each redraw the plug-in asked for since
  // `requests`, up to the bound: a plug-in that asks again at every redraw would never stop.
  void FollowRedraws(int requests) {
    SimHost& host = session_.host;
    int followed = 0;
    while (options_.followRedraws > 0 && host.redrawRequests > requests) {
      if (followed == options_.followRedraws) {
        const std::string why = "stopped following: the plug-in asked for another redraw after " + Int(followed) +
                                " in a row";
        Fact("[" + why + "]", "stopped", JsonString(why));
        return;
      }
      requests = host.redrawRequests;
      ++followed;
      Begin("requested redraw " + Int(followed) + " (every viewport)", std::string());
      for (int i = 0; i < SimHost::kViewportCount; ++i) host.Redraw(i);
      Finish();
    }
  }

  const ReplayOptions& options_;
  ProfileCache preferenceFiles_;
  SimSession session_;
  ReplayHostState hostState_;
  ReplayRecord record_;
  int busyBefore_ = 0;
};

}  // namespace

std::vector<ReplayEvent> ParseReplayEvent(const std::string& text) {
  const std::string name = text == "start-up" ? "startup" : text;
  for (const NamedNotification& n : kNotifications)
    if (name == n.name) return {Notification(n.name, n.code)};
  for (const char* pair : kPairs) {
    if (name != pair) continue;
    std::vector<ReplayEvent> events;
    for (const char* phase : {"pre-", "post-"}) {
      const std::vector<ReplayEvent> one = ParseReplayEvent(phase + name);
      events.insert(events.end(), one.begin(), one.end());
    }
    return events;
  }
  const std::vector<std::string> parts = Split(text, ':');
  if (parts[0] == "notify" && parts.size() == 2) return {Notification("notify", EventNumber(parts[1], text, "the notification code"))};
  if (parts[0] == "redraw" && parts.size() <= 3) return {ParseRedraw(text, parts)};
  if (text == "redraw-no-view") {
    ReplayEvent event = OfKind(ReplayEvent::Kind::Redraw, text);
    event.noView = true;
    return {event};
  }
  if (parts[0] == "call" && (parts.size() == 2 || parts.size() == 3)) {
    ReplayEvent event = OfKind(ReplayEvent::Kind::Call, text);
    event.functionId = EventNumber(parts[1], text, "the function ID");
    event.hasArgument = parts.size() == 3;
    if (event.hasArgument) event.argument = EventNumber(parts[2], text, "the argument");
    return {event};
  }
  if (text == "toolbar") return {OfKind(ReplayEvent::Kind::Toolbar, text)};
  if (text == "state") return {OfKind(ReplayEvent::Kind::State, text)};
  ReplayEvent event;
  if (ParseHostEvent(text, event)) return {event};
  throw UsageError("unknown event \"" + text + "\"");
}

std::vector<std::string> DefaultReplayEvents() { return {"startup", "new", "open", "redraw:6", "save", "save"}; }

ReplayRecord RunReplay(const ReplayOptions& options, const std::vector<ReplayEvent>& events) {
  return Runner(options).Run(events);
}

}  // namespace tool
}  // namespace hublet
