"""The road of a report: the queue's printer is read, the server asked, the document posted, the history written."""

import unittest

from sim import answers
from sim.desktop import Hands
from sim.paths import PRINTERS
from sim.queues import QUEUE, queue_script

from .office import OfficeTestCase, golden, history

SENT = "4 send sucessfully..."
NO_COVERAGE = "/warning:no averageareacoverage or Not Support"
NOT_RQD = "/info:is not RQD"
# Each kind of printer: its serial number, and what is found in its document.
MODELS = {
    "colour": ("VNRV2160004711", NO_COVERAGE * 4 + NOT_RQD),
    "mono": ("VNPHT118009314", "/warning:no color count or Mono model" + NO_COVERAGE + NOT_RQD),
    "extended": ("VNPHZ318500286", NO_COVERAGE * 4 + NOT_RQD),
    "rds": ("VNDWB522000055", NOT_RQD),
}
BOX = "Click Cancel not to send data to server"


class ReportTest(OfficeTestCase):
    def test_each_kind_of_printer(self):
        web = self.report_server(port=80)
        web.answer("rds/rds.xml", answers.file(PRINTERS / "rds.xml"))
        for model, (serial, findings) in MODELS.items():
            with self.subTest(model):
                self.forget()
                printer, server = self.snmp_printer(model), self.report_server()
                result = self.run_agent()
                waited = ["Wait job finishes...", "no job break..."]
                steps = ["Checking spooler info...", "collecting from 127.0.0.1", *waited]
                steps += ["Checking ZOLT support from device...", "Get Serial number...", *waited]
                steps += ["Start collecting...", "End collecting..."]
                findings = ["3 " + findings, "4 Start uploading...", SENT]
                self.assertEqual(result.log_texts[1:], ["4 " + step for step in steps] + findings)
                self.assertIn("ZOLT - end", result.debug)
                check, upload = server.requests
                self.assertEqual((check.path, check.body.decode()), ("/web/CheckDate.aspx", "SerialNumber=" + serial))
                self.assertEqual((upload.path, upload.fields), ("/web/Connector.aspx", {"data": golden(model)}))
                for request in server.requests:
                    self.assertEqual(request.method, "POST")
                    self.assertEqual(request.headers["Content-Type"], "application/x-www-form-urlencoded")
                    self.assertEqual(request.headers["User-Agent"], "ZOLTConnector")
                    self.assertEqual(request.headers["Referer"], "*/*")
                    self.assertNotIn("Accept", request.headers)
                self.assert_recorded(**{"LastSendTime_" + serial: None})
                self.assertEqual(set(self.settings()), {"History"})
                printer.stop()
                server.stop()
        self.assertEqual([(request.method, request.path) for request in web.requests], [("GET", "/rds/rds.xml")])

    def test_flags(self):
        self.scripted_printer()
        server = self.report_server()
        self.world.settings = history(LastSendTime_VNRV2160004711=self.world.time_text(days_ago=3))
        self.set_flags(DontCheckSkip=1, TestMode=1)
        self.assert_ends_with(self.run_agent(), "4 Start uploading...", SENT)
        self.assertEqual([request.page for request in server.requests], ["Connector.aspx"])
        self.assertEqual(server.requests[0].fields, {"data": golden("colour"), "test": "1"})
        self.assert_recorded(LastSendTime_VNRV2160004711=None)

        # The virtual printer needs none, not even a port or a queue of this computer.
        self.forget()
        self.world.spooler(f"[queue {QUEUE}]\ndriver = X\nattributes = 0x10\n")
        self.set_flags(VirtualTest=1)
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        self.assertIn("2 Can't get address from QName : Office!!! Bye~", result.log_texts)
        self.assertEqual(server.requests[-1].fields, {"data": golden("virtual")})

    def test_community_and_host_name_of_the_port(self):
        self.scripted_printer(community="private key")
        server = self.report_server()
        more = "host = printer.example\ncommunity = private key"
        self.world.spooler(queue_script(address="", more_of_port=more))
        result = self.run_agent()
        self.assertIn("4 collecting from printer.example", result.log_texts)
        self.assert_ends_with(result, SENT)
        self.assertEqual(server.requests[-1].fields["data"], golden("colour"))

    def test_drivers_and_names(self):
        self.scripted_printer()
        server = self.report_server()
        self.set_flags(DontCheckSkip=1)
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        plain = golden("colour")
        universal = plain.replace("<Count>", "<SourceType>RQD</SourceType>\n<Count>")
        # In the trace log a name is in the system's code page; what that cannot hold becomes "?".
        for driver, name, traced, document in (
            ("Meridian Print Driver v4 PS", "Büro “2. Stock” 100% %s%n", "Büro “2. Stock” 100% %s%n", universal),
            ("meridian print driver", "事務所", "???", plain),
        ):
            with self.subTest(name):
                self.world.spooler(queue_script(name=name, driver=driver))
                self.assert_ends_with(self.finish(self.world.start("-QName", name)), SENT)
                self.assertEqual(server.requests[-1].fields["data"], document)
                self.world.spooler(queue_script(name=name, more_of_queue="attributes = 0x10"))
                result = self.finish(self.world.start("-QName", name))
                self.assert_ends_with(result, "3 not supported Environment! bye~" + traced, marker=False)

    def test_jobs(self):
        self.scripted_printer()
        self.report_server()
        self.world.spooler(queue_script(jobs="2 0 1 0"))
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        self.assertGreater(result.seconds, 2)
        found = [call.rpartition("returned ")[2] for call in self.world.spooler_calls if call.startswith("EnumJobsW")]
        self.assertEqual([int(count) for count in found if count.isdigit() and count != "0"], [2, 1])

    def test_what_is_shown_is_what_is_posted(self):
        printer, server = self.scripted_printer(), self.report_server()
        self.set_flags(ShowResultBeforeSend=1)
        hands = Hands(self.world)
        run = self.start_agent()
        shown = hands.wait(BOX)
        for line in golden("colour").splitlines():
            self.assertIn(line, shown)
        # What the printer would say by now does not matter.
        printer.change({"1.3.6.1.2.1.43.5.1.1.17.1": 'STRING: "OTHER"'})
        hands.press(BOX, "OK")
        self.assert_ends_with(self.finish(run), "4 sending accepted...", "4 Start uploading...", SENT)
        self.assertEqual(server.requests[-1].fields["data"], golden("colour"))
        self.assert_recorded(LastSendTime_VNRV2160004711=None)


if __name__ == "__main__":
    unittest.main()
