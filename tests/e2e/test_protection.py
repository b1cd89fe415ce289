"""The road of product protection: the printer's state and toner life are read, the server asked for the limits, the user
asked for the agreement, the printer switched, the document posted."""

import sys
import unittest

from office import BUILD, HERE, PRINTERS, QUEUE, SIM, Gate, OfficeTestCase, answers, history, queue_script
from ztsim.desktop import Hands
from ztsim.world import AGREEMENT, Result

sys.path[:0] = [str(SIM / "agreement"), str(SIM / "usb")]

import misbehaviour  # noqa: E402
from scripted_agreement import ScriptedAgreement  # noqa: E402
from usb_printers import UsbPrinters  # noqa: E402

AGREE, DISAGREE, DONT_REPORT = 1, 2, 3
ON = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n"
OFF = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n"
SERIAL = "VNRV2160004711"
BOX = "Click Cancel not to send data to server"

CHECK, POST = "CheckSBX.aspx", "ConnectorSBX.aspx"
SWITCHED_OFF = "4 [ZT] Protection On via the queue"
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

    def assert_sent(self, result: Result) -> None:
        self.assert_ends_with(result, "4 Start uploading...", SENT)
        self.assertEqual(told(result)[-2:], [REFILL_END, "ZOLT - end"])


class RoadTest(ProtectionTestCase):
    def test_protected_printer(self):
        # Past its limit the user is asked, and the printer follows.
        self.printer("SBXON")
        for answer, jobs, pages, end in (
            (AGREE, [], [CHECK], "4 Get ModelName..."),
            (DISAGREE, [OFF], [CHECK, POST], SENT),
            (DONT_REPORT, [OFF], [CHECK], "4 End SBX collecting..."),
        ):
            with self.subTest(answer=answer):
                self.begin_again()
                self.agreement.answer(answer)
                result = self.protect()
                self.assertEqual([text for text in result.log_texts if not text.startswith("4 collected with gaps")][-1], end)
                self.assertEqual(told(result)[-2:], [REFILL_END, "ZOLT - end"])
                self.assertEqual(self.agreement.asked, [f'queue "Office" language "EN" countryIs52 0 -> {answer}'])
                self.assertEqual(self.world.raw_jobs, jobs)
                self.assertEqual(self.pages, pages)
                common = {"PPNormalSendInterval": "30", "SBXPolicyReceived": "1"}
                recorded = {"CurrentTonerLife_Office": "200"}
                if answer != AGREE:
                    recorded |= {"TonerChangeCount_" + SERIAL: "5", "LastPPSendTime_" + SERIAL: None}
                self.assertEqual(self.settings()["Common"], common)
                self.assert_recorded(**recorded)

    def test_unprotected_printer(self):
        self.printer("SBXOFF", "52")
        for answer, jobs, pages, value in (
            (AGREE, [ON], [CHECK], "agree"),
            (DISAGREE, [], [CHECK, POST], "disagree"),
            (DONT_REPORT, [], [CHECK], "disagree"),
        ):
            with self.subTest(answer=answer):
                self.begin_again()
                self.agreement.answer(answer)
                result = self.protect("-Lang", "de-AT")
                self.assertIn("[ZT] Product protection agree value = " + value, result.debug)
                if answer == AGREE:
                    self.assert_ends_with(result, "4 [ZT] refill - SendCommandViaPrinterQueue (ON).", SWITCHED_OFF)
                self.assertEqual(self.agreement.asked, [f'queue "Office" language "de-AT" countryIs52 1 -> {answer}'])
                self.assertEqual(self.world.raw_jobs, jobs)
                self.assertEqual(self.pages, pages)
                self.assertEqual("LastPPSendTime_" + SERIAL in self.settings()["History"], answer != AGREE)

    def test_each_step_of_the_whole_road(self):
        self.snmp_printer("colour")
        self.agreement.answer(DISAGREE)
        result = self.protect()
        self.assertEqual(
            result.log_texts[1:],
            [
                "4 [ZT] Product protection mode processing start....",
                "4 [ZT] refill  -ZOLT_SBX_COLLECTING_MODE start...",
                "4 Checking ZOLT support from device...",
                "4 Get  toner life information and if it change...",
                "4 [ZT] Protection On via the queue",
                "4 Get ModelName...",
                "4 Wait job finishes...",
                "4 no job break...",
                "4 Get Serial number...",
                "4 Wait job finishes...",
                "4 no job break...",
                "4 Start SBX collecting...",
                "4 End SBX collecting...",
                "3 /warning:no XMLinterfaceversion/warning:no XMLformattype"
                + "/warning:no tonerUsedotpercent/warning:no tonerCapacity/warning:no tonerTargetdot" * 4,
                "4 Start uploading...",
                "4 send sucessfully...",
            ],
        )
        self.assertEqual(
            told(result),
            [
                "ZOLT - start",
                "[ZT] SBX support value = 1",
                "[ZT] Get country Index from ext.",
                "[ZT]  Country Index from ext = 12",
                "[ZT] Failed to get host version",
                "[ZT] refill - end",
                "ZOLT - end",
            ],
        )
        self.assertIn(
            'StartDocPrinterW "Office" level 1 document "Printer setting" output - datatype "RAW"',
            "\n".join(self.world.spooler_calls),
        )
        check, upload = self.server.requests
        self.assertEqual((check.method, check.path, check.body), ("POST", "/web/CheckSBX.aspx", b"SBX=1"))
        self.assertEqual((upload.method, upload.path), ("POST", "/web/ConnectorSBX.aspx"))
        self.assertEqual(upload.fields, {"data": (HERE / "golden" / "colour-protection.xml").read_text(encoding="utf-8")})

    def test_document_of_the_printer_itself(self):
        self.printer("SBXOFF", "52", more=",RDS")
        web = self.report_server(port=80)
        web.answer("rds/rds.xml", answers.file(PRINTERS / "rds.xml"))
        (self.world.program_folder / "pp.ver").write_text("[Version]\r\nMainVersion=3.1.7\r\n", newline="")
        self.addCleanup((self.world.program_folder / "pp.ver").unlink)
        self.agreement.answer(DISAGREE)
        # Both runs of one process: the document is read from the printer once.
        result = self.run_agent("-SBXPlus")
        self.assert_ends_with(result, SENT)
        self.assertEqual(self.pages, [CHECK, POST, "CheckDate.aspx", "Connector.aspx"])
        self.assertEqual(self.posted, [(HERE / "golden" / "rds-protection.xml").read_text(encoding="utf-8")])
        self.assertEqual([request.path for request in web.requests], ["/rds/rds.xml"])

    def test_stored_agreement_is_reported(self):
        self.printer("SBXON")
        self.agreement.answer(DISAGREE)
        self.set_flags(DontCheckSkip=1)
        for stored, reported in ((None, 0), (0, 0), (1, 1), (2, 0), (3, 1), ("1", 0)):
            with self.subTest(stored=stored):
                values = {} if stored is None else {"ZOLTAgree": stored}
                self.set_registry(AGREEMENT + r"\Velnora RV-2160", values)
                self.assert_sent(self.protect())
                self.assertIn(f"</Supplies>\n<ZOLTAgree>{reported}</ZOLTAgree>\n</ZOLT>\n", self.posted[-1])


