// Long random sessions on the simulated host: scene events in any order (post-events
// without their pre-events, codes outside the hook table), redraws of every view type on
// any viewport and without a view, interface calls with any ID and argument list, toolbar
// runs, new preference files and restarts, against random preference files. After every
// step a few invariants are checked, mostly by reading what the plug-in asked of the host.
// The exact values a preference pass applies are pinned by the transcript tests instead.
//
// A failure prints the seed and the last steps; HUBLET_SEED=<seed> replays that session
// alone, and HUBLET_SESSIONS=<n> and HUBLET_STEPS=<n> make a longer soak.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "frame/hublet.h"
#include "host/sim/sim_arguments.h"
#include "harness/sim_session.h"
#include "platform/wide_text.h"
#include "tests/support/scratch_file.h"
#include "toolbar/toolbar.h"

#ifndef HUBLET_RANDOM_SESSIONS
#define HUBLET_RANDOM_SESSIONS 2000
#endif

namespace hublet {
namespace testing {
namespace {

const int kStepsPerSession = 80;

int EnvironmentInt(const char* name, int fallback) {
  const char* text = std::getenv(name);
  return text != nullptr && *text != '\0' ? std::atoi(text) : fallback;
}

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  bool Chance(int percent) { return Between(1, 100) <= percent; }
  template <class T, std::size_t N>
  const T& Pick(const T (&items)[N]) { return items[Between(0, static_cast<int>(N) - 1)]; }
  int AnyInt() { return Chance(70) ? Between(-3, 140) : static_cast<int>(engine_()); }

 private:
  std::mt19937 engine_;
};

// What the host must see, written here once and independently of the plug-in's tables, so
// that a wrong entry there fails here.
struct SwitchKey {
  const char* section;
  const char* name;
  int HubletSettings::*field;
  int defaultValue;
  int interfaceId;  // the preference-interface function that sets it
};
using S = HubletSettings;
const SwitchKey kSwitchKeys[] = {
    {"FLINT", "FORCEPERSP", &S::forcePersp, 0, 10},       {"FLINT", "FORCEORTHO", &S::forceOrtho, 0, 11},
    {"FLINT", "EMPTYMTLO", &S::emptyMtlOnOpen, 0, 12},    {"FLINT", "EMPTYMTLS", &S::emptyMtlOnSave, 0, 13},
    {"FLINT", "SHADEDOPEN", &S::shadedOnOpen, 1, 14},     {"FLINT", "OBJCOLOPEN", &S::objColourOnOpen, 1, 15},
    {"FLINT", "BOXSAVE", &S::boxOnSave, 1, 16},           {"FLINT", "OBJCOLSAVE", &S::objColourOnSave, 1, 17},
    {"MYVIEW", "USE_VPL", &S::useViewLayout, 0, 18},      {"MYVIEW", "USE_DR", &S::useDisplayModes, 0, 19},
    {nullptr, nullptr, &S::spareViewFlag, 0, 20},         {"MYVIEW", "USE_GAMMA", &S::useGamma, 0, 21},
    {"MYVIEW", "USE_FPS", &S::useFrameRate, 0, 22},
};
const char* const kValueKeys[] = {"VPLAYOUT", "VPEXPERT", "VPCMDPANEL", "NUMVP",    "VP0TYPE",  "VP1TYPE",
                                  "VP2TYPE",  "VP3TYPE",  "VP0STYLE",   "VP1STYLE", "VP2STYLE", "VP3STYLE",
                                  "VP0EDGES", "VP1EDGES", "VP2EDGES",   "VP3EDGES", "FPS"};
const char* const kGammaKeys[] = {"GAMMA", "GAMMAIN", "GAMMAOUT", "VRAYGAMMA"};
const int kPreEvents[] = {5, 7, 9, 11, 13, 20, 24, 27};   // each clears sceneBusy
const int kPostEvents[] = {6, 8, 10, 12, 14, 21, 25, 28};  // each sets it
const int kStartup = 80;                                    // a post-event that leaves it
const std::size_t kHookedCodes = 17;  // the pre- and post-events and start-up
const int kViewCommands[] = {120, 130, 138, 107, 113, 119, 118, 127, 109, 114};

template <std::size_t N>
bool Contains(const int (&codes)[N], int code) {
  return std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}

const SwitchKey* SwitchOfFunction(int id) {
  for (const SwitchKey& key : kSwitchKeys)
    if (key.interfaceId == id) return &key;
  return nullptr;
}

// A file with a random value (or none) for every key, in the shapes a hand-edited file
// has; `switches` holds what start-up must read from it.
struct PreferenceFile {
  std::string bytes;
  HubletSettings switches{};
};

std::string Line(Random& random, std::string name, const std::string& value) {
  if (random.Chance(15))
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return (random.Chance(20) ? "  " : "") + name + (random.Chance(20) ? " = " : "=") + value +
         (random.Chance(30) ? "\r\n" : "\n");
}

PreferenceFile MakePreferenceFile(Random& random) {
  static const int kOddSwitches[] = {2, -1, 7, 100, INT_MIN, INT_MAX};
  static const char* const kGammaTexts[] = {"2.2", "1.8", "1.0", "abc", "", "2.4x", "-3"};
  PreferenceFile file;
  std::map<std::string, std::string> sections;
  for (const SwitchKey& key : kSwitchKeys) {
    file.switches.*key.field = key.defaultValue;
    if (key.name == nullptr || random.Chance(12)) continue;  // set only through the interface, or missing
    file.switches.*key.field = random.Chance(85) ? random.Between(0, 1) : random.Pick(kOddSwitches);
    sections[key.section] += Line(random, key.name, std::to_string(file.switches.*key.field));
  }
  for (const char* name : kValueKeys)
    if (!random.Chance(12))
      sections["MYVIEW"] += Line(random, name, std::to_string(random.Chance(85) ? random.Between(-2, 12) : random.AnyInt()));
  for (const char* name : kGammaKeys)
    if (!random.Chance(12)) sections["MYVIEW"] += Line(random, name, random.Pick(kGammaTexts));
  const std::string flint = "[FLINT]\n" + sections["FLINT"], myView = "[MYVIEW]\n" + sections["MYVIEW"];
  std::string text = random.Chance(20) ? "; by hand\n[OTHER]\nFORCEPERSP=9\n" : "";
  text += random.Chance(50) ? flint + myView : myView + flint;
  if (random.Chance(20)) text += "[FLINT]\nFORCEPERSP=5\n[MYVIEW]\nNUMVP=5\n";  // a repeated section is not read
  const bool utf16 = random.Chance(15);  // little-endian, with its mark
  file.bytes = utf16 ? "\xFF\xFE" : "";
  for (char c : text) file.bytes += utf16 ? std::string{c, '\0'} : std::string(1, c);
  return file;
}

// Scripts directories for toolbar runs, and where the toolbar script is under each.
const wchar_t* const kScriptsDirectories[] = {L"C:\\3dsMax2017\\scripts", L"D:\\tools\\", L""};
const wchar_t* const kToolbarPaths[] = {L"C:\\3dsMax2017\\scripts\\Orvo_Software\\Orvo_Toolbar_V1.3.ms",
                                        L"D:\\tools\\Orvo_Software\\Orvo_Toolbar_V1.3.ms",
                                        L"Orvo_Software\\Orvo_Toolbar_V1.3.ms"};

class RandomSession {
 public:
  explicit RandomSession(unsigned seed) : seed_(seed), random_(seed) {}

