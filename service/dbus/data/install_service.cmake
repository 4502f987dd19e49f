# Installs the files by which D-Bus and systemd start the service. Inputs: SOURCE, BINDIR, DATADIR.
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE OUTPUT_VARIABLE PREFIX)
set(PROGRAM "${PREFIX}/${BINDIR}/zelk-log-service")

# For systemd, which expands % and $ and does not start a program whose own path has a quote or a wildcard in it.
string(REPLACE "%" "%%" UNIT_COMMAND "\"${PROGRAM}\"")
if(PROGRAM MATCHES "['$*?[]")
    string(REPLACE "$" "$$" UNIT_COMMAND "/usr/bin/env ${UNIT_COMMAND}")
endif()

# Written directly to its place, so that the build does not contain files owned by root.
function(install_with_path file path)
    configure_file("${SOURCE}/${file}.in" "$ENV{DESTDIR}${path}" @ONLY NO_SOURCE_PERMISSIONS)
    set(CMAKE_INSTALL_MANIFEST_FILES "${CMAKE_INSTALL_MANIFEST_FILES};${path}" PARENT_SCOPE)
endfunction()

# Where systemd looks for user units below a prefix that belongs to one user.
set(USER_UNITS "${PREFIX}/share/systemd/user")
if(PREFIX MATCHES "^/usr(/local)?$")
    set(USER_UNITS "${PREFIX}/lib/systemd/user")
endif()

install_with_path(session.service "${PREFIX}/${DATADIR}/dbus-1/services/dev.zelk.LogService.service")
install_with_path(system.service "${PREFIX}/${DATADIR}/dbus-1/system-services/dev.zelk.LogService.service")
install_with_path(systemd-user.service "${USER_UNITS}/dev.zelk.LogService.service")
install_with_path(systemd-system.service "${PREFIX}/lib/systemd/system/dev.zelk.LogService.service")

# scripts/install.sh calls this with a DESTDIR of its own, and says in ZELK_DESTDIR what its user gave.
set(DESTDIR "$ENV{DESTDIR}")
if(DEFINED ENV{ZELK_DESTDIR})
    set(DESTDIR "$ENV{ZELK_DESTDIR}")
endif()

# The system bus reads policies from two places only, whatever the prefix.
execute_process(COMMAND id -u OUTPUT_VARIABLE USER_ID OUTPUT_STRIP_TRAILING_WHITESPACE)
set(POLICY dev.zelk.LogService.conf)
if(PREFIX STREQUAL "/usr")
    file(INSTALL "${SOURCE}/${POLICY}" DESTINATION "${PREFIX}/${DATADIR}/dbus-1/system.d")
elseif(USER_ID EQUAL 0 OR NOT DESTDIR STREQUAL "")
    file(INSTALL "${SOURCE}/${POLICY}" DESTINATION "/etc/dbus-1/system.d")
else()
    message("Note: the session bus can start the service. The system bus cannot: only root can install its policy.")
endif()
