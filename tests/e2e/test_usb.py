"""Reports of printers at USB ports: each way through the driver, and the ways in which a transfer, a request or the
lock fails. What the printer's bytes may say is tested where they are read."""

import re
import unittest

from sim.paths import WINDOWS
from sim.queues import queue_script
from sim.usb_printers import UsbPrinters, device_path
from sim.world import Result

from .office import OfficeTestCase, golden

FIRST = "VID_1A2B&PID_0001#SN0001"
SECOND = "VID_1A2B&PID_0001#SN0002"
HIDDEN = "VID_1A2B&PID_0001#SN0003"
SENT = "4 send sucessfully..."
KLPMON = WINDOWS / "usb" / "klpmon.dll"

COLOUR_COUNT = "<DevTotalColorCount>30</DevTotalColorCount>"
TONER = (
    "<Toner><Color>K</Color><Level>40</Level><AverageAreaCoverage>5</AverageAreaCoverage>"
    "<VendorName>Velnora</VendorName><ModelID>T1</ModelID><SupplierID>VLN</SupplierID><SerialNumber>TS1</SerialNumber>"
    "<InstalledDate>2024-01-02</InstalledDate></Toner>"
)
DOCUMENT = (
    "<root><ZOLT><SystemInstalledDate>2024-01-02</SystemInstalledDate><Count>"
    f"<DevTotalMonoCount>700</DevTotalMonoCount>{COLOUR_COUNT}</Count>"
    f"<Supplies>{TONER}</Supplies></ZOLT></root>"
).encode()


def section(name: str = FIRST, commands: str = "PJL,ZOLT,FWV,CI_12", *more: str) -> str:
    """The script of one printer; lines in `more` stand before the usual ones."""
    return rf"""
[printer {name}]
{chr(10).join(more)}
port = 1
id = text MFG:Velnora;MDL:Velnora RV-2160;CMD:{commands};
49 00 01 = text {name[-6:]}\r\n
56 00 00 = text Main Firmware Version@V1.00.00.12.34.56.78.90;Boot@V2
document = file \??\C:\usbprint\document.xml
"""


class UsbTestCase(OfficeTestCase):
    usb: UsbPrinters
    PRINTERS = section()

    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.usb = UsbPrinters(cls.world.prefix, cls.PRINTERS)

    def setUp(self) -> None:
        super().setUp()
        self.server = self.report_server()
        self.connect()
        self.forget_usb()

    def connect(self, port: str = "USB001", jobs: str = "0") -> None:
        """Puts the queue on a USB port."""
        self.world.spooler(queue_script(port=port, jobs=jobs, address=None))

    def forget_usb(self) -> None:
        self.forget()
        self.server.requests.clear()
        self.usb.script(self.PRINTERS)
        self.usb.document(DOCUMENT)
        self.usb.forget()

    def report(self) -> str:
        """The one report that was posted."""
        posted = [request.fields["data"] for request in self.server.requests if request.page == "Connector.aspx"]
        self.assertEqual(len(posted), 1)
        return posted[0]

    def run_and_close(self) -> Result:
        """A run after which the printer is closed as often as it was opened."""
        result = self.run_agent()
        self.asked = [line.split(" ", 1)[1] for line in self.usb.transcript]
        self.assertEqual(self.asked.count("open"), self.asked.count("close"))
        return result

    def assert_failed(self, codes: str) -> Result:
        """A run that collects nothing, and says so by these codes."""
        result = self.run_and_close()
        failed = "4 Failed to get info from device. Will retry at next week. bye~"
        self.assert_ends_with(result, f"3 failed to collect from Office : {codes}", failed)
        self.assert_recorded(**{f"LastCollectFailedTime_{device_path(FIRST)}": None})
        return result


