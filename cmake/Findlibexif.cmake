# Defines libexif::libexif: libexif has no package files for CMake.
find_path(libexif_INCLUDE_DIR libexif/exif-data.h)
find_library(libexif_LIBRARY exif)
mark_as_advanced(libexif_INCLUDE_DIR libexif_LIBRARY)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(libexif REQUIRED_VARS libexif_LIBRARY libexif_INCLUDE_DIR)
if(libexif_FOUND AND NOT TARGET libexif::libexif)
  add_library(libexif::libexif UNKNOWN IMPORTED)
  set_target_properties(
    libexif::libexif PROPERTIES IMPORTED_LOCATION ${libexif_LIBRARY}
                                INTERFACE_INCLUDE_DIRECTORIES ${libexif_INCLUDE_DIR})
endif()
