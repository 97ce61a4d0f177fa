// The replay's events as the command line and session files write them.
#include "host/sim/sim_host.h"
#include "tool/common/command_line.h"
#include "tool/common/shown_text.h"
#include "tool/replay/replay.h"

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

std::string InEvent(const char* what, const std::string& event) { return std::string(what) + " in " + QuotedArgument(event); }

ReplayEvent ParseRedraw(const std::string& text, const std::vector<std::string>& parts) {
  ReplayEvent event = OfKind(ReplayEvent::Kind::Redraw, text);
  if (parts.size() >= 2) {
    event.setsType = true;
    event.viewType = ParseInt32(parts[1], InEvent("the view type", text));
  }
  if (parts.size() == 3)
    event.viewport = ParseIntInRange(parts[2], InEvent("the viewport", text), 0, SimHost::kViewportCount - 1);
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
    throw UsageError(QuotedArgument(text) + ": " + error.what());
  }
  event = OfKind(ReplayEvent::Kind::Host, text);
  event.change = change;
  return true;
}

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
  if (parts[0] == "notify" && parts.size() == 2)
    return {Notification("notify", ParseInt32(parts[1], InEvent("the notification code", text)))};
  if (parts[0] == "redraw" && parts.size() <= 3) return {ParseRedraw(text, parts)};
  if (text == "redraw-no-view") {
    ReplayEvent event = OfKind(ReplayEvent::Kind::Redraw, text);
    event.noView = true;
    return {event};
  }
  if (parts[0] == "call" && (parts.size() == 2 || parts.size() == 3)) {
    ReplayEvent event = OfKind(ReplayEvent::Kind::Call, text);
    event.functionId = ParseInt32(parts[1], InEvent("the function ID", text));
    event.hasArgument = parts.size() == 3;
    if (event.hasArgument) event.argument = ParseInt32(parts[2], InEvent("the argument", text));
    return {event};
  }
  if (text == "toolbar") return {OfKind(ReplayEvent::Kind::Toolbar, text)};
  if (text == "state") return {OfKind(ReplayEvent::Kind::State, text)};
  ReplayEvent event;
  if (ParseHostEvent(text, event)) return {event};
  throw UsageError("unknown event " + QuotedArgument(text));
}

std::vector<std::string> DefaultReplayEvents() { return {"startup", "new", "open", "redraw:6", "save", "save"}; }

}  // namespace tool
}  // namespace hublet
