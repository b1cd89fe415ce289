"""A few lines of SNMPv1 client: enough to see whether an agent answers, and what."""

import socket
from collections.abc import Iterator

from . import ber
from .mib import Oid, Value


def exchange(
    message: ber.Message, address: str = "127.0.0.1", port: int = 161, timeout: float = 1.0
) -> ber.Message | None:
    """Sends a message and returns the answer, or None when none comes in time."""
    family = socket.AF_INET6 if ":" in address else socket.AF_INET
    with socket.socket(family, socket.SOCK_DGRAM) as peer:
        peer.settimeout(timeout)
        try:
            peer.connect((address, port))
            peer.send(ber.encode(message))
            return ber.decode(peer.recv(65536))
        except (OSError, ValueError):
            return None


def walk(
    top: Oid, address: str = "127.0.0.1", port: int = 161, community: bytes = b"public"
) -> Iterator[tuple[Oid, Value]]:
    """All objects below `top`, each with its name."""
    name = top
    while True:
        answer = exchange(ber.request(ber.GET_NEXT, [name], community), address, port)
        if answer is None or answer.error_status:
            return
        name, value = answer.bindings[0]
        if name[: len(top)] != top:
            return
        yield name, value
