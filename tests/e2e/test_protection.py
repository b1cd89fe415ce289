"""The road of product protection: the printer's state and toner life are read, the server asked for the limits, the
user asked for the agreement, the printer switched, the document posted."""

import unittest

from sim import answers
from sim.agreement import ScriptedAgreement
from sim.answers import Gate
from sim.desktop import Hands
from sim.paths import PRINTERS
from sim.queues import queue_script
from sim.usb_printers import UsbPrinters
from sim.world import AGREEMENT, Result

from .office import OfficeTestCase, golden, history

AGREE, DISAGREE = 1, 2
ON = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n"
OFF = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n"
SERIAL = "VNRV2160004711"
BOX = "Click Cancel not to send data to server"

CHECK, POST = "CheckSBX.aspx", "ConnectorSBX.aspx"
SENT = "4 send sucessfully..."
REFILL_END = "[ZT] refill - end"

# Names of the printer's objects.
DEVICE_IDS = ("1.3.6.1.4.1.2699.1.2.1.2.1.1.3.1", "1.3.6.1.4.1.53017.11.5.1.1.1.26.0")
TONERS = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1"
LIFE, CHANGES = TONERS + ".21", TONERS + ".18"


def told(result: Result) -> list[str]:
    """What the run told the debugger of itself, without what its parts did."""
    return [text for text in result.debug if text.startswith(("[ZT]", "[UA]", "ZOLT"))]


class ProtectionTestCase(OfficeTestCase):
    """Tests with a printer of protection, a report server that answers as usual, and a user who does as scripted."""

    def setUp(self) -> None:
        super().setUp()
        self.agreement = ScriptedAgreement(self.world)
        self.addCleanup(self.agreement.remove)
        self.server = self.report_server()
        self.world.forget_spooler()

    def begin_again(self) -> None:
        """As at the start of a test, but for the answers."""
        self.forget()
        self.server.requests.clear()
        self.agreement.forget()
        self.world.forget_spooler()

    def printer(self, state: str = "SBXON", country: str = "12", life: int = 200, more: str = ""):
        """A printer of that state, country index and toner life."""
        commands = f"PJL,ZOLT,{state},FWV,CI_{country}{more}"
        device_id = f'STRING: "MFG:Velnora;CMD:{commands};MDL:Velnora RV-2160 Series;CLS:PRINTER;"'
        objects = {name: device_id for name in DEVICE_IDS}
        for row in range(1, 5):
            objects[f"{LIFE}.{row}"] = f"INTEGER: {life - row + 1}"
            objects[f"{CHANGES}.{row}"] = f"INTEGER: {5 if row == 1 else 0}"
        return self.scripted_printer(changes=objects)

    @property
    def pages(self) -> list[str]:
        return [request.page for request in self.server.requests]

    @property
    def posted(self) -> list[str]:
        return [request.fields["data"] for request in self.server.requests if request.page == POST]

    def protect(self, *arguments: str) -> Result:
        """A run of product protection alone."""
        result = self.run_agent("-SBXOnly", *arguments)
        self.assertIn("4 [ZT] Product protection mode processing start....", result.log_texts)
        return result


