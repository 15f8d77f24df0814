# For what waits for people, and for tests: of the libraries of templates that it
# is made with, code for speed takes twice as long to build.
macro(conduit_build_quickly)
  if(NOT MSVC AND CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-O1)
  endif()
endmacro()

# The module is optimised as a whole: a delivery runs through all of its folders, and
# hosts load and unload what comes of it. The objects have code of their own as well, for
# the tests that link them.
add_library(conduit_whole_module INTERFACE)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32)
  target_compile_options(conduit_whole_module INTERFACE -flto=auto -ffat-lto-objects)
  # In one piece: its pieces would be compiled side by side by make, which need not be here.
  target_link_options(conduit_whole_module INTERFACE -flto=auto -flto-partition=one)
endif()
