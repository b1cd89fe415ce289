"""What a printer's SNMP agent may do wrong, each as a rule for hostile.HostileAgent.

A rule is a function that is called with an Exchange instead of sending the right answer; whatever it hands to
exchange.send() goes out. The functions below make the rules; RULES holds them by their names.
"""

import random
from collections.abc import Callable
from dataclasses import dataclass

from . import ber
from .mib import OCTET_STRING, Oid, Value, parse_oid, parse_value


@dataclass
class Exchange:
    """One request, as a rule gets it."""

    request: ber.Message
    answer: ber.Message  # the right one
    count: int  # how often the rule was called before
    send: Callable[..., None]  # send(data, after=0): a datagram to the asker, at once or after so many seconds

    def right(self) -> bytes:
        """The bytes of the right answer."""
        return ber.encode(self.answer)


Rule = Callable[[Exchange], None]


def silence() -> Rule:
    """No answer."""
    return lambda exchange: None


def late(seconds: float) -> Rule:
    """The right answer, too late."""
    return lambda exchange: exchange.send(exchange.right(), after=seconds)


def twice() -> Rule:
    """The right answer two times."""

    def rule(exchange: Exchange) -> None:
        exchange.send(exchange.right())
        exchange.send(exchange.right())

    return rule


def bytes_of(data: bytes | str) -> Rule:
    """Always these bytes (hexadecimal text, or bytes)."""
    data = bytes.fromhex(data) if isinstance(data, str) else data
    return lambda exchange: exchange.send(data)


def garbage(size: int = 64, seed: int = 1) -> Rule:
    """Bytes without any sense, the same in each run."""
    return lambda exchange: exchange.send(random.Random(seed + exchange.count).randbytes(size))


def flipped(seed: int = 1) -> Rule:
    """The right answer with one bit wrong, another one at each call."""

    def rule(exchange: Exchange) -> None:
        data = bytearray(exchange.right())
        dice = random.Random(seed + exchange.count)
        data[dice.randrange(len(data))] ^= 1 << dice.randrange(8)
        exchange.send(bytes(data))

    return rule


def prefix(size: int) -> Rule:
    """The first `size` bytes of the right answer; a negative `size` leaves so many out."""
    return lambda exchange: exchange.send(exchange.right()[:size])


def each_prefix() -> Rule:
    """The first call gets an empty datagram, the next one byte of the answer, and so on up to all but one."""
    return lambda exchange: exchange.send(exchange.right()[: exchange.count % len(exchange.right())])


def trailing(size: int = 1) -> Rule:
    """The right answer with bytes of no meaning behind it."""
    return lambda exchange: exchange.send(exchange.right() + b"\xA5" * size)


def tag(part: str, number: int) -> Rule:
    """A wrong tag on one part of the message; ber.encode() names the parts."""
    return _wrapped(lambda name, own, content: ber.tlv(name, number if name == part else own, content))


def lengths(octets: int) -> Rule:
    """Every length in the long form with so many octets."""

    def wrap(_part: str, own: int, content: bytes) -> bytes:
        return bytes((own, 0x80 | octets)) + len(content).to_bytes(octets, "big") + content

    return _wrapped(wrap)


def indefinite() -> Rule:
    """Every constructed part in the indefinite form."""

    def wrap(part: str, own: int, content: bytes) -> bytes:
        return bytes((own, 0x80)) + content + b"\0\0" if own & 0x20 else ber.tlv(part, own, content)

    return _wrapped(wrap)


def lie(part: str, difference: int) -> Rule:
    """The length of one part is wrong by so much; 0x7FFFFFFF and the like go out in four octets."""

    def wrap(name: str, own: int, content: bytes) -> bytes:
        if name != part:
            return ber.tlv(name, own, content)
        size = max(len(content) + difference, 0)
        octets = bytes((size,)) if size < 0x80 else b"\x84" + min(size, 0xFFFFFFFF).to_bytes(4, "big")
        return bytes((own,)) + octets + content

    return _wrapped(wrap)


def version(number: int) -> Rule:
    """Another version of SNMP: 1 is SNMPv2c."""
    return _changed(lambda answer: answer._replace(version=number))


