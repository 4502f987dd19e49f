# The headers of Node-API come from the npm package node-api-headers or, where npm was not needed, from Debian's
# libnode-dev.
find_path(NODE_API_INCLUDE_DIR node_api.h
    PATHS "${CMAKE_SOURCE_DIR}/node_modules/node-api-headers/include" /usr/include/node
    NO_DEFAULT_PATH)
if(NOT NODE_API_INCLUDE_DIR)
    message(FATAL_ERROR "node_api.h not found: run `make setup` first")
endif()

add_library(node_api INTERFACE)
target_include_directories(node_api SYSTEM INTERFACE "${NODE_API_INCLUDE_DIR}")
target_compile_definitions(node_api INTERFACE NAPI_VERSION=8)
# Those of Node.js 18 mark the platform's way of registering a module as deprecated.
target_compile_options(node_api INTERFACE -Wno-deprecated-declarations)
