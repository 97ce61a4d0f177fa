// What the plug-in costs its host: the display operation that runs inside every viewport
// redraw, loading the settings and the preference pass, the profile reader on small and
// very large files next to inih, and the save stamp. The host here records nothing, so the
// figures are the plug-in's own and not the simulator's. The README holds the
// targets and the last figures.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench/temp_files.h"
#include "frame/hublet.h"
#include "host/host_constants.h"
#include "platform/profile.h"
#include "platform/wide_text.h"
#include "prefs/save_stamp.h"
#include "prefs/view_preferences.h"
#include "settings/preference_keys.h"
#include "settings/settings.h"

#ifdef HUBLET_BENCH_WITH_INIH
#include <ini.h>
#endif

namespace hublet {
namespace {

// ---- A host and an operating system that do the least a real one would ----

// A view that answers its type and keeps nothing else.
class MinimalView final : public View {
 public:
  int Type() override { return type; }
  bool IsPerspective() override { return type == host::kViewPerspUser || type == host::kViewCamera; }
  Matrix43 AffineTransform() override { return transform; }
  void SetAffineTransform(const Matrix43& m) override { transform = m; }
  bool HasShadingExtension() override { return true; }
  void SetShadingStyle(int style) override { shadingStyle = style; }
  void SetViewCamera(NodeRef) override { type = host::kViewCamera; }
  int type = 2;
  int shadingStyle = 0;
  Matrix43 transform{};
};

class NullHost final : public Host {
 public:
  void RegisterNotification(HookGroup, int, NotificationHandler&) override {}
  void UnregisterNotification(HookGroup, int, NotificationHandler&) override {}
  void RegisterDisplayCallback(bool, DisplayHandler&) override {}
  void DetachDisplayHandler(DisplayHandler&) override {}
  TimeValue CurrentTime() override { return 0; }
  std::wstring Directory(int) override { return L"plugcfg"; }
  bool ExecuteScript(const std::wstring&, bool) override { return true; }
  bool FileExists(const std::wstring&, bool) override { return false; }
  bool LoadScriptFile(const std::wstring&, wchar_t*) override { return true; }
  void SetViewportLayout(int) override {}
  void SetExpertMode(int) override {}
  void SetCommandPanelOpen(int) override {}
  void SetActiveViewport(int index) override {
    if (index >= 0 && index < 4) active_ = index;
  }
  // A view command switches the active view's type, so the pass meets perspective views.
  void ExecuteCommand(int command) override {
    for (int type = 0; type < host::kViewTypeCount; ++type)
      if (host::viewTypeCommand[type] == command) views_[active_].type = type;
  }
  View& ActiveView() override { return views_[active_]; }
  void SetActiveViewportEdgedFaces(int) override {}
  void ForceCompleteRedraw(bool) override {}
  CameraRef CreateCameraObject(int) override { return CameraRef{nullptr}; }
  NodeRef CreateObjectNode(CameraRef) override { return NodeRef{nullptr}; }
  void SetNodeTransform(NodeRef, TimeValue, const Matrix43&) override {}
  void SelectNode(NodeRef, int) override {}
  void SetDisplayGamma(float) override {}
  void SetFileInGamma(float) override {}
  void SetFileOutGamma(float) override {}
  Lookup<ClassId> CurrentRendererClass(bool) override { return {true, host::rendererGammaTargets[0]}; }
  void SetRendererFloat(int, int, TimeValue, float, int) override {}
  void SetFrameRate(int) override {}
  // Every summary property exists; the subject is the one chosen by the benchmark.
  Lookup<int> FindProperty(int, int id) override { return {true, id}; }
  Lookup<std::wstring> PropertyText(int, int index) override {
    return {true, index == host::kPropertySubject ? subject : std::wstring(L"3-7-2020")};
  }
  void DeleteProperty(int, int) override {}
  void AddStringProperty(int, int, const std::wstring&) override {}

  std::wstring subject = L"anna on RENDER07";

 private:
  MinimalView views_[4];
  int active_ = 0;
};

// Reads the preference file from a real file with the reader of this build, and counts
// how often the plug-in opens it.
class FileSystem final : public System {
 public:
  explicit FileSystem(std::string file) : file_(Utf8ToWide(file)) {}
  void InitializeCom() override {}
  void StartSockets() override {}
  void ReleaseSockets() override {}
  std::wstring UserName() override { return L"anna"; }
  std::wstring HostName() override { return L"RENDER07"; }
  LocalDate Today() override { return {3, 7, 2020}; }
  std::unique_ptr<ProfileReader> OpenProfile(const std::wstring&) override {
    ++opens;
    return hublet::OpenProfile(file_);
  }
  int opens = 0;

