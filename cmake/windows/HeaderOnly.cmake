# An imported target for a library of headers alone. Debian's folder of headers as
# a whole would put the C library of this system before that of Windows, so the
# one library is linked into a folder of its own.
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
