"""Requests as a reader wants to see them: form fields decoded, documents indented."""

import xml.etree.ElementTree as ElementTree
from collections.abc import Iterator
from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from .report_server import Request


def show_request(request: "Request") -> str:
    """The lines of a request as one text, without a line feed at its end."""
    lines = [f"{request.method} {request.path} -> {request.status or 'no HTTP answer'}"]
    lines += [f"    {name}: {text}" for name, text in request.headers.items()]
    if request.body:
        lines.append("")
        lines += _show_fields(request)
    return "\n".join(lines)


def show_document(text: str) -> str:
    """An XML document with each element indented by its depth; any other text as it stands."""
    try:
        root = ElementTree.fromstring(text.encode())
    except (ElementTree.ParseError, UnicodeEncodeError):
        return text
    ElementTree.indent(root)
    prolog = text.partition("\n")[0] + "\n" if text.startswith("<?xml") else ""
    return prolog + ElementTree.tostring(root, encoding="unicode")


def _show_fields(request: "Request") -> Iterator[str]:
    if not request.fields:
        yield "    " + _printable(request.body.decode("latin-1"))
    for name, value in request.fields.items():
        shown = _printable(show_document(value))
        if "\n" in shown:
            yield f"    {_printable(name)} ="
            yield from ("        " + line for line in shown.split("\n"))
        else:
            yield f"    {_printable(name)} = {shown}"


def _printable(text: str) -> str:
    """The text without control characters and without bytes that were no UTF-8."""
    return "".join(c if c.isprintable() or c == "\n" else c.encode("unicode_escape").decode() for c in text)
