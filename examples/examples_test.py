#!/usr/bin/env python3
"""examples_test.py BUILD_DIR COMPILER OBJDUMP [CMAKE_ARGUMENT...]: installs the SNMP library of a build tree into an
empty folder, builds examples/ against nothing but that, in each form, and runs them beside a real agent."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
WITH_SNMPD = [sys.executable, "-m", "sim.with_snmpd"]
WITH_PRINTERS = [sys.executable, "-m", "sim.with_printers"]
PRINTERS = {*(f"10.9.0.10{n}" for n in range(1, 5)), "10.9.5.105", *(f"fe80::10{n}" for n in range(1, 6))}

WALK = """1.3.6.1.4.1.53017.99.2.1.1 = 10
1.3.6.1.4.1.53017.99.2.1.3 = 30
1.3.6.1.4.1.53017.99.2.1.300 = 70
1.3.6.1.4.1.53017.99.2.2.1 =
1.3.6.1.4.1.53017.99.2.2.3 = third"""
SUPPLIES = """SUPPLY                              LEVEL       OF     LEFT
black toner                          2920     4000      73%
waste box                              -3       -2     some
drum  unit [31m                        50      100      50%"""
COLUMN = "1.3.6.1.2.1.43.11.1.1.6"
TWO_ROWS = f"{COLUMN}.1.1 = black toner\n{COLUMN}.1.2 = waste box\n"
DRUM = COLUMN + r".1.10 = drum\x0D\x0Aunit\x1B[31m"

GET = (
    ["get", "127.0.0.1", COLUMN + ".1.10", "1.3.6.1.4.1.53017.99.1.5.0"],
    0,
    DRUM + "\n1.3.6.1.4.1.53017.99.1.5.0 = 8640000",
)
RUNS = [
    GET,
    (["get", "127.0.0.1", "1.3.9"], 1, "SNMP : GET ERROR (agent's error 2, object 1)"),
    (["walk", "127.0.0.1", "1.3.6.1.4.1.53017.99.2"], 0, WALK),
    (["walk", "127.0.0.1", COLUMN, "3"], 0, TWO_ROWS + DRUM),
    (["walk", "127.0.0.1", COLUMN, "2"], 1, TWO_ROWS + "stopped after 2 rows"),
    (["walk"], 2, "usage: walk HOST OID [ROWS]\nIt stops after so many ROWS, 10000 unless given."),
    (["supplies", "127.0.0.1"], 0, SUPPLIES),
]


def run(*command, **options):
    done = subprocess.run(
        [str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options
    )
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}")
    return done.stdout


def run_example(folder, arguments, world=WITH_SNMPD):
    program = folder / arguments[0]
    if program.with_suffix(".exe").exists():
        return subprocess.run(
            [ROOT / "sim/bin/wine-run", program.with_suffix(".exe"), *arguments[1:]],
            env={**os.environ, "WINE_RUN_INSIDE": " ".join(world), "WINEDLLOVERRIDES": "iphlpapi=n,b"},
            capture_output=True,
            text=True,
        )
    return subprocess.run(
        [ROOT / "sim/bin/in-namespace", *world, program, *arguments[1:]], capture_output=True, text=True
    )


def failures_of(runs, form, folder, prefix):
    for library in (prefix / "bin").glob("*.dll"):  # where Windows looks first
        shutil.copy(library, folder)
        shutil.copy(library, folder / "Iphlpapi.dll")  # Discovery over IPv6 needs the system's own.
    failures = 0
    for arguments, status, output in runs:
        done = run_example(folder, arguments)
        lines = "\n".join(line.rstrip() for line in (done.stdout + done.stderr).splitlines())
        good = (done.returncode, lines) == (status, output)
        print(f"{'passed' if good else 'FAILED'}: {' '.join(arguments)} ({form})")
        if not good:
            print(f"exit code {done.returncode} instead of {status}\n{done.stdout}{done.stderr}")
            failures += 1
    return failures


def discovery_fails(form, folder):
    done = run_example(folder, ["discover"], WITH_PRINTERS)
    if done.returncode == 77:  # no network of several printers is to be had here
        print(done.stdout.strip())
        return False
    # In any order; a host with several adapters may answer over each.
    good = done.returncode == 0 and PRINTERS <= {re.split("[ %]", line)[0] for line in done.stdout.splitlines()}
    print(f"{'passed' if good else 'FAILED'}: discover ({form})")
    if not good:
        print(f"exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return not good


def build_with_cmake(form, prefix, work, cmake_arguments):
    folder = work / form
    run(
        "cmake",
        "-G",
        "Ninja",
        "-S",
        ROOT / "examples",
        "-B",
        folder,
        f"-Dztsnmp_DIR={prefix}/lib/cmake/ztsnmp",
        f"-DEXAMPLES_LIBRARY=ztsnmp::{form}",
        "-DCMAKE_BUILD_TYPE=Release",
        *cmake_arguments,
    )
    run("cmake", "--build", folder)
    return folder


def build_with_pkg_config(package, prefix, work, compiler, flags):
    folder = work / f"pkg-config-{package}"
    folder.mkdir()
    words = run(
        "pkg-config", "--cflags", "--libs", package, env={**os.environ, "PKG_CONFIG_PATH": f"{prefix}/lib/pkgconfig"}
    ).split()
    program = folder / "get"
    if "mingw" in compiler:
        program = folder / "get.exe"
        flags = ["-static", *flags]  # the compiler's runtime, as examples/CMakeLists.txt does
    run(compiler, "-std=c++20", ROOT / "examples/get.cpp", "-o", program, *words, *flags, f"-Wl,-rpath,{prefix}/lib")
    return folder


def declared_names(compiler, headers):
    """The mangled names of all members that the headers declare, as the compiler's debug information lists them."""
    listed = run(
        compiler,
        "-std=c++20",
        "-S",
        "-g",
        "-fno-eliminate-unused-debug-types",
        "-femit-class-debug-always",
        "-include",
        headers / "ztsnmp.h",
        "-x",
        "c++",
        os.devnull,
        "-o",
        "-",
    )
    names = set()
    for name in re.findall(r"class ZTSNMP_API (\w+)", "".join(header.read_text() for header in headers.glob("*.h"))):
        scope = f"{len(name)}{name}"
        # Every class must have these, even where the compiler would make them by itself.
        members = {f"_ZN{scope}{member}" for member in ("C4Ev", "C4ERKS_", "aSERKS_", "D4Ev")}
        if name not in ("SNMPDataType", "NetworkAddress"):  # whose other members have no body
            members |= set(re.findall(rf'"(_ZNK?{scope}(?!\d+k[A-Z])\w+)\\0"', listed))  # constants left out
        # One name stands for both forms of a constructor or destructor.
        names |= {re.sub(rf"({scope}[CD])4", rf"\g<1>{form}", member) for member in members for form in (1, 2)}
    return names


def main():
    build_tree, compiler, objdump, cmake_arguments = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3], sys.argv[4:]
    flags = [
        flag for argument in cmake_arguments if "_FLAGS=" in argument for flag in argument.split("=", 1)[1].split()
    ]
    failures = 0
    os.chdir(ROOT)  # where Python finds the package sim
    with tempfile.TemporaryDirectory() as temporary:
        work = pathlib.Path(temporary)
        prefix = work / "installed"
        run("cmake", "--install", build_tree, "--prefix", prefix)
        for form in ("ztsnmp", "static"):
            folder = build_with_cmake(form, prefix, work, cmake_arguments)
            failures += failures_of(RUNS, form, folder, prefix) + discovery_fails(form, folder)
        for package in ("ztsnmp", "ztsnmp-static"):
            folder = build_with_pkg_config(package, prefix, work, compiler, flags)
            failures += failures_of([GET], f"pkg-config {package}", folder, prefix)
        if (prefix / "bin/ZT.exe").exists():
            # Linked, and no more: a program cannot run code of another EXE, see examples/README.md.
            build_with_cmake("agent", prefix, work, cmake_arguments)
            declared = declared_names(compiler, prefix / "include/ztsnmp")
            for program in ("ZT.exe", "ztsnmp.dll"):
                wrong = declared ^ set(re.findall(r"\b_ZN\w+\b(?<!D0Ev)", run(objdump, "-p", prefix / "bin" / program)))
                print(f"{'FAILED' if wrong else 'passed'}: {len(declared)} exports of {program}", *sorted(wrong))
                failures += bool(wrong)
    sys.exit(1 if failures else 0)


main()
