"""TCP/IP ports and the ways from them to a printer; printers that answer wrongly, or not at all: a clean end within
bounded time, its line, and the history kept. A demo takes the way over a WSD port. What becomes of each value that is
missing or odd is tested where it is read."""

import os
import socket
import subprocess
import unittest
from pathlib import Path

from sim import answers
from sim import misbehaviour as rule
from sim.paths import PRINTERS
from sim.queues import queue_script

from .office import SENT, OfficeTestCase, golden, history

USAGE = (PRINTERS / "rds.xml").read_text(encoding="utf-8")  # the document that some printers serve themselves
SERIAL = "1.3.6.1.2.1.43.5.1.1.17.1"
IBL, TTIME = "1.3.6.1.4.1.53017.11.5.11.53.11.1.2.0", "1.3.6.1.4.1.53017.11.5.11.53.11.1.1.0"
OLD = {"LastSendTime_OTHER": "2014-03-06 10:00:00", "LastCollectFailedTime_10.0.0.9": "2014-03-06 10:00:00"}


class PrinterTest(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.server = self.report_server()

    def forget(self) -> None:
        """The histories of the others stay, whatever happens."""
        self.world.settings = history(**OLD)

    def assert_report_from(self, name: str, port: str = "", **listening: str) -> None:
        """A run that finds the printer at a port that leads to that name, and posts its report."""
        self.world.spooler(queue_script(address="", more_of_port=f"host = {name}\n{port}"))
        self.scripted_printer(**listening)
        result = self.run_agent()
        self.assertIn("4 collecting from " + name, result.log_texts)
        self.assert_ends_with(result, SENT)
        self.assertEqual(self.server.requests[-1].fields["data"], golden("colour"))

    def test_name_and_community(self):
        self.assert_report_from("printer.example", "community = private key", community="private key")

    def test_ipv6(self):
        if os.environ.get("ZT_WORLD") == "loopback":
            print("SKIPPED HERE: test_printer.test_ipv6: needs a link-local IPv6 address on the loopback", flush=True)
            raise unittest.SkipTest
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
        self.assert_report_from("printer6.example", address="::")

    def test_printer_that_is_switched_off(self):
        for address, seconds in (("127.0.0.1", 3), ("absent.example", 0)):
            with self.subTest(address):
                self.world.spooler(queue_script(address="", more_of_port="host = " + address))
                self.forget()
                result = self.run_agent()
                self.assert_ends_with(result, "4 failed to initialize printer", "3 not valid IO. bye~")
                self.assertGreaterEqual(result.seconds, seconds)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_" + address: None})

    def test_serial_number_of_any_bytes(self):
        number = " A&B=\xe9\r\n[Common]\r\nPPAEnabled=2\r\n\0"
        self.scripted_printer(changes={SERIAL: "Hex-STRING: " + number.encode("latin-1").hex()})
        self.assert_ends_with(self.run_agent(), SENT)
        posted = b"SerialNumber=A%26B%3d%e9%0d%0a%5bCommon%5d%0d%0aPPAEnabled%3d2"
        self.assertEqual(self.server.requests[0].body, posted)
        # The history of the others survives, nothing is switched off by it, and the printer is known again.
        self.assertEqual(set(self.settings()), {"History"})
        self.assert_recorded(**OLD, **{"LastSendTime_A&B_\xe9__[Common]__PPAEnabled_2": None})
        self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")

    def test_late_answer_is_not_taken_for_another_object(self):
        printer = self.scripted_printer()
        # It comes while the next object is being asked for, whose own answer comes after it.
        printer.misbehave(rule.late(3.5), IBL)
        printer.misbehave(rule.late(1), TTIME)
        result = self.run_agent()
        self.assertIn("4 collected with gaps from Office : /no ibl", result.log_texts)
        report = golden("colour").replace("<IBL>61015</IBL>\n", "")
        self.assertEqual(self.server.requests[-1].fields["data"], report)

    def test_usage_document(self):
        self.scripted_printer("rds")
        failed = "4 Failed to get info from device. Will retry at next week. bye~"
        unfetched = ("3 failed to collect from Office : /xml error", failed)
        self.assert_ends_with(self.run_agent(), *unfetched)  # there is no web server
        self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})
        self.forget()
        web = self.report_server(port=80)
        self.assert_ends_with(self.run_agent(), *unfetched)  # it does not know the page
        self.assertEqual([request.page for request in self.server.requests], ["CheckDate.aspx"] * 2)
        # What is wrong with countless toners does not fill the log.
        self.forget()
        web.answer("rds/rds.xml", answers.Answer(USAGE.replace("</Supplies>", "<Toner/>" * 1000 + "</Supplies>")))
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        self.assertLess(max(len(text) for text in result.log_texts), 2100)
