# The same sources give the same bytes, whenever they are built. No path of the build is in
# what is delivered, for nothing there names its source file; a test looks.
if(MINGW)
  add_link_options(-Wl,--no-insert-timestamp)
endif()
