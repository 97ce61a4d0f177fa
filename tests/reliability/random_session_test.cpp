// Long random sessions on the simulated host: scene events in any order (post-events
// without their pre-events, codes the plug-in never registered), redraws of every view
// type on any viewport and without a view, interface calls with any ID and argument list,
// toolbar runs, new preference files and restarts, against random preference files. After
// every step the plug-in's state and what it asked of the host are checked against a model
// of the plug-in written here from its documented behaviour.
//
// Every session is reproducible from its seed. A failure prints the seed and the last
// steps; HUBLET_SEED=<seed> replays that one session alone. HUBLET_SESSIONS=<n> and
// HUBLET_STEPS=<n> make a longer soak.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "frame/hublet.h"
#include "host/sim/sim_arguments.h"
#include "host/sim/sim_session.h"
#include "platform/wide_text.h"
#include "tests/support/scratch_file.h"
#include "toolbar/toolbar.h"

#ifndef HUBLET_RANDOM_SESSIONS
#define HUBLET_RANDOM_SESSIONS 2000
#endif

namespace hublet {
namespace testing {
namespace {

// ---- What the plug-in is documented to do, independent of its tables ----

const int kPreEvents[] = {5, 7, 9, 11, 13, 20, 24, 27};
const int kPostEvents[] = {6, 8, 10, 12, 14, 21, 25, 28};
const int kStartUp = 80;
const int kViewCommands[10] = {120, 130, 138, 107, 113, 119, 118, 127, 109, 114};
const ClassId kVRay[] = {{0x73BAB286u, 0x77F8FD0Cu}, {0x698A4B98u, 0x4EDD05F5u}};
const ClassId kScanline{0x60u, 0x0u};
const wchar_t kOutOfRangeText[] = L"Argument index out of bounds, passed into a MaxSDK::Array::operator[]";

bool Contains(const int* first, const int* last, int value) { return std::find(first, last, value) != last; }
bool IsPreEvent(int code) { return Contains(std::begin(kPreEvents), std::end(kPreEvents), code); }
bool IsPostEvent(int code) { return Contains(std::begin(kPostEvents), std::end(kPostEvents), code); }

// The switches read at start, in the order of the interface's IDs 10 to 22, with the keys
// that hold them ("" for the one only the interface sets) and their defaults.
struct SwitchInfo {
  int HubletSettings::*field;
  const char* section;
  const char* key;
  int defaultValue;
};
const SwitchInfo kSwitches[] = {
    {&HubletSettings::forcePersp, "FLINT", "FORCEPERSP", 0},
    {&HubletSettings::forceOrtho, "FLINT", "FORCEORTHO", 0},
    {&HubletSettings::emptyMtlOnOpen, "FLINT", "EMPTYMTLO", 0},
    {&HubletSettings::emptyMtlOnSave, "FLINT", "EMPTYMTLS", 0},
    {&HubletSettings::shadedOnOpen, "FLINT", "SHADEDOPEN", 1},
    {&HubletSettings::objColourOnOpen, "FLINT", "OBJCOLOPEN", 1},
    {&HubletSettings::boxOnSave, "FLINT", "BOXSAVE", 1},
    {&HubletSettings::objColourOnSave, "FLINT", "OBJCOLSAVE", 1},
    {&HubletSettings::useViewLayout, "MYVIEW", "USE_VPL", 0},
    {&HubletSettings::useDisplayModes, "MYVIEW", "USE_DR", 0},
    {&HubletSettings::spareViewFlag, "MYVIEW", "", 0},
    {&HubletSettings::useGamma, "MYVIEW", "USE_GAMMA", 0},
    {&HubletSettings::useFrameRate, "MYVIEW", "USE_FPS", 0},
};
const int kSwitchCount = 13;
const int kFirstFunctionId = 10;

// A gamma text and the number the plug-in applies for it.
struct GammaText {
  const char* text;
  float value;
};
const GammaText kGammaTexts[] = {{"2.2", 2.2f}, {"1.8", 1.8f}, {"1.0", 1.0f}, {"abc", 0.0f},
                                 {"", 0.0f},     {"2.4x", 2.4f}, {"-3", -3.0f}};

// A preference file and the values its lookups must give.
struct PreferenceFile {
  std::string bytes;
  int switches[kSwitchCount];
  int layout, expert, panel, count, fps;
  int type[4], style[4], edges[4];
  float gamma[4];  // GAMMA, GAMMAIN, GAMMAOUT, VRAYGAMMA
};

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  bool Chance(int percent) { return Between(1, 100) <= percent; }
  template <class T, std::size_t N>
  const T& Pick(const T (&items)[N]) { return items[Between(0, static_cast<int>(N) - 1)]; }
  // Mostly 0 and 1, sometimes what a hand-edited file holds.
  int SwitchValue() {
    static const int kOdd[] = {2, -1, 7, 100, INT_MIN, INT_MAX};
    return Chance(85) ? Between(0, 1) : Pick(kOdd);
  }
  int AnyInt() { return Chance(70) ? Between(-3, 140) : static_cast<int>(engine_()); }