 private:
  std::wstring file_;
};

// The plug-in, loaded and started on a null host with its preference file.
struct Plugin {
  explicit Plugin(const std::string& file) : system(file), hublet(host, system) { hublet.Start(); }
  NullHost host;
  FileSystem system;
  Hublet hublet;
};

// ---- Files ----

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

std::string WriteTemp(const std::string& name, const std::string& bytes) {
  const std::string path = TempDirectory() + "/" + name;
  std::ofstream(path, std::ios::binary) << bytes;
  RemoveAtExit(path);
  return path;
}

// The sample preference file: every key the plug-in reads, every stage switched on.
const std::string& PreferenceBytes() {
  static const std::string bytes = ReadAll(HUBLET_BENCH_PREFERENCE_FILE);
  return bytes;
}

// The sample without its comments and blank lines: every key, in as few bytes as it takes.
std::string CompactPreferenceBytes() {
  std::istringstream in(PreferenceBytes());
  std::string compact;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == ';') continue;
    compact += line + "\r\n";
  }
  return compact;
}

// A file of about `size` bytes: sections of other tools first, the plug-in's own two
// sections at the end, so that every lookup has the whole file in front of it.
std::string LargeFilePath(std::size_t size) {
  std::string bytes;
  const std::string tail = CompactPreferenceBytes();
  for (int section = 0; bytes.size() + tail.size() < size; ++section) {
    bytes += "[TOOL" + std::to_string(section) + "]\r\n";
    for (int key = 0; key < 16 && bytes.size() + tail.size() < size; ++key)
      bytes += "SETTING_" + std::to_string(key) + "=some value of tool " + std::to_string(section) + "\r\n";
  }
  bytes += tail;
  return WriteTemp("large-" + std::to_string(size) + ".ini", bytes);
}

std::string FileOfSize(std::size_t size) {
  static std::string paths[3];
  const int slot = size <= 1024 ? 0 : size <= 100 * 1024 ? 1 : 2;
  if (paths[slot].empty()) paths[slot] = LargeFilePath(size);
  return paths[slot];
}

const std::string& PreferencePath() {
  static const std::string path = WriteTemp("Vantor.ini", PreferenceBytes());
  return path;
}

// ---- (a) The display operation ----

// The least a host's display callback can cost: a virtual call that does nothing.
class EmptyDisplay final : public DisplayHandler {
 public:
  __attribute__((noinline)) void OnDisplay(TimeValue time, View* view) override {
    benchmark::DoNotOptimize(time);
    benchmark::DoNotOptimize(view);
  }
};

// The host calls through its registered callback pointer; so does the benchmark, with the
// pointer hidden from the optimiser so that the call stays virtual.
void RunDisplay(benchmark::State& state, DisplayHandler* handler, int viewType) {
  MinimalView view;
  view.type = viewType;
  View* viewPointer = &view;
  for (auto _ : state) {
    benchmark::DoNotOptimize(handler);
    benchmark::DoNotOptimize(viewPointer);
    handler->OnDisplay(0, viewPointer);
    benchmark::ClobberMemory();
  }
}

void BM_Display_EmptyVirtualCallBaseline(benchmark::State& state) {
  EmptyDisplay empty;
  RunDisplay(state, &empty, 2);
}
BENCHMARK(BM_Display_EmptyVirtualCallBaseline);

// The least a rule that looks at the view can cost: the callback and one question to the
// view, both virtual.
class TypeOnlyDisplay final : public DisplayHandler {
 public:
  __attribute__((noinline)) void OnDisplay(TimeValue time, View* view) override {
    benchmark::DoNotOptimize(time);
    if (view != nullptr) benchmark::DoNotOptimize(view->Type());
  }
};

void BM_Display_CallbackPlusViewTypeFloor(benchmark::State& state) {
  TypeOnlyDisplay typeOnly;
  RunDisplay(state, &typeOnly, 2);
}
BENCHMARK(BM_Display_CallbackPlusViewTypeFloor);

void Display(benchmark::State& state, int forcePersp, int forceOrtho, int viewType) {
  Plugin plugin(PreferencePath());
  plugin.hublet.state.settings.forcePersp = forcePersp;
  plugin.hublet.state.settings.forceOrtho = forceOrtho;
  RunDisplay(state, &plugin.hublet, viewType);
}

