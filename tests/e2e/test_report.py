"""The road of a report: the queue's printer is read, the server asked, the document posted, the history written."""

import unittest

from office import HERE, PRINTERS, QUEUE, OfficeTestCase, answers, history, queue_script
from ztsim.desktop import Hands

SERIALS = {
    "colour": "VNRV2160004711",
    "mono": "VNPHT118009314",
    "extended": "VNPHZ318500286",
    "rds": "VNDWB522000055",
}
NO_COVERAGE = "/warning:no averageareacoverage or Not Support"
FINDINGS = {
    "colour": NO_COVERAGE * 4 + "/info:is not RQD",
    "mono": "/warning:no color count or Mono model" + NO_COVERAGE + "/info:is not RQD",
    "extended": NO_COVERAGE * 4 + "/info:is not RQD",
    "rds": "/info:is not RQD",
}
BOX = "Click Cancel not to send data to server"


def expected_document(model: str) -> str:
    return (HERE / "golden" / f"{model}.xml").read_text(encoding="utf-8")


class DocumentTest(OfficeTestCase):
    def test_each_kind_of_printer(self):
        for model, serial in SERIALS.items():
            with self.subTest(model):
                self.forget()
                printer, server = self.snmp_printer(model), self.report_server()
                if model == "rds":
                    web = self.report_server(port=80)
                    web.answer("rds/rds.xml", answers.file(PRINTERS / "rds.xml"))
                result = self.run_agent()
                self.assertEqual(
                    result.log_texts[1:],
                    [
                        "4 Checking spooler info...",
                        "4 collecting from 127.0.0.1",
                        "4 Wait job finishes...",
                        "4 no job break...",
                        "4 Checking ZOLT support from device...",
                        "4 Get Serial number...",
                        "4 Wait job finishes...",
                        "4 no job break...",
                        "4 Start collecting...",
                        "4 End collecting...",
                        "3 " + FINDINGS[model],
                        "4 Start uploading...",
                        "4 send sucessfully...",
                    ],
                )
                self.assertIn("ZOLT - end", result.debug)
                check, upload = server.requests
                self.assertEqual((check.method, check.path), ("POST", "/web/CheckDate.aspx"))
                self.assertEqual(check.body.decode(), "SerialNumber=" + serial)
                self.assertEqual((upload.method, upload.path), ("POST", "/web/Connector.aspx"))
                self.assertEqual(upload.fields, {"data": expected_document(model)})
                for request in server.requests:
                    self.assertEqual(request.headers["Content-Type"], "application/x-www-form-urlencoded")
                    self.assertEqual(request.headers["User-Agent"], "ZOLTConnector")
                    self.assertEqual(request.headers["Referer"], "*/*")
                if model == "rds":
                    self.assertEqual([(request.method, request.path) for request in web.requests], [("GET", "/rds/rds.xml")])
                self.assert_recorded(**{"LastSendTime_" + serial: None})
                self.assertEqual(set(self.settings()), {"History"})

                # Until the interval is over, the next start only asks the printer who it is.
                before = self.world.settings
                again = self.run_agent()
                self.assert_ends_with(
                    again,
                    "4 Checking ZOLT support from device...",
                    "4 Get Serial number...",
                    "3 Last svr success near! bye~",
                    "4 skip send success local. bye~",
                )
                self.assertEqual(len(server.requests), 2)
                self.assertEqual(self.world.settings, before)
                for other in (printer, server) + ((web,) if model == "rds" else ()):
                    other.stop()

    def test_flags_of_the_client(self):
        self.scripted_printer()
        server = self.report_server()
        recent = history(LastSendTime_VNRV2160004711=self.world.time_text(days_ago=3))
        self.world.settings = recent
        self.set_flags(DontCheckSkip=1, TestMode=1)
        self.assert_ends_with(self.run_agent(), "4 Start uploading...", "4 send sucessfully...")
        self.assertEqual([request.page for request in server.requests], ["Connector.aspx"])
        self.assertTrue(server.requests[0].body.endswith(b"%0a&test=1"))
        self.assertEqual(server.requests[0].fields, {"data": expected_document("colour"), "test": "1"})
        self.assert_recorded(LastSendTime_VNRV2160004711=None)

    def test_version_of_the_host(self):
        self.scripted_printer()
        server = self.report_server()
        self.set_flags(DontCheckSkip=1)
        files = {name: self.world.program_folder / name for name in ("pp.ver", "ZT.ver")}
        for pp, zt, version in (
            ("3.1.7", "2.0", "<HostVersion>3.1.7</HostVersion>"),
            (None, "2.0", "<HostVersion>2.0</HostVersion>"),
            ("", "2.0", None),  # the first file that is there counts
            ("x" * 400, None, "<HostVersion>" + "x" * 259 + "</HostVersion>"),
        ):
            with self.subTest(pp=pp, zt=zt):
                for name, value in (("pp.ver", pp), ("ZT.ver", zt)):
                    files[name].unlink(missing_ok=True)
                    if value is not None:
                        files[name].write_text(f"[Version]\r\nMainVersion={value}\r\n", newline="")
                self.assert_ends_with(self.run_agent(), "4 send sucessfully...")
                found = [line for line in server.requests[-1].fields["data"].split("\n") if "HostVersion" in line]
                self.assertEqual(found, [version] if version else [])
        for file in files.values():
            file.unlink(missing_ok=True)

    def test_virtual_printer_needs_none(self):
        server = self.report_server()
        # Not even a port, nor a queue of this computer.
        self.world.spooler(f"[queue {QUEUE}]\ndriver = X\nattributes = 0x10\n")
        self.set_flags(VirtualTest=1)
        result = self.run_agent()
        self.assert_ends_with(result, "4 send sucessfully...")
        self.assertIn("2 Can't get address from QName : Office!!! Bye~", result.log_texts)
        self.assertEqual([request.page for request in server.requests], ["CheckDate.aspx", "Connector.aspx"])
        self.assertEqual(server.requests[1].fields["data"], expected_document("virtual"))
        self.assert_ends_with(self.run_agent(), "3 Last svr success near! bye~", "4 skip send success local. bye~")


