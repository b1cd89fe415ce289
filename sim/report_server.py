"""A report server of one's own: answers what it was told to, and keeps what it was sent.

In Python:

    from sim import answers
    from sim.report_server import ReportServer
    with ReportServer() as server:                     # http://127.0.0.1:PORT/web/, any free port
        server.answer("CheckDate.aspx", answers.check_date(interval=14))
        server.answer("Connector.aspx", answers.status(500), answers.upload("SUCCESS"))   # first call, later calls
        ...                                            # give server.url to the agent
        server.requests[0].fields["SerialNumber"]

By hand, showing each request as it comes, until Ctrl-C:

    python3 -m sim.report_server --port 8080
    python3 -m sim.report_server --port 8443 --tls --answer CheckDate.aspx=my-answer.xml

A page is named by the end of its path, so any base path serves ("/web/CheckDate.aspx"). The four pages of the report
server answer "SUCCESS" until they are told otherwise; other pages are not found. A printer's embedded web server is
the same thing with another page: server.answer("rds/rds.xml", answers.file("sim/printers/rds.xml")).

With tls=True the certificate is self-signed, made for this start, and issued for CERTIFICATE_NAME.
"""

import argparse
import http.server
import os
import signal
import socket
import socketserver
import ssl
import subprocess
import sys
import tempfile
import threading
import urllib.parse
from collections.abc import Callable
from dataclasses import dataclass
from typing import Any

from . import answers
from .answers import Answer
from .show_request import show_request

CERTIFICATE_NAME = "some-other-server.example"

USUAL_ANSWERS = {
    "CheckDate.aspx": answers.check_date(),
    "CheckSBX.aspx": answers.check_sbx(),
    "Connector.aspx": answers.upload(),
    "ConnectorSBX.aspx": answers.upload(),
}


@dataclass
class Request:
    """A request as it came."""

    method: str
    path: str
    headers: dict[str, str]  # as they were spelled; the last of a name counts
    body: bytes
    status: int | None  # of the answer; None when that was no HTTP answer

    @property
    def page(self) -> str:
        """The last part of the path, "CheckDate.aspx"."""
        return self.path.partition("?")[0].rpartition("/")[2]

    @property
    def fields(self) -> dict[str, str]:
        """The form fields of the body, decoded; the last of a name counts."""
        pairs = urllib.parse.parse_qsl(self.body.decode("latin-1"), keep_blank_values=True, errors="surrogateescape")
        return dict(pairs)


class ReportServer:
    """An HTTP server on one address; serves from its making until stop() or the end of the with block."""

    def __init__(
        self,
        port: int = 0,
        tls: bool = False,
        address: str = "127.0.0.1",
        on_request: Callable[[Request], object] = lambda request: None,
    ):
        """`port` 0 takes any that is free. `on_request` is called with each Request, in the thread that serves it."""
        self.requests: list[Request] = []
        # What went wrong with a connection: a client that refused the certificate, or hung up.
        self.failures: list[BaseException | None] = []
        self._on_request = on_request
        self._lock = threading.Lock()
        self._pages = {page: [answer] for page, answer in USUAL_ANSWERS.items()}
        self.stopping = threading.Event()
        self._server = _Server(address, port, _server_tls() if tls else None, self)
        host = f"[{address}]" if ":" in address else address
        self.port = self._server.server_address[1]
        self.url = f"{'https' if tls else 'http'}://{host}:{self.port}/web/"
        threading.Thread(target=self._server.serve_forever, kwargs={"poll_interval": 0.02}, daemon=True).start()

    def answer(self, page: str, *sequence: Answer) -> None:
        """What the page answers: the first call gets the first answer, and so on; the last one stays."""
        with self._lock:
            self._pages[page] = list(sequence)

    def stop(self) -> None:
        """Ends the server and all of its connections."""
        self.stopping.set()
        self._server.shutdown()
        self._server.server_close()

    def __enter__(self) -> "ReportServer":
        return self

    def __exit__(self, *_: object) -> None:
        self.stop()

    def choose(self, path: str) -> Answer:
        """The answer for a request's path."""
        path = path.partition("?")[0]
        with self._lock:
            for page, sequence in self._pages.items():
                if path.endswith("/" + page):
                    return sequence.pop(0) if len(sequence) > 1 else sequence[0]
        return answers.status(404)

    def keep(self, request: Request) -> None:
        with self._lock:
            self.requests.append(request)
            self._on_request(request)


