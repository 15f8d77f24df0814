# Reads from a built library what it exports.
#   cmake -DTOOL=<nm or objdump> -DFILE=... -DEXPORTS=a,b -P CheckSymbols.cmake
function(expect what actual expected)
  string(REPLACE "," ";" expected "${expected}")
  list(SORT actual)
  list(SORT expected)
  if(NOT "${actual}" STREQUAL "${expected}")
    message(FATAL_ERROR "${what} of ${FILE}:\n  ${actual}\nexpected:\n  ${expected}")
  endif()
endfunction()

if(FILE MATCHES "\\.dll$")
  execute_process(COMMAND ${TOOL} -p ${FILE} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  # Behind this title stands the table of exported names; brackets would end a
  # list's element.
  string(REGEX REPLACE ".*\n\\[Ordinal/Name Pointer\\] Table\n(([ \t]+\\[[^\n]*\n)*).*" "\\1" names
                       "${headers}")
  string(REGEX REPLACE "[ \t]*\\[ *[0-9]+\\] ([^\n]*)\n" "\\1;" exports "${names}")
  list(REMOVE_ITEM exports "")
  expect("Exports" "${exports}" "${EXPORTS}")
else()
  execute_process(COMMAND ${TOOL} -D --defined-only --format=posix ${FILE}
                  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+\n" exports "${symbols}")
  list(TRANSFORM exports REPLACE " .*" "")
  expect("Exports" "${exports}" "${EXPORTS}")
endif()
