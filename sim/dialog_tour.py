"""The show of ./demo.sh --dialog: the test dialog with printers of all kinds, page by page, at 100 % and at 200 %. Its
pictures go to build/dialog/, and the text for a ticket to the screen.

    sim/bin/in-namespace python3 -m sim.dialog_tour          # --docs: and the pictures of docs/test-dialog.md
"""

import argparse
import shutil
import subprocess
import sys
import time
from pathlib import Path

from .demo import QUEUE, ROADS, Show, discover
from .desktop import Display
from .dialog import TITLE, Control, TestDialog
from .hostile import HostileAgent
from .paths import PRINTERS, ROOT
from .queues import queue_script
from .report_server import ReportServer
from .usb_printers import UsbPrinters
from .world import World

FOLDER = ROOT / "build" / "dialog"
DOCS = ROOT / "docs" / "images"
OF_DOCS = (
    "supplies-100",
    "supplies-200",
    "report-100",
    "silent-100",
    "community-100",
    "skipped-100",
    "unreachable-100",
)

# Wine's own (package fonts-wine). One has the marks on the buttons of a title bar; without it, they are letters.
FONTS = list(Path("/usr/share/wine/fonts").glob("*.ttf"))

SERIAL = "VNRV2160004711"
USUAL_DENSITY = 96
QUEUES = [
    queue_script(QUEUE),
    queue_script("Meeting room", port="IP_MEETING", address="192.0.2.7"),
    queue_script("Reception", port="IP_RECEPTION", address="127.0.0.7", more_of_port="community = front desk"),
    queue_script("Workshop", port="USB001", monitor="USB Monitor", address=None),
    ROADS["wsd"].replace(QUEUE, "First floor"),
    queue_script("To a file", driver="Plain text", port="FILE:", monitor="Local Port", address=None),
]


class Tour:
    """The dialog of one World at one scale."""

    def __init__(self, show: Show, world: World, display: Display, percent: int):
        self._show, self._display, self._percent = show, display, percent
        self.dialog = TestDialog(world, "-QName", QUEUE)

    def picture(self, name: str, window: str = TITLE) -> None:
        time.sleep(0.3)  # what was changed last is being drawn
        file = FOLDER / f"{name}-{self._percent}.png"
        self._display.screenshot(file, window)
        print(f"   {file.relative_to(ROOT)}", flush=True)

    def page(self, name: str, *parts: str) -> None:
        self.dialog.page(name, *parts)
        self.picture(name.lower())

    def expect(self, control: Control, text: str) -> None:
        """Something that the window must say."""
        try:
            self.dialog.see(control, text)
        except AssertionError as failure:
            self._show.block(str(failure))
            self._show.expect(False, text)
        else:
            self._show.expect(True, text)


def new_world(percent: int, display: Display, server: ReportServer) -> World:
    world = World()
    with open(world.prefix.folder / "user.reg", "a", encoding="utf-8") as registry:
        # Without a window manager, Wine would wait two seconds for one at the end of each window.
        registry.write('\n[Software\\\\Wine\\\\X11 Driver] 0\n"Managed"="N"\n')
        # In width, Wine's own is the nearest to the system's font.
        registry.write('\n[Software\\\\Wine\\\\Fonts\\\\Replacements] 0\n"Segoe UI"="Tahoma"\n')
        registry.write(f'\n[Control Panel\\\\Desktop] 0\n"LogPixels"=dword:{USUAL_DENSITY * percent // 100:08x}\n')
    world.extra_environment |= {"DISPLAY": display.name, "LC_ALL": "C.UTF-8"}
    world.flags(URL=server.url)
    world.spooler("".join(QUEUES))
    for font in FONTS:
        shutil.copy(font, world.prefix.drive / "windows" / "Fonts")
    usb = UsbPrinters(world.prefix, (PRINTERS / "colour.ini").read_text(encoding="ascii"))
    usb.document((PRINTERS / "colour.xml").read_bytes(), "colour.xml")
    discover(world)
    return world


