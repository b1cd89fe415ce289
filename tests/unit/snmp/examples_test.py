#!/usr/bin/env python3
"""examples_test.py BUILD_DIR [CMAKE_ARGUMENT...]: installs the SNMP library of a build tree into an empty folder, builds
examples/ against nothing but that, in each form of the library, and runs the programs beside a real agent."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
WITH_SNMPD = [sys.executable, str(ROOT / "tests/unit/snmp/agent/with_snmpd.py")]

WALK = """1.3.6.1.4.1.53017.99.2.1.1 = 10
1.3.6.1.4.1.53017.99.2.1.3 = 30
1.3.6.1.4.1.53017.99.2.1.300 = 70
1.3.6.1.4.1.53017.99.2.2.1 =
1.3.6.1.4.1.53017.99.2.2.3 = third"""
SUPPLIES = """SUPPLY                              LEVEL       OF     LEFT
black toner                          2920     4000      73%
waste box                              -3       -2     some"""

RUNS = [
    (["get", "127.0.0.1", "1.3.6.1.2.1.1.1.0", "1.3.6.1.4.1.53017.99.1.5.0"], 0,
     "1.3.6.1.2.1.1.1.0 = simulated printer\n1.3.6.1.4.1.53017.99.1.5.0 = 8640000"),
    (["get", "127.0.0.1", "1.3.9"], 1, ""),
    (["walk", "127.0.0.1", "1.3.6.1.4.1.53017.99.2"], 0, WALK),
    (["supplies", "127.0.0.1"], 0, SUPPLIES),
]


def run(*command):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}")


def run_example(folder, arguments):
    program = folder / arguments[0]
    if program.with_suffix(".exe").exists():
        return subprocess.run([ROOT / "sim/wine-run", program.with_suffix(".exe"), *arguments[1:]],
                              env={**os.environ, "WINE_RUN_INSIDE": " ".join(WITH_SNMPD)}, capture_output=True, text=True)
    return subprocess.run([ROOT / "sim/in-namespace", *WITH_SNMPD, program, *arguments[1:]],
                          capture_output=True, text=True)


def check_form(form, prefix, work, cmake_arguments):
    build = work / form
    run("cmake", "-G", "Ninja", "-S", ROOT / "examples", "-B", build, f"-Dztsnmp_DIR={prefix}/lib/cmake/ztsnmp",
        f"-DEXAMPLES_LIBRARY=ztsnmp::{form}", "-DCMAKE_BUILD_TYPE=Release", *cmake_arguments)
    run("cmake", "--build", build)
    if form == "agent":
        return 0  # Linked, and no more: a program cannot run code of another EXE, see examples/README.md.
    for library in (prefix / "bin").glob("*.dll"):  # where Windows looks first
        shutil.copy(library, build)
    failures = 0
    for arguments, status, output in RUNS:
        done = run_example(build, arguments)
        lines = "\n".join(line.rstrip() for line in done.stdout.splitlines())
        good = (done.returncode, lines) == (status, output)
        print(f"{'passed' if good else 'FAILED'}: {' '.join(arguments)} ({form})")
        if not good:
            print(f"exit code {done.returncode} instead of {status}\n{done.stdout}{done.stderr}")
            failures += 1
    return failures


def main():
    build_tree, cmake_arguments = pathlib.Path(sys.argv[1]), sys.argv[2:]
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        prefix = work / "installed"
        run("cmake", "--install", build_tree, "--prefix", prefix)
        forms = ["ztsnmp", "static"]
        if any((prefix / "lib").glob("*ZT*.a")):
            forms.append("agent")
        sys.exit(1 if sum([check_form(form, prefix, work, cmake_arguments) for form in forms]) else 0)


main()
