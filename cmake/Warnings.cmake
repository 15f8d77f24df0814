# The warnings for our own code; each is an error.
add_library(conduit_warnings INTERFACE)
if(MSVC)
  target_compile_options(conduit_warnings INTERFACE /W4 /WX /permissive- /utf-8)
else()
  target_compile_options(
    conduit_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Werror
              -Wconversion
              -Wsign-conversion
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wcast-qual
              -Wformat=2
              -Wno-format-nonliteral # date formats are the host's; the platform checks them
              -Wundef)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC's plain -Wshadow also rejects a constructor argument named like the field
    # that it initialises, as in this code.
    # -Wrestrict: GCC 12 reports false overlaps in std::string's operator+ (its bug
    # 105329).
    target_compile_options(conduit_warnings INTERFACE -Wshadow=local -Wduplicated-cond
                                                      -Wlogical-op -Wno-restrict)
  else()
    target_compile_options(conduit_warnings INTERFACE -Wshadow)
  endif()
endif()