class QueueTest(OfficeTestCase):
    def test_port_tells_where_the_printer_is(self):
        cases = {
            "host name": (queue_script(address="", more_of_port="host = printer.example"), "printer.example"),
            "address before host name": (queue_script(more_of_port="host = absent.example"), "127.0.0.1"),
            "community": (queue_script(more_of_port="community = private key"), "127.0.0.1"),
        }
        server = self.report_server()
        for name, (script, address) in cases.items():
            with self.subTest(name):
                self.forget()
                self.world.spooler(script)
                options = {"community": "private key"} if name == "community" else {}
                printer = self.scripted_printer(**options)
                result = self.run_agent()
                self.assertIn("4 collecting from " + address, result.log_texts)
                self.assert_ends_with(result, "4 send sucessfully...")
                self.assertEqual(server.requests[-1].fields["data"], expected_document("colour"))
                printer.stop()

    def test_universal_driver_is_named(self):
        self.scripted_printer()
        server = self.report_server()
        self.set_flags(DontCheckSkip=1)
        plain = expected_document("colour")
        named = plain.replace("<Count>", "<SourceType>RQD</SourceType>\n<Count>")
        for driver, document in (("Meridian Print Driver v4 PS", named), ("meridian print driver", plain)):
            with self.subTest(driver):
                self.world.spooler(queue_script(driver=driver))
                result = self.run_agent()
                self.assertEqual(server.requests[-1].fields["data"], document)
                self.assertEqual(any("is not RQD" in text for text in result.log_texts), document == plain)

    def test_queue_names(self):
        self.report_server()
        self.scripted_printer()
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        # In the trace log a name is in the system's code page; what that cannot hold becomes "?".
        for name, traced in (
            ("Büro “2. Stock”", "Büro “2. Stock”"),
            ("事務所", "???"),
            (r"\\server\Office", r"\\server\Office"),
            ("x" * 300, "x" * 300),
            ("-QName", "-QName"),
            ("100% %s%n", "100% %s%n"),
        ):
            with self.subTest(name):
                self.world.spooler(queue_script(name=name))
                self.forget()
                self.assert_ends_with(self.finish(self.world.start("-QName", name)), "4 send sucessfully...")
                self.assertEqual(self.world.spooler_calls[-1].split(" -> ")[0], f'ClosePrinter "{name}"')
                self.world.spooler(queue_script(name=name, more_of_queue="attributes = 0x10"))
                result = self.finish(self.world.start("-QName", name))
                self.assert_ends_with(result, "3 not supported Environment! bye~" + traced, marker=False)

    def test_queue_without_a_printer(self):
        cases = {
            "no port": f"[queue {QUEUE}]\ndriver = X",
            "port without monitor": f"[queue {QUEUE}]\ndriver = X\nport = LPT1:",
            "monitor refuses": queue_script(more_of_port="GetConfigInfo.fail = 5"),
            "monitor answers with an error": queue_script(more_of_port="GetConfigInfo.status = 1168"),
            "port cannot be opened": queue_script(more_of_port="OpenPrinterW.fail = 5"),
        }
        for name, script in cases.items():
            with self.subTest(name):
                self.forget()
                self.world.spooler(script)
                self.assert_ends_with(
                    self.run_agent(),
                    "2 Can't get address from QName : Office!!! Bye~",
                    "4 Checking spooler info...",
                    "4 collecting from ",
                    "4 Wait job finishes...",
                    "4 no job break...",
                    "4 printer invalid",
                    "3 not valid IO. bye~",
                )
                self.assert_recorded(LastCollectFailedTime=None)

    def test_port_without_an_address(self):
        printer = self.scripted_printer()
        self.world.spooler(queue_script(address=""))
        self.assert_ends_with(self.run_agent(), "4 failed to initialize printer", "3 not valid IO. bye~")
        self.assert_recorded(LastCollectFailedTime=None)
        self.assertEqual(printer.requests, [])


