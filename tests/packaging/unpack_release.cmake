# Makes the release archive as a release is made (cpack on this build) and unpacks it as a
# user does, into DESTINATION, with nothing left of an earlier run.
#   CPACK        the cpack program
#   CONFIG       this build's CPackConfig.cmake
#   DESTINATION  the folder for the archive (in package/) and what it holds
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${DESTINATION}")
execute_process(COMMAND "${CPACK}" --config "${CONFIG}" -B "${DESTINATION}/package"
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cpack failed:\n${out}")
endif()
file(GLOB archives "${DESTINATION}/package/*.zip")
list(LENGTH archives count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "cpack made ${count} archives, not one:\n${out}")
endif()
file(ARCHIVE_EXTRACT INPUT "${archives}" DESTINATION "${DESTINATION}")
message(STATUS "unpacked ${archives}")
