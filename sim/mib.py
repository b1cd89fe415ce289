"""A printer's data file: every object that its SNMP agent serves, as lines of plain text.

The format is what `snmpwalk -v1 -c public -On -m '' PRINTER 1.3.6.1` prints, so a walk of a real printer is a data
file as it stands. Besides:

    # a comment, on a line of its own
    [1.3.6.1.2.1.43]                    names below are relative to this one; [] ends that
    5.1.1.17.1 = STRING: "VN0001"       the types: INTEGER, STRING, Hex-STRING, OID, IpAddress, Counter32, Gauge32,
    11.1.1.5.1.1 = INTEGER: toner(3)    Timeticks, Counter64, NULL; an empty string may be written ""

A name that begins with a dot is absolute everywhere. The last value of a name counts.
"""

import bisect
import os
import re
from collections.abc import Iterator
from pathlib import Path
from typing import Any, NamedTuple

INTEGER, OCTET_STRING, NULL, OBJECT_ID = 0x02, 0x04, 0x05, 0x06
IP_ADDRESS, COUNTER, GAUGE, TIMETICKS, COUNTER64 = 0x40, 0x41, 0x42, 0x43, 0x46

Oid = tuple[int, ...]


class Value(NamedTuple):
    """An object's value: its BER tag, and a number, bytes, an Oid (OBJECT_ID) or None (NULL)."""

    tag: int
    data: Any


NUMBER_TYPES = {
    "INTEGER": INTEGER,
    "Counter32": COUNTER,
    "Gauge32": GAUGE,
    "Unsigned32": GAUGE,
    "Timeticks": TIMETICKS,
    "Counter64": COUNTER64,
}

_SECTION = re.compile(r"\[([\d.]*)\]")
_OBJECT = re.compile(r"(\.?\d+(?:\.\d+)*) = (.*)", re.DOTALL)
_HEX_LINE = re.compile(r"(?:[0-9A-Fa-f]{2}\s*)+")
_NUMBER = re.compile(r"(?:[\w-]*\()?(-?\d+)")


def parse_oid(text: str) -> Oid:
    """The arcs of a dotted name; a leading dot is allowed, and the empty text is the name above all others."""
    return tuple(int(arc) for arc in text.strip(".").split(".")) if text.strip(".") else ()


def format_oid(oid: Oid) -> str:
    return ".".join(map(str, oid))


def parse_value(text: str) -> Value:
    """The value of a text such as 'INTEGER: 3' or 'STRING: "ready"'. Raises ValueError."""
    text = text.strip()
    if text == "NULL":
        return Value(NULL, None)
    if text.startswith('"'):
        return Value(OCTET_STRING, _unquote(text))
    kind, colon, rest = text.partition(":")
    rest = rest.strip()
    if not colon:
        raise ValueError(f"a value without a type: {text!r}")
    if kind == "STRING":
        return Value(OCTET_STRING, _unquote(rest))
    if kind in ("Hex-STRING", "BITS"):
        return Value(OCTET_STRING, bytes.fromhex(rest))
    if kind == "OID":
        return Value(OBJECT_ID, parse_oid(rest))
    if kind == "IpAddress":
        return Value(IP_ADDRESS, bytes(int(octet) for octet in rest.split(".")))
    number = _NUMBER.match(rest)
    if kind in NUMBER_TYPES and number:
        return Value(NUMBER_TYPES[kind], int(number[1]))
    raise ValueError(f"not a value: {text!r}")


def format_value(value: Value) -> str:
    """The text of a value, as parse_value() reads it."""
    if value.tag == NULL:
        return "NULL"
    if value.tag == OBJECT_ID:
        return "OID: ." + format_oid(value.data)
    if value.tag == IP_ADDRESS:
        return "IpAddress: " + ".".join(map(str, value.data))
    for kind, tag in NUMBER_TYPES.items():
        if tag == value.tag:
            return f"{kind}: {value.data}"
    if all(0x20 <= byte < 0x7F for byte in value.data):
        text = value.data.decode("ascii").replace("\\", "\\\\").replace('"', '\\"')
        return f'STRING: "{text}"'
    return "Hex-STRING: " + value.data.hex(" ").upper()


