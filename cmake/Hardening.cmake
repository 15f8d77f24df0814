# What everything that is built for release carries into the process of somebody
# else: checked buffers and stacks, and tables that are read-only once loaded.
#
# Not with a sanitizer, which checks the same and more: the two get in each
# other's way.
if(NOT CMAKE_BUILD_TYPE STREQUAL "Release" OR CMAKE_CXX_FLAGS MATCHES "-fsanitize" OR MSVC)
  return()
endif()

set(CONDUIT_HARDENED ON)
add_compile_options(-fstack-protector-strong)
add_compile_definitions(_FORTIFY_SOURCE=2)
if(WIN32)
  # Also when linking: there the checks come from a library of their own.
  add_link_options(-fstack-protector-strong -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
else()
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,text)
endif()
