"""The figures of the agent: size, and the time, peak memory and libraries of each road beside its floor.

    cmake --build --preset windows && sim/bin/in-namespace python3 -m bench.agent.run [RUNS]

The floor of a road is a minimal Windows program in the same world that makes only the calls that the road cannot do
without, and sends the same messages. Times are of whole processes, start and end included. The agent, its floor and a
program that does nothing run in turn, RUNS times, or 31. The first ratio is that of the least times, the second the
median of the ratios of the pairs. Last comes the peak memory of runs whose printer delivers the worst documents of the
longest length that is taken.
"""

import re
import statistics
import sys
import time
from pathlib import Path

from sim import answers
from sim.paths import PRINTERS
from sim.queues import QUEUE, queue_script
from sim.report_server import ReportServer
from sim.snmp_agent import start_agent
from sim.usb_printers import UsbPrinters
from sim.world import AGENT, Run, World

from .roads import ROADS, Bench, Road, bench_of

RUNS = int(sys.argv[1]) if len(sys.argv) > 1 else 31
DOCUMENT_PRINTER = PRINTERS / "rds.mib"
LONGEST_DOCUMENT = 1024 * 1024
DOCUMENTS = {  # what stands around the elements, and how one of them looks
    "elements, 90 deep": ("<a>" * 90, "<a/>", "</a>" * 90),
    "most nodes": ("", "x<!>", ""),
    "most findings": ("", "x<!><Toner/>", ""),
}
USB_PRINTER = r"""[printer VID_1A2B&PID_0001#SN0001]
port = 1
id = text MFG:Velnora;MDL:Velnora RV-2160;CMD:ZOLT,FWV,RDS;
49 00 01 = text SN0001
56 00 00 = text V1
document = file \??\C:\usbprint\document.xml
"""


def peak_of(run: Run) -> float:
    """The largest resident memory of the process in MiB, Wine's own libraries included, looked at every millisecond."""
    peak = 0
    while run.process.poll() is None:
        status = Path(f"/proc/{run.process.pid}/status").read_text()
        # Before Wine has taken the process over it is this program's.
        if "ZT.exe" in status or "agent_floor" in status:
            peak = max([peak, *(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmHWM"))])
        time.sleep(0.001)
    return peak / 1024


def longest_document(begin: str, element: str, end: str) -> str:
    begin = "<root><ZOLT><Count/><Supplies>" + begin
    end += "</Supplies></ZOLT></root>"
    return begin + element * ((LONGEST_DOCUMENT - len(begin) - len(end)) // len(element)) + end


def print_peaks_with_documents() -> None:
    documents = {name: longest_document(*parts) for name, parts in DOCUMENTS.items()}
    with World() as world, ReportServer() as server, ReportServer(port=80) as web, start_agent(DOCUMENT_PRINTER):
        usb = UsbPrinters(world.prefix, USB_PRINTER)
        world.flags(URL=server.url, DontCheckSkip=1)
        usb_queue = queue_script(port="USB001", monitor="USB Monitor", address=None)
        for road, script in ("HTTP", queue_script()), ("USB", usb_queue):
            world.spooler(script)
            for name, document in documents.items():
                web.answer("rds/rds.xml", answers.Answer(document))
                usb.document(document.encode())
                server.requests.clear()
                peak = max(peak_of(world.start("-QName", QUEUE)) for _ in range(3))
                print(f"{road}, {name:<20} peak {peak:.1f} MiB; reports posted {len(server.requests)} in 3 runs")


def count_libraries(bench: Bench, command: tuple[str, ...]) -> int:
    bench.world.extra_environment = {"WINEDEBUG": "-all,trace+loaddll"}
    output = bench.finish(bench.start(command)).stderr
    bench.world.extra_environment = {}
    return len(set(re.findall(r'Loaded L"[^"]*?([^"\\]+)"', output))) - 1  # the program itself is told of, too


def print_road(road: Road) -> None:
    with bench_of(road) as bench:
        commands = {"agent": bench.agent, "floor": bench.floor, "nothing": bench.nothing}
        times: dict[str, list[float]] = {name: [] for name in commands}
        for _ in range(RUNS):
            for name, command in commands.items():
                times[name].append(bench.finish(bench.start(command)).seconds * 1000)
        peaks = {name: max(peak_of(bench.start(command)) for _ in range(5)) for name, command in commands.items()}
        print(f"{road.name}: {bench.questions} SNMP requests, {road.posts} posts")
        for name, command in commands.items():
            least, median = min(times[name]), statistics.median(times[name])
            libraries = count_libraries(bench, command)
            print(f"  {name:<8}{least:7.1f} ms, median{median:7.1f};{peaks[name]:6.1f} MiB;{libraries:3} libraries")
        of_least = min(times["agent"]) / min(times["floor"])
        of_pairs = statistics.median(agent / floor for agent, floor in zip(times["agent"], times["floor"]))
        print(f"  ratio   {of_least:7.2f}   , median{of_pairs:7.2f};{peaks['agent'] / peaks['floor']:6.2f}")


def main() -> None:
    print(f"size of ZT.exe: {AGENT.stat().st_size} bytes")
    for road in ROADS:
        print_road(road)
    print_peaks_with_documents()


if __name__ == "__main__":
    main()
