# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A locale that writes 1,5 for one and a half."""

import subprocess
import sys

_NAME = "de_DE.UTF-8"


def make(session):
    """Returns the environment of a program in it. It need not be installed on this machine."""
    folder = session.new_folder("locale")
    subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", folder / _NAME], check=True)
    environment = {"LC_ALL": _NAME, "LANGUAGE": "de", "LOCPATH": str(folder)}
    if _decimal_point(session.environment | environment) != ",":
        raise AssertionError(f"{_NAME} is not in force")
    return environment


def _decimal_point(environment):
    asking = "import locale; locale.setlocale(locale.LC_ALL, ''); print(locale.localeconv()['%s'])"
    return subprocess.run([sys.executable, "-c", asking % "decimal_point"], env=environment,
                          check=True, text=True, stdout=subprocess.PIPE).stdout.strip()
