"""Ports and the ways from them to a printer; printers that answer wrongly, or not at all: a clean end within bounded time,
its line, and the history kept."""

import socket
import subprocess
import unittest

from sim import answers
from sim import misbehaviour as rule
from sim.answers import Gate
from sim.paths import PRINTERS, WINDOWS
from sim.queues import queue_script

from .office import HERE, OfficeTestCase, history, skip_without_own_network

GOLDEN = HERE / "golden" / "colour.xml"
PWG_ID = "1.3.6.1.4.1.2699.1.2.1.2.1.1.3.1"
MAKER_ID = "1.3.6.1.4.1.53017.11.5.1.1.1.26.0"
SERIAL = "1.3.6.1.2.1.43.5.1.1.17.1"
SUPPLIES = "1.3.6.1.2.1.43.11.1.1"
MAKER = "1.3.6.1.4.1.53017.11.5.11.53"
IBL, TTIME = MAKER + ".11.1.2.0", MAKER + ".11.1.1.0"
INSTALLED, FIRMWARE = MAKER + ".31.1.6.0", MAKER + ".31.1.7.0"
EXTENDED = MAKER + ".33.4.1.2"
TONERS = MAKER + ".61.5.2.1"

WITHOUT_ID = "3 printer answers without a device ID : 127.0.0.1"
UNUSABLE = ("4 failed to initialize printer", "3 not valid IO. bye~")
UNSUPPORTED = ("4 ZOLT is not supported!", "3 not valid IO. bye~")
NAMELESS = ("2 Serial Number is missing!!!", "3 mandatory info not available! bye~")
COLLECTION_FAILED = "4 Failed to get info from device. Will retry at next week. bye~"
OLD = {"LastSendTime_OTHER": "2014-03-06 10:00:00", "LastCollectFailedTime_10.0.0.9": "2014-03-06 10:00:00"}


def device_id(commands: str, model: str = "Velnora RV-2160 Series") -> dict[str, str]:
    """The changes of a printer that make this its device ID."""
    return {name: f'STRING: "MFG:Velnora;CMD:{commands};MDL:{model};CLS:PRINTER;"' for name in (PWG_ID, MAKER_ID)}


class PrinterTestCase(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.server = self.report_server()
        # The histories of the others stay, whatever happens.
        self.world.settings = history(**OLD)

    def assert_collection_failed(self, codes: str) -> None:
        """A run that cannot use the printer, which the next run then leaves alone."""
        result = self.run_agent()
        self.assert_ends_with(result, "4 End collecting...", "3 failed to collect from Office : " + codes, COLLECTION_FAILED)
        self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})
        self.assertNotIn("Connector.aspx", [request.page for request in self.server.requests])
        self.world.settings = history(**OLD)


class PortTestCase(PrinterTestCase):
    """Ports of which something else knows where the printer is."""

    ON_TCP = "[queue Office]\ndriver = Velnora RV-2160 PCL\nport = IP_1\njobs = 0\n"
    TCP = ON_TCP + "[port IP_1]\nmonitor = TCPMON.DLL\n"
    WSD = ON_TCP.replace("IP_1", "WSD-1") + r"""[port WSD-1]
monitor = WSD Port
DeviceID = UMB\UMB\1&2b6e1c5a&0&0002
PnPXID = urn:uuid:1
"""
    REGISTRY = r"System\CurrentControlSet\Enum\UMB\UMB\1&2B6E1C5A&0&0002"

    def assert_report_from(self, address: str) -> None:
        """A run that finds the printer at that address, and posts its report."""
        self.world.settings = history(**OLD)
        with self.scripted_printer(address="::" if ":" in address or "6" in address else "127.0.0.1"):
            result = self.run_agent()
        self.assertIn("4 collecting from " + address, result.log_texts)
        self.assert_ends_with(result, "4 send sucessfully...")
        self.assertEqual(self.server.requests[-1].fields["data"], GOLDEN.read_text(encoding="utf-8"))

    def assert_wsd_ports(self, *rows: tuple[str, str | None, str]) -> None:
        """A report by each: the location in the registry, what Function Discovery says of the device, the address."""
        dll = WINDOWS / "function-discovery" / "function-discovery.dll"
        self.world.install(dll)
        self.world.spooler(self.WSD)
        discovery = self.world.program_folder / "function-discovery.ini"
        for location, device, address in rows:
            with self.subTest(location=location, device=device):
                self.set_registry(self.REGISTRY, {"LocationInformation": location})
                if device is not None:
                    discovery.write_text(f"urn:uuid:1 = {device}\n" if device else "", encoding="utf-8")
                    self.wine("regsvr32", "/s", rf"C:\agent\{dll.name}")
                self.assert_report_from(address)


