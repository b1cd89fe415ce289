"""The way of in-namespace without namespaces: runs a command on this machine's own loopback.

    on_loopback.py COMMAND [ARG...]
    on_loopback.py --check [PORT...]      for example udp/161 tcp/80

No right is needed, nothing is mounted, no file of the system is changed. The names of bin/hosts come from a library
that is loaded into every program (libnss-wrapper). Whatever the command starts ends with it, and with this program,
killed or not: a second process keeps it, to which orphans fall (PR_SET_CHILD_SUBREAPER), and which learns from the end
of a pipe that the first one is no more.

An ordinary user may not have ports below 1024, unless the machine says so or sudo asks for no password: then the
command has the one right that it takes (CAP_NET_BIND_SERVICE), and stays that user's. It is started as a file, for it
must be found from any folder; so it imports nothing of this package.
"""

import contextlib
import ctypes
import errno
import os
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SIM = Path(__file__).resolve().parent
NAMES = "libnss_wrapper.so"
PR_SET_CHILD_SUBREAPER = 36
KILL_LIMIT = 5.0  # seconds


def refusal(port: str) -> int:
    """The error with which the system refuses a port of 127.0.0.1; 0 when it gives it."""
    kind, number = port.split("/")
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM if kind == "udp" else socket.SOCK_STREAM) as probe:
        if kind == "tcp":
            probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)  # one that was closed just now is free
        try:
            probe.bind(("127.0.0.1", int(number)))
        except OSError as error:
            return error.errno
    return 0


def with_sudo() -> list[str]:
    """The beginning of a command that gives the rest of it the right to all ports; empty when sudo does not."""
    if subprocess.run(["sudo", "-n", "true"], capture_output=True).returncode if shutil.which("sudo") else True:
        return []
    port_right = ["--inh-caps=+net_bind_service", "--ambient-caps=+net_bind_service"]
    who = [f"--reuid={os.getuid()}", f"--regid={os.getgid()}", "--init-groups"]
    return ["sudo", "-n", "setpriv", *who, *port_right]


def check(ports: list[str]) -> int:
    for port in ports:
        kind, number = port.split("/")
        name = f"{kind.upper()} port {number} of 127.0.0.1"
        match refusal(port):
            case 0:
                pass
            case errno.EACCES if with_sudo():
                pass
            case errno.EACCES:
                lowest = min(int(port.split("/")[1]) for port in ports)
                return fail(
                    f"{name} is refused to ordinary users of this machine. Run this as root, install sudo, or let root "
                    f"say: sysctl -w net.ipv4.ip_unprivileged_port_start={lowest}"
                )
            case errno.EADDRINUSE:
                return fail(
                    f"{name} is taken by another program, which `ss -ap 'sport = {number}'` names: end it "
                    "(Debian's own SNMP agent: systemctl disable --now snmpd)"
                )
            case other:
                return fail(f"{name} cannot be had: {os.strerror(other)}")
    return 0


def fail(text: str) -> int:
    print(f"{text}. `./demo.sh --virtual` needs no port.", file=sys.stderr)
    return 1


def run(command: list[str]) -> int:
    """Starts the keeper and waits for it."""
    try:
        ctypes.CDLL(NAMES)
    except OSError:
        return fail(f"{NAMES} is missing, which gives the simulated world its names: apt-get install libnss-wrapper")
    folder = tempfile.mkdtemp(prefix="on-loopback-")
    (Path(folder) / "hosts").write_text(names(), encoding="utf-8")
    # sudo clears the environment, and everybody may read its command line.
    (Path(folder) / "environment").write_bytes(b"\0".join(b"%s=%s" % pair for pair in os.environb.items()))
    alive = f"{folder}/alive"
    os.mkfifo(alive)
    # Open until this process ends, however it ends. No other process has it: sudo and Popen close what they do not
    # know.
    held = os.open(alive, os.O_RDWR)
    for ending in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(ending, lambda *_: os.closerange(held, held + 1))
    signal.signal(signal.SIGINT, signal.SIG_IGN)  # Ctrl-C is for the command.
    privilege = with_sudo() if refusal("udp/161") == errno.EACCES else []
    keeper = subprocess.Popen([*privilege, sys.executable, __file__, "--keep", folder, *command])
    status = keeper.wait()
    shutil.rmtree(folder, ignore_errors=True)
    return status if status >= 0 else 128 - status


