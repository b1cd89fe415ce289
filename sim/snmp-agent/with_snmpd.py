#!/usr/bin/env python3
"""with_snmpd.py [--compare] COMMAND [ARG...]: runs COMMAND beside an SNMP agent on UDP port 161, in a network of its
own (sim/in-namespace), and passes its exit code on.

With --compare, everything on the wire is captured and decoded by tshark. COMMAND says on lines that begin with
"PACKET " which packets it believes to have sent and received; the two must agree, packet by packet.
"""

import os
import pathlib
import socket
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree

import snmp_ber
import snmp_client

HERE = pathlib.Path(__file__).resolve().parent
KINDS = {"0": "get-request", "1": "get-next-request", "2": "get-response", "3": "set-request"}
MARK_PORT = 16161  # nobody's
SYS_DESCR = (1, 3, 6, 1, 2, 1, 1, 1, 0)


def field(parent, name):
    return next((f.get("show") for f in parent.iter("field") if f.get("name") == name), None)


def value_of(binding):
    """The value of a binding, as the class of its type renders it."""
    for f in binding.iter("field"):
        if f.get("name") == "snmp.value.octets":
            return bytes.fromhex(f.get("value", "")).decode("latin-1")
        if f.get("name", "").startswith("snmp.value."):
            return f.get("show")
    return "no value"


def decoded_packets(capture):
    """One line for each packet, as tshark reads it."""
    # -n and no MIBs: numbers, not names.
    pdml = subprocess.run(["tshark", "-n", "-o", "snmp.display_oid:FALSE", "-r", capture, "-Y", "udp.port == 161",
                           "-T", "pdml"], check=True, capture_output=True).stdout
    lines = []
    for packet in ElementTree.fromstring(pdml).iter("packet"):
        protocols = {p.get("name"): p for p in packet.iter("proto")}
        if "_ws.malformed" in protocols or "snmp" not in protocols:
            lines.append("malformed")
            continue
        snmp = protocols["snmp"]
        bindings = [f"{field(b, 'snmp.name')}={value_of(b)}" for b in snmp.iter("field")
                    if b.find("field[@name='snmp.name']") is not None]
        lines.append(f"{KINDS.get(field(snmp, 'snmp.data'), 'other')} version {field(snmp, 'snmp.version')} "
                     f"id {field(snmp, 'snmp.request_id')} community {field(snmp, 'snmp.community')} "
                     f"error {field(snmp, 'snmp.error_status')} {field(snmp, 'snmp.error_index')} "
                     + " ".join(bindings))
    return lines


def start_agent(folder, log):
    # An empty list of MIBs: names stay numbers, and nobody complains of missing files.
    environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "MIBS": "", "SNMP_PERSISTENT_DIR": folder}
    agent = subprocess.Popen(["snmpd", "-f", "-Lo", "-C", "-c", HERE / "with_snmpd.conf", "-I", "-smux",
                              "-p", f"{folder}/pid"], env=environment, stdout=log, stderr=log)
    deadline = time.time() + 5
    while snmp_client.exchange(snmp_ber.request(snmp_ber.GET, [SYS_DESCR]), timeout=0.05) is None:
        if time.time() > deadline:
            agent.terminate()
            sys.exit("with_snmpd.py: snmpd did not start")
        time.sleep(0.02)  # where nobody listens yet, the question is refused at once
    return agent


def wait_for_mark(mark, capture):
    """Sends a datagram, again and again, until the capture holds it: what was sent before is then there, too."""
    deadline = time.time() + 20
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
        while not (os.path.exists(capture) and mark in pathlib.Path(capture).read_bytes()):
            if time.time() > deadline:
                sys.exit("with_snmpd.py: nothing is captured")
            sender.sendto(mark, ("127.0.0.1", MARK_PORT))
            time.sleep(0.05)


def start_capture(capture, log):
    sniffer = subprocess.Popen(["dumpcap", "-q", "-P", "-i", "lo", "-f", f"udp dst port {MARK_PORT} or udp port 161",
                                "-w", capture], stdout=log, stderr=log)
    wait_for_mark(b"the capture has begun", capture)
    return sniffer


def run_captured(command, folder, log):
    """Runs the command and compares what it tells with what was on the wire."""
    capture = f"{folder}/capture.pcap"
    sniffer = start_capture(capture, log)
    try:
        with open(f"{folder}/out", "wb") as out:
            status = subprocess.run(command, stdout=out, stdin=subprocess.DEVNULL).returncode
        wait_for_mark(b"the capture has ended", capture)
    finally:
        sniffer.terminate()
        sniffer.wait()

    output = pathlib.Path(f"{folder}/out").read_bytes().decode("latin-1").replace("\r\n", "\n")
    print(output)
    told = [line.removeprefix("PACKET ").strip() for line in output.splitlines() if line.startswith("PACKET ")]
    seen = [line.strip() for line in decoded_packets(capture)]
    for number in range(max(len(told), len(seen))):
        pair = [lines[number] if number < len(lines) else "nothing" for lines in (told, seen)]
        if pair[0] != pair[1]:
            print(f"packet {number + 1}: the program tells\n  {pair[0]}\nand tshark reads\n  {pair[1]}")
            status = status or 1
    print(f"{len(seen)} packets on the wire, {len(told)} told by the program")
    return status if seen else 1


def main():
    arguments = sys.argv[1:]
    compares = arguments[:1] == ["--compare"]
    with tempfile.TemporaryDirectory() as folder, open(f"{folder}/log", "wb") as log:
        agent = start_agent(folder, log)
        try:
            if compares:
                sys.exit(run_captured(arguments[1:], folder, log))
            sys.exit(subprocess.run(arguments).returncode)
        finally:
            agent.terminate()
            agent.wait()


main()
