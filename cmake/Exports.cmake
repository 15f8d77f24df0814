# Lets a shared library export the given names and nothing else. Hidden
# visibility alone is not enough: templates of the standard library that a
# library instantiates stay visible without a list.
function(conduit_export_only target)
  if(UNIX AND NOT APPLE)
    set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
    list(JOIN ARGN ";\n    " names)
    file(CONFIGURE OUTPUT ${list} CONTENT "{\n  global:\n    @names@;\n  local:\n    *;\n};\n"
         @ONLY)
    target_link_options(${target} PRIVATE -Wl,--version-script=${list})
    # What a sanitizer of clang's calls stands in the program that loads the library.
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
      target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${list})
  endif()
endfunction()
