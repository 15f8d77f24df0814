# Compares the tables that clang lays out for the interfaces with those on file.
#   cmake -DCLANG=... -DTARGET=... -DTABLES=... -DROOT=... [-DUPDATE=ON] -P CompareTables.cmake
execute_process(
  COMMAND
    ${CLANG} --target=${TARGET} -std=c++20 -ffreestanding -nostdinc++ -isystem
    ${CMAKE_CURRENT_LIST_DIR}/freestanding -I ${ROOT}/interfaces -Wall -Wextra -Wpedantic -Wconversion -Werror
    -S -emit-llvm -o - -Xclang -fdump-vtable-layouts ${CMAKE_CURRENT_LIST_DIR}/Layouts.cpp
  OUTPUT_VARIABLE output
  ERROR_VARIABLE errors
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The headers do not compile for ${TARGET}:\n${errors}")
endif()

string(REGEX MATCHALL "VF?Table indices for '[^\n]*\n([ 0-9]*\\|[^\n]*\n)*" tables "${output}")
# Before clang 19, arguments are named with their namespace, whatever the header says.
string(REPLACE "conduit::" "" tables "${tables}")
list(SORT tables)
list(JOIN tables "\n" actual)
if(UPDATE)
  file(WRITE ${TABLES} "${actual}")
endif()
file(READ ${TABLES} expected)
if(NOT actual STREQUAL expected)
  message(NOTICE "The tables for ${TARGET} are now:\n${actual}")
  message(FATAL_ERROR "The tables for ${TARGET} differ from ${TABLES}.")
endif()
