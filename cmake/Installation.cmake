# Where things stand once they are installed. What runs is the component `runtime`, what
# is built with is `development`.
include(GNUInstallDirs)

# The modules and their reader library stand together in a folder of their own, which
# `conduit` finds relative to itself; Windows looks for libraries beside the program.
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
