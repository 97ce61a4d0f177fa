// Compile-time proof that the numbers in host/host_constants.h, which the portable code and
// tests use, are the SDK's own. Nothing here generates code.
#include <max.h>
#include <GetCOREInterface.h>
#include <MaxDirectories.h>
#include <gencam.h>
#include <guplib.h>
#include <ifnpub.h>
#include <maxapi.h>
#include <maxcom.h>
#include <notify.h>
#include <plugapi.h>

#include "host/host_constants.h"
#include "resources/resource.h"

namespace {

namespace host = hublet::host;

static_assert(GUP_CLASS_ID == host::kGlobalUtilitySuperClassId, "super class");
static_assert(GUPRESULT_KEEP == host::kGupResultKeep, "Start's keep-loaded result");
static_assert(FPS_OK == host::kFunctionStatusOk, "function status");
static_assert(FPS_NO_SUCH_FUNCTION == host::kFunctionStatusNoSuchFunction, "function status");

static_assert(IDS_CATEGORY == host::kStringCategory, "string table");
static_assert(IDS_CLASS_NAME == host::kStringClassName, "string table");
static_assert(IDS_PARAMS == host::kStringParameters, "string table");
static_assert(IDS_SPIN == host::kStringSpin, "string table");

static_assert(NOTIFY_SYSTEM_PRE_RESET == host::kNotifySystemPreReset, "notification");
static_assert(NOTIFY_SYSTEM_POST_RESET == host::kNotifySystemPostReset, "notification");
static_assert(NOTIFY_SYSTEM_PRE_NEW == host::kNotifySystemPreNew, "notification");
static_assert(NOTIFY_SYSTEM_POST_NEW == host::kNotifySystemPostNew, "notification");
static_assert(NOTIFY_FILE_PRE_OPEN == host::kNotifyFilePreOpen, "notification");
static_assert(NOTIFY_FILE_POST_OPEN == host::kNotifyFilePostOpen, "notification");
static_assert(NOTIFY_FILE_PRE_MERGE == host::kNotifyFilePreMerge, "notification");
static_assert(NOTIFY_FILE_POST_MERGE == host::kNotifyFilePostMerge, "notification");
static_assert(NOTIFY_FILE_PRE_SAVE == host::kNotifyFilePreSave, "notification");
static_assert(NOTIFY_FILE_POST_SAVE == host::kNotifyFilePostSave, "notification");
static_assert(NOTIFY_PRE_RENDER == host::kNotifyPreRender, "notification");
static_assert(NOTIFY_POST_RENDER == host::kNotifyPostRender, "notification");
static_assert(NOTIFY_PRE_IMPORT == host::kNotifyPreImport, "notification");
static_assert(NOTIFY_POST_IMPORT == host::kNotifyPostImport, "notification");
static_assert(NOTIFY_PRE_EXPORT == host::kNotifyPreExport, "notification");
static_assert(NOTIFY_POST_EXPORT == host::kNotifyPostExport, "notification");
static_assert(NOTIFY_SYSTEM_STARTUP == host::kNotifySystemStartup, "notification");

static_assert(APP_PLUGCFG_DIR == host::kDirPlugCfg, "directory");
static_assert(APP_SCRIPTS_DIR == host::kDirScripts, "directory");

static_assert(VIEW_LEFT == host::kViewLeft, "view type");
static_assert(VIEW_ISO_USER == host::kViewIsoUser, "view type");
static_assert(VIEW_PERSP_USER == host::kViewPerspUser, "view type");
static_assert(VIEW_CAMERA == host::kViewCamera, "view type");
static_assert(VIEW_GRID + 1 == host::kViewTypeCount, "view types with a command");

constexpr int kViewCommands[] = {MAXCOM_VPT_LEFT,  MAXCOM_VPT_RIGHT,    MAXCOM_VPT_TOP,        MAXCOM_VPT_BOTTOM,
                                 MAXCOM_VPT_FRONT, MAXCOM_VPT_BACK,     MAXCOM_VPT_ISO_USER,   MAXCOM_VPT_PERSP_USER,
                                 MAXCOM_VPT_CAMERA, MAXCOM_VPT_GRID};
constexpr bool SameCommands(int i) {
  return i == host::kViewTypeCount || (kViewCommands[i] == host::viewTypeCommand[i] && SameCommands(i + 1));
}
static_assert(sizeof(kViewCommands) / sizeof(kViewCommands[0]) == host::kViewTypeCount, "view commands");
static_assert(SameCommands(0), "view commands, indexed by view type");
static_assert(MAXCOM_VPT_ISO_USER == host::kCommandIsoUser, "view command");

static_assert(TARGETED_CAMERA == host::kTargetedCamera, "camera type");

static_assert(PROPSET_SUMMARYINFO == host::kPropertySetSummary, "property set");
static_assert(PIDSI_TITLE == host::kPropertyTitle, "summary property");
static_assert(PIDSI_SUBJECT == host::kPropertySubject, "summary property");
static_assert(PIDSI_AUTHOR == host::kPropertyAuthor, "summary property");
static_assert(VT_LPWSTR == host::kVariantWideString, "variant type");

}  // namespace