class BothRunsTest(ProtectionTestCase):
    def test_protection_comes_before_the_report(self):
        self.printer("SBXON")
        self.agreement.answer(DISAGREE)
        result = self.run_agent("-SBXPlus")
        self.assert_ends_with(result, SENT)
        self.assertEqual(self.pages, [CHECK, POST, "CheckDate.aspx", "Connector.aspx"])
        self.assertEqual(result.log_texts.count(SENT), 2)
        self.assertIn("4 the printer has been already initialized.", result.log_texts)

    def test_switched_off_service_ends_the_process(self):
        self.printer("SBXON")
        self.world.settings = "[Common]\r\nPPAEnabled=2\r\n"
        for argument in ("-SBXOnly", "-SBXPlus"):
            result = self.run_agent(argument)
            self.assert_ends_with(
                result, "4 [ZT] Product protection mode processing start....", "4 PPA disabled! bye~ ZT", marker=False
            )
            self.assertNotIn(REFILL_END, result.debug)
        self.assertEqual((self.pages, self.agreement.asked), ([], []))
        # Other values do not switch it off, nor does it concern the report.
        self.assert_ends_with(self.run_agent(), SENT)
        self.world.settings = "[Common]\r\nPPAEnabled=1\r\n"
        self.assert_ends_with(self.protect(), "4 End SBX collecting...")

    def test_service_ended_by_the_server(self):
        self.printer("SBXON")
        self.agreement.answer(AGREE)
        self.server.answer(CHECK, answers.check_sbx("NOMORESERVICE"))
        result = self.run_agent("-SBXPlus")
        self.assertIn("4 ppa service stopped. bye~", result.log_texts)
        self.assert_ends_with(result, SENT)  # the report is a service of its own
        self.assertEqual(self.settings()["Common"]["PPAEnabled"], "2")
        self.assert_ends_with(self.run_agent("-SBXPlus"), "4 PPA disabled! bye~ ZT", marker=False)
        self.assertEqual(self.pages, [CHECK, "CheckDate.aspx", "Connector.aspx"])

    def test_one_run_per_queue(self):
        self.world.spooler(queue_script() + queue_script("Lobby", port="IP_LOBBY"))
        self.printer("SBXON")
        self.agreement.answer(AGREE)
        gate = Gate(answers.check_sbx())
        self.server.answer(CHECK, gate.answer, answers.check_sbx())
        first = self.start_agent("-SBXOnly")
        gate.wait_for_visitor()
        second = self.run_agent("-SBXOnly")
        self.assertIn("[ZT] PPA - already running..", second.debug)
        self.assertNotIn(REFILL_END, second.debug)
        other = self.finish(self.world.start("-QName", "Lobby", "-SBXOnly"))
        self.assertIn(REFILL_END, other.debug)
        gate.open()
        self.assertIn(REFILL_END, self.finish(first).debug)
        self.assertEqual([line.split('"')[1] for line in self.agreement.asked], ["Office", "Lobby"])


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
        self.check("empty country", debug="[ZT] device is not supported countryIndex", country="")
        self.assertEqual((self.agreement.asked, self.world.raw_jobs), ([], []))

    def test_toner_life(self):
        def no_limit(life: int) -> str:
            return f"[ZT] Current SBXLevel is not limitted = {life}"

        stored = policy(TonerMaxLife=150)
        self.server.answer(CHECK, answers.check_sbx(models={"Velnora RV-2160 Series": 160}))
        self.check("on, 99", debug=no_limit(99), life=99, pages=(CHECK,))
        self.assertEqual(self.settings()["Common"]["TonerMaxLife"], "160")
        self.check("off, 99, policy stored", debug=no_limit(99), state="SBXOFF", life=99, settings=stored)
        self.check("off, 100", debug=no_limit(100), state="SBXOFF", life=100, pages=(CHECK,))
        self.check("off, 159, asked late", debug=no_limit(159), state="SBXOFF", life=159, pages=(CHECK,), settings=stored)
        self.assertEqual(self.agreement.asked, [])
        self.check("on, at the stored limit", life=150, pages=(CHECK,), settings=stored)
        self.assertEqual(self.agreement.asked, [])
        self.check("on, past the stored limit", debug=no_limit(151), life=151, pages=(CHECK,), settings=stored)
        self.assertEqual((len(self.agreement.asked), self.world.raw_jobs), (1, [OFF]))
        self.check("off, at the limit", state="SBXOFF", life=160, pages=(CHECK,))
        self.assertEqual(len(self.agreement.asked), 1)

    def test_country(self):
        self.agreement.answer(AGREE)
        self.server.answer(CHECK, answers.check_sbx(language_codes="12, 59"))
        for country, stored, question in (
            ("52", "", 1),
            ("520", "", 0),
            ("24", "", None),  # of the list that holds until there is another
            ("24", policy(NSLanguageCode="12, 59"), 0),
            ("59", policy(NSLanguageCode="12, 59"), None),
            ("Unknown", "", None),
        ):
            self.check(country, country=country, pages=(CHECK,), settings=stored)
            asked = [line.split()[5] for line in self.agreement.asked]
            self.assertEqual(asked, [] if question is None else [str(question)])
            self.assertEqual(self.world.raw_jobs, [OFF] if question is None else [])
            self.assertEqual("LastPPSendTime_" + SERIAL in self.settings()["History"], question is None)

    def test_between_server_and_report(self):
        self.agreement.answer(DISAGREE)
        lately, long_ago = (
            history(**{"LastPPSendTime_" + SERIAL: self.world.time_text(days), "TonerChangeCount_" + SERIAL: "5"})
            for days in (6.9, 7.1)
        )
        skipped = "3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~"
        self.check("policy stored", SENT, pages=(CHECK, POST), state="SBXOFF", settings=policy())
        self.check("no serial number", "3 [UA] failed to get serial nubmer~", missing=SERIAL_NUMBER, pages=(CHECK,))
        self.check("same toner, sent lately", skipped, settings=lately, pages=(CHECK,))
        self.check("other toner", SENT, settings=lately, changes=6, pages=(CHECK, POST))
        self.check("same toner, sent long ago", SENT, settings=long_ago, pages=(CHECK, POST))
        self.check(
            "no document",
            debug="[ZT] Failed to get info from device. Will retry at next week. bye~",
            more=",RDS",
            pages=(CHECK,),
        )

    def test_server(self):
        self.agreement.answer(DISAGREE)
        for name, answer in (
            ("error", answers.status(500)),
            ("dropped", answers.dropped()),
            ("malformed", answers.Answer("<root><Result>")),
            ("no root", answers.Answer("<other/>")),
        ):
            # The run goes on with what it knows, and stores nothing.
            self.server.answer(CHECK, answer)
            self.check(name, SENT, pages=(CHECK, POST))
            self.assertNotIn("Common", self.settings())
        self.server.answer(CHECK, answers.check_sbx("NOMORESERVICE"))
        stopped = "4 ppa service stopped. bye~"
        self.check("ended", stopped, pages=(CHECK,))
        self.check("ended, asked late", stopped, pages=(CHECK,), state="SBXOFF", settings=policy())
        self.server.answer(CHECK, answers.check_sbx())
        for answer, texts in (
            (answers.upload("FAILED"), ["2 Unknown Result !!!", "3 failed to send..."]),
            (answers.Answer("<root/>"), ["2 Can't get result !!!", "3 failed to send..."]),
            (answers.status(500), ["2 Can't get result !!!", "3 failed to send..."]),
        ):
            self.server.answer(POST, answer)
            self.check(texts[0], texts[-1], pages=(CHECK, POST))
            self.assertNotIn("LastPPSendTime_" + SERIAL, self.settings()["History"])

    def test_flags_of_the_client(self):
        self.agreement.answer(DISAGREE)
        self.printer()
        self.world.settings = history(
            **{"LastPPSendTime_" + SERIAL: self.world.time_text(), "TonerChangeCount_" + SERIAL: "5"}
        )
        self.set_flags(DontCheckSkip=1, TestMode=1)
        self.assert_sent(self.protect())
        self.assertEqual(self.pages, [POST])
        self.assertTrue(self.server.requests[0].body.endswith(b"%0a&test=1"))