class ReportTest(UsbTestCase):
    def test_each_kind_of_printer(self):
        extended = "E0 01 00 = pad 255 text CMD:ZOLT,FWV,CI_12;"
        for name, script, document, mono in (
            ("colour", section(), "usb", False),
            ("mono, extended", section(FIRST, "PJL,EXT", extended), "usb", True),
            ("rds", section(FIRST, "ZOLT,FWV,RDS"), "usb-rds", False),
        ):
            with self.subTest(name):
                self.forget_usb()
                self.usb.script(script)
                report = golden(document)
                if mono:
                    self.usb.document(DOCUMENT.replace(COLOUR_COUNT.encode(), b""))
                    report = re.sub(f" *{COLOUR_COUNT}\n", "", report)
                result = self.run_and_close()
                self.assert_ends_with(result, SENT)
                self.assertIn(f"4 collecting from {device_path(FIRST)}", result.log_texts)
                self.assertEqual(self.report(), report)
                self.assert_recorded(LastSendTime_SN0001=None)

    def test_slow_printer(self):
        # It is asleep at first, and each transfer takes its time.
        asleep, awake = "02 00 00 = hex 00 AA AA AA 00 00 00 00", "02 00 00 = hex 00 00 00 00 00 00 00 00"
        transfers = ("read = delay 700 usual", "write = delay 300 usual")
        self.usb.script(section(FIRST, "ZOLT,FWV,MPS", asleep, awake, *transfers))
        self.assertGreater(self.run_and_close().seconds, 2.5)
        start = self.asked.index("02 00 00 -> 8")
        self.assertEqual(self.asked[start : start + 3], ["02 00 00 -> 8", "99 00 00 failed C0000001", "02 00 00 -> 8"])
        self.report()

    def test_codes(self):
        for script, codes in (
            ("write = cut 15 usual", "/xml error"),
            ("write = usual\nwrite = fail", "/xml error"),
            ("read = cut 15 usual", "/xml error"),
            ("read = usual\nread = fail C0000185", "/xml error"),
            ("56 00 00 = fail", "/fwv err"),
        ):
            with self.subTest(script=script):
                self.forget_usb()
                self.usb.script(section(FIRST, "ZOLT,FWV", script))
                self.assertLess(self.assert_failed(codes).seconds, 5)

    def test_printer_that_stops_answering(self):
        self.usb.script(section(FIRST, "ZOLT,FWV", "read = usual\nread = hold"))
        result = self.assert_failed("/xml error")
        self.assertGreater(result.seconds, 7)
        self.assertLess(result.seconds, 15)

    def test_jobs_hold_the_exchange_up(self):
        self.connect(jobs="0 0 2")
        self.assert_failed("/job pending")

    def test_device_monitor_library_beside_the_agent(self):
        self.world.install(KLPMON)
        library, answers, record = (self.world.program_folder / f"klpmon.{kind}" for kind in ("dll", "ini", "txt"))
        self.addCleanup(library.unlink)
        # Under the lock, jobs hold nothing up; it is given back until that succeeds.
        self.connect(jobs="0 0 2")
        answers.write_text("[answers]\nPortAcquire=1\nPortRelease=0 1\n")
        self.assert_ends_with(self.run_and_close(), SENT)
        calls = ["PortAcquire 153 -> 1", "PortRelease 153 -> 0", "PortRelease 153 -> 1"]
        self.assertEqual(record.read_text().splitlines(), ["loaded", *calls, "unloaded"])
        answers.write_text("[answers]\nPortAcquire=0\n")
        self.forget()
        self.assert_failed("/lock failed")


class UnplugTest(UsbTestCase):
    def test_printer_goes_away_in_the_middle(self):  # and does not come back
        self.usb.script(section(FIRST, "ZOLT,FWV", "read = usual\nread = unplug"))
        self.assertIn("3 failed to collect from Office : /xml error", self.run_and_close().log_texts)


class PortTest(UsbTestCase):
    PRINTERS = section(FIRST) + section(SECOND) + section(HIDDEN, "ZOLT,FWV", "link = nowhere")

    def test_last_printer_that_opens_wins(self):
        result = self.run_and_close()
        self.assertIn("<GeneralSerialNumber>SN0002</GeneralSerialNumber>\n", self.report())
        self.assertEqual(result.debug.count("hPort is INVALID_HANDLE_VALUE"), 1)


del UsbTestCase

if __name__ == "__main__":
    unittest.main()
