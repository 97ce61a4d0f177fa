#include "tool/replay/replay.h"

#include "frame/interface_table.h"
#include "harness/sim_session.h"
#include "host/sim/sim_arguments.h"
#include "platform/wide_text.h"
#include "tool/common/host_codes.h"
#include "tool/common/json_writer.h"
#include "tool/replay/profile_cache.h"
#include "tool/replay/redraw_loop.h"
#include "tool/replay/replay_host.h"
#include "tool/replay/state_event.h"
#include "toolbar/toolbar.h"

namespace hublet {
namespace tool {
namespace {

std::string Int(int value) { return std::to_string(value); }

std::string FunctionNote(int id) {
  const InterfaceFunction* function = FindInterfaceFunction(id);
  return function == nullptr ? "no such function" : function->fieldName;
}

}  // namespace

// One group is kept until the next begins, so that what the replay learns after its
// calls (why following redraws stopped) joins it; then it goes to the output.
class Replay::Runner {
 public:
  Runner(const ReplayOptions& options, ReplayOutput& output)
      : options_(options), output_(output), hostState_(session_) {
    session_.system.openFile = [this](const std::wstring& path) { return preferenceFiles_.Open(path); };
  }

  void Start() {
    for (const HostChange& change : options_.host) hostState_.Apply(change);
    output_.Host(hostState_.Describe());
    Begin("load", std::string());
    session_.Load();
    Finish();
    Begin("start", std::string());
    session_.Start();
    Finish();
  }

  void Run(const ReplayEvent& event) {
    const int requests = session_.host.redrawRequests;
    RunEvent(event);
    FollowRedraws(requests);
  }

  void End() {
    Begin("unload", std::string());
    session_.Unload();
    Finish();
    Send();
    output_.End();
  }

 private:
  void Begin(const std::string& header, const std::string& note) {
    Send();
    group_ = ReplayGroup();
    group_.step = nextStep_++;
    group_.event = header;
    group_.note = note;
    pending_ = true;
    busyBefore_ = session_.hublet ? session_.hublet->state.sceneBusy : 0;
  }

  // The calls since Begin, and sceneBusy when the group changed it. What the host keeps
  // of the plug-in's doings that the plug-in never asks back (the scripts it ran) is let
  // go, so that memory does not grow with the session.
  void Finish() {
    group_.calls = session_.transcript.calls();
    session_.transcript.Clear();
    session_.host.scriptsRun.clear();
    session_.host.scriptFilesLoaded.clear();
    if (session_.hublet && session_.hublet->state.sceneBusy != busyBefore_) {
      group_.busyChanged = true;
      group_.busy = session_.hublet->state.sceneBusy;
    }
  }

  void Send() {
    if (pending_) output_.Group(group_);
    pending_ = false;
  }

  void Fact(std::string text, const char* member, std::string json) {
    ReplayFact fact;
    fact.text = std::move(text);
    fact.jsonMember = member;
    fact.json = std::move(json);
    group_.facts.push_back(fact);
  }

  void RunEvent(const ReplayEvent& event) {
    SimHost& host = session_.host;
    switch (event.kind) {
      case ReplayEvent::Kind::Notification:
        Begin(event.name + " (notification " + Int(event.code) + ")", HostCodeText(kNotificationCodes, event.code));
        host.Raise(event.code);
        break;
      case ReplayEvent::Kind::Redraw: {
        if (event.noView) {
          Begin("redraw without a view", std::string());
          host.Redraw(-1);
          break;
        }
        const int index = event.viewport >= 0 ? event.viewport : host.activeViewport;
        if (event.setsType) {
          HostChange change{};
          change.what = HostChange::What::ViewType;
          change.viewport = index;
          change.number = event.viewType;
          hostState_.Apply(change);
        }
        const int type = host.viewport(index).type;
        Begin("redraw viewport " + Int(index) + " (type " + Int(type) + ")", HostCodeText(kViewTypes, type));
        host.Redraw(index);
        break;
      }
      case ReplayEvent::Kind::Call:
        Begin("call " + Int(event.functionId) + (event.hasArgument ? " " + Int(event.argument) : " (no argument)"),
              FunctionNote(event.functionId));
        Call(event);
        break;
      case ReplayEvent::Kind::Toolbar:
        Begin("toolbar", std::string());
        ReinstallToolbar(host);
        break;
      case ReplayEvent::Kind::Host:
        Begin(event.word, std::string());
        hostState_.Apply(event.change);
        break;
      case ReplayEvent::Kind::State:
        Begin("state", std::string());
        if (session_.hublet) Fact(StateText(session_.hublet->state), "state", StateJson(session_.hublet->state));
        break;
    }
    Finish();
  }

