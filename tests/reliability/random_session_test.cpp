// Long random sessions on the simulated host: scene events in any order (post-events
// without their pre-events, codes nothing hooks), redraws of every view type on any
// viewport and without a view, interface calls with any ID and argument list, new
// preference files and restarts, against random preference files. After every step a few
// invariants are checked, mostly by reading what the plug-in asked of the host. The
// expectations come from the literal tables of tests/support, never from the plug-in's
// own; the exact values a preference pass applies are pinned by the transcript tests.
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

#include "harness/sim_session.h"
#include "host/sim/sim_arguments.h"
#include "tests/support/expected_tables.h"
#include "tests/support/scratch_file.h"

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

// The post-events that run the preference pass: after a reset, after a new scene, start-up.
bool RunsThePass(int code) { return code == 6 || code == 8 || code == kStartupCode; }
bool IsHooked(HookGroup group, int code) {
  for (const auto& pair : kHookedPairs)
    if (code == pair[group == HookGroup::PreEvent ? 0 : 1]) return true;
  return group == HookGroup::PostEvent && code == kStartupCode;
}

// A file with a random value (or none) for every key, in the shapes a hand-edited file
// has; `switches` holds what start-up must read from it.
struct PreferenceFile {
  std::string bytes;
  HubletSettings switches{};
};

PreferenceFile MakePreferenceFile(Random& random) {
  static const int kOddSwitches[] = {2, -1, 7, 100, INT_MIN, INT_MAX};
  static const char* const kGammaTexts[] = {"2.2", "1.8", "1.0", "abc", "", "2.4x", "-3"};
  std::map<std::string, std::string> sections;
  const auto add = [&](const char* section, std::string name, const std::string& value) {
    if (random.Chance(15))
      for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    std::string& lines = sections[section];
    lines += random.Chance(20) ? "  " : "";
    lines += name + (random.Chance(20) ? " = " : "=") + value;
    lines += random.Chance(30) ? "\r\n" : "\n";
  };
  PreferenceFile file;
  for (const ExpectedSwitch& s : kExpectedSwitches) {
    int& value = file.switches.*s.field;
    value = s.defaultValue;
    if (s.key == nullptr || random.Chance(12)) continue;  // missing
    value = random.Chance(85) ? random.Between(0, 1) : random.Pick(kOddSwitches);
    add(s.section, s.key, std::to_string(value));
  }
  std::vector<std::string> values = {"VPLAYOUT", "VPEXPERT", "VPCMDPANEL", "NUMVP", "FPS"};
  for (const char* what : {"TYPE", "STYLE", "EDGES"})
    for (int i = 0; i < 4; ++i) values.push_back("VP" + std::to_string(i) + what);
  for (const std::string& key : values)
    if (!random.Chance(12)) add("MYVIEW", key, std::to_string(random.Chance(85) ? random.Between(-2, 12) : random.AnyInt()));
  for (const char* key : {"GAMMA", "GAMMAIN", "GAMMAOUT", "VRAYGAMMA"})
    if (!random.Chance(12)) add("MYVIEW", key, random.Pick(kGammaTexts));

  const std::string flint = "[FLINT]\n" + sections["FLINT"], myView = "[MYVIEW]\n" + sections["MYVIEW"];
  std::string text = random.Chance(20) ? "; by hand\n[OTHER]\nFORCEPERSP=9\n" : "";
  text += random.Chance(50) ? flint + myView : myView + flint;
  if (random.Chance(20)) text += "[FLINT]\nFORCEPERSP=5\n[MYVIEW]\nNUMVP=5\n";  // a repeated section is not read
  const bool utf16 = random.Chance(15);  // little-endian, with its mark
  file.bytes = utf16 ? "\xFF\xFE" : "";
  for (char c : text) file.bytes += utf16 ? std::string{c, '\0'} : std::string(1, c);
  return file;
}