  // Runs the session: empty when every invariant held, else the seed, the last steps and
  // the failing step's transcript. `all` collects every step's transcript.
  std::string Run(int steps, std::string* all = nullptr) {
    try {
      for (step_ = 0; step_ <= steps; ++step_) {
        session_.transcript.Clear();
        cameras_ = scripts_ = 0;
        saving_ = false;
        if (step_ == 0) Begin();
        else Step();
        Check();
        if (all != nullptr) *all += session_.transcript.Text();
      }
    } catch (const std::runtime_error& violation) {
      std::string report = "seed " + std::to_string(seed_) + ", step " + std::to_string(step_) + ": " +
                           violation.what() + "\nlast steps:\n";
      for (const std::string& line : log_) report += "  " + line + "\n";
      return report + "its transcript:\n" + session_.transcript.Text() + "replay with HUBLET_SEED=" +
             std::to_string(seed_);
    }
    return std::string();
  }

 private:
  Hublet& plugin() { return *session_.hublet; }
  SimHost& host() { return session_.host; }

  void Require(bool condition, const std::string& what) {
    if (!condition) throw std::runtime_error(what);
  }
  void Log(const std::string& line) {
    log_.push_back(std::to_string(step_) + ": " + line);
    if (log_.size() > 10) log_.pop_front();
  }
  std::size_t Count(const char* prefix) {
    const std::string p = prefix;
    return std::count_if(session_.transcript.lines().begin(), session_.transcript.lines().end(),
                         [&](const std::string& line) { return line.compare(0, p.size(), p) == 0; });
  }

  void Begin() {
    file_ = MakePreferenceFile(random_);
    scratch_.reset(new ScratchFile(file_.bytes));
    session_.UsePreferenceFile(scratch_->path());
    for (int d = 0; d < 3; ++d) {
      installed_[d] = random_.Chance(50);
      if (installed_[d]) host().AddFile(kToolbarPaths[d]);
    }
    Restart(false);
  }

