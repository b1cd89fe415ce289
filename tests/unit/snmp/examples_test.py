#!/usr/bin/env python3
"""examples_test.py BUILD_DIR COMPILER NM [CMAKE_ARGUMENT...]: installs the SNMP library of a build tree into an empty
folder, builds examples/ against nothing but that, in each form of the library, and runs them beside a real agent."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
WITH_SNMPD = [sys.executable, "-m", "sim.with_snmpd"]
WITH_PRINTERS = [sys.executable, "-m", "sim.with_printers"]
PRINTERS = {"10.9.0.101", "10.9.0.102", "10.9.0.103", "10.9.0.104", "10.9.5.105"}

WALK = """1.3.6.1.4.1.53017.99.2.1.1 = 10
1.3.6.1.4.1.53017.99.2.1.3 = 30
1.3.6.1.4.1.53017.99.2.1.300 = 70
1.3.6.1.4.1.53017.99.2.2.1 =
1.3.6.1.4.1.53017.99.2.2.3 = third"""
SUPPLIES = """SUPPLY                              LEVEL       OF     LEFT
black toner                          2920     4000      73%
waste box                              -3       -2     some"""

GET = (["get", "127.0.0.1", "1.3.6.1.2.1.1.1.0", "1.3.6.1.4.1.53017.99.1.5.0"], 0,
       "1.3.6.1.2.1.1.1.0 = simulated printer\n1.3.6.1.4.1.53017.99.1.5.0 = 8640000")
RUNS = [
    GET,
    (["get", "127.0.0.1", "1.3.9"], 1, ""),
    (["walk", "127.0.0.1", "1.3.6.1.4.1.53017.99.2"], 0, WALK),
    (["supplies", "127.0.0.1"], 0, SUPPLIES),
]


def run(*command, **options):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stdout}")
    return done.stdout


def run_example(folder, arguments, world=WITH_SNMPD):
    program = folder / arguments[0]
    if program.with_suffix(".exe").exists():
        return subprocess.run([ROOT / "sim/bin/wine-run", program.with_suffix(".exe"), *arguments[1:]],
                              env={**os.environ, "WINE_RUN_INSIDE": " ".join(world)}, capture_output=True, text=True)
    return subprocess.run([ROOT / "sim/bin/in-namespace", *world, program, *arguments[1:]], capture_output=True, text=True)


def failures_of(runs, form, folder, prefix):
    for library in (prefix / "bin").glob("*.dll"):  # where Windows looks first
        shutil.copy(library, folder)
    failures = 0
    for arguments, status, output in runs:
        done = run_example(folder, arguments)
        lines = "\n".join(line.rstrip() for line in done.stdout.splitlines())
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
    # In any order; a host with several adapters may answer over each, and over IPv6 too.
    good = done.returncode == 0 and PRINTERS <= {line.split()[0] for line in done.stdout.splitlines()}
    print(f"{'passed' if good else 'FAILED'}: discover ({form})")
    if not good:
        print(f"exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return not good


def build_with_cmake(form, prefix, work, cmake_arguments):
    folder = work / form
    run("cmake", "-G", "Ninja", "-S", ROOT / "examples", "-B", folder, f"-Dztsnmp_DIR={prefix}/lib/cmake/ztsnmp",
        f"-DEXAMPLES_LIBRARY=ztsnmp::{form}", "-DCMAKE_BUILD_TYPE=Release", *cmake_arguments)
    run("cmake", "--build", folder)
    return folder


def build_with_pkg_config(package, prefix, work, compiler, flags):
    folder = work / f"pkg-config-{package}"
    folder.mkdir()
    words = run("pkg-config", "--cflags", "--libs", package, env={
        **os.environ, "PKG_CONFIG_PATH": f"{prefix}/lib/pkgconfig"}).split()
    program = folder / "get"
    if "mingw" in compiler:
        program = folder / "get.exe"
        flags = ["-static", *flags]  # the compiler's runtime, as examples/CMakeLists.txt does
    run(compiler, "-std=c++20", ROOT / "examples/get.cpp", "-o", program, *words, *flags, f"-Wl,-rpath,{prefix}/lib")
    return folder


def exports_of(library, nm):
    return {line.split()[-1] for line in run(nm, library).splitlines() if " T " in line}


def main():
    build_tree, compiler, nm, cmake_arguments = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3], sys.argv[4:]
    flags = [flag for argument in cmake_arguments if "_FLAGS=" in argument for flag in argument.split("=", 1)[1].split()]
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
            missing = exports_of(prefix / "lib/libztsnmp.dll.a", nm) - exports_of(prefix / "lib/libZT.dll.a", nm)
            if missing:
                print("FAILED: ZT.exe does not export", *sorted(missing))
                failures += 1
    sys.exit(1 if failures else 0)


main()
