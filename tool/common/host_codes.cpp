#include "tool/common/host_codes.h"

namespace hublet {
namespace tool {
namespace {

const HostCode kViewTypeCodes[] = {{0, "left"},   {1, "right"}, {2, "top"},
                                   {3, "bottom"}, {4, "front"}, {5, "back"},
                                   {6, "orthographic user"},    {7, "perspective user"},
                                   {8, "camera"}, {9, "grid"}};

// MaxSDK::Graphics::VisualStyle.
const HostCode kShadingStyleCodes[] = {
    {0, "Realistic"},  {1, "Shaded"}, {2, "Facets"},   {3, "Consistent Colors"}, {4, "Hidden Line"},
    {5, "Wireframe"},  {6, "Bounding Box"}, {7, "Ink"}, {8, "Color Ink"},        {9, "Acrylic"},
    {10, "Tech"},      {11, "Graphite"}, {12, "Color Pencil"}, {13, "Pastel"},   {14, "Clay"}};

// VP_LAYOUT_* of maxapi.h, named as there; the low four bits are the number of viewports.
const HostCode kLayoutCodes[] = {
    {0x01, "VP_LAYOUT_1"},
    {0x12, "VP_LAYOUT_2V"},
    {0x22, "VP_LAYOUT_2H"},
    {0x32, "VP_LAYOUT_2HT"},
    {0x42, "VP_LAYOUT_2HB"},
    {0x33, "VP_LAYOUT_3VL"},
    {0x43, "VP_LAYOUT_3VR"},
    {0x53, "VP_LAYOUT_3HT"},
    {0x63, "VP_LAYOUT_3HB"},
    {0x74, "VP_LAYOUT_4"},
    {0x84, "VP_LAYOUT_4VL"},
    {0x94, "VP_LAYOUT_4VR"},
    {0xa4, "VP_LAYOUT_4HT"},
    {0xb4, "VP_LAYOUT_4HB"},
    {0xc1, "VP_LAYOUT_1C"},
};

// The notification codes the plug-in hooks, named as in notify.h.
const HostCode kNotificationCodeNames[] = {
    {host::kNotifySystemPreReset, "NOTIFY_SYSTEM_PRE_RESET"}, {host::kNotifySystemPostReset, "NOTIFY_SYSTEM_POST_RESET"},
    {host::kNotifySystemPreNew, "NOTIFY_SYSTEM_PRE_NEW"},     {host::kNotifySystemPostNew, "NOTIFY_SYSTEM_POST_NEW"},
    {host::kNotifyFilePreOpen, "NOTIFY_FILE_PRE_OPEN"},       {host::kNotifyFilePostOpen, "NOTIFY_FILE_POST_OPEN"},
    {host::kNotifyFilePreMerge, "NOTIFY_FILE_PRE_MERGE"},     {host::kNotifyFilePostMerge, "NOTIFY_FILE_POST_MERGE"},
    {host::kNotifyFilePreSave, "NOTIFY_FILE_PRE_SAVE"},       {host::kNotifyFilePostSave, "NOTIFY_FILE_POST_SAVE"},
    {host::kNotifyPreRender, "NOTIFY_PRE_RENDER"},            {host::kNotifyPostRender, "NOTIFY_POST_RENDER"},
    {host::kNotifyPreImport, "NOTIFY_PRE_IMPORT"},            {host::kNotifyPostImport, "NOTIFY_POST_IMPORT"},
    {host::kNotifyPreExport, "NOTIFY_PRE_EXPORT"},            {host::kNotifyPostExport, "NOTIFY_POST_EXPORT"},
    {host::kNotifySystemStartup, "NOTIFY_SYSTEM_STARTUP"},
};

// The directories the plug-in asks for, named as in maxapi.h.
const HostCode kDirectoryNames[] = {{host::kDirPlugCfg, "APP_PLUGCFG_DIR"}, {host::kDirScripts, "APP_SCRIPTS_DIR"}};

// The summary-information property IDs of the stamp, named as in the Windows SDK.
const HostCode kSummaryPropertyNames[] = {
    {host::kPropertyTitle, "PIDSI_TITLE"}, {host::kPropertySubject, "PIDSI_SUBJECT"}, {host::kPropertyAuthor, "PIDSI_AUTHOR"}};

const HostCode kCameraTypeNames[] = {{host::kTargetedCamera, "targeted camera"}};

template <std::size_t N>
constexpr std::size_t CountOf(const HostCode (&)[N]) {
  return N;
}

}  // namespace

const HostCodeSet kViewTypes = {"view types (VP0TYPE to VP3TYPE)", kViewTypeCodes, CountOf(kViewTypeCodes)};
const HostCodeSet kShadingStyles = {"shading styles (VP0STYLE to VP3STYLE)", kShadingStyleCodes,
                                    CountOf(kShadingStyleCodes)};
const HostCodeSet kViewportLayouts = {"viewport layouts (VPLAYOUT)", kLayoutCodes, CountOf(kLayoutCodes)};

const HostCodeSet kNotificationCodes = {"notification codes", kNotificationCodeNames, CountOf(kNotificationCodeNames)};
const HostCodeSet kDirectoryIds = {"directory IDs", kDirectoryNames, CountOf(kDirectoryNames)};
const HostCodeSet kSummaryPropertyIds = {"summary property IDs", kSummaryPropertyNames, CountOf(kSummaryPropertyNames)};
const HostCodeSet kCameraTypes = {"camera types", kCameraTypeNames, CountOf(kCameraTypeNames)};

const char* HostCodeName(const HostCodeSet& set, int code) {
  for (std::size_t i = 0; i < set.count; ++i)
    if (set.codes[i].code == code) return set.codes[i].name;
  return nullptr;
}

std::string HostCodeText(const HostCodeSet& set, int code) {
  const char* name = HostCodeName(set, code);
  return name == nullptr ? std::string() : name;
}

}  // namespace tool
}  // namespace hublet
