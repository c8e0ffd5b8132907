# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The program under test, watched from outside: its log and what the kernel knows of it."""

import contextlib
import os
import pathlib
import re
import struct
import subprocess
import tempfile
import threading
import time

from system import PATIENCE, wait_until

SYSTEM_CALL_POLL = "7"


def as_user(user):
    """Options of a process of that user's, who has used nothing yet."""
    home = tempfile.mkdtemp()
    os.chown(home, user, user)
    environment = {"HOME": home, "XDG_RUNTIME_DIR": home, "LANG": "C.UTF-8",
                   "PATH": "/usr/bin:/bin", "QT_QPA_PLATFORM": "offscreen"}
    return {"user": user, "group": user, "extra_groups": [], "env": environment, "text": True}


def run(path, user, *arguments):
    """Until it ends: its status, what it says and what it complains of."""
    result = subprocess.run([path, *arguments], check=False, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, **as_user(user))
    return result.returncode, result.stdout, result.stderr


class Program:
    def __init__(self, command, options):
        """@param options: of its process"""
        # What it does is told by its log.
        options["env"]["QT_LOGGING_RULES"] = "postalscale*.info=true"
        self.command = command
        self.options = options
        self.process = subprocess.Popen(command, stderr=subprocess.PIPE, **options)
        self.lines = []
        self.seen = 0  # lines that expect() has passed
        self.ended = False
        self.is_stopped = False
        self.news = threading.Condition()
        threading.Thread(target=self.collect, daemon=True).start()
        self.expect("Select .*")

    def collect(self):
        for line in self.process.stderr:
            with self.news:
                self.lines.append(line.rstrip())
                self.news.notify_all()
        with self.news:
            self.ended = True
            self.news.notify_all()

    def expect(self, pattern):
        """The match of the next line that is as a whole as @p pattern, later than the one before."""
        expression = re.compile(r"postalscale(?:\.io)?: " + pattern)
        with self.news:
            match = self.news.wait_for(lambda: self.find(expression) or self.ended, PATIENCE)
        if not isinstance(match, re.Match):
            reason = "the program has ended" if self.ended else "it did not come"
            raise AssertionError(f"expected the line {pattern!r}: {reason}")
        return match

    def find(self, expression):
        while self.seen < len(self.lines):
            self.seen += 1
            match = expression.fullmatch(self.lines[self.seen - 1])
            if match:
                return match
        return None

    def count(self, text):
        """How often that line has been written so far."""
        with self.news:
            return sum(line.partition(": ")[2] == text for line in self.lines)

    def lines_during(self, seconds):
        """What is written in a time that starts now."""
        with self.news:
            start = len(self.lines)
        time.sleep(seconds)
        with self.news:
            self.seen = len(self.lines)
            return [line.partition(": ")[2] for line in self.lines[start:]]

    def operate(self, *arguments):
        """By another start, as a key of the desktop does; what that answers."""
        return subprocess.run([*self.command, *arguments], check=True, stdout=subprocess.PIPE,
                              timeout=PATIENCE, **self.options).stdout

    @property
    def identifier(self):
        return self.process.pid

    def check_alive(self):
        status = self.process.poll()
        assert status is None, f"the program ended with status {status}"

    def stop(self):
        if self.is_stopped:
            return
        self.process.terminate()
        try:
            self.wait_for_end()
        except subprocess.TimeoutExpired:
            # It waits for a silent scale; the second signal does not.
            self.process.terminate()
            self.process.wait()

    def kill(self):
        """It leaves the scale on."""
        self.process.kill()
        self.wait_for_end()

    def wait_for_end(self):
        """Which is meant to come: the status."""
        self.is_stopped = True
        return self.process.wait(PATIENCE)

    def descriptors(self):
        targets = []
        for link in pathlib.Path(f"/proc/{self.identifier}/fd").iterdir():
            # What is closed while the list is read is no longer open.
            with contextlib.suppress(FileNotFoundError):
                targets.append(os.readlink(link))
        return targets

    def open_nodes(self):
        return sorted(name for name in self.descriptors() if name.startswith("/dev/hidraw"))

    def threads(self):
        return len(os.listdir(f"/proc/{self.identifier}/task"))

    def status(self, field):
        text = pathlib.Path(f"/proc/{self.identifier}/status").read_text()
        return re.search(rf"^{field}:\s*(\d+)", text, re.MULTILINE).group(1)

    def waits_for_scale(self):
        """Whether its main thread waits for a report of a hidraw node, and nothing else, now."""
        call = pathlib.Path(f"/proc/{self.identifier}/syscall").read_text().split()
        if call[0] != SYSTEM_CALL_POLL or int(call[2], 16) != 1:
            return False
        with open(f"/proc/{self.identifier}/mem", "rb") as memory:
            memory.seek(int(call[1], 16))
            [descriptor] = struct.unpack("i", memory.read(4))
        target = os.readlink(f"/proc/{self.identifier}/fd/{descriptor}")
        return target.startswith("/dev/hidraw")

    def wait_until_it_waits(self):
        wait_until(self.waits_for_scale, "a wait for a report")
