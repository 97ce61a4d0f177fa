#include "host/sim/sim_host.h"

#include <algorithm>

namespace hublet {
namespace {

CallValue Group(HookGroup group) { return WordValue(group == HookGroup::PreEvent ? "pre" : "post"); }
CallValue NodeName(const SimNode* node) {
  return WordValue(node ? "node#" + std::to_string(node->number) : "node#none");
}

}  // namespace

int ViewTypeOfCommand(int command) {
  for (int type = 0; type < host::kViewTypeCount; ++type)
    if (host::viewTypeCommand[type] == command) return type;
  return -1;
}

constexpr int SimHost::kViewportCount;
constexpr ClassId SimHost::kDefaultRenderer;

// --- SimView ---

void SimView::Record(std::string name, std::vector<CallValue> arguments) {
  HostCall call = Call(std::move(name), std::move(arguments));
  call.view = index_;
  host_.Record(std::move(call));
}

void SimView::RecordQuery(std::string name, CallValue answer) {
  HostCall call = Query(std::move(name), {}, std::move(answer));
  call.view = index_;
  host_.Record(std::move(call));
}

int SimView::Type() {
  RecordQuery("Type", IntValue(type));
  return type;
}

bool SimView::IsPerspective() {
  const bool perspective = type == host::kViewPerspUser || type == host::kViewCamera;
  RecordQuery("IsPerspective", BoolValue(perspective));
  return perspective;
}

Matrix43 SimView::AffineTransform() {
  RecordQuery("AffineTransform", MatrixValue(transform));
  return transform;
}

void SimView::SetAffineTransform(const Matrix43& matrix) {
  Record("SetAffineTransform", {MatrixValue(matrix)});
  if (type == host::kViewIsoUser || type == host::kViewPerspUser) transform = matrix;
}

bool SimView::HasShadingExtension() {
  RecordQuery("HasShadingExtension", BoolValue(hasShadingExtension));
  return hasShadingExtension;
}

void SimView::SetShadingStyle(int style) {
  Record("SetShadingStyle", {IntValue(style)});
  if (hasShadingExtension) shadingStyle = style;
}

void SimView::SetViewCamera(NodeRef node) {
  camera = host_.NodeOf(node);
  Record("SetViewCamera", {NodeName(camera)});
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
  Record(Call("RegisterNotification", {Group(group), IntValue(code)}));
  registrations_.push_back({group, code, &handler});
}

void SimHost::UnregisterNotification(HookGroup group, int code, NotificationHandler& handler) {
  Record(Call("UnregisterNotification", {Group(group), IntValue(code)}));
  registrations_.erase(std::remove_if(registrations_.begin(), registrations_.end(),
                                      [&](const Registration& r) {
                                        return r.group == group && r.code == code && r.handler == &handler;
                                      }),
                       registrations_.end());
}

void SimHost::RegisterDisplayCallback(bool preScene, DisplayHandler& handler) {
  Record(Call("RegisterDisplayCallback", {BoolValue(preScene)}));
  displayHandler_ = &handler;
}

TimeValue SimHost::CurrentTime() {
  Record(Query("CurrentTime", {}, IntValue(time_)));
  return time_;
}

std::wstring SimHost::DirectoryOf(int id) const {
  const auto it = directories_.find(id);
  return it == directories_.end() ? std::wstring() : it->second;
}

std::wstring SimHost::Directory(int id) {
  const std::wstring path = DirectoryOf(id);
  Record(Query("Directory", {IntValue(id)}, TextValue(path)));
  return path;
}

bool SimHost::HasFile(const std::wstring& path) const {
  return std::find(files_.begin(), files_.end(), path) != files_.end();
}

void SimHost::RemoveFile(const std::wstring& path) {
  files_.erase(std::remove(files_.begin(), files_.end(), path), files_.end());
}

bool SimHost::ExecuteScript(const std::wstring& code, bool quietErrors) {
  Record(Query("ExecuteScript", {TextValue(code), BoolValue(quietErrors)}, BoolValue(true)));
  scriptsRun.push_back(code);
  return true;
}

bool SimHost::FileExists(const std::wstring& path, bool allowDirectory) {
  const bool exists = HasFile(path);
  Record(Query("FileExists", {TextValue(path), BoolValue(allowDirectory)}, BoolValue(exists)));
  return exists;
}

bool SimHost::LoadScriptFile(const std::wstring& path, wchar_t* errorText) {
  Record(Query("LoadScriptFile", {TextValue(path)}, BoolValue(true)));
  scriptFilesLoaded.push_back(path);
  errorText[0] = L'\0';
  return true;
}

void SimHost::SetViewportLayout(int layout) {
  Record(Call("SetViewportLayout", {IntValue(layout)}));
  viewportLayout = layout;
}

void SimHost::SetExpertMode(int on) {
  Record(Call("SetExpertMode", {IntValue(on)}));
  expertMode = on;
}

void SimHost::SetCommandPanelOpen(int open) {
  Record(Call("SetCommandPanelOpen", {IntValue(open)}));
  commandPanelOpen = open;
}

void SimHost::SetActiveViewport(int index) {
  Record(Call("SetActiveViewport", {IntValue(index)}));
  if (index >= 0 && index < kViewportCount) activeViewport = index;
}

void SimHost::ExecuteCommand(int command) {
  Record(Call("ExecuteCommand", {IntValue(command)}));
  const int type = ViewTypeOfCommand(command);
  if (type < 0) return;
  SimView& view = viewport(activeViewport);
  view.type = type;
  if (type != host::kViewCamera) view.camera = nullptr;
}

View& SimHost::ActiveView() {
  Record(Query("ActiveView", {}, WordValue("view[" + std::to_string(activeViewport) + "]")));
  return viewport(activeViewport);
}

void SimHost::SetActiveViewportEdgedFaces(int on) {
  Record(Call("SetActiveViewportEdgedFaces", {IntValue(on)}));
  viewport(activeViewport).edgedFaces = on;
}

void SimHost::ForceCompleteRedraw(bool includeDisabled) {
  Record(Call("ForceCompleteRedraw", {BoolValue(includeDisabled)}));
  ++redrawRequests;
}

CameraRef SimHost::CreateCameraObject(int cameraType) {
  cameras_.push_back(cameraType);
  Record(Query("CreateCameraObject", {IntValue(cameraType)},
                    WordValue("camera#" + std::to_string(cameras_.size()))));
  return CameraRef{&cameras_.back()};
}

NodeRef SimHost::CreateObjectNode(CameraRef object) {
  const int cameraType = object.handle ? *static_cast<int*>(object.handle) : -1;
  nodes.push_back(SimNode{static_cast<int>(nodes.size()) + 1, cameraType, IdentityMatrix(), 0});
  Record(Query("CreateObjectNode", {WordValue("camera")}, NodeName(&nodes.back())));
  return NodeRef{&nodes.back()};
}

void SimHost::SetNodeTransform(NodeRef ref, TimeValue time, const Matrix43& transform) {
  SimNode* node = NodeOf(ref);
  Record(Call("SetNodeTransform", {NodeName(node), IntValue(time), MatrixValue(transform)}));
  if (node == nullptr) return;
  node->transform = transform;
  node->transformTime = time;
}

void SimHost::SelectNode(NodeRef ref, int clearSelection) {
  const SimNode* node = NodeOf(ref);
  Record(Call("SelectNode", {NodeName(node), IntValue(clearSelection)}));
  if (clearSelection != 0) selection.clear();
  if (node != nullptr) selection.push_back(node->number);
}

void SimHost::SetDisplayGamma(float gamma) {
  Record(Call("SetDisplayGamma", {RealValue(gamma)}));
  displayGamma = gamma;
}

void SimHost::SetFileInGamma(float gamma) {
  Record(Call("SetFileInGamma", {RealValue(gamma)}));
  fileInGamma = gamma;
}

void SimHost::SetFileOutGamma(float gamma) {
  Record(Call("SetFileOutGamma", {RealValue(gamma)}));
  fileOutGamma = gamma;
}

Lookup<ClassId> SimHost::CurrentRendererClass(bool createIfMissing) {
  if (!rendererPresent_ && createIfMissing) SetRenderer(kDefaultRenderer);
  Record(Query("CurrentRendererClass", {BoolValue(createIfMissing)},
               rendererPresent_ ? ClassIdValue(renderer_) : NothingValue()));
  return {rendererPresent_, renderer_};
}

void SimHost::SetRendererFloat(int block, int param, TimeValue time, float value, int tabIndex) {
  Record(Call("SetRendererFloat",
              {IntValue(block), IntValue(param), IntValue(time), RealValue(value), IntValue(tabIndex)}));
  if (rendererPresent_) rendererFloats[block * 100000 + param] = value;
}

void SimHost::SetFrameRate(int rate) {
  Record(Call("SetFrameRate", {IntValue(rate)}));
  frameRate = rate;
}

Lookup<int> SimHost::FindProperty(int set, int id) {
  const std::vector<SimProperty>& properties = PropertySet(set);
  int index = -1;
  for (std::size_t i = 0; i < properties.size(); ++i)
    if (properties[i].id == id) index = static_cast<int>(i);
  Record(Query("FindProperty", {IntValue(set), IntValue(id)}, index < 0 ? NothingValue() : IntValue(index)));
  return {index >= 0, index};
}

Lookup<std::wstring> SimHost::PropertyText(int set, int index) {
  const std::vector<SimProperty>& properties = PropertySet(set);
  const bool valid = index >= 0 && static_cast<std::size_t>(index) < properties.size();
  const SimProperty* property = valid ? &properties[static_cast<std::size_t>(index)] : nullptr;
  const bool hasValue = property != nullptr && property->hasValue;
  Record(Query("PropertyText", {IntValue(set), IntValue(index)},
               hasValue ? TextValue(property->text) : NothingValue()));
  return {hasValue, hasValue ? property->text : std::wstring()};
}

void SimHost::DeleteProperty(int set, int id) {
  Record(Call("DeleteProperty", {IntValue(set), IntValue(id)}));
  std::vector<SimProperty>& properties = PropertySet(set);
  properties.erase(std::remove_if(properties.begin(), properties.end(),
                                  [id](const SimProperty& p) { return p.id == id; }),
                   properties.end());
}

void SimHost::AddStringProperty(int set, int id, const std::wstring& value) {
  Record(Call("AddStringProperty", {IntValue(set), IntValue(id), TextValue(value)}));
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

bool SimHost::HasProperty(int set, int id) const {
  const auto it = properties_.find(set);
  if (it != properties_.end())
    for (const SimProperty& p : it->second)
      if (p.id == id) return true;
  return false;
}

Lookup<std::wstring> SimHost::Property(int set, int id) const {
  const auto it = properties_.find(set);
  if (it != properties_.end())
    for (const SimProperty& p : it->second)
      if (p.id == id) return {p.hasValue, p.text};
  return {false, std::wstring()};
}

}  // namespace hublet
