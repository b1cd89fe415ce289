"""The road of product protection: the printer's state and toner life are read, the server asked for the limits, the user
asked for the agreement, the printer switched, the document posted."""

import unittest

from sim import answers, misbehaviour
from sim.agreement import ScriptedAgreement
from sim.answers import Gate
from sim.desktop import Hands
from sim.paths import PRINTERS
from sim.queues import queue_script
from sim.usb_printers import UsbPrinters
from sim.world import AGREEMENT, Result

from .office import HERE, OfficeTestCase, history

AGREE, DISAGREE, DONT_REPORT = 1, 2, 3
ON = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n"
OFF = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n"
SERIAL = "VNRV2160004711"
BOX = "Click Cancel not to send data to server"

CHECK, POST = "CheckSBX.aspx", "ConnectorSBX.aspx"
VIA_QUEUE = "4 [ZT] Protection On via the queue"
SENT = "4 send sucessfully..."
REFILL_END = "[ZT] refill - end"

# Names of the printer's objects.
DEVICE_IDS = ("1.3.6.1.4.1.2699.1.2.1.2.1.1.3.1", "1.3.6.1.4.1.53017.11.5.1.1.1.26.0")
SERIAL_NUMBER = "1.3.6.1.2.1.43.5.1.1.17.1"
TONERS = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1"
LIFE, CHANGES = TONERS + ".21", TONERS + ".18"


def policy(**keys: object) -> str:
    """The text of a settings file with a stored policy."""
    return "[Common]\r\n" + "".join(f"{key}={value}\r\n" for key, value in ({"SBXPolicyReceived": 1} | keys).items())


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

    def printer(self, state: str = "SBXON", country: str | None = "12", life: int = 200, changes: int = 5, more: str = ""):
        """A printer of that state, country index, toner life and number of toner changes."""
        commands = ",".join(["PJL", "ZOLT"] + [state] * bool(state) + ["FWV"] + [f"CI_{country}"] * (country is not None))
        device_id = f'STRING: "MFG:Velnora;CMD:{commands}{more};MDL:Velnora RV-2160 Series;CLS:PRINTER;"'
        objects = {name: device_id for name in DEVICE_IDS}
        for row in range(1, 5):
            objects[f"{LIFE}.{row}"] = f"INTEGER: {max(life - row + 1, 0)}"
            objects[f"{CHANGES}.{row}"] = f"INTEGER: {changes if row == 1 else 0}"
        return self.scripted_printer(changes=objects)

    def reported(self, days_ago: float) -> str:
        """The text of a settings file after a product-protection send with the printer's usual toner."""
        time = self.world.time_text(days_ago)
        return history(**{"LastPPSendTime_" + SERIAL: time, "TonerChangeCount_" + SERIAL: "5"})

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

    def last_send(self) -> bool:
        """Whether the history holds the time of a product-protection send."""
        return "LastPPSendTime_" + SERIAL in self.settings()["History"]