 private:
  std::mt19937 engine_;
};

std::string Utf16LeWithMark(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (char c : ascii) {
    bytes += c;
    bytes += '\0';
  }
  return bytes;
}

// Writes one key in one of the shapes a hand-edited file has; every shape reads the same.
void WriteKey(Random& random, std::string& out, const std::string& key, const std::string& value) {
  std::string name = key;
  if (random.Chance(15))
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  out += random.Chance(20) ? "  " : "";
  out += name;
  out += random.Chance(20) ? " = " : "=";
  out += value;
  out += random.Chance(30) ? "\r\n" : "\n";
}

PreferenceFile MakePreferenceFile(Random& random) {
  PreferenceFile file{};
  std::string flint = "[FLINT]\n";
  std::string myView = "[MYVIEW]\n";
  for (int i = 0; i < kSwitchCount; ++i) {
    const SwitchInfo& s = kSwitches[i];
    file.switches[i] = s.defaultValue;
    if (s.key[0] == '\0' || random.Chance(15)) continue;  // missing: the default
    file.switches[i] = random.SwitchValue();
    WriteKey(random, std::strcmp(s.section, "FLINT") == 0 ? flint : myView, s.key,
             std::to_string(file.switches[i]));
  }
  // A value that is missing reads as 0.
  auto value = [&](const std::string& key, int& field, int low, int high) {
    field = 0;
    if (random.Chance(10)) return;
    field = random.Chance(90) ? random.Between(low, high) : random.AnyInt();
    WriteKey(random, myView, key, std::to_string(field));
  };
  value("VPLAYOUT", file.layout, 0, 0x80);
  value("VPEXPERT", file.expert, 0, 1);
  value("VPCMDPANEL", file.panel, 0, 1);
  value("NUMVP", file.count, -1, 6);
  value("FPS", file.fps, 1, 120);
  for (int v = 0; v < 4; ++v) {
    const std::string n = std::to_string(v);
    value("VP" + n + "TYPE", file.type[v], -2, 12);
    value("VP" + n + "STYLE", file.style[v], 0, 12);
    value("VP" + n + "EDGES", file.edges[v], 0, 1);
  }
  const char* gammaKeys[] = {"GAMMA", "GAMMAIN", "GAMMAOUT", "VRAYGAMMA"};
  for (int g = 0; g < 4; ++g) {
    file.gamma[g] = 2.2f;  // a missing key applies the default text
    if (random.Chance(15)) continue;
    const GammaText& text = random.Pick(kGammaTexts);
    file.gamma[g] = text.value;
    WriteKey(random, myView, gammaKeys[g], text.text);
  }
  // Sections in either order, with lines that no lookup reads around them.
  std::string text = random.Chance(20) ? "; written by hand\n" : "";
  if (random.Chance(20)) text += "[OTHER]\nFORCEPERSP=9\n";
  text += random.Chance(50) ? flint + myView : myView + flint;
  if (random.Chance(20)) text += "[FLINT]\nFORCEPERSP=5\n[MYVIEW]\nNUMVP=5\n";  // repeated headers are not read
  file.bytes = random.Chance(15) ? Utf16LeWithMark(text) : text;
  return file;
}

// ---- The session under test ----

// A violated invariant, reported with the seed and the steps that led there.
struct Violation {
  std::string what;
};

class RandomSession {
 public:
  RandomSession(unsigned seed) : seed_(seed), random_(seed) {}

