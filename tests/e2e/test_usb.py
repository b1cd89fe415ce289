"""Reports of printers at USB ports: each way through the device, and each way in which it fails."""

import re
import unittest

from sim.paths import WINDOWS
from sim.queues import queue_script
from sim.usb_printers import UsbPrinters, device_path
from sim.world import Result

from .office import HERE, OfficeTestCase

FIRST = "VID_1A2B&PID_0001#SN0001"
SECOND = "VID_1A2B&PID_0001#SN0002"
HIDDEN = "VID_1A2B&PID_0001#SN0003"
KLPMON = WINDOWS / "usb" / "klpmon.dll"

COLOUR_COUNT = "<DevTotalColorCount>30</DevTotalColorCount>"
TONER = (
    "<Toner><Color>K</Color><Level>40</Level><AverageAreaCoverage>5</AverageAreaCoverage><VendorName>Velnora</VendorName>"
    "<ModelID>T1</ModelID><SupplierID>VLN</SupplierID><SerialNumber>TS1</SerialNumber>"
    "<InstalledDate>2024-01-02</InstalledDate></Toner>"
)
DOCUMENT = (
    "<root><ZOLT><SystemInstalledDate>2024-01-02</SystemInstalledDate><Count>"
    f"<DevTotalMonoCount>700</DevTotalMonoCount>{COLOUR_COUNT}</Count>"
    f"<Supplies>{TONER}</Supplies></ZOLT></root>"
).encode()


def section(name: str = FIRST, port: int = 1, commands: str = "PJL,ZOLT,FWV,CI_12", *more: str) -> str:
    """The script of one printer; lines in `more` stand before the usual ones."""
    return "\n".join(
        [
            f"[printer {name}]",
            f"port = {port}",
            *more,
            f"id = text MFG:Velnora;MDL:Velnora RV-2160;CMD:{commands};",
            rf"49 00 01 = text {name[-6:]}\r\n",
            "56 00 00 = text Main Firmware Version@V1.00.00.12.34.56.78.90;Boot@V2",
            r"document = file \??\C:\usbprint\document.xml",
            "",
        ]
    )


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
        asked = [line.split(" ", 1)[1] for line in self.usb.transcript]
        self.assertEqual(asked.count("open"), asked.count("close"))
        return result

    def assert_failed(self, codes: str) -> Result:
        """A run that collects nothing, and says so by these codes."""
        result = self.run_and_close()
        self.assertEqual(
            result.log_texts[-2:],
            [
                f"3 failed to collect from Office : {codes}",
                "4 Failed to get info from device. Will retry at next week. bye~",
            ],
        )
        self.assertEqual(list(self.settings()["History"]), [f"LastCollectFailedTime_{device_path(FIRST)}"])
        return result


class ReportTest(UsbTestCase):
    def test_each_kind_of_printer(self):
        extended = "E0 01 00 = pad 255 text CMD:"
        for name, script, golden, mono in (
            ("colour", section(), "usb.xml", False),
            ("mono", section(), "usb.xml", True),
            ("extended", section(FIRST, 1, "PJL,EXT", extended + "ZOLT,FWV,CI_12;"), "usb.xml", False),
            ("rds", section(FIRST, 1, "ZOLT,FWV,RDS"), "usb-rds.xml", False),
            ("rds, mono, extended", section(FIRST, 1, "PJL,EXT", extended + "ZOLT,FWV,RDS;"), "usb-rds.xml", True),
        ):
            with self.subTest(name):
                self.forget_usb()
                self.usb.script(script)
                report = (HERE / "golden" / golden).read_text(encoding="utf-8")
                if mono:
                    self.usb.document(DOCUMENT.replace(COLOUR_COUNT.encode(), b""))
                    report = re.sub(f" *{COLOUR_COUNT}\n", "", report)
                result = self.run_and_close()
                self.assertEqual(result.log_texts[-1], "4 send sucessfully...")
                self.assertIn(f"4 collecting from {device_path(FIRST)}", result.log_texts)
                self.assertEqual(self.report(), report)
                self.assert_recorded(LastSendTime_SN0001=None)

    def test_sleeping_printer_is_woken(self):
        asleep, awake = "02 00 00 = hex 00 AA AA AA 00 00 00 00", "02 00 00 = hex 00 00 00 00 00 00 00 00"
        self.usb.script(section(FIRST, 1, "ZOLT,FWV,MPS", asleep, awake))
        result = self.run_and_close()
        self.assertGreater(result.seconds, 1)
        asked = [line.split(" ", 1)[1] for line in self.usb.transcript]
        start = asked.index("02 00 00 -> 8")
        self.assertEqual(asked[start : start + 3], ["02 00 00 -> 8", "99 00 00 failed C0000001", "02 00 00 -> 8"])
        self.report()

    def test_slow_transfers(self):
        self.usb.script(section(FIRST, 1, "ZOLT,FWV", "read = delay 700 usual", "write = delay 300 usual"))
        self.assertGreater(self.run_and_close().seconds, 2)
        self.report()


