# The command zelklog for `cmake --install`: the JavaScript package with its libraries in its own folder, from which
# require() can load it too, and the manual page and shell completion, which are generated from the command itself.
find_program(NODE NAMES node nodejs)
find_path(COMMANDER_DIR package.json
    PATHS "${CMAKE_SOURCE_DIR}/node_modules/commander" /usr/share/nodejs/commander
    NO_DEFAULT_PATH)
set(has_what_it_needs OFF)
if(NODE AND COMMANDER_DIR)
    set(has_what_it_needs ON)
endif()
option(ZELK_BUILD_COMMAND "Build and install the command zelklog (needs Node.js and npm's commander)" ${has_what_it_needs})
if(NOT ZELK_BUILD_COMMAND)
    message(STATUS "The command zelklog is not built, and not installed")
    return()
endif()
if(NOT has_what_it_needs)
    message(FATAL_ERROR "The command zelklog needs Node.js and npm's commander: run `make setup` first, "
                        "or leave it out with -DZELK_BUILD_COMMAND=OFF")
endif()
execute_process(COMMAND "${NODE}" -p "process.platform + '-' + process.arch"
    OUTPUT_VARIABLE node_platform OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

set(command_docs "${CMAKE_BINARY_DIR}/zelklog.1" "${CMAKE_BINARY_DIR}/zelklog.bash")
file(GLOB command_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/bin/*.js")
add_custom_command(OUTPUT ${command_docs}
    COMMAND "${NODE}" "${CMAKE_SOURCE_DIR}/scripts/command_docs.js" ${command_docs}
    DEPENDS scripts/command_docs.js package.json ${command_sources}
    VERBATIM)
add_custom_target(command_docs ALL DEPENDS ${command_docs})

set(package_libraries ohos_host zelk_service_api zelk_testing zelk_testing_state)
if(TARGET zelk_dbus)
    list(APPEND package_libraries zelk_dbus)
endif()

set(folder lib/zelklogservice)
install(FILES package.json LICENSE DESTINATION "${folder}")
install(DIRECTORY js DESTINATION "${folder}")
install(DIRECTORY testing DESTINATION "${folder}" FILES_MATCHING REGEX "\\.m?[jt]s$" PATTERN native EXCLUDE)
install(DIRECTORY bin DESTINATION "${folder}" PATTERN zelklog EXCLUDE)
install(PROGRAMS bin/zelklog DESTINATION "${folder}/bin")
install(DIRECTORY "${COMMANDER_DIR}" DESTINATION "${folder}/node_modules")
install(PROGRAMS "${CMAKE_BINARY_DIR}/zelklogservice.node" DESTINATION "${folder}/lib/${node_platform}")
install(TARGETS ${package_libraries} LIBRARY DESTINATION "${folder}/lib/${node_platform}")

include(GNUInstallDirs)
install(FILES "${CMAKE_BINARY_DIR}/zelklog.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${CMAKE_BINARY_DIR}/zelklog.bash" RENAME zelklog
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install(CODE "
    set(link \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/zelklog\")
    file(CREATE_LINK ../${folder}/bin/zelklog \"\$ENV{DESTDIR}\${link}\" SYMBOLIC)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${link}\")")
# This is the last rule. scripts/install.sh needs no manifest, and the user who runs it may not be allowed to write one.
install(CODE "
    if(DEFINED ENV{ZELK_DESTDIR})
        return()
    endif()")
