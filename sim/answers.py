"""The answers that a report server may give: the usual documents, and what goes wrong on the way."""

import itertools
import threading
import time
import xml.etree.ElementTree as ElementTree
from collections.abc import Iterable, Iterator
from dataclasses import dataclass, field, replace
from pathlib import Path
from typing import Union

# Of an element: text, elements within it, or None, which leaves the element out.
Content = Union[object, list[tuple[str, "Content"]], None]


@dataclass
class Answer:
    """One answer to one request.

    `body`: bytes or text; a Path, whose file is read anew for each request; or an iterable of bytes, which is sent
        piece by piece without a Content-Length and may be endless.
    `status`: None sends the body alone, with no status line and no headers before it.
    `headers`: added to the usual ones, or taking their place.
    `delay`: seconds before the first byte.
    `cut`: the connection is dropped after so many bytes, status line and headers counted; 0 drops it unanswered.
    """

    body: bytes | str | Path | Iterable[bytes] = b""
    status: int | None = 200
    headers: dict[str, str] = field(default_factory=dict)
    delay: float = 0
    cut: int | None = None

    def content(self) -> bytes | Iterable[bytes]:
        """The body's bytes, or the iterable."""
        if isinstance(self.body, Path):
            return self.body.read_bytes()
        return self.body.encode() if isinstance(self.body, str) else self.body


def document(*elements: tuple[str, Content]) -> str:
    """An answer document: `root` with the given (name, text or nested elements); those with None are left out."""
    root = ElementTree.Element("root")
    _fill(root, elements)
    ElementTree.indent(root)
    text = ElementTree.tostring(root, encoding="unicode")
    return f'<?xml version="1.0" encoding="utf-8"?>\n{text}\n'


def check_date(result: str = "SUCCESS", last_date: str | None = None, interval: object = 30) -> Answer:
    """Answers CheckDate.aspx: the date of the last report known to the server ("2024-05-17 10:30:00"), and the days
    that shall lie between two reports."""
    return Answer(document(("Result", result), ("LastDate", last_date), ("PostIntervalDays", interval)))


def check_sbx(
    result: str = "SUCCESS",
    transmission_duration: object = 7,
    language_codes: str = "24, 59",
    models: dict[str, object] | None = None,
    max_level: object = 150,
    normal_interval: object = 30,
) -> Answer:
    """Answers CheckSBX.aspx; `models` maps a model's name to its own limit of the toner's life."""
    levels = [("Model", [("Name", name), ("Level", level)]) for name, level in (models or {}).items()]
    return Answer(
        document(
            ("Result", result),
            ("TransmissionDuration", transmission_duration),
            ("NSLanguageCode", language_codes),
            ("ModelMaxLevel", levels),
            ("ServerMaxLevel", max_level),
            ("NormalIntervalDays", normal_interval),
        )
    )


def upload(result: str = "SUCCESS") -> Answer:
    """Answers Connector.aspx and ConnectorSBX.aspx."""
    return Answer(document(("Result", result)))


def file(path: Path | str) -> Answer:
    """The content of a file, read anew for each request."""
    return Answer(Path(path))


def status(code: int) -> Answer:
    """An error page."""
    return Answer(f"<html><body>Error {code}</body></html>\n", code, {"Content-Type": "text/html"})


def late(seconds: float, answer: Answer | None = None) -> Answer:
    """An answer after a delay."""
    return replace(answer or upload(), delay=seconds)


def dropped() -> Answer:
    """No answer: the connection ends after the request."""
    return Answer(cut=0)


def broken_off(answer: Answer | None = None) -> Answer:
    """The status line and headers of an answer, and half of its body; then the connection ends."""
    answer = answer or upload()
    content = answer.content()
    return replace(
        answer, body=[content[: len(content) // 2]], headers={"Content-Length": str(len(content)), **answer.headers}
    )


def endless(piece: bytes = b"<root>" * 1000) -> Answer:
    """A body without an end."""
    return Answer(itertools.repeat(piece))


def huge(size: int, piece: bytes = b"<root>") -> Answer:
    """A body of `size` bytes, announced in its headers."""
    return Answer((piece * (size // len(piece) + 1))[:size])


def trickling(answer: Answer, pause: float) -> Answer:
    """An answer whose body comes one byte in `pause` seconds."""
    return replace(answer, body=_Trickle(answer.content(), pause))


def raw(data: bytes) -> Answer:
    """Any bytes at all in place of an HTTP answer."""
    return Answer(data, status=None)


class Gate:
    """An answer that is held back until somebody opens the gate.

    gate = Gate(upload())
    server.answer("Connector.aspx", gate.answer)
    run = world.start("-QName", "Office")
    gate.wait_for_visitor()
    gate.open()
    """

    def __init__(self, answer: Answer):
        self._content = answer.content()
        self._reached, self._opened = threading.Event(), threading.Event()
        self.answer = Answer(self)

    def __iter__(self) -> Iterator[bytes]:
        self._reached.set()
        self._opened.wait(60)
        yield self._content

    def wait_for_visitor(self) -> None:
        if not self._reached.wait(30):
            raise AssertionError("nobody came to ask")

    def open(self) -> None:
        self._opened.set()


class _Trickle:
    def __init__(self, content: Iterable[int], pause: float):
        self._content, self._pause = content, pause

    def __iter__(self) -> Iterator[bytes]:
        for byte in self._content:
            time.sleep(self._pause)
            yield bytes((byte,))


def _fill(parent: ElementTree.Element, elements: Iterable[tuple[str, Content]]) -> None:
    for name, content in elements:
        if content is None:
            continue
        element = ElementTree.SubElement(parent, name)
        if isinstance(content, list):
            _fill(element, content)
        else:
            element.text = str(content)
