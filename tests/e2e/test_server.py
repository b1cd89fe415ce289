"""The report server's word: its policy, its refusals, and everything that may go wrong between it and the agent."""

import gzip
import unittest

from office import OfficeTestCase, answers, history
from ztsim.prefix import REG_BINARY, REG_EXPAND_SZ

SENT = {"LastSendTime_VIRTUAL0001": None}
FAILED = {"LastServerFailedTime": None}

# What is no answer, for either exchange: name to answer.
NO_ANSWERS = {
    "server error": answers.status(500),
    "not found": answers.status(404),
    "no content": answers.Answer(status=204),
    "login wanted": answers.Answer(b"", 401, {"WWW-Authenticate": 'Basic realm="x"'}),
    "connection dropped": answers.dropped(),
    "broken off": answers.broken_off(),
    "broken off in the headers": answers.Answer(answers.upload().body, cut=30),
    "no HTTP": answers.raw(b"\0\1\2\3 garbage\r\n\r\n<root><Result>SUCCESS</Result>"),
    "endless status line": answers.raw(b"HTTP/1.1 " + b"2" * 100000 + b"\r\n\r\n"),
    "negative length": answers.Answer([b"<root>"], headers={"Content-Length": "-1"}),
    "wrong chunks": answers.Answer([b"ZZZ\r\n<root></root>\r\n"], headers={"Transfer-Encoding": "chunked"}),
    "empty": answers.Answer(b""),
    "no XML": answers.Answer("<html><body>Please sign in<br></body></html>"),
    "cut XML": answers.Answer(answers.upload().body.replace("</root>", "")),
    "other root": answers.Answer("<answer><Result>SUCCESS</Result></answer>"),
    "UTF-16": answers.Answer(answers.upload().body.encode("utf-16")),
    "compressed": answers.Answer(gzip.compress(answers.upload().body.encode())),
    "zeros": answers.Answer(bytes(1000)),
    "deep": answers.Answer(b"<root>" * 20000 + b"</root>" * 20000),
    "huge": answers.huge(2 * 1024 * 1024),
    "redirected to nothing": answers.Answer(status=302, headers={"Location": "/elsewhere.xml"}),
    "redirected without an address": answers.Answer(status=301),
}


