#!/usr/bin/env python3
"""A bus with a log service on it whose messages are malformed: before each good answer it sends a corrupted copy.

    fake_bus.py [SEED]

Prints its address, and serves until its standard input ends.
"""

import os
import random
import socket
import struct
import sys
import tempfile
import threading

SEED = int(sys.argv[1]) if len(sys.argv) > 1 else 1
PATIENCE = 0.05  # Seconds. A client that sends nothing for this long waits for the rest of a corrupted message.
CORRUPTED_GREETINGS = 0.05  # The share of the bus's own answers that are corrupted.
REPLY, ERROR, SIGNAL = 2, 3, 4
BUS, OWNER = "org.freedesktop.DBus", ":1.1"

BOOLEAN_METHODS = {"GetModemLogStatus", "HandleModemLogSwitch", "HandleModemLogSwitchWithConfigs", "SendModemLogCommand",
                   "ChangeModemLogConfig", "GetTcpdumpStatus", "ChangeTcpdumpConfig", "HandleTcpdumpSwitch",
                   "HandleTcpdumpSwitchWithConfigs"}
LIST_METHODS = {"GetModemLogConfig", "GetModemLogLogMasks", "GetTcpdumpConfig"}


def pad(data, size):
    return data + bytes(-len(data) % size)


def string(text):
    return struct.pack("<I", len(text)) + text.encode() + b"\0"


def field(code, kind, value):
    return struct.pack("<BB", code, 1) + kind.encode() + b"\0" + value


def message(kind, serial, sender, signature="", body=b""):
    fields = [field(7, "s", string(sender))]
    if kind == SIGNAL:
        fields += [field(1, "o", string("/")), field(2, "s", string(BUS)), field(3, "s", string("NameOwnerChanged"))]
    else:
        fields.append(field(5, "u", struct.pack("<I", serial)))
    if kind == ERROR:
        fields.append(field(4, "s", string("dev.zelk.Error")))
    if signature:
        fields.append(field(8, "g", bytes([len(signature)]) + signature.encode() + b"\0"))
    data = b""
    for each in fields:
        data = pad(data, 8) + each
    header = struct.pack("<cBBBIII", b"l", kind, 1, 1, len(body), 1, len(data))
    return pad(header + data, 8) + body


def answer_to(member, serial):
    if member == "Hello":
        return message(REPLY, serial, BUS, "s", string(":1.2"))
    if member in ("AddMatch", "StartServiceByName"):
        return message(REPLY, serial, BUS)
    if member == "GetNameOwner":
        return message(REPLY, serial, BUS, "s", string(OWNER))
    code = struct.pack("<i", 0)
    if member in BOOLEAN_METHODS:
        return message(REPLY, serial, OWNER, "ib", code + struct.pack("<I", 1))
    if member in LIST_METHODS:
        texts = b"".join(pad(string('{"configKey":"k","value":"%d"}' % i), 4) for i in range(3))
        return message(REPLY, serial, OWNER, "ias", code + struct.pack("<I", len(texts)) + texts)
    if member == "HandleBluetoothCallPcmLogSwitch":
        return message(REPLY, serial, OWNER, "i", code)
    return message(REPLY, serial, OWNER, "is", code + string('{"devices":[]}'))


def flip(data, choose):
    for _ in range(choose.randint(1, 8)):
        data[choose.randrange(len(data))] = choose.randrange(256)


def exaggerate(data, choose):
    """Puts an extreme number where a length may be."""
    at = choose.randrange(0, len(data) - 3, 4)
    data[at:at + 4] = struct.pack("<I", choose.choice([0, 1, 0x7FFFFFFF, 0xFFFFFFFF, 1 << 26, (1 << 27) + 1]))


def cut(data, choose):
    del data[choose.randrange(1, len(data)):]


def insert(data, choose):
    at = choose.randrange(len(data))
    data[at:at] = bytes(choose.randrange(256) for _ in range(choose.randint(1, 40)))


def reverse(data, choose):
    """Claims the other byte order."""
    data[0] = ord("B")


def corrupt(good, choose):
    data = bytearray(good)
    choose.choice([flip, flip, flip, exaggerate, exaggerate, cut, insert, reverse])(data, choose)
    return bytes(data)


def corrupted_copy(good, serial, choose):
    """From the answer itself, or from another message, with types or a sender that it should not have."""
    others = [message(ERROR, serial, OWNER, "s", string("-")),
              message(SIGNAL, serial, BUS, "sss", b"".join(pad(string(text), 4) for text in ("a", "", ":1.9"))),
              message(REPLY, serial, OWNER, "aaaaaaaaav", bytes(64)),
              message(REPLY, serial, ":1.66", "ib", struct.pack("<iI", 66, 1))]
    return corrupt(good if choose.random() < 0.7 else choose.choice(others), choose)


class Client:
    def __init__(self, connection, choose):
        self.connection = connection
        self.choose = choose
        self.received = b""

    def need(self, size):
        while len(self.received) < size:
            more = self.connection.recv(65536)
            if not more:
                raise EOFError
            self.received += more

    def take(self, size):
        self.need(size)
        taken, self.received = self.received[:size], self.received[size:]
        return taken

    def greet(self):
        self.take(1)
        while True:
            while b"\r\n" not in self.received:
                self.need(len(self.received) + 1)
            line = self.take(self.received.index(b"\r\n") + 2).split()
            if line[0] == b"BEGIN":
                return
            answers = {b"AUTH": b"OK " + b"0" * 32 if len(line) > 2 else b"DATA", b"DATA": b"OK " + b"0" * 32,
                       b"NEGOTIATE_UNIX_FD": b"AGREE_UNIX_FD"}
            self.connection.sendall(answers.get(line[0], b"ERROR") + b"\r\n")

    def call(self):
        """The next call's member and serial."""
        self.need(16)
        body, serial, fields = struct.unpack_from("<III", self.received, 4)
        data = self.take((16 + fields + 7) // 8 * 8 + body)
        at = 16
        while at < 16 + fields:
            code, kind = data[at], data[at + 2:at + 3]
            if kind == b"g":
                size = data[at + 4] + 6
            else:
                size = 8 if kind == b"u" else 9 + struct.unpack_from("<I", data, at + 4)[0]
            if code == 3:
                return data[at + 8:at + size - 1].decode(), serial
            at += (size + 7) // 8 * 8
        raise EOFError

    def serve(self):
        try:
            self.greet()
            self.connection.settimeout(PATIENCE)
            while True:
                member, serial = self.call()
                good = answer_to(member, serial)
                is_greeting = member in ("Hello", "AddMatch", "GetNameOwner", "StartServiceByName")
                if not is_greeting or self.choose.random() < CORRUPTED_GREETINGS:
                    self.connection.sendall(corrupted_copy(good, serial, self.choose))
                self.connection.sendall(good)
        except (EOFError, OSError):
            self.connection.close()


def accept(listening):
    for number in range(SEED, 1 << 62):
        connection, _ = listening.accept()
        threading.Thread(target=Client(connection, random.Random(number)).serve, daemon=True).start()


def main():
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "bus")
        with socket.socket(socket.AF_UNIX) as listening:
            listening.bind(path)
            listening.listen(64)
            threading.Thread(target=accept, args=(listening,), daemon=True).start()
            print(f"unix:path={path}", flush=True)
            sys.stdin.read()


main()
