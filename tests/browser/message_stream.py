# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The browser link's messages over a connected socket: JSON behind its length in four bytes."""

import json
import struct


class MessageStream:
    def __init__(self, connection):
        self._connection = connection

    def send(self, message):
        content = json.dumps(message).encode("utf-8")
        self._connection.sendall(struct.pack("=I", len(content)) + content)

    def receive(self):
        (length,) = struct.unpack("=I", self._receive_bytes(4))
        return json.loads(self._receive_bytes(length))

    def close(self):
        self._connection.close()

    def fileno(self):
        return self._connection.fileno()

    def _receive_bytes(self, count):
        data = b""
        while len(data) < count:
            more = self._connection.recv(count - len(data))
            if not more:
                raise ConnectionError("the other side has closed")
            data += more
        return data
