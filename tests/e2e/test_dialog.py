"""The test dialog, driven as by a person: what its pages show of printers of every kind, of the server and of the
history, and that nothing is sent or changed without a confirmation. Which words a reading gets is tested natively."""

import time

from sim import answers, paths
from sim.demo import ROADS, discover
from sim.dialog import Control, TestDialog
from sim.hostile import HostileAgent
from sim.queues import queue_script
from sim.usb_printers import UsbPrinters, device_path

from .office import SENT, OfficeTestCase, golden, history

SERIAL = "VNRV2160004711"
SPARE = "VID_1A2B&PID_0216#SPARE"  # a USB printer that tells nothing, and to which no queue leads
USB = (paths.PRINTERS / "colour.ini").read_text(encoding="ascii") + f"\n[printer {SPARE}]\nport = 2\n"
QUEUES = [
    queue_script(),
    queue_script("Cable", port="USB001", monitor="USB Monitor", address=None),
    ROADS["wsd"].replace("Office colour printer", "Services"),
    queue_script("Secret", port="IP_SECRET", address="127.0.0.7", more_of_port="community = s3cret"),
    queue_script("File", port="FILE:", monitor="Local Port", address=None),
]


class DialogTest(OfficeTestCase):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        usb = UsbPrinters(cls.world.prefix, USB)
        usb.document((paths.PRINTERS / "colour.xml").read_bytes(), "colour.xml")
        discover(cls.world)

    def open(self, *arguments: str, script: str = "".join(QUEUES)) -> TestDialog:
        self.world.spooler(script)
        self.world.forget_spooler()
        dialog = TestDialog(self.world, *arguments)
        self.addCleanup(dialog.run.stop)
        return dialog

    def close(self, dialog: TestDialog) -> None:
        dialog.close()
        self.finish(dialog.run)

    def test_pages(self):
        self.scripted_printer()
        dialog = self.open()
        file, silent, never = "the queue prints to a file", "does not answer", "never"
        for name, leads_to, identity, supplies, report, protection, last in (
            ("Office", "network 127.0.0.1", SERIAL, "Yellow toner | 12 %", "<root>", "is past the limit", never),
            ("Cable", r"USB \\?\usb#", "Country index 12", "Cyan toner | 64 %", "<root>", "is within the limit", never),
            ("Services", "WSD, at 127.0.0.1", SERIAL, "Black toner | 65 %", "<root>", "is past the limit", never),
            ("Virtual", "canned data", "VIRTUAL0001", "Black toner | ", "<root>", "A run now would ask", never),
            ("File", file, file, file, file, "A run now would end", ""),
            ("USB printer", "USB " + device_path(SPARE), silent, silent, silent, "A run now would end", ""),
        ):
            with self.subTest(name):
                self.assertIn(leads_to, dialog.see(Control.PRINTERS, name))
                dialog.choose(name)
                dialog.page("Identity", identity)
                dialog.page("Supplies", supplies)
                dialog.page("Report", report)
                dialog.page("Protection")
                dialog.see(Control.VERDICT, protection)
                dialog.page("History")
                dialog.see(Control.STORED, "Last report of this printer | " + last)
        dialog.page("Trace", "End collecting...", "KVFPrinterUSB")
        dialog.add("absent.example")
        dialog.page("Identity", "The name absent.example leads to no address.")
        self.close(dialog)
        # Where there is no printer at all.
        dialog = self.open("-QName", "Elsewhere", script="")
        dialog.see(Control.STATUS, 'There is no queue "Elsewhere" on this computer.')
        for name in ("Identity", "Supplies", "Protection"):
            dialog.page(name, "Nothing read yet")
        dialog.page("Report", "No report yet.")
        self.close(dialog)

    def test_silent_printer(self):
        self.enterContext(HostileAgent(paths.PRINTERS / "mono.mib", community="another", address="127.0.0.7"))
        dialog = self.open("-QName", "Secret")
        why = 'A device is there at 127.0.0.7, but does not answer by SNMP with the community "'
        dialog.see(Control.IDENTITY, f'{why}s3cret".')
        for name in ("Supplies", "Report", "Protection"):
            dialog.page(name)
            dialog.see(Control.ELAPSED, "1 s")
            pressed = time.monotonic()
            dialog.press("Cancel", Control.STATUS, "Cancel")
            self.assertLess(time.monotonic() - pressed, 1)  # it is a tenth of that, on an idle machine
            dialog.see(Control.STATUS, "Cancelled after ")
        dialog.page("History", "the serial number was not read")
        dialog.press("Copy diagnosis", Control.STATUS, "The diagnosis is on the clipboard.")
        text = dialog.hands.clipboard()
        pages = ("Identity", "Supplies", "Report", "Server", "Protection", "History", "Last trace lines")
        for section in ("Computer and printer", *pages):
            self.assertIn(f"== {section} ==\n", text)
        self.assertIn(f'{why}*****".', text)
        self.assertNotIn("s3cret", text)
        dialog.page("Identity", why)
        dialog.press("Read again", Control.STATUS, "Reading")
        self.close(dialog)

    def test_server(self):
        self.scripted_printer()
        server = self.report_server()
        dialog = self.open()
        dialog.see(Control.IDENTITY, SERIAL)
        dialog.page("Report", "<root>")
        dialog.see(Control.FINDINGS, "AverageAreaCoverage")
        self.assertEqual(dialog.read(Control.REPORT).rstrip(), golden("colour").rstrip())
        dialog.page("Server", "Nothing asked yet")
        dialog.press("Check date", Control.EXCHANGE, "SerialNumber=" + SERIAL, "200", "Days between reports | 30")
        dialog.press("Check SBX", Control.EXCHANGE, "SBX=1", "Toner life limit | 150")
        dialog.confirm("Post report...", "Post report", "Cancel")
        dialog.confirm("Post report...", "Post report", "OK")
        dialog.see(Control.EXCHANGE, "The server has taken the report, as a test.")
        self.assertEqual([r.page for r in server.requests], ["CheckDate.aspx", "CheckSBX.aspx", "Connector.aspx"])
        self.assertEqual(server.requests[-1].fields, {"data": golden("colour"), "test": "1"})
        server.answer("CheckDate.aspx", answers.status(404))
        dialog.press("Check date", Control.EXCHANGE_DETAILS, "The server has no such page: the base URL is wrong.")
        server.stop()
        dialog.press("Check date", Control.EXCHANGE_DETAILS, "nobody listens there")
        self.assertEqual(self.world.settings, "")
        self.close(dialog)

    def test_rules_and_runs(self):
        self.scripted_printer()
        dialog = self.open("-QName", "Office")
        dialog.see(Control.IDENTITY, SERIAL)
        dialog.page("History", "No report of this printer is stored, so one is due.")
        now, past = self.world.time_text(), "2014-03-06 10:00:00"
        stops = "Print volume | stops | A run now would "
        for settings, *rules in (
            ("[Common]\r\nZOLTEnabled=2\r\n", stops + "end: print-volume reporting is switched off"),
            (history(LastServerFailedTime=now), stops + "be skipped until ", f"because the server failed on {now}"),
            (history(**{"LastCollectFailedTime_127.0.0.1": now}), f"because this printer could not be read on {now}"),
            (history(LastPPSendTime_VNRV2160004711=now), f"changed since: last protection report {now}"),
            (history(LastSendTime_VNRV2160004711=past), f"Last report {past}, so the next is due."),
            (history(LastSendTime_VNRV2160004711=now), stops + f"be skipped: last report {now}, next due "),
        ):
            with self.subTest(settings):
                self.world.settings = settings
                dialog.press("Read again", Control.RULES, *rules)
                if "stops" in rules[0]:
                    dialog.see(Control.RULE_DETAILS, "stops")
        for answer, left in (("Cancel", True), ("OK", False)):
            dialog.confirm("Clear this printer's history...", "Clear history", answer)
            dialog.see(Control.STORED, f"Last report of this printer | {now if left else 'never'}")
            self.assertEqual(now in self.world.settings, left)
        for flag, rule in (("Disable", "disabled by the administrator"), ("DontCheckSkip", "No skip rule counts")):
            self.set_flags(**{flag: 1})
            dialog.press("Read again", Control.RULES, rule)
        self.set_flags()

        dialog.page("Protection", "Toner life limit | 150")
        dialog.confirm("Switch off...", "Product protection", "Cancel")
        dialog.confirm("Switch on...", "Product protection", "OK")
        dialog.see(Control.PROTECTION, "Command ON | sent")
        self.assertEqual(self.world.raw_jobs, [b"@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n"])

        # The dialog holds up no run, and says that one is at work.
        gate = answers.Gate(answers.check_date())
        self.report_server().answer("CheckDate.aspx", gate.answer)
        self.assertEqual(dialog.read(Control.RUN_AT_WORK).strip(), "")
        beside = self.start_agent()
        gate.wait_for_visitor()
        dialog.see(Control.RUN_AT_WORK, "A run of the agent is at work on this computer.")
        gate.open()
        self.assertEqual(self.finish(beside).log_texts[-1], SENT)
        self.close(dialog)
