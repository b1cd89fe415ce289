"""The show of ./demo.sh: three starts of the agent, and what each of them does."""

import argparse
import sys
from collections.abc import Callable

from .desktop import Hands
from .mib import format_oid, format_value, parse_oid
from .paths import BUILD, PRINTERS, WINDOWS
from .queues import queue_script
from .report_server import ReportServer
from .show_request import show_request
from .snmp_agent import start_agent
from .snmp_client import walk
from .usb_printers import UsbPrinters
from .world import Result, World

QUEUE = "Office colour printer"
PRINTER = PRINTERS / "colour.mib"
USB_PRINTER = PRINTERS / "colour.ini"
AGREEMENT = BUILD / "agreement-sample" / "UA.dll"
DIALOG = "Product protection"
DISCOVERY = WINDOWS / "function-discovery" / "function-discovery.dll"
DISCOVERED = "urn:uuid:4509a320-00a0-008f-00b6-001a2b004711 = string 127.0.0.1\n"

# The spooler's script, by the road that leads to the printer.
ROADS = {
    "tcp": queue_script(QUEUE, port="IP_127.0.0.1"),
    "usb": queue_script(QUEUE, port="USB001", monitor="USB Monitor", address=None),
    "wsd": queue_script(
        QUEUE,
        port="WSD-4509a320",
        monitor="WSD Port",
        address=None,
        more_of_port=r"""DeviceID = UMB\UMB\1&2b6e1c5a&0&0002
PnPXID = urn:uuid:4509a320-00a0-008f-00b6-001a2b004711""",
    ),
}


class Show:
    """The screen: what happens, in plain words, and whether it was what was to be seen."""

    def __init__(self) -> None:
        self._missed: list[str] = []

    def step(self, text: str) -> None:
        print(f"\n== {text}", flush=True)

    def block(self, text: str) -> None:
        for line in text.splitlines() or ["(nothing)"]:
            print("   " + line, flush=True)

    def expect(self, seen: bool, what: str) -> None:
        print(f"   {'seen' if seen else 'NOT SEEN'}: {what}", flush=True)
        if not seen:
            self._missed.append(what)

    def close(self) -> int:
        if self._missed:
            print(f"\nDemo FAILED. Not seen: {'; '.join(self._missed)}")
            return 1
        print("\nDemo passed: all of it was seen.")
        return 0


# Shown of the printer: serial number, device ID, toner levels, and the maker's own objects.
SHOWN = ("1.3.6.1.2.1.43.5.1.1.17", "1.3.6.1.4.1.2699", "1.3.6.1.2.1.43.11.1.1.9", "1.3.6.1.4.1.53017")


def show_printer(show: Show) -> None:
    show.step("What the printer answers by SNMP, in part")
    for subtree in SHOWN:
        for name, value in walk(parse_oid(subtree)):
            show.block(f"{format_oid(name)} = {format_value(value)}")


def start(
    show: Show, world: World, server: ReportServer, title: str, *switches: str, user: Callable[[], None] = lambda: None
) -> Result:
    """One start of the agent with these switches, and what it did. `user` is at work meanwhile."""
    before = world.settings
    posted = len(server.requests)
    show.step(" ".join([f'{title}: ZT.exe -QName "{QUEUE}"', *switches]))
    print("   ZT.ini before:")
    show.block(before)
    run = world.start("-QName", QUEUE, *switches)
    user()
    result = run.wait()
    for request in server.requests[posted:]:
        print("   The report server was sent:")
        show.block(show_request(request))
    print("   The trace log:")
    show.block("\n".join(f"{line.module},{line.line}\t{line.text}" for line in result.log))
    if world.settings != before:
        print("   ZT.ini after:")
        show.block(world.settings)
    show.expect(result.exit_code == 0, f"exit code 0, after {result.seconds:.2f} s")
    return result


def pages(server: ReportServer, first: int) -> list[str]:
    return [request.page for request in server.requests[first:]]


def discover(world: World) -> None:
    """Lets Function Discovery know where the WSD port's device is."""
    world.install(DISCOVERY)
    (world.program_folder / "function-discovery.ini").write_text(DISCOVERED, encoding="utf-8")
    world.run("/s", rf"C:\agent\{DISCOVERY.name}", program=r"..\windows\system32\regsvr32.exe")


