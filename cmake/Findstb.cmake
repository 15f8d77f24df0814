# Defines stb::stb: Debian's package of these single-header libraries has no files
# for CMake.
find_package(stb CONFIG QUIET) # a cross build or another package manager has such files
if(TARGET stb::stb)
  return()
endif()
find_path(stb_INCLUDE_DIR stb/stb_image.h)
mark_as_advanced(stb_INCLUDE_DIR)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(stb REQUIRED_VARS stb_INCLUDE_DIR)
if(stb_FOUND)
  add_library(stb::stb INTERFACE IMPORTED GLOBAL)
  target_include_directories(stb::stb SYSTEM INTERFACE ${stb_INCLUDE_DIR})
endif()
