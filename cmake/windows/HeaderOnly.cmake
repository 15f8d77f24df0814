# Defines an imported target for a header-only library. /usr/include as a whole would put
# this system's C library before that of Windows, so a folder of its own links to the one
# library.
function(conduit_header_only target folder)
  if(TARGET ${target})
    return()
  endif()
  set(headers ${PROJECT_BINARY_DIR}/headers)
  file(MAKE_DIRECTORY ${headers})
  file(CREATE_LINK /usr/include/${folder} ${headers}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${headers})
endfunction()
