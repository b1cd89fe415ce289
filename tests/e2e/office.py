"""The office that the end-to-end tests work in: a Windows with a queue on a TCP/IP port, a printer, a report server,
and runs of the agent against them.

Start the tests of a file through sim/bin/in-namespace, in the repository's folder:

    sim/bin/in-namespace python3 -m unittest -v tests.e2e.test_entry
"""

import unittest
from configparser import RawConfigParser
from pathlib import Path

from sim.hostile import HostileAgent
from sim.holder import Holder
from sim.paths import PRINTERS
from sim.prefix import reg_text
from sim.queues import QUEUE, queue_script
from sim.report_server import ReportServer
from sim.world import FLAGS, Result, Run, World

SERVER_PORT = 8080
SERVER_URL = f"http://127.0.0.1:{SERVER_PORT}/web/"
SENT = "4 send sucessfully..."


def golden(name: str) -> str:
    """A document as it must be posted."""
    return Path(__file__).with_name("golden").joinpath(f"{name}.xml").read_text(encoding="utf-8")


def history(**keys: str) -> str:
    """The text of a settings file with these keys in its history."""
    return "[History]\r\n" + "".join(f"{key}={value}\r\n" for key, value in keys.items())


class OfficeTestCase(unittest.TestCase):
    """Tests in one Windows, nine hours east of Greenwich. Each begins with the usual queue, the trace log at level 4,
    no program flag but the report server's URL, and without a settings file."""

    world: World

    @classmethod
    def setUpClass(cls) -> None:
        cls.world = World(time_zone="JST-9")
        cls.world.extra_environment["LC_ALL"] = "C.UTF-8"
        cls.addClassCleanup(cls.world.__exit__, None, None, None)
        cls.world.log_to(4)
        cls._flags = {"URL": SERVER_URL}
        cls.world.flags(**cls._flags)

    def setUp(self) -> None:
        self.world.spooler(queue_script())
        self.set_flags()
        self.forget()

    # What surrounds the agent

    def set_flags(self, **flags: object) -> None:
        """Gives the agent these program flags and no others; the URL stays unless it is given."""
        flags = {"URL": SERVER_URL} | flags
        if flags != type(self)._flags:
            self.set_registry(FLAGS, flags)
            type(self)._flags = flags

    def set_registry(self, key: str, values: dict[str, object]) -> None:
        r"""Replaces the values under HKEY_LOCAL_MACHINE\key while Windows runs."""
        lines = [f"[-HKEY_LOCAL_MACHINE\\{key}]", f"[HKEY_LOCAL_MACHINE\\{key}]"]
        lines += [f'"{name}"={reg_text(value)}' for name, value in values.items()]
        text = "\r\n".join(["Windows Registry Editor Version 5.00", "", *lines, ""])
        (self.world.prefix.drive / "values.reg").write_text(text, encoding="utf-16")
        self.assertEqual(self.run_of_windows("reg", "import", r"C:\values.reg").exit_code, 0)

    def run_of_windows(self, program: str, *arguments: str) -> Result:
        """Runs a program of Windows' own."""
        return self.world.run(*arguments, program=rf"..\windows\system32\{program}.exe")

    def forget(self) -> None:
        """Takes the settings file away, and with it the agent's history."""
        self.world.settings_file.unlink(missing_ok=True)

    def scripted_printer(self, model: str = "colour", **options: object) -> HostileAgent:
        """A printer that can misbehave, until the end of the test."""
        return self.enterContext(HostileAgent(PRINTERS / f"{model}.mib", **options))

    def report_server(self, **options: object) -> ReportServer:
        """The report server that the usual URL leads to, until the end of the test."""
        return self.enterContext(ReportServer(**({"port": SERVER_PORT} | options)))

    def hold(self, what: str, name: str) -> Holder:
        """Another program of the same Windows that has something, until the end of the test."""
        return self.enterContext(Holder(self.world, what, name))

    # Runs

    def run_agent(self, *arguments: str, queue: str = QUEUE) -> Result:
        """Starts the agent for the queue and checks what holds for every run."""
        return self.finish(self.start_agent(*arguments, queue=queue))

    def start_agent(self, *arguments: str, queue: str = QUEUE) -> Run:
        return self.start("-QName", queue, *arguments)

    def start(self, *arguments: str, program: str = "ZT.exe") -> Run:
        run = self.world.start(*arguments, program=program)
        self.addCleanup(run.stop)  # else one that hangs would be the other instance of all later runs
        return run

    def finish(self, run: Run) -> Result:
        """Waits for the end of a run: exit code 0, no crash, and no handle left in the spooler."""
        result = run.wait()
        self.assertEqual(result.exit_code, 0, result.stderr)
        self.assertEqual(set(self.world.spooler_handles_left) - {0}, set())
        return result

    # What a run leaves behind

    def settings(self) -> dict[str, dict[str, str]]:
        """ZT.ini as sections of keys."""
        parser = RawConfigParser(delimiters="=")
        parser.optionxform = str  # keys as they are spelled
        parser.read_string(self.world.settings)
        return {name: dict(parser[name]) for name in parser.sections()}

    def assert_recorded(self, **keys: str | None) -> None:
        """The history holds these keys and no others. None stands for a time of this test: within the last minutes."""
        recorded = self.settings().get("History", {})
        self.assertEqual(set(recorded), set(keys))
        for key, value in keys.items():
            if value is None:
                self.assertLessEqual(self.world.time_text(days_ago=5 / 1440), recorded[key])
                self.assertLessEqual(recorded[key], self.world.time_text())
            else:
                self.assertEqual(recorded[key], value)

    def assert_ends_with(self, result: Result, *texts: str, marker: bool = True) -> None:
        """The last lines of the run's trace log, as severity and message, and whether the end marker was written."""
        self.assertEqual(result.log_texts[-len(texts) :], list(texts))
        self.assertIn("ZOLT - start", result.debug)
        self.assertEqual("ZOLT - end" in result.debug, marker)
