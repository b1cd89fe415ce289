"""A simulated printer's SNMP agent that can misbehave, in place of snmp_agent.

In Python:

    from sim.hostile import HostileAgent
    from sim.misbehaviour import late, prefix, silence
    with HostileAgent("sim/printers/colour.mib") as agent:           # UDP 127.0.0.1:161, community "public"
        agent.misbehave(prefix(20), "1.3.6.1.2.1.43.5.1.1.17.1")     # this object, and all below the name
        agent.misbehave(silence(), skip=10)                          # everything, from the eleventh request on
        ...
        agent.requests                                               # all that it was asked

By hand, showing each request, until Ctrl-C:

    python3 -m sim.hostile sim/printers/colour.mib --rule 'prefix 20 @1.3.6.1.2.1.43.5.1.1.17.1'
    python3 -m sim.hostile --rules

Whatever no rule is for gets the right answer of an SNMPv1 agent. misbehaviour.py holds the rules.
"""

import argparse
import inspect
import shlex
import signal
import socket
import socketserver
import threading
import time
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path
from typing import Any

from . import ber
from .mib import Mib, Oid, format_oid, format_value, parse_oid, parse_value
from .misbehaviour import RULES, Exchange, Rule


@dataclass
class Request:
    """A request that the agent got."""

    time: float  # seconds, time.monotonic()
    raw: bytes
    message: ber.Message | None  # None when it was no SNMP message

    @property
    def kind(self) -> str | None:
        """ "get", "get-next", "set"; None when it was no such message."""
        return ber.PDU_NAMES.get(self.message.pdu_type) if self.message else None

    @property
    def names(self) -> list[str]:
        """The dotted names that were asked for."""
        return [format_oid(name) for name, _ in self.message.bindings] if self.message else []

    @property
    def community(self) -> str | None:
        return self.message.community.decode("latin-1") if self.message else None

    def __str__(self) -> str:
        if self.message is None:
            return f"no SNMP message: {self.raw.hex(' ')}"
        bindings = [
            f"{format_oid(name)} = {format_value(value)}" if self.kind == "set" else format_oid(name)
            for name, value in self.message.bindings
        ]
        return f"{self.kind or hex(self.message.pdu_type)} ({self.community}) {', '.join(bindings)}"


class HostileAgent:
    """A UDP agent on one address; answers from its making until stop() or the end of the with block."""

    def __init__(
        self,
        data_file: Path | str,
        community: str = "public",
        address: str = "127.0.0.1",
        port: int = 161,
        changes: dict[str, str] | None = None,
        on_request: Callable[[Request], object] = lambda request: None,
    ):
        """`changes` lie over the objects of the data file, as for snmp_agent.start_agent(). `on_request` is called
        with each Request."""
        self.requests: list[Request] = []
        self._community = community.encode()
        self._on_request = on_request
        self._mib = Mib(data_file)
        self.change(changes or {})
        self._rules: list[_RuleInUse] = []
        self._timers: list[threading.Timer] = []
        self._lock = threading.Lock()
        self._server = _Server(address, port, self._receive)
        self.port = self._server.server_address[1]
        threading.Thread(target=self._server.serve_forever, kwargs={"poll_interval": 0.02}, daemon=True).start()

    def misbehave(self, rule: Rule, name: str = "", skip: int = 0, times: int | None = None) -> None:
        """Lets the rule answer the requests for the dotted name and all below it, but not the first `skip` of them,
        nor more than `times`. Where several rules fit, the one given last answers."""
        with self._lock:
            self._rules.insert(0, _RuleInUse(rule, parse_oid(name), skip, times))

    def behave(self) -> None:
        """Takes all rules away."""
        with self._lock:
            self._rules.clear()

    def change(self, changes: dict[str, str]) -> None:
        """Gives objects other values: {"1.3.6.1.2.1.43.5.1.1.17.1": 'STRING: "VN0002"'}."""
        for name, text in changes.items():
            self._mib.set(parse_oid(name), parse_value(text))

    def remove(self, *names: str) -> None:
        """Takes the objects with these dotted names, and all below them, away."""
        for name in names:
            self._mib.remove(parse_oid(name))

    def stop(self) -> None:
        """Ends the agent; answers that are still due don't come any more."""
        self._server.shutdown()
        for timer in self._timers:
            timer.cancel()
        self._server.server_close()

    def __enter__(self) -> "HostileAgent":
        return self

    def __exit__(self, *_: object) -> None:
        self.stop()

    def _receive(self, data: bytes, send_now: Callable[[bytes], object]) -> None:
        try:
            message = ber.decode(data)
        except ValueError:
            message = None
        request = Request(time.monotonic(), data, message)
        self.requests.append(request)
        self._on_request(request)
        # An agent says nothing to what it does not understand, and to a community that it does not know.
        if request.kind not in ("get", "get-next", "set") or message.version != 0:
            return
        if message.community != self._community:
            return

        def send(data: bytes, after: float = 0) -> None:
            if not after:
                send_now(data)
                return
            self._timers.append(threading.Timer(after, send_now, [data]))
            self._timers[-1].start()

        answer = right_answer(self._mib, message)
        with self._lock:
            rule = next((rule for rule in self._rules if rule.takes(message)), None)
        if rule:
            rule.answer(message, answer, send)
        else:
            send(ber.encode(answer))


