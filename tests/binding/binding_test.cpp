// Every number and text the 3ds Max binding hands the host, pinned to the host's own values
// (release 19000, API 48), and the binding's resource, module-definition and source-list
// files checked against the constants the code uses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "binding_files.h"
#include "frame/hook_table.h"
#include "frame/interface_table.h"
#include "host/host_constants.h"

namespace hublet {
namespace {

std::string FileText(const std::string& path) {
  for (const BindingFile& file : kBindingFiles)
    if (path == file.path) return file.text;
  ADD_FAILURE() << "not compiled in: " << path;
  return {};
}

// The file's lines, trimmed, without blank lines and without comments starting at marker.
std::vector<std::string> Lines(const std::string& text, const std::string& marker) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    line = line.substr(0, line.find(marker));
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos) continue;
    lines.push_back(line.substr(first, line.find_last_not_of(" \t\r") - first + 1));
  }
  return lines;
}

std::vector<std::string> Words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

std::string Narrow(const wchar_t* text) {
  std::string out;
  for (; *text != L'\0'; ++text) out += static_cast<char>(*text);  // the texts are ASCII
  return out;
}

// The string table of hublet.rc, its symbolic IDs resolved through resource.h.
std::map<int, std::string> RcStringTable() {
  std::map<std::string, int> ids;
  for (const std::string& line : Lines(FileText("resources/resource.h"), "//")) {
    const std::vector<std::string> words = Words(line);
    if (words.size() == 3 && words[0] == "#define") ids[words[1]] = std::stoi(words[2]);
  }
  std::map<int, std::string> table;
  bool inTable = false, inBlock = false;
  for (const std::string& line : Lines(FileText("resources/hublet.rc"), "//")) {
    if (line == "STRINGTABLE") inTable = true;
    else if (inTable && line == "BEGIN") inBlock = true;
    else if (inBlock && line == "END") inTable = inBlock = false;
    else if (inBlock) {
      const std::string name = line.substr(0, line.find_first_of(" \t"));
      const bool numeric = name.find_first_not_of("0123456789") == std::string::npos;
      EXPECT_TRUE(numeric || ids.count(name)) << "no ID in resource.h for " << name;
      const int id = numeric ? std::stoi(name) : ids[name];
      const auto open = line.find('"'), close = line.rfind('"');
      EXPECT_TRUE(table.emplace(id, line.substr(open + 1, close - open - 1)).second) << line;
    }
  }
  return table;
}

TEST(Resources, TheStringTableHoldsExactlyTheHostTextsAndNoDescription) {
  std::map<int, std::string> expected;
  for (const host::StringTableEntry& entry : host::kStringTable) expected[entry.id] = Narrow(entry.text);
  EXPECT_EQ(expected, (std::map<int, std::string>{
                          {2, "Orvo Software"}, {3, "Hublet"}, {4, "Parameters"}, {5, "Spin"}}));
  const std::map<int, std::string> rc = RcStringTable();
  EXPECT_EQ(rc, expected);
  EXPECT_EQ(rc.count(host::kStringLibDescription), 0u) << "the host must get a null description";
  // The entries the binding loads: class name, category, interface description.
  EXPECT_EQ(expected[host::kStringClassName], "Hublet");
  EXPECT_EQ(expected[host::kStringCategory], "Orvo Software");
  EXPECT_EQ(host::kPreferenceInterfaceDescription, host::kStringClassName);
  EXPECT_EQ(kPreferenceInterface.descriptionString, host::kPreferenceInterfaceDescription);
}

