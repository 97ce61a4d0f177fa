# Warnings are errors in every build we run here, so that a slip shows on Linux before it
# reaches the Windows compiler. On the user's Visual Studio they are shown, never fatal: a
# newer compiler's new warning must not stop a studio's build.
function(hublet_strict target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4)
    # Visual Studio 2015 (1900) does not know /permissive- (D9002).
    if(MSVC_VERSION GREATER_EQUAL 1910)
      target_compile_options(${target} PRIVATE /permissive-)
    endif()
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
      -Wno-sign-conversion -Werror)
  endif()
endfunction()

if(WIN32)
  # windows.h makes min and max macros unless told not to, and they break std::min,
  # numeric_limits<>::max and any header written after them. MinGW leaves them out in C++,
  # so only Visual Studio would show the clash: every Windows translation unit goes without.
  add_compile_definitions(NOMINMAX)
endif()

if(MINGW)
  # Conforming printf (transcripts print floats the same way on every build) and a
  # self-contained executable, so Wine needs no MinGW runtime DLLs.
  add_compile_definitions(__USE_MINGW_ANSI_STDIO=1 UNICODE _UNICODE)
  add_link_options(-static -static-libgcc -static-libstdc++)
endif()

if(HUBLET_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer -fsanitize=float-cast-overflow)
  add_link_options(-fsanitize=address,undefined)
endif()
