"""The report server's word, and everything that may go wrong between it and the agent."""

from sim import answers
from sim.prefix import REG_BINARY

from .office import SENT, SERVER_URL, OfficeTestCase

NOT_SENT = "4 failed to send..."
NOT_POSTED, NOT_CONNECTED = "2 Failed to post !!!", "2 Can't connect to server"
FAILED = {"LastServerFailedTime": None}
CHECK, POST = "CheckDate.aspx", "Connector.aspx"

GOOD = answers.check_date().body
# An answer of the greatest length; a byte more is too long.
LONGEST = GOOD.ljust(1024 * 1024)

NO_ANSWERS = {
    "no content": answers.Answer(status=204),
    "a part": answers.Answer(GOOD, 206),
    "login wanted": answers.Answer(b"", 401, {"WWW-Authenticate": 'Basic realm="x"'}),
    "redirected to nothing": answers.Answer(status=302, headers={"Location": "/elsewhere.xml"}),
    "connection dropped": answers.dropped(),
    "broken off": answers.broken_off(),
    "no HTTP": answers.raw(b"\0\1\2\3 garbage\r\n\r\n<root><Result>SUCCESS</Result>"),
    "endless status line": answers.raw(b"HTTP/1.1 " + b"2" * 100000 + b"\r\n\r\n"),
    "wrong chunks": answers.Answer([b"ZZZ\r\n<root></root>\r\n"], headers={"Transfer-Encoding": "chunked"}),
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
                self.assert_ends_with(result, "3 svr not connect. bye~")
                self.assert_recorded(**FAILED)
                longer = "3 HTTP response is longer than 1048576 bytes: dropped"
                self.assertEqual(longer in result.log_texts, name == "too long")
        self.assertNotIn(POST, [request.page for request in server.requests])

    def test_odd_answers(self):
        server = self.report_server()
        pieces = [b"3\r\n<ro\r\n", b"22\r\not><Result>SUCCESS</Result></root>\r\n", b"0\r\n\r\n"]
        chunked = answers.Answer(pieces, headers={"Transfer-Encoding": "chunked"})
        for check, post, *ends in (
            (answers.trickling(answers.Answer("<root/>"), 0.001), chunked, SENT),
            (answers.Answer(LONGEST), answers.status(500), "2 Can't get result !!!", NOT_SENT),
        ):
            with self.subTest(ends):
                self.forget()
                server.answer(CHECK, check)
                server.answer(POST, post)
                self.assert_ends_with(self.run_agent(), *ends)
        self.assert_recorded(**FAILED)

    def test_no_server(self):
        for url, failure in (
            (SERVER_URL, NOT_POSTED),
            ("http://absent.example/", NOT_POSTED),
            ("ftp://127.0.0.1/web/", NOT_POSTED),
            (SERVER_URL + "\r\nX-Forged: 1\r\n", NOT_CONNECTED),
            ("x" * 100000, NOT_CONNECTED),
        ):
            with self.subTest(url[:50]):
                self.forget()
                self.set_flags(VirtualTest=1, URL=url, DontCheckSkip=1)
                self.assert_ends_with(self.run_agent(), "4 Start uploading...", failure, NOT_SENT)
                self.assert_recorded(**FAILED)

    def test_certificate_that_nobody_trusts(self):
        # What the program was built with counts when the registry's value has another type.
        server = self.report_server(port=443, tls=True)
        self.set_flags(VirtualTest=1, URL=(REG_BINARY, b"http"))
        result = self.run_agent()
        self.assert_ends_with(result, SENT)
        # Wine then trusts the server until the process ends.
        told = [text for text in result.debug if text.startswith("[KVF]")]
        self.assertEqual(told, ["[KVF] dwErr : 12045"] + ["[KVF] nStatusCode : 200"] * 2)
        self.assertEqual([request.path for request in server.requests], ["/web/CheckDate.aspx", "/web/Connector.aspx"])
        self.assertEqual(server.requests[0].headers["Host"], "report.velnora.example")

    def test_address_in_the_registry_is_used_as_it_stands(self):
        server = self.report_server()
        url = f"{SERVER_URL}?page=" + "x" * 100
        self.set_flags(VirtualTest=1, URL=url)
        self.run_agent()
        self.assertEqual("http://127.0.0.1:8080" + server.requests[0].path, url[:104])  # 104 characters count
