# The plug-in build, Hublet.gup, asked for with HUBLET_BUILD_PLUGIN (the max2017 presets set
# it). Asked for, it needs the 3ds Max 2017 SDK, Visual Studio 2015's compiler (toolset v140:
# the SDK's libraries and 3ds Max 2017 itself are built with it) and a 64-bit target; when
# any of them is missing, configuration stops and says what, so that no build "succeeds"
# without the plug-in. The SDK's root (the folder that holds maxsdk/) comes from
# -DMAXSDK_DIR=... or from ADSK_3DSMAX_SDK_2017, which the SDK's installer sets.
option(HUBLET_BUILD_PLUGIN "Build Hublet.gup (needs the 3ds Max 2017 SDK and Visual Studio's v140 toolset, x64)" OFF)
if(NOT HUBLET_BUILD_PLUGIN)
  return()
endif()

# The installer's variable holds backslashes, which CMake paths must not.
file(TO_CMAKE_PATH "$ENV{ADSK_3DSMAX_SDK_2017}" hublet_sdk_from_environment)
set(MAXSDK_DIR "${hublet_sdk_from_environment}" CACHE PATH "Root of the 3ds Max 2017 SDK (holds maxsdk/)")
file(TO_CMAKE_PATH "${MAXSDK_DIR}" MAXSDK_DIR)

set(hublet_missing "")
if(NOT MAXSDK_DIR)
  string(APPEND hublet_missing "\n  - the 3ds Max 2017 SDK: neither MAXSDK_DIR nor the environment variable "
    "ADSK_3DSMAX_SDK_2017 names it. Install the SDK (its installer sets the variable; open a "
    "new prompt afterwards) or configure with -DMAXSDK_DIR=<the folder that holds maxsdk>.")
elseif(NOT EXISTS "${MAXSDK_DIR}/maxsdk/include/maxapi.h")
  string(APPEND hublet_missing "\n  - the 3ds Max 2017 SDK: ${MAXSDK_DIR} holds no maxsdk/include/maxapi.h. "
    "Configure with -DMAXSDK_DIR=<the folder that holds maxsdk>.")
endif()
if(NOT MSVC)
  string(APPEND hublet_missing "\n  - Visual Studio's compiler: this is ${CMAKE_CXX_COMPILER_ID}. Configure "
    "from Windows with the max2017 or max2017-vs2022 preset.")
elseif(NOT MSVC_TOOLSET_VERSION EQUAL 140)
  string(APPEND hublet_missing "\n  - the Visual Studio 2015 toolset (v140): this compiler is toolset "
    "v${MSVC_TOOLSET_VERSION}, and 3ds Max 2017 takes plug-ins built with v140. With Visual Studio "
    "2017 or later, install its \"VC++ 2015.3 v14.00 (v140) toolset for desktop\" component and use "
    "the max2017-vs2022 preset (or -T v140).")
endif()
if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
  string(APPEND hublet_missing "\n  - a 64-bit target: 3ds Max 2017 is 64-bit only. Configure with -A x64 "
    "(the presets do).")
endif()
if(hublet_missing)
  message(FATAL_ERROR "Hublet.gup cannot be built. Missing:${hublet_missing}")
endif()

# 3ds Max and its SDK libraries use the release DLL runtime (/MD); so must every library
# linked into Hublet.gup, in every configuration.
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)
message(STATUS "3ds Max 2017 SDK: ${MAXSDK_DIR}")
