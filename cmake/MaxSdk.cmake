# Finds the 3ds Max 2017 SDK for the plug-in build. Its root (the folder that holds
# maxsdk/) comes from -DMAXSDK_DIR=... or from ADSK_3DSMAX_SDK_2017, which the SDK's
# installer sets. Without it only the portable builds are made.
# The installer's variable holds backslashes, which CMake paths must not.
file(TO_CMAKE_PATH "$ENV{ADSK_3DSMAX_SDK_2017}" hublet_sdk_from_environment)
set(MAXSDK_DIR "${hublet_sdk_from_environment}" CACHE PATH "Root of the 3ds Max 2017 SDK (holds maxsdk/)")
file(TO_CMAKE_PATH "${MAXSDK_DIR}" MAXSDK_DIR)
set(HUBLET_MAXSDK_FOUND OFF)
if(MAXSDK_DIR AND EXISTS "${MAXSDK_DIR}/maxsdk/include/maxapi.h")
  if(NOT MSVC OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
    message(WARNING "3ds Max 2017 SDK found at ${MAXSDK_DIR}, but the plug-in needs MSVC 2015 x64: Hublet.gup is skipped.")
  else()
    set(HUBLET_MAXSDK_FOUND ON)
    # 3ds Max and its SDK libraries use the release DLL runtime (/MD); so must every library
    # linked into Hublet.gup, in every configuration.
    set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)
    message(STATUS "3ds Max 2017 SDK: ${MAXSDK_DIR}")
  endif()
else()
  message(STATUS "3ds Max 2017 SDK not found (set -DMAXSDK_DIR or ADSK_3DSMAX_SDK_2017): the plug-in target Hublet.gup is skipped.")
endif()
