"""A simulated printer's SNMP agent: Debian's snmpd, which gets the printer's objects from a data file.

In Python:

    from sim.snmp_agent import start_agent
    with start_agent("sim/printers/colour.mib") as agent:      # UDP 127.0.0.1:161, community "public"
        ...
        agent.change({"1.3.6.1.2.1.43.10.2.1.4.1.1": "Counter32: 61020"})

By hand, until Ctrl-C:

    sim/bin/in-namespace bash
    python3 -m sim.snmp_agent sim/printers/colour.mib &
    snmpwalk -v1 -c public -On 127.0.0.1 1.3.6.1

The agent answers as soon as start_agent() returns. It reads the data file again whenever it has changed; what was set
by SNMP is kept in memory until then. Port 161 is free for everybody inside sim/bin/in-namespace, elsewhere for root
only. The system group is snmpd's own; the data file may name its texts.
"""

import argparse
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
from collections.abc import Iterable
from pathlib import Path

from . import ber
from .mib import Mib, Oid, Value, format_oid, format_value, parse_oid, parse_value
from .paths import SIM
from .snmp_client import exchange

# What the printer serves: the Printer MIB, the PWG's MIBs and the maker's own objects.
SUBTREES = ("1.3.6.1.2.1.43", "1.3.6.1.4.1.2699", "1.3.6.1.4.1.53017")

# Objects of the system group that snmpd.conf can set, and the word for each.
SYSTEM_WORDS = {
    "1.3.6.1.2.1.1.1.0": "sysDescr",
    "1.3.6.1.2.1.1.2.0": "sysObjectID",
    "1.3.6.1.2.1.1.4.0": "sysContact",
    "1.3.6.1.2.1.1.5.0": "sysName",
    "1.3.6.1.2.1.1.6.0": "sysLocation",
}

# The parts of snmpd that are wanted; without the others it starts at once and reads nothing of this machine.
MODULES = "system_mib,pass_persist,vacm_conf"

START_LIMIT = 10.0  # seconds

# Names in the agent's own folder.
PRINTER, CHANGES, PACKAGE = "printer.mib", "changes.mib", "sim"


class AgentError(Exception):
    """The agent could not be started; the text holds what snmpd said."""


def start_agent(
    data_file: Path | str,
    community: str = "public",
    addresses: Iterable[str] = ("127.0.0.1",),
    port: int = 161,
    changes: dict[str, str] | None = None,
) -> "Agent":
    """Starts an agent on the addresses (IPv4 or IPv6) and returns it when it answers. Raises AgentError, OSError
    (no data file, address taken) or ValueError (no data file of this format).

    `community` may read and write. `changes` are objects that lie over those of the data file, name to value text:
    {"1.3.6.1.2.1.43.5.1.1.17.1": 'STRING: "VN0002"'}.
    """
    return Agent(data_file, community, addresses, port, changes)