class IPv6PortTest(PortTestCase):
    @classmethod
    def setUpClass(cls):
        skip_without_own_network("test_printer.IPv6PortTest", "needs a link-local IPv6 address on the loopback")
        # The agent sends from link-local IPv6 addresses only. Windows tells of one that its own name leads to, when it
        # has a DNS server with an IPv6 address.
        subprocess.run(["ip", "addr", "add", "fe80::1/64", "dev", "lo", "nodad"], check=True)
        for file, line in (("hosts", f"fe80::1 {socket.gethostname()}"), ("resolv.conf", "nameserver ::1")):
            with open("/etc/" + file, "a", encoding="ascii") as text:
                text.write(line + "\n")
        super().setUpClass()

    def test_addresses(self):
        for address in ("::1", "fe80::1", "fe80::1%1", "printer6.example"):
            with self.subTest(address):
                self.world.spooler(queue_script(address="", more_of_port="host = " + address))
                self.assert_report_from(address)

    def test_wsd_port(self):
        self.assert_wsd_ports(
            ("http://[::1]:5357/id", "", "::1"),  # the device is unknown to Function Discovery
            ("http://127.0.0.9/", "vector ::1 127.0.0.1", "::1"),
        )


class PortTest(PortTestCase):
    def test_wsd_port(self):
        self.assert_wsd_ports(
            ("http://127.0.0.1:5357/id", None, "127.0.0.1"),  # there is no Function Discovery
            ("http://127.0.0.9/", "string 127.0.0.1", "127.0.0.1"),
        )

    def test_port_that_leads_nowhere(self):
        wsd, tcp = "3 port WSD-1: ", "3 port IP_1: "
        refused = wsd + "its monitor refused "
        for script, *traced in (
            (self.WSD.replace("0002", "0003"), wsd + "no address of device urn:uuid:1", refused + "GetConfigInfo, error 87"),
            (self.WSD + "DeviceID.hex = 5500\nPnPXID.fail = 5\n", refused + "PnPXID, error 5"),
            (self.WSD + "PnPXID.needed = 0xFFFFFFFF\n", refused + "PnPXID, error 122"),
            (self.TCP + "address = 1\nOpenPrinterW.fail = 5\n", tcp + "its monitor cannot be opened, error 5"),
            (self.ON_TCP, tcp + "its monitor cannot be opened, error 1801"),
            (self.TCP + "GetConfigInfo.hex = 4900\n", "4 failed to initialize printer"),  # no address in it
        ):
            with self.subTest(script):
                self.world.spooler(script)
                self.world.settings = history(**OLD)
                result = self.run_agent()
                for text in traced:
                    self.assertIn(text, result.log_texts)
                self.assert_ends_with(result, "3 not valid IO. bye~")
                self.assertLess(result.seconds, 5)
        self.assertEqual(self.server.requests, [])


