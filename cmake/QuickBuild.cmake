# For interactive programs and tests: their template libraries take twice as long to
# compile at -O3.
macro(conduit_build_quickly)
  if(NOT MSVC AND CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-O1)
  endif()
endmacro()

# Link-time optimisation for the module: a delivery runs through all of its folders. Fat
# objects, because the tests link them without it.
add_library(conduit_whole_module INTERFACE)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32)
  target_compile_options(conduit_whole_module INTERFACE -flto=auto -ffat-lto-objects)
  # One partition: several would need make, which may not be installed.
  target_link_options(conduit_whole_module INTERFACE -flto=auto -flto-partition=one)
endif()
