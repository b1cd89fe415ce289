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

Hands live as long as their World; they start anew when its Windows was stopped.
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

    def screenshot(self, file: Path, window: str = "root") -> None:
        """Writes a picture of the whole screen, or of the window of that title; the format is that of the file's
        suffix."""
        subprocess.run(["import", "-display", self.name, "-window", window, str(file)], check=True)


class Hands:
    """Looks at the windows of a World and presses their buttons, by a small program that runs there. Controls are named
    by their text or by their number; sim/windows/ui tells what each of these does."""

    def __init__(self, world: World):
        self._world = world
        self._program: subprocess.Popen | None = None
        if not (world.program_folder / HANDS.name).exists():  # else it may be running
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

    def read(self, title: str, control: int) -> str:
        """The text of the control of that number; of a list its lines, cells between " | "."""
        return self._do("read", title, str(control))

    def wait_for(self, title: str, control: int, part: str, seconds: int = 10) -> str:
        """Waits until what read() answers holds that part; all of it."""
        return self._do("await", title, str(control), part, str(seconds))

    def choose(self, title: str, control: int, part: str) -> None:
        """Chooses the first line of a list, or the first tab, whose text holds that part."""
        self._do("choose", title, str(control), part)

    def key(self, title: str, number: int) -> None:
        """Presses the key of that number (VK_F5 is 0x74)."""
        self._do("key", title, str(number))

    def size(self, title: str, width: int, height: int) -> None:
        """Gives the window that size."""
        self._do("size", title, str(width), str(height))

    def clipboard(self) -> str:
        return self._do("clipboard")

    def close(self, title: str) -> None:
        """Closes the window as its cross does."""
        self._do("close", title)

    def _do(self, *words: str) -> str:
        code, text = self._ask(*words)
        if code != 0:
            raise AssertionError(f"not done: {words}; there is:\n{text}{self._ask('list')[1]}")
        return text

    def _ask(self, *words: str) -> tuple[int, str]:
        if self._program is None or self._program.poll() is not None:
            self._start()
        line = "\t".join(words)
        if "\n" in line or line.count("\t") >= len(words):
            raise ValueError(f"a word of a command holds no tab and no line end: {words}")
        self._program.stdin.write((line + "\n").encode())
        self._program.stdin.flush()
        # Its answers are read from a pipe by their size; nobody waits for the pipe's end.
        code, size = self._program.stdout.readline().split()
        return int(code), self._program.stdout.read(int(size)).decode().replace("\r\n", "\n").replace("\r", "\n")

    def _start(self) -> None:
        self._world.start_windows()
        self._program = subprocess.Popen(
            ["wine", "C:\\agent\\zt-ui.exe", "serve"],
            env=self._world.environment() | {"WINEDEBUG": "-all"},
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        self._world.stop_at_end(self._program)
