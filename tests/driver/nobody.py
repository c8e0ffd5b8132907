# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""For tests of what an ordinary user may not do: root may do everything."""

import os
import pathlib
import pwd
import shutil
import tempfile
import unittest

import harness


def become_nobody():
    """Nobody may not be able to reach the build folder: the programs are copied out of it."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="postal-scale-programs-"))
    unittest.addModuleCleanup(shutil.rmtree, folder)
    for program in ("postal-scale", "postal-scale-emulator", "postal-scale-emulator-guard.so"):
        shutil.copy2(harness.binaries() / program, folder)
    nobody = pwd.getpwnam("nobody")
    for path in (folder, *folder.iterdir()):
        os.chown(path, nobody.pw_uid, nobody.pw_gid)
    os.environ["POSTAL_SCALE_BIN"] = str(folder)
    os.setgroups([])
    os.setresgid(nobody.pw_gid, nobody.pw_gid, nobody.pw_gid)
    os.setresuid(nobody.pw_uid, nobody.pw_uid, nobody.pw_uid)
