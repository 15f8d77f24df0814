# Debian's packages of GoogleTest bring its sources, which name their targets as
# the package files do.
if(NOT TARGET GTest::gmock_main)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  # Its headers are not ours to warn about.
  foreach(target gtest gmock gmock_main)
    target_compile_options(${target} PRIVATE -O1) # it only has to be built
    get_target_property(headers ${target} INTERFACE_INCLUDE_DIRECTORIES)
    target_include_directories(${target} SYSTEM INTERFACE ${headers})
  endforeach()
endif()
