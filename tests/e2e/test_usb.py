"""Reports of printers at USB ports: the way through the driver, and the ways in which a transfer, a request or the lock
fails. What the printer's bytes may say is tested where they are read."""

from sim.agreement import ScriptedAgreement
from sim.paths import PRINTERS, WINDOWS
from sim.queues import queue_script
from sim.usb_printers import UsbPrinters, device_path
from sim.world import Result

from .office import SENT, OfficeTestCase, golden

# Three printers at one port, of which the last one that opens is the queue's; and one at another port.
FIRST, PRINTER, HIDDEN, OTHER = (f"VID_1A2B&PID_0216#VNRV216000471{number}" for number in range(4))
USUAL = (PRINTERS / "colour.ini").read_text(encoding="ascii").partition("port = 1\n")[2]
AWAKE = "02 00 00 = hex 00 00 00 00 40 00 00 00"
KLPMON = WINDOWS / "usb" / "klpmon.dll"


def script(*more: str) -> str:
    """All printers; the lines in `more` come before the usual ones."""
    lines = "\n".join(more) + "\n" + USUAL
    printers = f"[printer {HIDDEN}]\nport = 1\nlink = nowhere\n"
    for name, port in ((FIRST, 1), (PRINTER, 1), (OTHER, 2)):
        printers += f"[printer {name}]\nport = {port}\n{lines}"
    return printers


class UsbTest(OfficeTestCase):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.usb = UsbPrinters(cls.world.prefix, script())
        cls.usb.document((PRINTERS / "colour.xml").read_bytes(), "colour.xml")

    def setUp(self) -> None:
        super().setUp()
        self.server = self.report_server()
        self.connect()

    def connect(self, port: str = "USB001", jobs: str = "0") -> None:
        """Puts the queue on a USB port."""
        self.world.spooler(queue_script(port=port, jobs=jobs, address=None))

    def run_with(self, *more: str, switches: tuple[str, ...] = ()) -> Result:
        """A run with printers of that script, after which they are closed as often as they were opened."""
        self.forget()
        self.usb.script(script(*more))
        self.usb.forget()
        result = self.run_agent(*switches)
        self.asked = [line.split(" ", 1)[1] for line in self.usb.transcript]
        self.assertEqual(self.asked.count("open"), self.asked.count("close"))
        return result

    def assert_fails(self, codes: str, *more: str, printer: str = PRINTER) -> Result:
        """A run that collects nothing from that printer, and says so by these codes."""
        result = self.run_with(AWAKE, *more)
        failed = "4 Failed to get info from device. Will retry at next week. bye~"
        self.assert_ends_with(result, f"3 failed to collect from Office : {codes}", failed)
        self.assert_recorded(**{f"LastCollectFailedTime_{device_path(printer)}": None})
        return result

    def test_report(self):
        # The printer is asleep at first, and each transfer takes its time.
        result = self.run_with("read = delay 200 usual", "write = delay 100 usual")
        self.assert_ends_with(result, SENT)
        self.assertIn(f"4 collecting from {device_path(PRINTER)}", result.log_texts)
        self.assertEqual(result.debug.count("hPort is INVALID_HANDLE_VALUE"), 1)  # the hidden one
        start = self.asked.index("02 00 00 -> 8")
        self.assertEqual(self.asked[start : start + 3], ["02 00 00 -> 8", "99 00 00 failed C0000001", "02 00 00 -> 8"])
        self.assertEqual(self.server.requests[-1].fields["data"], golden("usb"))
        self.assert_recorded(LastSendTime_VNRV2160004711=None)

    def test_codes(self):
        for line, codes, seconds in (
            ("write = cut 15 usual", "/xml error", 0),
            ("read = usual\nread = fail C0000185", "/xml error", 0),
            ("read = usual\nread = hold", "/xml error", 7),
            ("56 00 00 = fail", "/fwv err", 0),
        ):
            with self.subTest(line):
                took = self.assert_fails(codes, line).seconds
                self.assertTrue(seconds < took < seconds + 7, took)

    def test_printer_goes_away_in_the_middle(self):  # and does not come back
        self.connect(port="USB002")
        self.assert_fails("/xml error", "read = usual\nread = unplug", printer=OTHER)

    def test_jobs_and_the_lock_of_the_device_monitor(self):
        self.connect(jobs="0 0 2")
        self.assert_fails("/job pending")
        # Under the lock, jobs hold nothing up; it is given back until that succeeds.
        self.world.install(KLPMON)
        library, answers, record = (self.world.program_folder / f"klpmon.{kind}" for kind in ("dll", "ini", "txt"))
        self.addCleanup(library.unlink)
        answers.write_text("[answers]\nPortAcquire=1\nPortRelease=0 1\n")
        self.assert_ends_with(self.run_with(AWAKE), SENT)
        calls = ["PortAcquire 153 -> 1", "PortRelease 153 -> 0", "PortRelease 153 -> 1"]
        self.assertEqual(record.read_text().splitlines(), ["loaded", *calls, "unloaded"])
        answers.write_text("[answers]\nPortAcquire=0\n")
        self.assert_fails("/lock failed")

    def test_protection_is_switched_by_a_request_and_not_by_a_job(self):
        agreement = ScriptedAgreement(self.world)
        self.addCleanup(agreement.remove)
        agreement.answer(2)
        self.world.forget_spooler()
        document = "document = file " + self.usb.document((PRINTERS / "rds.xml").read_bytes(), "rds.xml")
        counters = "43 00 00 = pad 255 hex 00 00 00 05  00 00 00 14  00 00 00 C8"
        result = self.run_with(AWAKE, document, counters, switches=("-SBXOnly",))
        self.assert_ends_with(result, SENT)
        self.assertIn("43 02 00 -> 8", self.asked)
        self.assertIn("[ZT] Protection On using vendor command :USCCESS", result.debug)
        self.assertEqual(self.world.raw_jobs, [])
        for element in ("MDL>Velnora RV-2160 Series<", "SBX>200<", "Capacity>2600<"):
            self.assertIn(element, self.server.requests[-1].fields["data"])
