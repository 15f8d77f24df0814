# Runs a program and compares its output with a file; lines that begin with # are comments.
#   cmake -DPROGRAM=...;... -DEXPECTED=... -DSEARCHES_PAGES=1|0 -P CompareOutput.cmake
file(READ ${EXPECTED} expected)
string(FIND "${expected}" "# What was found" begin)
string(FIND "${expected}" "# End of what was found" end)
if(NOT SEARCHES_PAGES AND begin GREATER_EQUAL 0)
  string(SUBSTRING "${expected}" 0 ${begin} before)
  string(SUBSTRING "${expected}" ${end} -1 behind)
  set(expected "${before}${behind}")
endif()
string(REGEX REPLACE "\n#[^\n]*" "" expected "\n${expected}")
string(SUBSTRING "${expected}" 1 -1 expected)

get_filename_component(name ${EXPECTED} NAME)
file(WRITE ${name}.expected "${expected}")
execute_process(COMMAND ${PROGRAM} OUTPUT_FILE ${name}.actual RESULT_VARIABLE result)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files --ignore-eol ${name}.expected ${name}.actual
                RESULT_VARIABLE difference ERROR_QUIET)
if(NOT result EQUAL 0 OR NOT difference EQUAL 0)
  execute_process(COMMAND diff -u --strip-trailing-cr ${name}.expected ${name}.actual COMMAND head -n 30)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}; where its output differs stands above.")
endif()
