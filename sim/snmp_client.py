"""A few lines of SNMPv1 client: enough to see whether an agent answers, and what."""

import socket

from . import ber


def exchange(message, address="127.0.0.1", port=161, timeout=1.0):
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


def walk(top, address="127.0.0.1", port=161, community=b"public"):
    """All objects below `top` (a tuple of arcs), each as (name, Value)."""
    name = top
    while True:
        answer = exchange(ber.request(ber.GET_NEXT, [name], community), address, port)
        if answer is None or answer.error_status:
            return
        name, value = answer.bindings[0]
        if name[:len(top)] != top:
            return
        yield name, value
