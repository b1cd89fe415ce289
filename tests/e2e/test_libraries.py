"""Which libraries of the system each road through a run loads, and what becomes of a run that misses one. They are
loaded at their first call, from the system's folder and no other."""

import re
import shutil
import unittest

from sim.paths import PRINTERS, WINDOWS
from sim.queues import PRINTER, QUEUE, queue_script
from sim.usb_printers import UsbPrinters
from sim.world import Result

from .office import OfficeTestCase, history

USB_QUEUE = queue_script(port="USB001", monitor="USB Monitor", address=None)
DEVICE = "DeviceID = UMB\\UMB\\1\nPnPXID = urn:uuid:1"
WSD_QUEUE = queue_script(port="WSD-A", monitor="WSD Port", address=None, more_of_port=DEVICE)
NOT_VALID = "3 not valid IO. bye~"
NO_SERVER = "3 svr not connect. bye~"


class LibrariesTest(OfficeTestCase):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        usb = UsbPrinters(cls.world.prefix, (PRINTERS / "colour.ini").read_text(encoding="ascii"))
        usb.document((PRINTERS / "colour.xml").read_bytes(), "colour.xml")
        cls.world.start_windows()  # which itself needs the libraries that are taken away later
        cls.world.extra_environment = {"WINEDEBUG": "-all,warn+seh,warn+debugstr,trace+loaddll"}

    def setUp(self) -> None:
        super().setUp()
        self.scripted_printer()
        self.server = self.report_server()

    @staticmethod
    def loaded(result: Result) -> set[str]:
        """The paths of the libraries that a run has loaded, in small letters."""
        return {path.replace(r"\\", "\\").lower() for path in re.findall(r'Loaded L"([^"]+)"', result.stderr)}

    def test_each_road_loads_what_it_calls(self):
        yesterday = self.world.time_text(days_ago=1)
        recent = history(**{f"LastCollectFailedTime_{PRINTER}": yesterday})
        sent = history(LastSendTime_VNRV2160004711=yesterday)
        for name, arguments, flags, queue, settings, spared in (
            ("no queue", [], {}, "", "", "winspool.drv ws2_32.dll wininet.dll setupapi.dll ole32.dll"),
            ("disabled", ["-QName", QUEUE], {"Disable": 1}, None, "", "ws2_32.dll wininet.dll setupapi.dll ole32.dll"),
            ("failed", ["-QName", QUEUE], {}, None, recent, "wininet.dll setupapi.dll ole32.dll iphlpapi.dll"),
            ("sent", ["-QName", QUEUE], {}, None, sent, "wininet.dll setupapi.dll ole32.dll iphlpapi.dll"),
            ("full", ["-QName", QUEUE], {}, None, "", "setupapi.dll ole32.dll iphlpapi.dll"),
            ("USB", ["-QName", QUEUE], {}, USB_QUEUE, "", "ole32.dll iphlpapi.dll"),
        ):
            with self.subTest(name):
                self.forget()
                self.server.requests.clear()
                self.set_flags(**flags)
                self.world.spooler(queue if queue is not None else queue_script())
                if settings:
                    self.world.settings = settings
                result = self.finish(self.start(*arguments))
                self.assertEqual(len(self.server.requests), 2 if name in ("full", "USB") else 0, result.log_texts)
                names = {path.rpartition("\\")[2] for path in self.loaded(result)}
                self.assertEqual(names & {"zt.exe", *spared.split()}, {"zt.exe"})

    def test_library_that_is_missing(self):
        for library, queue, missed, end in (
            ("shell32.dll", None, "CommandLineToArgvW of SHELL32.dll", "2 no QName!!! bye~"),
            ("winspool.drv", None, "OpenPrinterW of WINSPOOL.DRV", "2 open printer failed!!! bye~"),
            ("ws2_32.dll", None, "WSAStartup of WS2_32.dll", NOT_VALID),
            ("setupapi.dll", USB_QUEUE, "SetupDiGetClassDevsW of SETUPAPI.dll", NOT_VALID),
            ("ole32.dll", WSD_QUEUE, "CoInitializeEx of ole32.dll", NOT_VALID),
            ("wininet.dll", None, "InternetCrackUrlA of WININET.dll", NO_SERVER),
        ):
            with self.subTest(library):
                self.forget()
                self.world.spooler(queue or queue_script())
                # Not the system's own, and one in the program's folder that must not take its place.
                planted = self.world.program_folder / library
                shutil.copy(WINDOWS / "usb" / "klpmon.dll", planted)
                self.world.overrides[library] = "" if library == "winspool.drv" else "n"
                result = self.run_agent()
                self.world.overrides[library] = "n" if library == "winspool.drv" else "b"
                planted.unlink()
                self.assertIn(f"2 can't load {missed}", result.log_texts)
                self.assertIn(end, result.log_texts)
                self.assertNotIn(f"c:\\agent\\{library}", self.loaded(result))


if __name__ == "__main__":
    unittest.main()
