#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Ends the real program while a plant host and a controlling station keep it busy.

    endofprogram.py PROGRAM SAMPLE

Each test starts PROGRAM on a fresh root, lets the machine run so slowly that no job ends by itself, and asks for the end through the
automation port. The program has to end by itself, soon, with exit code 0, and with nothing in its log about an order that did not end.
"""
import hashlib
import hmac
import json
import os
import socket
import sys
import threading
import unittest

import hostconformance
from hostconformance import WAIT, Host, Program, free_port, wait_until

KEY = "0123456789abcdef" * 4
FOREVER = "0.00001"


class Lines:
    """JSON objects, one a line, in both directions."""

    def __init__(self, connection):
        self.socket = connection
        self.socket.settimeout(WAIT)
        self.reader = self.socket.makefile("rb")

    def send(self, value):
        self.socket.sendall(json.dumps(value).encode() + b"\n")

    def read(self):
        line = self.reader.readline()
        return json.loads(line) if line else None

    def close(self):
        self.reader.close()
        self.socket.close()


class Automation(Lines):
    def __init__(self, path):
        super().__init__(socket.socket(socket.AF_UNIX))
        self.socket.connect(path)

    def call(self, method):
        self.send({"jsonrpc": "2.0", "id": 1, "method": method})
        return self.read()["result"]


class Station(Lines):
    """A controlling station that has proved its key."""

    def __init__(self, port):
        super().__init__(socket.create_connection(("127.0.0.1", port), WAIT))
        server, own, name = self.read()["nonce"], "5" * 64, "line"
        text = "tessera-station\n%s\n%s\n%s" % (server, own, name)
        self.send({"type": "proof", "station": name, "nonce": own,
                   "mac": hmac.new(KEY.encode(), text.encode(), hashlib.sha256).hexdigest()})
        if self.read()["type"] != "welcome":
            raise AssertionError("the station is not welcome")

    def command(self, name, *args):
        self.send({"type": "cmd", "name": name, "args": args})


class SlowProgram(Program):
    """A station of the server kind that runs its jobs so slowly that they do not end by themselves."""

    def __init__(self, program, sample):
        self.station_port = free_port()
        super().__init__(program, sample)
        self.automation = Automation(self.folder.name + "/s")

    def prepare(self):
        with open(self.root + "/ini/SystemParam.ini", "a", encoding="utf-8") as ini:
            ini.write("[Mode]\nWorkMode=3\n")
        with open(self.root + "/ini/CommandServer.ini", "w", encoding="utf-8") as ini:
            ini.write("[server]\nport=%d\n" % self.station_port)
        with open(os.open(self.root + "/ini/CommandServer.key", os.O_WRONLY | os.O_CREAT, 0o600), "w") as key:
            key.write(KEY + "\n")
        return ["--sim-speed", FOREVER, "--automation", self.folder.name + "/s"]

    def is_running(self):
        return self.automation.call("card.state")["activity"] == "running"

    def wait_for_run(self):
        wait_until(self.is_running, "a run")

    def end(self):
        """Asks for the end and gives exit code, error output and log."""
        self.automation.call("app.quit")
        self.automation.close()
        return self.wait_end()


class EndOfProgram(unittest.TestCase):
    def setUp(self):
        self.program = SlowProgram(hostconformance.PROGRAM, hostconformance.SAMPLE)
        self.addCleanup(self.program.kill)

    def compare_end(self, told):
        code, errors, log = told
        self.assertEqual(code, 0, errors[-4000:])
        lines = [line for line in errors.splitlines() if not line.startswith("新连接IP: ")]
        # what came of the sample's import is told first, its page last
        self.assertEqual(lines[0], hostconformance.SAMPLE)
        page = next(at for at, line in enumerate(lines) if line.startswith("页面: "))
        self.assertEqual(lines[page + 1:], [])
        self.assertNotIn("did not end after a stop", log)

    def flood(self, connection, data):
        """Sends until the other side has had enough of it."""
        def send():
            try:
                while True:
                    connection.sendall(data)
            except OSError:
                pass
        thread = threading.Thread(target=send)
        thread.start()
        self.addCleanup(thread.join)
        self.addCleanup(connection.close)

    def mute(self, connection):
        """What it does not read piles up in the program and not in the system."""
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)

    def test_while_nothing_is_connected(self):
        self.compare_end(self.program.end())

    def test_during_a_run_that_a_host_ordered(self):
        host = Host(self.program)
        host.send(b"_VZSetOffset(0%1,2,3,0,0,0,0);")
        self.program.wait_for_run()
        host.send(b"_VZSetOffset(0);" * 100 + b"_VZGetLayerP")
        self.compare_end(self.program.end())
        while host.socket.recv(65536):
            pass
        host.close()

    def test_during_a_run_after_its_host_has_gone(self):
        host = Host(self.program)
        host.send(b"_VZSetOffset(0);")
        self.program.wait_for_run()
        host.close()
        self.compare_end(self.program.end())

    def test_during_a_run_that_a_station_ordered(self):
        station = Station(self.program.station_port)
        station.command("RunManualStart", "0", "1")
        self.program.wait_for_run()
        self.compare_end(self.program.end())
        self.assertEqual(station.read(), {"type": "refused", "reason": "server closed"})
        self.assertIsNone(station.read())
        station.close()

    def test_with_a_station_that_has_nothing_to_do(self):
        station = Station(self.program.station_port)
        stranger = Lines(socket.create_connection(("127.0.0.1", self.program.station_port), WAIT))
        self.compare_end(self.program.end())
        self.assertEqual(station.read(), {"type": "refused", "reason": "server closed"})
        station.close()
        stranger.close()

    def test_under_a_host_that_never_reads(self):
        host = Host(self.program)
        host.send(b"_VZSetOffset(0);")
        self.program.wait_for_run()
        self.mute(host.socket)
        self.flood(host.socket, b"_VZGetLayerParas(0,0);" * 1000)
        self.compare_end(self.program.end())

    def test_under_a_station_that_never_reads(self):
        station = Station(self.program.station_port)
        station.command("RunManualStart", "0", "0")
        self.program.wait_for_run()
        self.mute(station.socket)
        line = json.dumps({"type": "cmd", "name": "SetCurDoc", "args": ["plate"]}).encode() + b"\n"
        self.flood(station.socket, line * 1000)
        self.compare_end(self.program.end())

    def test_of_a_run_by_a_signal(self):
        host = Host(self.program)
        host.send(b"_VZSetOffset(0);")
        self.program.wait_for_run()
        self.program.automation.close()
        self.program.process.terminate()
        self.compare_end(self.program.wait_end())
        host.close()


if __name__ == "__main__":
    hostconformance.main(__doc__)
