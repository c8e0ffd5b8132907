# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The browser's end of the link, as an extension that shows any page it is told to."""

import socket
import threading

from message_stream import MessageStream


class ExtensionStandIn:
    """Answers, from a thread of its own, that each field of the page has been written; but a page
    may have only the first so many of those that it is asked for."""

    def __init__(self, session, protocol=1, version="0.1.0", connection=None):
        """@param connection to a host; the program's own socket otherwise"""
        connection = connection or connected_to_program(session)
        self._connection = connection
        self._stream = MessageStream(connection)
        self._fields = {}
        self._answers = threading.Event()
        self._answers.set()
        self._thread = threading.Thread(target=self._answer, daemon=True)
        self._stream.receive()
        self._stream.send({"hello": {"protocol": protocol, "version": version,
                                     "browser": "stand-in"}})
        self._thread.start()

    def show(self, page, host, fields=None):
        self._fields[page] = fields
        self._stream.send({"current": {"page": page, "host": host} if host else None})

    def stop_answering(self):
        self._answers.clear()

    def close(self):
        self._answers.set()
        if self._thread.is_alive():
            self._connection.shutdown(socket.SHUT_RDWR)
            self._thread.join()
        self._stream.close()

    def _answer(self):
        try:
            while True:
                run = self._stream.receive()["run"]
                self._answers.wait()
                fields = self._fields[run["page"]]
                written = [text for text in run["texts"] if "].value=" in text][:fields]
                self._stream.send({"ran": {"id": run["id"], "results": [
                    "1" if text in written else None for text in run["texts"]]}})
        except OSError:
            pass  # closed, by either side


def connected_to_program(session):
    connection = socket.socket(socket.AF_UNIX)
    connection.connect(session.environment["XDG_RUNTIME_DIR"] + "/postal-scale-browser.socket")
    return connection