  // Runs the whole session; an empty string when every invariant held.
  std::string Run(int steps) {
    try {
      Begin();
      for (step_ = 1; step_ <= steps; ++step_) {
        session_.transcript.Clear();
        savedThisStep_ = false;
        Step();
        CheckAlways();
      }
    } catch (const Violation& violation) {
      return Report(violation.what);
    }
    return std::string();
  }

  // Every line the host recorded, for comparing two runs of one seed.
  std::string TranscriptOfRun(int steps) {
    std::string all;
    Begin();
    for (step_ = 1; step_ <= steps; ++step_) {
      session_.transcript.Clear();
      Step();
      all += session_.transcript.Text();
    }
    return all;
  }

 private:
  void Require(bool condition, const std::string& what) {
    if (!condition) throw Violation{what};
  }

  std::string Report(const std::string& what) {
    std::ostringstream out;
    out << "seed " << seed_ << ", step " << step_ << ": " << what << "\nlast steps:\n";
    for (const std::string& line : log_) out << "  " << line << "\n";
    out << "its transcript:\n" << session_.transcript.Text();
    out << "replay with HUBLET_SEED=" << seed_;
    return out.str();
  }

  void Log(const std::string& line) {
    log_.push_back(std::to_string(step_) + ": " + line);
    if (log_.size() > 12) log_.pop_front();
  }

  Hublet& plugin() { return *session_.hublet; }
  SimHost& host() { return session_.host; }
  const std::vector<std::string>& lines() { return session_.transcript.lines(); }

  std::size_t Count(const char* prefix) {
    std::size_t n = 0;
    for (const std::string& line : lines())
      if (line.compare(0, std::strlen(prefix), prefix) == 0) ++n;
    return n;
  }

  // ---- Set-up ----

  void Begin() {
    file_ = MakePreferenceFile(random_);
    scratch_.reset(new ScratchFile(file_.bytes));
    session_.UsePreferenceFile(scratch_->path());
    // Toolbar scripts exist under some of the scripts directories the session will use.
    for (int d = 0; d < 3; ++d) installed_[d] = random_.Chance(50);
    for (int d = 0; d < 3; ++d)
      if (installed_[d]) host().AddFile(ToolbarPathUnder(d));
    Restart(false);
  }

  static const wchar_t* ScriptsDirectory(int d) {
    static const wchar_t* kDirs[] = {L"C:\\3dsMax2017\\scripts", L"D:\\tools\\", L""};
    return kDirs[d];
  }
  static std::wstring ToolbarPathUnder(int d) {
    static const wchar_t* kPaths[] = {L"C:\\3dsMax2017\\scripts\\Orvo_Software\\Orvo_Toolbar_V1.3.ms",
                                      L"D:\\tools\\Orvo_Software\\Orvo_Toolbar_V1.3.ms",
                                      L"Orvo_Software\\Orvo_Toolbar_V1.3.ms"};
    return kPaths[d];
  }

  // ---- One random step ----

  void Step() {
    const int kind = random_.Between(1, 100);
    if (kind <= 35) {
      Notify();
    } else if (kind <= 65) {
      Redraw();
    } else if (kind <= 85) {
      CallInterface();
    } else if (kind <= 89) {
      RunToolbar();
    } else if (kind <= 93) {
      ChangeScene();
    } else if (kind <= 97) {
      NewPreferenceFile();
    } else {
      Restart(random_.Chance(50));
    }
  }

