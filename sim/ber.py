"""SNMPv1 messages and their BER bytes (RFC 1157, X.690), as far as a printer's agent and its peers need them."""

from collections.abc import Callable, Sequence
from typing import NamedTuple

from .mib import COUNTER, COUNTER64, GAUGE, INTEGER, NULL, OBJECT_ID, OCTET_STRING, TIMETICKS, Oid, Value

SEQUENCE = 0x30
GET, GET_NEXT, RESPONSE, SET = 0xA0, 0xA1, 0xA2, 0xA3
PDU_NAMES = {GET: "get", GET_NEXT: "get-next", RESPONSE: "response", SET: "set"}
NO_ERROR, TOO_BIG, NO_SUCH_NAME, BAD_VALUE, READ_ONLY, GEN_ERR = range(6)

# Writes one part of a message, by the part's name, its tag and its content.
Wrap = Callable[[str, int, bytes], bytes]


class Message(NamedTuple):
    """An SNMPv1 message with any PDU but a trap."""

    version: int
    community: bytes
    pdu_type: int
    request_id: int
    error_status: int
    error_index: int
    bindings: list[tuple[Oid, Value]]


def request(
    pdu_type: int, bindings: Sequence[Oid | tuple[Oid, Value]], community: bytes = b"public", request_id: int = 1
) -> Message:
    """A request message; `bindings` holds names, or (name, Value) pairs for a set."""
    pairs = [
        entry if len(entry) == 2 and isinstance(entry[1], Value) else (entry, Value(NULL, None)) for entry in bindings
    ]
    return Message(0, community, pdu_type, request_id, 0, 0, pairs)


def tlv(_part: str, tag: int, content: bytes) -> bytes:
    """Tag, shortest length and content: how a well-behaved agent writes each part of a message."""
    size = len(content)
    if size < 0x80:
        return bytes((tag, size)) + content
    octets = size.to_bytes((size.bit_length() + 7) // 8, "big")
    return bytes((tag, 0x80 | len(octets))) + octets + content


def encode(message: Message, wrap: Wrap = tlv) -> bytes:
    """The bytes of a message. `wrap` writes each part, which it is told by name: "message", "version", "community",
    "pdu", "request-id", "error-status", "error-index", "bindings", "binding", "name", "value"."""
    bindings = b"".join(
        wrap("binding", SEQUENCE, wrap("name", OBJECT_ID, _oid_bytes(name)) + wrap("value", value.tag, content(value)))
        for name, value in message.bindings
    )
    pdu = (
        wrap("request-id", INTEGER, _integer_bytes(message.request_id))
        + wrap("error-status", INTEGER, _integer_bytes(message.error_status))
        + wrap("error-index", INTEGER, _integer_bytes(message.error_index))
        + wrap("bindings", SEQUENCE, bindings)
    )
    return wrap(
        "message",
        SEQUENCE,
        wrap("version", INTEGER, _integer_bytes(message.version))
        + wrap("community", OCTET_STRING, message.community)
        + wrap("pdu", message.pdu_type, pdu),
    )


def decode(data: bytes) -> Message:
    """The message of a datagram. Raises ValueError."""
    reader = _Reader(_Reader(data).take(SEQUENCE))
    version = _integer(reader.take(INTEGER))
    community = reader.take(OCTET_STRING)
    pdu_type, content_ = reader.take_any()
    pdu = _Reader(content_)
    numbers = [_integer(pdu.take(INTEGER)) for _ in range(3)]
    rows = _Reader(pdu.take(SEQUENCE))
    bindings = []
    while rows.data:
        row = _Reader(rows.take(SEQUENCE))
        bindings.append((_oid(row.take(OBJECT_ID)), _value(*row.take_any())))
    return Message(version, community, pdu_type, *numbers, bindings)


def content(value: Value) -> bytes:
    """The content bytes of a value; bytes stay as they are, whatever the tag."""
    if value.data is None:
        return b""
    if isinstance(value.data, tuple):
        return _oid_bytes(value.data)
    return _integer_bytes(value.data) if isinstance(value.data, int) else value.data


class _Reader:
    def __init__(self, data: bytes):
        self.data = data

    def take_any(self) -> tuple[int, bytes]:
        """Tag and content of the next part."""
        if len(self.data) < 2:
            raise ValueError("the message ends early")
        tag, size, start = self.data[0], self.data[1], 2
        if size & 0x80:
            start += size & 0x7F
            size = int.from_bytes(self.data[2:start], "big")
        if len(self.data) < start + size:
            raise ValueError("a length goes beyond the message")
        part, self.data = self.data[start : start + size], self.data[start + size :]
        return tag, part

    def take(self, tag: int) -> bytes:
        found, part = self.take_any()
        if found != tag:
            raise ValueError(f"tag {found:#04x} where {tag:#04x} belongs")
        return part


def _value(tag: int, part: bytes) -> Value:
    if tag in (INTEGER, COUNTER, GAUGE, TIMETICKS, COUNTER64):
        return Value(tag, _integer(part))
    if tag == OBJECT_ID:
        return Value(tag, _oid(part))
    return Value(tag, None if tag == NULL else part)


def _integer(part: bytes) -> int:
    if not part:
        raise ValueError("a number without content")
    return int.from_bytes(part, "big", signed=True)


def _integer_bytes(number: int) -> bytes:
    # One bit more than the number needs: that of the sign.
    bits = (number if number >= 0 else ~number).bit_length() + 1
    return number.to_bytes((bits + 7) // 8, "big", signed=True)


def _oid(part: bytes) -> Oid:
    arcs, arc = [], 0
    for byte in part:
        arc = arc << 7 | byte & 0x7F
        if not byte & 0x80:
            arcs.append(arc)
            arc = 0
    if not arcs or part[-1] & 0x80:
        raise ValueError("a name ends early")
    first = min(arcs[0] // 40, 2)
    return first, arcs[0] - 40 * first, *arcs[1:]


def _oid_bytes(oid: Oid) -> bytes:
    first, second = (*oid, 0, 0)[:2]
    encoded = bytearray()
    for arc in (first * 40 + second, *oid[2:]):
        groups = [arc & 0x7F]
        while arc := arc >> 7:
            groups.append(arc & 0x7F | 0x80)
        encoded += bytes(reversed(groups))
    return bytes(encoded)
