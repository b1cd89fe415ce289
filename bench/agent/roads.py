"""The roads that a start of the agent may take, each with the world that leads to it, and the messages that the agent
sends on it, which its floor sends as well."""

import contextlib
import os
import select
import sys
from collections.abc import Iterator
from dataclasses import dataclass, field

from sim import hostile as snmp
from sim import report_server as http
from sim.hostile import HostileAgent
from sim.paths import BUILD, PRINTERS
from sim.queues import PRINTER, QUEUE, queue_script
from sim.report_server import ReportServer
from sim.snmp_agent import start_agent
from sim.usb_printers import UsbPrinters
from sim.world import Result, Run, World

FLOOR = BUILD / "bench" / "agent" / "agent_floor.exe"
COLOUR = PRINTERS / "colour.mib"
MESSAGES = r"C:\messages.bin"
NETWORK_QUEUE = queue_script()
USB_QUEUE = queue_script(port="USB001", monitor="USB Monitor", address=None)
USB_PRINTER = r"""[printer VID_1A2B&PID_0001#SN0001]
port = 1
id = text MFG:Velnora;MDL:Velnora RV-2160;CMD:ZOLT,FWV,CI_12;
49 00 01 = text SN0001
56 00 00 = text V1
document = file \??\C:\usbprint\document.xml
"""
USB_DOCUMENT = b"<root><ZOLT><Count><DevTotalMonoCount>700</DevTotalMonoCount></Count><Supplies/></ZOLT></root>"
LONG_AGO, YESTERDAY = 400, 1  # days


@dataclass
class Road:
    """How a start ends, and what must be the case for that."""

    name: str
    floor: str  # the road's name for the floor
    days: float = LONG_AGO  # since what the history tells
    history: tuple[str, ...] = ()  # its keys
    posts: int = 0  # requests that the report server gets
    queue: str = NETWORK_QUEUE
    flags: dict[str, object] = field(default_factory=dict)
    arguments: tuple[str, ...] = ("-QName", QUEUE)


ROADS = (
    Road("no queue given", "no-queue", arguments=()),
    Road("disabled by the administrator", "disabled", flags={"Disable": 1}),
    Road("recent collection failure", "skip", YESTERDAY, (f"LastCollectFailedTime_{PRINTER}",)),
    Road("recent server failure", "skip", YESTERDAY, ("LastServerFailedTime",)),
    Road("sent a short time ago", "skip-serial", YESTERDAY, ("LastSendTime_VNRV2160004711",)),
    Road("full report over SNMP", "full", history=("LastSendTime_VNRV2160004711",), posts=2),
    Road("full report over USB", "usb", history=("LastSendTime_SN0001",), posts=2, queue=USB_QUEUE),
)


class Messages:
    """What the agent sends, in the form that the floor reads."""

    def __init__(self) -> None:
        self._messages: list[bytes] = []
        self.questions = 0

    def take_question(self, request: snmp.Request) -> None:
        self._messages.append(request.raw)
        self.questions += 1

    def take_post(self, request: http.Request) -> None:
        self._messages += [b"", request.body]

    def to_bytes(self) -> bytes:
        return b"".join(len(message).to_bytes(4, "little") + message for message in [*self._messages, b""])


class Bench:
    """The world of one road, with the agent and its floor in it."""

    def __init__(self, road: Road, world: World, server: ReportServer):
        self.world = world
        self.agent = ("ZT.exe", *road.arguments)
        self.floor = (FLOOR.name, road.floor, QUEUE, MESSAGES)
        self.nothing = (FLOOR.name, "nothing")
        self.questions = 0  # that a run of the agent asks the printer
        self._road = road
        self._server = server
        self._posts = 0  # that the last start is to make
        self._settings = "[History]\r\n" + "".join(f"{key}={world.time_text(road.days)}\r\n" for key in road.history)

    def start(self, command: tuple[str, ...]) -> Run:
        """Starts the agent or its floor, each time from the same beginning."""
        self.world.settings = self._settings
        self._server.requests.clear()
        self._posts = 0 if command == self.nothing else self._road.posts
        program, *arguments = command
        return self.world.start(*arguments, program=program)

    def finish(self, run: Run) -> Result:
        """Waits for the end of a run, which must have taken the road."""
        # run.wait() looks every 50 ms only: as long as a short run takes.
        end = os.pidfd_open(run.process.pid)
        select.select([end], [], [])
        os.close(end)
        result = run.wait()
        posts = len(self._server.requests)
        if result.exit_code != 0 or posts != self._posts:
            sys.exit(f"{self._road.name}: exit code {result.exit_code}, {posts} posts; {result.stderr[-500:]}")
        return result


@contextlib.contextmanager
def bench_of(road: Road) -> Iterator[Bench]:
    messages = Messages()
    with World() as world, ReportServer(on_request=messages.take_post) as server:
        world.spooler(road.queue)
        world.flags(URL=server.url, **road.flags)
        world.install(FLOOR)
        UsbPrinters(world.prefix, USB_PRINTER).document(USB_DOCUMENT)
        bench = Bench(road, world, server)
        with HostileAgent(COLOUR, on_request=messages.take_question):
            bench.finish(bench.start(bench.agent))
        bench.questions = messages.questions
        (world.prefix.drive / "messages.bin").write_bytes(messages.to_bytes())
        with start_agent(COLOUR):
            yield bench
