# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The browser's end of the link, as an extension that shows any page it is told to."""

import socket
import threading

from message_stream import MessageStream

PROTOCOL = 2


class ExtensionStandIn:
    """Answers, from a thread of its own, that each field of the page has been written; but a page
    may have only the first so many of those that it is asked for, and make other numbers of some."""

    def __init__(self, session, protocol=PROTOCOL, version="0.1.0", connection=None):
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

    def show(self, page, host, fields=None, changed=0):
        self._fields[page] = fields, changed
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
                plan = self._stream.receive()["plan"]
                self._answers.wait()
                fields, changed = self._fields[plan["page"]]
                # Those that depend on an answer stand for fields that the page lacks.
                written = {text.split("].value=")[0] for text in plan["steps"]
                           if isinstance(text, str) and "].value=" in text}
                self._stream.send({"ran": {"id": plan["id"], "fields": {
                    "written": len(list(written)[:fields]), "changed": changed}, "notes": []}})
        except OSError:
            pass  # closed, by either side


def connected_to_program(session):
    connection = socket.socket(socket.AF_UNIX)
    connection.connect(session.environment["XDG_RUNTIME_DIR"] + "/postal-scale-browser.socket")
    return connection
