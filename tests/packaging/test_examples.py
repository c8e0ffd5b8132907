# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The manual page's examples of --follow, as they stand there."""

import csv
import json
import pathlib
import re
import socket
import subprocess

import harness
from command_line import CommandLineTest
from reading_schema import assert_valid
from waiting import wait_until

_THIS_MACHINE = "127.0.0.1"  # by its number, as there are systems that do not know its name
_MANUAL = pathlib.Path(__file__).parents[2] / "packaging" / "postal-scale.1.in"


def example(word):
    """The one with that word, without the page's own marks."""
    (text,) = [text for text in re.findall(r"^\.EX\n(.*?)^\.EE$", _MANUAL.read_text(encoding="utf-8"),
                                           re.MULTILINE | re.DOTALL) if word in text]
    return text.replace("\\-", "-").replace("\\e", "\\")


def free_port():
    with socket.socket() as probe:
        probe.bind((_THIS_MACHINE, 0))
        return probe.getsockname()[1]


def broker_listens(port):
    with socket.socket() as probe:
        return probe.connect_ex((_THIS_MACHINE, port)) == 0


class ExamplesTest(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.program = self.start("--weight", "1234")
        self.program.wait_for_reading("1234 grams")
        self.folder = self.session.new_folder("desk")

    def play(self, word, settings=None):
        """In a folder of its own, where programs of this build come first.
        @param settings of other programs: texts by the names of files"""
        path = f"{self.folder}:{harness.binaries()}:/usr/bin:/bin"
        environment = self.environment(PATH=path)
        for name, text in (settings or {}).items():
            (pathlib.Path(environment["XDG_CONFIG_HOME"]) / name).write_text(text, encoding="utf-8")
        shell = self.session.spawn(["setsid", "bash", "-c", example(word)], environment,
                                   cwd=self.folder)
        self.addCleanup(shell.wait)
        self.addCleanup(subprocess.run, ["pkill", "-s", str(shell.pid)], check=False)

    def weigh_two_parcels(self):
        self.program.scale.tell("weight 500")
        self.program.wait_for_reading("500 grams")

    def test_message_broker(self):
        # Somebody's own may be running where such programs look.
        port = free_port()
        broker = self.session.spawn(["/usr/sbin/mosquitto", "-p", str(port)],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(harness.end, broker)
        wait_until(lambda: broker_listens(port), "the broker")
        reader = self.session.spawn(["stdbuf", "-oL", "mosquitto_sub", "-d", "-h", _THIS_MACHINE,
                                     "-p", str(port), "-t", "desk/weight"],
                                    stdout=subprocess.PIPE, text=True)
        messages = harness.LogLines(reader.stdout)
        self.addCleanup(messages.finish)
        self.addCleanup(harness.end, reader)
        # What is sent before, nobody keeps.
        messages.wait_for("^Subscribed")
        self.play("mosquitto_pub", {"mosquitto_pub": f"-h {_THIS_MACHINE}\n-p {port}\n"})
        messages.wait_for('"weight":1234')
        self.weigh_two_parcels()
        messages.wait_for('"weight":500')
        for line in messages.since(0, r"^\{"):
            assert_valid(json.loads(line))

    def test_weigh_log(self):
        self.play("weights.csv")
        log = self.folder / "weights.csv"
        wait_until(lambda: log.exists() and log.read_text(), "the first parcel")
        self.weigh_two_parcels()
        wait_until(lambda: log.read_text().count("\n") == 2, "the second parcel")
        with open(log, encoding="utf-8", newline="") as file:
            self.assertEqual([row[1:] for row in csv.reader(file)], [["1234", "g"], ["500", "g"]])

    def test_label(self):
        # The queue's place is taken by a program of the same name.
        queue = self.folder / "lp"
        queue.write_text("#!/bin/sh\nexec cat >> labels\n", encoding="utf-8")
        queue.chmod(0o755)
        self.play("| lp")
        labels = self.folder / "labels"
        wait_until(lambda: labels.exists() and "1234 grams" in labels.read_text(), "a label")
        self.weigh_two_parcels()
        wait_until(lambda: "500 grams" in labels.read_text(), "another label")
        self.assertRegex(labels.read_text(), r"^\d{4}-\d\d-\d\d\n1234 grams\n")


if __name__ == "__main__":
    harness.main()
