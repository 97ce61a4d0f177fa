// The module's entry points. The host finds the Lib* functions by their plain names, which
// the module-definition file (hublet.def) exports.
#include "frame/max/module.h"

#include <plugapi.h>
#include <plugin.h>

#include <type_traits>

#include "frame/max/plugin.h"
#include "host/host_constants.h"

// The linker's symbol for the start of this module's image: its handle, known from the
// first instruction on, even during static initialisation, before DllMain runs.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace hublet {
namespace max_binding {

HINSTANCE ModuleHandle() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

const MCHAR* LoadModuleString(int id, MCHAR* buffer, int capacity) {
  return LoadStringW(ModuleHandle(), static_cast<UINT>(id), buffer, capacity) > 0 ? buffer : nullptr;
}

}  // namespace max_binding
}  // namespace hublet

#if MAX_RELEASE == MAX_RELEASE_R19
static_assert(VERSION_3DSMAX == hublet::host::kLibVersion, "the SDK's version constant disagrees with ours");
#elif !defined(HUBLET_SDK_PARSE_CHECK)
#error "Hublet.gup is for 3ds Max 2017 (release 19): build it against the 3ds Max 2017 SDK"
#endif

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
  return TRUE;
}

// Entry 1 is absent from the string table on purpose: the host gets no description.
const MCHAR* LibDescription() {
  static MCHAR description[hublet::host::kLibDescriptionBufferLength];
  return hublet::max_binding::LoadModuleString(hublet::host::kStringLibDescription, description,
                                               hublet::host::kLibDescriptionBufferLength);
}

// Also exported as LibInitialize and LibShutdown (see hublet.def): nothing is set up or torn
// down there, all work happens in the plug-in object's life.
int LibNumberClasses() { return hublet::host::kClassCount; }

ClassDesc* LibClassDesc(int /*i*/) { return &TheHubletClassDesc(); }

ULONG LibVersion() { return hublet::host::kLibVersion; }

}  // extern "C"

static_assert(std::is_same<decltype(&LibDescription), LibDescriptionProcPtr>::value, "");
static_assert(std::is_same<decltype(&LibNumberClasses), LibNumberClassesProcPtr>::value, "");
static_assert(std::is_same<decltype(&LibNumberClasses), LibInitializeProcPtr>::value, "");
static_assert(std::is_same<decltype(&LibNumberClasses), LibShutdownProcPtr>::value, "");
static_assert(std::is_same<decltype(&LibClassDesc), LibClassDescProcPtr>::value, "");
