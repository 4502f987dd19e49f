# Installs the files by which a bus and systemd start the service. In: SOURCE, BUILT, BINDIR, DATADIR.
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX OUTPUT_VARIABLE PREFIX)
cmake_path(APPEND PREFIX "${BINDIR}" zelk-log-service OUTPUT_VARIABLE ZELK_LOG_SERVICE)

function(install_with_path file folder)
    configure_file("${SOURCE}/${file}.in" "${BUILT}/${folder}/dev.zelk.LogService.service" @ONLY)
    file(INSTALL "${BUILT}/${folder}/dev.zelk.LogService.service" DESTINATION "${PREFIX}/${folder}")
endfunction()

install_with_path(session.service "${DATADIR}/dbus-1/services")
install_with_path(system.service "${DATADIR}/dbus-1/system-services")
install_with_path(systemd-user.service lib/systemd/user)
