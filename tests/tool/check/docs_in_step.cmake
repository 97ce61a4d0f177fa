# The preference reference in docs/preferences.md is what `hublet keys` prints from the
# preference table; this fails when one changes without the other.
execute_process(COMMAND ${EMULATOR} ${TOOL} keys OUTPUT_VARIABLE keys RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "hublet keys failed: ${status}")
endif()
string(REPLACE "\r\n" "\n" keys "${keys}")
file(READ ${DOC} doc)
string(FIND "${doc}" "<!-- hublet keys: begin -->\n${keys}<!-- hublet keys: end -->" at)
if(at EQUAL -1)
  message(FATAL_ERROR "${DOC}'s preference reference differs from `hublet keys`: paste its output between the markers")
endif()
