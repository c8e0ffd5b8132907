# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The devices on the bus, moved by line commands."""

import socket
import subprocess

SOCKET = "/run/postal-scale-gadget"


class Bus:
    def __init__(self, carrier):
        process = subprocess.Popen([carrier, SOCKET], stdout=subprocess.PIPE, text=True)
        if process.stdout.readline() != "ready\n":
            raise RuntimeError("the gadgets could not be made")
        connection = socket.socket(socket.AF_UNIX)
        connection.connect(SOCKET)
        self.stream = connection.makefile("rw")
        self.plugged = set()

    def request(self, command):
        self.stream.write(command + "\n")
        self.stream.flush()
        answer = self.stream.readline().rstrip("\n")
        if not answer or answer.startswith("error"):
            raise RuntimeError(f"{command}: {answer or 'the gadgets are gone'}")
        return answer

    def plug(self, device="scale"):
        self.request("plug " + device)
        self.plugged.add(device)

    def unplug(self, device="scale"):
        self.request("unplug " + device)
        self.plugged.discard(device)

    def unplug_all(self):
        for device in sorted(self.plugged):
            self.unplug(device)

    def reset(self):
        self.unplug_all()
        self.answer_polls()
        self.type(0)
        self.form("plain")
        self.delay(0)
        self.copies(1)
        self.length(8)
        self.unasked(0)

    def weight(self, grams, scale=""):
        self.request(f"{scale} weight {grams}")

    def type(self, number):
        self.request(f"type {number}")

    def form(self, name):
        """Of the next plug: plain, wide or composite."""
        self.request(f"form {name}")

    def delay(self, milliseconds):
        self.request(f"delay {milliseconds}")

    def copies(self, count):
        """Of each answer."""
        self.request(f"copies {count}")

    def length(self, count):
        """Bytes of each report."""
        self.request(f"length {count}")

    def unasked(self, milliseconds):
        """Between reports that nobody asks for; 0: there are none."""
        self.request(f"unasked {milliseconds}")

    def say(self, device, *reports):
        """What a scale of the class sends by itself, in hexadecimal, in turn."""
        self.request(f"say {device} {' '.join(reports)}")

    def written(self, device):
        """The output reports that it has received."""
        return [self.stream.readline().rstrip("\n")
                for _ in range(int(self.request("written " + device)))]

    def power(self):
        return self.request("power")

    def ignore_polls(self):
        self.request("silence on")

    def answer_polls(self):
        self.request("silence off")

    def feature_reports(self):
        """Bytes in hexadecimal, oldest first, since the latest call."""
        count = int(self.request("reports"))
        reports = [self.stream.readline().split()[1] for _ in range(count)]
        self.request("clear-reports")
        return reports
