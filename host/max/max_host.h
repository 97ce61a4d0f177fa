#pragma once
// The port bound to 3ds Max 2017: each operation is one or two SDK calls. SDK-facing.
#include <max.h>

#include "host/host.h"
#include "host/max/display_callback.h"
#include "host/max/max_view.h"

namespace hublet {
namespace max_binding {

class MaxHost final : public Host {
 public:
  // The display callback is the one the host will call; it must outlive this port.
  explicit MaxHost(HubletDisplayCallback& displayCallback);

  void RegisterNotification(HookGroup group, int code, NotificationHandler& handler) override;
  void UnregisterNotification(HookGroup group, int code, NotificationHandler& handler) override;
  void RegisterDisplayCallback(bool preScene, DisplayHandler& handler) override;
  void DetachDisplayHandler(DisplayHandler& handler) override;

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

 private:
  HubletDisplayCallback& displayCallback_;
  // Rebound to the host's active viewport on every ActiveView call.
  MaxView activeView_;
};

}  // namespace max_binding
}  // namespace hublet
