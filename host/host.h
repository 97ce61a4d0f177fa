#pragma once
// The port: every operation the plug-in asks of its host, in plain C++ value types. The
// 3ds Max binding (host/max/) maps each onto one or two SDK calls; the simulated host
// (host/sim/) records each as a line of text. No SDK type crosses this header.
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/host_constants.h"
#include "host/matrix.h"

namespace hublet {

using TimeValue = std::int32_t;  // host ticks, 4800 a second

// An answer to a lookup that can miss.
template <class T>
struct Lookup {
  bool found;
  T value;
};

// Opaque references to host scene objects; the port hands them back as it got them.
struct CameraRef {
  void* handle;
};
struct NodeRef {
  void* handle;
};

// The host raises pre-events (an operation is about to happen) and post-events (it has
// happened); the plug-in registers one callback for each group.
enum class HookGroup { PreEvent, PostEvent };

class NotificationHandler {
 public:
  virtual void OnNotification(HookGroup group, int code) = 0;

 protected:
  ~NotificationHandler() = default;
};

// One viewport as the host shows it.
class View {
 public:
  virtual int Type() = 0;
  virtual bool IsPerspective() = 0;
  virtual Matrix43 AffineTransform() = 0;
  // The host applies it to user views only (orthographic or perspective).
  virtual void SetAffineTransform(const Matrix43& transform) = 0;
  // The view-shading extension is served by some views only.
  virtual bool HasShadingExtension() = 0;
  virtual void SetShadingStyle(int style) = 0;
  virtual void SetViewCamera(NodeRef camera) = 0;

 protected:
  ~View() = default;
};

class DisplayHandler {
 public:
  // Called for every viewport the host redraws; view may be null.
  virtual void OnDisplay(TimeValue time, View* view) = 0;

 protected:
  ~DisplayHandler() = default;
};

// The argument list of one call on the published preference interface.
class InterfaceArguments {
 public:
  virtual std::size_t Count() const = 0;
  virtual int IntAt(std::size_t index) const = 0;
  // Throws the host's own out-of-range error carrying message.
  [[noreturn]] virtual void ThrowOutOfRange(const wchar_t* message) const = 0;

 protected:
  ~InterfaceArguments() = default;
};

class Host {
 public:
  virtual ~Host() = default;

  // Registration.
  virtual void RegisterNotification(HookGroup group, int code, NotificationHandler& handler) = 0;
  virtual void UnregisterNotification(HookGroup group, int code, NotificationHandler& handler) = 0;
  virtual void RegisterDisplayCallback(bool preScene, DisplayHandler& handler) = 0;
  // The display callback is never unregistered, so the host may call it after the handler
  // is gone; when handler is still the one it calls, from now on it does nothing. The host
  // itself is not asked anything.
  virtual void DetachDisplayHandler(DisplayHandler& handler) = 0;

  // Time, directories and scripts.
  virtual TimeValue CurrentTime() = 0;
  virtual std::wstring Directory(int id) = 0;
  virtual bool ExecuteScript(const std::wstring& code, bool quietErrors) = 0;
  virtual bool FileExists(const std::wstring& path, bool allowDirectory) = 0;
  // errorText: a buffer of host::kTextCapacity characters for the loader's message.
  virtual bool LoadScriptFile(const std::wstring& path, wchar_t* errorText) = 0;

  // Viewports.
  virtual void SetViewportLayout(int layout) = 0;
  virtual void SetExpertMode(int on) = 0;
  virtual void SetCommandPanelOpen(int open) = 0;
  virtual void SetActiveViewport(int index) = 0;
  virtual void ExecuteCommand(int command) = 0;
  virtual View& ActiveView() = 0;
  virtual void SetActiveViewportEdgedFaces(int on) = 0;
  virtual void ForceCompleteRedraw(bool includeDisabled) = 0;

  // Scene objects.
  virtual CameraRef CreateCameraObject(int cameraType) = 0;
  virtual NodeRef CreateObjectNode(CameraRef object) = 0;
  virtual void SetNodeTransform(NodeRef node, TimeValue time, const Matrix43& transform) = 0;
  virtual void SelectNode(NodeRef node, int clearSelection) = 0;

  // Gamma, renderer and frame rate.
  virtual void SetDisplayGamma(float gamma) = 0;
  virtual void SetFileInGamma(float gamma) = 0;
  virtual void SetFileOutGamma(float gamma) = 0;
  // The current renderer's class; not found when the host has no renderer.
  virtual Lookup<ClassId> CurrentRendererClass(bool createIfMissing) = 0;
  virtual void SetRendererFloat(int block, int param, TimeValue time, float value, int tabIndex) = 0;
  virtual void SetFrameRate(int rate) = 0;

  // The scene's summary properties, addressed by property set and numeric property ID.
  virtual Lookup<int> FindProperty(int set, int id) = 0;  // the property's index
  // The value at that index as text; not found when the property has no value.
  virtual Lookup<std::wstring> PropertyText(int set, int index) = 0;
  virtual void DeleteProperty(int set, int id) = 0;
  virtual void AddStringProperty(int set, int id, const std::wstring& value) = 0;
};

}  // namespace hublet