TEST(ModuleDefinition, ExportsTheSixEntryPointsByNameWithInitialiseAndShutdownSharingOneBody) {
  std::vector<std::string> exports;
  std::string library;
  bool inExports = false;
  for (const std::string& line : Lines(FileText("frame/max/hublet.def"), ";")) {
    const std::vector<std::string> words = Words(line);
    if (words[0] == "LIBRARY") library = words.at(1);
    inExports = words[0] == "EXPORTS" || (inExports && words.size() == 3 && words[1][0] == '@');
    if (inExports && words[0] != "EXPORTS") exports.push_back(words[0] + " " + words[1] + " " + words[2]);
  }
  EXPECT_EQ(library, "Hublet.gup");
  EXPECT_EQ(exports, (std::vector<std::string>{
                         "LibDescription @1 PRIVATE", "LibNumberClasses @2 PRIVATE", "LibClassDesc @3 PRIVATE",
                         "LibVersion @4 PRIVATE", "LibInitialize=LibNumberClasses @6 PRIVATE",
                         "LibShutdown=LibNumberClasses @7 PRIVATE"}));
  EXPECT_EQ(host::kClassCount, 1) << "LibInitialize and LibShutdown answer this: it must mean success";
}

TEST(SdkSources, TheListNamesEverySourceOfTheBindingFoldersAndNothingElse) {
  std::vector<std::string> listed = Lines(FileText("frame/max/sdk_sources.txt"), "#");
  std::sort(listed.begin(), listed.end());
  EXPECT_EQ(listed, Lines(kSdkFacingSourcesOnDisk, "#"));
}

TEST(HostConstants, RegistrationMatchesTheHost) {
  EXPECT_EQ(host::kHubletClassId, (ClassId{0x780A5D51u, 0xA97EC3C2u}));
  EXPECT_EQ(host::kGlobalUtilitySuperClassId, 0x10E0u);  // GUP_CLASS_ID
  // VERSION_3DSMAX = (release << 16) + (API << 8) + SDK revision; 3ds Max 2017: 19000, 48, 0.
  EXPECT_EQ(host::kLibVersion, (19000u << 16) + (48u << 8) + 0u);
  EXPECT_EQ(host::kLibVersion, 0x4A383000u);
  EXPECT_EQ((host::kLibVersion >> 16) & 0xFFFFu, 19000u);
  EXPECT_EQ((host::kLibVersion >> 8) & 0xFFu, 48u);
  EXPECT_EQ(host::kLibVersion & 0xFFu, 0u);
  EXPECT_EQ(host::kGupResultKeep, 0);  // GUPRESULT_KEEP
  EXPECT_STREQ(host::kInternalName, L"Hublet");
  EXPECT_EQ(host::kLibDescriptionBufferLength, 256);
  EXPECT_EQ(host::kFunctionStatusOk, 1);               // FPS_OK
  EXPECT_EQ(host::kFunctionStatusNoSuchFunction, -1);  // FPS_NO_SUCH_FUNCTION
}

TEST(HostConstants, ThePublishedInterfaceIsTheOneCompanionToolsLookUp) {
  EXPECT_EQ(kPreferenceInterface.id, (ClassId{0x3FE768B0u, 0x73A70D7Bu}));
  EXPECT_STREQ(kPreferenceInterface.internalName, L"iGup");
  // The descriptor writes its function rows out one by one: it must list all of them.
  ASSERT_EQ(kPreferenceInterface.functionCount, kPreferenceFunctionCount);
  for (std::size_t row = 0; row < kPreferenceInterface.functionCount; ++row) {
    const InterfaceFunction& f = kPreferenceInterface.functions[row];
    EXPECT_EQ(f.id, static_cast<int>(10 + row));
    EXPECT_TRUE(f.returnType == ParamKind::Void && f.argumentType == ParamKind::Int) << f.id;
    EXPECT_STREQ(f.internalName, L"");
    EXPECT_STREQ(f.argumentName, L"");
  }
}

TEST(HostConstants, TheHookTableListensToTheHostsNotificationCodes) {
  const HookGroup pre = HookGroup::PreEvent, post = HookGroup::PostEvent;
  const struct {
    int code;  // NOTIFY_*
    HookGroup group;
  } expected[] = {{5, pre},   {6, post},  {7, pre},   {8, post},  {9, pre},   {10, post},
                  {11, pre},  {12, post}, {13, pre},  {14, post}, {20, pre},  {21, post},
                  {24, pre},  {25, post}, {27, pre},  {28, post}, {80, post}};
  ASSERT_EQ(kHookCount, sizeof(expected) / sizeof(expected[0]));
  for (std::size_t i = 0; i < kHookCount; ++i) {
    EXPECT_EQ(kHooks[i].code, expected[i].code) << "row " << i;
    EXPECT_EQ(kHooks[i].group, expected[i].group) << "code " << kHooks[i].code;
  }
  EXPECT_EQ(host::kNotifySystemStartup, 80);
  EXPECT_EQ(host::kNotifyFilePreSave, 13);
  EXPECT_EQ(host::kNotifyFilePostOpen, 10);
}

