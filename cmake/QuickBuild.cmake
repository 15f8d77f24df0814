# For what waits for people, and for tests: of the libraries of templates that it
# is made with, code for speed takes twice as long to build.
macro(conduit_build_quickly)
  if(NOT MSVC AND CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-O1)
  endif()
endmacro()

# For what a module does when it is loaded and configured: what more code would win
# there it loses while it is loaded.
add_library(conduit_configuration_code INTERFACE)
if(NOT MSVC AND CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(conduit_configuration_code INTERFACE -O2)
endif()