def pages(tour: Tour, world: World) -> None:
    """A printer that answers, and a server that does."""
    dialog = tour.dialog
    tour.expect(Control.IDENTITY, SERIAL)
    tour.picture("identity")
    tour.page("Supplies", "Yellow toner | 12 %")
    dialog.page("Report", "<root>")
    dialog.hands.choose(TITLE, Control.FINDINGS, "toner 2")
    tour.picture("report")
    dialog.page("Server")
    dialog.press("Check date", Control.EXCHANGE, "Days between reports")
    tour.picture("server")
    tour.page("Protection", "Toner life limit")
    sent = world.time_text(days_ago=1)
    world.settings = f"[History]\r\nLastSendTime_{SERIAL}={sent}\r\n"
    dialog.page("History")
    tour.expect(Control.RULES, f"A run now would be skipped: last report {sent}, next due ")
    tour.picture("skipped")
    tour.page("Trace", "End collecting...")


def causes(tour: Tour, server: ReportServer) -> None:
    """What else keeps a report from being sent."""
    dialog = tour.dialog
    dialog.page("Server")
    server.stop()
    dialog.press("Check date", Control.EXCHANGE)
    tour.expect(Control.EXCHANGE, "nobody listens there")
    tour.picture("unreachable")
    dialog.page("Identity")
    for queue, name, text in (
        ("Meeting room", "silent", "Nothing answers at 192.0.2.7."),
        ("Reception", "community", 'does not answer by SNMP with the community "front desk".'),
    ):
        dialog.choose(queue)
        tour.expect(Control.IDENTITY, text)
        tour.picture(name)
    dialog.hands.press(TITLE, "Read again")
    dialog.see(Control.ELAPSED, "1 s")
    tour.picture("busy")
    dialog.press("Cancel", Control.STATUS, "Cancelled after ")
    dialog.choose("Workshop")
    dialog.see(Control.IDENTITY, "Country index 12")
    dialog.page("Supplies", "Cyan toner")
    tour.picture("usb")


def last(tour: Tour, percent: int) -> str:
    """A box that asks, a larger window, and the diagnosis."""
    dialog = tour.dialog
    dialog.choose(QUEUE)
    dialog.page("History", "A run now would be skipped: ")
    dialog.hands.press(TITLE, "Clear this printer's history...")
    dialog.hands.wait("Clear history")
    tour.picture("question", "Clear history")
    dialog.hands.press("Clear history", "Cancel")
    dialog.hands.size(TITLE, 12 * percent, 8 * percent)
    tour.picture("large")
    dialog.press("Copy diagnosis", Control.STATUS, "The diagnosis is on the clipboard.")
    diagnosis = dialog.hands.clipboard()
    dialog.close()
    dialog.run.wait()
    return diagnosis


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--docs", action="store_true", help="make the pictures of the documentation, too")
    options = parser.parse_args()
    show = Show()
    FOLDER.mkdir(parents=True, exist_ok=True)
    diagnosis = ""
    with (
        Display("2600x1800") as display,
        HostileAgent(PRINTERS / "colour.mib"),
        HostileAgent(PRINTERS / "mono.mib", community="another", address="127.0.0.7"),
    ):
        for percent in (100, 200):
            show.step(f"The test dialog at {percent} %")
            with ReportServer() as server, new_world(percent, display, server) as world:
                tour = Tour(show, world, display, percent)
                pages(tour, world)
                causes(tour, server)
                diagnosis = last(tour, percent)
    show.step('What "Copy diagnosis" puts on the clipboard')
    show.block(diagnosis)
    if options.docs:
        for name in OF_DOCS:
            reduce(FOLDER / f"{name}.png", DOCS / f"test-dialog-{name}.png")
    return show.close()


def reduce(picture: Path, smaller: Path) -> None:
    """Writes the picture with few colours, which is all that windows need."""
    smaller.parent.mkdir(exist_ok=True)
    subprocess.run(["convert", picture, "-strip", "+dither", "-colors", "200", f"png8:{smaller}"], check=True)


if __name__ == "__main__":
    sys.exit(main())
