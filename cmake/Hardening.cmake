# Hardens every release build, because it runs in other people's processes: checked
# buffers and stacks, and tables that are read-only after relocation.
#
# Not together with a sanitizer, which checks the same and more: they interfere.
if(NOT CMAKE_BUILD_TYPE STREQUAL "Release" OR CMAKE_CXX_FLAGS MATCHES "-fsanitize" OR MSVC)
  return()
endif()

set(CONDUIT_HARDENED ON)
add_compile_options(-fstack-protector-strong)
add_compile_definitions(_FORTIFY_SOURCE=2)
if(WIN32)
  # Also when linking: MinGW has the stack checks in a library of their own.
  add_link_options(-fstack-protector-strong -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
else()
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,text)
endif()
