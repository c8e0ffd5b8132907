# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Orca, and what it says by its own log."""

import re
import subprocess

from waiting import wait_until

PATIENCE = 90
"""Seconds: it may be behind, where other work is done beside it."""

_SAID = re.compile(r"SPEECH OUTPUT: '(.*)' ?\{")

# Some versions say it in one breath with the words, with a full stop.
_KIND = re.compile(r"^notification ?|\.$")


class Orca:
    def __init__(self, session):
        """@param session where the window is that is to be read"""
        self._file = session.folder / "orca.log"
        self._process = session.spawn(["orca", "--replace", "--debug-file", str(self._file)],
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(self.said, "Orca's first words", PATIENCE)

    def said(self, mark=0):
        """Since then, utterance by utterance, without the word for what kind it is."""
        return [words for words in (_KIND.sub("", each) for each in self.utterances()[mark:]) if words]

    def utterances(self):
        """As they stand in the log."""
        if not self._file.exists():
            return []
        return _SAID.findall(self._file.read_text(encoding="utf-8", errors="replace"))

    def mark(self):
        return len(self.utterances())

    def end(self):
        self._process.kill()
        self._process.wait()