def right_answer(mib: Mib, request: ber.Message) -> ber.Message:
    """What an SNMPv1 agent answers: all that was asked for, or the first failure and nothing else (RFC 1157)."""
    if request.pdu_type == ber.GET_NEXT:
        found = [mib.next(name) for name, _ in request.bindings]
    else:
        found = [(name, held) if (held := mib.get(name)) else None for name, _ in request.bindings]
    if None in found:
        return _failure(request, ber.NO_SUCH_NAME, found.index(None))
    if request.pdu_type == ber.SET:
        for index, ((name, new), (_, held)) in enumerate(zip(request.bindings, found)):
            if new.tag != held.tag:
                return _failure(request, ber.BAD_VALUE, index)
        for name, new in request.bindings:
            mib.set(name, new)
        found = request.bindings
    return request._replace(pdu_type=ber.RESPONSE, error_status=0, error_index=0, bindings=found)


def _failure(request: ber.Message, status: int, index: int) -> ber.Message:
    return request._replace(pdu_type=ber.RESPONSE, error_status=status, error_index=index + 1)


class _RuleInUse:
    def __init__(self, rule: Rule, top: Oid, skip: int, times: int | None):
        self._rule, self._top, self._skip, self._times = rule, top, skip, times
        self._seen = self._count = 0

    def takes(self, request: ber.Message) -> bool:
        if not any(name[: len(self._top)] == self._top for name, _ in request.bindings):
            return False
        self._seen += 1
        return self._seen > self._skip and (self._times is None or self._count < self._times)

    def answer(self, request: ber.Message, answer: ber.Message, send: Callable[..., None]) -> None:
        exchange = Exchange(request, answer, self._count, send)
        self._count += 1
        self._rule(exchange)


class _Server(socketserver.UDPServer):
    max_packet_size = 65536

    def __init__(self, address: str, port: int, receive: Callable[[bytes, Callable[[bytes], object]], None]):
        self.address_family = socket.AF_INET6 if ":" in address else socket.AF_INET
        self._receive = receive
        super().__init__((address, port), None)

    def finish_request(self, request: Any, client_address: Any) -> None:
        data, peer = request
        self._receive(data, lambda answer: peer.sendto(answer, client_address))


def main() -> None:
    parser = argparse.ArgumentParser(description="Runs a simulated printer's SNMP agent that misbehaves, until Ctrl-C.")
    parser.add_argument("data_file", nargs="?", help="the printer, for example sim/printers/colour.mib")
    parser.add_argument("--community", default="public")
    parser.add_argument("--address", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=161)
    parser.add_argument(
        "--rule",
        action="append",
        default=[],
        metavar="'RULE ARGUMENT... [@NAME]'",
        help="what goes wrong: for all requests, or for an object and those below it",
    )
    parser.add_argument("--rules", action="store_true", help="lists the rules and ends")
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # ends as cleanly as by Ctrl-C
    if options.rules:
        for name, make in RULES.items():
            print(f"{name}{_arguments_of(make)}\n    " + " ".join(make.__doc__.split()))
        return
    if not options.data_file:
        parser.error("a data file is needed")
    try:
        rules = [parse_rule(text) for text in options.rule]
    except ValueError as error:
        parser.error(f"{error}; --rules lists them")
    with HostileAgent(
        options.data_file,
        options.community,
        options.address,
        options.port,
        on_request=lambda request: print(request, flush=True),
    ) as agent:
        for rule, top in rules:
            agent.misbehave(rule, top)
        print(f"{options.data_file} answers on {options.address} port {agent.port}", flush=True)
        try:
            threading.Event().wait()
        except KeyboardInterrupt:
            pass


def parse_rule(text: str) -> tuple[Rule, str]:
    """The rule and the name of a text such as "error 2 1 @1.3.6.1.2.1.43". Raises ValueError."""
    name, *words = shlex.split(text) or [""]
    top = words.pop()[1:] if words and words[-1].startswith("@") else ""
    if name not in RULES:
        raise ValueError(f"no such rule: {text!r}")
    try:
        return RULES[name](*map(_argument, words)), top
    except TypeError:
        raise ValueError(f"wrong arguments: {text!r}, {name}{_arguments_of(RULES[name])}") from None


def _arguments_of(make: Callable[..., Rule]) -> inspect.Signature:
    return inspect.signature(make).replace(return_annotation=inspect.Signature.empty)


def _argument(word: str) -> int | str:
    try:
        return int(word, 0)
    except ValueError:
        return word


if __name__ == "__main__":
    main()