// Both switches off, a top view.
void BM_Display_SwitchesOff(benchmark::State& state) { Display(state, 0, 0, 2); }
BENCHMARK(BM_Display_SwitchesOff);
// forcePersp on, a perspective view: the rule looks at the view's type and leaves it.
void BM_Display_PerspOn_PerspectiveView(benchmark::State& state) { Display(state, 1, 0, 7); }
BENCHMARK(BM_Display_PerspOn_PerspectiveView);
// forceOrtho on, a user view: likewise.
void BM_Display_OrthoOn_UserView(benchmark::State& state) { Display(state, 0, 1, 6); }
BENCHMARK(BM_Display_OrthoOn_UserView);
// Both on, a top view: both rules look and leave it.
void BM_Display_BothOn_TopView(benchmark::State& state) { Display(state, 1, 1, 2); }
BENCHMARK(BM_Display_BothOn_TopView);

// ---- (b) Loading the settings and the preference pass on the sample file ----

void BM_LoadSettings(benchmark::State& state) {
  const std::wstring path = Utf8ToWide(PreferencePath());
  HubletSettings settings{};
  for (auto _ : state) {
    const std::unique_ptr<ProfileReader> reader = OpenProfile(path);
    LoadSettings(*reader, settings);
    benchmark::DoNotOptimize(settings);
  }
}
BENCHMARK(BM_LoadSettings)->Unit(benchmark::kMicrosecond);

void BM_ApplyViewPreferences(benchmark::State& state) {
  Plugin plugin(PreferencePath());
  HubletSettings& s = plugin.hublet.state.settings;
  // Every stage, whatever the sample file switches on: the most a pass can cost.
  s.useViewLayout = s.useDisplayModes = s.useGamma = s.useFrameRate = 1;
  plugin.system.opens = 0;
  for (auto _ : state) {
    ApplyViewPreferences(plugin.hublet.state);
    benchmark::DoNotOptimize(s);
  }
  state.counters["opens_per_pass"] =
      benchmark::Counter(static_cast<double>(plugin.system.opens) / static_cast<double>(state.iterations()));
}
BENCHMARK(BM_ApplyViewPreferences)->Unit(benchmark::kMicrosecond);

// ---- (c) The reader on large files, next to inih ----

// What the process has read so far: read calls and bytes (Linux).
struct ReadCounts {
  double calls = 0;
  double bytes = 0;
};
ReadCounts ProcessReads() {
  ReadCounts counts;
  std::ifstream io("/proc/self/io");
  std::string name;
  double value = 0;
  while (io >> name >> value) {
    if (name == "rchar:") counts.bytes = value;
    if (name == "syscr:") counts.calls = value;
  }
  return counts;
}

std::size_t FileSize(const std::string& path) { return ReadAll(path).size(); }

// One whole preference pass of reading on a file: open and parse it once, then every
// lookup of LoadSettings and of the pass's three stages.
void BM_WholeRead_Hublet(benchmark::State& state) {
  const std::string path = FileOfSize(static_cast<std::size_t>(state.range(0)));
  const std::wstring widePath = Utf8ToWide(path);
  HubletSettings settings{};
  for (auto _ : state) {
    const std::unique_ptr<ProfileReader> reader = OpenProfile(widePath);
    LoadSettings(*reader, settings);
    ReadPreferenceKeys(*reader, settings, ReadWhen::LayoutStage);
    ReadPreferenceKeys(*reader, settings, ReadWhen::GammaStage);
    ReadPreferenceKeys(*reader, settings, ReadWhen::FrameRateStage);
    benchmark::DoNotOptimize(settings);
  }
  // The keys at the end were found: the record matches the one read from the sample alone.
  HubletSettings fromSample{};
  const std::unique_ptr<ProfileReader> sample = OpenProfile(Utf8ToWide(PreferencePath()));
  LoadSettings(*sample, fromSample);
  for (ReadWhen when : {ReadWhen::LayoutStage, ReadWhen::GammaStage, ReadWhen::FrameRateStage})
    ReadPreferenceKeys(*sample, fromSample, when);
  if (std::memcmp(&fromSample, &settings, sizeof settings) != 0)
    state.SkipWithError("the keys at the end of the file were not found");
  state.counters["file_bytes"] = static_cast<double>(FileSize(path));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(FileSize(path)));
}
BENCHMARK(BM_WholeRead_Hublet)->Arg(1024)->Arg(100 * 1024)->Arg(10 * 1024 * 1024)->Unit(benchmark::kMicrosecond);

