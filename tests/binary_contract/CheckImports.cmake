# Reads from a file built for Windows what it must find there to be loaded.
#   cmake -DTOOL=<objdump> -DFILE=... [-DREADER=a,b] -P CheckImports.cmake
# READER lists the reader library's functions that the file must import by name.
cmake_minimum_required(VERSION 3.25)

# What comes with Windows; anything of a compiler's would have to stand beside.
set(windows advapi32 bcrypt crypt32 kernel32 msvcrt ucrtbase)

execute_process(COMMAND ${TOOL} -p ${FILE} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\n]*" libraries "${headers}")
if(NOT libraries)
  message(FATAL_ERROR "${FILE} has no import table, which nothing that runs is without")
endif()
string(REGEX MATCHALL "HaldenReader_[A-Za-z]+" functions "${headers}")
list(REMOVE_DUPLICATES functions)
list(SORT functions)

string(REPLACE "," ";" expected "${READER}")
if(READER)
  list(APPEND windows haldenreaderhighlevelapi)
  if(NOT functions STREQUAL expected)
    message(SEND_ERROR "${FILE} imports of the reader library:\n  ${functions}\nnot:\n  ${expected}")
  endif()
endif()
foreach(library IN LISTS libraries)
  string(REGEX REPLACE "DLL Name: (.*)\\.dll$" "\\1" name "${library}")
  string(TOLOWER "${name}" name)
  if(NOT name IN_LIST windows)
    message(SEND_ERROR "${FILE} needs ${name}.dll, which neither Windows nor this project brings")
  endif()
endforeach()
