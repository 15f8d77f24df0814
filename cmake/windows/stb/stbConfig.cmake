include(${CMAKE_CURRENT_LIST_DIR}/../HeaderOnly.cmake)
conduit_header_only(stb::stb stb)
