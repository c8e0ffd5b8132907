# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The program's end of the browser link, for what the program itself never sends."""

import json
import os
import select
import socket
import struct

from waiting import PATIENCE

PROTOCOL = 1

_QUIET = 0.5  # seconds after which the browser has nothing more to say


class ProgramStandIn:
    """Waits for one browser and greets it."""

    def __init__(self, session, protocol=PROTOCOL):
        path = session.environment["XDG_RUNTIME_DIR"] + "/postal-scale-browser.socket"
        self._path = path
        self._server = socket.socket(socket.AF_UNIX)
        self._server.bind(path)
        self._server.listen()
        self._server.settimeout(3 * PATIENCE)
        self._connection, _ = self._server.accept()
        self._connection.settimeout(PATIENCE)
        self._last_run = 0
        self.page = None
        self._send({"hello": {"protocol": protocol, "version": "9.9"}})
        self.hello = self._receive()["hello"]

    def close(self):
        self._connection.close()
        self._server.close()
        os.unlink(self._path)

    def wait_for_page(self, host):
        """And for the end of everything that was said before."""
        while not (self.page and self.page["host"] == host) or self.has_more_to_read():
            self._take()

    def has_more_to_read(self):
        return bool(select.select([self._connection], [], [], _QUIET)[0])

    def run(self, *texts):
        """Their results, or None if the page was gone."""
        self._last_run += 1
        self._send({"run": {"id": self._last_run, "page": self.page["page"], "texts": texts}})
        while True:
            message = self._take()
            if "ran" in message and message["ran"]["id"] == self._last_run:
                return message["ran"]["results"]

    def _take(self):
        message = self._receive()
        if "current" in message:
            self.page = message["current"]
        return message

    def _send(self, message):
        content = json.dumps(message).encode("utf-8")
        self._connection.sendall(struct.pack("=I", len(content)) + content)

    def _receive(self):
        (length,) = struct.unpack("=I", self._receive_bytes(4))
        return json.loads(self._receive_bytes(length))

    def _receive_bytes(self, count):
        data = b""
        while len(data) < count:
            more = self._connection.recv(count - len(data))
            if not more:
                raise RuntimeError("the browser is gone")
            data += more
        return data
