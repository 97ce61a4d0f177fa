// Arbitrary bytes as the preference file, through everything that reads it: the parser and
// its lookups, the profile reader on a real file, LoadSettings, a whole preference pass
// with every switch forced on, redraws and a save on the simulated host, and the check
// analysis of the hublet tool. Any crash, sanitizer report or broken invariant is a bug.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "frame/hublet.h"
#include "harness/sim_session.h"
#include "host/host_constants.h"
#include "platform/ini_document.h"
#include "platform/profile.h"
#include "platform/wide_text.h"
#include "prefs/view_preferences.h"
#include "settings/preference_keys.h"
#include "settings/settings.h"

// The hublet tool's check analysis joins in when the build has it (see CMakeLists.txt).
#ifdef HUBLET_FUZZ_WITH_CHECK
#include "tool/check/check.h"
#endif

namespace hublet {
namespace {

// A broken invariant: say which, then abort so that libFuzzer keeps the input.
[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "invariant broken: %s\n", what);
  std::abort();
}

void Require(bool condition, const char* what) {
  if (!condition) Fail(what);
}

std::string g_filePath;

void WriteFile(const std::string& bytes) {
  std::FILE* file = std::fopen(g_filePath.c_str(), "wb");
  if (file == nullptr) Fail("cannot write the scratch file");
  if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
    Fail("short write of the scratch file");
  std::fclose(file);
}

std::wstring FoldAscii(std::wstring text) {
  for (wchar_t& c : text)
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
  return text;
}

bool Reachable(const std::wstring& name) {
  return name.empty() || (name.front() != L' ' && name.back() != L' ');
}

// Every entry under a section's first header must be found again by a lookup of its
// names (all prepared in one walk), and lookups into every buffer size must respect the
// buffer.
void ExerciseDocument(const IniDocument& document) {
  static const std::size_t kBufferSizes[] = {0, 1, 2, 3, 30, 260};
  struct Entry {
    std::wstring section;
    std::wstring name;
    std::size_t line;
    bool underFirstHeader;
  };
  std::vector<Entry> entries;  // in line order
  std::set<std::wstring> seenSections;
  std::wstring section;
  bool first = false;
  document.ForEachLine([&](const IniLine& line) {
    Require(line.number <= document.LineCount(), "a line past the line count");
    if (line.kind == IniLineKind::Header) {
      section = document.Text(line.name);
      first = seenSections.insert(FoldAscii(section)).second;
    } else if (line.kind == IniLineKind::Entry && !line.beforeFirstSection && entries.size() < 2000) {
      entries.push_back({section, document.Text(line.name), line.number, first});
    }
  });
  std::vector<std::pair<std::wstring, std::wstring>> lookups;
  for (const Entry& entry : entries) lookups.emplace_back(entry.section, entry.name);
  document.Prepare(lookups);

  for (const Entry& entry : entries) {
    const IniFound found = document.Find(entry.section, entry.name);
    // A name cut at a NUL can keep a blank at its end, which no lookup argument keeps
    // (Windows ignores the argument's outer spaces): such an entry is out of reach.
    if (entry.underFirstHeader && Reachable(entry.section) && Reachable(entry.name)) {
      Require(found.line != 0, "an entry of a section's first header is not found");
      Require(found.line <= entry.line, "a lookup found a later entry than the first of its name");
      const auto at = std::lower_bound(entries.begin(), entries.end(), found.line,
                                       [](const Entry& e, std::size_t line) { return e.line < line; });
      Require(at != entries.end() && at->line == found.line && FoldAscii(at->name) == FoldAscii(entry.name) &&
                  FoldAscii(at->section) == FoldAscii(entry.section),
              "a lookup found another name");
    }
    for (std::size_t size : kBufferSizes) {
      const std::wstring text = document.LookupText(entry.section, entry.name, L"dflt ", size);
      Require(size == 0 ? text.empty() : text.size() <= size - 1, "a text overran its buffer");
    }
    (void)document.LookupInt(entry.section, entry.name, -7);
  }
}

void RequireSameSettings(const HubletSettings& a, const HubletSettings& b, const char* what) {
  Require(std::memcmp(&a, &b, sizeof a) == 0, what);
}

// Every key the plug-in reads, through two readers of the same bytes: the answers match.
void CompareReaders(ProfileReader& direct, ProfileReader& fromFile) {
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    const int views = key.kind == KeyKind::PerView ? kStoredViewCount : 1;
    for (int i = 0; i < views; ++i) {
      const std::wstring name = KeyName(key, i);
      Require(direct.ReadInt(key.section, name, key.defaultInt) ==
                  fromFile.ReadInt(key.section, name, key.defaultInt),
              "the file reader and the parser disagree on a number");
      const std::wstring fallback = key.defaultText ? key.defaultText : L"";
      Require(direct.ReadText(key.section, name, fallback) == fromFile.ReadText(key.section, name, fallback),
              "the file reader and the parser disagree on a text");
    }
  }
}

