"""A Wine prefix of one's own: a clone of the template, with registry values laid in before Windows starts."""

import functools
import os
import re
import shutil
import signal
import struct
import subprocess
from pathlib import Path

from .paths import SCRIPTS

REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_QWORD = 1, 2, 3, 4, 7, 11


@functools.cache
def template() -> Path:
    """The prefix that others are cloned from. Clones must lie on the same file system."""
    made = subprocess.run([SCRIPTS / "wine-template"], check=True, stdout=subprocess.PIPE, text=True)
    return Path(made.stdout.strip())


class Prefix:
    """The Windows in `folder`."""

    def __init__(self, folder: Path):
        self.folder = folder
        self._running = False

    @classmethod
    def fresh(cls, folder: Path) -> "Prefix":
        """A new Windows in a folder that must not exist yet."""
        subprocess.run([SCRIPTS / "clone-prefix", template(), folder], check=True)
        return cls(folder)

    @property
    def drive(self) -> Path:
        """Drive C."""
        return self.folder / "drive_c"

    def environment(self) -> dict[str, str]:
        # Wine's server keeps its socket in a temporary folder, and leaves that behind.
        return {"WINEPREFIX": str(self.folder), "WINEARCH": "win64", "TMPDIR": str(self.folder)}

    def set_registry(self, key: str, values: dict[str, object]) -> None:
        r"""Lays values under HKEY_LOCAL_MACHINE\key; the key is made even without any. Windows must not be running.

        A value is an int (REG_DWORD), a str (REG_SZ) or a pair (type, bytes).
        """
        with open(self.folder / "system.reg", "a", encoding="utf-8") as file:
            file.write("\n[%s] 0\n" % key.replace("\\", "\\\\"))
            for name, value in values.items():
                file.write('"%s"=%s\n' % (_escape(name), reg_text(value)))

    def registry(self, key: str) -> dict[str, str] | None:
        r"""The values under HKEY_LOCAL_MACHINE\key as Wine writes them; None without the key. Windows must not be
        running."""
        wanted = "[%s]" % key.replace("\\", "\\\\").lower()
        found = None
        inside = False
        for line in (self.folder / "system.reg").read_text(encoding="utf-8").splitlines():
            if line.startswith("["):
                inside = line.lower().startswith(wanted)
                if inside and found is None:
                    found = {}
            elif inside and (match := re.match(r'"((?:[^"\\]|\\.)*)"=(.*)', line)):
                found[match[1]] = match[2]
        return found

    def start_windows(self, environment: dict[str, str]) -> None:
        """Starts Wine's server and its services if they do not run yet.

        Two programs that each start them at once get in each other's way. And the services inherit the output of the
        program that starts them: what they say, a crash of theirs for example, must not pass for the agent's.
        """
        if self._running:
            return
        self._server("-p")
        subprocess.run(
            ["wine", "hostname"],
            env=environment | {"WINEDEBUG": "-all"},
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        self._running = True

    def stop_windows(self) -> None:
        """Ends every process of this prefix; the registry is written to its files."""
        self._server("-k")
        self._server("-w")
        self._running = False

    def kill_windows(self) -> None:
        """Ends every process of this prefix at once; what Windows has not written yet is lost."""
        mark = f"WINEPREFIX={self.folder}".encode()
        for process in Path("/proc").glob("[0-9]*"):
            try:
                if mark in (process / "environ").read_bytes().split(b"\0"):
                    os.kill(int(process.name), signal.SIGKILL)
            except OSError:
                pass  # It has ended by itself, or is another user's.

    def _server(self, option: str) -> None:
        subprocess.run(
            ["wineserver", option],
            env=os.environ | self.environment(),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )

    def remove(self) -> None:
        shutil.rmtree(self.folder, ignore_errors=True)


def _escape(text: str) -> str:
    return text.replace("\\", "\\\\").replace('"', '\\"')


def reg_text(value: object) -> str:
    """A value as files of the registry have it."""
    if isinstance(value, int):
        return "dword:%08x" % value
    if isinstance(value, str):
        kind, data = REG_SZ, value.encode("utf-16-le") + b"\0\0"
    else:
        kind, data = value
    return "hex(%x):%s" % (kind, ",".join("%02x" % byte for byte in data))


def dword(number: int) -> tuple[int, bytes]:
    return REG_DWORD, struct.pack("<I", number)
