# Reads from a built library what it exports, and on Windows also what it imports.
#   cmake -DTOOL=<nm or objdump> -DFILE=... -DEXPORTS=a,b [-DREADER=a,b] -P CheckSymbols.cmake
# READER lists the reader library's functions that a Windows library must import
# by name.
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

  string(REGEX MATCHALL "DLL Name: [^\n]*" libraries "${headers}")
  list(TRANSFORM libraries REPLACE "DLL Name: " "")
  # What comes with Windows; anything of MinGW's would have to stand beside.
  list(FILTER libraries EXCLUDE REGEX "^(KERNEL32|USER32|SHELL32|ADVAPI32|msvcrt|ucrtbase)\\.dll$")
  if(READER)
    expect("Libraries" "${libraries}" "HaldenReaderHighLevelAPI.dll")
    string(REGEX MATCHALL "HaldenReader_[A-Za-z]+" imports "${headers}")
    list(REMOVE_DUPLICATES imports)
    expect("Imports" "${imports}" "${READER}")
  else()
    expect("Libraries" "${libraries}" "")
  endif()
else()
  execute_process(COMMAND ${TOOL} -D --defined-only --format=posix ${FILE}
                  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+\n" exports "${symbols}")
  list(TRANSFORM exports REPLACE " .*" "")
  expect("Exports" "${exports}" "${EXPORTS}")
endif()
