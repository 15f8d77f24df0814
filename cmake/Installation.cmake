# The folders of an installation. The component `runtime` has the programs and libraries,
# `development` the files to build with.
include(GNUInstallDirs)

# The modules and their reader library share a folder, which `conduit` finds relative to
# itself; Windows searches libraries beside the program.
if(WIN32)
  set(CONDUIT_INSTALL_MODULEDIR ${CMAKE_INSTALL_BINDIR})
else()
  set(CONDUIT_INSTALL_MODULEDIR ${CMAKE_INSTALL_LIBDIR}/conduit)
endif()
set(CONDUIT_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/conduit)
set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATADIR}/doc/conduit)

# The layers' headers include each other as "hosting/X.h"; a program includes them as
# <conduit/hosting/X.h>.
function(conduit_install_headers folder)
  install(
    FILES ${ARGN}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/conduit/${folder}
    COMPONENT development)
endfunction()

# A static library for others to link, as conduit::NAME.
function(conduit_install_library target name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  install(
    TARGETS ${target}
    EXPORT conduit-targets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endfunction()
