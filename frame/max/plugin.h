#pragma once
// The objects 3ds Max sees: the global utility plug-in, its class descriptor and the
// published preference interface. Each is one static instance. SDK-facing.
#include <max.h>
#include <guplib.h>
#include <ifnpub.h>
#include <iparamb2.h>

#include <memory>

#include "frame/hublet.h"
#include "frame/max/toolbar_action.h"
#include "host/host_constants.h"
#include "host/max/display_callback.h"
#include "host/max/max_host.h"
#include "platform/system.h"

// The plug-in object: the port, the operating system and the portable core, in that order,
// so that the core is built after (and destroyed before) what it works through.
class Hublet final : public GUP {
 public:
  explicit Hublet(HubletDisplayCallback& displayCallback);

  DWORD Start() override;
  void Stop() override;
  // The object is a static singleton: the host must not delete it.
  void DeleteThis() override {}

  hublet::Hublet& core() { return core_; }
  ToolbarActionCallback& toolbarAction() { return toolbarAction_; }

 private:
  hublet::max_binding::MaxHost host_;
  std::unique_ptr<hublet::System> system_;
  hublet::Hublet core_;
  ToolbarActionCallback toolbarAction_;
};

class HubletClassDesc final : public ClassDesc2 {
 public:
  int IsPublic() override { return TRUE; }
  void* Create(BOOL loading = FALSE) override;
  const MCHAR* ClassName() override;
  SClass_ID SuperClassID() override { return hublet::host::kGlobalUtilitySuperClassId; }
  Class_ID ClassID() override;
  const MCHAR* Category() override;
  const MCHAR* InternalName() override { return hublet::host::kInternalName; }
  HINSTANCE HInstance() override;

  // The toolbar command's table; the host takes ownership of it.
  int NumActionTables() override { return 1; }
  ActionTable* GetActionTable(int i) override;

 private:
  MCHAR className_[hublet::host::kLibDescriptionBufferLength] = {};
  MCHAR category_[hublet::host::kLibDescriptionBufferLength] = {};
  ActionTable* actionTable_ = nullptr;
};

// What a companion plug-in gets from GetCOREInterface for the "iGup" interface ID. Its
// functions have no names: callers reach them by ID.
class IFP_Basic : public FPStaticInterface {};

class FP_Basic final : public IFP_Basic {
 public:
  DECLARE_DESCRIPTOR(FP_Basic)

 protected:
  FPStatus _dispatch_fn(FunctionID fid, TimeValue t, FPValue& result, FPParams* p) override;
};

HubletClassDesc& TheHubletClassDesc();
Hublet& TheHublet();