  void Step() {
    const int kind = random_.Between(1, 100);
    if (kind <= 35) Notify();
    else if (kind <= 65) Redraw();
    else if (kind <= 85) CallInterface();
    else if (kind <= 89) RunToolbar();
    else if (kind <= 93) ChangeScene();
    else if (kind <= 97) NewPreferenceFile();
    else Restart(random_.Chance(50));
  }

  void Restart(bool inPlace) {
    Log(inPlace ? "load a new plug-in over the old one" : "unload, load and start");
    sceneTime_ = random_.Between(0, 100000);
    host().SetTime(sceneTime_);
    if (!inPlace) session_.Unload();
    session_.LoadAndStart();
    busy_ = 1;
    switches_ = file_.switches;
    Require(host().RegistrationCount() == kHookedCodes, "a restart left the wrong number of hook registrations");
    Require(session_.system.socketUses == 1, "the sockets library is not held exactly once");
  }

  void NewPreferenceFile() {
    Log("new preference file");
    file_ = MakePreferenceFile(random_);
    scratch_->Rewrite(file_.bytes);
  }

  void ChangeScene() {
    static const wchar_t* const kUsers[] = {L"anna", L"ben", L"Anna"};
    static const ClassId kRenderers[] = {{0x73BAB286u, 0x77F8FD0Cu}, {0x698A4B98u, 0x4EDD05F5u}, {0x60u, 0x0u}};
    Log("the scene changes");
    switch (random_.Between(0, 4)) {
      case 0: session_.system.userName = random_.Pick(kUsers); break;
      case 1: host().SetRenderer(random_.Pick(kRenderers)); break;
      case 2: host().RemoveRenderer(); break;
      case 3: host().SetTime(random_.Between(-100, 1000000)); break;
      default:
        host().viewport(random_.Between(0, 3)).hasShadingExtension = random_.Chance(70);
        host().activeViewport = random_.Between(0, 3);
    }
  }

  void Notify() {
    const int known = random_.Between(0, 16);
    const int code = !random_.Chance(80) ? random_.AnyInt()
                     : known < 8         ? kPreEvents[known]
                     : known < 16        ? kPostEvents[known - 8]
                                         : kStartup;
    // Mostly raised by the host; sometimes sent straight to the plug-in in either group.
    const bool direct = random_.Chance(10);
    const HookGroup group = random_.Chance(50) ? HookGroup::PreEvent : HookGroup::PostEvent;
    Log((direct ? "notify directly " : "raise ") + std::to_string(code) +
        (direct ? (group == HookGroup::PreEvent ? " as pre" : " as post") : ""));
    if (direct) plugin().OnNotification(group, code);
    else host().Raise(code);
    for (HookGroup g : {HookGroup::PreEvent, HookGroup::PostEvent}) {
      const bool post = g == HookGroup::PostEvent;
      const bool hooked = post ? Contains(kPostEvents, code) || code == kStartup : Contains(kPreEvents, code);
      if ((direct && g != group) || !hooked) continue;
      // A pre-event clears the flag and a post-event sets it; start-up is no scene operation.
      if (code != kStartup) busy_ = post ? 1 : 0;
      saving_ = saving_ || (!post && code == 13);
      if (post && code == 10) scripts_ = switches_.emptyMtlOnOpen == 1 ? 1 : 0;
    }
  }

  void Redraw() {
    const int v = random_.Between(-1, 5);  // -1, 4 and 5 redraw without a view
    const bool hasView = v >= 0 && v < SimHost::kViewportCount;
    if (hasView && random_.Chance(60)) host().viewport(v).type = random_.Between(0, 17);
    const int type = hasView ? host().viewport(v).type : -1;
    Log("redraw " + std::to_string(v) + " of type " + std::to_string(type));
    host().Redraw(v);
    const bool persp = switches_.forcePersp == 1 && type == host::kViewIsoUser;
    const bool ortho = switches_.forceOrtho == 1 && type == host::kViewPerspUser;
    cameras_ = persp ? 1 : 0;
    if (!hasView || (switches_.forcePersp != 1 && switches_.forceOrtho != 1))
      Require(session_.transcript.lines().empty(), "a redraw with no switch at 1 asked something of the host");
    Require(persp == (hasView && type == host::kViewIsoUser && host().viewport(v).type == host::kViewCamera),
            "the perspective rule did not turn exactly its views into camera views");
    Require(Count("ExecuteCommand(118)") == (ortho ? 1u : 0u), "the orthographic rule fired wrongly");
  }

