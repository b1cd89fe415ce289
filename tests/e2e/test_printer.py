"""Ports and the ways from them to a printer; printers that answer wrongly, or not at all: a clean end within bounded
time, its line, and the history kept. What becomes of each value that is missing or odd is tested where it is read."""

import socket
import subprocess
import unittest
from pathlib import Path

from sim import answers
from sim import misbehaviour as rule
from sim.paths import PRINTERS, WINDOWS
from sim.queues import queue_script

from .office import OfficeTestCase, golden, history, skip_without_own_network

USAGE = (PRINTERS / "rds.xml").read_text(encoding="utf-8")  # the document that some printers serve themselves
SERIAL = "1.3.6.1.2.1.43.5.1.1.17.1"
IBL, TTIME = "1.3.6.1.4.1.53017.11.5.11.53.11.1.2.0", "1.3.6.1.4.1.53017.11.5.11.53.11.1.1.0"

SENT = "4 send sucessfully..."
OLD = {"LastSendTime_OTHER": "2014-03-06 10:00:00", "LastCollectFailedTime_10.0.0.9": "2014-03-06 10:00:00"}


class PrinterTest(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.server = self.report_server()

    def forget(self) -> None:
        """The histories of the others stay, whatever happens."""
        self.world.settings = history(**OLD)

    def assert_report_from(self, address: str, listening: str) -> None:
        """A run that finds the printer at that address, and posts its report."""
        self.forget()
        with self.scripted_printer(address=listening):
            result = self.run_agent()
        self.assertIn("4 collecting from " + address, result.log_texts)
        self.assert_ends_with(result, SENT)
        self.assertEqual(self.server.requests[-1].fields["data"], golden("colour"))

    def test_wsd_port(self):
        device = "DeviceID = UMB\\UMB\\1&2b6e1c5a&0&0002\nPnPXID = urn:uuid:1"
        self.world.spooler(queue_script(port="WSD-1", monitor="WSD Port", address=None, more_of_port=device))
        dll = WINDOWS / "function-discovery" / "function-discovery.dll"
        self.world.install(dll)
        (self.world.program_folder / "function-discovery.ini").write_text("urn:uuid:1 = string printer.example\n")
        self.wine("regsvr32", "/s", rf"C:\agent\{dll.name}")
        self.assert_report_from("printer.example", "127.0.0.1")

    def test_ipv6_addresses(self):
        skip_without_own_network("test_printer.test_ipv6_addresses", "needs a link-local IPv6 address on the loopback")
        # The agent sends from link-local IPv6 addresses only. Windows tells of one that its own name leads to, when it
        # has a DNS server with an IPv6 address.
        link_local = ["fe80::1/64", "dev", "lo"]
        subprocess.run(["ip", "addr", "add", *link_local, "nodad"], check=True)
        self.addCleanup(subprocess.run, ["ip", "addr", "del", *link_local], check=True)
        # Each look-up waits for that server, so the other tests get their files back.
        for name, line in (("hosts", f"fe80::1 {socket.gethostname()}"), ("resolv.conf", "nameserver ::1")):
            file = Path("/etc", name)
            before = file.read_text(encoding="ascii")
            file.write_text(f"{before}\n{line}\n", encoding="ascii")
            self.addCleanup(file.write_text, before, encoding="ascii")
        for address in ("fe80::1", "fe80::1%1", "printer6.example"):
            with self.subTest(address):
                self.world.spooler(queue_script(address="", more_of_port="host = " + address))
                self.assert_report_from(address, "::")

    def test_printer_that_is_switched_off(self):
        for address, seconds in (("127.0.0.1", 3), ("absent.example", 0)):
            with self.subTest(address):
                self.world.spooler(queue_script(address="", more_of_port="host = " + address))
                self.forget()
                result = self.run_agent()
                self.assert_ends_with(result, "4 failed to initialize printer", "3 not valid IO. bye~")
                self.assertGreaterEqual(result.seconds, seconds)
                self.assertLess(result.seconds, 30)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_" + address: None})
        # From now on it is not even asked.
        result = self.run_agent()
        self.assert_ends_with(result, "3 Last IO fail is near! Bye~", "3 found last col fail. try later. bye~")

    def test_serial_numbers_of_any_bytes(self):
        printer = self.scripted_printer()
        for number, key, posted in (
            ("A&B=C+d %41/é", "A&B_C+d %41/é", b"A%26B%3dC%2bd%20%2541%2f%e9"),
            ("\r\n VN1 \r\n", "VN1", b"VN1"),
            ("VN2\0\0\0", "VN2", b"VN2"),
            ("a\r\n[Common]\r\nPPAEnabled=2", "a__[Common]__PPAEnabled_2", b"a%0d%0a%5bCommon%5d%0d%0aPPAEnabled%3d2"),
            ("", "", b""),
        ):
            with self.subTest(number):
                self.server.requests.clear()
                self.forget()
                printer.change({SERIAL: "Hex-STRING: " + number.encode("latin-1").hex()})
                self.assert_ends_with(self.run_agent(), SENT)
                self.assertEqual(self.server.requests[0].body, b"SerialNumber=" + posted)
                # The history of the others survives, nothing is switched off by it, and the printer is known again.
                self.assertEqual(set(self.settings()), {"History"})
                self.assert_recorded(**OLD, **{"LastSendTime_" + key if key else "LastSendTime": None})
                self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")

    def test_late_answer_is_not_taken_for_another_object(self):
        printer = self.scripted_printer()
        # It comes while the next object is being asked for, whose own answer never comes.
        printer.misbehave(rule.late(3.5), IBL)
        printer.misbehave(rule.silence(), TTIME)
        result = self.run_agent()
        self.assertIn("4 collected with gaps from Office : /no ibl/no ttime", result.log_texts)
        self.assertNotIn("TTime", self.server.requests[-1].fields["data"])

    def test_document_that_does_not_come(self):
        self.scripted_printer("rds")
        failed = "4 Failed to get info from device. Will retry at next week. bye~"
        for answer in (None, answers.status(404), answers.Answer(USAGE[:1000])):
            with self.subTest(answer):
                self.forget()
                if answer:
                    web = self.report_server(port=80)
                    web.answer("rds/rds.xml", answer)
                self.assert_ends_with(self.run_agent(), "3 failed to collect from Office : /xml error", failed)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})
                if answer:
                    web.stop()
        self.assertNotIn("Connector.aspx", [request.page for request in self.server.requests])

    def test_document_of_countless_elements(self):
        self.scripted_printer("rds")
        web = self.report_server(port=80)
        for elements, as_it_came in (("<Toner/>" * 100000, False), ("<a>" * 90 + "<a/>" * 240000 + "</a>" * 90, True)):
            with self.subTest(elements[:10]):
                self.forget()
                document = USAGE.replace("</Supplies>", elements + "</Supplies>")
                web.answer("rds/rds.xml", answers.Answer(document))
                result = self.run_agent()
                self.assert_ends_with(result, SENT)
                self.assertLess(max(len(text) for text in result.log_texts), 2100)
                # Indented, the second one would have 90 MB.
                traced = "3 amended document longer than 4194304 bytes: posted as it came"
                self.assertEqual(traced in result.log_texts, as_it_came)
                self.assertEqual(self.server.requests[-1].fields["data"] == document, as_it_came)


if __name__ == "__main__":
    unittest.main()
