"""python3 -m sim.with_printers COMMAND [ARG...]: runs COMMAND in a network of five simulated printers, and passes its
exit code on. It needs a network of its own (sim/bin/in-namespace), in which it makes more; where none is to be had, it
says so on a line that begins with "SKIPPED HERE: ", and its exit code is 77.

Each printer is an SNMP agent in a network namespace of its own. Printers 1 to 4 share a network with COMMAND (10.9.0.1,
fe80::a1); printer 5 (10.9.5.105) is on another adapter (10.9.5.1, fe80::a5). Printer N is 10.9.0.10N and fe80::10N, its
name is "printer-N". Printers 2 and 5 say that they are of a certain maker.
"""

import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from . import ber, snmp_client

SYS_NAME = (1, 3, 6, 1, 2, 1, 1, 5, 0)
HR_DEVICE = "1.3.6.1.2.1.25.3.2.1"
KNOWN_MAKER = "1.3.6.1.4.1.11.2.3.9.1.1"
OTHER_MAKER = "1.3.6.1.4.1.53017.1"
ENVIRONMENT = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "MIBS": ""}


def ip(*arguments: str, inside: int | None = None) -> None:
    where = ["nsenter", "-t", str(inside), "-n"] if inside else []
    subprocess.run([*where, "ip", *arguments], check=True)


def give_addresses(device: str, ipv4: str, ipv6: str, inside: int | None = None) -> None:
    # nodad: the address is of use at once, not after a second of asking around.
    ip("link", "set", device, "addrgenmode", "none", inside=inside)
    ip("addr", "add", f"{ipv4}/24", "dev", device, inside=inside)
    ip("addr", "add", f"{ipv6}/64", "dev", device, "nodad", inside=inside)
    ip("link", "set", device, "up", inside=inside)


def add_printer(number: int, folder: str) -> tuple[subprocess.Popen, subprocess.Popen]:
    """Makes the printer's network and starts its agent; both processes."""
    network = subprocess.Popen(["unshare", "-n", "sleep", "infinity"])
    own = Path("/proc/self/ns/net").readlink()
    while Path(f"/proc/{network.pid}/ns/net").readlink() == own:
        time.sleep(0.01)
    ip("link", "add", f"to{number}", "type", "veth", "peer", "name", "net0", "netns", str(network.pid))
    if number == 5:
        give_addresses("to5", "10.9.5.1", "fe80::a5")
        give_addresses("net0", "10.9.5.105", "fe80::105", inside=network.pid)
    else:
        ip("link", "set", f"to{number}", "master", "lan", "up")
        give_addresses("net0", f"10.9.0.10{number}", f"fe80::10{number}", inside=network.pid)

    home = Path(folder, str(number))
    home.mkdir()
    maker = KNOWN_MAKER if number in (2, 5) else OTHER_MAKER
    (home / "snmpd.conf").write_text(
        f"agentAddress udp:161,udp6:161\nrocommunity public\nrocommunity6 public\nsysName printer-{number}\n"
        f"override {HR_DEVICE}.2.1 object_id 1.3.6.1.2.1.25.3.1.5\noverride {HR_DEVICE}.4.1 object_id {maker}\n"
    )
    with open(home / "log", "wb") as log:
        agent = subprocess.Popen(
            [
                "nsenter",
                "-t",
                str(network.pid),
                "-n",
                "snmpd",
                "-f",
                "-Lo",
                "-C",
                "-c",
                home / "snmpd.conf",
                "-I",
                "-smux,hr_device",
                "-p",
                home / "pid",
            ],
            env={**ENVIRONMENT, "SNMP_PERSISTENT_DIR": str(home)},
            stdout=log,
            stderr=log,
        )
    return network, agent


def cover(path: str, folder: str, text: str) -> None:
    """Lays a file of that text over the path, in this mount namespace."""
    own = Path(folder, Path(path).name)
    own.write_text(text)
    subprocess.run(["mount", "--bind", own, path], check=True)


def main() -> None:
    if os.environ.get("ZT_WORLD") == "loopback":
        program = next(word for word in sys.argv[1:] if word != "wine")
        print(f"SKIPPED HERE: {os.path.basename(program)}: needs a network of several printers, joined by adapters")
        sys.exit(77)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    processes: list[subprocess.Popen] = []
    with tempfile.TemporaryDirectory() as folder:
        try:
            ip("link", "add", "lan", "type", "bridge")
            give_addresses("lan", "10.9.0.1", "fe80::a1")
            ip("route", "add", "default", "dev", "lan")
            for number in range(1, 6):
                processes += add_printer(number, folder)
            # Windows programs learn their addresses from the name of the machine, and get no list of IPv6 adapters
            # without a name server on IPv6.
            name = socket.gethostname()
            cover(
                "/etc/hosts",
                folder,
                "127.0.0.1 localhost\n"
                + "".join(f"{address} {name}\n" for address in ("10.9.0.1", "10.9.5.1", "fe80::a1", "fe80::a5")),
            )
            cover("/etc/resolv.conf", folder, "nameserver ::1\n")
            deadline = time.time() + 10
            for address in ("10.9.0.101", "10.9.0.102", "10.9.0.103", "10.9.0.104", "10.9.5.105"):
                while snmp_client.exchange(ber.request(ber.GET, [SYS_NAME]), address, timeout=0.1) is None:
                    if time.time() > deadline:
                        sys.exit(f"with_printers: {address} does not answer")
                    time.sleep(0.02)
            sys.exit(subprocess.run(sys.argv[1:]).returncode)
        finally:
            for path in ("/etc/hosts", "/etc/resolv.conf"):
                subprocess.run(["umount", path], stderr=subprocess.DEVNULL)
            for process in reversed(processes):
                process.terminate()
                process.wait()


if __name__ == "__main__":
    main()
