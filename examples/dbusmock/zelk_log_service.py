"""A log service that any D-Bus client can change while it runs: a template for python-dbusmock.

    python3 -m dbusmock --template examples/dbusmock/zelk_log_service.py

answers on the session bus as zelk-log-service does, without its limits. AddMethod of org.freedesktop.DBus.Mock
gives a method another answer, other types, a code or an error; Reset gives all the first ones back.
docs/testing.md has an example.
"""

import json

import dbus

BUS_NAME = "dev.zelk.LogService"
MAIN_OBJ = "/dev/zelk/LogService"
MAIN_IFACE = "dev.zelk.LogService1"
SYSTEM_BUS = False

# Each log is named by its property, which says whether it is on.
LOGS = MODEM, TCPDUMP, BLUETOOTH = ("ModemLogOn", "TcpdumpOn", "BluetoothCallPcmLogOn")

ACCEPTED, REFUSED = (0, True), (2, False)


def read_item(text):
    """The key and the value of {"configKey":"KEY","value":VALUE}; None for a text of another form."""
    head, middle, tail = '{"configKey":"', '","value":', "}"
    key, _, value = text[len(head):].partition(middle)
    return (key, value[:-len(tail)]) if text.startswith(head) and value.endswith(tail) else None


def json_of(**members):
    return json.dumps(members, ensure_ascii=False, separators=(",", ":"))


def is_on(mock, log):
    return bool(mock.props[MAIN_IFACE][log])


def query(mock, log, keys):
    return 0, [json_of(configKey=key, value=mock.values[log].get(key, "{}")) for key in keys]


def change(mock, log, texts):
    items = [read_item(text) for text in texts]
    if None in items:
        return REFUSED
    mock.values[log].update(items)
    return ACCEPTED


def switch(mock, log, on, texts=()):
    answer = change(mock, log, texts)
    if answer == ACCEPTED and is_on(mock, log) != on:
        mock.UpdateProperties(MAIN_IFACE, {log: dbus.Boolean(on)})
    return answer


# Name, types of the arguments, types of the answer, and what answers.
METHODS = [
    ("GetModemLogConfig", "as", "ias", lambda mock, keys: query(mock, MODEM, keys)),
    ("GetModemLogDirectPackConfig", "", "is", lambda mock: (0, json_of(directPack=False))),
    ("GetModemLogLogMasks", "", "ias", lambda mock: (0, [json_of(configKey=key, value="0x0") for key in ("ap", "cp")])),
    ("GetModemLogStatus", "", "ib", lambda mock: (0, is_on(mock, MODEM))),
    ("HandleModemLogSwitch", "b", "ib", lambda mock, on: switch(mock, MODEM, on)),
    ("HandleModemLogSwitchWithConfigs", "bas", "ib", lambda mock, on, texts: switch(mock, MODEM, on, texts)),
    ("SendModemLogCommand", "s", "ib", lambda mock, command: ACCEPTED if read_item(command) else REFUSED),
    ("ChangeModemLogConfig", "as", "ib", lambda mock, texts: change(mock, MODEM, texts)),
    ("GetTcpdumpStatus", "", "ib", lambda mock: (0, is_on(mock, TCPDUMP))),
    ("GetTcpdumpConfig", "as", "ias", lambda mock, keys: query(mock, TCPDUMP, keys)),
    ("ChangeTcpdumpConfig", "as", "ib", lambda mock, texts: change(mock, TCPDUMP, texts)),
    ("HandleTcpdumpSwitch", "b", "ib", lambda mock, on: switch(mock, TCPDUMP, on)),
    ("HandleTcpdumpSwitchWithConfigs", "bas", "ib", lambda mock, on, texts: switch(mock, TCPDUMP, on, texts)),
    ("HandleBluetoothCallPcmLogSwitch", "b", "i", lambda mock, on: switch(mock, BLUETOOTH, on)[0]),
    ("FetchRemoteDevicesLogs", "sx", "is",
     lambda mock, request, value: (0, json_of(request=request, value=value, logs=[]))),
    ("QueryRemoteDevicesLogs", "s", "is", lambda mock, request: (0, json_of(request=request, logs=[]))),
    ("GetRemoteDevicesList", "", "is", lambda mock: (0, json_of(devices=[]))),
    ("QueryProtocolData", "s", "is", lambda mock, request: (0, json_of(request=request, data=""))),
]


def load(mock, _parameters):
    mock.values = {log: {} for log in LOGS}
    mock.AddProperties(MAIN_IFACE, {log: dbus.Boolean(False) for log in LOGS})
    mock.AddMethods(MAIN_IFACE, METHODS)