bool IsViewCommand(int command) {
  for (int c : host::viewTypeCommand)
    if (c == command) return true;
  return false;
}

// What the plug-in asked of the host stays inside the host's tables.
void CheckTranscript(const Transcript& transcript) {
  for (const std::string& line : transcript.lines()) {
    int value = 0;
    if (std::sscanf(line.c_str(), "ExecuteCommand(%d)", &value) == 1)
      Require(IsViewCommand(value), "a command outside the view-command table");
    if (std::sscanf(line.c_str(), "SetActiveViewport(%d)", &value) == 1)
      Require(value >= 0 && value < SimHost::kViewportCount, "a viewport index outside 0..3");
  }
}

// The plug-in on the simulated host with these bytes as its preference file, every switch
// on, so that every key is read and every stage runs.
void RunSession(const std::uint8_t* data, std::size_t size) {
  const std::uint8_t knobs = size > 0 ? data[size - 1] : 0;
  SimSession session;
  session.UsePreferenceFile(Utf8ToWide(g_filePath));
  if (knobs & 1) session.host.SetRenderer(host::rendererGammaTargets[(knobs >> 1) & 1]);
  if (knobs & 4) session.host.RemoveRenderer();
  session.host.viewport(knobs >> 6).hasShadingExtension = (knobs & 8) == 0;
  session.LoadAndStart();
  Hublet& plugin = *session.hublet;

  HubletSettings& s = plugin.state.settings;
  s.forcePersp = 1;
  s.forceOrtho = 1;
  s.emptyMtlOnOpen = 1;
  s.useViewLayout = 1;
  s.useDisplayModes = (knobs & 16) ? 0 : 1;
  s.useGamma = 1;
  s.useFrameRate = 1;
  const HubletSettings before = s;

  session.host.Raise(host::kNotifySystemStartup);
  session.host.Raise(host::kNotifySystemPreNew);
  session.host.Raise(host::kNotifySystemPostNew);
  Require(s.forcePersp == before.forcePersp && s.useViewLayout == before.useViewLayout &&
              s.useGamma == before.useGamma && s.useFrameRate == before.useFrameRate,
          "the pass changed a switch");
  Require(session.host.frameRate == s.frameRate, "the frame rate applied is not the one read");
  Require(session.host.viewportLayout == s.viewLayout, "the layout applied is not the one read");

  // Redraw every viewport twice (a perspective view becomes a user view, then a camera)
  // and once without a view; each conversion adds exactly one camera node.
  for (int round = 0; round < 2; ++round) {
    for (int v = -1; v < SimHost::kViewportCount; ++v) {
      const std::size_t nodesBefore = session.host.nodes.size();
      const bool converts = v >= 0 && session.host.viewport(v).type == host::kViewIsoUser;
      session.host.Redraw(v);
      Require(session.host.nodes.size() == nodesBefore + (converts ? 1u : 0u),
              "a redraw added the wrong number of cameras");
    }
  }
  session.host.Raise(host::kNotifyFilePreOpen);
  session.host.Raise(host::kNotifyFilePostOpen);
  session.host.Raise(host::kNotifyFilePreSave);
  session.host.Raise(host::kNotifyFilePostSave);
  Require(plugin.state.sceneBusy == 1, "busy after a post-save");
  CheckTranscript(session.transcript);
}