class FailureTest(UsbTestCase):
    def test_codes(self):
        second_read, second_write = "read = usual\nread = ", "write = usual\nwrite = "
        for script, codes in (
            ("write = cut 15 usual", "/xml error"),
            ("write = fail", "/xml error"),
            ("read = cut 15 usual", "/xml error"),
            ("read = fail C0000185", "/xml error"),
            ("read = hex 1B 91 00 00 00 00 00 06 00 00 00 01 00 00 00 00", "/xml error"),
            ("read = hex 1B 91 00 00 00 00 00 06 00 00 00 01 FF FF FF FF", "/xml error"),
            (second_write + "fail", "/xml error"),
            (second_write + "cut 0 usual", "/xml error"),
            (second_read + "cut 10 usual", "/xml error"),
            (second_read + "fail", "/xml error"),
            ("document = text no document", "/xml errorno document"),
            ("document = text <root/>", "/no ZOLT el/no Count el"),
            ("id = text CMD:ZOLT,FWV;", "/modelname err"),
            ("id = text MDL:X;CMD:ZOLT;", "/fwv err"),
            ("56 00 00 = fail", "/fwv err"),
        ):
            with self.subTest(script=script):
                self.forget_usb()
                self.usb.script(section(FIRST, 1, "ZOLT,FWV", script))
                result = self.assert_failed(codes)
                self.assertLess(result.seconds, 5)
                too_long = ["3 usb document too long : 4294967295"] if "FF FF" in script else []
                self.assertEqual([text for text in result.log_texts if "too long" in text], too_long)

    def test_printer_that_stops_answering(self):
        for script in ("write = hold", "read = hold", "write = usual\nwrite = hold", "read = usual\nread = hold"):
            with self.subTest(script=script):
                self.forget_usb()
                self.usb.script(section(FIRST, 1, "ZOLT,FWV", script))
                result = self.assert_failed("/xml error")
                self.assertGreater(result.seconds, 7)
                self.assertLess(result.seconds, 15)

    def test_printer_that_cannot_be_used(self):
        for script, *texts in (
            ("id = fail", "4 can't get device ID", "4 failed to initialize printer", "3 not valid IO. bye~"),
            ("49 00 01 = fail", "2 Serial Number is missing!!!", "3 mandatory info not available! bye~"),
        ):
            with self.subTest(script=script):
                self.forget_usb()
                self.usb.script(section(FIRST, 1, "ZOLT,FWV", script))
                self.assert_ends_with(self.run_and_close(), *texts)

    def test_jobs_hold_the_exchange_up(self):
        self.connect(jobs="0 0 2")
        self.assert_failed("/job pending")


class LockTest(UsbTestCase):
    """With the device-monitor library installed beside the agent."""

    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.world.install(KLPMON)

    def answers(self, acquire: str, release: str) -> None:
        (self.world.program_folder / "klpmon.ini").write_text(f"[answers]\nPortAcquire={acquire}\nPortRelease={release}\n")
        (self.world.program_folder / "klpmon.txt").unlink(missing_ok=True)

    def assert_asked(self, *calls: str) -> None:
        asked = (self.world.program_folder / "klpmon.txt").read_text().splitlines()
        self.assertEqual(asked, ["loaded", *calls, "unloaded"])

    def test_lock_is_taken_and_given_back(self):
        self.answers("1", "0 1")
        self.connect(jobs="0 0 2")  # under the lock, jobs hold nothing up
        self.assertEqual(self.run_and_close().log_texts[-1], "4 send sucessfully...")
        self.assert_asked("PortAcquire 153 -> 1", "PortRelease 153 -> 0", "PortRelease 153 -> 1")

    def test_lock_is_given_back_after_a_failure(self):
        self.answers("1", "1")
        self.usb.script(section(FIRST, 1, "ZOLT,FWV", "read = fail"))
        self.assert_failed("/xml error")
        self.assert_asked("PortAcquire 153 -> 1", "PortRelease 153 -> 1")

    def test_refused_lock(self):
        self.answers("0", "1")
        self.assert_failed("/lock failed")
        self.assert_asked("PortAcquire 153 -> 0")


class UnplugTest(UsbTestCase):
    """The printer goes away in the middle; each row needs a Windows of its own, since it does not come back."""

    def test_each_step(self):
        for script, text in (
            ("id = unplug", "3 not valid IO. bye~"),
            ("49 00 01 = unplug", "3 mandatory info not available! bye~"),
            ("write = unplug", "3 failed to collect from Office : /xml error"),
            ("read = unplug", "3 failed to collect from Office : /xml error"),
            ("write = usual\nwrite = unplug", "3 failed to collect from Office : /xml error"),
            ("read = usual\nread = unplug", "3 failed to collect from Office : /xml error"),
            ("56 00 00 = unplug", "3 failed to collect from Office : /fwv err"),
        ):
            with self.subTest(script):
                type(self).setUpClass()
                self.connect()
                self.forget_usb()
                self.usb.script(section(FIRST, 1, "ZOLT,FWV", script))
                result = self.run_and_close()
                self.assertIn(text, result.log_texts)
                self.assertLess(result.seconds, 15)


class PortTest(UsbTestCase):
    PRINTERS = section(FIRST, 1) + section(SECOND, 1) + section(HIDDEN, 1, "ZOLT,FWV", "link = nowhere")

    def test_last_printer_that_opens_wins(self):
        result = self.run_and_close()
        self.assertIn("<GeneralSerialNumber>SN0002</GeneralSerialNumber>\n", self.report())
        self.assertEqual(result.debug.count("hPort is INVALID_HANDLE_VALUE"), 1)

    def test_port_without_a_printer(self):
        for port in ("USB002", "USB", "USB001x"):
            with self.subTest(port=port):
                self.forget_usb()
                self.connect(port)
                result = self.run_agent()
                self.assertIn("2 Can't get address from QName : Office!!! Bye~", result.log_texts)
                self.assertEqual(self.usb.transcript, [])


del UsbTestCase

if __name__ == "__main__":
    unittest.main()
