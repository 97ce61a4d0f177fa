#include "host/max/max_host.h"

#include <GetCOREInterface.h>
#include <IColorCorrectionMgr.h>
#include <gamma.h>
#include <gencam.h>
#include <inode.h>
#include <iparamb2.h>
#include <maxscript/maxscript.h>
#include <maxvariant.h>
#include <notify.h>
#include <render.h>
#include <units.h>
#include <winutil.h>

#include "host/max/conversions.h"

namespace hublet {
namespace max_binding {
namespace {

// The two notification procedures: the handler rides along as the registration parameter.
void OnPreEvent(void* param, NotifyInfo* info) {
  static_cast<NotificationHandler*>(param)->OnNotification(HookGroup::PreEvent, info->intcode);
}
void OnPostEvent(void* param, NotifyInfo* info) {
  static_cast<NotificationHandler*>(param)->OnNotification(HookGroup::PostEvent, info->intcode);
}

NOTIFYPROC ProcFor(HookGroup group) { return group == HookGroup::PreEvent ? OnPreEvent : OnPostEvent; }

// Registration and unregistration must hand the host the same pointer.
void* ParamFor(NotificationHandler& handler) { return static_cast<void*>(&handler); }

PROPSPEC PropertyById(int id) {
  PROPSPEC key;
  key.ulKind = PRSPEC_PROPID;
  key.propid = static_cast<PROPID>(id);
  return key;
}

// A camera travels through the port as the Object its node will hold.
Object* ObjectOf(CameraRef camera) { return static_cast<Object*>(camera.handle); }
INode* NodeOf(NodeRef node) { return static_cast<INode*>(node.handle); }

}  // namespace

MaxHost::MaxHost(HubletDisplayCallback& displayCallback) : displayCallback_(displayCallback) {}

void MaxHost::RegisterNotification(HookGroup group, int code, NotificationHandler& handler) {
  ::RegisterNotification(ProcFor(group), ParamFor(handler), code);
}

void MaxHost::UnregisterNotification(HookGroup group, int code, NotificationHandler& handler) {
  ::UnRegisterNotification(ProcFor(group), ParamFor(handler), code);
}

void MaxHost::DetachDisplayHandler(DisplayHandler& handler) { displayCallback_.ClearHandler(handler); }

void MaxHost::RegisterDisplayCallback(bool preScene, DisplayHandler& handler) {
  displayCallback_.SetHandler(handler);
  GetCOREInterface()->RegisterViewportDisplayCallback(preScene ? TRUE : FALSE, &displayCallback_);
}

TimeValue MaxHost::CurrentTime() { return GetCOREInterface()->GetTime(); }

std::wstring MaxHost::Directory(int id) {
  const MCHAR* directory = GetCOREInterface()->GetDir(id);
  return directory != nullptr ? std::wstring(directory) : std::wstring();
}

bool MaxHost::ExecuteScript(const std::wstring& code, bool quietErrors) {
  return ExecuteMAXScriptScript(code.c_str(), quietErrors ? TRUE : FALSE, nullptr) != FALSE;
}

bool MaxHost::FileExists(const std::wstring& path, bool allowDirectory) {
  return DoesFileExist(path.c_str(), allowDirectory) != FALSE;
}

bool MaxHost::LoadScriptFile(const std::wstring& path, wchar_t* errorText) {
  return filein_script_ex(path.c_str(), errorText) != FALSE;
}

void MaxHost::SetViewportLayout(int layout) { GetCOREInterface()->SetViewportLayout(layout); }

void MaxHost::SetExpertMode(int on) { GetCOREInterface7()->SetExpertMode(on); }

void MaxHost::SetCommandPanelOpen(int open) { GetCOREInterface7()->CmdPanelOpen(static_cast<BOOL>(open)); }

void MaxHost::SetActiveViewport(int index) { GetCOREInterface7()->setActiveViewport(index); }

void MaxHost::ExecuteCommand(int command) { GetCOREInterface()->ExecuteMAXCommand(command); }

View& MaxHost::ActiveView() {
  activeView_.Rebind(GetCOREInterface()->GetActiveViewExp());
  return activeView_;
}

void MaxHost::SetActiveViewportEdgedFaces(int on) {
  GetCOREInterface7()->SetActiveViewportShowEdgeFaces(static_cast<BOOL>(on));
}

void MaxHost::ForceCompleteRedraw(bool includeDisabled) {
  GetCOREInterface()->ForceCompleteRedraw(includeDisabled ? TRUE : FALSE);
}

CameraRef MaxHost::CreateCameraObject(int cameraType) {
  Object* camera = GetCOREInterface()->CreateCameraObject(cameraType);
  return {camera};
}

NodeRef MaxHost::CreateObjectNode(CameraRef object) {
  return {GetCOREInterface()->CreateObjectNode(ObjectOf(object))};
}

void MaxHost::SetNodeTransform(NodeRef node, TimeValue time, const Matrix43& transform) {
  if (NodeOf(node) == nullptr) return;
  Matrix3 matrix = ToMatrix3(transform);
  NodeOf(node)->SetNodeTM(time, matrix);
}

void MaxHost::SelectNode(NodeRef node, int clearSelection) {
  if (NodeOf(node) != nullptr) GetCOREInterface()->SelectNode(NodeOf(node), clearSelection);
}

void MaxHost::SetDisplayGamma(float gamma) {
  // COLORCORRECTIONMGR_INTERFACE
  auto* manager = static_cast<IColorCorrectionMgr*>(GetCOREInterface(ToInterfaceId(host::kGammaCoreInterfaceId)));
  if (manager != nullptr) manager->SetGamma(gamma);
}

void MaxHost::SetFileInGamma(float gamma) { gammaMgr.SetFileInGamma(gamma); }

void MaxHost::SetFileOutGamma(float gamma) { gammaMgr.SetFileOutGamma(gamma); }

Lookup<ClassId> MaxHost::CurrentRendererClass(bool createIfMissing) {
  Renderer* renderer = GetCOREInterface()->GetCurrentRenderer(createIfMissing);
  if (renderer == nullptr) return {false, {0, 0}};
  return {true, FromClassId(renderer->ClassID())};
}

void MaxHost::SetRendererFloat(int block, int param, TimeValue time, float value, int tabIndex) {
  // Asked right after CurrentRendererClass, which has created the renderer if need be.
  Renderer* renderer = GetCOREInterface()->GetCurrentRenderer(false);
  IParamBlock2* parameters = renderer != nullptr ? renderer->GetParamBlock(block) : nullptr;
  if (parameters != nullptr) parameters->SetValue(static_cast<ParamID>(param), time, value, tabIndex);
}

void MaxHost::SetFrameRate(int rate) { ::SetFrameRate(rate); }

Lookup<int> MaxHost::FindProperty(int set, int id) {
  const PROPSPEC key = PropertyById(id);
  const int index = GetCOREInterface()->FindProperty(set, &key);
  return {index >= 0, index};
}

Lookup<std::wstring> MaxHost::PropertyText(int set, int index) {
  const PROPVARIANT* value = GetCOREInterface()->GetPropertyVariant(set, index);
  if (value == nullptr) return {false, std::wstring()};
  const MaxSDK::Util::MaxString text = MaxSDK::Util::VariantToString(value);
  return {true, std::wstring(text.ToUTF16().data())};
}

void MaxHost::DeleteProperty(int set, int id) {
  const PROPSPEC key = PropertyById(id);
  GetCOREInterface()->DeleteProperty(set, &key);
}

void MaxHost::AddStringProperty(int set, int id, const std::wstring& value) {
  const PROPSPEC key = PropertyById(id);
  PROPVARIANT variant;
  PropVariantInit(&variant);
  variant.vt = VT_LPWSTR;
  // The host copies the value; the variant only lends it our string for the call.
  variant.pwszVal = const_cast<LPWSTR>(value.c_str());
  GetCOREInterface()->AddProperty(set, &key, &variant);
}

}  // namespace max_binding
}  // namespace hublet