class RoadTest(ProtectionTestCase):
    def test_each_answer(self):
        # Past the limit of a protected printer the user is asked first; for an unprotected one when the data is there.
        switching = "4 [ZT] refill - SendCommandViaPrinterQueue (ON)."
        for state, answer, jobs, pages, end in (
            ("SBXON", AGREE, [], [CHECK], ["4 Get ModelName..."]),
            ("SBXON", DISAGREE, [OFF], [CHECK, POST], ["4 Start uploading...", SENT]),
            ("SBXON", DONT_REPORT, [OFF], [CHECK], ["4 End SBX collecting..."]),
            ("SBXOFF", AGREE, [ON], [CHECK], [switching, VIA_QUEUE]),
            ("SBXOFF", DISAGREE, [], [CHECK, POST], ["4 Start uploading...", SENT]),
            ("SBXOFF", DONT_REPORT, [], [CHECK], ["4 End SBX collecting..."]),
        ):
            with self.subTest(state=state, answer=answer), self.printer(state, "52"):
                self.begin_again()
                self.agreement.answer(answer)
                result = self.protect("-Lang", "de-AT")
                log = [text for text in result.log_texts if not text.startswith("4 collected with gaps")]
                self.assertEqual(log[-len(end) :], end)
                self.assertEqual(told(result)[-2:], [REFILL_END, "ZOLT - end"])
                if state == "SBXOFF":
                    value = "agree" if answer == AGREE else "disagree"
                    self.assertIn("[ZT] Product protection agree value = " + value, result.debug)
                self.assertEqual(self.agreement.asked, [f'queue "Office" language "de-AT" countryIs52 1 -> {answer}'])
                self.assertEqual((self.world.raw_jobs, self.pages), (jobs, pages))
                self.assertEqual(self.settings()["Common"], {"PPNormalSendInterval": "30", "SBXPolicyReceived": "1"})
                recorded = {"CurrentTonerLife_Office": "200"}
                if (state, answer) != ("SBXON", AGREE):
                    recorded["TonerChangeCount_" + SERIAL] = "5"
                self.assert_recorded(**recorded, **({} if answer == AGREE else {"LastPPSendTime_" + SERIAL: None}))

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
        self.assertEqual(result.log_texts[1:], ["4 " + step for step in steps] + [findings, "4 Start uploading...", SENT])
        start, *rest = told(result)
        self.assertEqual((start, rest[-1]), ("ZOLT - start", "ZOLT - end"))
        self.assertEqual(rest[:2], ["[ZT] SBX support value = 1", "[ZT] Get country Index from ext."])
        self.assertEqual(rest[2:-1], ["[ZT]  Country Index from ext = 12", "[ZT] Failed to get host version", REFILL_END])
        job = 'StartDocPrinterW "Office" level 1 document "Printer setting" output - datatype "RAW"'
        self.assertIn(job, "\n".join(self.world.spooler_calls))
        check, upload = self.server.requests
        self.assertEqual((check.method, check.path, check.body), ("POST", "/web/CheckSBX.aspx", b"SBX=1"))
        self.assertEqual((upload.method, upload.path), ("POST", "/web/ConnectorSBX.aspx"))
        self.assertEqual(upload.fields, {"data": (HERE / "golden" / "colour-protection.xml").read_text(encoding="utf-8")})

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
        self.assertEqual(self.posted, [(HERE / "golden" / "rds-protection.xml").read_text(encoding="utf-8")])
        self.assertEqual([request.path for request in web.requests], ["/rds/rds.xml"])

    def test_flags(self):
        self.printer()
        self.agreement.answer(DISAGREE)
        self.world.settings = self.reported(0)
        self.set_flags(DontCheckSkip=1, TestMode=1)
        for stored, reported in ((None, 0), (1, 1), (2, 0), (3, 1), ("1", 0)):
            with self.subTest(stored=stored):
                self.server.requests.clear()
                self.set_registry(AGREEMENT + r"\Velnora RV-2160", {} if stored is None else {"ZOLTAgree": stored})
                self.assert_ends_with(self.protect(), SENT)
                self.assertEqual(self.pages, [POST])
                self.assertIn(f"</Supplies>\n<ZOLTAgree>{reported}</ZOLTAgree>\n</ZOLT>\n", self.posted[0])
                self.assertTrue(self.server.requests[0].body.endswith(b"%0a&test=1"))

    def test_service_switched_off(self):
        self.printer()
        self.agreement.answer(AGREE)
        self.server.answer(CHECK, answers.check_sbx("NOMORESERVICE"))
        result = self.run_agent("-SBXPlus")
        self.assertIn("4 ppa service stopped. bye~", result.log_texts)
        self.assert_ends_with(result, SENT)  # the report is a service of its own
        self.assertEqual(self.settings()["Common"]["PPAEnabled"], "2")
        for argument in ("-SBXPlus", "-SBXOnly"):
            result = self.run_agent(argument)
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
        second = self.run_agent("-SBXOnly")
        self.assertIn("[ZT] PPA - already running..", second.debug)
        self.assertNotIn(REFILL_END, second.debug)
        other = self.finish(self.world.start("-QName", "事務所", "-SBXOnly"))
        self.assertIn(REFILL_END, other.debug)
        gate.open()
        self.assertIn(REFILL_END, self.finish(first).debug)
        self.assertEqual([line.split('"')[1] for line in self.agreement.asked], ["Office", "事務所"])

    def test_confirmation_box(self):
        self.printer(country="Österreich".encode().decode("latin-1"))
        self.agreement.answer(DISAGREE)
        self.set_flags(ShowResultBeforeSend=1)
        hands = Hands(self.world)
        for button, *texts in (("Cancel", "4 cancel sending..."), ("OK", "4 sending accepted...", "4 Start uploading...", SENT)):
            run = self.start_agent("-SBXOnly")
            shown = hands.wait(BOX)
            hands.press(BOX, button)
            self.assert_ends_with(self.finish(run), *texts)
            self.assertEqual((len(self.posted), self.last_send()), (1, True) if button == "OK" else (0, False))
        for line in self.posted[0].splitlines():
            self.assertIn(line, shown)