class AgreementTest(ProtectionTestCase):
    def test_no_dialog_is_no_agreement(self):
        self.printer()
        unloadable = "3 [UA] no agreement dialog: UA.dll cannot be loaded, error "
        for library, text in (
            (None, unloadable + "126"),
            (HERE / "office.py", unloadable + "193"),
            (BUILD / "sim" / "function-discovery" / "function-discovery.dll",
             "3 [UA] no agreement dialog: UA.dll does not export ShowProtectionAgreementUI"),
        ):
            with self.subTest(text):
                self.forget()
                self.agreement.install(library) if library else self.agreement.library.unlink()
                result = self.protect()
                self.assertIn(text, result.log_texts)
                self.assertEqual(self.settings()["History"].keys() & {"LastPPSendTime_" + SERIAL}, {"LastPPSendTime_" + SERIAL})
        self.assertEqual(self.world.raw_jobs, [OFF] * 3)
        self.assertEqual(self.pages, [CHECK] * 3)

    def test_odd_answers_are_no_agreement(self):
        self.printer("SBXOFF")
        for answer in (0, 4, -1, 2147483647, -2147483648):
            with self.subTest(answer):
                self.forget()
                self.agreement.answer(answer)
                self.assertIn(f"3 [UA] the agreement dialog answered {answer}", self.protect().log_texts)
                self.assertIn("LastPPSendTime_" + SERIAL, self.settings()["History"])
        self.assertEqual((self.world.raw_jobs, self.posted), ([], []))

    def test_names_and_languages_are_handed_on(self):
        self.printer()
        self.agreement.answer(AGREE)
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        for queue, language in (("Büro “2. Stock”", "DE"), ("事務所", "ja-JP"), ("x" * 200, "")):
            self.world.spooler(queue_script(name=queue))
            self.finish(self.world.start("-QName", queue, "-SBXOnly", "-Lang", language))
            self.assertEqual(self.agreement.asked[-1], f'queue "{queue}" language "{language}" countryIs52 0 -> 1')

    def test_queue_that_takes_no_job(self):
        self.agreement.answer(DISAGREE)
        self.printer()
        self.world.spooler(queue_script(more_of_queue="StartDocPrinterW.fail = 5"))
        result = self.protect()
        self.assertIn("[ZT] HardStop - StartDocPrinter error", "\n".join(result.log_texts))
        self.assert_sent(result)
        self.assertEqual(self.world.raw_jobs, [])

    def test_waits_for_jobs(self):
        self.agreement.answer(DISAGREE)
        self.printer()
        self.world.spooler(queue_script(jobs="0 2 0"))
        result = self.protect()
        self.assert_sent(result)
        self.assertGreater(result.seconds, 1)
        self.forget()
        # A queue that cannot be counted does not hold up the report.
        self.world.spooler(queue_script(more_of_queue="EnumJobsW.fail = 5"))
        result = self.protect()
        self.assert_sent(result)
        self.assertEqual(result.log_texts.count("4 - job break..."), 2)


