# The same sources produce the same bytes at any time. No delivered file contains a build
# path, because none names its source file; a test checks that.
if(MINGW)
  add_link_options(-Wl,--no-insert-timestamp)
endif()
