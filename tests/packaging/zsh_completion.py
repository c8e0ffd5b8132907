# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What zsh makes of a line when the tab key is pressed, in a terminal of its own."""

import os
import pty
import re
import select
import subprocess
import time

PATIENCE = 30
"""Seconds."""

# The command says what it was started with.
_PREPARATION = """unsetopt beep prompt_cr prompt_sp
fpath=({folder} $fpath)
autoload -Uz compinit && compinit -u -D
postal-scale() {{ print -r -- "<$*>" }}
print -r -- "<is ""ready>"
"""


class Zsh:
    """To be used as a context: the shell ends with it."""

    def __init__(self, completions, working_folder):
        """@param completions the folder with the completion"""
        self._terminal, other_end = pty.openpty()
        self._shell = subprocess.Popen(
            ["zsh", "-f", "-i"], stdin=other_end, stdout=other_end, stderr=other_end,
            cwd=working_folder, start_new_session=True,
            env=os.environ | {"TERM": "dumb", "PS1": "", "HISTFILE": ""})
        os.close(other_end)
        self._send(_PREPARATION.format(folder=completions))
        self._wait_for("is ready")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._shell.kill()
        self._shell.wait()
        os.close(self._terminal)

    def completed(self, line):
        """The arguments of the line, as the command gets them after the tab key and Enter."""
        self._send(f"postal-scale {line}\t\n")
        return self._wait_for(".*?")

    def _send(self, text):
        os.write(self._terminal, text.encode())

    def _wait_for(self, pattern):
        """What the command says; what is typed stands there too, but not between these signs."""
        said, end = "", time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if not select.select([self._terminal], [], [], 1)[0]:
                continue
            said += os.read(self._terminal, 4096).decode(errors="replace")
            if found := re.search(rf"(?m)^<({pattern})>\r?$", said):
                return found.group(1)
        raise AssertionError(f"zsh said: {said!r}")
