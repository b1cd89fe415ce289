"""Counts what the agent and its floor ask of Wine's server on each road: each file, key, handle, library and wait is a
request or several. Unlike times the counts are the same in each run, or nearly so.

    cmake --build --preset windows && sim/bin/in-namespace python3 -m bench.agent.server_requests
"""

import collections
import os
import re
import subprocess
from pathlib import Path

from .roads import ROADS, Bench, bench_of


def restart_with_log(bench: Bench, log: Path) -> None:
    """Windows starts anew, its server telling each request."""
    prefix = bench.world.prefix
    prefix.stop_windows()
    with open(log, "wb") as stderr:
        subprocess.run(["wineserver", "-p", "-d"], env=os.environ | prefix.environment(), stderr=stderr, check=True)
    bench.finish(bench.start(bench.nothing))


def requests_of(bench: Bench, log: Path, command: tuple[str, ...]) -> collections.Counter[str]:
    """The requests of one process by name. A line is "THREAD: NAME() = STATUS { RESULTS }"."""
    begun = log.stat().st_size
    bench.finish(bench.start(command))
    counts: collections.Counter[str] = collections.Counter()
    threads: set[str] = set()  # of the process
    for line in log.read_bytes()[begun:].decode(errors="replace").splitlines():
        if not (reply := re.match(r"([0-9a-f]{4}): (\w+)\(\) = ", line)):
            continue
        thread, name = reply.groups()
        if name == "init_first_thread" and not threads:
            threads.add(thread)
        if thread in threads:
            counts[name] += 1
            if name == "new_thread" and (made := re.search(r"tid=([0-9a-f]{4})", line)):
                threads.add(made[1])
    return counts


def main() -> None:
    for road in ROADS:
        with bench_of(road) as bench:
            log = bench.world.folder / "server.log"
            restart_with_log(bench, log)
            agent, floor, nothing = (
                requests_of(bench, log, command) for command in (bench.agent, bench.floor, bench.nothing)
            )
        more = {name: count for name in sorted(agent | floor) if (count := agent[name] - floor[name])}
        print(
            f"{road.name}: agent {agent.total()}, floor {floor.total()}, a program that does nothing {nothing.total()}"
        )
        print("  more than the floor:", ", ".join(f"{name} {count:+}" for name, count in more.items()) or "nothing")


if __name__ == "__main__":
    main()
