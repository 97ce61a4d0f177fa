# Configures the project as a plug-in preset of CMakePresets.json asks (its cache variables,
# with Ninja and the compiler at hand, since no Visual Studio is here) and checks that
# configuration stops at the SDK lookup with a message that names each thing expected to be
# missing.
#   SOURCE    the source tree; BINARY a scratch build folder
#   PRESET    the configure preset
#   COMPILER  the C++ compiler
#   SDK       the value given to MAXSDK_DIR (empty: none); ADSK_3DSMAX_SDK_2017 is unset
#   NAMED     "|"-separated texts the message must hold; UNNAMED texts it must not
cmake_minimum_required(VERSION 3.25)

file(READ "${SOURCE}/CMakePresets.json" presets)
string(JSON count LENGTH "${presets}" configurePresets)
math(EXPR last "${count} - 1")
# -D options for a preset's cache variables: those it inherits first, its own after them.
function(cache_definitions preset out)
  set(definitions "")
  foreach(i RANGE ${last})
    string(JSON name GET "${presets}" configurePresets ${i} name)
    if(NOT name STREQUAL preset)
      continue()
    endif()
    string(JSON parent ERROR_VARIABLE no_parent GET "${presets}" configurePresets ${i} inherits)
    if(NOT no_parent)
      cache_definitions("${parent}" definitions)
    endif()
    string(JSON variables ERROR_VARIABLE no_variables GET "${presets}" configurePresets ${i} cacheVariables)
    if(NOT no_variables)
      string(JSON n LENGTH "${variables}")
      math(EXPR n "${n} - 1")
      foreach(j RANGE ${n})
        string(JSON key MEMBER "${variables}" ${j})
        string(JSON value GET "${variables}" ${key})
        list(APPEND definitions "-D${key}=${value}")
      endforeach()
    endif()
  endforeach()
  set(${out} "${definitions}" PARENT_SCOPE)
endfunction()
cache_definitions("${PRESET}" definitions)
if(NOT definitions)
  message(FATAL_ERROR "no cache variables for the preset ${PRESET}")
endif()

file(REMOVE_RECURSE "${BINARY}")
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env --unset=ADSK_3DSMAX_SDK_2017
          ${CMAKE_COMMAND} -S "${SOURCE}" -B "${BINARY}" -G Ninja "-DCMAKE_CXX_COMPILER=${COMPILER}"
          ${definitions} "-DMAXSDK_DIR=${SDK}"
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
# CMake wraps and indents messages: compare with the white space folded.
string(REGEX REPLACE "[ \t\r\n]+" " " said "${out}${err}")

set(failed "")
if(status EQUAL 0)
  string(APPEND failed "configuration succeeded\n")
endif()
# Stopped by the SDK lookup itself, before anything else of the plug-in is tried.
string(REPLACE "|" ";" named "CMake Error at cmake/MaxSdk.cmake|${NAMED}")
foreach(text IN LISTS named)
  string(FIND "${said}" "${text}" at)
  if(at EQUAL -1)
    string(APPEND failed "the message does not say: ${text}\n")
  endif()
endforeach()
string(REPLACE "|" ";" unnamed "${UNNAMED}")
foreach(text IN LISTS unnamed)
  string(FIND "${said}" "${text}" at)
  if(NOT at EQUAL -1)
    string(APPEND failed "the message says, though it should not: ${text}\n")
  endif()
endforeach()
if(failed)
  message(FATAL_ERROR "${PRESET} with MAXSDK_DIR=\"${SDK}\":\n${failed}--- output:\n${out}${err}")
endif()