class ServerTestCase(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.set_flags(VirtualTest=1)


class FailureTest(ServerTestCase):
    def test_check_without_an_answer(self):
        server = self.report_server()
        for name, answer in NO_ANSWERS.items():
            with self.subTest(name):
                self.forget()
                server.requests.clear()
                server.answer("CheckDate.aspx", answer)
                result = self.run_agent()
                self.assert_ends_with(result, "3 svr not connect. bye~")
                self.assert_recorded(**FAILED)
                self.assertNotIn("Connector.aspx", [request.page for request in server.requests])
                longer = "3 HTTP response is longer than 1048576 bytes: dropped"
                self.assertEqual(longer in result.log_texts, name == "huge")

    def test_upload_without_an_answer(self):
        server = self.report_server()
        for name, answer in NO_ANSWERS.items():
            with self.subTest(name):
                self.forget()
                server.answer("Connector.aspx", answer)
                result = self.run_agent()
                self.assert_ends_with(result, "2 Can't get result !!!", "4 failed to send...")
                self.assert_recorded(**FAILED)

    def test_upload_to_a_server_that_has_gone(self):
        self.set_flags(VirtualTest=1, DontCheckSkip=1)
        self.assert_ends_with(self.run_agent(), "4 Start uploading...", "2 Failed to post !!!", "4 failed to send...")
        self.assert_recorded(**FAILED)

    def test_unreachable_server_is_left_alone_for_a_week(self):
        self.assert_ends_with(self.run_agent(), "3 svr not connect. bye~")
        self.assert_recorded(**FAILED)
        server = self.report_server()
        result = self.run_agent()
        self.assert_ends_with(result, "3 Last svr fail near! bye~", "4 found last server fail. try later bye~")
        self.assertEqual(server.requests, [])
        for days, asks in ((6.9, False), (7.01, True)):
            with self.subTest(days):
                failed = self.world.time_text(days_ago=days)
                self.world.settings = history(LastServerFailedTime=failed)
                self.run_agent()
                self.assertEqual(bool(server.requests), asks)
                # An old failure is not forgotten by a success.
                self.assert_recorded(LastServerFailedTime=failed, **(SENT if asks else {}))

    def test_results_of_an_upload(self):
        server = self.report_server()
        for result, why in (
            ("SUCCESS ", "2 Unknown Result !!!"),
            ("success", "2 Unknown Result !!!"),
            ("NOMORESERVICES", "2 Unknown Result !!!"),
            ("", "2 Can't get result !!!"),
            (None, "2 Can't get result !!!"),
        ):
            with self.subTest(result):
                self.forget()
                server.answer("Connector.aspx", answers.upload(result))
                self.assert_ends_with(self.run_agent(), "4 Start uploading...", why, "4 failed to send...")
                self.assert_recorded(**FAILED)
                self.assertNotIn("Common", self.settings())


class PolicyTest(ServerTestCase):
    def day(self, days_ago: float) -> str:
        return self.world.time_text(days_ago=days_ago)[:10]

    def test_service_that_has_ended(self):
        server = self.report_server()
        stopped = {"ZOLTEnabled": "2"}
        server.answer("CheckDate.aspx", answers.check_date("NOMORESERVICE", interval=14, last_date=self.day(1)))
        self.assert_ends_with(self.run_agent(), "4 service stopped. bye~")
        self.assertEqual(self.settings(), {"Common": stopped})
        server.requests.clear()
        self.assert_ends_with(self.run_agent(), "4 zolt disabled! bye~ ZT", marker=False)
        self.assertEqual(server.requests, [])

        self.forget()
        server.answer("CheckDate.aspx", answers.check_date())
        server.answer("Connector.aspx", answers.upload("NOMORESERVICE"))
        self.assert_ends_with(self.run_agent(), "4 Start uploading...", "4 send sucessfully...")
        self.assert_recorded(**SENT)
        self.assertEqual(self.settings()["Common"], stopped)
        self.assert_ends_with(self.run_agent(), "4 zolt disabled! bye~ ZT", marker=False)

    def test_interval(self):
        server = self.report_server()
        for interval, stored in (
            ("14", "14"),
            (" 14\n", "14"),
            ("030", None),  # what is the rule already is not stored
            ("0", "0"),
            ("2147483647", "2147483647"),
            ("99999999999999999999", "2147483647"),
            ("fortnight", None),
            ("14 days", None),
            ("1e1", None),
            ("", None),
        ):
            with self.subTest(interval):
                self.forget()
                server.answer("CheckDate.aspx", answers.check_date(interval=interval))
                self.assert_ends_with(self.run_agent(), "4 send sucessfully...")
                self.assertEqual(self.settings().get("Common", {}).get("SendIntervalDays"), stored)

    def test_last_report_that_the_server_knows_of(self):
        server = self.report_server()
        yesterday = self.day(1)
        for date, interval, recorded in (
            (yesterday + " 23:59:59", None, yesterday),
            (self.day(13), "14", self.day(13)),
            (self.day(15), "14", None),
            (self.day(29), None, self.day(29)),
            (self.day(31), None, None),
            (self.day(-2), None, None),  # in the future
            (yesterday.replace("-", "/"), None, yesterday.replace("-", "/")),
            (yesterday[:9], None, None),
            ("2026-02-30T00:00", None, None),
            ("1899-12-31", None, None),
            ("last week, perhaps", None, None),
            ("2026-13-01", "1", None),
        ):
            with self.subTest(date=date, interval=interval):
                self.forget()
                server.requests.clear()
                server.answer("CheckDate.aspx", answers.check_date(last_date=date, interval=interval))
                result = self.run_agent()
                if recorded:
                    self.assert_ends_with(result, "3 Last svr success near! bye~", "4 skipped by svr. bye~")
                    self.assert_recorded(LastSendTime_VIRTUAL0001=recorded)
                    self.assertEqual(len(server.requests), 1)
                    # From now on this computer knows as well.
                    self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")
                    self.assertEqual(len(server.requests), 1)
                else:
                    self.assert_ends_with(result, "4 send sucessfully...")
                    self.assert_recorded(**SENT)
                unreadable = date in ("1899-12-31", "last week, perhaps", "2026-13-01")
                self.assertEqual("2 Can't convert time : " + date[:10] in result.log_texts, unreadable)
                self.assertEqual(self.settings().get("Common"), {"SendIntervalDays": interval} if interval else None)

    def test_bare_answer(self):
        server = self.report_server()
        server.answer("CheckDate.aspx", answers.trickling(answers.Answer("<root/>"), 0.001))
        pieces = [b"3\r\n<ro\r\n", b"22\r\not><Result>SUCCESS</Result></root>\r\n", b"0\r\n\r\n"]
        server.answer("Connector.aspx", answers.Answer(pieces, headers={"Transfer-Encoding": "chunked"}))
        self.assert_ends_with(self.run_agent(), "4 send sucessfully...")
        self.assert_recorded(**SENT)


class AddressTest(ServerTestCase):
    def test_certificate_that_nobody_trusts(self):
        # What the program was built with counts when the registry's value has another type.
        server = self.report_server(port=443, tls=True)
        self.set_flags(VirtualTest=1, URL=(REG_BINARY, b"http"))
        result = self.run_agent()
        self.assert_ends_with(result, "4 send sucessfully...")
        # Wine then trusts the server until the process ends.
        self.assertEqual(
            [text for text in result.debug if text.startswith("[KVF]")],
            ["[KVF] dwErr : 12045", "[KVF] nStatusCode : 200", "[KVF] nStatusCode : 200"],
        )
        self.assertEqual([request.path for request in server.requests], ["/web/CheckDate.aspx", "/web/Connector.aspx"])
        self.assertEqual(server.requests[0].headers["Host"], "report.velnora.example")

    def test_address_in_the_registry_is_used_as_it_stands(self):
        server = self.report_server()
        base = f"http://127.0.0.1:{server.port}"
        for url, path in (
            ((REG_EXPAND_SZ, (base + "/%TEMP%/\0").encode("utf-16-le")), "/%TEMP%/CheckDate.aspx"),
            (base + "/", "/CheckDate.aspx"),
            (base + "/web?page=", "/web?page=CheckDate.aspx"),
            (base + "/" + "x" * 200 + "/", "/" + "x" * (103 - len(base))),  # 104 characters count
        ):
            with self.subTest(url=url):
                self.forget()
                server.requests.clear()
                self.set_flags(VirtualTest=1, URL=url)
                self.run_agent()
                self.assertEqual(server.requests[0].path, path)

    def test_address_of_no_server(self):
        for url in ("", "nonsense", "ftp://127.0.0.1/web/", "http://", "http://absent.example/", "//", "http://%00/", "x" * 100000):
            with self.subTest(url[:50]):
                self.forget()
                self.set_flags(VirtualTest=1, URL=url)
                self.assert_ends_with(self.run_agent(), "3 svr not connect. bye~")
                self.assert_recorded(**FAILED)
        self.set_flags(VirtualTest=1, URL="nonsense", DontCheckSkip=1)
        self.assert_ends_with(
            self.run_agent(), "4 Start uploading...", "2 Can't connect to server", "4 failed to send..."
        )
        self.assert_recorded(**FAILED)


if __name__ == "__main__":
    unittest.main()
