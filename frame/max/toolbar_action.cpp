#include "frame/max/toolbar_action.h"

#include <GetCOREInterface.h>
#include <maxapi.h>

#include "frame/max/module.h"
#include "host/host_constants.h"
#include "toolbar/toolbar.h"

namespace {

namespace binding = hublet::max_binding;

// The action's category and the table's name: the string-table entry of our category.
MSTR CategoryName() {
  MCHAR buffer[hublet::host::kLibDescriptionBufferLength];
  const MCHAR* name =
      binding::LoadModuleString(hublet::host::kStringCategory, buffer, hublet::host::kLibDescriptionBufferLength);
  return MSTR(name != nullptr ? name : _M(""));
}

// The action item. Its texts are not resources (the string table holds the class's texts
// only), so it answers them itself; running it is left to the table's callback.
class ReinstallToolbarItem final : public ActionItem {
 public:
  explicit ReinstallToolbarItem(ActionCallback& fallback) : fallback_(fallback) {}

  int GetId() override { return hublet::host::kReinstallToolbarCommand; }

  // The table's callback once Start has activated it; if the host had not registered the
  // table by then, activation failed silently, and the plug-in's own callback runs the
  // command all the same.
  BOOL ExecuteAction() override {
    ActionTable* table = GetTable();
    ActionCallback* callback = table != nullptr ? table->GetCallback() : nullptr;
    return (callback != nullptr ? *callback : fallback_).ExecuteAction(GetId());
  }

  void GetButtonText(MSTR& text) override { text = hublet::host::kReinstallToolbarText; }
  void GetMenuText(MSTR& text) override { text = hublet::host::kReinstallToolbarText; }
  void GetDescriptionText(MSTR& text) override { text = hublet::host::kReinstallToolbarText; }
  void GetCategoryText(MSTR& text) override { text = CategoryName(); }

  BOOL IsChecked() override { return FALSE; }
  BOOL IsItemVisible() override { return TRUE; }
  BOOL IsEnabled() override { return TRUE; }

  // Pure virtual in older SDK generations, an ordinary member in newer ones: defining it
  // keeps the class concrete under both. The command has no icon.
  MaxIcon* GetIcon() { return nullptr; }

  void DeleteThis() override { delete this; }

 private:
  ActionCallback& fallback_;
};

}  // namespace

BOOL ToolbarActionCallback::ExecuteAction(int id) {
  if (id != hublet::host::kReinstallToolbarCommand) return FALSE;
  hublet::ReinstallToolbar(host_);
  return TRUE;
}

void ToolbarActionCallback::Activate() {
  GetCOREInterface()->GetActionManager()->ActivateActionTable(this, hublet::host::kActionTableId);
}

void ToolbarActionCallback::Deactivate() {
  GetCOREInterface()->GetActionManager()->DeactivateActionTable(this, hublet::host::kActionTableId);
}

ActionTable* MakeToolbarActionTable(ActionCallback& fallback) {
  MSTR name = CategoryName();
  ActionTable* table = new ActionTable(hublet::host::kActionTableId, hublet::host::kActionContextId, name);
  ActionItem* item = new ReinstallToolbarItem(fallback);
  item->SetTable(table);  // the item finds the callback through its table
  table->AppendOperation(item);
  GetCOREInterface()->GetActionManager()->RegisterActionContext(hublet::host::kActionContextId, name.data());
  return table;
}
