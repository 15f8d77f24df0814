# Fails and lists every protection that FILE lacks.
execute_process(COMMAND ${READER} --wide --program-headers --dynamic --dyn-syms ${FILE}
                OUTPUT_VARIABLE contents COMMAND_ERROR_IS_FATAL ANY)

function(require pattern missing)
  if(NOT contents MATCHES "${pattern}")
    message(SEND_ERROR "${FILE}: ${missing}")
  endif()
endfunction()

function(refuse pattern present)
  if(contents MATCHES "${pattern}")
    message(SEND_ERROR "${FILE}: ${present}")
  endif()
endfunction()

require("Elf file type is DYN" "does not load at any address")
require("GNU_RELRO" "tables stay writable after loading")
require("BIND_NOW|FLAGS_1.*NOW" "functions are bound late, so their table stays writable")
require("GNU_STACK +0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ 0x[0-9a-f]+ RW +0x"
        "the stack is executable")
refuse("TEXTREL" "code is rewritten while loading")
refuse("LOAD[^\n]* RWE" "memory is writable and executable")
if(contents MATCHES "R(UN)?PATH\\)[^[\n]*\\[([^\n]*)\\]\n" AND NOT CMAKE_MATCH_2 STREQUAL "$ORIGIN")
  message(SEND_ERROR "${FILE}: libraries are looked for in \"${CMAKE_MATCH_2}\", not beside it alone")
endif()
require("__stack_chk_fail" "no function checks its stack")
require("__[a-z]+_chk@" "no call checks its buffer")