  void Restart(bool inPlace) {
    Log(inPlace ? "load a new plug-in over the old one" : "unload, load and start");
    sceneTime_ = random_.Between(0, 100000);
    host().SetTime(sceneTime_);
    if (!inPlace) session_.Unload();
    session_.LoadAndStart();
    busy_ = 1;
    for (int i = 0; i < kSwitchCount; ++i) switches_[i] = file_.switches[i];
    Require(host().RegistrationCount() == 17, "a restart left " + std::to_string(host().RegistrationCount()) +
                                                  " hook registrations, not 17");
    Require(session_.system.socketUses == 1, "the sockets library is not held exactly once");
    Require(Count("OpenProfile(") == 1, "start did not read the preference file once");
  }

  void NewPreferenceFile() {
    file_ = MakePreferenceFile(random_);
    scratch_->Rewrite(file_.bytes);
    Log("new preference file");
  }

  void ChangeScene() {
    const int what = random_.Between(0, 3);
    if (what == 0) {
      static const wchar_t* kUsers[] = {L"anna", L"ben", L"Anna"};
      session_.system.userName = random_.Pick(kUsers);
      Log("user " + WideToUtf8(session_.system.userName));
    } else if (what == 1) {
      const int r = random_.Between(0, 3);
      if (r < 2) host().SetRenderer(kVRay[r]);
      if (r == 2) host().SetRenderer(kScanline);
      if (r == 3) host().RemoveRenderer();
      Log("renderer " + std::to_string(r));
    } else if (what == 2) {
      host().SetTime(random_.Between(-100, 1000000));
      Log("time moves");
    } else {
      const int v = random_.Between(0, 3);
      host().viewport(v).hasShadingExtension = random_.Chance(70);
      host().activeViewport = random_.Between(0, 3);
      Log("viewport " + std::to_string(v) + " shading extension toggled, active " +
          std::to_string(host().activeViewport));
    }
  }

  void Notify() {
    int code;
    const int r = random_.Between(1, 100);
    if (r <= 40) code = random_.Pick(kPreEvents);
    else if (r <= 80) code = random_.Pick(kPostEvents);
    else if (r <= 88) code = kStartUp;
    else code = random_.Chance(50) ? random_.Between(-5, 120) : static_cast<int>(random_.AnyInt());

    // Mostly as the host raises it; sometimes straight to the plug-in in either group, as
    // a host with its own idea of the groups would.
    const bool direct = random_.Chance(10);
    const HookGroup group = random_.Chance(50) ? HookGroup::PreEvent : HookGroup::PostEvent;
    Log(std::string(direct ? "notify directly " : "raise ") + std::to_string(code) +
        (direct ? (group == HookGroup::PreEvent ? " as pre" : " as post") : ""));

    const HubletSettings before = plugin().settings;
    const float gammaBefore = host().displayGamma;
    const int frameRateBefore = host().frameRate;
    SimView viewsBefore[4] = {host().viewport(0), host().viewport(1), host().viewport(2), host().viewport(3)};
    if (direct) plugin().OnNotification(group, code);
    else host().Raise(code);

    // Which hook, if any, the plug-in should have run.
    const bool asPre = direct ? group == HookGroup::PreEvent : true;
    const bool asPost = direct ? group == HookGroup::PostEvent : true;
    const bool pre = asPre && IsPreEvent(code);
    const bool post = asPost && (IsPostEvent(code) || code == kStartUp);
    if (pre) busy_ = 0;
    if (post && code != kStartUp) busy_ = 1;
    Require(plugin().sceneBusy == busy_, "sceneBusy is " + std::to_string(plugin().sceneBusy) + ", expected " +
                                             std::to_string(busy_));

    const bool pass = post && (code == 6 || code == 8 || code == kStartUp);
    const bool save = pre && code == 13;
    const bool open = post && code == 10;
    if (pass) CheckPass(before, gammaBefore, frameRateBefore, viewsBefore);
    savedThisStep_ = save;
    if (save) CheckStamp();
    if (open) {
      Require(Count("ExecuteScript(") == (switches_[2] == 1 ? 1u : 0u),
              "the material editor was cleared against the EMPTYMTLO switch");
    }
    if (!pass && !save && !open) Require(lines().empty(), "an event without an action asked something of the host");
  }

