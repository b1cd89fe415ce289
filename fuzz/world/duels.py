"""Twenty starts of the agent at once: for one queue and for twenty, over the network and over USB.

    sim/bin/in-namespace python3 -m fuzz.world.duels --rounds 50

Every second round begins without a settings file. After each: every start has ended by itself with exit code 0, no two
print-volume runs overlapped, no printer was reported twice, the log holds whole lines only and each early end that is
in it has its line, and the settings file can be read and has lost nothing. Exit code 1, and the round, where one of
these does not hold.

A start that cannot open the log drops its lines, and one that meets the settings file open in another's hands ends,
or does not save: both are counted.
"""

import argparse
import re
import statistics
import subprocess
import sys
import time
from collections import Counter
from contextlib import ExitStack
from dataclasses import dataclass, field

from sim import answers
from sim.hostile import HostileAgent
from sim.paths import PRINTERS
from sim.queues import queue_script
from sim.report_server import ReportServer, Request
from sim.traces import find_crash, parse_log
from sim.usb_printers import UsbPrinters
from sim.world import World

from .stage import OTHERS, USUAL_USB, Broken, parse_settings, require, whole_lines

STARTS = 20
LIMIT = 120.0  # seconds for all starts of a round
SERIAL = "1.3.6.1.2.1.43.5.1.1.17.1"
SAVE_FAILED = "Failed to save to file!"
LONG_RUN = 11  # lines that one start writes before its last; they are written apart from it


def queue_name(road: str, number: int) -> str:
    return f"{road} {number}"


def serial(road: str, number: int) -> str:
    return f"{road.upper()}{number:04}"


@dataclass
class Tally:
    seconds: list[float] = field(default_factory=list)
    posts: Counter = field(default_factory=Counter)
    ends: Counter = field(default_factory=Counter)


class Arena:
    """Twenty printers on each road, each with a queue."""

    def __init__(self, stack: ExitStack):
        self.world = stack.enter_context(World())
        usb, spooler = "", ""
        for number in range(1, STARTS + 1):
            usb += f"[printer VID_1A2B&PID_0001#SN{number:04}]\nport = {number}\n"
            usb += f"49 00 01 = text {serial('usb', number)}\n{USUAL_USB}\n"
            spooler += queue_script(queue_name("usb", number), port=f"USB{number:03}", address=None)
            address = f"127.0.1.{number}"
            spooler += queue_script(queue_name("snmp", number), port=f"IP_{number}-TCP", address=address)
            changes = {SERIAL: f'STRING: "{serial("snmp", number)}"'}
            stack.enter_context(HostileAgent(PRINTERS / "colour.mib", address=address, changes=changes))
        self.usb = UsbPrinters(self.world.prefix, usb)
        self.usb.document((PRINTERS / "colour.xml").read_bytes(), "colour.xml")
        self.server = stack.enter_context(ReportServer())
        self.server.answer("CheckDate.aspx", answers.late(0.05, answers.check_date()))
        self.world.flags(URL=self.server.url)
        self.world.log_to()
        self.world.spooler(spooler)
        self.world.start_windows()

    def fight(self, road: str, queues: int, tally: Tally, with_file: bool) -> None:
        """One round. Raises Broken."""
        self.world.forget_log()
        self.world.forget_spooler()
        self.usb.forget()
        self.server.requests.clear()
        self.world.settings = "[History]\r\n" + "".join(f"{key}={time}\r\n" for key, time in OTHERS.items())
        if not with_file:
            self.world.settings_file.unlink()
        begun = time.monotonic()
        runs = [self.world.start("-QName", queue_name(road, 1 + at % queues)) for at in range(STARTS)]
        for run in runs:
            try:
                code = run.process.wait(max(0.1, begun + LIMIT - time.monotonic()))
            except subprocess.TimeoutExpired:
                for hung in runs:
                    hung.stop()
                raise Broken(f"a start has not ended after {LIMIT} s") from None
            require(code == 0, f"exit code {code}: {run.output[-500:]}")
            if crash := find_crash(run.output):
                raise Broken(f"crashed: {crash}")
        tally.seconds.append(time.monotonic() - begun)
        log = self.world.log_file.read_bytes() if self.world.log_file.exists() else b""
        whole_lines(log)
        self._judge_ends(log, tally)
        self._judge_posts(with_file, tally)
        handles = self.world.spooler_handles_left
        require(set(handles) <= {0}, f"handles left in the spooler: {handles}")

    def _judge_ends(self, log: bytes, tally: Tally) -> None:
        """Each start that is in the log has its end there."""
        lines = parse_log(log.decode("cp1252"))
        threads = {line.thread: [other for other in lines if other.thread == line.thread] for line in lines}
        for own in threads.values():
            last = own[-1].message
            if last == SAVE_FAILED:
                tally.ends[SAVE_FAILED] += 1
                last = own[-2].message
            ended = re.search(r"bye~|Bye~|sucessfully\.\.\.", last) is not None
            require(ended or len(own) >= LONG_RUN, f"a start ended without its line, after {last!r}")
            tally.ends[last if ended else "(last lines dropped)"] += 1
        tally.ends["(all lines dropped)"] += STARTS - len(threads)

    def _judge_posts(self, with_file: bool, tally: Tally) -> None:
        """The runs followed each other, and each report that was taken is in the history."""
        expected = None
        posted: list[str] = []
        for request in self.server.requests:
            who = _who(request)
            if request.page == "CheckDate.aspx":
                require(expected is None, f"{who} is asked for while the run for {expected} goes on")
                expected = who
            else:
                require(who == expected, f"{who} is posted while the run for {expected} goes on")
                posted.append(who)
                expected = None
        require(expected is None, f"the run for {expected} posted nothing")
        tally.posts[len(posted)] += 1
        settings = parse_settings(self.world.settings).get("History", {})
        if with_file:
            require(OTHERS.items() <= settings.items(), f"the others' history is lost: {settings}")
        missing = [who for who in posted if "LastSendTime_" + who not in settings]
        tally.ends["(posts not recorded)"] += len(missing)
        if not missing:
            require(len(posted) == len(set(posted)), f"reported twice: {posted}")


def _who(request: Request) -> str:
    if request.page == "CheckDate.aspx":
        return request.fields["SerialNumber"]
    return re.findall(r"<GeneralSerialNumber>(\w+)<", request.fields["data"])[0]


def main() -> None:
    parser = argparse.ArgumentParser(description="Starts twenty agents at once, again and again.")
    parser.add_argument("--rounds", type=int, default=50)
    rounds = parser.parse_args().rounds
    failed = 0
    with ExitStack() as stack:
        arena = Arena(stack)
        for road in ("snmp", "usb"):
            for queues in (1, STARTS):
                tally = Tally()
                for number in range(rounds):
                    try:
                        arena.fight(road, queues, tally, with_file=number % 2 == 0)
                    except Broken as broken:
                        failed += 1
                        print(f"{road}, {queues} queues, round {number}: {broken}", flush=True)
                longest, usual = (max(tally.seconds), statistics.median(tally.seconds)) if tally.seconds else (0, 0)
                print(f"{road}, {STARTS} starts for {queues} queues, {rounds} rounds, {usual:.1f} s each,", end=" ")
                print(f"{longest:.1f} s at most; rounds by posts: {dict(sorted(tally.posts.items()))}")
                for end, count in tally.ends.most_common():
                    print(f"{count:6} {end}", flush=True)
    sys.exit(bool(failed))


if __name__ == "__main__":
    main()
