# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The host between browser and program, with either of them played by the test."""

import contextlib
import os
import pathlib
import random
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

from waiting import PATIENCE, wait_until

HOST = pathlib.Path(os.environ["POSTAL_SCALE_BIN"]) / "postal-scale-browser-host"

STRANGER = 65534
LISTENER = """
import socket, sys
listener = socket.socket(socket.AF_UNIX)
listener.bind(sys.argv[1])
listener.listen()
print("heard", listener.accept()[0].recv(16))
"""


class HostTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = f"{self.folder.name}/postal-scale-browser.socket"

    def start_host(self):
        host = subprocess.Popen([HOST], env={"XDG_RUNTIME_DIR": self.folder.name}, bufsize=0,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(host.stdout.close)
        self.addCleanup(host.stdin.close)
        self.addCleanup(host.wait, PATIENCE)
        self.addCleanup(host.kill)
        return host

    def listen(self):
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        listener.bind(self.path)
        listener.listen()
        listener.settimeout(PATIENCE)
        return listener

    def accept(self, listener):
        program, _ = listener.accept()
        program.settimeout(PATIENCE)
        self.addCleanup(program.close)
        return program

    def linked_host(self):
        listener = self.listen()
        host = self.start_host()
        return host, self.accept(listener)

    def test_every_byte_passes_in_both_directions(self):
        host, program = self.linked_host()
        messages = random.Random(20261121).randbytes(1 << 20)
        received = {}

        def receive(name, read):
            data = b""
            while len(data) < len(messages):
                data += read(65536)
            received[name] = data

        parts = [
            threading.Thread(target=host.stdin.write, args=[messages]),
            threading.Thread(target=program.sendall, args=[messages[::-1]]),
            threading.Thread(target=receive, args=["program", program.recv]),
            threading.Thread(target=receive, args=["browser", host.stdout.read]),
        ]
        for part in parts:
            part.start()
        for part in parts:
            part.join()
        self.assertTrue(received["program"] == messages)
        self.assertTrue(received["browser"] == messages[::-1])

    def test_a_part_of_a_message_is_not_kept_back(self):
        host, program = self.linked_host()
        host.stdin.write(b"\x05\x00")
        self.assertEqual(program.recv(16), b"\x05\x00")
        program.sendall(b"\x07")
        self.assertEqual(host.stdout.read(16), b"\x07")

    def test_it_waits_for_the_program(self):
        host = self.start_host()
        program = self.accept(self.listen())
        program.sendall(b"hello")
        self.assertEqual(host.stdout.read(16), b"hello")

    def test_a_socket_left_behind_is_no_program(self):
        self.listen().close()
        host = self.start_host()
        host.stdin.close()
        self.assertEqual(host.wait(PATIENCE), 0)

    def test_it_goes_while_the_program_takes_nobody_in(self):
        listener = self.listen()
        listener.listen(0)
        with contextlib.suppress(BlockingIOError):
            while True:
                waiting = socket.socket(socket.AF_UNIX)
                self.addCleanup(waiting.close)
                waiting.setblocking(False)
                waiting.connect(self.path)
        host = self.start_host()
        host.stdin.close()
        self.assertEqual(host.wait(PATIENCE), 0)

    def test_it_goes_with_the_browser(self):
        host, program = self.linked_host()
        host.stdin.close()
        self.assertEqual(program.recv(16), b"")
        self.assertEqual(host.wait(PATIENCE), 0)

    def test_it_goes_when_the_browser_no_longer_listens(self):
        host, program = self.linked_host()
        host.stdout.close()
        program.sendall(b"hello")
        self.assertEqual(host.wait(PATIENCE), 0)

    def test_it_goes_with_the_program(self):
        host, program = self.linked_host()
        program.close()
        self.assertEqual(host.wait(PATIENCE), 0)
        self.assertEqual(host.stdout.read(16), b"")

    @unittest.skipUnless(os.geteuid() == 0, "only root can act as another user")
    def test_a_stranger_gets_no_word(self):
        os.chmod(self.folder.name, 0o777)
        stranger = subprocess.Popen([sys.executable, "-c", LISTENER, self.path], user=STRANGER,
                                    stdout=subprocess.PIPE)
        self.addCleanup(stranger.stdout.close)
        self.addCleanup(stranger.wait, PATIENCE)
        self.addCleanup(stranger.kill)
        wait_until(lambda: os.path.exists(self.path), "the stranger's socket")
        host = self.start_host()
        host.stdin.write(b"secret")
        self.assertEqual(stranger.stdout.readline(), b"heard b''\n")
        host.stdin.close()
        self.assertEqual(host.wait(PATIENCE), 0)
        self.assertEqual(host.stdout.read(16), b"")


if __name__ == "__main__":
    unittest.main(verbosity=2)
