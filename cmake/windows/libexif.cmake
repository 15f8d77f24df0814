# The CMakeLists.txt that libexif does not bring: its own tools take longer to set up
# than these few files to compile.
cmake_minimum_required(VERSION 3.25)
project(libexif LANGUAGES C)

# What its tools generate. A domain is needed even where nothing is translated.
file(WRITE config.h "#define GETTEXT_PACKAGE \"libexif\"\n")
file(WRITE libexif/_stdint.h "#include <stdint.h>\n")
file(GLOB_RECURSE sources libexif/*.c)
file(GLOB headers libexif/*.h)
add_library(exif STATIC ${sources})
target_include_directories(exif PRIVATE ${PROJECT_SOURCE_DIR})
install(TARGETS exif)
install(FILES ${headers} DESTINATION include/libexif)
