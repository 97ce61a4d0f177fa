#include "tool/replay/call_notes.h"

#include "host/sim/sim_host.h"
#include "tool/common/host_codes.h"

namespace hublet {
namespace tool {
namespace {

int IntAt(const std::vector<CallValue>& values, std::size_t index) {
  const bool isInt = index < values.size() && values[index].kind == CallValue::Kind::Integer;
  return isInt ? static_cast<int>(values[index].integers[0]) : -1;
}

std::string ViewCommandName(int command) {
  const char* type = HostCodeName(kViewTypes, ViewTypeOfCommand(command));
  return type == nullptr ? std::string() : std::string(type) + " view";
}

std::string RendererNote(const CallValue& answer) {
  if (answer.kind != CallValue::Kind::ClassId) return std::string();
  const char* name = RendererName(ClassId{static_cast<std::uint32_t>(answer.integers[0]),
                                          static_cast<std::uint32_t>(answer.integers[1])});
  return name == nullptr ? std::string() : name;
}

}  // namespace

const char* RendererName(ClassId id) {
  if (id == host::rendererGammaTargets[0]) return "V-Ray";
  if (id == host::rendererGammaTargets[1]) return "V-Ray RT";
  if (id == SimHost::kDefaultRenderer) return "scanline";
  return nullptr;
}

std::string CallNote(const HostCall& call) {
  const std::string& name = call.name;
  const std::vector<CallValue>& arguments = call.arguments;
  if (name == "RegisterNotification" || name == "UnregisterNotification")
    return HostCodeText(kNotificationCodes, IntAt(arguments, 1));
  if (name == "Directory") return HostCodeText(kDirectoryIds, IntAt(arguments, 0));
  if (name == "SetViewportLayout") return HostCodeText(kViewportLayouts, IntAt(arguments, 0));
  if (name == "ExecuteCommand") return ViewCommandName(IntAt(arguments, 0));
  if (name == "SetShadingStyle") return HostCodeText(kShadingStyles, IntAt(arguments, 0));
  if (name == "Type") return HostCodeText(kViewTypes, IntAt({call.answer}, 0));
  if (name == "CreateCameraObject") return HostCodeText(kCameraTypes, IntAt(arguments, 0));
  if (name == "CurrentRendererClass") return RendererNote(call.answer);
  if (name == "SetRendererFloat" && IntAt(arguments, 0) == host::kRendererGammaBlock &&
      IntAt(arguments, 1) == host::kRendererGammaParam)
    return "renderer gamma";
  if (name == "FindProperty" || name == "DeleteProperty" || name == "AddStringProperty")
    return HostCodeText(kSummaryPropertyIds, IntAt(arguments, 1));
  return std::string();
}

}  // namespace tool
}  // namespace hublet
