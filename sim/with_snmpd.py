"""python3 -m sim.with_snmpd [--compare] COMMAND [ARG...]: runs COMMAND beside an SNMP agent on UDP port 161 of
127.0.0.1, in a network of its own (sim/bin/in-namespace), and passes its exit code on.

With --compare, every datagram to and from the agent goes through a relay and is then decoded by tshark. COMMAND says on
lines that begin with "PACKET " which packets it believes to have sent and received; the two must agree, packet by
packet.
"""

import os
import select
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import IO

from . import ber, snmp_client
from .paths import SIM

KINDS = {"0": "get-request", "1": "get-next-request", "2": "get-response", "3": "set-request"}
AGENT = ("127.0.0.1", 161)
BEHIND_RELAY = ("127.0.0.1", 16161)
SYS_DESCR = (1, 3, 6, 1, 2, 1, 1, 1, 0)

# A capture file in which each packet is a bare SNMP message: the link type for "exported PDUs", with one tag that names
# the dissector, and the end of the tags.
CAPTURE_BEGIN = struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, 252)
SNMP_TAGS = struct.pack(">HH4sHH", 12, 4, b"snmp", 0, 0)


def field(parent: ElementTree.Element, name: str) -> str | None:
    return next((f.get("show") for f in parent.iter("field") if f.get("name") == name), None)


def value_of(binding: ElementTree.Element) -> str | None:
    """The value of a binding, as the class of its type renders it."""
    for f in binding.iter("field"):
        if f.get("name") == "snmp.value.octets":
            return bytes.fromhex(f.get("value", "")).decode("latin-1")
        if f.get("name", "").startswith("snmp.value."):
            return f.get("show")
    return "no value"


def decoded_packets(datagrams: list[bytes], capture: Path) -> list[str]:
    """One line for each datagram, as tshark reads it."""
    packets = [SNMP_TAGS + datagram for datagram in datagrams]
    capture.write_bytes(CAPTURE_BEGIN + b"".join(struct.pack("<IIII", 0, 0, len(p), len(p)) + p for p in packets))
    # -n and no MIBs: numbers, not names.
    pdml = subprocess.run(
        ["tshark", "-n", "-o", "snmp.display_oid:FALSE", "-r", capture, "-T", "pdml"], check=True, capture_output=True
    ).stdout
    lines = []
    for packet in ElementTree.fromstring(pdml).iter("packet"):
        protocols = {p.get("name"): p for p in packet.iter("proto")}
        if "_ws.malformed" in protocols or "snmp" not in protocols:
            lines.append("malformed")
            continue
        snmp = protocols["snmp"]
        bindings = [
            f"{field(b, 'snmp.name')}={value_of(b)}"
            for b in snmp.iter("field")
            if b.find("field[@name='snmp.name']") is not None
        ]
        lines.append(
            f"{KINDS.get(field(snmp, 'snmp.data'), 'other')} version {field(snmp, 'snmp.version')} "
            f"id {field(snmp, 'snmp.request_id')} community {field(snmp, 'snmp.community')} "
            f"error {field(snmp, 'snmp.error_status')} {field(snmp, 'snmp.error_index')} " + " ".join(bindings)
        )
    return lines


def start_agent(folder: str, log: IO[bytes], address: tuple[str, int]) -> subprocess.Popen:
    # An empty list of MIBs: names stay numbers, and nobody complains of missing files.
    environment = os.environ | {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "MIBS": "", "SNMP_PERSISTENT_DIR": folder}
    agent = subprocess.Popen(
        [
            "snmpd",
            "-f",
            "-Lo",
            "-C",
            "-c",
            SIM / "with_snmpd.conf",
            "-I",
            "-smux",
            "-p",
            f"{folder}/pid",
            "udp:{}:{}".format(*address),
        ],
        env=environment,
        stdout=log,
        stderr=log,
    )
    deadline = time.time() + 5
    while snmp_client.exchange(ber.request(ber.GET, [SYS_DESCR]), *address, timeout=0.05) is None:
        if time.time() > deadline:
            agent.terminate()
            sys.exit("with_snmpd: snmpd did not start")
        time.sleep(0.02)  # where nobody listens yet, the question is refused at once
    return agent


class Relay(threading.Thread):
    """Stands on the agent's port, passes each datagram on, one way and the other, and keeps them all."""

    def __init__(self) -> None:
        super().__init__(daemon=True)
        self.datagrams: list[bytes] = []
        self._front = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._front.bind(AGENT)
        self._back = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._back.connect(BEHIND_RELAY)
        self.start()

    def run(self) -> None:
        client = None
        while True:
            for ready in select.select([self._front, self._back], [], [])[0]:
                if ready is self._back:
                    datagram = self._back.recv(65536)
                    self._front.sendto(datagram, client)
                else:
                    datagram, client = self._front.recvfrom(65536)
                    # On Linux a request comes from each adapter; outside a network of its own there are others, too.
                    if not client[0].startswith("127."):
                        continue
                    self._back.send(datagram)
                self.datagrams.append(datagram)


def run_compared(command: list[str], folder: str) -> int:
    """Runs the command and compares what it tells with what the agent got and answered."""
    relay = Relay()
    with open(f"{folder}/out", "wb") as out:
        status = subprocess.run(command, stdout=out, stdin=subprocess.DEVNULL).returncode
    output = Path(f"{folder}/out").read_bytes().decode("latin-1").replace("\r\n", "\n")
    print(output)
    told = [line.removeprefix("PACKET ").strip() for line in output.splitlines() if line.startswith("PACKET ")]
    seen = [line.strip() for line in decoded_packets(relay.datagrams, Path(folder, "capture.pcap"))]
    for number in range(max(len(told), len(seen))):
        pair = [lines[number] if number < len(lines) else "nothing" for lines in (told, seen)]
        if pair[0] != pair[1]:
            print(f"packet {number + 1}: the program tells\n  {pair[0]}\nand tshark reads\n  {pair[1]}")
            status = status or 1
    print(f"{len(seen)} packets on the wire, {len(told)} told by the program")
    return status if seen else 1


def main() -> None:
    arguments = sys.argv[1:]
    compares = arguments[:1] == ["--compare"]
    with tempfile.TemporaryDirectory() as folder, open(f"{folder}/log", "wb") as log:
        agent = start_agent(folder, log, BEHIND_RELAY if compares else AGENT)
        try:
            if compares:
                sys.exit(run_compared(arguments[1:], folder))
            sys.exit(subprocess.run(arguments).returncode)
        finally:
            agent.terminate()
            agent.wait()


if __name__ == "__main__":
    main()
