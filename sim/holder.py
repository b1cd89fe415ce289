r"""Holder: another program of the simulated Windows that has what the agent wants.

    with World() as world, Holder(world, "file", r"C:\agent\UA.dll"):
        world.run("-QName", "Office")
"""

import subprocess

from .paths import WINDOWS
from .world import World

HOLD = WINDOWS / "hold" / "zt-hold.exe"


class Holder:
    """Holds a file or a named object, within a with block; what there is to hold: see sim/windows/hold."""

    def __init__(self, world: World, what: str, name: str):
        world.install(HOLD)
        world.start_windows()
        # The one line that comes is read from a pipe; nobody waits for the pipe's end.
        self._process = subprocess.Popen(
            ["wine", r"C:\agent\zt-hold.exe", what, name],
            env=world.environment() | {"WINEDEBUG": "-all"},
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        if self._process.stdout.readline().strip() != b"held":
            raise AssertionError(f"cannot hold {what} {name}")

    def release(self) -> None:
        self._process.stdin.close()
        self._process.wait()

    def __enter__(self) -> "Holder":
        return self

    def __exit__(self, *_: object) -> None:
        self.release()
        self._process.stdout.close()
