#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Speaks to the port for the plant host of the real program, knowing nothing but its documented texts.

    hostconformance.py PROGRAM SAMPLE

It starts PROGRAM on a fresh root with SAMPLE as the only document and compares every answer, byte for byte, with a model of the
protocol written here. Reads are told apart by the lines that the program logs of them, so that a split is a split.
"""
import glob
import os
import random
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

SCALE = float(os.environ.get("TESSERA_TIMEOUT_SCALE", "1"))
WAIT = 20.0 * SCALE
PREFIXES = ("_VZTest(", "_VZSetOffset(", "_VZGetLayerParas(", "_VZMarkStop(")
# A new document's pens, with a fibre laser.
LAYER = "1,500,2000,50,0,20000,50,100,100,50,3000,500,100,200,1,0,10,0"
RECEIVED = "Tcp接收消息---".encode()


def wait_until(condition, what):
    end = time.monotonic() + WAIT
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.001)
    raise AssertionError("waited in vain for " + what)


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Program:
    """The program off screen, at full speed, with one document."""

    def __init__(self, program, sample):
        self.folder = tempfile.TemporaryDirectory()
        self.root = os.path.join(self.folder.name, "root")
        self.port = free_port()
        self.questions = 0
        os.makedirs(self.root + "/ini")
        with open(self.root + "/ini/SystemParam.ini", "w", encoding="utf-8") as ini:
            ini.write("[Host]\nScribePort=%d\n" % self.port)
        self.errors = open(self.folder.name + "/errors", "w+b")
        self.process = subprocess.Popen([program, "-platform", "offscreen", "--root", self.root, "--import", sample] + self.prepare(),
                                        stdout=subprocess.DEVNULL, stderr=self.errors,
                                        env=dict(os.environ, XDG_RUNTIME_DIR=self.folder.name))
        wait_until(self.is_ready, "the program")

    def prepare(self):
        """Further settings of the root, and the arguments that go with them."""
        return ["--sim-speed", "0"]

    def is_ready(self):
        """It listens before it has its document, so ask until the answer is another."""
        if self.process.poll() is not None:
            raise AssertionError("the program ended with %d" % self.process.returncode)
        try:
            with socket.create_connection(("127.0.0.1", self.port), 1) as host:
                host.sendall(b"_VZGetLayerParas(0,0);")
                host.settimeout(1)
                return host.recv(4096).startswith(b"_VZGetLayerParas(0,")
        except OSError:
            return False

    def log(self):
        data = b""
        for name in sorted(glob.glob(self.root + "/日志文件/*.log")):
            with open(name, "rb") as file:
                data += file.read()
        return data

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        return self.wait_end()

    def wait_end(self):
        """Exit code, error output and log of a program that was told to end."""
        code = self.process.wait(WAIT)
        self.errors.seek(0)
        told = code, self.errors.read().decode("utf-8", "replace"), self.log().decode("utf-8", "replace")
        self.errors.close()
        self.folder.cleanup()
        return told

    def kill(self):
        """After a test that failed; a program that has ended stays as it is."""
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait(WAIT)


class Host:
    def __init__(self, program):
        self.program = program
        self.socket = socket.create_connection(("127.0.0.1", program.port), WAIT)
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.text = b""
        self.reads = None

    def send(self, data):
        self.socket.sendall(data)

    def send_as_one_read(self, data):
        """Returns when the program has read it: whatever comes next is another read.

        The log is written a moment later than the reads that it tells of. A question with a number of its own goes first: when that
        is in the log, no line of an older read can still come and be taken for that of this one.
        """
        self.program.questions += 1
        question = b"question%d_VZGetLayerParas(0);" % self.program.questions
        self.send(question)
        self.answers(1)
        wait_until(lambda: question in self.program.log(), "the log of a question")
        before = self.program.log().count(RECEIVED)
        self.send(data)
        wait_until(lambda: self.program.log().count(RECEIVED) > before, "the log of a read of %r" % data)

    def answers(self, count):
        while self.text.count(b";") < count:
            more = self.socket.recv(65536)
            if not more:
                raise AssertionError("closed after %r" % self.text)
            self.text += more
        parts = self.text.split(b";")
        self.text = b";".join(parts[count:])
        return [part + b";" for part in parts[:count]]

    def close(self):
        self.socket.close()


def arguments(frame):
    """What stands between the first "(" and the first ")", None when that is nothing."""
    left, right = frame.find("("), frame.find(")")
    return frame[left + 1:right] if left >= 0 and right > left + 1 else None


def integer(text, low=-2**31, high=2**31 - 1):
    """What is no number of the range is 0."""
    try:
        value = int(text.strip(), 10)
    except ValueError:
        return 0
    return value if low <= value <= high else 0


def layer_answer(frame):
    inside = arguments(frame)
    if inside is None:
        return "1,数据格式错误"
    fields = inside.split(",")
    if len(fields) < 2:
        return "1,有效数据长度错误"
    if integer(fields[0]) != 0 or integer(fields[1], 0, 2**32 - 1) >= 20:
        return "1,文档号超出范围"
    return "0," + LAYER


def offset_answer(frame):
    """For a machine that is idle, without alarms and with one document that can be marked."""
    inside = arguments(frame)
    if inside is None:
        return "1,数据格式错误"
    parts = inside.split("%")
    if len(parts) > 1 and any(len(record.split(",")) != 7 for record in parts[1].split("#")):
        return "1,有效数据长度错误"
    if not 0 <= integer(parts[0]) <= 1:
        return "1,文档号超出范围"
    return "0,文档执行成功"


def model(frame):
    """The answers to one frame, in their order."""
    found = []
    if "_VZSetOffset(" in frame:
        found.append("_VZSetOffset(" + offset_answer(frame))
    if "_VZGetLayerParas(" in frame:
        found.append("_VZGetLayerParas(" + layer_answer(frame))
    if "_VZMarkStop()" in frame:
        found.append("_VZMarkStop(0,终止运行成功")
    return [(text + ");").encode("gbk") for text in found]


def expected(frames):
    return [answer for frame in frames for answer in model(frame)]


# Frames that are answered at once and in their order.
FRAMES = ["_VZTest(a)", "_VZGetLayerParas(0,0)", "_VZMarkStop()", "_VZMarkStop(1)", "_VZGetLayerParas(0)", "",
          "_VZGetLayerParas()", "_VZGetLayerParas(99,0)", "_VZGetLayerParas(0,20)", "xx_VZGetLayerParas(0,19)yy",
          "_VZMarkStop()_VZGetLayerParas(0,1)", "_VZGetLayerParas(0,1)_VZMarkStop()_VZTest(", "hello"]
BURST = "".join(frame + ";" for frame in FRAMES).encode("latin-1")


class Conformance(unittest.TestCase):
    program = None

    @classmethod
    def setUpClass(cls):
        cls.program = Program(PROGRAM, SAMPLE)

    @classmethod
    def tearDownClass(cls):
        code, errors, _ = cls.program.stop()
        if code != 0:
            raise AssertionError("the program ended with %d: %s" % (code, errors[-4000:]))

    def setUp(self):
        self.host = Host(self.program)
        # The first answer is the proof that this connection has taken the place of the one before.
        self.ask(["_VZGetLayerParas(0,0)"])

    def tearDown(self):
        self.ask(["_VZGetLayerParas(0)"])
        self.assertEqual(self.host.text, b"")
        self.host.close()

    def compare(self, frames):
        wanted = expected(frames)
        self.assertEqual(self.host.answers(len(wanted)), wanted)

    def ask(self, frames):
        self.host.send("".join(frame + ";" for frame in frames).encode("latin-1"))
        self.compare(frames)

    def test_documented_frames_in_one_burst(self):
        self.host.send(BURST)
        self.compare(FRAMES)

    def test_burst_split_at_every_byte(self):
        for at in range(1, len(BURST)):
            with self.subTest(at=at):
                self.host.send_as_one_read(BURST[:at])
                self.host.send(BURST[at:])
                self.compare(FRAMES)

    def test_burst_byte_by_byte(self):
        for at in range(len(BURST)):
            self.host.send(BURST[at:at + 1])
        self.compare(FRAMES)

    def test_bursts_merged(self):
        self.host.send(BURST * 50)
        self.compare(FRAMES * 50)

    def test_zero_byte_at_every_place_of_a_read(self):
        """What stands behind it in the read is lost; the rest is given again in a second read."""
        frame = b"_VZGetLayerParas(0,3);"
        for at in range(len(frame)):
            with self.subTest(at=at):
                self.host.send_as_one_read(frame[:at] + b"\0" + b"_VZMarkStop();\0\0;;")
                self.host.send(frame[at:])
                self.compare(["_VZGetLayerParas(0,3)"])

    def test_two_prefixes_act_twice_in_the_fixed_order(self):
        for first in PREFIXES[2:]:
            for second in PREFIXES[2:]:
                for inside in ("", "0,0", "0"):
                    self.ask(["%s%s)%s%s)" % (first, inside, second, inside)])

    def test_bytes_above_ascii_are_no_command_and_no_harm(self):
        self.host.send(bytes(range(1, 59)) + bytes(range(60, 256)) + b";" + "文档执行成功".encode("gbk") + b";")
        self.ask(["_VZMarkStop()"])

    def test_runs_and_their_refusals(self):
        for frame in ("_VZSetOffset(0)", "_VZSetOffset()", "_VZSetOffset(0%)", "_VZSetOffset(0%1.5,0.25,0,0,0,0,0#3,1,0,0,0,0,0)",
                      "_VZSetOffset(0%1,2,3,4,5,6,7#1,2,3,4,5,6,7,8)", "_VZSetOffset(2)", "_VZSetOffset(-1)",
                      "_VZSetOffset(0%0,0,0,0,0,x,y%rest)", "_VZSetOffset(a)"):
            with self.subTest(frame=frame):
                self.ask([frame])

    def test_a_newer_host_takes_over_without_a_word(self):
        older = self.host
        older.send_as_one_read(b"_VZMarkSt")
        self.host = Host(self.program)
        self.host.send(b"op();")
        self.compare(["_VZMarkStop()"])
        self.assertEqual(older.socket.recv(100), b"")
        older.close()

    def test_a_reset_in_mid_command_leaves_its_text(self):
        self.host.send_as_one_read(b"_VZMarkSt")
        self.host.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
        self.host.close()
        self.host = Host(self.program)
        self.host.send(b"op();")
        self.compare(["_VZMarkStop()"])

    def test_random_frames_in_random_pieces(self):
        draw = random.Random(20261121)
        pieces = list(PREFIXES[2:]) + ["_VZTest(", "0", "0,0", "0,7", "1", "-1", "19", "20", "4294967295", ",", "(", ")", ")", "()", "%", "#",
                                       "a", " ", "\xff", "_VZ", "_VZMarkStop()"]
        for _ in range(60):
            frames = ["".join(draw.choice(pieces) for _ in range(draw.randrange(7))) for _ in range(draw.randrange(1, 30))]
            data = "".join(frame + ";" for frame in frames).encode("latin-1")
            while data:
                size = draw.randrange(1, 40)
                self.host.send(data[:size])
                data = data[size:]
            self.compare(frames)


PROGRAM = SAMPLE = ""


def main(usage):
    """Runs the tests of the script that was started: its first two arguments are PROGRAM and SAMPLE."""
    global PROGRAM, SAMPLE
    if len(sys.argv) < 3:
        sys.exit(usage)
    PROGRAM, SAMPLE = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    unittest.main(argv=[sys.argv[0]] + sys.argv[3:], verbosity=2)


if __name__ == "__main__":
    main(__doc__)
