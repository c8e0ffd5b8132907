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


# Orca writes its log now and then only; so each line is written at once.
_LINE_BY_LINE = """
import builtins, runpy, sys

real_open = builtins.open

def open_for_lines(file, mode="r", buffering=-1, *arguments, **options):
    return real_open(file, mode, 1 if mode == "w" else buffering, *arguments, **options)

builtins.open = open_for_lines
runpy.run_path("/usr/bin/orca", run_name="__main__")
"""


class Orca:
    def __init__(self, session):
        """@param session where the window is that is to be read"""
        self._file = session.folder / "orca.log"
        # Without a voice: one without sound waits for it now and then, and Orca with it.
        self._process = session.spawn(
            ["/usr/bin/python3", "-c", _LINE_BY_LINE, "--replace", "--debug-file", str(self._file)],
            session.environment | {"SPEECHD_CMD": "/bin/false"},
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(self.said, "Orca's first words", PATIENCE)

    def said(self, mark=0):
        """Since then, utterance by utterance, without the word for what kind it is."""
        said = [_KIND.sub("", each) for each in self._utterances()[mark:]]
        return [words for words in said if words]

    def mark(self):
        return len(self._utterances())

    def _utterances(self):
        if not self._file.exists():
            return []
        return _SAID.findall(self._file.read_text(encoding="utf-8", errors="replace"))

    def end(self):
        self._process.kill()
        self._process.wait()
