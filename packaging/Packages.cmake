# The packages: .deb, an archive that runs from where it is unpacked, and one for Windows.
# ./package makes them.
set(CPACK_PACKAGE_NAME conduit)
set(CPACK_PACKAGE_VENDOR "Conduit")
set(CPACK_PACKAGE_CONTACT "Conduit maintainers <maintainers@conduit.example.org>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
set(CPACK_PACKAGE_FILE_NAME conduit-${PROJECT_VERSION}-${system}-${CMAKE_SYSTEM_PROCESSOR})

set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 1) # several threads compress to bytes of their own
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime development)

# One package for each component.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME conduit)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "input module for scanned identity documents
The module drives a full-page document reader and delivers codelines, page
images, barcodes and chip data to a host application. A virtual reader plays
folders of scans and session files; conduit is a host for the console.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libconduit-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "conduit (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "headers and libraries to build hosts and input modules
The headers of the interface between hosts, input modules and reader
libraries; libraries to load modules with and to build modules on, for CMake
and pkg-config; and the sources of samples.")

# What Debian wants of a package beside its files. The two share a folder of documents.
if(UNIX)
  find_program(GZIP gzip REQUIRED)
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  configure_file(debian/changelog.in changelog @ONLY)
  execute_process(
    COMMAND ${GZIP} -9nf changelog
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    COMMAND_ERROR_IS_FATAL ANY)
  file(CREATE_LINK conduit ${CMAKE_CURRENT_BINARY_DIR}/libconduit-dev SYMBOLIC)
  install(
    FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT runtime)
  install(
    FILES ${CMAKE_CURRENT_BINARY_DIR}/libconduit-dev
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc
    COMPONENT development)
endif()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)

include(CPack)
