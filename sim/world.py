"""World: one simulated Windows with the agent installed, a print spooler, and what the test puts around it.

    with World() as world:
        world.spooler(SCRIPT)
        world.log_to()
        result = world.run("-QName", "Office")
        print(result.log_texts)

A World lives in the network that it finds itself in: start Python through sim/bin/in-namespace, so that the printer can
listen on port 161 of the loopback and nothing else is reached.
"""

import os
import shutil
import subprocess
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

from .paths import BUILD, WINDOWS
from .prefix import Prefix, template
from .traces import TraceLine, find_crash, parse_debugger_output, parse_log

AGENT = Path(os.environ.get("ZT_EXE", BUILD / "agent" / "ZT.exe"))
SPOOLER = WINDOWS / "winspool" / "winspool.drv"

FLAGS = r"Software\Tressil\ZOLT"
LOGGER = r"Software\Tressil\Logger\ZOLT"
AGREEMENT = r"Software\Velnora\WEB_Agreement"

_PROCESS_END = "process ends, open handles: "


class AgentCrashed(Exception):
    """The agent ended by an unhandled exception; the text is what Wine said of it."""


@dataclass
class Result:
    """One finished run of a program."""

    exit_code: int
    seconds: float
    stderr: str
    debug: list[str]  # texts of the debugger output
    log: list[TraceLine] = field(default_factory=list)  # lines that this run added to the trace log

    @property
    def log_texts(self) -> list[str]:
        return [line.text for line in self.log]


