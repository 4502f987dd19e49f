"""A log service with faults, on the bus of the given address."""

import os
import sys

import dbus.bus
import dbus.mainloop.glib
from dbus.service import BusName, Object, method
from gi.repository import GLib

INTERFACE = "dev.zelk.LogService1"


class LogService(Object):
    @method(INTERFACE, out_signature="ii")
    def GetModemLogStatus(self):
        return 0, 1

    @method(INTERFACE, out_signature="ib")
    def GetTcpdumpStatus(self):
        return 0, True

    @method(INTERFACE, in_signature="as", async_callbacks=("answer", "fail"))
    def GetTcpdumpConfig(self, keys, answer, fail):
        pass

    @method(INTERFACE, in_signature="sx", out_signature="is")
    def FetchRemoteDevicesLogs(self, request, value):
        return 0, "\x1b" * 16_000_000

    @method(INTERFACE, in_signature="s")
    def QueryRemoteDevicesLogs(self, request):
        raise TypeError("first line\nlast line")

    @method(INTERFACE)
    def GetRemoteDevicesList(self):
        os._exit(0)


bus = dbus.bus.BusConnection(sys.argv[1], mainloop=dbus.mainloop.glib.DBusGMainLoop())
service = LogService(BusName("dev.zelk.LogService", bus), "/dev/zelk/LogService")
print("ready", flush=True)
GLib.MainLoop().run()
