# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The build folder of the mutation run: one mutated source is compiled, the tests are linked anew
with its object before the libraries, so that the linker leaves the library's own one out."""

import dataclasses
import hashlib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build" / "mutation"


def run(command, cwd=FOLDER):
    return subprocess.run(command, cwd=cwd, capture_output=True, text=True)


def prepare(jobs):
    """Configures and builds the unit tests."""
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    configured = subprocess.run(
        ["cmake", "-S", ROOT, "-B", FOLDER, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=",
         "-DCMAKE_CXX_FLAGS=-O1 -w", *launcher],
        stdout=subprocess.DEVNULL,
    )
    if configured.returncode or subprocess.run(
        ["ninja", "-C", FOLDER, f"-j{jobs}", "--quiet", "unit-tests", "application-tests"]
    ).returncode:
        raise SystemExit("the unit tests do not build")


@dataclasses.dataclass(frozen=True)
class Test:
    name: str
    program: str
    arguments: tuple
    folder: str  # where it is run
    environment: tuple
    source: str  # its folder under tests/


def unit_tests():
    """The tests of the unit level. What they rely on is set up."""
    listed = json.loads(run(["ctest", "--show-only=json-v1", "-L", "^unit$"]).stdout)
    tests = []
    for test in listed["tests"]:
        properties = {entry["name"]: entry["value"] for entry in test["properties"]}
        program = pathlib.Path(test["command"][0])
        if program.parent != FOLDER / "bin":
            subprocess.run(test["command"], cwd=properties["WORKING_DIRECTORY"], check=True)
            continue
        folder = properties["WORKING_DIRECTORY"]
        tests.append(
            Test(
                name=test["name"],
                program=str(program),
                arguments=tuple(test["command"][1:]),
                folder=folder,
                environment=tuple(properties.get("ENVIRONMENT", [])),
                source=str(pathlib.Path(folder).relative_to(FOLDER / "tests")),
            )
        )
    return tests


class LinkedProgram:
    """How a test program is linked, and of which of the product's objects it is made."""

    def __init__(self, program):
        target = str(pathlib.Path(program).relative_to(FOLDER))
        line = run(["ninja", "-t", "commands", target]).stdout.splitlines()[-1]
        arguments = shlex.split(line)
        arguments = arguments[arguments.index("&&") + 1 :]
        arguments = arguments[: arguments.index("&&")]
        place = arguments.index("-o")
        self.before = [*arguments[:place], "-w"]
        if shutil.which("ld.lld"):
            self.before.append("-fuse-ld=lld")
        self.after = arguments[place + 2 :]
        # The linker names the members that it takes from the libraries.
        traced = self.link_command(os.devnull, [])
        trace = run([*traced, "-Wl,--trace"])
        self.members = set(re.findall(r"(\S+\.a)\((\S+)\)", trace.stdout))

    def link_command(self, output, objects):
        return [*self.before, *map(str, objects), "-o", str(output), *self.after]

    def uses(self, library, member):
        return any(
            name == member and (FOLDER / path).resolve() == library for path, name in self.members
        )


class MutatedSource:
    """One source of the product, compiled over and over: its headers are compiled once, ahead."""

    def __init__(self, path, work):
        self.path = path
        self.work = work
        shutil.rmtree(work, ignore_errors=True)
        self.source = work / "source" / path
        self.source.parent.mkdir(parents=True)
        self.object = work / "mutant.o"
        self.text = (ROOT / path).read_text()
        entry = compile_command(path)
        output = entry.pop()
        self.command = entry
        parts = re.fullmatch(r"(.*)CMakeFiles/([^/]+)\.dir/(.*)", output)
        self.library = (FOLDER / parts[1] / f"lib{parts[2]}.a").resolve()
        self.member = parts[3]
        self.precompile_headers()
        if not self.compile(self.text):
            raise SystemExit(f"{path} does not compile")
        self.original = self.digest()
        self.symbols = self.defined_symbols()
        self.original_object = work / "original.o"
        shutil.copy(self.object, self.original_object)

    def precompile_headers(self):
        header = self.work / "headers.h"
        includes = re.findall(r"^#include .*", self.text, re.MULTILINE)
        header.write_text("\n".join(includes) + "\n")
        made = run([*self.command, "-x", "c++-header", header, "-o", f"{header}.gch"])
        if made.returncode:
            raise SystemExit(f"the headers of {self.path} do not compile:\n{made.stderr}")
        self.command = [*self.command, "-include", str(header)]

    def compile(self, text):
        self.source.write_text(text)
        self.object.unlink(missing_ok=True)
        return run([*self.command, "-c", self.source, "-o", self.object]).returncode == 0

    def digest(self):
        return hashlib.sha256(self.object.read_bytes()).hexdigest()

    def defined_symbols(self):
        lines = run(["nm", "--defined-only", "--extern-only", self.object]).stdout.splitlines()
        return {line.split()[-1] for line in lines if line.split()[-2] in "TBDR"}


def compile_command(path):
    """The compiler's arguments without input and output, and the output at last."""
    for entry in json.loads((FOLDER / "compile_commands.json").read_text()):
        if entry["file"] == str(ROOT / path):
            arguments = shlex.split(entry["command"])
            if arguments[0].endswith("ccache"):
                arguments = arguments[1:]
            output = arguments[arguments.index("-o") + 1]
            del arguments[arguments.index("-o") :]
            return [*arguments, output]
    raise SystemExit(f"{path} is not compiled")
