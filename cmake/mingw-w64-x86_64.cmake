# Cross-build for 64-bit Windows with MinGW-w64; the tests run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# The POSIX-thread variant: GoogleTest needs std::mutex, which the win32-thread one lacks.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# One Wine prefix per build folder, made by the first test that runs.
set(CMAKE_CROSSCOMPILING_EMULATOR "env;HUBLET_WINEPREFIX=${CMAKE_BINARY_DIR}/wineprefix;${CMAKE_CURRENT_LIST_DIR}/wine-run.sh")
