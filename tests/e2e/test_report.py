"""The road of a report: the queue's printer is read, the server asked, the document posted, the history written."""

import unittest

from sim import answers
from sim.desktop import Hands
from sim.paths import PRINTERS
from sim.queues import QUEUE, queue_script

from .office import HERE, OfficeTestCase, history

SENT = "4 send sucessfully..."
UNUSABLE = "3 not valid IO. bye~"
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


def expected_document(model: str) -> str:
    return (HERE / "golden" / f"{model}.xml").read_text(encoding="utf-8")


class DocumentTest(OfficeTestCase):
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
                self.assertEqual(
                    result.log_texts[1:], ["4 " + step for step in steps] + ["3 " + findings, "4 Start uploading...", SENT]
                )
                self.assertIn("ZOLT - end", result.debug)
                check, upload = server.requests
                self.assertEqual((check.path, check.body.decode()), ("/web/CheckDate.aspx", "SerialNumber=" + serial))
                self.assertEqual((upload.path, upload.fields), ("/web/Connector.aspx", {"data": expected_document(model)}))
                for request in server.requests:
                    self.assertEqual(request.method, "POST")
                    self.assertEqual(request.headers["Content-Type"], "application/x-www-form-urlencoded")
                    self.assertEqual(request.headers["User-Agent"], "ZOLTConnector")
                self.assert_recorded(**{"LastSendTime_" + serial: None})
                self.assertEqual(set(self.settings()), {"History"})

                # Until the interval is over, the next start only asks the printer who it is.
                before = self.world.settings
                skipped = ["4 Get Serial number...", "3 Last svr success near! bye~", "4 skip send success local. bye~"]
                self.assert_ends_with(self.run_agent(), *skipped)
                self.assertEqual(len(server.requests), 2)
                self.assertEqual(self.world.settings, before)
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
        self.assertEqual(server.requests[0].fields, {"data": expected_document("colour"), "test": "1"})
        self.assert_recorded(LastSendTime_VNRV2160004711=None)

        # The virtual printer needs none, not even a port or a queue of this computer.
        self.forget()
        self.world.spooler(f"[queue {QUEUE}]\ndriver = X\nattributes = 0x10\n")
        self.set_flags(VirtualTest=1)
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        self.assertIn("2 Can't get address from QName : Office!!! Bye~", result.log_texts)
        self.assertEqual(server.requests[-1].fields, {"data": expected_document("virtual")})


class QueueTest(OfficeTestCase):
    def test_port_tells_where_the_printer_is(self):
        server = self.report_server()
        for script, address, options in (
            (queue_script(address="", more_of_port="host = printer.example"), "printer.example", {}),
            (queue_script(more_of_port="host = absent.example"), "127.0.0.1", {}),
            (queue_script(more_of_port="community = private key"), "127.0.0.1", {"community": "private key"}),
        ):
            with self.subTest(script):
                self.forget()
                self.world.spooler(script)
                printer = self.scripted_printer(**options)
                result = self.run_agent()
                self.assertIn("4 collecting from " + address, result.log_texts)
                self.assert_ends_with(result, SENT)
                self.assertEqual(server.requests[-1].fields["data"], expected_document("colour"))
                printer.stop()

    def test_drivers_and_names(self):
        self.scripted_printer()
        server = self.report_server()
        self.set_flags(DontCheckSkip=1)
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        plain = expected_document("colour")
        universal = plain.replace("<Count>", "<SourceType>RQD</SourceType>\n<Count>")
        # In the trace log a name is in the system's code page; what that cannot hold becomes "?".
        for driver, name, traced, document in (
            ("Meridian Print Driver v4 PS", "Büro “2. Stock”", "Büro “2. Stock”", universal),
            ("meridian print driver", "事務所", "???", plain),
            ("Velnora RV-2160 PCL", "100% %s%n", "100% %s%n", plain),
        ):
            with self.subTest(name):
                self.world.spooler(queue_script(name=name, driver=driver))
                self.assert_ends_with(self.finish(self.world.start("-QName", name)), SENT)
                self.assertEqual(server.requests[-1].fields["data"], document)
                self.world.spooler(queue_script(name=name, more_of_queue="attributes = 0x10"))
                result = self.finish(self.world.start("-QName", name))
                self.assert_ends_with(result, "3 not supported Environment! bye~" + traced, marker=False)

    def test_queue_without_a_printer(self):
        for script, *texts in (
            (queue_script(more_of_port="GetConfigInfo.fail = 5"), "4 no job break...", "4 printer invalid", UNUSABLE),
            (queue_script(address=""), "4 failed to initialize printer", UNUSABLE),
        ):
            self.forget()
            self.world.spooler(script)
            self.assert_ends_with(self.run_agent(), *texts)
            self.assert_recorded(LastCollectFailedTime=None)

    def test_jobs(self):
        self.scripted_printer()
        server = self.report_server()
        self.world.spooler(queue_script(jobs="3 0 2 0"))
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        self.assertGreater(result.seconds, 2)
        found = [call.rpartition("returned ")[2] for call in self.world.spooler_calls if call.startswith("EnumJobsW")]
        self.assertEqual([int(count) for count in found if count.isdigit() and count != "0"], [3, 2])

        self.forget()
        server.answer("CheckDate.aspx", answers.check_date(interval=14))
        self.world.spooler(queue_script(more_of_queue="EnumJobsW.fail = 0 5"))
        self.assert_ends_with(self.run_agent(), "4 - job break...", "2 Failed to wait for job finished!!! bye~")
        self.assertEqual(self.settings(), {"Common": {"SendIntervalDays": "14"}})
        self.assertEqual(server.requests[-1].page, "CheckDate.aspx")


class ConfirmTest(OfficeTestCase):
    def test_what_is_shown_is_what_is_posted(self):
        printer, server = self.scripted_printer(), self.report_server()
        self.set_flags(ShowResultBeforeSend=1)
        hands = Hands(self.world)
        run = self.start_agent()
        hands.press(BOX, "Cancel")
        self.assert_ends_with(self.finish(run), "4 cancel sending...")
        self.assertEqual([request.page for request in server.requests], ["CheckDate.aspx"])
        self.assertFalse(self.world.settings_file.exists())

        run = self.start_agent()
        shown = hands.wait(BOX)
        for line in expected_document("colour").splitlines():
            self.assertIn(line, shown)
        # What the printer would say by now does not matter.
        printer.change({"1.3.6.1.2.1.43.5.1.1.17.1": 'STRING: "OTHER"'})
        hands.press(BOX, "OK")
        self.assert_ends_with(self.finish(run), "4 sending accepted...", "4 Start uploading...", SENT)
        self.assertEqual(server.requests[-1].fields["data"], expected_document("colour"))
        self.assert_recorded(LastSendTime_VNRV2160004711=None)


if __name__ == "__main__":
    unittest.main()
