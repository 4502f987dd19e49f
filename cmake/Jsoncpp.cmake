# zelk_jsoncpp: jsoncpp as the module links it.
option(ZELK_STATIC_JSONCPP "Link a jsoncpp built here from Debian's source package, instead of the system's library" OFF)

if(ZELK_STATIC_JSONCPP OR ZELK_LIKE_DEVICE)
    # Built with the same compiler and settings as everything else here. On a device it is a separate library.
    if(ZELK_LIKE_DEVICE)
        set(jsoncpp_type SHARED)
    else()
        set(jsoncpp_type STATIC)
    endif()
    execute_process(COMMAND "${CMAKE_CURRENT_LIST_DIR}/../scripts/debian_source.sh" libjsoncpp
        OUTPUT_VARIABLE jsoncpp_source OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    add_library(zelk_jsoncpp ${jsoncpp_type}
        "${jsoncpp_source}/src/lib_json/json_reader.cpp"
        "${jsoncpp_source}/src/lib_json/json_value.cpp"
        "${jsoncpp_source}/src/lib_json/json_writer.cpp")
    target_include_directories(zelk_jsoncpp SYSTEM PUBLIC "${jsoncpp_source}/include")
    target_compile_definitions(zelk_jsoncpp PRIVATE $<$<STREQUAL:${jsoncpp_type},SHARED>:JSON_DLL_BUILD>)
    target_compile_options(zelk_jsoncpp PRIVATE -w)
else()
    pkg_check_modules(jsoncpp REQUIRED IMPORTED_TARGET GLOBAL jsoncpp)
    add_library(zelk_jsoncpp INTERFACE)
    target_link_libraries(zelk_jsoncpp INTERFACE PkgConfig::jsoncpp)
endif()