class JobTest(OfficeTestCase):
    def test_waits_for_jobs_before_and_between(self):
        self.scripted_printer()
        server = self.report_server()
        self.world.spooler(queue_script(jobs="3 0 2 0"))
        result = self.run_agent()
        self.assert_ends_with(result, "4 send sucessfully...")
        self.assertEqual(result.log_texts.count("4 no job break..."), 2)
        self.assertGreater(result.seconds, 2)
        found = [call.rpartition("returned ")[2] for call in self.world.spooler_calls if call.startswith("EnumJobsW")]
        self.assertEqual([int(count) for count in found if count.isdigit() and count != "0"], [3, 2])
        self.assertEqual(len(server.requests), 2)

    def test_failed_wait(self):
        self.scripted_printer()
        server = self.report_server()
        # The first wait is only a courtesy: its failure does not matter.
        self.world.spooler(queue_script(more_of_queue="EnumJobsW.fail = 5 0"))
        result = self.run_agent()
        self.assertEqual(result.log_texts[3:5], ["4 Wait job finishes...", "4 - job break..."])
        self.assert_ends_with(result, "4 send sucessfully...")
        self.forget()

        server.answer("CheckDate.aspx", answers.check_date(interval=14))
        self.world.spooler(queue_script(more_of_queue="EnumJobsW.fail = 0 5"))
        result = self.run_agent()
        self.assert_ends_with(
            result, "4 Wait job finishes...", "4 - job break...", "2 Failed to wait for job finished!!! bye~"
        )
        self.assertEqual(self.settings(), {"Common": {"SendIntervalDays": "14"}})
        self.assertEqual(server.requests[-1].page, "CheckDate.aspx")


class ConfirmTest(OfficeTestCase):
    def test_what_is_shown_is_what_is_posted(self):
        printer, server = self.scripted_printer(), self.report_server()
        self.set_flags(ShowResultBeforeSend=1)
        hands = Hands(self.world)
        for answer in ("Cancel", "cross"):
            with self.subTest(answer):
                run = self.start_agent()
                hands.wait(BOX)
                hands.close(BOX) if answer == "cross" else hands.press(BOX, answer)
                result = self.finish(run)
                self.assert_ends_with(result, "4 cancel sending...")
                self.assertEqual([request.page for request in server.requests], ["CheckDate.aspx"])
                self.assertFalse(self.world.settings_file.exists())
                server.requests.clear()
        run = self.start_agent()
        shown = hands.wait(BOX)
        for line in expected_document("colour").splitlines():
            self.assertIn(line, shown)
        # What the printer would say by now does not matter.
        printer.change({"1.3.6.1.2.1.43.5.1.1.17.1": 'STRING: "OTHER"'})
        hands.press(BOX, "OK")
        self.assert_ends_with(
            self.finish(run), "4 sending accepted...", "4 Start uploading...", "4 send sucessfully..."
        )
        self.assertEqual(server.requests[-1].fields["data"], expected_document("colour"))
        self.assert_recorded(LastSendTime_VNRV2160004711=None)


if __name__ == "__main__":
    unittest.main()
