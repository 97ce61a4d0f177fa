#include "frame/max/plugin.h"

#include <GetCOREInterface.h>
#include <Util/MaxExceptions.h>

#include <cstddef>

#include "frame/interface_table.h"
#include "frame/max/module.h"
#include "host/max/conversions.h"

namespace {

namespace binding = hublet::max_binding;

// The call's argument list as the core reads it; a null list is an empty one.
class FPArguments final : public hublet::InterfaceArguments {
 public:
  explicit FPArguments(FPParams* params) : params_(params) {}

  std::size_t Count() const override { return params_ != nullptr ? params_->params.length() : 0; }
  int IntAt(std::size_t index) const override { return params_->params[index].i; }
  [[noreturn]] void ThrowOutOfRange(const wchar_t* message) const override {
    throw MaxSDK::Util::OutOfRangeException(message);
  }

 private:
  FPParams* params_;
};

ParamType2 ToParamType(hublet::ParamKind kind) {
  if (kind == hublet::ParamKind::Void) return TYPE_VOID;
  return static_cast<ParamType2>(TYPE_INT);  // the older ParamType enum, same numbering
}

const hublet::InterfaceFunction& Function(std::size_t row) { return hublet::kPreferenceInterface.functions[row]; }

}  // namespace

// One row of the descriptor's argument list per declared function: ID, internal name, no
// description, return type, no flags, one argument (name, no description, type).
#define HUBLET_DESCRIBE_FUNCTION(row)                                                           \
  Function(row).id, Function(row).internalName, StringResID{0}, ToParamType(Function(row).returnType), \
      0, 1, Function(row).argumentName, StringResID{0}, ToParamType(Function(row).argumentType)

static_assert(hublet::kPreferenceFunctionCount == 13, "the descriptor below lists 13 rows");

// Static instances, in the order they depend on one another: the descriptor names the
// class descriptor as its owner, and the plug-in object registers the display callback.
// The declaration tables they read (kPreferenceInterface, kHooks) are constant-initialised,
// so they are complete before any of this runs.
static HubletDisplayCallback theDisplayCallback;
static HubletClassDesc theHubletClassDesc;
static FP_Basic thePreferenceInterface(
    binding::ToInterfaceId(hublet::kPreferenceInterface.id), hublet::kPreferenceInterface.internalName,
    hublet::kPreferenceInterface.descriptionString, &theHubletClassDesc, FP_CORE,
    HUBLET_DESCRIBE_FUNCTION(0), HUBLET_DESCRIBE_FUNCTION(1), HUBLET_DESCRIBE_FUNCTION(2),
    HUBLET_DESCRIBE_FUNCTION(3), HUBLET_DESCRIBE_FUNCTION(4), HUBLET_DESCRIBE_FUNCTION(5),
    HUBLET_DESCRIBE_FUNCTION(6), HUBLET_DESCRIBE_FUNCTION(7), HUBLET_DESCRIBE_FUNCTION(8),
    HUBLET_DESCRIBE_FUNCTION(9), HUBLET_DESCRIBE_FUNCTION(10), HUBLET_DESCRIBE_FUNCTION(11),
    HUBLET_DESCRIBE_FUNCTION(12), p_end);
static Hublet theHublet(theDisplayCallback);

#undef HUBLET_DESCRIBE_FUNCTION

HubletClassDesc& TheHubletClassDesc() { return theHubletClassDesc; }
Hublet& TheHublet() { return theHublet; }

Hublet::Hublet(HubletDisplayCallback& displayCallback)
    : host_(displayCallback), system_(hublet::MakeNativeSystem()), core_(host_, *system_), toolbarAction_(host_) {}

DWORD Hublet::Start() {
  toolbarAction_.Activate();
  return core_.Start();
}

void Hublet::Stop() {
  toolbarAction_.Deactivate();
  core_.Stop();
}

void* HubletClassDesc::Create(BOOL /*loading*/) { return static_cast<GUP*>(&theHublet); }

const MCHAR* HubletClassDesc::ClassName() {
  return binding::LoadModuleString(hublet::host::kStringClassName, className_, hublet::host::kLibDescriptionBufferLength);
}

Class_ID HubletClassDesc::ClassID() { return binding::ToClassId(hublet::host::kHubletClassId); }

const MCHAR* HubletClassDesc::Category() {
  return binding::LoadModuleString(hublet::host::kStringCategory, category_, hublet::host::kLibDescriptionBufferLength);
}

HINSTANCE HubletClassDesc::HInstance() { return binding::ModuleHandle(); }

ActionTable* HubletClassDesc::GetActionTable(int /*i*/) {
  if (actionTable_ == nullptr) actionTable_ = MakeToolbarActionTable(theHublet.toolbarAction());
  return actionTable_;
}

FPStatus FP_Basic::_dispatch_fn(FunctionID fid, TimeValue /*t*/, FPValue& /*result*/, FPParams* p) {
  return theHublet.core().CallInterface(fid, FPArguments(p));
}