class ConfirmTest(ProtectionTestCase):
    def test_what_is_shown_is_what_is_posted(self):
        self.printer()
        self.agreement.answer(DISAGREE)
        self.set_flags(ShowResultBeforeSend=1)
        hands = Hands(self.world)
        run = self.start_agent("-SBXOnly")
        hands.wait(BOX)
        hands.press(BOX, "Cancel")
        self.assert_ends_with(self.finish(run), "3 cancel sending...")
        self.assertEqual(self.posted, [])
        self.assertNotIn("LastPPSendTime_" + SERIAL, self.settings()["History"])
        run = self.start_agent("-SBXOnly")
        shown = hands.wait(BOX)
        hands.press(BOX, "OK")
        self.assert_ends_with(self.finish(run), "3 sending accepted...", "4 Start uploading...", SENT)
        for line in self.posted[0].splitlines():
            self.assertIn(line, shown)


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
            ("SBXOFF", AGREE, "43 01 00", "pad 8 text OFF", False),
            ("SBXON", DISAGREE, "43 02 00", "text OFF", False),  # too short
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
                self.assertEqual(self.settings()["History"]["CurrentTonerLife_Office"], "200")
                if self.posted:
                    for element in ("MDL>Velnora RV-2160<", "GeneralSerialNumber>SN0001<", "SBX>SBXON<", "Capacity>2600<"):
                        self.assertIn(element, self.posted[0])


if __name__ == "__main__":
    unittest.main()
