# For what waits for people, and for tests: of the libraries of templates that it
# is made with, code for speed takes twice as long to build.
macro(conduit_build_quickly)
  if(NOT MSVC AND CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-O1)
  endif()
endmacro()
