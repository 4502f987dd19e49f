"""A log service with a fault in each method, on the bus of the given address. Those it lacks are missing."""

import os
import sys

import dbus.bus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib


def method(types_in, types_out, **options):
    return dbus.service.method("dev.zelk.LogService1", in_signature=types_in, out_signature=types_out, **options)


class LogService(dbus.service.Object):
    @method("", "ii")
    def GetModemLogStatus(self):
        return 0, 1

    @method("", "ib")
    def GetTcpdumpStatus(self):
        return 0, True

    @method("as", "ias", async_callbacks=("answer", "fail"))
    def GetTcpdumpConfig(self, keys, answer, fail):
        pass

    @method("sx", "is")
    def FetchRemoteDevicesLogs(self, request, value):
        return 0, "\x1b" * 16_000_000

    @method("s", "is")
    def QueryRemoteDevicesLogs(self, request):
        raise TypeError("first line\nlast line")

    @method("", "is")
    def GetRemoteDevicesList(self):
        os._exit(0)


loop = dbus.mainloop.glib.DBusGMainLoop()
bus = dbus.bus.BusConnection(sys.argv[1], mainloop=loop)
service = LogService(dbus.service.BusName("dev.zelk.LogService", bus), "/dev/zelk/LogService")
print("ready", flush=True)
GLib.MainLoop().run()