  void CheckPass(const HubletSettings& before, float gammaBefore, int frameRateBefore, const SimView* views) {
    const bool layout = switches_[8] != 0, displayModes = switches_[9] != 0;
    const bool gamma = switches_[11] != 0, fps = switches_[12] != 0;
    Require(Count("OpenProfile(") == (layout || gamma || fps ? 1u : 0u), "the pass did not read the file exactly once");
    Require(Count("SetViewportLayout(") == (layout ? 1u : 0u), "the layout stage ran against its switch");
    if (layout) {
      Require(host().viewportLayout == file_.layout && host().expertMode == file_.expert &&
                  host().commandPanelOpen == file_.panel,
              "layout, expert mode or command panel is not the file's");
      const int count = std::min(std::max(file_.count, 0), 4);
      Require(Count("SetActiveViewport(") == static_cast<std::size_t>(count), "not NUMVP viewports were set up");
      for (int v = 0; v < 4; ++v) {
        const SimView& view = host().viewport(v);
        if (v >= count) {
          Require(view.type == views[v].type && view.edgedFaces == views[v].edgedFaces &&
                      view.shadingStyle == views[v].shadingStyle,
                  "viewport " + std::to_string(v) + " beyond NUMVP was touched");
          continue;
        }
        const int type = file_.type[v] >= 0 && file_.type[v] <= 9 ? file_.type[v] : views[v].type;
        Require(view.type == type, "viewport " + std::to_string(v) + " has type " + std::to_string(view.type) +
                                       ", expected " + std::to_string(type));
        const bool perspective = type == 7 || type == 8;
        const int style = displayModes ? file_.style[v] : (perspective ? 0 : 5);
        Require(view.shadingStyle == (view.hasShadingExtension ? style : views[v].shadingStyle),
                "viewport " + std::to_string(v) + " has the wrong shading style");
        Require(view.edgedFaces == (displayModes ? file_.edges[v] : 0),
                "viewport " + std::to_string(v) + " has the wrong edged faces");
      }
    } else {
      Require(Count("SetActiveViewport(") == 0, "a viewport was set up with the layout switch off");
    }
    if (gamma) {
      Require(host().displayGamma == file_.gamma[0] && host().fileInGamma == file_.gamma[1] &&
                  host().fileOutGamma == file_.gamma[2],
              "the gammas applied are not the file's");
    } else {
      Require(host().displayGamma == gammaBefore && Count("SetDisplayGamma(") == 0, "gamma set with its switch off");
    }
    const std::size_t rendererSets = Count("SetRendererFloat(");
    if (rendererSets > 0) {
      Require(gamma, "the renderer gamma was set with the gamma switch off");
      Require(rendererSets == 1, "the renderer gamma was set twice");
      char expected[128];
      std::snprintf(expected, sizeof expected, "SetRendererFloat(9, 265, %d, ", sceneTime_);
      bool at = false;
      for (const std::string& line : lines()) at = at || line.compare(0, std::strlen(expected), expected) == 0;
      Require(at, "the renderer gamma was not set at the time captured at start");
    }
    Require(host().frameRate == (fps ? file_.fps : frameRateBefore), "the frame rate is not the file's");
    // A pass applies values; it never changes a switch.
    for (int i = 0; i < kSwitchCount; ++i)
      Require(plugin().settings.*kSwitches[i].field == before.*kSwitches[i].field, "the pass changed a switch");
  }

  void CheckStamp() {
    const std::wstring saver = session_.system.userName + L" on " + session_.system.hostName;
    const Lookup<std::wstring> subject = host().Property(1, 3);
    Require(subject.found && subject.value == saver, "after a save the subject is not the saver");
    const Lookup<std::wstring> title = host().Property(1, 2);
    Require(title.found, "after a save the scene has no title");
    for (const std::string& line : lines()) {
      int set = 0, id = 0;
      if (std::sscanf(line.c_str(), "DeleteProperty(%d, %d)", &set, &id) == 2 ||
          std::sscanf(line.c_str(), "AddStringProperty(%d, %d", &set, &id) == 2)
        Require(set == 1 && id >= 2 && id <= 4, "a property outside the summary's 2, 3 and 4 was written");
    }
  }

