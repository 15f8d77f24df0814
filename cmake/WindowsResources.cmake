# What Windows shows of a file that is delivered, and a deployer looks for: its name,
# version and description; and what a program asks of the system, in its manifest. The
# file's description is a sentence without a full stop.
#   conduit_add_windows_resources(<target> <description> [<manifest>])
function(conduit_add_windows_resources target description)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  set(file_type $<IF:$<STREQUAL:${type},EXECUTABLE>,VFT_APP,VFT_DLL>)
  set(manifest ${ARGN})
  set(manifest_resource "")
  if(MSVC)
    target_sources(${target} PRIVATE ${manifest}) # that linker adds it by itself
  elseif(manifest)
    set(manifest_resource "CREATEPROCESS_MANIFEST_RESOURCE_ID RT_MANIFEST \"${manifest}\"")
  endif()
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/Resources.rc.in ${resources}.in @ONLY)
  file(GENERATE OUTPUT ${resources} INPUT ${resources}.in)
  target_sources(${target} PRIVATE ${resources})
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${manifest}")
endfunction()
