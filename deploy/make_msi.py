#!/usr/bin/env python3
"""make_msi.py VERSION ZT.EXE LICENSES.TXT OUTPUT: makes the MSI of the agent. SOURCE_DATE_EPOCH, if set, is the time
that it carries: the same input then gives the same bytes."""

import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import time
import uuid
from pathlib import Path

SOURCE = Path(__file__).resolve().with_name("ZT.wxs")
CODES = uuid.UUID("6FC030EF-21ED-4646-A706-071A753BE436")


def make_msi(version: str, agent: Path, licenses: Path, output: Path) -> None:
    """`version` is X.Y.Z, that of the agent's own resource. Versions are told apart by the product code, files of the
    same version by the package code."""
    content = b"".join(file.read_bytes() for file in (SOURCE, agent, licenses))
    product_code = code(version)
    package_code = code(version + hashlib.sha256(content).hexdigest())
    epoch = int(os.environ.get("SOURCE_DATE_EPOCH", time.time()))

    with tempfile.TemporaryDirectory() as folder:
        # The cabinet has the file's time, the summary that of the clock; both in local time.
        for source, name in ((agent, "ZT.exe"), (licenses, "LICENSES.txt")):
            os.utime(shutil.copyfile(source, Path(folder, name)), (epoch, epoch))
        made = Path(folder, "made.msi")

        def run(*command: object) -> None:
            subprocess.run(
                ["faketime", "-f", time.strftime("%F %T", time.gmtime(epoch)), *map(str, command)],
                check=True,
                cwd=folder,
                env=os.environ | {"TZ": "UTC", "NO_FAKE_STAT": "1"},
            )

        variables = (f"Version={version}", f"ProductCode={product_code}")
        run("wixl", "-a", "x64", *(f"--define={variable}" for variable in variables), "-o", made, SOURCE)
        # wixl leaves a program's version out. Windows would then take the file for one without, which never replaces
        # one with a version, and an upgrade would end with no program at all. Hashes are for files without a version.
        columns = f"`Version`='{version}.0', `Language`='1033'"
        run("msibuild", made, "-q", f"UPDATE `File` SET {columns} WHERE `File`='ZT.exe'")
        run("msibuild", made, "-q", "DELETE FROM `MsiFileHash` WHERE `File_`='ZT.exe'")
        run("msibuild", made, "-s", f"TOVAgent {version}", "The TOVAgent authors", "x64;1033", package_code)
        shutil.copyfile(made, output)


def code(name: str) -> str:
    return "{%s}" % str(uuid.uuid5(CODES, name)).upper()


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    make_msi(sys.argv[1], *map(Path, sys.argv[2:]))
