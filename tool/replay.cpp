#include "tool/replay.h"

#include <algorithm>

#include "frame/interface_table.h"
#include "host/sim/sim_arguments.h"
#include "harness/sim_session.h"
#include "toolbar/toolbar.h"
#include "tool/command_line.h"

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

ReplayEvent OfKind(ReplayEvent::Kind kind) {
  ReplayEvent event;
  event.kind = kind;
  return event;
}

ReplayEvent Notification(const std::string& name, int code) {
  ReplayEvent event = OfKind(ReplayEvent::Kind::Notification);
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

// The host as the options set it up, before the plug-in is loaded.
void PrepareHost(SimSession& session, const ReplayOptions& options) {
  SimHost& host = session.host;
  session.system.userName = options.userName;
  session.system.hostName = options.hostName;
  session.system.today = options.date;
  host.SetTime(options.time);
  if (options.renderer == ReplayOptions::Renderer::None) host.RemoveRenderer();
  if (options.renderer == ReplayOptions::Renderer::Chosen) host.SetRenderer(options.rendererId);
  for (const ReplayProperty& p : options.properties) {
    if (p.hasValue)
      host.SetProperty(host::kPropertySetSummary, p.id, p.text);
    else
      host.SetPropertyWithoutValue(host::kPropertySetSummary, p.id);
  }
  for (const auto& vt : options.viewportTypes) host.viewport(vt.first).type = vt.second;
  if (options.toolbarScriptExists) host.AddFile(ToolbarScriptPath(host));
  if (options.usePreferenceFile) session.UsePreferenceFile(options.preferenceFile);
  session.transcript.Clear();  // setting up is not the plug-in's doing
}

std::string HostDescription(SimSession& session, const ReplayOptions& options) {
  SimHost& host = session.host;
  std::string out = "# host: user " + FormatText(options.userName) + ", machine " + FormatText(options.hostName) +
                    ", date " + Int(options.date.day) + "-" + Int(options.date.month) + "-" +
                    Int(options.date.year) + ", time " + Int(options.time) + "\n";
  out += "# renderer: ";
  if (options.renderer == ReplayOptions::Renderer::None)
    out += "none";
  else
    out += FormatClassId(options.renderer == ReplayOptions::Renderer::Chosen ? options.rendererId
                                                                              : SimHost::kDefaultRenderer);
  out += "\n# viewports:";
  for (int i = 0; i < SimHost::kViewportCount; ++i) out += " " + Int(i) + "=type " + Int(host.viewport(i).type);
  out += ", active " + Int(host.activeViewport) + "\n";
  out += "# summary properties:";
  const struct {
    const char* name;
    int id;
  } properties[] = {{"author", host::kPropertyAuthor}, {"subject", host::kPropertySubject}, {"title", host::kPropertyTitle}};
  bool any = false;
  for (const auto& p : properties) {
    // The last option for a property is what the host holds.
    const ReplayProperty* given = nullptr;
    for (const ReplayProperty& option : options.properties)
      if (option.id == p.id) given = &option;
    if (given == nullptr) continue;
    out += std::string(any ? ", " : " ") + p.name + " " + (given->hasValue ? FormatText(given->text) : "(no value)");
    any = true;
  }
  out += any ? "\n" : " none\n";
  out += std::string("# toolbar script: ") + (options.toolbarScriptExists ? "present" : "absent") + "\n";
  return out;
}

// Header line, then every host call since the last group, indented.
void Flush(std::string& out, SimSession& session, const std::string& header) {
  out += "== " + header + "\n";
  for (const std::string& line : session.transcript.lines()) out += "  " + line + "\n";
  session.transcript.Clear();
}

std::string RunEvent(SimSession& session, const ReplayEvent& event) {
  SimHost& host = session.host;
  switch (event.kind) {
    case ReplayEvent::Kind::Notification:
      host.Raise(event.code);
      return event.name + " (notification " + Int(event.code) + ")";
    case ReplayEvent::Kind::Redraw: {
      const int index = event.viewport >= 0 ? event.viewport : host.activeViewport;
      SimView& view = host.viewport(index);
      if (event.setsType) {
        view.type = event.viewType;
        if (view.type != host::kViewCamera) view.camera = nullptr;
      }
      const std::string header = "redraw viewport " + Int(index) + " (type " + Int(view.type) + ")";
      host.Redraw(index);
      return header;
    }
    case ReplayEvent::Kind::Call: {
      std::string result;
      try {
        const SimArguments arguments = event.hasArgument ? SimArguments({event.argument}) : SimArguments();
        const int status = session.hublet->CallInterface(event.functionId, arguments);
        result = "-> status " + Int(status);
        if (const InterfaceFunction* function = FindInterfaceFunction(event.functionId))
          result += ", " + std::string(function->fieldName) + " = " + Int(session.hublet->state.settings.*function->field);
      } catch (const OutOfRangeError& error) {
        result = "-> throws OutOfRangeException(" + FormatText(error.Message()) + ")";
      }
      session.transcript.Add(result);
      return "call " + Int(event.functionId) + (event.hasArgument ? " " + Int(event.argument) : " (no argument)");
    }
    case ReplayEvent::Kind::Toolbar:
      ReinstallToolbar(host);
      return "toolbar";
  }
  return std::string();
}

int EventNumber(const std::string& text, const std::string& event, const char* what) {
  return ParseInt32(text, std::string(what) + " in \"" + event + "\"");
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
  if (parts[0] == "notify" && parts.size() == 2) {
    const int code = EventNumber(parts[1], text, "the notification code");
    return {Notification("notify", code)};
  }
  if (parts[0] == "redraw" && parts.size() <= 3) {
    ReplayEvent event = OfKind(ReplayEvent::Kind::Redraw);
    if (parts.size() >= 2) {
      event.setsType = true;
      event.viewType = EventNumber(parts[1], text, "the view type");
    }
    if (parts.size() == 3) {
      event.viewport = EventNumber(parts[2], text, "the viewport");
      if (event.viewport < 0 || event.viewport >= SimHost::kViewportCount)
        throw UsageError("the viewport in \"" + text + "\" must be 0 to " + Int(SimHost::kViewportCount - 1));
    }
    return {event};
  }
  if (parts[0] == "call" && (parts.size() == 2 || parts.size() == 3)) {
    ReplayEvent event = OfKind(ReplayEvent::Kind::Call);
    event.functionId = EventNumber(parts[1], text, "the function ID");
    event.hasArgument = parts.size() == 3;
    if (event.hasArgument) event.argument = EventNumber(parts[2], text, "the argument");
    return {event};
  }
  if (text == "toolbar") return {OfKind(ReplayEvent::Kind::Toolbar)};
  throw UsageError("unknown event \"" + text + "\"");
}

std::vector<std::string> DefaultReplayEvents() { return {"startup", "new", "open", "redraw:6", "save", "save"}; }

std::string ReplayEventNames() {
  std::string names;
  for (const NamedNotification& n : kNotifications) names += std::string(names.empty() ? "" : ", ") + n.name;
  return names;
}

std::string RunReplay(const ReplayOptions& options, const std::vector<ReplayEvent>& events) {
  SimSession session;
  PrepareHost(session, options);
  std::string out = HostDescription(session, options);
  session.Load();
  Flush(out, session, "load");
  session.Start();
  Flush(out, session, "start");
  for (const ReplayEvent& event : events) {
    const std::string header = RunEvent(session, event);
    Flush(out, session, header);
  }
  session.Unload();
  Flush(out, session, "unload");
  return out;
}

}  // namespace tool
}  // namespace hublet
