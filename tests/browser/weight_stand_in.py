# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The program's end of the browser link, for a reading in whatever state. It notes all that is said,
either way."""

import contextlib
import os
import pathlib
import select
import socket
import threading

from message_stream import MessageStream
from program_stand_in import PROTOCOL
from waiting import PATIENCE, wait_until

# Of 1000 g.
TEXTS = {"lb": "2.205", "oz": "35.27", "kg": "1", "g": "1000", "lb oz": "2 4"}

_RHYTHM = 0.3  # seconds between two readings


class WeightStandIn:
    def __init__(self, session, state="settled", texts=None, unit="lb"):
        self.answer = {"state": state, "texts": texts or TEXTS, "unit": unit, "age": 5}
        self.heard = []
        self.said = []
        self.is_slow = False  # what is asked for waits until answer_now()
        self.is_resting = False  # no reading leaves
        self._waiting = 0
        self._is_closing = False
        self._path = session.environment["XDG_RUNTIME_DIR"] + "/postal-scale-browser.socket"
        pathlib.Path(self._path).unlink(missing_ok=True)  # of a program that was killed
        self._server = socket.socket(socket.AF_UNIX)
        self._server.bind(self._path)
        self._server.listen()
        self._server.settimeout(3 * PATIENCE)
        self._greet()
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()
        wait_until(lambda: any("hello" in message for message in self.heard), "the extension")

    def close(self):
        self._is_closing = True
        with contextlib.suppress(OSError):  # gone already
            self._connection.shutdown(socket.SHUT_RDWR)
        with socket.socket(socket.AF_UNIX) as waker:  # where no extension comes any more
            waker.connect(self._path)
            self._thread.join()
        self._stream.close()
        self._server.close()
        os.unlink(self._path)

    def weigh(self, texts):
        """Each reading leaves, from now on, where it is wanted."""
        self.answer["texts"] = texts

    def wait_until_asked(self):
        wait_until(lambda: self._waiting > 0, "the weight asked for")

    def answer_now(self):
        """What was asked for since it became slow, which it is no more."""
        self.is_slow = False
        while self._waiting > 0:
            self._waiting -= 1
            self._send({"weight": self.answer | {"news": False}})

    def wishes(self):
        return [message["weight"] for message in self.heard if "weight" in message]

    def wait_until_followed(self):
        wait_until(self.is_followed,
                   lambda: f"a field that follows; heard {self.heard}")

    def is_followed(self):
        """By the extension's worker of now."""
        for message in reversed(self.heard):
            if "hello" in message:
                return False
            if message.get("weight") in ("follow", "stop"):
                return message["weight"] == "follow"
        return False

    def is_quiet(self, seconds):
        """Nothing is said for so long."""
        count = len(self.heard)
        select.select([], [], [], seconds)
        return len(self.heard) == count

    def _send(self, message):
        self.said.append(message)
        self._stream.send(message)

    def _greet(self):
        self._connection, _ = self._server.accept()
        self._stream = MessageStream(self._connection)
        self._send({"hello": {"protocol": PROTOCOL, "version": "9.9"}})

    def _serve(self):
        with contextlib.suppress(OSError):  # closed by this side
            while not self._is_closing:
                with contextlib.suppress(OSError):  # closed by the other one, which comes again
                    self._listen()
                self._stream.close()
                self._greet()

    def _listen(self):
        while True:
            while not select.select([self._stream], [], [], _RHYTHM)[0]:
                if self.is_followed() and not self.is_resting:
                    self._send({"weight": self.answer | {"news": True}})
            message = self._stream.receive()
            self.heard.append(message)
            if message != {"weight": "once"}:
                continue
            self._waiting += 1
            if not self.is_slow:
                self.answer_now()
