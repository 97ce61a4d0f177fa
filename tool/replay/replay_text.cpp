// The replay's transcript for people.
#include "host/sim/sim_system.h"
#include "tool/replay/call_notes.h"
#include "tool/replay/replay.h"

namespace hublet {
namespace tool {
namespace {

std::string Int(int value) { return std::to_string(value); }

std::string Annotated(const std::string& line, const std::string& note, bool bare) {
  return bare || note.empty() ? line : line + "  # " + note;
}

const char* PropertyName(int id) {
  if (id == host::kPropertyAuthor) return "author";
  if (id == host::kPropertySubject) return "subject";
  return "title";
}

std::string HostLines(const ReplayHost& h) {
  std::string out = "# host: user " + FormatText(h.user) + ", machine " + FormatText(h.machine) + ", date " +
                    FormatDate(h.date) + ", time " + Int(h.time) + "\n";
  out += "# renderer: " + (h.renderer.found ? FormatClassId(h.renderer.value) : std::string("none")) + "\n";
  out += "# viewports:";
  for (std::size_t i = 0; i < h.viewTypes.size(); ++i)
    out += " " + Int(static_cast<int>(i)) + "=type " + Int(h.viewTypes[i]) +
           (h.shadingExtension[i] ? "" : " (no shading extension)") +
           (h.transforms[i] == IdentityMatrix() ? "" : " (transform " + FormatMatrix(h.transforms[i]) + ")");
  out += ", active " + Int(h.activeViewport) + "\n";
  out += "# summary properties:";
  for (std::size_t i = 0; i < h.properties.size(); ++i) {
    const Lookup<std::wstring>& value = h.properties[i].second;
    out += std::string(i > 0 ? ", " : " ") + PropertyName(h.properties[i].first) + " " +
           (value.found ? FormatText(value.value) : "(no value)");
  }
  out += h.properties.empty() ? " none\n" : "\n";
  out += "# directories:";
  for (std::size_t i = 0; i < h.directories.size(); ++i)
    out += std::string(i > 0 ? ", " : " ") + Int(h.directories[i].first) + " " + FormatText(h.directories[i].second);
  out += "\n# preference file: " + (h.preferenceFile.empty() ? std::string("none") : h.preferenceFile) + "\n";
  out += std::string("# toolbar script: ") + (h.toolbarScript ? "present" : "absent") + "\n";
  return out;
}

}  // namespace

std::string FormatReplayText(const ReplayRecord& record, bool bare) {
  std::string out = HostLines(record.host);
  for (const ReplayGroup& group : record.groups) {
    out += Annotated("== " + group.event, group.note, bare) + "\n";
    if (group.busyChanged) out += "  [sceneBusy " + Int(group.busy) + "]\n";
    for (const HostCall& call : group.calls) out += Annotated("  " + call.Line(), CallNote(call), bare) + "\n";
    for (const ReplayFact& fact : group.facts) {
      std::size_t begin = 0;
      while (begin <= fact.text.size()) {
        const std::size_t end = fact.text.find('\n', begin);
        out += "  " + fact.text.substr(begin, end - begin) + "\n";
        if (end == std::string::npos) break;
        begin = end + 1;
      }
    }
  }
  return out;
}

}  // namespace tool
}  // namespace hublet
