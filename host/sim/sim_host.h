#pragma once
// A host in memory: four viewports, a renderer, scene summary properties, cameras and
// files. It records every call in a Transcript and behaves like 3ds Max where the
// plug-in's logic depends on it: a view command changes the active viewport's type, a
// camera assignment makes a camera view, created nodes and written properties exist
// afterwards, and only user views take an affine transform.
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/sim/transcript.h"

namespace hublet {

class SimHost;

// The view type a host command switches the active viewport to, or -1 for any other command.
int ViewTypeOfCommand(int command);

struct SimNode {
  int number;  // 1, 2, ... in creation order
  int cameraType;
  Matrix43 transform;
  TimeValue transformTime;
};

class SimView final : public View {
 public:
  SimView(SimHost& host, int index) : host_(host), index_(index) {}

  int Type() override;
  bool IsPerspective() override;
  Matrix43 AffineTransform() override;
  void SetAffineTransform(const Matrix43& transform) override;
  bool HasShadingExtension() override;
  void SetShadingStyle(int style) override;
  void SetViewCamera(NodeRef camera) override;

  // The viewport's state, for tests and for setting up a scene.
  int type = host::kViewPerspUser;
  Matrix43 transform = IdentityMatrix();
  bool hasShadingExtension = true;
  int shadingStyle = 0;
  int edgedFaces = 0;
  const SimNode* camera = nullptr;

 private:
  void Record(std::string name, std::vector<CallValue> arguments);
  void RecordQuery(std::string name, CallValue answer);
  SimHost& host_;
  int index_;
};

struct SimProperty {
  int id;
  bool hasValue;
  std::wstring text;
};

class SimHost final : public Host {
 public:
  static constexpr int kViewportCount = 4;
  // The scanline renderer, what the host creates when asked for one it does not have.
  static constexpr ClassId kDefaultRenderer{0x60u, 0x0u};

  explicit SimHost(Transcript& transcript);

  // Host.
  void RegisterNotification(HookGroup group, int code, NotificationHandler& handler) override;
  void UnregisterNotification(HookGroup group, int code, NotificationHandler& handler) override;
  void RegisterDisplayCallback(bool preScene, DisplayHandler& handler) override;
  void DetachDisplayHandler(DisplayHandler& handler) override {
    if (displayHandler_ == &handler) displayHandler_ = nullptr;
  }
  TimeValue CurrentTime() override;
  std::wstring Directory(int id) override;
  bool ExecuteScript(const std::wstring& code, bool quietErrors) override;
  bool FileExists(const std::wstring& path, bool allowDirectory) override;
  bool LoadScriptFile(const std::wstring& path, wchar_t* errorText) override;
  void SetViewportLayout(int layout) override;
  void SetExpertMode(int on) override;
  void SetCommandPanelOpen(int open) override;
  void SetActiveViewport(int index) override;
  void ExecuteCommand(int command) override;
  View& ActiveView() override;
  void SetActiveViewportEdgedFaces(int on) override;
  void ForceCompleteRedraw(bool includeDisabled) override;
  CameraRef CreateCameraObject(int cameraType) override;
  NodeRef CreateObjectNode(CameraRef object) override;
  void SetNodeTransform(NodeRef node, TimeValue time, const Matrix43& transform) override;
  void SelectNode(NodeRef node, int clearSelection) override;
  void SetDisplayGamma(float gamma) override;
  void SetFileInGamma(float gamma) override;
  void SetFileOutGamma(float gamma) override;
  Lookup<ClassId> CurrentRendererClass(bool createIfMissing) override;
  void SetRendererFloat(int block, int param, TimeValue time, float value, int tabIndex) override;
  void SetFrameRate(int rate) override;
  Lookup<int> FindProperty(int set, int id) override;
  Lookup<std::wstring> PropertyText(int set, int index) override;
  void DeleteProperty(int set, int id) override;
  void AddStringProperty(int set, int id, const std::wstring& value) override;

  // Driving the host, as its user would. None of these is recorded.
  // Raises a notification to every hook registered for it; false when none is.
  bool Raise(int code);
  // Redraws one viewport (or, with -1, calls the display callback without a view).
  void Redraw(int viewport);
  bool HasRegistration(HookGroup group, int code) const;
  std::size_t RegistrationCount() const { return registrations_.size(); }

  // The scene, for setting up and for checks.
  SimView& viewport(int index) { return *views_[static_cast<std::size_t>(index)]; }
  void SetDirectory(int id, const std::wstring& path) { directories_[id] = path; }
  std::wstring DirectoryOf(int id) const;
  void AddFile(const std::wstring& path) { files_.push_back(path); }
  void RemoveFile(const std::wstring& path);
  void SetTime(TimeValue time) { time_ = time; }
  void SetRenderer(ClassId renderer) { rendererPresent_ = true; renderer_ = renderer; }
  void RemoveRenderer() { rendererPresent_ = false; }
  void SetProperty(int set, int id, const std::wstring& text);
  void SetPropertyWithoutValue(int set, int id);
  Lookup<std::wstring> Property(int set, int id) const;
  bool HasProperty(int set, int id) const;
  TimeValue Time() const { return time_; }
  Lookup<ClassId> Renderer() const { return {rendererPresent_, renderer_}; }
  bool HasFile(const std::wstring& path) const;

  int activeViewport = 0;
  int viewportLayout = 0;
  int expertMode = 0;
  int commandPanelOpen = 1;
  float displayGamma = 2.2f;
  float fileInGamma = 2.2f;
  float fileOutGamma = 2.2f;
  int frameRate = 30;
  std::map<int, float> rendererFloats;  // keyed by block * 100000 + param
  std::deque<SimNode> nodes;
  std::vector<int> selection;  // node numbers
  std::vector<std::wstring> scriptsRun;
  std::vector<std::wstring> scriptFilesLoaded;
  int redrawRequests = 0;

 private:
  friend class SimView;
  struct Registration {
    HookGroup group;
    int code;
    NotificationHandler* handler;
  };
  SimNode* NodeOf(NodeRef ref) const { return static_cast<SimNode*>(ref.handle); }
  std::vector<SimProperty>& PropertySet(int set) { return properties_[set]; }
  void Record(HostCall call) { transcript_.Add(std::move(call)); }

  Transcript& transcript_;
  std::vector<std::unique_ptr<SimView>> views_;
  std::vector<Registration> registrations_;
  DisplayHandler* displayHandler_ = nullptr;
  std::map<int, std::wstring> directories_;
  std::vector<std::wstring> files_;
  TimeValue time_ = 0;
  bool rendererPresent_ = true;
  ClassId renderer_ = kDefaultRenderer;
  std::deque<int> cameras_;  // camera objects by type; CameraRef points at an element
  std::map<int, std::vector<SimProperty>> properties_;
};

}  // namespace hublet