class Mib:
    """The objects of one or more data files in the order of their names; where two name the same object, the later
    file counts.

    The files are read again when one has changed; what was set meanwhile is then forgotten. While a file cannot be
    read (because somebody is just writing it), the objects stay as they are.
    """

    def __init__(self, *paths: Path | str):
        self._paths = paths
        self._objects: dict[Oid, Value] = {}
        self._names: list[Oid] = []  # in order
        self._stamps = self._look()
        self._read()

    def get(self, oid: Oid) -> Value | None:
        """The value of the object, or None."""
        return self._objects.get(oid)

    def next(self, oid: Oid, top: Oid = ()) -> tuple[Oid, Value] | None:
        """Name and value of the first object behind `oid`, or None when no such object lies below `top`."""
        position = bisect.bisect_right(self._names, oid)
        if position == len(self._names):
            return None
        name = self._names[position]
        return (name, self._objects[name]) if name[: len(top)] == top else None

    def set(self, oid: Oid, value: Value) -> None:
        """Gives an object a value, until the files change. A new object finds its place among the others."""
        if oid not in self._objects:
            bisect.insort(self._names, oid)
        self._objects[oid] = value

    def remove(self, top: Oid) -> None:
        """Takes the object of that name and all below it away, until the files change."""
        self._names = [name for name in self._names if name[: len(top)] != top]
        self._objects = {name: self._objects[name] for name in self._names}

    def refresh(self) -> None:
        """Reads the files again if one has changed."""
        stamps = self._look()
        if stamps == self._stamps:
            return
        try:
            self._read()
            self._stamps = stamps
        except (OSError, ValueError):
            pass

    def _look(self) -> list[tuple[int, int, int]] | None:
        try:
            return [(state.st_mtime_ns, state.st_size, state.st_ino) for state in map(os.stat, self._paths)]
        except OSError:
            return None

    def _read(self) -> None:
        objects: dict[Oid, Value] = {}
        for path in self._paths:
            # Latin-1 keeps every byte of a string as it stands in the file.
            with open(path, encoding="latin-1", newline="\n") as file:
                objects.update(_parse(file.read(), path))
        self._objects = objects
        self._names = sorted(objects)


def _parse(text: str, path: Path | str) -> dict[Oid, Value]:
    objects = {}
    base: Oid = ()
    for number, line in _logical_lines(text):
        section = _SECTION.fullmatch(line)
        if section:
            base = parse_oid(section[1])
            continue
        found = _OBJECT.fullmatch(line)
        if not found:
            raise ValueError(f"{path}:{number}: no object: {line!r}")
        name, value = found.groups()
        oid = parse_oid(name) if name.startswith(".") else base + parse_oid(name)
        objects[oid] = parse_value(value)
    return objects


def _logical_lines(text: str) -> Iterator[tuple[int, str]]:
    """Number and text of each line that counts. Long strings of a walk go over several lines; they are joined."""
    pending = None
    for number, line in enumerate(text.split("\n"), 1):
        line = line.removesuffix("\r")
        if pending is not None:
            if _is_open(pending[1]):
                pending = (pending[0], pending[1] + "\n" + line)
                continue
            if " = Hex-STRING:" in pending[1] and _HEX_LINE.fullmatch(line):
                pending = (pending[0], pending[1] + line)
                continue
            yield pending
            pending = None
        # The last two are how a walk ends.
        if not line.strip() or line.startswith("#") or line == "End of MIB" or " = No more variables left" in line:
            continue
        pending = (number, line.strip() if line.startswith("[") else line)
    if pending is not None:
        yield pending


def _is_open(line: str) -> bool:
    """Whether the line begins a quoted string that it does not end."""
    value = line.partition(" = ")[2].removeprefix("STRING:").strip()
    return value.startswith('"') and not re.fullmatch(r'"(?:[^"\\]|\\.)*"', value, re.DOTALL)


def _unquote(text: str) -> bytes:
    if text.startswith('"') and text.endswith('"') and len(text) > 1:
        text = re.sub(r"\\(.)", r"\1", text[1:-1], flags=re.DOTALL)
    return text.encode("latin-1")