class RandomSession {
 public:
  explicit RandomSession(unsigned seed) : seed_(seed), random_(seed) {}

  // Runs the session: empty when every invariant held, else the seed, the last steps and
  // the failing step's transcript.
  std::string Run(int steps) {
    try {
      for (step_ = 0; step_ <= steps; ++step_) {
        session_.transcript.Clear();
        cameras_ = scripts_ = passes_ = 0;
        saving_ = false;
        if (step_ == 0) Begin();
        else Step();
        Check();
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
  std::size_t Count(const std::string& prefix) {
    return std::count_if(session_.transcript.lines().begin(), session_.transcript.lines().end(),
                         [&](const std::string& line) { return line.compare(0, prefix.size(), prefix) == 0; });
  }

  void Begin() {
    file_ = MakePreferenceFile(random_);
    scratch_.reset(new ScratchFile(file_.bytes));
    session_.UsePreferenceFile(scratch_->path());
    Restart(false);
  }

  void Step() {
    const int kind = random_.Between(1, 100);
    if (kind <= 35) Notify();
    else if (kind <= 65) Redraw();
    else if (kind <= 88) CallInterface();
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
    Require(host().RegistrationCount() == 17u, "a restart left the wrong number of hook registrations");
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
    const int pair = random_.Between(0, 8);  // 8: start-up
    const int hooked = pair == 8 ? kStartupCode : kHookedPairs[pair][random_.Between(0, 1)];
    const int code = random_.Chance(80) ? hooked : random_.AnyInt();
    // Mostly raised by the host; sometimes sent straight to the plug-in in either group.
    const bool direct = random_.Chance(10);
    const HookGroup group = random_.Chance(50) ? HookGroup::PreEvent : HookGroup::PostEvent;
    Log((direct ? "notify directly " : "raise ") + std::to_string(code) +
        (direct ? (group == HookGroup::PreEvent ? " as pre" : " as post") : ""));
    if (direct) plugin().OnNotification(group, code);
    else host().Raise(code);
    bool acts = false;  // the plug-in may ask the host something
    for (HookGroup g : {HookGroup::PreEvent, HookGroup::PostEvent}) {
      if ((direct && g != group) || !IsHooked(g, code)) continue;
      const bool post = g == HookGroup::PostEvent;
      // A pre-event clears the flag and a post-event sets it; start-up is no scene operation.
      if (code != kStartupCode) busy_ = post ? 1 : 0;
      saving_ = saving_ || (!post && code == 13);
      if (post && code == 10) scripts_ = switches_.emptyMtlOnOpen == 1 ? 1 : 0;
      if (post && RunsThePass(code)) passes_ = 1;
      acts = acts || saving_ || scripts_ > 0 || passes_ > 0;
    }
    Require(acts || session_.transcript.lines().empty(), "a notification with nothing to do asked the host");
  }

  void Redraw() {
    const int v = random_.Between(-1, 5);  // -1, 4 and 5 redraw without a view
    const bool hasView = v >= 0 && v < SimHost::kViewportCount;
    if (hasView && random_.Chance(60)) host().viewport(v).type = random_.Between(0, 17);
    const int type = hasView ? host().viewport(v).type : -1;
    Log("redraw " + std::to_string(v) + " of type " + std::to_string(type));
    host().Redraw(v);
    // Orthographic user views (6) become camera views (8), perspective user views (7)
    // orthographic ones; each rule only when its switch is exactly 1.
    const bool persp = switches_.forcePersp == 1 && type == 6;
    const bool ortho = switches_.forceOrtho == 1 && type == 7;
    cameras_ = persp ? 1 : 0;
    if (!hasView || (switches_.forcePersp != 1 && switches_.forceOrtho != 1))
      Require(session_.transcript.lines().empty(), "a redraw with no switch at 1 asked something of the host");
    else if (!persp && !ortho)
      Require(session_.transcript.lines() == std::vector<std::string>{"view[" + std::to_string(v) + "].Type() -> " +
                                                                      std::to_string(type)},
              "a redraw no rule acts on asked more than the view's type");
    Require(persp == (hasView && type == 6 && host().viewport(v).type == 8),
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
    const auto function = std::find_if(std::begin(kExpectedSwitches), std::end(kExpectedSwitches),
                                       [&](const ExpectedSwitch& s) { return s.functionId == id; });
    const bool known = function != std::end(kExpectedSwitches);
    int status = 0;
    bool threw = false;
    try {
      status = plugin().CallInterface(id, SimArguments(arguments));
    } catch (const OutOfRangeError&) {
      threw = true;  // its text is checked by the interface tests
    }
    Require(threw == (known && arguments.empty()), "only a known function without its argument throws");
    Require(threw || status == (known ? 1 : -1), "status " + std::to_string(status));
    if (known && !arguments.empty()) switches_.*function->field = arguments[0] != 0 ? 1 : 0;
  }

  // After every step.
  void Check() {
    const HubletSettings& settings = plugin().state.settings;
    Require(plugin().state.sceneBusy == busy_, "sceneBusy is " + std::to_string(plugin().state.sceneBusy));
    Require(plugin().state.sceneTime == sceneTime_, "sceneTime changed after start");
    for (const ExpectedSwitch& s : kExpectedSwitches)
      Require(settings.*s.field == switches_.*s.field,
              "switch " + std::to_string(s.functionId) + " is " + std::to_string(settings.*s.field));
    for (const std::string& line : session_.transcript.lines()) {
      const char* text = line.c_str();
      int a = 0, b = 0;
      if (std::sscanf(text, "ExecuteCommand(%d)", &a) == 1)
        Require(std::count(std::begin(kViewCommands), std::end(kViewCommands), a) == 1, "not a view command: " + line);
      if (std::sscanf(text, "SetActiveViewport(%d)", &a) == 1 || std::sscanf(text, "view[%d]", &a) == 1)
        Require(a >= 0 && a < SimHost::kViewportCount, "a viewport outside 0..3: " + line);
      if (std::sscanf(text, "DeleteProperty(%d, %d", &a, &b) == 2 ||
          std::sscanf(text, "AddStringProperty(%d, %d", &a, &b) == 2)
        Require(saving_ && a == 1 && b >= 2 && b <= 4, "a property written outside a pre-save's summary: " + line);
    }
    Require(Count("CreateObjectNode(") == cameras_, "camera nodes do not match perspective-rule conversions");
    Require(Count("ExecuteScript(") == scripts_, "the material editor was cleared against the EMPTYMTLO switch");
    Require(Count("OpenProfile(") <= 1, "one step read the preference file twice");
    // Each stage of the pass runs when its switch is non-zero, whatever the number.
    const struct {
      const char* call;
      int switchValue;
    } stages[] = {{"SetViewportLayout(", switches_.useViewLayout},
                  {"SetDisplayGamma(", switches_.useGamma},
                  {"SetFrameRate(", switches_.useFrameRate}};
    for (const auto& stage : stages)
      Require(Count(stage.call) == (stage.switchValue != 0 ? passes_ : 0u),
              std::string(stage.call) + "...) against its switch " + std::to_string(stage.switchValue));
  }

  unsigned seed_;
  Random random_;
  int step_ = 0;
  std::deque<std::string> log_;
  SimSession session_;
  std::unique_ptr<ScratchFile> scratch_;
  PreferenceFile file_;
  HubletSettings switches_{};  // only the switches are kept
  int busy_ = 1;
  TimeValue sceneTime_ = 0;
  std::size_t cameras_ = 0, scripts_ = 0, passes_ = 0;  // what this step must have caused
  bool saving_ = false;                                // this step delivered a pre-save
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

}  // namespace
}  // namespace testing
}  // namespace hublet