class RoadTest(ProtectionTestCase):
    def test_each_step(self):
        self.snmp_printer("colour")
        self.agreement.answer(DISAGREE)
        result = self.protect()
        waited = ["Wait job finishes...", "no job break..."]
        steps = ["[ZT] Product protection mode processing start....", "[ZT] refill  -ZOLT_SBX_COLLECTING_MODE start..."]
        steps += ["Checking ZOLT support from device...", "Get  toner life information and if it change..."]
        steps += ["[ZT] Protection On via the queue", "Get ModelName...", *waited, "Get Serial number...", *waited]
        steps += ["Start SBX collecting...", "End SBX collecting..."]
        findings = "/warning:no tonerUsedotpercent/warning:no tonerCapacity/warning:no tonerTargetdot" * 4
        findings = "3 /warning:no XMLinterfaceversion/warning:no XMLformattype" + findings
        findings = [findings, "4 Start uploading...", SENT]
        self.assertEqual(result.log_texts[1:], ["4 " + step for step in steps] + findings)
        said = ["ZOLT - start", "[ZT] SBX support value = 1", "[ZT] Get country Index from ext."]
        said += ["[ZT]  Country Index from ext = 12", "[ZT] Failed to get host version", REFILL_END, "ZOLT - end"]
        self.assertEqual(told(result), said)
        self.assertEqual(self.agreement.asked, [f'queue "Office" language "EN" countryIs52 0 -> {DISAGREE}'])
        self.assertEqual(self.world.raw_jobs, [OFF])
        job = 'StartDocPrinterW "Office" level 1 document "Printer setting" output - datatype "RAW"'
        self.assertIn(job, "\n".join(self.world.spooler_calls))
        check, upload = self.server.requests
        self.assertEqual((check.method, check.path, check.body), ("POST", "/web/CheckSBX.aspx", b"SBX=1"))
        self.assertEqual((upload.method, upload.path), ("POST", "/web/ConnectorSBX.aspx"))
        self.assertEqual(upload.fields, {"data": golden("colour-protection")})
        self.assertEqual(self.settings()["Common"], {"PPNormalSendInterval": "30", "SBXPolicyReceived": "1"})
        recorded = {"LastPPSendTime_" + SERIAL: None, "TonerChangeCount_" + SERIAL: "42733"}
        self.assert_recorded(CurrentTonerLife_Office="18282", **recorded)

    def test_agreement_for_an_unprotected_printer(self):
        # The user is asked when the data is there.
        self.printer("SBXOFF", "52")
        self.agreement.answer(AGREE)
        result = self.protect("-Lang", "de-AT")
        self.assert_ends_with(
            result, "4 [ZT] refill - SendCommandViaPrinterQueue (ON).", "4 [ZT] Protection On via the queue"
        )
        self.assertEqual(self.agreement.asked, [f'queue "Office" language "de-AT" countryIs52 1 -> {AGREE}'])
        self.assertEqual((self.world.raw_jobs, self.pages), ([ON], [CHECK]))
        self.assert_recorded(**{"CurrentTonerLife_Office": "200", "TonerChangeCount_" + SERIAL: "5"})

    def test_both_runs(self):
        # The printer delivers its document itself; it is read once for both.
        self.printer("SBXOFF", "52", more=",RDS")
        web = self.report_server(port=80)
        web.answer("rds/rds.xml", answers.file(PRINTERS / "rds.xml"))
        (self.world.program_folder / "pp.ver").write_text("[Version]\r\nMainVersion=3.1.7\r\n", newline="")
        self.addCleanup((self.world.program_folder / "pp.ver").unlink)
        self.agreement.answer(DISAGREE)
        result = self.run_agent("-SBXPlus")
        self.assert_ends_with(result, SENT)
        self.assertIn("4 the printer has been already initialized.", result.log_texts)
        self.assertEqual(self.pages, [CHECK, POST, "CheckDate.aspx", "Connector.aspx"])
        self.assertEqual(self.posted, [golden("rds-protection")])
        self.assertEqual([request.path for request in web.requests], ["/rds/rds.xml"])

    def test_flags(self):
        self.printer(country="Österreich".encode().decode("latin-1"))
        self.agreement.answer(DISAGREE)
        sent = {"LastPPSendTime_" + SERIAL: self.world.time_text(), "TonerChangeCount_" + SERIAL: 5}
        self.world.settings = history(**sent)
        self.set_flags(DontCheckSkip=1, TestMode=1)
        for stored, reported in ((None, 0), (2, 0), (3, 1), ("1", 0)):
            with self.subTest(stored=stored):
                self.server.requests.clear()
                self.set_registry(AGREEMENT + r"\Velnora RV-2160", {} if stored is None else {"ZOLTAgree": stored})
                self.assert_ends_with(self.protect(), SENT)
                self.assertEqual(self.pages, [POST])
                self.assertIn(f"</Supplies>\n<ZOLTAgree>{reported}</ZOLTAgree>\n</ZOLT>\n", self.posted[0])
                self.assertTrue(self.server.requests[0].body.endswith(b"%0a&test=1"))

        document = self.posted[0]
        self.set_flags(DontCheckSkip=1, ShowResultBeforeSend=1)
        run = self.start_agent("-SBXOnly")
        shown = Hands(self.world).wait(BOX)
        for line in document.splitlines():
            self.assertIn(line, shown)
        Hands(self.world).press(BOX, "Cancel")
        self.assert_ends_with(self.finish(run), "4 cancel sending...")
        self.assertEqual(self.posted, [document])

    def test_service_switched_off(self):
        self.printer()
        self.agreement.answer(AGREE)
        self.server.answer(CHECK, answers.check_sbx("NOMORESERVICE"))
        result = self.run_agent("-SBXPlus")
        self.assertIn("4 ppa service stopped. bye~", result.log_texts)
        self.assert_ends_with(result, SENT)  # the report is a service of its own
        self.assertEqual(self.settings()["Common"]["PPAEnabled"], "2")
        result = self.run_agent("-SBXPlus")
        start = "4 [ZT] Product protection mode processing start...."
        self.assert_ends_with(result, start, "4 PPA disabled! bye~ ZT", marker=False)
        self.assertNotIn(REFILL_END, result.debug)
        self.assertEqual(self.pages, [CHECK, "CheckDate.aspx", "Connector.aspx"])

    def test_one_run_per_queue(self):
        self.world.spooler(queue_script() + queue_script("事務所", port="IP_LOBBY"))
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        self.printer()
        self.agreement.answer(AGREE)
        gate = Gate(answers.check_sbx())
        self.server.answer(CHECK, gate.answer, answers.check_sbx())
        first = self.start_agent("-SBXOnly")
        gate.wait_for_visitor()
        # The report does not wait for it, but for the other process.
        second = self.run_agent("-SBXPlus")
        self.assertIn("[ZT] PPA - already running..", second.debug)
        self.assertNotIn(REFILL_END, second.debug)
        self.assert_ends_with(second, "3 zolt data collecting already running.. bye~", marker=False)
        other = self.finish(self.world.start("-QName", "事務所", "-SBXOnly"))
        self.assertIn(REFILL_END, other.debug)
        gate.open()
        self.assertIn(REFILL_END, self.finish(first).debug)
        self.assertEqual([line.split('"')[1] for line in self.agreement.asked], ["Office", "事務所"])

    def test_limits(self):
        # The stored limit holds for the question, the server's, for this model, for the report.
        stored = "[Common]\r\nSBXPolicyReceived=1\r\nTonerMaxLife=150\r\n"
        self.server.answer(CHECK, answers.check_sbx(language_codes="12, 59", models={"Velnora RV-2160 Series": 160}))
        for state, life, settings, pages, asked in (
            ("SBXON", 99, "", [CHECK], 0),
            ("SBXOFF", 99, stored, [], 0),
            ("SBXOFF", 159, stored, [CHECK], 0),
            ("SBXON", 150, stored, [CHECK], 0),
            ("SBXON", 151, stored, [CHECK], 1),
        ):
            with self.subTest(state=state, life=life), self.printer(state, life=life):
                self.begin_again()
                self.world.settings = settings
                self.assertIn(f"[ZT] Current SBXLevel is not limitted = {life}", self.protect().debug)
                self.assertEqual((self.pages, self.world.raw_jobs), (pages, [OFF] * asked))
                self.assertEqual(len(self.agreement.asked), asked)
                self.assertEqual(self.settings()["Common"]["TonerMaxLife"], "160" if pages else "150")