class Agent:
    """A running agent; made by start_agent(). Ends with stop(), or with the with block."""

    def __init__(
        self,
        data_file: Path | str,
        community: str,
        addresses: Iterable[str],
        port: int,
        changes: dict[str, str] | None,
    ):
        self.addresses = tuple(addresses)
        self.port = port
        self.community = community
        self._changes: dict[Oid, Value] = {}
        self._folder = tempfile.TemporaryDirectory(prefix="snmp-agent-")
        self._log_file = self._path("snmpd.log")
        try:
            # snmpd splits a command at its blanks, quoted or not, so everything gets a plain name in its folder.
            os.symlink(os.path.abspath(data_file), self._path(PRINTER))
            os.symlink(SIM, self._path(PACKAGE))
            self.change(changes or {})
            self._mib = Mib(data_file, self._path(CHANGES))
            self._process = self._start_snmpd()
        except BaseException:
            self._folder.cleanup()
            raise
        try:
            self._wait_for_answers()
        except BaseException:
            self.stop()
            raise

    def change(self, changes: dict[str, str]) -> None:
        """Lays further objects over those of the data file, as `changes` of start_agent(); the next answer has them."""
        self._changes |= {parse_oid(name): parse_value(text) for name, text in changes.items()}
        draft = self._path("changes.new")
        with open(draft, "w", encoding="ascii") as file:
            for name, value in self._changes.items():
                file.write(f".{format_oid(name)} = {format_value(value)}\n")
        os.replace(draft, self._path(CHANGES))

    def log(self) -> str:
        """What snmpd wrote into its log."""
        with open(self._log_file, encoding="utf-8", errors="replace") as file:
            return file.read()

    def wait(self) -> int:
        """Waits until the agent ends."""
        return self._process.wait()

    def stop(self) -> None:
        """Ends the agent; nothing of it is left."""
        self._process.terminate()
        try:
            self._process.wait(5)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        self._folder.cleanup()

    def __enter__(self) -> "Agent":
        return self

    def __exit__(self, *_: object) -> None:
        self.stop()

    def _path(self, name: str) -> str:
        return os.path.join(self._folder.name, name)

    def _start_snmpd(self) -> subprocess.Popen:
        for address in self.addresses:
            # Were the port taken, the agent that has it would answer instead of this one.
            with socket.socket(socket.AF_INET6 if ":" in address else socket.AF_INET, socket.SOCK_DGRAM) as probe:
                probe.bind((address, self.port))
        configuration = self._path("snmpd.conf")
        with open(configuration, "w", encoding="latin-1") as file:
            file.write(self._configuration())
        transports = [
            f"udp6:[{address}]:{self.port}" if ":" in address else f"udp:{address}:{self.port}"
            for address in self.addresses
        ]
        # A MIBS variable of the user's would make snmpd read and complain about MIB files that it does not need.
        environment = os.environ | {
            "SNMP_PERSISTENT_DIR": self._folder.name,
            "SNMPCONFPATH": self._folder.name,
            "MIBS": "",
            "PATH": os.environ.get("PATH", "") + ":/usr/sbin",
        }
        return subprocess.Popen(
            ["snmpd", "-f", "-C", "-c", configuration, "-Lf", self._log_file, "-I", MODULES, *transports],
            env=environment,
            stdin=subprocess.DEVNULL,
            cwd=self._folder.name,
        )

    def _configuration(self) -> str:
        lines = [f"rwcommunity {self.community}", f"rwcommunity6 {self.community}"]
        for top in SUBTREES:
            lines.append(
                f"pass_persist .{top} {sys.executable} -E -S -m {PACKAGE}.pass_persist {top} {PRINTER} {CHANGES}"
            )
        for name, word in SYSTEM_WORDS.items():
            value = self._mib.get(parse_oid(name))
            if value:
                text = format_oid(value.data) if isinstance(value.data, tuple) else value.data.decode("latin-1")
                lines.append(f"{word} {text}")
        return "\n".join(lines) + "\n"

    def _wait_for_answers(self) -> None:
        """Asks for the first object of each subtree on each address, so that the first real question finds everything
        running."""
        deadline = time.monotonic() + START_LIMIT
        firsts = [first[0] for top in SUBTREES if (first := self._mib.next(parse_oid(top), parse_oid(top)))]
        for address in self.addresses:
            for name in firsts:
                question = ber.request(ber.GET, [name], self.community.encode())
                while not self._is_good(exchange(question, address, self.port, timeout=START_LIMIT)):
                    if self._process.poll() is not None or time.monotonic() > deadline:
                        raise AgentError("snmpd does not answer:\n" + self.log())
                    time.sleep(0.005)

    @staticmethod
    def _is_good(answer: ber.Message | None) -> bool:
        return answer is not None and answer.error_status == ber.NO_ERROR


def main() -> None:
    parser = argparse.ArgumentParser(description="Runs a simulated printer's SNMP agent until Ctrl-C.")
    parser.add_argument("data_file", help="the printer, for example sim/printers/colour.mib")
    parser.add_argument("--community", default="public")
    parser.add_argument("--address", action="append", help="127.0.0.1 when none is given; ::1 for IPv6; repeatable")
    parser.add_argument("--port", type=int, default=161)
    parser.add_argument(
        "--set",
        action="append",
        default=[],
        metavar="NAME=VALUE",
        help="lays an object over the file's, for example 1.3.6.1.2.1.43.5.1.1.17.1='STRING: VN2'",
    )
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # ends as cleanly as by Ctrl-C
    changes = dict(entry.split("=", 1) for entry in options.set)
    try:
        addresses = options.address or ["127.0.0.1"]
        agent = start_agent(options.data_file, options.community, addresses, options.port, changes)
    except (AgentError, OSError, ValueError) as error:
        sys.exit(f"snmp_agent: {error}")
    with agent:
        print(f"{options.data_file} answers on {', '.join(agent.addresses)} port {agent.port}", flush=True)
        try:
            agent.wait()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()
