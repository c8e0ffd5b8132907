# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The folder of the program's sockets and of its lock: what may stand in their way there, and who
may listen."""

import os
import pwd
import signal
import socket
import time

import harness
from command_line import CommandLineTest
from waiting import wait_until

LOCK = "postal-scale.lock"
SOCKET = "postal-scale.socket"
NO_LINK = "Browsers cannot link"


class RuntimeFolderTest(CommandLineTest):
    def setUp(self):
        self.folder = self.session.new_folder("runtime")

    @property
    def environment_here(self):
        return {"XDG_RUNTIME_DIR": str(self.folder)}

    def start_here(self, **options):
        program = self.start("--weight", "1234", environment=self.environment_here, **options)
        program.wait_for_reading("1234 grams")
        return program

    def diagnose(self):
        return self.run_program("--doctor", **self.environment_here).output


class LockTest(RuntimeFolderTest):
    def test_whatever_a_killed_start_leaves_is_no_lock(self):
        for left in (b"", b"\x00\xff garbage", b"1\npostal-scale\nelsewhere\n", b"9" * 100_000):
            with self.subTest(left=left[:20]):
                (self.folder / LOCK).write_bytes(left)
                self.assertIn("--  Postal Scale is not running", self.diagnose())
                program = self.start_here()
                self.assertIn("ok  Postal Scale is running", self.diagnose())
                self.assertEqual(program.stop(), 0)

    def test_the_lock_of_one_that_was_killed_is_free_at_once(self):
        program = harness.Program(self.session, arguments=["--weight", "1234"],
                                  environment={"XDG_RUNTIME_DIR": str(self.folder)})
        program.wait_for_reading("1234 grams")
        program.scale.tell("raise-child KILL")
        program.wait_for_end()
        self.assertIn("--  Postal Scale is not running", self.diagnose())

    def test_what_is_in_the_way_of_the_lock_is_named(self):
        for make in (lambda path: path.mkdir(), os.mkfifo,
                     lambda path: path.symlink_to("elsewhere")):
            with self.subTest():
                lock = self.folder / LOCK
                make(lock)
                program = self.start_here()
                self.assertTrue(program.window.says("Later starts do not find this window"))
                self.assertIn(f"{lock} is not a regular file", self.diagnose())
                self.assertEqual(program.stop(), 0)
                lock.rmdir() if lock.is_dir() else lock.unlink()


class UnsafeFolderTest(RuntimeFolderTest):
    """Starts find each other in a folder that the toolkit makes, where it can."""

    def check(self, said, hides_window=False):
        program = self.start_here(settings=harness.USPS_ONLY)
        wait_until(lambda: program.window.says(f"{NO_LINK}: {said}"), "the reason")
        self.assertEqual(
            program.window.says(f"Later starts do not find this window: {said}"), hides_window)
        concerned = "Browsers and later starts" if hides_window else "Browsers"
        findings = self.diagnose()
        self.assertIn(f"!!  {concerned} do not reach the window: {said}\n", findings)
        self.assertEqual(findings.count(said), 1)
        if self.folder:
            self.assertEqual(list(self.folder.iterdir()), [])
        self.assertEqual(program.stop(), 0)

    def test_one_that_others_may_write_into(self):
        self.folder.chmod(0o777)
        self.check(f"others may write into the runtime folder {self.folder}")

    def test_one_of_another_user(self):
        if os.geteuid() != 0:
            self.skipTest("only root can give a folder away")
        os.chown(self.folder, 65534, 65534)
        self.check(f"the runtime folder {self.folder} belongs to another user")

    def test_none(self):
        self.folder = ""
        self.check("there is no runtime folder: XDG_RUNTIME_DIR is not set")


class NoFolderAtAllTest(UnsafeFolderTest):
    @property
    def environment_here(self):
        return super().environment_here | {"TMPDIR": str(self.temporary)}

    def setUp(self):
        super().setUp()
        self.temporary = self.session.new_folder("temporary")
        (self.temporary / f"runtime-{pwd.getpwuid(os.geteuid()).pw_name}").touch()

    def check(self, said, hides_window=True):
        super().check(said, hides_window)


class PeerTest(RuntimeFolderTest):
    """Those that misuse the socket of later starts."""

    def connect(self):
        peer = socket.socket(socket.AF_UNIX)
        self.addCleanup(peer.close)
        # Without a time limit of its own, it waits for a place in the queue.
        peer.connect(str(self.folder / SOCKET))
        peer.settimeout(20)
        return peer

    def test_one_that_never_ends_its_line_is_cut_off(self):
        program = self.start_here()
        peer = self.connect()
        sent = 0
        with self.assertRaises((BrokenPipeError, ConnectionResetError)):
            while sent < 8 * 1024 * 1024:
                sent += peer.send(b"x" * 65536)
        self.assertLess(sent, 8 * 1024 * 1024)
        self.assertEqual(program.window.reading, "1234 grams")

    def test_one_that_says_nothing_is_sent_away(self):
        self.start_here()
        peer = self.connect()
        begin = time.monotonic()
        self.assertEqual(peer.recv(1), b"")
        self.assertGreater(time.monotonic() - begin, 3)

    def test_many_that_say_nothing_keep_nobody_out_for_long(self):
        self.start_here()
        peers = [self.connect() for _ in range(64)]
        # Those beyond the limit are sent away before the others.
        self.assertEqual(peers[-1].recv(1), b"")
        self.assertIn("ok  Postal Scale is running", self.diagnose())

    def test_one_that_does_not_take_its_answer_is_sent_away(self):
        self.start_here()
        peer = self.connect()
        peer.sendall(b'{"request":"reading"}\n')
        wait_until(lambda: peer.recv(65536) == b"", "the end")


class OffscreenTest(RuntimeFolderTest):
    def test_a_second_start_beside_a_window_that_is_nowhere(self):
        process = self.session.spawn([harness.binaries() / "postal-scale"],
                                     self.environment(QT_QPA_PLATFORM="offscreen",
                                                      XDG_RUNTIME_DIR=str(self.folder)))
        self.addCleanup(harness.end, process)
        wait_until((self.folder / SOCKET).exists, "the first")
        again = self.run_program(QT_QPA_PLATFORM="offscreen", XDG_RUNTIME_DIR=str(self.folder))
        self.assertEqual(again.status, 0)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(30), 0)


if __name__ == "__main__":
    harness.main()
