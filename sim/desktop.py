"""What a person does at the agent's windows: Display draws them, Hands looks at them and presses their buttons.

Windows exist without a display, too; then they can be looked at and pressed, but there is no picture of them.

    with World() as world, Display() as display:
        world.extra_environment["DISPLAY"] = display.name
        run = world.start("-QName", "Office")
        hands = Hands(world)
        print(hands.wait("Title"))
        display.screenshot(Path("box.png"))
        hands.press("Title", "OK")
        run.wait()
"""

import os
import subprocess
from pathlib import Path

from .paths import WINDOWS
from .world import World

HANDS = WINDOWS / "ui" / "zt-ui.exe"


class Display:
    """An X server without a screen. In a network of its own it listens there, so that none can meet another's; on the
    machine's own loopback it takes a socket file with a number that is free, and nobody from elsewhere reaches it."""

    def __init__(self, size: str = "1024x768"):
        reader, writer = os.pipe()
        shared = os.environ.get("ZT_WORLD") == "loopback"
        in_own_network = ["-nolock", "-nolisten", "unix", "-nolisten", "local", "-listen", "tcp"]
        listening = ["-nolisten", "tcp"] if shared else in_own_network
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{size}x24", "-ac", "-noreset", *listening],
            pass_fds=[writer],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        os.close(writer)
        with os.fdopen(reader) as number:
            self.name = f"{'' if shared else '127.0.0.1'}:{number.readline().strip()}"

    def __enter__(self) -> "Display":
        return self

    def __exit__(self, *_: object) -> None:
        self._server.kill()
        self._server.wait()

    def screenshot(self, file: Path) -> None:
        """Writes a picture of the whole screen; the format is that of the file's suffix."""
        subprocess.run(["import", "-display", self.name, "-window", "root", str(file)], check=True)


class Hands:
    """Looks at the windows of a World and presses their buttons, by a small program that runs there."""

    def __init__(self, world: World):
        self._world = world
        world.install(HANDS)

    def list(self) -> str:
        """Every visible window with its controls, a line each."""
        return self._do("list")

    def wait(self, title: str, seconds: int = 10) -> str:
        """Waits for the window of that title; its controls, a line each."""
        return self._do("wait", title, str(seconds))

    def wait_gone(self, title: str, seconds: int = 10) -> None:
        self._do("gone", title, str(seconds))

    def press(self, title: str, text: str, seconds: int = 10) -> None:
        """Waits for the control with that text and clicks it."""
        self._do("press", title, text, str(seconds))

    def type(self, title: str, control: int, text: str) -> None:
        """Replaces the text of the control of that number."""
        self._do("type", title, str(control), text)

    def close(self, title: str) -> None:
        """Closes the window as its cross does."""
        self._do("close", title)

    def _do(self, *words: str) -> str:
        # To a file: Wine's services inherit the output and would hold a pipe open.
        output = self._world.folder / "windows.txt"
        with open(output, "wb") as stdout:
            code = subprocess.run(
                ["wine", "C:\\agent\\zt-ui.exe", *words],
                env=self._world.environment() | {"WINEDEBUG": "-all"},
                stdin=subprocess.DEVNULL,
                stdout=stdout,
                stderr=subprocess.DEVNULL,
            ).returncode
        text = output.read_text(encoding="utf-8")
        if code != 0:
            there = text if words == ("list",) else self.list()
            raise AssertionError(f"no window or control for {words}; there is:\n{there}")
        return text
