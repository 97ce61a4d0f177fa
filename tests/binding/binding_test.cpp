// Every number and text the 3ds Max binding hands the host, pinned to the host's own values
// (release 19000, API 48), and the binding's resource, module-definition and source-list
// files checked against the constants the code uses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iomanip>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "binding_files.h"
#include "frame/interface_table.h"
#include "host/host_constants.h"
#include "tests/support/expected_tables.h"

namespace hublet {
namespace {

using Words = std::vector<std::string>;

// Each non-blank line of text as its words (a quoted string is one word), comments from
// marker on left out.
std::vector<Words> Rows(const std::string& text, const std::string& marker) {
  std::vector<Words> rows;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line.substr(0, line.find(marker)));
    Words row;
    for (std::string word; words >> std::quoted(word);) row.push_back(word);
    if (!row.empty()) rows.push_back(row);
  }
  return rows;
}

std::vector<Words> FileRows(const std::string& path, const std::string& marker) {
  for (const BindingFile& file : kBindingFiles)
    if (path == file.path) return Rows(file.text, marker);
  ADD_FAILURE() << "not compiled in: " << path;
  return {};
}

TEST(Resources, TheStringTableHoldsExactlyTheHostTextsAndNoDescription) {
  std::map<std::string, int> ids;
  for (const Words& w : FileRows("resources/resource.h", "//"))
    if (w.size() == 3 && w[0] == "#define") ids[w[1]] = std::stoi(w[2]);
  // The rc file's string table, its entries named through resource.h as the binding names
  // them (-1: a name it lacks). A multimap, so that a repeated entry shows.
  std::multimap<int, std::wstring> rc, code;
  bool inTable = false;
  std::string last;
  for (const Words& w : FileRows("resources/hublet.rc", "//")) {
    if (w[0] == "BEGIN" || w[0] == "END") inTable = w[0] == "BEGIN" && last == "STRINGTABLE";
    else if (inTable) rc.emplace(ids.count(w[0]) ? ids[w[0]] : -1, std::wstring(w.back().begin(), w.back().end()));
    last = w[0];
  }
  for (const host::StringTableEntry& entry : host::kStringTable) code.emplace(entry.id, entry.text);
  // No entry 1: the host must get a null library description.
  EXPECT_EQ(code, (std::multimap<int, std::wstring>{{2, L"Orvo Software"}, {3, L"Hublet"}, {4, L"Parameters"},
                                                    {5, L"Spin"}}));
  EXPECT_EQ(rc, code);
}

TEST(ModuleDefinition, ExportsTheSixEntryPointsByNameWithInitialiseAndShutdownSharingOneBody) {
  EXPECT_EQ(FileRows("frame/max/hublet.def", ";"),
            (std::vector<Words>{{"LIBRARY", "Hublet.gup"}, {"EXPORTS"}, {"LibDescription", "@1", "PRIVATE"},
                                {"LibNumberClasses", "@2", "PRIVATE"}, {"LibClassDesc", "@3", "PRIVATE"},
                                {"LibVersion", "@4", "PRIVATE"}, {"LibInitialize=LibNumberClasses", "@6", "PRIVATE"},
                                {"LibShutdown=LibNumberClasses", "@7", "PRIVATE"}}));
}

TEST(SdkSources, TheListNamesEverySourceOfTheBindingFoldersAndNothingElse) {
  std::vector<Words> listed = FileRows("frame/max/sdk_sources.txt", "#");
  std::sort(listed.begin(), listed.end());
  EXPECT_EQ(listed, Rows(kSdkFacingSourcesOnDisk, "#"));
}

// A class ID as one number, part A in the high half.
constexpr long long Id(ClassId id) { return static_cast<long long>(std::uint64_t{id.partA} << 32 | id.partB); }

