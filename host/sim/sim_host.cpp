#include "host/sim/sim_host.h"

#include <algorithm>

namespace hublet {
namespace {

std::string Bool(bool value) { return value ? "true" : "false"; }
std::string Int(int value) { return std::to_string(value); }
std::string Group(HookGroup group) { return group == HookGroup::PreEvent ? "pre" : "post"; }
std::string NodeName(const SimNode* node) { return node ? "node#" + Int(node->number) : "node#none"; }

// The view type a view command switches to, or -1 for any other command.
int ViewTypeOfCommand(int command) {
  for (int type = 0; type < host::kViewTypeCount; ++type)
    if (host::viewTypeCommand[type] == command) return type;
  return -1;
}

}  // namespace

constexpr int SimHost::kViewportCount;
constexpr ClassId SimHost::kDefaultRenderer;

// --- SimView ---

std::string SimView::Name() const { return "view[" + Int(index_) + "]."; }

int SimView::Type() {
  host_.Record(Name() + "Type() -> " + Int(type));
  return type;
}

bool SimView::IsPerspective() {
  const bool perspective = type == host::kViewPerspUser || type == host::kViewCamera;
  host_.Record(Name() + "IsPerspective() -> " + Bool(perspective));
  return perspective;
}

Matrix43 SimView::AffineTransform() {
  host_.Record(Name() + "AffineTransform() -> " + FormatMatrix(transform));
  return transform;
}

void SimView::SetAffineTransform(const Matrix43& matrix) {
  host_.Record(Name() + "SetAffineTransform(" + FormatMatrix(matrix) + ")");
  if (type == host::kViewIsoUser || type == host::kViewPerspUser) transform = matrix;
}

bool SimView::HasShadingExtension() {
  host_.Record(Name() + "HasShadingExtension() -> " + Bool(hasShadingExtension));
  return hasShadingExtension;
}

void SimView::SetShadingStyle(int style) {
  host_.Record(Name() + "SetShadingStyle(" + Int(style) + ")");
  if (hasShadingExtension) shadingStyle = style;
}

void SimView::SetViewCamera(NodeRef node) {
  camera = host_.NodeOf(node);
  host_.Record(Name() + "SetViewCamera(" + NodeName(camera) + ")");
  if (camera != nullptr) type = host::kViewCamera;
}

// --- SimHost ---

SimHost::SimHost(Transcript& transcript) : transcript_(transcript) {
  for (int i = 0; i < kViewportCount; ++i) views_.push_back(std::unique_ptr<SimView>(new SimView(*this, i)));
  // The host's own four-viewport start: top, front, left, perspective.
  viewport(0).type = 2;
  viewport(1).type = 4;
  viewport(2).type = host::kViewLeft;
  viewport(3).type = host::kViewPerspUser;
  activeViewport = 3;
  viewportLayout = 0x74;
  directories_[host::kDirPlugCfg] = L"C:\\3dsMax2017\\plugcfg";
  directories_[host::kDirScripts] = L"C:\\3dsMax2017\\scripts";
}

void SimHost::RegisterNotification(HookGroup group, int code, NotificationHandler& handler) {
  Record("RegisterNotification(" + Group(group) + ", " + Int(code) + ")");
  registrations_.push_back({group, code, &handler});
}

void SimHost::UnregisterNotification(HookGroup group, int code, NotificationHandler& handler) {
  Record("UnregisterNotification(" + Group(group) + ", " + Int(code) + ")");
  registrations_.erase(std::remove_if(registrations_.begin(), registrations_.end(),
                                      [&](const Registration& r) {
                                        return r.group == group && r.code == code && r.handler == &handler;
                                      }),
                       registrations_.end());
}

void SimHost::RegisterDisplayCallback(bool preScene, DisplayHandler& handler) {
  Record("RegisterDisplayCallback(" + Bool(preScene) + ")");
  displayHandler_ = &handler;
}

TimeValue SimHost::CurrentTime() {
  Record("CurrentTime() -> " + Int(time_));
  return time_;
}

std::wstring SimHost::DirectoryOf(int id) const {
  const auto it = directories_.find(id);
  return it == directories_.end() ? std::wstring() : it->second;
}

std::wstring SimHost::Directory(int id) {
  const std::wstring path = DirectoryOf(id);
  Record("Directory(" + Int(id) + ") -> " + FormatText(path));
  return path;
}

bool SimHost::ExecuteScript(const std::wstring& code, bool quietErrors) {
  Record("ExecuteScript(" + FormatText(code) + ", " + Bool(quietErrors) + ") -> true");
  scriptsRun.push_back(code);
  return true;
}

bool SimHost::FileExists(const std::wstring& path, bool allowDirectory) {
  const bool exists = std::find(files_.begin(), files_.end(), path) != files_.end();
  Record("FileExists(" + FormatText(path) + ", " + Bool(allowDirectory) + ") -> " + Bool(exists));
  return exists;
}

bool SimHost::LoadScriptFile(const std::wstring& path, wchar_t* errorText) {
  Record("LoadScriptFile(" + FormatText(path) + ") -> true");
  scriptFilesLoaded.push_back(path);
  errorText[0] = L'\0';
  return true;
}

void SimHost::SetViewportLayout(int layout) {
  Record("SetViewportLayout(" + Int(layout) + ")");
  viewportLayout = layout;
}

void SimHost::SetExpertMode(int on) {
  Record("SetExpertMode(" + Int(on) + ")");
  expertMode = on;
}

void SimHost::SetCommandPanelOpen(int open) {
  Record("SetCommandPanelOpen(" + Int(open) + ")");
  commandPanelOpen = open;
}

void SimHost::SetActiveViewport(int index) {
  Record("SetActiveViewport(" + Int(index) + ")");
  if (index >= 0 && index < kViewportCount) activeViewport = index;
}

void SimHost::ExecuteCommand(int command) {
  Record("ExecuteCommand(" + Int(command) + ")");
  const int type = ViewTypeOfCommand(command);
  if (type < 0) return;
  SimView& view = viewport(activeViewport);
  view.type = type;
  if (type != host::kViewCamera) view.camera = nullptr;
}

View& SimHost::ActiveView() {
  Record("ActiveView() -> view[" + Int(activeViewport) + "]");
  return viewport(activeViewport);
}

void SimHost::SetActiveViewportEdgedFaces(int on) {
  Record("SetActiveViewportEdgedFaces(" + Int(on) + ")");
  viewport(activeViewport).edgedFaces = on;
}

void SimHost::ForceCompleteRedraw(bool includeDisabled) {
  Record("ForceCompleteRedraw(" + Bool(includeDisabled) + ")");
  ++redrawRequests;
}

CameraRef SimHost::CreateCameraObject(int cameraType) {
  cameras_.push_back(cameraType);
  Record("CreateCameraObject(" + Int(cameraType) + ") -> camera#" + Int(static_cast<int>(cameras_.size())));
  return CameraRef{&cameras_.back()};
}

NodeRef SimHost::CreateObjectNode(CameraRef object) {
  const int cameraType = object.handle ? *static_cast<int*>(object.handle) : -1;
  nodes.push_back(SimNode{static_cast<int>(nodes.size()) + 1, cameraType, IdentityMatrix(), 0});
  Record("CreateObjectNode(camera) -> " + NodeName(&nodes.back()));
  return NodeRef{&nodes.back()};
}

void SimHost::SetNodeTransform(NodeRef ref, TimeValue time, const Matrix43& transform) {
  SimNode* node = NodeOf(ref);
  Record("SetNodeTransform(" + NodeName(node) + ", " + Int(time) + ", " + FormatMatrix(transform) + ")");
  if (node == nullptr) return;
  node->transform = transform;
  node->transformTime = time;
}

void SimHost::SelectNode(NodeRef ref, int clearSelection) {
  const SimNode* node = NodeOf(ref);
  Record("SelectNode(" + NodeName(node) + ", " + Int(clearSelection) + ")");
  if (clearSelection != 0) selection.clear();
  if (node != nullptr) selection.push_back(node->number);
}

void SimHost::SetDisplayGamma(float gamma) {
  Record("SetDisplayGamma(" + FormatFloat(gamma) + ")");
  displayGamma = gamma;
}

void SimHost::SetFileInGamma(float gamma) {
  Record("SetFileInGamma(" + FormatFloat(gamma) + ")");
  fileInGamma = gamma;
}

void SimHost::SetFileOutGamma(float gamma) {
  Record("SetFileOutGamma(" + FormatFloat(gamma) + ")");
  fileOutGamma = gamma;
}

Lookup<ClassId> SimHost::CurrentRendererClass(bool createIfMissing) {
  if (!rendererPresent_ && createIfMissing) SetRenderer(kDefaultRenderer);
  const std::string answer = rendererPresent_ ? FormatClassId(renderer_) : "none";
  Record("CurrentRendererClass(" + Bool(createIfMissing) + ") -> " + answer);
  return {rendererPresent_, renderer_};
}

void SimHost::SetRendererFloat(int block, int param, TimeValue time, float value, int tabIndex) {
  Record("SetRendererFloat(" + Int(block) + ", " + Int(param) + ", " + Int(time) + ", " + FormatFloat(value) +
         ", " + Int(tabIndex) + ")");
  if (rendererPresent_) rendererFloats[block * 100000 + param] = value;
}

void SimHost::SetFrameRate(int rate) {
  Record("SetFrameRate(" + Int(rate) + ")");
  frameRate = rate;
}

Lookup<int> SimHost::FindProperty(int set, int id) {
  const std::vector<SimProperty>& properties = PropertySet(set);
  int index = -1;
  for (std::size_t i = 0; i < properties.size(); ++i)
    if (properties[i].id == id) index = static_cast<int>(i);
  Record("FindProperty(" + Int(set) + ", " + Int(id) + ") -> " + (index < 0 ? "none" : Int(index)));
  return {index >= 0, index};
}

Lookup<std::wstring> SimHost::PropertyText(int set, int index) {
  const std::vector<SimProperty>& properties = PropertySet(set);
  const bool valid = index >= 0 && static_cast<std::size_t>(index) < properties.size();
  const SimProperty* property = valid ? &properties[static_cast<std::size_t>(index)] : nullptr;
  const bool hasValue = property != nullptr && property->hasValue;
  Record("PropertyText(" + Int(set) + ", " + Int(index) + ") -> " +
         (hasValue ? FormatText(property->text) : "none"));
  return {hasValue, hasValue ? property->text : std::wstring()};
}

void SimHost::DeleteProperty(int set, int id) {
  Record("DeleteProperty(" + Int(set) + ", " + Int(id) + ")");
  std::vector<SimProperty>& properties = PropertySet(set);
  properties.erase(std::remove_if(properties.begin(), properties.end(),
                                  [id](const SimProperty& p) { return p.id == id; }),
                   properties.end());
}

void SimHost::AddStringProperty(int set, int id, const std::wstring& value) {
  Record("AddStringProperty(" + Int(set) + ", " + Int(id) + ", " + FormatText(value) + ")");
  SetProperty(set, id, value);
}

bool SimHost::Raise(int code) {
  // Copy first: a handler may unregister while it runs.
  const std::vector<Registration> registrations = registrations_;
  bool delivered = false;
  for (const Registration& r : registrations) {
    if (r.code != code) continue;
    r.handler->OnNotification(r.group, code);
    delivered = true;
  }
  return delivered;
}

void SimHost::Redraw(int index) {
  if (displayHandler_ == nullptr) return;
  const bool hasView = index >= 0 && index < kViewportCount;
  displayHandler_->OnDisplay(time_, hasView ? &viewport(index) : nullptr);
}

bool SimHost::HasRegistration(HookGroup group, int code) const {
  for (const Registration& r : registrations_)
    if (r.group == group && r.code == code) return true;
  return false;
}

void SimHost::SetProperty(int set, int id, const std::wstring& text) {
  std::vector<SimProperty>& properties = PropertySet(set);
  for (SimProperty& p : properties) {
    if (p.id != id) continue;
    p.hasValue = true;
    p.text = text;
    return;
  }
  properties.push_back({id, true, text});
}

void SimHost::SetPropertyWithoutValue(int set, int id) {
  SetProperty(set, id, std::wstring());
  for (SimProperty& p : PropertySet(set))
    if (p.id == id) p.hasValue = false;
}

Lookup<std::wstring> SimHost::Property(int set, int id) const {
  const auto it = properties_.find(set);
  if (it != properties_.end())
    for (const SimProperty& p : it->second)
      if (p.id == id) return {p.hasValue, p.text};
  return {false, std::wstring()};
}

}  // namespace hublet