class EndTest(ProtectionTestCase):
    """Each early end: printer, stored settings, and what is seen of it."""

    def check(
        self,
        name: str,
        log: str | None = None,
        debug: str | None = None,
        pages: tuple[str, ...] = (),
        settings: str = "",
        missing: str = "",
        **printer: object,
    ) -> None:
        """A run against such a printer, without the object `missing`, asks for those pages and ends with that line of the
        trace log, or that text of the debugger."""
        with self.subTest(name):
            self.begin_again()
            if settings:
                self.world.settings = settings
            with self.printer(**printer) as agent:
                if missing:
                    agent.misbehave(misbehaviour.error(2), missing)
                result = self.protect()
            if log:
                self.assert_ends_with(result, log)
            self.assertEqual(told(result)[-3 if debug else -2 :], [debug] * bool(debug) + [REFILL_END, "ZOLT - end"])
            self.assertEqual(self.pages, list(pages))

    def test_before_the_server(self):
        unchecked = "[ZT] failed to check SBX  bye~"
        with self.subTest("no printer"):
            result = self.protect()
            self.assert_ends_with(result, "3 " + unchecked)
            self.assertIn(unchecked, result.debug)
        self.check("no state", "3 [ZT] device is not include sbx string..", state="")
        self.check("SBXOT", "3 [ZT] device is not include sbx string..", state="SBXOT")
        self.check("no life", "3 [UA] failed to get toner life info~", missing=LIFE)
        self.check("no country", debug="[ZT] device is not supported countryIndex", country=None)
        self.assertEqual((self.agreement.asked, self.world.raw_jobs), ([], []))

    def test_limits(self):
        def no_limit(life: int) -> str:
            return f"[ZT] Current SBXLevel is not limitted = {life}"

        stored = policy(TonerMaxLife=150)
        self.server.answer(CHECK, answers.check_sbx(language_codes="12, 59", models={"Velnora RV-2160 Series": 160}))
        self.check("on, 99", debug=no_limit(99), life=99, pages=(CHECK,))
        self.assertEqual(self.settings()["Common"]["TonerMaxLife"], "160")
        self.check("off, 99, policy stored", debug=no_limit(99), state="SBXOFF", life=99, settings=stored)
        self.check("off, 159, asked late", debug=no_limit(159), state="SBXOFF", life=159, pages=(CHECK,), settings=stored)
        self.check("on, at the stored limit", debug=no_limit(150), life=150, pages=(CHECK,), settings=stored)
        self.assertEqual((self.agreement.asked, self.world.raw_jobs), ([], []))
        self.check("on, past the stored limit", debug=no_limit(151), life=151, pages=(CHECK,), settings=stored)
        self.assertEqual((len(self.agreement.asked), self.world.raw_jobs), (1, [OFF]))
        # Of the list that the server gave before, and the one that holds until there is another.
        for country, settings in (("59", policy(NSLanguageCode="12, 59")), ("24", "")):
            self.check(country, country=country, pages=(CHECK,), settings=settings)
            self.assertEqual((self.agreement.asked, self.world.raw_jobs, self.last_send()), ([], [OFF], True))

    def test_between_server_and_report(self):
        self.agreement.answer(DISAGREE)
        skipped = "3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~"
        self.check("no serial number", "3 [UA] failed to get serial nubmer~", missing=SERIAL_NUMBER, pages=(CHECK,))
        self.check("same toner, sent lately", skipped, settings=self.reported(6.9), pages=(CHECK,))
        self.check("other toner", SENT, settings=self.reported(6.9), changes=6, pages=(CHECK, POST))
        self.check("same toner, sent long ago", SENT, settings=self.reported(7.1), pages=(CHECK, POST))
        uncollected = "[ZT] Failed to get info from device. Will retry at next week. bye~"
        self.check("no document", debug=uncollected, more=",RDS", pages=(CHECK,))

    def test_server(self):
        self.agreement.answer(DISAGREE)
        for name, answer in (("dropped", answers.dropped()), ("malformed", answers.Answer("<root><Result>"))):
            # The run goes on with what it knows, and stores nothing.
            self.server.answer(CHECK, answer)
            self.check(name, SENT, pages=(CHECK, POST))
            self.assertNotIn("Common", self.settings())
        self.server.answer(CHECK, answers.check_sbx("NOMORESERVICE"))
        self.check("ended, asked late", "4 ppa service stopped. bye~", pages=(CHECK,), state="SBXOFF", settings=policy())
        self.server.answer(CHECK, answers.check_sbx())
        self.server.answer(POST, answers.upload("FAILED"))
        self.check("refused", "4 failed to send...", pages=(CHECK, POST))
        self.assertFalse(self.last_send())

    def test_no_dialog_is_no_agreement(self):
        self.printer()
        self.agreement.library.unlink()
        self.assertIn("3 [UA] no agreement dialog: UA.dll cannot be loaded, error 126", self.protect().log_texts)
        self.assertEqual((self.world.raw_jobs, self.pages, self.last_send()), ([OFF], [CHECK], True))


