"""The agent's test dialog in a World, driven as by a person.

    with World() as world:
        dialog = TestDialog(world, "-QName", "Office")
        dialog.page("Supplies", "Black toner")      # turns to the page, and waits until it shows that
        dialog.press("Copy diagnosis", Control.STATUS, "clipboard")
        print(dialog.hands.clipboard())
        dialog.close()
"""

from enum import IntEnum

from .desktop import Hands
from .world import World

TITLE = "TOVAgent test dialog"


class Control(IntEnum):
    """Controls by their numbers in testdialog/resource.h."""

    PRINTERS = 1001
    ADDRESS = 1002
    PAGES = 1006
    STATUS = 1007
    RUN_AT_WORK = 1008
    ELAPSED = 1010
    IDENTITY = 1101
    SUPPLIES = 1251
    REPORT = 1306
    FINDINGS = 1307
    EXCHANGE = 1406
    EXCHANGE_DETAILS = 1407
    PROTECTION = 1501
    VERDICT = 1502
    STORED = 1601
    RULES = 1602
    RULE_DETAILS = 1603
    TRACE = 1702


# What to look at on each page.
PAGES = {
    "Identity": Control.IDENTITY,
    "Supplies": Control.SUPPLIES,
    "Report": Control.REPORT,
    "Server": Control.EXCHANGE,
    "Protection": Control.PROTECTION,
    "History": Control.RULES,
    "Trace": Control.TRACE,
}


class TestDialog:
    """The dialog, open until close(). `run` is its process."""

    __test__ = False

    def __init__(self, world: World, *arguments: str):
        self.hands = Hands(world)
        self.run = world.start("-ShowTest", *arguments)
        self.hands.wait(TITLE, seconds=30)

    def see(self, control: Control, *parts: str) -> str:
        """Waits until the control shows all of these texts; what it shows then."""
        shown = ""
        for part in parts:
            shown = self.hands.wait_for(TITLE, control, part, seconds=30)
        return shown

    def choose(self, printer: str) -> None:
        """Chooses the printer whose line of the list holds that text."""
        self.see(Control.PRINTERS, printer)
        self.hands.choose(TITLE, Control.PRINTERS, printer)

    def add(self, address: str) -> None:
        """Types the address of a network printer and adds it."""
        self.hands.type(TITLE, Control.ADDRESS, address)
        self.hands.press(TITLE, "Add")

    def read(self, control: Control) -> str:
        return self.hands.read(TITLE, control)

    def page(self, name: str, *parts: str) -> None:
        """Turns to a page and waits until it shows all of these texts."""
        self.hands.choose(TITLE, Control.PAGES, name)
        self.see(PAGES[name], *parts)

    def press(self, button: str, control: Control, *parts: str) -> None:
        """Presses a button and sees that."""
        self.hands.press(TITLE, button)
        self.see(control, *parts)

    def confirm(self, button: str, box: str, answer: str) -> None:
        """Presses a button and answers the box of that title, which it brings."""
        self.hands.press(TITLE, button)
        self.hands.press(box, answer)
        self.hands.wait_gone(box)

    def close(self) -> None:
        """Closes the window; the run ends as soon as the exchange under way has."""
        self.hands.close(TITLE)
