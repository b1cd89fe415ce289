"""Stage: one simulated Windows with a queue for each road to a printer, their printers and a report server; and what
must hold after each run of the agent, whatever they did to it."""

import re
import subprocess
import time
from collections.abc import Callable
from contextlib import ExitStack
from dataclasses import dataclass
from pathlib import Path

from sim import answers
from sim.agreement import ScriptedAgreement
from sim.hostile import HostileAgent
from sim.paths import PRINTERS
from sim.queues import queue_script
from sim.report_server import ReportServer
from sim.traces import parse_log
from sim.usb_printers import UsbPrinters
from sim.world import AgentCrashed, Result, Run, World

SNMP, SNMP_DOCUMENT, USB, USB_DOCUMENT = "Network", "Network document", "Cable", "Cable document"
ROADS = (SNMP, SNMP_DOCUMENT, USB, USB_DOCUMENT)

USUAL_USB = (PRINTERS / "colour.ini").read_text(encoding="ascii").partition("port = 1\n")[2]
COLOUR, RDS = ((PRINTERS / f"{name}.xml").read_bytes() for name in ("colour", "rds"))

# A printer of another office, whose history no run of this one may touch.
OTHERS = {"LastSendTime_OTHER": "2014-03-06 10:00:00", "LastCollectFailedTime_10.0.0.9": "2014-03-06 10:00:00"}

# How a log may end. What ends a product-protection run alone is mostly told to the debugger only.
_ENDS = r"bye~|Bye~|sucessfully\.\.\.|failed to send\.\.\.|next week|cancel sending"
_ENDS_OF_PROTECTION = (
    r"|^\[UA\]|^\[ZT\]|^Start SBX|^End SBX|^Wait job|job break|Get  toner|^failed to collect|^no memory"
)
_ENDS_OF_PROTECTION += r"|^Checking ZOLT|^timeout|^Get ModelName|^Get Serial|toner life|^HTTP|^/|^SBX is not|^SNMP|gaps"


class Broken(AssertionError):
    """What must hold does not."""


@dataclass
class Outcome:
    result: Result
    peak: float  # MiB of resident memory, Wine's libraries included