#ifdef HUBLET_FUZZ_WITH_CHECK
// Whether UTF-8 text holds a control character (C0, DEL or C1), which would reach a
// terminal raw.
bool HoldsControl(const std::string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned char byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x20 || byte == 0x7F) return true;
    if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0) return true;
  }
  return false;
}

// A file in a UTF-16 the reader does not understand (big-endian, or little-endian without
// a mark): where the reader finds nothing in it, the check counts the text's own lines.
bool UnreadableUtf16(const std::string& bytes, IniEncoding encoding) {
  return encoding == IniEncoding::Utf16BeUnsupported || encoding == IniEncoding::Utf16LeNoBom ||
         (encoding == IniEncoding::Ansi && bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] != '\0');
}

// The hublet tool's analysis of the same bytes, with and without a reader: the values it
// reports for the start-up switches are the ones LoadSettings loaded, every line it
// points at is in the file, in order, and no message carries a control character.
void CheckAnalysis(const std::string& bytes, ProfileReader& reader, const HubletSettings& loaded,
                   std::size_t lineCount) {
  for (const tool::CheckReport& report : {tool::CheckPreferenceFile(bytes), tool::CheckPreferenceFile(bytes, reader)}) {
    const bool nothingRead = std::all_of(report.settings.begin(), report.settings.end(),
                                         [](const tool::SettingValue& value) { return value.line == 0; });
    Require(report.lineCount == lineCount || (UnreadableUtf16(bytes, report.encoding) && nothingRead),
            "the check counts other lines than the parser");
    for (const tool::SettingValue& value : report.settings) {
      Require(value.line <= report.lineCount, "the check points past the last line");
      if (value.key->when == ReadWhen::AtStart && value.key->intField != nullptr)
        Require(value.intValue == loaded.*value.key->intField, "the check reports another start-up value");
    }
    Require(report.diagnostics.size() <= report.Total(), "the check lists more diagnostics than it counts");
    for (std::size_t i = 0; i < report.diagnostics.size(); ++i) {
      const tool::Diagnostic& diagnostic = report.diagnostics[i];
      Require(diagnostic.line <= report.lineCount, "a diagnostic points past the last line");
      Require(i == 0 || report.diagnostics[i - 1].line <= diagnostic.line, "diagnostics out of line order");
      Require(!HoldsControl(diagnostic.message), "a message holds a control character");
    }
  }
}
#endif

}  // namespace
}  // namespace hublet

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  const char* dir = std::getenv("TMPDIR");
  std::string pattern = std::string(dir && *dir ? dir : "/tmp") + "/hublet-fuzz-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const int fd = ::mkstemp(name.data());
  if (fd < 0) hublet::Fail("cannot create the scratch file");
  ::close(fd);
  hublet::g_filePath = name.data();
  std::atexit([] { std::remove(hublet::g_filePath.c_str()); });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hublet;
  const std::string bytes(reinterpret_cast<const char*>(data), size);

  const IniDocument document = IniDocument::Parse(bytes);
  ExerciseDocument(document);

  WriteFile(bytes);
  // The same bytes looked up with and without the file system in between.
  IniDocumentReader direct(document);
  const std::unique_ptr<ProfileReader> fromFile = OpenProfile(Utf8ToWide(g_filePath));
  CompareReaders(direct, *fromFile);

  HubletSettings viaParser{};
  HubletSettings viaFile{};
  LoadSettings(direct, viaParser);
  LoadSettings(*fromFile, viaFile);
  RequireSameSettings(viaParser, viaFile, "LoadSettings differs between the readers");

  RunSession(data, size);

#ifdef HUBLET_FUZZ_WITH_CHECK
  CheckAnalysis(bytes, *fromFile, viaParser, document.LineCount());
#endif
  return 0;
}