  void Redraw() {
    // -1 and indices past the last viewport redraw without a view.
    int v = random_.Between(-1, 5);
    if (v >= 0 && v < 4 && random_.Chance(60)) host().viewport(v).type = random_.Between(0, 17);
    const bool hasView = v >= 0 && v < 4;
    const int type = hasView ? host().viewport(v).type : -1;
    const int active = host().activeViewport;
    const int activeType = host().viewport(active).type;
    Log("redraw " + std::to_string(v) + (hasView ? " of type " + std::to_string(type) : ""));
    const std::size_t nodes = host().nodes.size();

    host().Redraw(v);

    const bool persp = hasView && switches_[0] == 1 && type == 6;
    // The orthographic rule sees the type the perspective rule left.
    const bool ortho = hasView && switches_[1] == 1 && !persp && type == 7;
    const bool touches = hasView && (switches_[0] == 1 || switches_[1] == 1);
    if (!touches) Require(lines().empty(), "a redraw with no switch at 1 touched the host or the view");
    Require(host().nodes.size() == nodes + (persp ? 1u : 0u), "a redraw added the wrong number of cameras");
    Require(Count("CreateCameraObject(") == (persp ? 1u : 0u), "camera objects without a conversion");
    if (persp) {
      const SimView& view = host().viewport(v);
      Require(view.type == 8 && view.camera == &host().nodes.back(), "the converted view does not look through the new camera");
      Require(host().selection == std::vector<int>{host().nodes.back().number}, "the new camera is not the selection");
    }
    Require(Count("ExecuteCommand(118)") == (ortho ? 1u : 0u), "the orthographic rule fired wrongly");
    // The view command acts on the active viewport, whichever view is being redrawn.
    if (ortho) Require(host().viewport(active).type == 6, "the active viewport did not become a user view");
    if (!ortho && !(persp && v == active))
      Require(host().viewport(active).type == activeType, "a redraw changed the active viewport's view");
    Require(Count("ForceCompleteRedraw(") == (persp ? 1u : 0u) + (ortho ? 1u : 0u), "redraw requests do not match conversions");
  }

  void CallInterface() {
    int id = random_.Chance(80) ? random_.Between(10, 22) : random_.AnyInt();
    std::vector<int> arguments;
    const int shape = random_.Between(1, 10);
    if (shape >= 2) arguments.push_back(random_.Chance(60) ? random_.Between(0, 1) : random_.AnyInt());
    if (shape == 10) arguments.push_back(random_.AnyInt());
    std::string described = "call " + std::to_string(id) + " (";
    for (int a : arguments) described += std::to_string(a) + " ";
    Log(described + ")");

    const HubletSettings before = plugin().settings;
    const bool known = id >= kFirstFunctionId && id < kFirstFunctionId + kSwitchCount;
    int status = 0;
    bool threw = false;
    try {
      status = plugin().CallInterface(id, SimArguments(arguments));
    } catch (const OutOfRangeError& error) {
      threw = true;
      Require(error.Message() == kOutOfRangeText, "the out-of-range error has the wrong text");
    }
    Require(lines().empty(), "an interface call asked something of the host");
    if (!known) {
      Require(!threw && status == -1, "an unknown function did not answer -1");
    } else if (arguments.empty()) {
      Require(threw, "a call without its argument did not throw");
    } else {
      Require(!threw && status == 1, "a call with its argument did not succeed");
      switches_[id - kFirstFunctionId] = arguments[0] != 0 ? 1 : 0;
      const int stored = plugin().settings.*kSwitches[id - kFirstFunctionId].field;
      Require(stored == 0 || stored == 1, "the interface stored " + std::to_string(stored));
    }
    // Only the switch named by the ID may change, and nothing else in the record.
    HubletSettings expected = before;
    if (known && !arguments.empty()) expected.*kSwitches[id - kFirstFunctionId].field = switches_[id - kFirstFunctionId];
    Require(std::memcmp(&expected, &plugin().settings, sizeof expected) == 0, "an interface call changed another field");
  }