class Stage:
    """Everything stands from its making until the end of the with block."""

    def __init__(self) -> None:
        self._stack = ExitStack()
        # What is called with each request of the agent to a network printer or a server, before it is answered.
        self.at_exchange: Callable[[object], object] = lambda request: None
        self.world = self._stack.enter_context(World(time_zone="JST-9"))
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.usb = UsbPrinters(self.world.prefix, self.usb_script({}))
        self.usb.document(COLOUR, "colour.xml")
        self.usb.document(RDS, "rds.xml")
        self.server = self._stack.enter_context(ReportServer(on_request=self._exchange))
        self.web = self._stack.enter_context(ReportServer(port=80, address="127.0.0.2", on_request=self._exchange))
        self.agents = {}
        for road, model, address in (SNMP, "colour", "127.0.0.1"), (SNMP_DOCUMENT, "rds", "127.0.0.2"):
            agent = HostileAgent(PRINTERS / f"{model}.mib", address=address, on_request=self._exchange)
            self.agents[road] = self._stack.enter_context(agent)
        self.agreement = ScriptedAgreement(self.world)
        self.world.flags(URL=self.server.url)
        self.world.log_to()
        self.reset()

    def __enter__(self) -> "Stage":
        return self

    def __exit__(self, *_: object) -> None:
        self._stack.close()

    def _exchange(self, request: object) -> None:
        self.at_exchange(request)

    @staticmethod
    def queues(more_of_queue: str = "", more_of_port: dict[str, str] | None = None, jobs: str = "0") -> str:
        """The spooler's script: a queue for each road."""
        script = ""
        for road, port, address in (
            (SNMP, "IP_OFFICE", "127.0.0.1"),
            (SNMP_DOCUMENT, "IP_LOBBY", "127.0.0.2"),
            (USB, "USB001", None),
            (USB_DOCUMENT, "USB002", None),
        ):
            of_port = (more_of_port or {}).get(road, "")
            script += queue_script(
                road, port=port, address=address, jobs=jobs, more_of_queue=more_of_queue, more_of_port=of_port
            )
        return script

    @staticmethod
    def usb_script(before: dict[str, str]) -> str:
        """The script of both USB printers; of each road's own lines, `before`, the first of a key counts first."""
        plain, document = before.get(USB, ""), before.get(USB_DOCUMENT, "")
        of_document = USUAL_USB.replace("FWV,EXT", "FWV,RDS,EXT").replace("colour.xml", "rds.xml")
        return (
            f"[printer VID_1A2B&PID_0001#SN0001]\nport = 1\n{plain}\n{USUAL_USB}\n"
            f"[printer VID_1A2B&PID_0002#SN0002]\nport = 2\n{document}\n{of_document}\n"
        )

    def reset(self, **history: str) -> None:
        """Everybody behaves; nothing was recorded but the others' history, and what is given."""
        self.at_exchange = lambda request: None
        self.world.spooler(self.queues())
        self.world.forget_spooler()
        self.world.forget_log()
        self.usb.script(self.usb_script({}))
        self.usb.forget()
        for agent in self.agents.values():
            agent.behave()
            agent.requests.clear()
        for server in (self.server, self.web):
            server.requests.clear()
            server.failures.clear()
        for page, answer in (
            ("CheckDate.aspx", answers.check_date()),
            ("CheckSBX.aspx", answers.check_sbx()),
            ("Connector.aspx", answers.upload()),
            ("ConnectorSBX.aspx", answers.upload()),
        ):
            self.server.answer(page, answer)
        self.web.answer("rds/rds.xml", answers.Answer(RDS))
        self.agreement.answer(2)
        self.agreement.forget()
        lines = "".join(f"{key}={value}\r\n" for key, value in (OTHERS | history).items())
        self.world.settings = f"[History]\r\n{lines}"

    def run(self, road: str, *switches: str, limit: float = 60) -> Outcome:
        """One run of the agent, watched and judged. Raises Broken."""
        before = parse_settings(self.world.settings)
        run = self.world.start("-QName", road, *switches)
        outcome = finish(run, limit)
        self._judge_log(outcome.result, "-SBXOnly" in switches)
        self._judge_history(before)
        left = self.world.spooler_handles_left
        require(set(left) <= {0}, f"handles left in the spooler: {left}")
        self.judge_usb()
        return outcome

    def judge_usb(self) -> None:
        """No USB printer is left open."""
        for _ in range(100):
            asked = [line.split(" ", 1)[-1] for line in self.usb.transcript]
            if asked.count("open") == asked.count("close"):
                return
            time.sleep(0.02)  # a driver is told of the last close a little after the process has ended
        raise Broken(f"a USB printer is left open: {asked}")

    def _judge_log(self, result: Result, protection_only: bool) -> None:
        require(result.log, "the log is empty")
        last = result.log[-1].message
        require(not any("Unknown Exception" in line.message for line in result.log), "an exception ended the run")
        ends = _ENDS + (_ENDS_OF_PROTECTION if protection_only else "")
        require(re.search(ends, last) is not None, f"the run ended without its line, after: {last!r}")

    def _judge_history(self, before: dict[str, dict[str, str]]) -> None:
        after = parse_settings(self.world.settings).get("History", {})
        told = [request.body for request in self.server.requests]
        for key, value in before.get("History", {}).items():
            require(key in after, f"{key} is lost from the history")
            if key in OTHERS:
                require(after[key] == value, f"{key} was {value!r} and is {after[key]!r}")
            else:  # Only a server that knows of an older report may set a time back.
                require(after[key] >= value or told, f"{key} was {value!r} and is older: {after[key]!r}")


def require(holds: object, complaint: str) -> None:
    if not holds:
        raise Broken(complaint)


def finish(run: Run, limit: float) -> Outcome:
    """Waits for the end of a run and looks at its memory meanwhile."""
    begun = time.monotonic()
    peak = 0
    status = Path(f"/proc/{run.process.pid}/status")
    while run.process.poll() is None:
        try:
            text = status.read_text()
        except OSError:
            break
        if "ZT.exe" in text.partition("\n")[0] and (found := re.search(r"VmHWM:\s*(\d+)", text)):
            peak = int(found[1])
        if time.monotonic() - begun > limit:
            run.stop()
            raise Broken(f"the run took longer than {limit} s")
        time.sleep(0.002)
    try:
        result = run.wait()
    except AgentCrashed as crash:
        raise Broken(f"the run crashed: {crash}") from None
    except ValueError as error:
        raise Broken(f"the log has a line that is none: {error}") from None
    except subprocess.TimeoutExpired:
        raise Broken("the run has closed its status, and does not end") from None
    require(result.exit_code == 0, f"exit code {result.exit_code}: {result.stderr[-300:]}")
    return Outcome(result, peak / 1024)


def parse_settings(text: str) -> dict[str, dict[str, str]]:
    """A settings file, as the agent reads it. Of a repeated key the first counts; other lines are ends of a longer text
    that the file once held."""
    sections: dict[str, dict[str, str]] = {}
    section: dict[str, str] = {}
    for line in text.split("\r\n"):
        if not line:
            continue
        if line.startswith("[") and line.endswith("]"):
            section = sections.setdefault(line[1:-1], {})
            continue
        key, equals, value = line.partition("=")
        if equals:
            section.setdefault(key, value)
    return sections


def whole_lines(log: bytes) -> int:
    """How many lines the log has. Raises Broken when one is not whole."""
    require(not log or log.endswith(b"\r\n"), "the log's last line has no end")
    try:
        return len(parse_log(log.decode("cp1252", "replace")))
    except ValueError as error:
        raise Broken(f"the log has a line that is none: {error}") from None