  void CallInterface() {
    const int id = random_.Chance(80) ? random_.Between(10, 22) : random_.AnyInt();
    std::vector<int> arguments;
    const int shape = random_.Between(0, 9);  // 0: no argument, 9: two
    if (shape > 0) arguments.push_back(random_.Chance(60) ? random_.Between(0, 1) : random_.AnyInt());
    if (shape == 9) arguments.push_back(random_.AnyInt());
    Log("call " + std::to_string(id) + " with " + std::to_string(arguments.size()) + " arguments" +
        (arguments.empty() ? "" : ", first " + std::to_string(arguments[0])));
    const bool known = id >= 10 && id <= 22;
    int status = 0;
    bool threw = false;
    try {
      status = plugin().CallInterface(id, SimArguments(arguments));
    } catch (const OutOfRangeError& error) {
      threw = true;
      Require(error.Message() == host::kArgumentOutOfRangeText, "the out-of-range error has the wrong text");
    }
    Require(threw == (known && arguments.empty()), "only a known function without its argument throws");
    Require(threw || status == (known ? 1 : -1), "status " + std::to_string(status));
    if (known && !arguments.empty()) switches_.*SwitchOfFunction(id)->field = arguments[0] != 0 ? 1 : 0;
  }

  void RunToolbar() {
    const int d = random_.Between(0, 2);
    host().SetDirectory(host::kDirScripts, kScriptsDirectories[d]);
    Log("toolbar under directory " + std::to_string(d) + (installed_[d] ? " (installed)" : ""));
    ReinstallToolbar(host());
    Require(Count("LoadScriptFile(") == (installed_[d] ? 1u : 0u), "the script ran against its existence");
    Require(!installed_[d] || host().scriptFilesLoaded.back() == kToolbarPaths[d], "the script came from elsewhere");
  }

  // After every step.
  void Check() {
    Require(plugin().state.sceneBusy == busy_, "sceneBusy is " + std::to_string(plugin().state.sceneBusy));
    Require(plugin().state.sceneTime == sceneTime_, "sceneTime changed after start");
    for (const SwitchKey& key : kSwitchKeys)
      Require(plugin().state.settings.*key.field == switches_.*key.field,
              "switch " + std::to_string(key.interfaceId) + " is " + std::to_string(plugin().state.settings.*key.field));
    for (const std::string& line : session_.transcript.lines()) {
      const char* s = line.c_str();
      int a = 0, b = 0;
      if (std::sscanf(s, "ExecuteCommand(%d)", &a) == 1)
        Require(Contains(kViewCommands, a),
                "not a view command: " + line);
      if (std::sscanf(s, "SetActiveViewport(%d)", &a) == 1 || std::sscanf(s, "view[%d]", &a) == 1)
        Require(a >= 0 && a < SimHost::kViewportCount, "a viewport outside 0..3: " + line);
      if (std::sscanf(s, "DeleteProperty(%d, %d", &a, &b) == 2 || std::sscanf(s, "AddStringProperty(%d, %d", &a, &b) == 2)
        Require(saving_ && a == 1 && b >= 2 && b <= 4, "a property written outside a pre-save's summary: " + line);
    }
    Require(Count("CreateObjectNode(") == cameras_, "camera nodes do not match perspective-rule conversions");
    Require(Count("ExecuteScript(") == scripts_, "the material editor was cleared against the EMPTYMTLO switch");
    Require(Count("OpenProfile(") <= 1, "one step read the preference file twice");
  }

  unsigned seed_;
  Random random_;
  int step_ = 0;
  std::deque<std::string> log_;
  SimSession session_;
  std::unique_ptr<ScratchFile> scratch_;
  PreferenceFile file_;
  bool installed_[3] = {};
  HubletSettings switches_{};  // only the switches are kept
  int busy_ = 1;
  TimeValue sceneTime_ = 0;
  std::size_t cameras_ = 0, scripts_ = 0;  // this step's expected conversions and clearings
  bool saving_ = false;                   // this step delivered a pre-save
};

TEST(RandomSessions, EveryInvariantHoldsAfterEveryStep) {
  const int replay = EnvironmentInt("HUBLET_SEED", -1);
  const int last = replay >= 0 ? replay : EnvironmentInt("HUBLET_SESSIONS", HUBLET_RANDOM_SESSIONS);
  const int steps = EnvironmentInt("HUBLET_STEPS", kStepsPerSession);
  for (int seed = replay >= 0 ? replay : 1; seed <= last; ++seed) {
    const std::string failure = RandomSession(static_cast<unsigned>(seed)).Run(steps);
    if (!failure.empty()) {
      ADD_FAILURE() << failure;
      return;  // one reproducible failure is worth more than a flood
    }
  }
}

TEST(RandomSessions, ASeedReplaysTheSameSession) {
  for (unsigned seed : {7u, 1234u}) {
    std::string first, second;
    EXPECT_EQ("", RandomSession(seed).Run(kStepsPerSession, &first));
    RandomSession(seed).Run(kStepsPerSession, &second);
    EXPECT_EQ(first, second) << "seed " << seed;
  }
}

}  // namespace
}  // namespace testing
}  // namespace hublet