  void RunToolbar() {
    const int d = random_.Between(0, 2);
    host().SetDirectory(15, ScriptsDirectory(d));
    Log("toolbar under directory " + std::to_string(d) + (installed_[d] ? " (installed)" : ""));
    ReinstallToolbar(host());
    Require(Count("LoadScriptFile(") == (installed_[d] ? 1u : 0u), "the toolbar script was run against its existence");
    if (installed_[d])
      Require(host().scriptFilesLoaded.back() == ToolbarPathUnder(d), "the toolbar script was loaded from the wrong path");
  }

  // After every step: the state the model knows.
  void CheckAlways() {
    Require(plugin().sceneBusy == busy_, "sceneBusy drifted from the last scene event");
    for (int i = 0; i < kSwitchCount; ++i)
      Require(plugin().settings.*kSwitches[i].field == switches_[i],
              "switch " + std::to_string(kFirstFunctionId + i) + " is " +
                  std::to_string(plugin().settings.*kSwitches[i].field) + ", expected " + std::to_string(switches_[i]));
    Require(plugin().sceneTime == sceneTime_, "sceneTime changed after start");
    for (const std::string& line : lines()) {
      int value = 0;
      if (std::sscanf(line.c_str(), "ExecuteCommand(%d)", &value) == 1)
        Require(Contains(std::begin(kViewCommands), std::end(kViewCommands), value),
                "command " + std::to_string(value) + " is not a view command");
      if (std::sscanf(line.c_str(), "SetActiveViewport(%d)", &value) == 1)
        Require(value >= 0 && value <= 3, "viewport index " + std::to_string(value));
      if (line.compare(0, 5, "view[") == 0)
        Require(line[5] >= '0' && line[5] <= '3' && line[6] == ']', "a view outside 0..3: " + line);
      if (line.compare(0, 15, "DeleteProperty(") == 0 || line.compare(0, 18, "AddStringProperty(") == 0)
        Require(savedThisStep_, "a summary property was written outside a pre-save");
    }
  }

  unsigned seed_;
  Random random_;
  int step_ = 0;
  std::deque<std::string> log_;
  SimSession session_;
  std::unique_ptr<ScratchFile> scratch_;
  PreferenceFile file_{};
  bool installed_[3] = {};
  int switches_[kSwitchCount] = {};
  int busy_ = 1;
  bool savedThisStep_ = false;
  TimeValue sceneTime_ = 0;
};

int EnvironmentInt(const char* name, int fallback) {
  const char* text = std::getenv(name);
  return text != nullptr && *text != '\0' ? std::atoi(text) : fallback;
}

const int kStepsPerSession = 80;

TEST(RandomSessions, EveryInvariantHoldsAfterEveryStep) {
  const int replay = EnvironmentInt("HUBLET_SEED", -1);
  const int sessions = EnvironmentInt("HUBLET_SESSIONS", HUBLET_RANDOM_SESSIONS);
  const unsigned first = replay >= 0 ? static_cast<unsigned>(replay) : 1u;
  const unsigned last = replay >= 0 ? first : static_cast<unsigned>(sessions);
  const int steps = EnvironmentInt("HUBLET_STEPS", kStepsPerSession);
  for (unsigned seed = first; seed <= last; ++seed) {
    const std::string failure = RandomSession(seed).Run(steps);
    if (!failure.empty()) {
      ADD_FAILURE() << failure;
      return;  // one reproducible failure is worth more than a flood
    }
  }
}

TEST(RandomSessions, ASeedReplaysTheSameSession) {
  for (unsigned seed : {7u, 1234u}) {
    const std::string first = RandomSession(seed).TranscriptOfRun(kStepsPerSession);
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(first, RandomSession(seed).TranscriptOfRun(kStepsPerSession)) << "seed " << seed;
  }
}

}  // namespace
}  // namespace testing
}  // namespace hublet
