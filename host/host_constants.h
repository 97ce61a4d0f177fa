#pragma once
// Every number and fixed text the host sees from this plug-in, in one place: the binding
// hands these to the SDK and the portable tests pin them.
#include <cstdint>

namespace hublet {

struct ClassId {
  std::uint32_t partA;
  std::uint32_t partB;
};
inline bool operator==(ClassId a, ClassId b) { return a.partA == b.partA && a.partB == b.partB; }
inline bool operator!=(ClassId a, ClassId b) { return !(a == b); }

namespace host {

// Registration.
constexpr ClassId kHubletClassId{0x780A5D51u, 0xA97EC3C2u};
constexpr std::uint32_t kGlobalUtilitySuperClassId = 0x10E0u;
constexpr std::uint32_t kLibVersion = 0x4A383000u;  // release 19000, interface 0x30, revision 0
constexpr int kClassCount = 1;
constexpr int kGupResultKeep = 0;
constexpr const wchar_t* kInternalName = L"Hublet";
constexpr int kLibDescriptionBufferLength = 256;

// String table of the module. Entry 1 is absent on purpose: the host gets no description.
constexpr int kStringLibDescription = 1;
constexpr int kStringCategory = 2;
constexpr int kStringClassName = 3;
constexpr int kStringParameters = 4;
constexpr int kStringSpin = 5;
struct StringTableEntry {
  int id;
  const wchar_t* text;
};
constexpr StringTableEntry kStringTable[] = {
    {kStringCategory, L"Orvo Software"},
    {kStringClassName, L"Hublet"},
    {kStringParameters, L"Parameters"},
    {kStringSpin, L"Spin"},
};

// The published preference interface.
constexpr ClassId kPreferenceInterfaceId{0x3FE768B0u, 0x73A70D7Bu};
constexpr const wchar_t* kPreferenceInterfaceName = L"iGup";
constexpr int kPreferenceInterfaceDescription = kStringClassName;
constexpr int kFunctionStatusOk = 1;
constexpr int kFunctionStatusNoSuchFunction = -1;
constexpr const wchar_t* kArgumentOutOfRangeText =
    L"Argument index out of bounds, passed into a MaxSDK::Array::operator[]";

// Scene notifications.
constexpr int kNotifySystemPreReset = 5;
constexpr int kNotifySystemPostReset = 6;
constexpr int kNotifySystemPreNew = 7;
constexpr int kNotifySystemPostNew = 8;
constexpr int kNotifyFilePreOpen = 9;
constexpr int kNotifyFilePostOpen = 10;
constexpr int kNotifyFilePreMerge = 11;
constexpr int kNotifyFilePostMerge = 12;
constexpr int kNotifyFilePreSave = 13;
constexpr int kNotifyFilePostSave = 14;
constexpr int kNotifyPreRender = 20;
constexpr int kNotifyPostRender = 21;
constexpr int kNotifyPreImport = 24;
constexpr int kNotifyPostImport = 25;
constexpr int kNotifyPreExport = 27;
constexpr int kNotifyPostExport = 28;
constexpr int kNotifySystemStartup = 80;

// Host directories.
constexpr int kDirPlugCfg = 9;
constexpr int kDirScripts = 15;

// View types.
constexpr int kViewLeft = 0;
constexpr int kViewIsoUser = 6;
constexpr int kViewPerspUser = 7;
constexpr int kViewCamera = 8;
constexpr int kViewTypeCount = 10;  // 0 (left) to 9 (grid) have a view command

// Host commands that switch the active viewport's view, indexed by view type.
constexpr int viewTypeCommand[kViewTypeCount] = {120, 130, 138, 107, 113, 119, 118, 127, 109, 114};
constexpr int kCommandIsoUser = 118;

// Cameras.
constexpr int kTargetedCamera = 1;

// Renderers whose gamma parameter the preference pass sets, and where that parameter is.
constexpr ClassId rendererGammaTargets[] = {{0x73BAB286u, 0x77F8FD0Cu}, {0x698A4B98u, 0x4EDD05F5u}};
constexpr int kRendererGammaBlock = 9;
constexpr int kRendererGammaParam = 265;

// Interfaces the binding asks the host for.
constexpr ClassId kViewShadingInterfaceId{0x761840A9u, 0x437F4090u};
constexpr ClassId kGammaCoreInterfaceId{0x02C65369u, 0x10BE38B0u};

// Scene summary properties.
constexpr int kPropertySetSummary = 1;
constexpr int kPropertyTitle = 2;
constexpr int kPropertySubject = 3;
constexpr int kPropertyAuthor = 4;
constexpr int kVariantWideString = 31;  // VT_LPWSTR

// The "Reinstall Orvo Toolbar" action. Both IDs are random 32-bit values: the host keys
// customisations (toolbar buttons, menus, shortcuts) on them, so they never change.
constexpr std::uint32_t kActionTableId = 0xEF281F84u;
constexpr std::uint32_t kActionContextId = 0x4E3472EDu;
constexpr int kReinstallToolbarCommand = 1;
constexpr const wchar_t* kReinstallToolbarText = L"Reinstall Orvo Toolbar";

// Fixed buffers: the platform's path length.
constexpr int kTextCapacity = 260;

}  // namespace host
}  // namespace hublet