def usb_tour(show: Show, world: World, server: ReportServer) -> None:
    show.step(f"The printer: {USB_PRINTER.name}, at a simulated USB port")
    script = USB_PRINTER.read_text(encoding="ascii")
    show.block(script)
    usb = UsbPrinters(world.prefix, script)
    usb.document(USB_PRINTER.with_suffix(".xml").read_bytes(), f"{USB_PRINTER.stem}.xml")
    tour(show, world, server)
    show.step("What the printer was asked over USB")
    show.block("\n".join(usb.transcript))


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    roads = parser.add_mutually_exclusive_group()
    roads.add_argument("--virtual", action="store_true", help="canned printer data: no SNMP agent")
    roads.add_argument("--usb", action="store_true", help="the printer is plugged into a USB port")
    roads.add_argument("--wsd", action="store_true", help="the queue's port is one for Web Services for Devices")
    options = parser.parse_args()
    road = "usb" if options.usb else "wsd" if options.wsd else "tcp"
    show = Show()

    with World() as world, ReportServer() as server:
        show.step("The print spooler")
        show.block(ROADS[road])
        world.spooler(ROADS[road])
        world.log_to(4)
        world.flags(URL=server.url, VirtualTest=int(options.virtual))
        show.step(f"The report server: {server.url}")
        if options.virtual:
            show.step("The printer: canned data (registry flag VirtualTest)")
            tour(show, world, server, protect)
        elif options.usb:
            usb_tour(show, world, server)
        else:
            if options.wsd:
                show.step("The device that Function Discovery knows")
                show.block(DISCOVERED)
                discover(world)
            show.step(f"The printer: {PRINTER.name}, served by snmpd on UDP port 161")
            with start_agent(PRINTER):
                show_printer(show)
                tour(show, world, server)
    return show.close()


def protect(show: Show, world: World, server: ReportServer) -> None:
    """The agent's other job: the toner is past its limit, so the user is asked by the sample agreement dialog."""
    world.install(AGREEMENT)
    hands = Hands(world)

    def disagree() -> None:
        print("   The user is shown, and presses Disagree:")
        show.block(hands.wait(DIALOG, seconds=30))
        hands.press(DIALOG, "Disagree")

    posted = len(server.requests)
    result = start(show, world, server, "Product protection", "-SBXOnly", user=disagree)
    show.expect(
        pages(server, posted) == ["CheckSBX.aspx", "ConnectorSBX.aspx"], "the server was asked, then sent the report"
    )
    report = server.requests[-1].fields.get("data", "")
    show.expect("<SBX>160</SBX>" in report and "<ZOLTAgree>0<" in report, "the report holds toner life and agreement")
    show.expect("4 send sucessfully..." in result.log_texts, '"send sucessfully..."')
    show.expect("LastPPSendTime_" in world.settings, "the history holds the time of this report")


def tour(
    show: Show,
    world: World,
    server: ReportServer,
    while_served: Callable[[Show, World, ReportServer], None] = lambda *_: None,
) -> None:
    result = start(show, world, server, "First start")
    show.expect(pages(server, 0) == ["CheckDate.aspx", "Connector.aspx"], "the server was asked, then sent the report")
    report = server.requests[-1].fields.get("data", "") if server.requests else ""
    show.expect("<GeneralSerialNumber>" in report and "<Toner>" in report, "the report holds serial number and toners")
    show.expect("4 send sucessfully..." in result.log_texts, '"send sucessfully..."')
    show.expect("LastSendTime_" in world.settings, "the history holds the time of this report")

    posted = len(server.requests)
    result = start(show, world, server, "Second start")
    show.expect(result.log_texts[-1:] == ["4 skip send success local. bye~"], '"skip send success local. bye~"')
    show.expect(pages(server, posted) == [], "nothing was sent")

    while_served(show, world, server)

    server.stop()
    world.settings_file.unlink(missing_ok=True)
    result = start(show, world, server, "Third start, without history and with the server gone")
    show.expect(result.log_texts[-1:] == ["3 svr not connect. bye~"], '"svr not connect. bye~"')
    show.expect("LastServerFailedTime=" in world.settings, "the history holds the time of the failure")


if __name__ == "__main__":
    sys.exit(main())
