# Makes a shared library export only the given names. Hidden visibility does not
# suffice: instances of standard library templates stay visible without a version
# script.
function(conduit_export_only target)
  if(UNIX AND NOT APPLE)
    set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
    list(JOIN ARGN ";\n    " names)
    file(CONFIGURE OUTPUT ${list} CONTENT "{\n  global:\n    @names@;\n  local:\n    *;\n};\n"
         @ONLY)
    target_link_options(${target} PRIVATE -Wl,--version-script=${list})
    # clang's sanitizer runtime is in the program that loads the library.
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
      target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${list})
  endif()
endfunction()