class World:
    """A Windows of its own, removed at the end with all that runs in it."""

    def __init__(self, time_zone: str = "UTC"):
        self.folder = Path(tempfile.mkdtemp(prefix="world.", dir=template().parent))
        self.prefix = Prefix.fresh(self.folder / "prefix")
        self.time_zone = time_zone
        self.overrides = {"winspool.drv": "n", "mscoree": "", "mshtml": ""}
        self.extra_environment: dict[str, str] = {}
        self._log_read = 0
        self._started: list[Run] = []
        self._helpers: list[subprocess.Popen] = []
        self.program_folder = self.prefix.drive / "agent"
        self.program_folder.mkdir()
        self.spool_folder = self.folder / "spool"
        self.spool_folder.mkdir()
        self.install(AGENT)
        self._install_spooler()

    def __enter__(self) -> "World":
        return self

    def __exit__(self, *_: object) -> None:
        for process in self._helpers:
            process.kill()
            process.communicate()
        for run in self._started:
            run.stop()
        self.prefix.kill_windows()
        shutil.rmtree(self.folder, ignore_errors=True)

    # What is laid out before a run

    def install(self, *files: Path) -> None:
        """Copies files into the agent's folder, C:\\agent."""
        for file in files:
            shutil.copy(file, self.program_folder)

    def _install_spooler(self) -> None:
        """Puts the spooler's client where the agent takes it from: nowhere but the system's folder."""
        library = self.prefix.drive / "windows" / "system32" / SPOOLER.name
        library.unlink(missing_ok=True)  # it may be one file with the template's
        shutil.copy(SPOOLER, library)

    def spooler(self, script: str) -> None:
        """What the print spooler serves; see sim/windows/winspool."""
        (self.spool_folder / "winspool.ini").write_text(script, encoding="utf-8")

    def flags(self, **values: object) -> None:
        """The agent's program flags: flags(Disable=1, URL="http://127.0.0.1:8080/web/")."""
        self.prefix.set_registry(FLAGS, values)

    def log_to(self, level: object = 4, file: object = r"C:\zt.log") -> None:
        """Switches the trace log on."""
        self.prefix.set_registry(LOGGER, {"Level": level, "File": file})

    @property
    def log_file(self) -> Path:
        return self.prefix.drive / "zt.log"

    @property
    def settings_file(self) -> Path:
        return self.prefix.drive / "ProgramData" / "Velnora" / "Printer" / "ZT.ini"

    @property
    def settings(self) -> str:
        """The bytes of ZT.ini as text; empty when there is none."""
        return self.settings_file.read_bytes().decode("latin-1") if self.settings_file.exists() else ""

    @settings.setter
    def settings(self, text: str) -> None:
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        self.settings_file.write_bytes(text.encode("latin-1"))

    def time_text(self, days_ago: float = 0) -> str:
        """The local time of this Windows some days ago, as the settings file holds it."""
        zone = os.environ.get("TZ")
        os.environ["TZ"] = self.time_zone
        time.tzset()
        text = time.strftime("%Y-%m-%d %H:%M:%S", time.localtime(time.time() - days_ago * 86400))
        os.environ.pop("TZ") if zone is None else os.environ.update(TZ=zone)
        time.tzset()
        return text

    # Runs

    def run(self, *arguments: str, program: str = "ZT.exe", timeout: float = 60) -> Result:
        """Runs the agent to its end. Raises AgentCrashed, and subprocess.TimeoutExpired for a run beyond `timeout`."""
        return self.start(*arguments, program=program).wait(timeout)

    def start(self, *arguments: str, program: str = "ZT.exe") -> "Run":
        """Starts the agent and leaves it running."""
        self.start_windows()
        run = Run(self, [f"C:\\agent\\{program}", *arguments], len(self._started))
        self._started.append(run)
        return run

    def start_windows(self) -> None:
        """Starts what every Windows runs before any program; start() does it, too."""
        self.prefix.start_windows(self.environment())

    def stop_at_end(self, process: subprocess.Popen) -> None:
        """Ends the process with this Windows, and closes its pipes."""
        self._helpers.append(process)

    def environment(self) -> dict[str, str]:
        overrides = ";".join(f"{library}={mode}" for library, mode in self.overrides.items())
        return (
            os.environ
            | self.prefix.environment()
            | {
                "WINEDLLOVERRIDES": overrides,
                "WINEDEBUG": "-all,warn+seh,warn+debugstr",
                "TZ": self.time_zone,
                "DISPLAY": os.environ.get("DISPLAY", ""),
                "ZT_SPOOL_SCRIPT": _windows_path(self.spool_folder / "winspool.ini"),
                "ZT_SPOOL_FOLDER": _windows_path(self.spool_folder),
            }
            | self.extra_environment
        )

    def take_log(self) -> list[TraceLine]:
        """The lines that have come to the trace log since the last call."""
        data = self.log_file.read_bytes() if self.log_file.exists() else b""
        fresh, self._log_read = data[self._log_read :], len(data)
        return parse_log(fresh.decode("cp1252", "replace"))

    def forget_log(self) -> None:
        """Takes the trace log away. No program must be running."""
        self.log_file.unlink(missing_ok=True)
        self._log_read = 0

    # What the spooler has seen

    def forget_spooler(self) -> None:
        """Takes the spooler's record and its jobs away. No program must be running."""
        for file in self.spool_folder.iterdir():
            if file.name != "winspool.ini":
                file.unlink()

    @property
    def spooler_calls(self) -> list[str]:
        """Every call with its outcome, in order."""
        return [line for line in self._transcript() if not line.startswith(_PROCESS_END)]

    @property
    def spooler_handles_left(self) -> list[int]:
        """How many handles each process that has ended left open."""
        return [int(line.removeprefix(_PROCESS_END)) for line in self._transcript() if line.startswith(_PROCESS_END)]

    def _transcript(self) -> list[str]:
        file = self.spool_folder / "transcript.txt"
        return file.read_text(encoding="utf-8").splitlines() if file.exists() else []

    @property
    def raw_jobs(self) -> list[bytes]:
        return [file.read_bytes() for file in sorted(self.spool_folder.glob("job-*.raw"), key=_job_number)]


class Run:
    """A program that was started in a World."""

    def __init__(self, world: World, command: list[str], number: int):
        self._world = world
        self._stderr = world.folder / f"stderr-{number}.txt"
        self._begun = time.monotonic()
        # To a file: Wine's services inherit the output and would hold a pipe open.
        with open(self._stderr, "wb") as stderr, open(world.folder / f"stdout-{number}.txt", "wb") as stdout:
            self.process = subprocess.Popen(
                ["wine", *command],
                env=world.environment(),
                cwd=world.folder,
                stdin=subprocess.DEVNULL,
                stdout=stdout,
                stderr=stderr,
            )

    @property
    def output(self) -> str:
        """What Wine and the program have written to stderr so far."""
        return self._stderr.read_text(encoding="utf-8", errors="replace")

    def debug(self) -> list[str]:
        return parse_debugger_output(self.output)

    def wait(self, timeout: float = 60) -> Result:
        exit_code = self.process.wait(timeout)
        seconds = time.monotonic() - self._begun
        if crash := find_crash(self.output):
            raise AgentCrashed(crash)
        return Result(exit_code, seconds, self.output, self.debug(), self._world.take_log())

    def stop(self) -> None:
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


def _job_number(file: Path) -> int:
    return int(file.stem.removeprefix("job-"))


def _windows_path(path: Path) -> str:
    return "Z:" + str(path).replace("/", "\\")
