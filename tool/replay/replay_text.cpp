// The replay's transcript for people.
#include "host/sim/sim_system.h"
#include "platform/wide_text.h"
#include "tool/common/shown_text.h"
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

// The preference file as named, which differs between two configurations compared: the
// bare transcript says only whether there is one.
std::string PreferenceFileLine(const ReplayHost& h, bool bare) {
  if (h.preferenceFile.empty()) return "none";
  return bare ? "present" : Escaped(Utf8ToWide(h.preferenceFile));
}

std::string HostLines(const ReplayHost& h, bool bare) {
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
  out += "\n# preference file: " + PreferenceFileLine(h, bare) + "\n";
  out += std::string("# toolbar script: ") + (h.toolbarScript ? "present" : "absent") + "\n";
  return out;
}

class TextOutput final : public ReplayOutput {
 public:
  TextOutput(bool bare, ReplayWriter write) : bare_(bare), write_(std::move(write)) {}

  void Host(const ReplayHost& host) override { write_(HostLines(host, bare_)); }

  // A header that is an event as given (user:NAME) shows its text escaped.
  void Group(const ReplayGroup& group) override {
    std::string out = Annotated("== " + Escaped(Utf8ToWide(group.event)), group.note, bare_) + "\n";
    if (group.busyChanged) out += "  [sceneBusy " + Int(group.busy) + "]\n";
    for (const HostCall& call : group.calls) out += Annotated("  " + call.Line(), CallNote(call), bare_) + "\n";
    for (const ReplayFact& fact : group.facts) {
      std::size_t begin = 0;
      while (begin <= fact.text.size()) {
        const std::size_t end = fact.text.find('\n', begin);
        out += "  " + fact.text.substr(begin, end - begin) + "\n";
        if (end == std::string::npos) break;
        begin = end + 1;
      }
    }
    write_(out);
  }

  void End() override {}

 private:
  bool bare_;
  ReplayWriter write_;
};

}  // namespace

std::unique_ptr<ReplayOutput> TextTranscript(bool bare, ReplayWriter write) {
  return std::unique_ptr<ReplayOutput>(new TextOutput(bare, std::move(write)));
}

}  // namespace tool
}  // namespace hublet
