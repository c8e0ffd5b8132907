# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The measured programs, as a desktop without assistive technology starts them."""

import pathlib
import subprocess
import time

import harness
from emulated_scale import EmulatedScale
from session import end
from waiting import wait_until

LOGGING = {"QT_FORCE_STDERR_LOGGING": "1", "QT_LOGGING_RULES": "postalscale*.info=true"}
CLIPBOARD_ON = "[defaultValue]\n300=selected\n"
EVERYTHING_ON = ("[General]\nsettledOnly=true\n\n[defaultValue]\n"
                 + "".join(f"{tag}=selected\n" for tag in range(100, 700, 100)))


def binary(name):
    return str((harness.binaries() / name).resolve())


def settled_pss(process_id):
    """KiB, once the program's own part stays the same for half a second: what is shared changes
    with other programs."""
    own = []

    def settled():
        time.sleep(0.1)
        own.append(_smaps_value(process_id, "Private_Dirty:"))
        return len(own) > 5 and len(set(own[-5:])) == 1

    wait_until(settled, "the memory settled")
    return _smaps_value(process_id, "Pss:")


def processor_seconds(process_id):
    return sum(int(path.read_text(encoding="ascii").split()[0])
               for path in _tasks(process_id, "schedstat")) / 1e9


def wake_ups(process_id):
    """Of all threads, since the start: each sleep that was begun ends with one."""
    count = 0
    for path in _tasks(process_id, "status"):
        for line in path.read_text(encoding="ascii").splitlines():
            if line.startswith("voluntary_ctxt_switches:"):
                count += int(line.split()[1])
    return count


class Started:
    """A program whose window has been painted for the first time."""

    def __init__(self, session, *command, settings=None, environment=None):
        folder = session.new_folder("started")
        write_settings(folder, settings)
        environment = (session.environment | {"XDG_CONFIG_HOME": str(folder)}
                       | (environment or {}))
        self._watch = subprocess.Popen(
            [binary("frame-watch"), "start", *command], env=environment, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        milliseconds, process_id = self._watch.stdout.readline().split()
        self.milliseconds = float(milliseconds)
        self.process_id = int(process_id)

    def end(self):
        self._watch.stdin.close()
        self._watch.wait()
        self._watch.stdout.close()


def processor_time_of_start(session, command, settings, environment=None):
    """Milliseconds, of all threads, until the first frame is handed to the X server."""
    folder = session.new_folder("started")
    write_settings(folder, settings)
    output = subprocess.run(
        [command], check=True, text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        env=session.environment | {"XDG_CONFIG_HOME": str(folder),
                                   "LD_PRELOAD": binary("start-cost.so")}
        | (environment or {})).stdout
    return float(output)


class Weighing:
    """The program with the emulated scale, a parcel on the pan."""

    def __init__(self, session, *, settings=None, preload=None, environment=None, wrapper=(),
                 log_pattern=None, reports=5):
        """@param wrapper a command that starts the program in its turn
        @param log_pattern of the lines that log has then
        @param reports that the scale has been sent when this returns"""
        folder = session.new_folder("weighing")
        command = [*wrapper, binary("postal-scale")]
        if preload:
            command = ["sh", "-c", 'LD_PRELOAD="$LD_PRELOAD:$0" exec "$@"', binary(preload),
                       *command]
        write_settings(folder, settings)
        before = set(self._windows(session))
        self._emulator = session.spawn(
            [binary("postal-scale-emulator"), "--socket", folder / "socket", "--weight", "1234",
             "--", *command],
            session.environment | {"XDG_CONFIG_HOME": str(folder),
                                   "XDG_RUNTIME_DIR": str(folder)} | (environment or {})
            | ({"QT_MESSAGE_PATTERN": log_pattern} | LOGGING if log_pattern else {}),
            stderr=subprocess.PIPE if log_pattern else subprocess.DEVNULL, text=True)
        self.log = harness.LogLines(self._emulator.stderr) if log_pattern else None
        self.scale = EmulatedScale(str(folder / "socket"))
        self.scale.wait_for_reports(reports)
        self.window = wait_until(lambda: set(self._windows(session)) - before, "a window").pop()
        children = pathlib.Path(f"/proc/{self._emulator.pid}/task/{self._emulator.pid}/children")
        self.process_id = int(children.read_text(encoding="ascii").split()[0])

    def end(self):
        self.scale.close()
        end(self._emulator)
        if self.log:
            self.log.finish()

    @staticmethod
    def _windows(session):
        return session.managed_windows().get("postal-scale", [])


def write_settings(folder, settings):
    if settings:
        file = folder / "postal-scale" / "postal-scale.ini"
        file.parent.mkdir()
        file.write_text(settings, encoding="utf-8")


def _smaps_value(process_id, key):
    text = pathlib.Path(f"/proc/{process_id}/smaps_rollup").read_text(encoding="ascii")
    return next(int(line.split()[1]) for line in text.splitlines() if line.startswith(key))


def _tasks(process_id, name):
    return pathlib.Path(f"/proc/{process_id}/task").glob(f"*/{name}")