  void Call(const ReplayEvent& event) {
    Hublet& hublet = *session_.hublet;
    const std::string function = "\"function\": " + Int(event.functionId);
    try {
      const SimArguments arguments = event.hasArgument ? SimArguments({event.argument}) : SimArguments();
      const int status = hublet.CallInterface(event.functionId, arguments);
      std::string text = "-> status " + Int(status);
      std::string json = "{" + function + ", \"status\": " + Int(status);
      if (const InterfaceFunction* f = FindInterfaceFunction(event.functionId)) {
        const int value = hublet.state.settings.*f->field;
        text += ", " + std::string(f->fieldName) + " = " + Int(value);
        json += ", \"field\": " + JsonString(f->fieldName) + ", \"value\": " + Int(value);
      }
      Fact(text, "interface", json + "}");
    } catch (const OutOfRangeError& error) {
      const std::string message = WideToUtf8(error.Message());
      Fact("-> throws OutOfRangeException(" + FormatText(error.Message()) + ")", "interface",
           "{" + function + ", \"throws\": \"OutOfRangeException\", \"message\": " + JsonString(message) + "}");
    }
  }

  void Stopped(const std::string& why) { Fact("[stopped following: " + why + "]", "stopped", JsonString("stopped following: " + why)); }

  // A complete redraw, every viewport in turn, for each redraw the plug-in asked for since
  // `requests`: until it asks no more, asks again with the viewports as they were before an
  // earlier one of these redraws (it would ask forever), or has had the most in a row.
  void FollowRedraws(int requests) {
    SimHost& host = session_.host;
    RedrawLoopFinder loop;
    int followed = 0;
    while (options_.followRedraws > 0 && host.redrawRequests > requests) {
      int earlier = 0;
      if (loop.Repeats(ViewportsOf(host), followed + 1, earlier)) {
        Stopped("the plug-in asked for another redraw with the viewports as they were before requested redraw " +
                Int(earlier) + ", so it would ask forever");
        return;
      }
      if (followed == options_.followRedraws) {
        Stopped("the plug-in asked for another redraw after " + Int(followed) + " in a row");
        return;
      }
      requests = host.redrawRequests;
      ++followed;
      Begin("requested redraw " + Int(followed) + " (every viewport)", std::string());
      for (int i = 0; i < SimHost::kViewportCount; ++i) host.Redraw(i);
      Finish();
    }
  }

  const ReplayOptions options_;  // a copy: the caller's may be gone
  ReplayOutput& output_;
  ProfileCache preferenceFiles_;
  SimSession session_;
  ReplayHostState hostState_;
  ReplayGroup group_;
  bool pending_ = false;
  std::size_t nextStep_ = 0;
  int busyBefore_ = 0;
};

Replay::Replay(const ReplayOptions& options, ReplayOutput& output) : runner_(new Runner(options, output)) {}
Replay::~Replay() = default;
void Replay::Start() { runner_->Start(); }
void Replay::Run(const ReplayEvent& event) { runner_->Run(event); }
void Replay::End() { runner_->End(); }

}  // namespace tool
}  // namespace hublet
