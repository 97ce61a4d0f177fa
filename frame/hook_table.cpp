#include "frame/hook_table.h"

namespace hublet {
namespace {
constexpr HookGroup kPre = HookGroup::PreEvent;
constexpr HookGroup kPost = HookGroup::PostEvent;
}  // namespace

const Hook kHooks[] = {
    {host::kNotifySystemPreReset, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifySystemPostReset, kPost, BusyChange::Set, HookAction::ApplyViewPreferences},
    {host::kNotifySystemPreNew, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifySystemPostNew, kPost, BusyChange::Set, HookAction::ApplyViewPreferences},
    {host::kNotifyFilePreOpen, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifyFilePostOpen, kPost, BusyChange::Set, HookAction::ClearMaterialEditor},
    {host::kNotifyFilePreMerge, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifyFilePostMerge, kPost, BusyChange::Set, HookAction::None},
    {host::kNotifyFilePreSave, kPre, BusyChange::Clear, HookAction::StampSaveProperties},
    {host::kNotifyFilePostSave, kPost, BusyChange::Set, HookAction::None},
    {host::kNotifyPreRender, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifyPostRender, kPost, BusyChange::Set, HookAction::None},
    {host::kNotifyPreImport, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifyPostImport, kPost, BusyChange::Set, HookAction::None},
    {host::kNotifyPreExport, kPre, BusyChange::Clear, HookAction::None},
    {host::kNotifyPostExport, kPost, BusyChange::Set, HookAction::None},
    // Start-up is not a scene operation: it leaves the busy flag alone.
    {host::kNotifySystemStartup, kPost, BusyChange::Leave, HookAction::ApplyViewPreferences},
};
const std::size_t kHookCount = sizeof(kHooks) / sizeof(kHooks[0]);

const Hook* FindHook(HookGroup group, int code) {
  for (const Hook& hook : kHooks)
    if (hook.code == code && hook.group == group) return &hook;
  return nullptr;
}

const wchar_t* const kClearMaterialEditorScript = L"macros.run \"Medit Tools\" \"clear_medit_slots\"";

}  // namespace hublet