class OpeningTest(PrinterTestCase):
    def test_printer_that_is_switched_off(self):
        for address, seconds in (("127.0.0.1", 3), ("absent.example", 0)):
            with self.subTest(address):
                self.world.spooler(queue_script(address="", more_of_port="host = " + address))
                self.world.settings = history(**OLD)
                result = self.run_agent()
                self.assertNotIn(WITHOUT_ID, result.log_texts)
                self.assert_ends_with(result, *UNUSABLE)
                self.assertGreaterEqual(result.seconds, seconds)
                self.assertLess(result.seconds, 30)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_" + address: None})
                self.assertEqual(self.server.requests, [])

        # A week long it is not even asked.
        for days, asks in ((6.9, False), (7.01, True)):
            printer = self.scripted_printer()
            failed = self.world.time_text(days_ago=days)
            self.world.settings = history(**{"LastCollectFailedTime_127.0.0.1": failed})
            self.world.spooler(queue_script())
            result = self.run_agent()
            self.assertEqual(bool(printer.requests), asks)
            if not asks:
                self.assert_ends_with(
                    result, "3 Last IO fail is near! Bye~", "3 found last col fail. try later. bye~"
                )
                self.assert_recorded(**{"LastCollectFailedTime_127.0.0.1": failed})
            printer.stop()

    def test_device_id_that_is_no_answer(self):
        printer = self.scripted_printer()
        for name, what in {
            "each prefix": rule.each_prefix(),
            "nothing behind the name": rule.prefix(40),
            "garbage": rule.garbage(1400),
            "empty datagram": rule.bytes_of(b""),
            "zeros": rule.bytes_of(bytes(8000)),
            "endless length": rule.bytes_of("30 84 ff ff ff ff 02 01 00"),
            "negative length": rule.bytes_of("30 ff"),
            "indefinite lengths": rule.indefinite(),
            "lying list": rule.lie("bindings", 1000),
            "no bindings": rule.fewer(2),
            "a number": rule.value("INTEGER: 5"),
            "no value": rule.value("NULL"),
            "end of view of SNMPv2": rule.value_bytes(0x82),
            "empty texts": rule.value('""'),
            "general error": rule.error(5),
            "no such name, at an index beyond": rule.error(2, 9),
            "no such name, again and again": rule.error(2, 1),
        }.items():
            with self.subTest(name):
                printer.behave()
                printer.misbehave(what)
                self.world.settings = history(**OLD)
                result = self.run_agent()
                answered = ("a number", "no value", "empty texts", "general error", "no such name")
                self.assertEqual(WITHOUT_ID in result.log_texts, name.startswith(answered))
                self.assert_ends_with(result, *UNUSABLE)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})
        self.assertEqual(self.server.requests, [])

    def test_device_id_that_says_nothing(self):
        printer = self.scripted_printer()
        for text in (
            "x",
            ";;;:::;;;",
            "MFG:Velnora;CMD:PJL, ZOLT;MDL:Velnora RV-2160;",
            "MFG:Velnora; CMD:ZOLT;MDL:Velnora RV-2160;",
            "MFG:Velnora;CMD:ZOLT2,XZOLT,zolt;MDL:X;",
            "CMD:" + "," * 900,
        ):
            with self.subTest(text):
                self.world.settings = history(**OLD)
                printer.change({name: f'STRING: "{text}"' for name in (PWG_ID, MAKER_ID)})
                self.assert_ends_with(self.run_agent(), *UNSUPPORTED)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})

    def test_extended_device_id(self):
        printer = self.scripted_printer("extended")
        for name, what in {
            "silence": rule.silence(),
            "endless": rule.endless_walk('STRING: "CMD:ZOLT;"'),
            "same again": rule.same_name(),
            "numbers": rule.value("INTEGER: 1"),
        }.items():
            with self.subTest(name):
                self.world.settings = history(**OLD)
                printer.behave()
                printer.misbehave(what, EXTENDED, skip=1 if name == "same again" else 0)
                result = self.run_agent()
                # The word that makes it supported stands there.
                self.assert_ends_with(result, *UNSUPPORTED)
                traced = {
                    "endless": f"3 too many rows in walk of {EXTENDED}",
                    "same again": f"3 name does not increase in walk of {EXTENDED} : {EXTENDED}.1",
                }.get(name)
                self.assertEqual([text for text in result.log_texts if "walk" in text], [traced] if traced else [])


