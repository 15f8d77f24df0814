include(${CMAKE_CURRENT_LIST_DIR}/../HeaderOnly.cmake)
conduit_header_only(nlohmann_json::nlohmann_json nlohmann)