class UsbTest(ProtectionTestCase):
    """A printer at a USB port, which is switched by a request of its own and not by a job."""

    PRINTER = r"""[printer VID_1A2B&PID_0001#SN0001]
port = 1
49 00 01 = text SN0001
43 00 00 = pad 255 hex 00 00 00 05  00 00 00 14  00 00 00 C8  00 00 00 03  00 00 00 00
document = file \??\C:\usbprint\document.xml
"""

    def test_switch(self):
        usb = UsbPrinters(self.world.prefix, self.PRINTER)
        usb.document((PRINTERS / "rds.xml").read_bytes())
        self.world.spooler(queue_script(port="USB001", address=""))
        for state, answer, reply, switched in (
            ("SBXOFF", AGREE, "43 01 00 = pad 8 text ON", True),
            ("SBXON", DISAGREE, "43 02 00 = fail", False),
        ):
            with self.subTest(state=state, reply=reply):
                self.begin_again()
                device_id = f"id = text MFG:Velnora;MDL:Velnora RV-2160;CMD:PJL,ZOLT,FWV,{state},CI_52;"
                usb.script(f"{self.PRINTER}{device_id}\n{reply}\n")
                usb.forget()
                self.agreement.answer(answer)
                result = self.protect()
                asked = [line.split(" ", 1)[1][:8] for line in usb.transcript]
                self.assertEqual([request for request in asked if request in ("43 01 00", "43 02 00")], [reply[:8]])
                self.assertIn("[ZT] Protection On using vendor command : USB", result.debug)
                self.assertEqual("[ZT] Protection On using vendor command :USCCESS" in result.debug, switched)
                self.assertEqual(self.world.raw_jobs, [])
        # Whether the printer followed does not matter to the report.
        for element in ("MDL>Velnora RV-2160<", "GeneralSerialNumber>SN0001<", "SBX>200<", "Capacity>2600<"):
            self.assertIn(element, self.posted[0])


if __name__ == "__main__":
    unittest.main()
