// The replay's transcript for programs: the "hublet-replay/1" document.
#include "host/sim/sim_system.h"
#include "platform/wide_text.h"
#include "tool/common/file_access.h"
#include "tool/common/json_writer.h"
#include "tool/replay/call_notes.h"
#include "tool/replay/replay.h"

namespace hublet {
namespace tool {
namespace {

std::string Int(long long value) { return std::to_string(value); }

std::string Member(const char* name, const std::string& json) { return JsonString(name) + ": " + json; }

std::string Text(const std::wstring& text) { return JsonString(WideToUtf8(text)); }

std::string ValueJson(const CallValue& value) {
  switch (value.kind) {
    case CallValue::Kind::Integer:
      return Int(value.integers[0]);
    case CallValue::Kind::Boolean:
      return value.integers[0] != 0 ? "true" : "false";
    case CallValue::Kind::Real:
      return JsonFloat(value.reals[0]);
    case CallValue::Kind::Text:
    case CallValue::Kind::Word:
      return JsonString(value.utf8);
    case CallValue::Kind::Matrix: {
      std::string json = "[";
      for (std::size_t i = 0; i < value.reals.size(); ++i)
        json += std::string(i == 0 ? "[" : i % 3 == 0 ? "], [" : ", ") + JsonFloat(value.reals[i]);
      return json + "]]";
    }
    case CallValue::Kind::ClassId:
      return "[" + Int(value.integers[0]) + ", " + Int(value.integers[1]) + "]";
    case CallValue::Kind::Nothing:
      break;
  }
  return "null";
}

std::string HostJson(const ReplayHost& h) {
  std::string json = "{" + Member("user", Text(h.user)) + ", " + Member("machine", Text(h.machine)) + ", " +
                     Member("date", JsonString(FormatDate(h.date))) + ", " + Member("time", Int(h.time)) + ", " +
                     Member("renderer", h.renderer.found ? ValueJson(ClassIdValue(h.renderer.value)) : "null") +
                     ", \"viewports\": [";
  for (std::size_t i = 0; i < h.viewTypes.size(); ++i)
    json += std::string(i > 0 ? ", " : "") + "{" + Member("type", Int(h.viewTypes[i])) + ", " +
            Member("shadingExtension", h.shadingExtension[i] ? "true" : "false") + ", " +
            Member("transform", ValueJson(MatrixValue(h.transforms[i]))) + "}";
  json += "], " + Member("activeViewport", Int(h.activeViewport)) + ", \"properties\": [";
  for (std::size_t i = 0; i < h.properties.size(); ++i) {
    const Lookup<std::wstring>& value = h.properties[i].second;
    json += std::string(i > 0 ? ", " : "") + "{" + Member("id", Int(h.properties[i].first)) + ", " +
            Member("value", value.found ? Text(value.value) : "null") + "}";
  }
  json += "], \"directories\": [";
  for (std::size_t i = 0; i < h.directories.size(); ++i)
    json += std::string(i > 0 ? ", " : "") + "{" + Member("id", Int(h.directories[i].first)) + ", " +
            Member("path", Text(h.directories[i].second)) + "}";
  json += "], " +
          Member("preferenceFile", h.preferenceFile.empty() ? "null" : JsonString(h.preferenceFile)) + ", " +
          Member("toolbarScript", h.toolbarScript ? "true" : "false") + "}";
  return json;
}

std::string EventJson(const ReplayGroup& group) {
  std::string json = "{" + Member("step", Int(static_cast<long long>(group.step))) + ", " +
                     Member("event", JsonString(group.event));
  if (!group.note.empty()) json += ", " + Member("note", JsonString(group.note));
  if (group.busyChanged) json += ", " + Member("sceneBusy", Int(group.busy));
  for (const ReplayFact& fact : group.facts) json += ", " + Member(fact.jsonMember.c_str(), fact.json);
  return json + "}";
}

std::string CallJson(const ReplayGroup& group, const HostCall& call) {
  std::string json = "{" + Member("step", Int(static_cast<long long>(group.step))) + ", " +
                     Member("event", JsonString(group.event));
  if (call.view >= 0) json += ", " + Member("view", Int(call.view));
  json += ", " + Member("call", JsonString(call.name)) + ", \"arguments\": [";
  for (std::size_t i = 0; i < call.arguments.size(); ++i) json += (i > 0 ? ", " : "") + ValueJson(call.arguments[i]);
  json += "]";
  if (call.answered) json += ", " + Member("answer", ValueJson(call.answer));
  const std::string note = CallNote(call);
  if (!note.empty()) json += ", " + Member("note", JsonString(note));
  return json + "}";
}

// The events go out as they come; the calls, which the document lists after all of them,
// wait in a temporary file.
class JsonOutput final : public ReplayOutput {
 public:
  explicit JsonOutput(ReplayWriter write) : write_(std::move(write)) {}

  void Host(const ReplayHost& host) override {
    write_("{\n  " + Member("schema", JsonString("hublet-replay/1")) + ",\n  " + Member("host", HostJson(host)) +
           ",\n  \"events\": [\n");
  }

  void Group(const ReplayGroup& group) override {
    write_((group.step > 0 ? ",\n    " : "    ") + EventJson(group));
    for (const HostCall& call : group.calls) {
      calls_.Append((anyCall_ ? ",\n    " : "    ") + CallJson(group, call));
      anyCall_ = true;
    }
  }

  void End() override {
    write_("\n  ],\n  \"calls\": [\n");
    calls_.ReadBack(write_);
    write_("\n  ]\n}\n");
  }

 private:
  ReplayWriter write_;
  ScratchFile calls_;
  bool anyCall_ = false;
};

}  // namespace

std::unique_ptr<ReplayOutput> JsonTranscript(ReplayWriter write) {
  return std::unique_ptr<ReplayOutput>(new JsonOutput(std::move(write)));
}

}  // namespace tool
}  // namespace hublet