class _Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, address: str, port: int, tls: ssl.SSLContext | None, report_server: ReportServer):
        self.address_family = socket.AF_INET6 if ":" in address else socket.AF_INET
        self.report_server = report_server
        self._tls = tls
        self._connections: set[socket.socket] = set()
        super().__init__((address, port), _Handler)

    def server_bind(self) -> None:
        # HTTPServer would ask the resolver for this machine's name here, which may take seconds and serves nothing.
        socketserver.TCPServer.server_bind(self)

    def get_request(self) -> tuple[socket.socket, Any]:
        connection, peer = super().get_request()
        if self._tls:
            # The handshake happens in the connection's own thread, so that a slow client holds up nobody.
            connection = self._tls.wrap_socket(connection, server_side=True, do_handshake_on_connect=False)
        self._connections.add(connection)
        return connection, peer

    def shutdown_request(self, request: Any) -> None:
        self._connections.discard(request)
        super().shutdown_request(request)

    def server_close(self) -> None:
        super().server_close()
        for connection in list(self._connections):
            try:
                connection.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass  # the client was faster

    def handle_error(self, request: Any, client_address: Any) -> None:
        self.report_server.failures.append(sys.exc_info()[1])


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    server_version, sys_version = "ReportServer/1.0", ""
    disable_nagle_algorithm = True

    def serve(self) -> None:
        report_server = self.server.report_server
        body = self.rfile.read(int(self.headers.get("Content-Length") or 0))
        answer = report_server.choose(self.path)
        status = None if answer.cut == 0 else answer.status
        report_server.keep(Request(self.command, self.path, dict(self.headers.items()), body, status))
        report_server.stopping.wait(answer.delay)
        self._room = answer.cut
        self._send(answer)

    # Whatever the method, a page answers the same.
    do_GET = do_POST = do_PUT = do_HEAD = serve

    def _send(self, answer: Answer) -> None:
        content = answer.content()
        whole = isinstance(content, bytes)
        if not whole or answer.status is None or answer.cut is not None:
            self.close_connection = True
        if answer.status is not None:
            self._write(self._head(answer, len(content) if whole else None))
        for piece in [content] if whole else content:
            if self.server.report_server.stopping.is_set() or self._room == 0:
                return
            self._write(piece)

    def _head(self, answer: Answer, length: int | None) -> bytes:
        headers = {
            "Server": self.version_string(),
            "Date": self.date_time_string(),
            "Content-Type": "text/xml; charset=utf-8",
        }
        if length is not None:
            headers["Content-Length"] = str(length)
        if self.close_connection:
            headers["Connection"] = "close"
        headers |= answer.headers
        phrase = self.responses.get(answer.status, ("",))[0]
        lines = [f"{self.protocol_version} {answer.status} {phrase}"]
        lines += [f"{name}: {text}" for name, text in headers.items()]
        return "\r\n".join([*lines, "", ""]).encode("latin-1")

    def _write(self, data: bytes) -> None:
        if self._room is not None:
            data = data[: self._room]
            self._room -= len(data)
        self.wfile.write(data)

    def log_message(self, *_: object) -> None:
        pass


def _server_tls() -> ssl.SSLContext:
    """A TLS context with a certificate that nobody trusts."""
    with tempfile.TemporaryDirectory(prefix="report-server-") as folder:
        key, certificate = os.path.join(folder, "key.pem"), os.path.join(folder, "certificate.pem")
        command = [
            "openssl",
            "req",
            "-x509",
            "-newkey",
            "ec",
            "-pkeyopt",
            "ec_paramgen_curve:prime256v1",
            "-nodes",
            "-days",
            "2",
            "-subj",
            f"/CN={CERTIFICATE_NAME}",
            "-keyout",
            key,
            "-out",
            certificate,
        ]
        subprocess.run(command, check=True, capture_output=True)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, key)
        return context


def main() -> None:
    parser = argparse.ArgumentParser(description="Runs a report server until Ctrl-C and shows each request.")
    parser.add_argument("--port", type=int, default=8080, help="0 takes any that is free")
    parser.add_argument("--address", default="127.0.0.1")
    parser.add_argument("--tls", action="store_true", help="HTTPS with a self-signed certificate of another name")
    parser.add_argument(
        "--answer",
        action="append",
        default=[],
        metavar="PAGE=FILE",
        help="what a page answers: a file, a status such as 500, or 'drop'; "
        "given again for the same page: the next call's answer",
    )
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # ends as cleanly as by Ctrl-C
    sequences: dict[str, list[Answer]] = {}
    for entry in options.answer:
        page, _, what = entry.partition("=")
        if not (what == "drop" or what.isdigit() or os.path.isfile(what)):
            parser.error(f"{entry!r} is not PAGE=FILE, and there is no such file")
        sequences.setdefault(page, []).append(_answer_for(what))

    def show(request: Request) -> None:
        print(show_request(request), flush=True)

    with ReportServer(options.port, options.tls, options.address, show) as server:
        for page, sequence in sequences.items():
            server.answer(page, *sequence)
        print(server.url, flush=True)
        try:
            threading.Event().wait()
        except KeyboardInterrupt:
            pass


def _answer_for(what: str) -> Answer:
    if what == "drop":
        return answers.dropped()
    return answers.status(int(what)) if what.isdigit() else answers.file(what)


if __name__ == "__main__":
    main()
