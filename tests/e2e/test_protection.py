"""The road of product protection: the printer's state and toner life are read, the server asked for the limits, the
user asked for the agreement, the printer switched, the document posted."""

from sim import answers
from sim.agreement import ScriptedAgreement
from sim.answers import Gate
from sim.desktop import Hands
from sim.paths import PRINTERS
from sim.queues import queue_script
from sim.world import AGREEMENT

from .office import SENT, OfficeTestCase, golden

DISAGREE = 2
OFF = b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n"
SERIAL = "VNRV2160004711"
BOX = "Click Cancel not to send data to server"
CHECK, POST = "CheckSBX.aspx", "ConnectorSBX.aspx"
REFILL_END = "[ZT] refill - end"


class ProtectionTest(OfficeTestCase):
    """Tests with a user who disagrees, and a report server that answers as usual."""

    def setUp(self) -> None:
        super().setUp()
        self.agreement = ScriptedAgreement(self.world)
        self.addCleanup(self.agreement.remove)
        self.agreement.answer(DISAGREE)
        self.server = self.report_server()
        self.world.forget_spooler()

    @property
    def pages(self) -> list[str]:
        return [request.page for request in self.server.requests]

    def test_each_step(self):
        self.scripted_printer()
        result = self.run_agent("-SBXOnly")
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
        self.assertEqual([text for text in result.debug if text.startswith(("[ZT]", "[UA]", "ZOLT"))], said)
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

    def test_both_runs(self):
        # The printer delivers its document itself; it is read once for both.
        self.scripted_printer("rds")
        web = self.report_server(port=80)
        web.answer("rds/rds.xml", answers.file(PRINTERS / "rds.xml"))
        (self.world.program_folder / "pp.ver").write_text("[Version]\r\nMainVersion=3.1.7\r\n", newline="")
        self.addCleanup((self.world.program_folder / "pp.ver").unlink)
        result = self.run_agent("-SBXPlus", "-Lang", "de-AT")
        self.assert_ends_with(result, SENT)
        self.assertIn("4 the printer has been already initialized.", result.log_texts)
        self.assertEqual(self.agreement.asked, [f'queue "Office" language "de-AT" countryIs52 0 -> {DISAGREE}'])
        self.assertEqual(self.pages, [CHECK, POST, "CheckDate.aspx", "Connector.aspx"])
        self.assertEqual(self.server.requests[1].fields["data"], golden("rds-protection"))
        self.assertEqual([request.path for request in web.requests], ["/rds/rds.xml"])

    def test_stored_agreement_and_confirmation(self):
        self.scripted_printer()
        self.assert_ends_with(self.run_agent("-SBXOnly"), SENT)
        self.assertNotEqual(self.run_of_windows("reg", "query", "HKLM\\" + AGREEMENT).exit_code, 0)
        # The model's key is made where its parent is.
        model = AGREEMENT + r"\Velnora RV-2160"
        self.set_registry(AGREEMENT, {})
        near = "3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~"
        self.assert_ends_with(self.run_agent("-SBXOnly"), near)
        self.assertEqual(self.run_of_windows("reg", "query", "HKLM\\" + model).exit_code, 0)
        self.set_registry(model, {"ZOLTAgree": 3})
        self.set_flags(DontCheckSkip=1, ShowResultBeforeSend=1)
        self.server.requests.clear()
        run = self.start_agent("-SBXOnly")
        self.assertIn("<ZOLTAgree>1</ZOLTAgree>", Hands(self.world).wait(BOX))
        Hands(self.world).press(BOX, "Cancel")
        self.assert_ends_with(self.finish(run), "4 cancel sending...")
        self.assertEqual(self.server.requests, [])

    def test_one_run_per_queue(self):
        self.world.spooler(queue_script() + queue_script("事務所", port="IP_LOBBY"))
        self.scripted_printer()
        gate = Gate(answers.check_sbx())
        self.server.answer(CHECK, gate.answer, answers.check_sbx())
        first = self.start_agent("-SBXOnly")
        gate.wait_for_visitor()
        # The report does not wait for it, but for the other process.
        second = self.run_agent("-SBXPlus")
        self.assertIn("[ZT] PPA - already running..", second.debug)
        self.assertNotIn(REFILL_END, second.debug)
        self.assert_ends_with(second, "3 zolt data collecting already running.. bye~", marker=False)
        other = self.run_agent("-SBXOnly", queue="事務所")
        self.assertIn(REFILL_END, other.debug)
        gate.open()
        self.assertIn(REFILL_END, self.finish(first).debug)
        self.assertEqual([line.split('"')[1] for line in self.agreement.asked], ["Office", "事務所"])
