"""The figures of the agent: size, imported libraries, peak memory, and the time of a run beside its floor.

    cmake --build --preset windows && sim/bin/in-namespace python3 -m bench.agent.run

The floor is a minimal Windows program in the same world that makes as many bare UDP round trips to the same SNMP agent
as the run makes SNMP exchanges. Times are of whole processes, start and end included; medians of RUNS runs, taken in
turn. Last comes the peak memory of runs whose printer delivers the worst documents of the longest length that is taken.
"""

import statistics
import subprocess
import sys
import time
from pathlib import Path

from sim import answers
from sim.hostile import HostileAgent
from sim.paths import BUILD, PRINTERS
from sim.queues import QUEUE, queue_script
from sim.report_server import ReportServer
from sim.snmp_agent import start_agent
from sim.usb_printers import UsbPrinters
from sim.world import AGENT, World

RUNS = 31
PRINTER = PRINTERS / "colour.mib"
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


def seconds_of(world: World, program: str, *arguments: str) -> float:
    """The time of one process."""
    begun = time.perf_counter()
    result = world.run(*arguments, program=program)
    seconds = time.perf_counter() - begun
    if result.exit_code != 0:
        sys.exit(f"{program} failed: {result.stderr[-500:]}")
    return seconds


def peak_of(world: World, program: str, *arguments: str) -> float:
    """The largest resident memory of one process in MiB, Wine's own libraries included, looked at every millisecond."""
    run = world.start(*arguments, program=program)
    peak = 0
    while run.process.poll() is None:
        status = Path(f"/proc/{run.process.pid}/status").read_text()
        # Before Wine has taken the process over it is this program's.
        if "ZT.exe" in status or "udp_floor" in status:
            peak = max([peak, *(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmHWM"))])
        time.sleep(0.001)
    return peak / 1024


def count_exchanges(world: World) -> int:
    with HostileAgent(PRINTER) as printer:
        world.run("-QName", QUEUE)
        return len(printer.requests)


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
                peak = max(peak_of(world, "ZT.exe", "-QName", QUEUE) for _ in range(3))
                print(f"{road}, {name:<20} peak {peak:.1f} MiB; reports posted {len(server.requests)} in 3 runs")


def main() -> None:
    listing = subprocess.run(
        ["x86_64-w64-mingw32-objdump", "-p", AGENT], capture_output=True, text=True, check=True
    ).stdout
    libraries = [line.split(":")[1].strip() for line in listing.splitlines() if "DLL Name:" in line]
    print(f"size of ZT.exe          {AGENT.stat().st_size} bytes")
    print(f"imported libraries      {', '.join(libraries)}")

    with World() as world, ReportServer() as server:
        world.spooler(queue_script())
        world.flags(URL=server.url, DontCheckSkip=1)
        world.install(BUILD / "bench" / "agent" / "udp_floor.exe")
        exchanges = count_exchanges(world)
        with start_agent(PRINTER):
            commands = {
                "full run": ("ZT.exe", "-QName", QUEUE),
                f"floor, {exchanges} round trips": ("udp_floor.exe", str(exchanges)),
                "floor, no round trip": ("udp_floor.exe", "0"),
            }
            times: dict[str, list[float]] = {name: [] for name in commands}
            for _ in range(RUNS):
                for name, command in commands.items():
                    times[name].append(seconds_of(world, *command) * 1000)
            peaks = {name: max(peak_of(world, *command) for _ in range(5)) for name, command in commands.items()}
        posted = sum(request.page == "Connector.aspx" for request in server.requests)

    print(f"SNMP exchanges of a run {exchanges}; reports posted {posted} in {RUNS + 6} runs")
    for name, taken in times.items():
        spread = f"{min(taken):.1f} to {max(taken):.1f}"
        print(f"{name:<24}{statistics.median(taken):7.1f} ms ({spread}), peak {peaks[name]:.1f} MiB")
    print_peaks_with_documents()


if __name__ == "__main__":
    main()