class UsbTest(ProtectionTestCase):
    """A printer at a USB port, which is switched by a request of its own and not by a job."""

    NAME = "VID_1A2B&PID_0001#SN0001"
    DOCUMENT = (PRINTERS / "rds.xml").read_bytes()

    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.usb = UsbPrinters(cls.world.prefix, f"[printer {cls.NAME}]\nport = 1\n")

    def connect(self, state: str, *script: str) -> None:
        self.world.spooler(queue_script(port="USB001", address=""))
        lines = [
            f"[printer {self.NAME}]",
            f"id = text MFG:Velnora;MDL:Velnora RV-2160;CMD:PJL,ZOLT,FWV,{state},CI_52;",
            "49 00 01 = text SN0001",
            "43 00 00 = pad 255 hex 00 00 00 05  00 00 00 14  00 00 00 C8  00 00 00 03  00 00 00 00",
            "document = file " + self.usb.document(self.DOCUMENT),
            *script,
        ]
        self.usb.script("\n".join(lines))
        self.usb.forget()

    def test_switch(self):
        for state, answer, request, reply, switched in (
            ("SBXOFF", AGREE, "43 01 00", "pad 8 text ON", True),
            ("SBXON", DISAGREE, "43 02 00", "pad 8 text OFF", True),
            ("SBXON", DISAGREE, "43 02 00", "fail", False),
        ):
            with self.subTest(state=state, reply=reply):
                self.begin_again()
                self.connect(state, f"{request} = {reply}")
                self.agreement.answer(answer)
                result = self.protect()
                asked = [line.split(" ", 1)[1] for line in self.usb.transcript]
                self.assertEqual([line[:8] for line in asked if line.startswith(("43 01", "43 02"))], [request])
                self.assertIn("[ZT] Protection On using vendor command : USB", result.debug)
                self.assertEqual("[ZT] Protection On using vendor command :USCCESS" in result.debug, switched)
                self.assertEqual(self.world.raw_jobs, [])
                # Whether the printer followed does not matter to the report.
                self.assertEqual(len(self.posted), answer == DISAGREE)
                for element in ("MDL>Velnora RV-2160<", "GeneralSerialNumber>SN0001<", "SBX>200<", "Capacity>2600<"):
                    self.assertIn(element, self.posted[0] if self.posted else element)


if __name__ == "__main__":
    unittest.main()
