# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The program's end of the browser link, for what the program itself never sends."""

import os
import pathlib
import select
import socket

from message_stream import MessageStream
from waiting import PATIENCE, wait_until

PROTOCOL = 2

_QUIET = 0.5  # seconds after which the browser has nothing more to say


class ProgramStandIn:
    """Waits for one browser and greets it."""

    def __init__(self, session, protocol=PROTOCOL):
        path = session.environment["XDG_RUNTIME_DIR"] + "/postal-scale-browser.socket"
        self._path = path
        pathlib.Path(path).unlink(missing_ok=True)  # of a program that was killed
        self._server = socket.socket(socket.AF_UNIX)
        self._server.bind(path)
        self._server.listen()
        self._server.settimeout(3 * PATIENCE)
        connection, _ = self._server.accept()
        connection.settimeout(PATIENCE)
        self._stream = MessageStream(connection)
        self._last_run = 0
        self._unanswered = set()
        self.page = None
        self._stream.send({"hello": {"protocol": protocol, "version": "9.9"}})
        self.hello = self._stream.receive()["hello"]

    def close(self):
        self._stream.close()
        self._server.close()
        os.unlink(self._path)

    def open(self, page, url, host):
        """In the browser's page, from a blank one: what comes of the same address is another matter."""
        page.go("about:blank")
        page.go(url)
        wait_until(lambda: self._answers(host), f"{url} linked", 3 * PATIENCE)

    def wait_for_page(self, host):
        """That comes by itself. And for the end of everything that was said before."""
        while not (self.page and self.page["host"] == host) or self.has_more_to_read():
            self._take()

    def has_more_to_read(self, within=_QUIET):
        """@param within in seconds"""
        return bool(select.select([self._stream], [], [], within)[0])

    def fill(self, *steps):
        """The numbers of fields written and of those changed by the page; None if it was gone."""
        fields = self.run(*steps)["fields"]
        return fields and (fields["written"], fields["changed"])

    def run(self, *steps):
        """The answer to a plan."""
        self.post(*steps)
        return self.wait_for_answer()

    def post(self, *steps):
        self._last_run += 1
        self._unanswered.add(self._last_run)
        self._stream.send(
            {"plan": {"id": self._last_run, "page": self.page["page"], "steps": steps}})

    def wait_for_answer(self):
        """To the latest plan."""
        while True:
            message = self._take()
            if "ran" in message and message["ran"]["id"] == self._last_run:
                return message["ran"]

    def _answers(self, host):
        """Whether the page last heard of is there still, and of that host."""
        while self.has_more_to_read(0):
            self._take()
        return self.page and self.page["host"] == host and self.fill() is not None

    def _take(self):
        message = self._stream.receive()
        if "current" in message:
            self.page = message["current"]
        # As the program, which would end the link.
        if "ran" in message:
            self._unanswered.remove(message["ran"]["id"])
        return message