// The plug-in's pass on the same files: how often it opens the file and how much of it
// it reads, per pass.
void BM_PassReads_Hublet(benchmark::State& state) {
  const std::string path = FileOfSize(static_cast<std::size_t>(state.range(0)));
  Plugin plugin(path);
  HubletSettings& s = plugin.hublet.state.settings;
  s.useViewLayout = s.useDisplayModes = s.useGamma = s.useFrameRate = 1;
  const double size = static_cast<double>(FileSize(path));
  plugin.system.opens = 0;
  const ReadCounts before = ProcessReads();
  ApplyViewPreferences(plugin.hublet.state);
  const ReadCounts after = ProcessReads();
  const int opens = plugin.system.opens;
  for (auto _ : state) ApplyViewPreferences(plugin.hublet.state);
  state.counters["opens_per_pass"] = opens;
  // rchar counts /proc/self/io's own read too; that is a few hundred bytes and one call.
  state.counters["bytes_read_per_file_byte"] = (after.bytes - before.bytes) / size;
  state.counters["read_calls_per_pass"] = after.calls - before.calls;
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
}
BENCHMARK(BM_PassReads_Hublet)->Arg(1024)->Arg(100 * 1024)->Arg(10 * 1024 * 1024)->Unit(benchmark::kMicrosecond);

#ifdef HUBLET_BENCH_WITH_INIH
// The same work with inih: parse the file once, keeping every key the plug-in reads.
struct InihTarget {
  const char* section;
  const char* name;
  bool text;
};
std::vector<InihTarget> InihTargets() {
  std::vector<InihTarget> targets;
  static std::vector<std::string> names;  // the per-view keys, spelled out
  if (names.empty()) {
    for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
      const PreferenceKey& key = kPreferenceKeys[k];
      const int views = key.kind == KeyKind::PerView ? kStoredViewCount : 1;
      for (int i = 0; i < views; ++i) names.push_back(WideToUtf8(KeyName(key, i)));
    }
  }
  std::size_t n = 0;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    const int views = key.kind == KeyKind::PerView ? kStoredViewCount : 1;
    const char* section = std::wcscmp(key.section, L"FLINT") == 0 ? "FLINT" : "MYVIEW";
    for (int i = 0; i < views; ++i)
      targets.push_back({section, names[n++].c_str(), key.kind == KeyKind::GammaText});
  }
  return targets;
}

struct InihState {
  const std::vector<InihTarget>* targets;
  int ints[64];
  double texts[64];
  int found;
};

int InihHandler(void* user, const char* section, const char* name, const char* value) {
  InihState& s = *static_cast<InihState*>(user);
  const std::vector<InihTarget>& targets = *s.targets;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    if (strcasecmp(section, targets[i].section) != 0 || strcasecmp(name, targets[i].name) != 0) continue;
    if (targets[i].text) s.texts[i] = std::strtod(value, nullptr);
    else s.ints[i] = static_cast<int>(std::strtol(value, nullptr, 0));
    ++s.found;
    break;
  }
  return 1;
}

void BM_WholeRead_Inih(benchmark::State& state) {
  const std::string path = FileOfSize(static_cast<std::size_t>(state.range(0)));
  const std::vector<InihTarget> targets = InihTargets();
  InihState s{};
  s.targets = &targets;
  for (auto _ : state) {
    s.found = 0;
    ini_parse(path.c_str(), InihHandler, &s);
    benchmark::DoNotOptimize(s);
  }
  if (s.found < static_cast<int>(targets.size())) state.SkipWithError("inih did not find every key");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(FileSize(path)));
}
BENCHMARK(BM_WholeRead_Inih)->Arg(1024)->Arg(100 * 1024)->Arg(10 * 1024 * 1024)->Unit(benchmark::kMicrosecond);
#endif

// ---- (d) The save stamp ----

// The same user saves again: three lookups, no write.
void BM_StampSaveProperties_SameSaver(benchmark::State& state) {
  Plugin plugin(PreferencePath());
  for (auto _ : state) StampSaveProperties(plugin.hublet.state);
}
BENCHMARK(BM_StampSaveProperties_SameSaver);

// Another user saves: three lookups and three writes.
void BM_StampSaveProperties_NewSaver(benchmark::State& state) {
  Plugin plugin(PreferencePath());
  plugin.host.subject = L"ben on WORKSTATION2";
  for (auto _ : state) StampSaveProperties(plugin.hublet.state);
}
BENCHMARK(BM_StampSaveProperties_NewSaver);

}  // namespace
}  // namespace hublet

BENCHMARK_MAIN();