TEST(HostConstants, EveryNumberIsTheHosts) {
  using namespace host;
  const struct {
    const char* name;  // the host's name for it, where it has one
    long long actual, expected;
  } pins[] = {
      {"Hublet's class ID", Id(kHubletClassId), 0x780A5D51'A97EC3C2},
      {"GUP_CLASS_ID", kGlobalUtilitySuperClassId, 0x10E0},
      // VERSION_3DSMAX = (release << 16) + (API << 8) + SDK revision; 3ds Max 2017: 19000, 48, 0.
      {"VERSION_3DSMAX", kLibVersion, (19000 << 16) + (48 << 8) + 0}, {"VERSION_3DSMAX", kLibVersion, 0x4A383000},
      // LibInitialize and LibShutdown answer the class count: it must mean success.
      {"LibNumberClasses", kClassCount, 1}, {"GUPRESULT_KEEP", kGupResultKeep, 0},
      {"LibDescription's buffer", kLibDescriptionBufferLength, 256},
      {"no string (LibDescription)", kStringLibDescription, 1}, {"IDS_CATEGORY", kStringCategory, 2},
      {"IDS_CLASS_NAME", kStringClassName, 3}, {"IDS_PARAMS", kStringParameters, 4}, {"IDS_SPIN", kStringSpin, 5},
      {"iGup's ID", Id(kPreferenceInterface.id), 0x3FE768B0'73A70D7B},
      {"iGup's description", kPreferenceInterfaceDescription, 3},
      {"iGup's description", kPreferenceInterface.descriptionString, 3},
      {"iGup's functions", static_cast<long long>(kPreferenceInterface.functionCount), 13},
      {"FPS_OK", kFunctionStatusOk, 1}, {"FPS_NO_SUCH_FUNCTION", kFunctionStatusNoSuchFunction, -1},
      {"NOTIFY_FILE_POST_OPEN", kNotifyFilePostOpen, 10}, {"NOTIFY_FILE_PRE_SAVE", kNotifyFilePreSave, 13},
      {"NOTIFY_SYSTEM_STARTUP", kNotifySystemStartup, 80},
      {"VIEW_LEFT", kViewLeft, 0}, {"VIEW_ISO_USER", kViewIsoUser, 6}, {"VIEW_PERSP_USER", kViewPerspUser, 7},
      {"VIEW_CAMERA", kViewCamera, 8}, {"VIEW_LEFT .. VIEW_GRID", kViewTypeCount, 10},
      {"MAXCOM_VPT_ISO_USER", kCommandIsoUser, 118}, {"TARGETED_CAMERA", kTargetedCamera, 1},
      {"renderers given the gamma", sizeof(rendererGammaTargets) / sizeof(ClassId), 2},
      {"first renderer", Id(rendererGammaTargets[0]), 0x73BAB286'77F8FD0C},
      {"second renderer", Id(rendererGammaTargets[1]), 0x698A4B98'4EDD05F5},
      {"gamma block", kRendererGammaBlock, 9}, {"gamma parameter", kRendererGammaParam, 265},
      {"PROPSET_SUMMARYINFO", kPropertySetSummary, 1}, {"PIDSI_TITLE", kPropertyTitle, 2},
      {"PIDSI_SUBJECT", kPropertySubject, 3}, {"PIDSI_AUTHOR", kPropertyAuthor, 4},
      {"VT_LPWSTR", kVariantWideString, 31}, {"APP_PLUGCFG_DIR", kDirPlugCfg, 9}, {"APP_SCRIPTS_DIR", kDirScripts, 15},
      {"IVIEWPORT_SETTINGS_INTERFACE_ID", Id(kViewShadingInterfaceId), 0x761840A9'437F4090},
      {"COLORCORRECTIONMGR_INTERFACE", Id(kGammaCoreInterfaceId), 0x02C65369'10BE38B0},
      {"MAX_PATH", kTextCapacity, 260},  // what filein_script_ex assumes of its error buffer
      // Users' toolbars, menus and shortcuts refer to these: they must never change. (The
      // host's own tables and contexts use the IDs 0 to 7.)
      {"action table", kActionTableId, 0xEF281F84}, {"action context", kActionContextId, 0x4E3472ED},
      {"reinstall command", kReinstallToolbarCommand, 1},
  };
  for (const auto& pin : pins)
    EXPECT_EQ(pin.actual, pin.expected) << pin.name << std::hex << ": 0x" << pin.actual << ", not 0x" << pin.expected;
}

TEST(HostConstants, TextsTablesAndTheInterfacesFunctions) {
  EXPECT_STREQ(host::kInternalName, L"Hublet");
  EXPECT_STREQ(kPreferenceInterface.internalName, L"iGup");
  EXPECT_STREQ(host::kReinstallToolbarText, L"Reinstall Orvo Toolbar");
  EXPECT_STREQ(host::kArgumentOutOfRangeText,
               L"Argument index out of bounds, passed into a MaxSDK::Array::operator[]");
  EXPECT_EQ(std::vector<int>(host::viewTypeCommand, host::viewTypeCommand + host::kViewTypeCount),
            std::vector<int>(std::begin(testing::kViewCommands), std::end(testing::kViewCommands)));
  // The descriptor writes its function rows out one by one: it must list all of them.
  ASSERT_EQ(kPreferenceInterface.functionCount, kPreferenceFunctionCount);
  for (std::size_t row = 0; row < kPreferenceFunctionCount; ++row) {
    const InterfaceFunction& f = kPreferenceInterface.functions[row];
    EXPECT_TRUE(f.id == static_cast<int>(10 + row) && f.returnType == ParamKind::Void &&
                f.argumentType == ParamKind::Int && *f.internalName == L'\0' && *f.argumentName == L'\0')
        << "function " << f.id << " in row " << row;
  }
}

}  // namespace
}  // namespace hublet
