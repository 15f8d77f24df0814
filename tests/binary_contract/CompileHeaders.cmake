# Compiles every header alone, twice, as C++17 and as C++20.
#   cmake -DCOMPILER=... -DHEADERS=...;... -P CompileHeaders.cmake
foreach(header ${HEADERS})
  foreach(standard 17 20)
    execute_process(
      COMMAND ${COMPILER} -std=c++${standard} -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion
              -Werror -x c++ -include ${header} -include ${header} /dev/null
      ERROR_VARIABLE errors
      RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
      message(SEND_ERROR "${header} does not stand alone in C++${standard}:\n${errors}")
    endif()
  endforeach()
endforeach()