TEST(HostConstants, ViewsCommandsAndCameras) {
  EXPECT_EQ(host::kViewLeft, 0);
  EXPECT_EQ(host::kViewIsoUser, 6);
  EXPECT_EQ(host::kViewPerspUser, 7);
  EXPECT_EQ(host::kViewCamera, 8);
  EXPECT_EQ(host::kViewTypeCount, 10);  // VIEW_LEFT .. VIEW_GRID
  // MAXCOM_VPT_LEFT, _RIGHT, _TOP, _BOTTOM, _FRONT, _BACK, _ISO_USER, _PERSP_USER, _CAMERA, _GRID
  const std::vector<int> commands(host::viewTypeCommand, host::viewTypeCommand + host::kViewTypeCount);
  EXPECT_EQ(commands, (std::vector<int>{120, 130, 138, 107, 113, 119, 118, 127, 109, 114}));
  EXPECT_EQ(host::kCommandIsoUser, host::viewTypeCommand[host::kViewIsoUser]);
  EXPECT_EQ(host::kTargetedCamera, 1);  // TARGETED_CAMERA
}

TEST(HostConstants, RenderersPropertiesDirectoriesAndInterfaces) {
  ASSERT_EQ(sizeof(host::rendererGammaTargets) / sizeof(host::rendererGammaTargets[0]), 2u);
  EXPECT_EQ(host::rendererGammaTargets[0], (ClassId{0x73BAB286u, 0x77F8FD0Cu}));
  EXPECT_EQ(host::rendererGammaTargets[1], (ClassId{0x698A4B98u, 0x4EDD05F5u}));
  EXPECT_EQ(host::kRendererGammaBlock, 9);
  EXPECT_EQ(host::kRendererGammaParam, 265);
  EXPECT_EQ(host::kPropertySetSummary, 1);  // PROPSET_SUMMARYINFO
  EXPECT_EQ(host::kPropertyTitle, 2);       // PIDSI_TITLE
  EXPECT_EQ(host::kPropertySubject, 3);     // PIDSI_SUBJECT
  EXPECT_EQ(host::kPropertyAuthor, 4);      // PIDSI_AUTHOR
  EXPECT_EQ(host::kVariantWideString, 31);  // VT_LPWSTR
  EXPECT_EQ(host::kDirPlugCfg, 9);          // APP_PLUGCFG_DIR
  EXPECT_EQ(host::kDirScripts, 15);         // APP_SCRIPTS_DIR
  EXPECT_EQ(host::kViewShadingInterfaceId, (ClassId{0x761840A9u, 0x437F4090u}));  // IVIEWPORT_SETTINGS_INTERFACE_ID
  EXPECT_EQ(host::kGammaCoreInterfaceId, (ClassId{0x02C65369u, 0x10BE38B0u}));    // COLORCORRECTIONMGR_INTERFACE
  EXPECT_EQ(host::kTextCapacity, 260);  // MAX_PATH: what filein_script_ex assumes of its error buffer
}

TEST(BindingConstants, TheToolbarActionKeepsItsIdentity) {
  // Users' toolbars, menus and shortcuts refer to these: they must never change.
  EXPECT_EQ(host::kActionTableId, 0xEF281F84u);
  EXPECT_EQ(host::kActionContextId, 0x4E3472EDu);
  EXPECT_EQ(host::kReinstallToolbarCommand, 1);
  EXPECT_STREQ(host::kReinstallToolbarText, L"Reinstall Orvo Toolbar");
  // The host's own tables and contexts use the IDs 0 to 7.
  EXPECT_GT(host::kActionTableId, 7u);
  EXPECT_GT(host::kActionContextId, 7u);
}

}  // namespace
}  // namespace hublet
