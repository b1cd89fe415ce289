"""The report server's word: its policy, its refusals, and everything that may go wrong between it and the agent."""

import gzip
import unittest

from sim import answers
from sim.prefix import REG_BINARY, REG_EXPAND_SZ

from .office import OfficeTestCase

SENT, NOT_SENT = "4 send sucessfully...", "4 failed to send..."
UNREACHED = "3 svr not connect. bye~"
FAILED = {"LastServerFailedTime": None}
CHECK, POST = "CheckDate.aspx", "Connector.aspx"

GOOD = answers.check_date().body
# An answer of the greatest length; a byte more is too long.
LONGEST = GOOD.ljust(1024 * 1024)

NO_ANSWERS = {
    "server error": answers.Answer(GOOD, 500),
    "no content": answers.Answer(status=204),
    "a part": answers.Answer(GOOD, 206),
    "login wanted": answers.Answer(b"", 401, {"WWW-Authenticate": 'Basic realm="x"'}),
    "redirected to nothing": answers.Answer(status=302, headers={"Location": "/elsewhere.xml"}),
    "connection dropped": answers.dropped(),
    "broken off": answers.broken_off(),
    "no HTTP": answers.raw(b"\0\1\2\3 garbage\r\n\r\n<root><Result>SUCCESS</Result>"),
    "endless status line": answers.raw(b"HTTP/1.1 " + b"2" * 100000 + b"\r\n\r\n"),
    "wrong chunks": answers.Answer([b"ZZZ\r\n<root></root>\r\n"], headers={"Transfer-Encoding": "chunked"}),
    "no XML": answers.Answer("<html><body>Please sign in<br></body></html>"),
    "compressed": answers.Answer(gzip.compress(GOOD.encode())),
    "too long": answers.Answer(LONGEST + " "),
}


class ServerTest(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.set_flags(VirtualTest=1)

    def test_no_answer(self):
        server = self.report_server()
        for name, answer in NO_ANSWERS.items():
            with self.subTest(name):
                self.forget()
                server.answer(CHECK, answer)
                result = self.run_agent()
                self.assert_ends_with(result, UNREACHED)
                self.assert_recorded(**FAILED)
                longer = "3 HTTP response is longer than 1048576 bytes: dropped"
                self.assertEqual(longer in result.log_texts, name == "too long")
        self.assertNotIn(POST, [request.page for request in server.requests])
        self.forget()
        server.answer(CHECK, answers.Answer(LONGEST))
        server.answer(POST, answers.status(500))
        self.assert_ends_with(self.run_agent(), "2 Can't get result !!!", NOT_SENT)
        self.assert_recorded(**FAILED)

    def test_no_server(self):
        self.assert_ends_with(self.run_agent(), UNREACHED)
        self.assert_recorded(**FAILED)
        server = self.report_server()
        near = ("3 Last svr fail near! bye~", "4 found last server fail. try later bye~")
        self.assert_ends_with(self.run_agent(), *near)
        self.assertEqual(server.requests, [])
        server.stop()
        self.set_flags(VirtualTest=1, DontCheckSkip=1)
        self.assert_ends_with(self.run_agent(), "4 Start uploading...", "2 Failed to post !!!", NOT_SENT)

    def test_policy(self):
        server = self.report_server()
        date = self.world.time_text(days_ago=13)[:10]
        server.answer(CHECK, answers.check_date(last_date=date + " 23:59:59", interval=14))
        self.assert_ends_with(self.run_agent(), "3 Last svr success near! bye~", "4 skipped by svr. bye~")
        # From now on this computer knows as well.
        self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")
        self.assertEqual(len(server.requests), 1)
        self.assert_recorded(LastSendTime_VIRTUAL0001=date)
        self.assertEqual(self.settings()["Common"], {"SendIntervalDays": "14"})

    def test_answers_in_pieces(self):
        server = self.report_server()
        server.answer(CHECK, answers.trickling(answers.Answer("<root/>"), 0.001))
        pieces = [b"3\r\n<ro\r\n", b"22\r\not><Result>SUCCESS</Result></root>\r\n", b"0\r\n\r\n"]
        server.answer(POST, answers.Answer(pieces, headers={"Transfer-Encoding": "chunked"}))
        self.assert_ends_with(self.run_agent(), SENT)

    def test_certificate_that_nobody_trusts(self):
        # What the program was built with counts when the registry's value has another type.
        server = self.report_server(port=443, tls=True)
        self.set_flags(VirtualTest=1, URL=(REG_BINARY, b"http"))
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
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
        server = self.report_server()
        for url in (
            "",
            "ftp://127.0.0.1/web/",
            "http://absent.example/",
            server.url + "\r\nX-Forged: 1\r\n",
            "x" * 100000,
        ):
            with self.subTest(url[:50]):
                self.forget()
                self.set_flags(VirtualTest=1, URL=url)
                self.assert_ends_with(self.run_agent(), UNREACHED)
        self.set_flags(VirtualTest=1, URL="nonsense", DontCheckSkip=1)
        self.assert_ends_with(self.run_agent(), "2 Can't connect to server", NOT_SENT)
        self.assert_recorded(**FAILED)
        self.assertEqual(server.requests, [])


if __name__ == "__main__":
    unittest.main()
