# Builds for 64-bit Windows with Debian's MinGW-w64 and runs what was built under
# Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix) # of GoogleTest, which asks for one
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)

# Nothing of MinGW stands beside the libraries: its runtime is linked into them.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)
set(ZLIB_USE_STATIC_LIBS ON)

# What scripts/windows-libraries has built, and Debian's own.
cmake_path(SET libraries NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../build/windows-libraries)
set(CMAKE_FIND_ROOT_PATH ${libraries} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Libraries that are all headers, or come as sources, serve this build too, by the
# package files that stand here.
foreach(package CLI11 GTest nlohmann_json stb)
  set(${package}_DIR ${CMAKE_CURRENT_LIST_DIR}/${package})
endforeach()
