#pragma once
// "Reinstall Orvo Toolbar" as an action of the host's action system, so users can put it on
// a toolbar, a menu, a quad menu or a shortcut through Customize User Interface. SDK-facing.
#include <max.h>
#include <actiontable.h>

#include "host/host.h"

// Runs the command when the host executes our action.
class ToolbarActionCallback final : public ActionCallback {
 public:
  explicit ToolbarActionCallback(hublet::Host& host) : host_(host) {}

  BOOL ExecuteAction(int id) override;

  // Connects this callback to the table, so that the action runs; Deactivate undoes it.
  void Activate();
  void Deactivate();

 private:
  hublet::Host& host_;
};

// The table holding the one action, with its context registered. Whoever calls this owns the
// table; the class descriptor hands it to the host, which deletes it at shutdown. The action
// runs fallback when the table has no callback (the host was not ready when Start ran).
ActionTable* MakeToolbarActionTable(ActionCallback& fallback);
