# The warnings that our own code is held to; each is an error.
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
    # GCC's plain -Wshadow also rejects a constructor argument named as the field
    # that it initialises, which is how this code names them.
    # -Wrestrict: GCC 12 finds overlaps in std::string's operator+ that cannot be
    # (its bug 105329).
    target_compile_options(conduit_warnings INTERFACE -Wshadow=local -Wduplicated-cond
                                                      -Wlogical-op -Wno-restrict)
  else()
    target_compile_options(conduit_warnings INTERFACE -Wshadow)
  endif()
endif()
