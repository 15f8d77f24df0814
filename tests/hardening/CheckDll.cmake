# Fails with every protection that FILE lacks.
execute_process(COMMAND ${READER} --private-headers ${FILE}
                OUTPUT_VARIABLE contents COMMAND_ERROR_IS_FATAL ANY)
foreach(protection DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT)
  if(NOT contents MATCHES "[ \t]${protection}\n")
    message(SEND_ERROR "${FILE}: no ${protection}")
  endif()
endforeach()

# The checks of stack and buffers are linked in; their names are in the table that
# the linker leaves for debuggers.
execute_process(COMMAND ${READER} --syms ${FILE}
                OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
if(NOT names MATCHES "__stack_chk_fail")
  message(SEND_ERROR "${FILE}: no function checks its stack")
endif()
