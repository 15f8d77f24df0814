# Fails and lists every protection that FILE lacks.
execute_process(COMMAND ${READER} --private-headers ${FILE}
                OUTPUT_VARIABLE contents COMMAND_ERROR_IS_FATAL ANY)
foreach(protection DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT)
  if(NOT contents MATCHES "[ \t]${protection}\n")
    message(SEND_ERROR "${FILE}: no ${protection}")
  endif()
endforeach()

# The stack and buffer checks are linked statically; the symbol table for debuggers has
# their names.
execute_process(COMMAND ${READER} --syms ${FILE}
                OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
if(NOT names MATCHES "__stack_chk_fail")
  message(SEND_ERROR "${FILE}: no function checks its stack")
endif()