class SerialNumberTest(PrinterTestCase):
    def test_no_serial_number(self):
        printer = self.scripted_printer()
        for name, what in {
            "silence": rule.silence(),
            "a number": rule.value("INTEGER: 4711"),
            "no such name": rule.error(2),
        }.items():
            with self.subTest(name):
                self.world.settings = history(**OLD)
                printer.behave()
                printer.misbehave(what, SERIAL)
                self.assert_ends_with(self.run_agent(), *NAMELESS)
                self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})
        self.assertEqual(self.server.requests, [])

    def test_printer_of_a_service_contract(self):
        printer = self.scripted_printer(changes={SERIAL: 'STRING: " MPS-MODE\r\n"'})
        self.assert_ends_with(self.run_agent(), "4 Get Serial number...", "3 mandatory info not available! bye~")
        self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})
        # Its beginning is a serial number like any other.
        self.world.settings = history(**OLD)
        printer.change({SERIAL: 'STRING: "MPS-MOD"'})
        self.assert_ends_with(self.run_agent(), "4 send sucessfully...")

    def test_serial_numbers_of_any_bytes(self):
        printer = self.scripted_printer()
        for number, key, posted in (
            ("A&B=C+d %41/é", "A&B_C+d %41/é", b"A%26B%3dC%2bd%20%2541%2f%e9"),
            ("\r\n VN1 \r\n", "VN1", b"VN1"),
            ("VN2\0\0\0", "VN2", b"VN2"),
            ("a\r\n[Common]\r\nZOLTEnabled=2", "a__[Common]__ZOLTEnabled_2", b"a%0d%0a%5bCommon%5d%0d%0aZOLTEnabled%3d2"),
            ("", "", b""),
        ):
            with self.subTest(number):
                self.server.requests.clear()
                self.world.settings = history(**OLD)
                printer.change({SERIAL: "Hex-STRING: " + number.encode("latin-1").hex()})
                self.assert_ends_with(self.run_agent(), "4 send sucessfully...")
                self.assertEqual(self.server.requests[0].body, b"SerialNumber=" + posted)
                # The history of the others survives, nothing is switched off by it, and the printer is known again.
                self.assertEqual(set(self.settings()), {"History"})
                self.assert_recorded(**OLD, **{"LastSendTime_" + key if key else "LastSendTime": None})
                self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")


class CollectionTest(PrinterTestCase):
    def test_nothing_to_report(self):
        printer = self.scripted_printer()
        self.set_flags(DontCheckSkip=1)
        for codes, harm in (
            ("/no counters", lambda: printer.misbehave(rule.value('STRING: "1"'), TONERS + ".21")),
            ("/no counters", lambda: printer.misbehave(rule.silence(), TONERS + ".18")),
            ("/modelname err", lambda: printer.change(device_id("ZOLT", model=""))),
        ):
            harm()
            self.assert_collection_failed(codes)
            printer.behave()

    def test_gaps(self):
        everything = "/no toner pub/fwv err/no ibl/no ttime/no instdate"
        for name, codes, harm in (
            ("little", everything, lambda printer: printer.remove(SUPPLIES, FIRMWARE, IBL, TTIME, INSTALLED)),
            ("unknown colour", "/unknown color", lambda printer: printer.change({TONERS + ".2.4": "INTEGER: 19"})),
            ("endless table", "/no toner pub", lambda printer: printer.misbehave(rule.endless_walk("INTEGER: 3"), SUPPLIES + ".5")),
            ("table in a circle", "/no toner pub", lambda printer: printer.misbehave(rule.same_name(), SUPPLIES + ".5")),
            ("silent table", "/no toner prv", lambda printer: printer.misbehave(rule.silence(), TONERS + ".5")),
        ):
            with self.subTest(name):
                self.world.settings = history(**OLD)
                printer = self.scripted_printer()
                harm(printer)
                result = self.run_agent()
                self.assertIn("4 collected with gaps from Office : " + codes, result.log_texts)
                self.assert_ends_with(result, "4 send sucessfully...")
                self.assert_recorded(**OLD, LastSendTime_VNRV2160004711=None)
                printer.stop()

    def test_late_answer_is_not_taken_for_another_object(self):
        printer = self.scripted_printer()
        # It comes while the next object is being asked for, whose own answer never comes.
        printer.misbehave(rule.late(3.5), IBL)
        printer.misbehave(rule.silence(), TTIME)
        result = self.run_agent()
        self.assertIn("4 collected with gaps from Office : /no ibl/no ttime", result.log_texts)
        self.assertNotIn("TTime", self.server.requests[-1].fields["data"])

    def test_printer_that_falls_silent(self):
        printer = self.scripted_printer()
        gate = Gate(answers.check_date())
        self.server.answer("CheckDate.aspx", gate.answer)
        run = self.start_agent()
        gate.wait_for_visitor()
        printer.stop()
        gate.open()
        result = self.finish(run)
        self.assert_ends_with(result, "3 failed to collect from Office : /no toner pub/fwv err/no counters", COLLECTION_FAILED)
        self.assertLess(result.seconds, 30)
        self.assert_recorded(**OLD, **{"LastCollectFailedTime_127.0.0.1": None})

    def test_answers_with_a_wrong_bit(self):
        # Whatever comes of such a run, it ends by itself, in order, and keeps what it is not about.
        for seed in range(12):
            with self.subTest(seed=seed):
                self.world.settings = history(**OLD)
                printer = self.scripted_printer()
                printer.misbehave(rule.flipped(seed), skip=2 + 4 * seed, times=3)
                result = self.run_agent()
                self.assertIn("ZOLT - end", result.debug)
                recorded = self.settings()["History"]
                self.assertEqual({name: recorded[name] for name in OLD}, OLD)
                self.assertEqual(len(recorded), len(OLD) + 1)
                printer.stop()

    def test_values_that_are_markup(self):
        printer = self.scripted_printer(changes={FIRMWARE: 'STRING: "1 & 2 < 3"'})
        result = self.run_agent()
        # The document is what the printer made it; the server decides.
        self.assertIn("3 error:invalid xml data", result.log_texts)
        self.assertIn("<SystemFirmwareVersion>1 & 2 < 3</SystemFirmwareVersion>", self.server.requests[-1].fields["data"])
        self.world.settings = history(**OLD)
        printer.misbehave(rule.giant(60000), FIRMWARE)
        self.assert_ends_with(self.run_agent(), "4 send sucessfully...")


