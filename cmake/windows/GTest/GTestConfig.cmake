# Debian's packages of GoogleTest bring its sources.
if(NOT TARGET gmock_main)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  # Its folders are not ours to warn about.
  foreach(target gtest gmock gmock_main)
    get_target_property(headers ${target} INTERFACE_INCLUDE_DIRECTORIES)
    target_include_directories(${target} SYSTEM INTERFACE ${headers})
  endforeach()
  add_library(GTest::gmock_main ALIAS gmock_main)
endif()
