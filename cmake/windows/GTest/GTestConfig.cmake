# Builds GoogleTest from the sources in Debian's package. Their targets have the names of
# the package files.
if(NOT TARGET GTest::gmock_main)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  # No warnings for its headers.
  foreach(target gtest gmock gmock_main)
    target_compile_options(${target} PRIVATE -O1) # it only has to be built
    get_target_property(headers ${target} INTERFACE_INCLUDE_DIRECTORIES)
    target_include_directories(${target} SYSTEM INTERFACE ${headers})
  endforeach()
endif()