class DocumentTest(PrinterTestCase):
    """Printers that serve their usage document themselves."""

    def setUp(self):
        super().setUp()
        self.printer = self.scripted_printer("rds")
        self.good = (PRINTERS / "rds.xml").read_text(encoding="utf-8")

    def test_document_that_does_not_come(self):
        self.assert_collection_failed("/xml error")
        web = self.report_server(port=80)
        for name, answer in {
            "not there": answers.status(404),
            "login wanted": answers.Answer(b"", 401, {"WWW-Authenticate": 'Basic realm="printer"'}),
            "empty page": answers.Answer(status=204),
            "dropped": answers.dropped(),
            "nothing": answers.Answer(b""),
            "a page": answers.Answer("<html><body><p>Welcome<br></body></html>"),
            "cut": answers.Answer(self.good[: len(self.good) // 2]),
            "broken off": answers.broken_off(answers.Answer(self.good)),
            "zeros": answers.Answer(bytes(5000)),
            "deep": answers.Answer(b"<root>" * 20000),
            "huge": answers.huge(17 * 1024 * 1024),
        }.items():
            with self.subTest(name):
                web.answer("rds/rds.xml", answer)
                self.assert_collection_failed("/xml error")

    def test_document_of_countless_elements(self):
        web = self.report_server(port=80)
        for elements, as_it_came in (("<Toner/>" * 100000, False), ("<a>" * 90 + "<a/>" * 240000 + "</a>" * 90, True)):
            with self.subTest(elements[:10]):
                self.world.settings = history(**OLD)
                document = self.good.replace("</Supplies>", elements + "</Supplies>")
                web.answer("rds/rds.xml", answers.Answer(document))
                result = self.run_agent()
                self.assert_ends_with(result, "4 send sucessfully...")
                self.assertLess(max(len(text) for text in result.log_texts), 2100)
                # Indented, the second one would have 90 MB.
                traced = "3 amended document longer than 4194304 bytes: posted as it came"
                self.assertEqual(traced in result.log_texts, as_it_came)
                self.assertEqual(self.server.requests[-1].fields["data"] == document, as_it_came)

    def test_late_document(self):
        web = self.report_server(port=80)
        web.answer("rds/rds.xml", answers.trickling(answers.Answer(self.good[:1500]), 0.001))
        self.assert_collection_failed("/xml error")
        web.answer("rds/rds.xml", answers.late(1, answers.Answer(self.good)))
        self.assert_ends_with(self.run_agent(), "4 send sucessfully...")


if __name__ == "__main__":
    unittest.main()