def community(text: str) -> Rule:
    """Another community than the request's."""
    return _changed(lambda answer: answer._replace(community=text.encode()))


def pdu_type(number: int) -> Rule:
    """Another type of PDU than a response."""
    return _changed(lambda answer: answer._replace(pdu_type=number))


def request_id(number: int) -> Rule:
    """Another request-id than the request's."""
    return _changed(lambda answer: answer._replace(request_id=number))


def error(status: int, index: int = 1) -> Rule:
    """An error with its index; the bindings are the request's, as RFC 1157 has it."""
    return lambda exchange: exchange.send(
        ber.encode(exchange.request._replace(pdu_type=ber.RESPONSE, error_status=status, error_index=index))
    )


def value(text: str) -> Rule:
    """Another value on every binding, as a data file writes it: "Counter64: 5"."""
    return _each_value(lambda _own: parse_value(text))


def value_bytes(number: int, content: str = "") -> Rule:
    """A value of any tag with any content (hexadecimal text): 0x81 is noSuchInstance of SNMPv2, 0x82 the end of the
    view, 2 without content an INTEGER of no octets."""
    return _each_value(lambda _own: Value(number, bytes.fromhex(content)))


def giant(size: int) -> Rule:
    """A string of so many bytes on every binding; a datagram holds some 65000 in all."""
    return _each_value(lambda _own: Value(OCTET_STRING, b"x" * size))


def other_name(text: str) -> Rule:
    """Another name on every binding."""
    oid = parse_oid(text)
    return _changed(lambda answer: answer._replace(bindings=[(oid, own) for _, own in answer.bindings]))


def same_name() -> Rule:
    """The names of the request come back, so that a walk does not move."""
    return lambda exchange: exchange.send(
        ber.encode(
            exchange.answer._replace(
                error_status=0,
                error_index=0,
                bindings=[
                    (asked, own) for (asked, _), (_, own) in zip(exchange.request.bindings, exchange.answer.bindings)
                ],
            )
        )
    )


def endless_walk(text: str = 'STRING: "row"') -> Rule:
    """Below every column that a walk asks for, each get-next finds one row more."""
    columns: set[Oid] = set()

    def next_row(asked: Oid) -> Oid:
        if asked[:-1] in columns:
            return (*asked[:-1], asked[-1] + 1)
        columns.add(asked)
        return (*asked, 1)

    return lambda exchange: exchange.send(
        ber.encode(
            exchange.request._replace(
                pdu_type=ber.RESPONSE,
                bindings=[(next_row(asked), parse_value(text)) for asked, _ in exchange.request.bindings],
            )
        )
    )


def fewer(count: int = 1) -> Rule:
    """So many bindings less than the request has, from the end."""
    return _changed(lambda answer: answer._replace(bindings=answer.bindings[:-count]))


def more(count: int = 1) -> Rule:
    """The last binding so many times more."""
    return _changed(lambda answer: answer._replace(bindings=answer.bindings + answer.bindings[-1:] * count))


def swapped() -> Rule:
    """The bindings in the reverse order."""
    return _changed(lambda answer: answer._replace(bindings=answer.bindings[::-1]))


RULES = {
    rule.__name__: rule
    for rule in (
        silence,
        late,
        twice,
        bytes_of,
        garbage,
        flipped,
        prefix,
        each_prefix,
        trailing,
        tag,
        lengths,
        indefinite,
        lie,
        version,
        community,
        pdu_type,
        request_id,
        error,
        value,
        value_bytes,
        giant,
        other_name,
        same_name,
        endless_walk,
        fewer,
        more,
        swapped,
    )
}


def _wrapped(wrap: ber.Wrap) -> Rule:
    return lambda exchange: exchange.send(ber.encode(exchange.answer, wrap))


def _changed(change: Callable[[ber.Message], ber.Message]) -> Rule:
    return lambda exchange: exchange.send(ber.encode(change(exchange.answer)))


def _each_value(make: Callable[[Value], Value]) -> Rule:
    return _changed(
        lambda answer: answer._replace(
            error_status=0, error_index=0, bindings=[(name, make(own)) for name, own in answer.bindings]
        )
    )