def names() -> str:
    """The names of the world and of this machine, without the comments, which the library does not know."""
    lines = (SIM / "bin" / "hosts").read_text(encoding="utf-8").splitlines()
    return "\n".join([line for line in lines if not line.startswith("#")] + [f"127.0.0.1  {socket.gethostname()}", ""])


def keep(folder: str, command: list[str]) -> int:
    """Runs the command; ends everything when it ends, or when the process that started this one does."""
    ctypes.CDLL(None, use_errno=True).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
    starter = os.open(f"{folder}/alive", os.O_RDONLY | os.O_NONBLOCK)
    woken, waker = os.pipe2(os.O_NONBLOCK | os.O_CLOEXEC)
    signal.signal(signal.SIGCHLD, lambda *_: None)
    signal.set_wakeup_fd(waker)
    child = start(folder, command)
    status = None
    while status is None:
        ready, _, _ = select.select([starter, woken], [], [])
        if starter in ready:
            break
        os.read(woken, 4096)
        status = reap(child)
    kill_all()
    shutil.rmtree(folder, ignore_errors=True)
    return 128 + signal.SIGTERM if status is None else status


def start(folder: str, command: list[str]) -> int:
    pairs = (Path(folder) / "environment").read_bytes().split(b"\0")
    given = dict(os.fsdecode(pair).split("=", 1) for pair in pairs)
    environment = given | {
        "NSS_WRAPPER_HOSTS": f"{folder}/hosts",
        "LD_PRELOAD": NAMES,
        # The address sanitizer cannot live with the one, and wants to be the first library.
        "NSS_WRAPPER_DISABLE_DEEPBIND": "1",
        "ASAN_OPTIONS": f"{given.get('ASAN_OPTIONS', '')}:verify_asan_link_order=0".lstrip(":"),
    }
    if child := os.fork():
        return child
    signal.signal(signal.SIGINT, signal.SIG_DFL)
    signal.signal(signal.SIGCHLD, signal.SIG_DFL)
    try:
        os.execvpe(command[0], command, environment)
    except OSError as error:
        print(f"in-namespace: {command[0]}: {error.strerror}", file=sys.stderr)
        os._exit(127 if error.errno == errno.ENOENT else 126)


def reap(child: int) -> int | None:
    """Takes note of every child that has ended; the exit code of the one that matters, when it is among them."""
    status = None
    with contextlib.suppress(ChildProcessError):
        while (ended := os.waitpid(-1, os.WNOHANG))[0]:
            if ended[0] == child:
                status = os.waitstatus_to_exitcode(ended[1])
    return 128 - status if status is not None and status < 0 else status


def kill_all() -> None:
    """Kills every process that descends from this one. Those of others, which sudo may have started, refuse."""
    limit = time.monotonic() + KILL_LIMIT
    while time.monotonic() < limit:
        reap(0)
        mine = descendants()
        if not mine:
            return
        for process in mine:
            with contextlib.suppress(OSError):
                os.kill(process, signal.SIGKILL)
        time.sleep(0.01)


def descendants() -> set[int]:
    parents = {}
    for file in Path("/proc").glob("[0-9]*/stat"):
        with contextlib.suppress(OSError):
            # The name, in parentheses, may hold anything.
            parents[int(file.parent.name)] = int(file.read_bytes().rpartition(b")")[2].split()[1])
    mine = {os.getpid()}
    while more := {process for process, parent in parents.items() if parent in mine} - mine:
        mine |= more
    return mine - {os.getpid()}


def main() -> int:
    match sys.argv[1:]:
        case ["--check", *ports]:
            return check(ports)
        case ["--keep", folder, *command]:
            return keep(folder, command)
        case command:
            return run(command)


if __name__ == "__main__":
    sys.exit(main())
