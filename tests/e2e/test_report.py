"""The road of a report: the queue's printer is read, the server asked, the document posted, the history written."""

from sim import answers
from sim.desktop import Hands
from sim.paths import PRINTERS
from sim.queues import QUEUE, queue_script
from sim.snmp_agent import start_agent

from .office import SENT, OfficeTestCase, golden, history

BOX = "Click Cancel not to send data to server"
SERIAL = "VNRV2160004711"
HEADERS = {"Content-Type": "application/x-www-form-urlencoded", "User-Agent": "ZOLTConnector", "Referer": "*/*"}


class ReportTest(OfficeTestCase):
    def test_roads(self):
        # What the printer's objects say, or the document that it delivers itself.
        web, server = self.report_server(port=80), self.report_server()
        web.answer("rds/rds.xml", answers.file(PRINTERS / "rds.xml"))
        for model, serial, findings in (
            ("colour", SERIAL, "/warning:no averageareacoverage or Not Support" * 4 + "/info:is not RQD"),
            ("rds", "VNDWB522000055", "/info:is not RQD"),
        ):
            with self.subTest(model), start_agent(PRINTERS / f"{model}.mib"):
                self.forget()
                server.requests.clear()
                result = self.run_agent()
                waited = ["Wait job finishes...", "no job break..."]
                steps = ["Checking spooler info...", "collecting from 127.0.0.1", *waited]
                steps += ["Checking ZOLT support from device...", "Get Serial number...", *waited]
                steps += ["Start collecting...", "End collecting..."]
                said = ["3 " + findings, "4 Start uploading...", SENT]
                self.assertEqual(result.log_texts[1:], ["4 " + step for step in steps] + said)
                check, upload = server.requests
                self.assertEqual((check.path, check.body.decode()), ("/web/CheckDate.aspx", "SerialNumber=" + serial))
                self.assertEqual((upload.path, upload.fields), ("/web/Connector.aspx", {"data": golden(model)}))
                for request in server.requests:
                    self.assertEqual(request.method, "POST")
                    self.assertEqual(request.headers | HEADERS, request.headers)
                    self.assertNotIn("Accept", request.headers)
                self.assert_recorded(**{"LastSendTime_" + serial: None})
        self.assertEqual([(request.method, request.path) for request in web.requests], [("GET", "/rds/rds.xml")])

    def test_flags(self):
        self.scripted_printer()
        server = self.report_server()
        self.world.settings = history(**{"LastSendTime_" + SERIAL: self.world.time_text(days_ago=3)})
        self.set_flags(DontCheckSkip=1, TestMode=1, ShowResultBeforeSend=1, Disable=2)  # 1 is on, and nothing else
        run = self.start_agent()
        shown = Hands(self.world).wait(BOX)
        for line in golden("colour").splitlines():
            self.assertIn(line, shown)
        Hands(self.world).press(BOX, "OK")
        self.assert_ends_with(self.finish(run), "4 sending accepted...", "4 Start uploading...", SENT)
        self.assertEqual([request.page for request in server.requests], ["Connector.aspx"])
        self.assertEqual(server.requests[0].fields, {"data": golden("colour"), "test": "1"})
        self.assert_recorded(**{"LastSendTime_" + SERIAL: None})

        # The virtual printer needs none, not even a port or a queue of this computer.
        self.forget()
        self.world.spooler(f"[queue {QUEUE}]\ndriver = X\nattributes = 0x10\n")
        self.set_flags(VirtualTest=1)
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        self.assertIn("2 Can't get address from QName : Office!!! Bye~", result.log_texts)
        self.assertEqual(server.requests[-1].fields, {"data": golden("virtual")})

    def test_queues(self):
        self.scripted_printer()
        server = self.report_server()
        name = "Büro “2. Stock” 100% %s%n"
        self.world.spooler(queue_script(name, "Meridian Print Driver v4 PS", jobs="2 0 1 0"))
        result = self.run_agent(queue=name)
        self.assert_ends_with(result, SENT)
        universal = golden("colour").replace("<Count>", "<SourceType>RQD</SourceType>\n<Count>")
        self.assertEqual(server.requests[-1].fields["data"], universal)
        self.assertGreater(result.seconds, 2)
        found = [call.rpartition("returned ")[2] for call in self.world.spooler_calls if call.startswith("EnumJobsW")]
        self.assertEqual([int(count) for count in found if count.isdigit() and count != "0"], [2, 1])

        # In the trace log a name is in the system's code page; what that cannot hold becomes "?".
        name = "“事務所” %s"
        self.world.spooler(queue_script(name, more_of_queue="attributes = 0x10"))  # of another computer
        result = self.run_agent(queue=name)
        self.assert_ends_with(result, "3 not supported Environment! bye~“???” %s", marker=False)
