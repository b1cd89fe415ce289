"""What a fleet of agents does to a report server: the table and the picture of docs/fleet.md.

    python3 -m bench.fleet.run [AGENTS]

Builds bench/fleet/fleet.cpp, which runs the agent's own print-volume run against a made-up clock, simulates each
scenario and writes docs/fleet.svg. 100,000 agents take some minutes.
"""

import subprocess
import sys
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "build" / "fleet"
DAYS = 100
OUTAGE_DAY = 42  # a Monday
SCENARIOS = {
    "installed everywhere on one day, started by printing": "starts=printing",
    "installed over 30 days, started by printing": "starts=printing,rollout=30",
    "the same, server away for a working day": f"starts=printing,rollout=30,outage={OUTAGE_DAY}+24",
    "the same, server away for a week": f"starts=printing,rollout=30,outage={OUTAGE_DAY}+168",
    "started at 9 o'clock sharp, server away for a day": f"starts=9,rollout=30,outage={OUTAGE_DAY}+24",
    "started within an hour from 9 o'clock, server away for a day": (
        f"starts=9,jitter=60,rollout=30,outage={OUTAGE_DAY}+24"
    ),
}
WIDTH, ROW, LEFT, PLOT = 860, 120, 60, 80


def build() -> None:
    subprocess.run([ROOT / "tools" / "install-packages.sh", "build"], check=True, stdout=subprocess.DEVNULL)
    options = ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG"]
    for command in (["-G", "Ninja", "-S", ROOT / "bench" / "fleet", "-B", BUILD, *options], ["--build", BUILD]):
        subprocess.run(["cmake", *command], check=True, stdout=subprocess.DEVNULL)


def simulate(agents: int, scenario: str) -> dict[int, tuple[int, int]]:
    """Checks and posts by minute."""
    text = subprocess.run(
        [BUILD / "fleet", str(agents), str(DAYS), scenario], check=True, capture_output=True, text=True
    ).stdout
    rows = (map(int, line.split()) for line in text.splitlines())
    return {minute: (checks, posts) for minute, checks, posts in rows}


def by_hour(minutes: dict[int, tuple[int, int]]) -> Counter[int]:
    hours: Counter[int] = Counter()
    for minute, (checks, _) in minutes.items():
        hours[minute // 60] += checks
    return hours


def table_row(name: str, minutes: dict[int, tuple[int, int]]) -> str:
    checks = sum(checks for checks, _ in minutes.values())
    posts = sum(posts for _, posts in minutes.values())
    hour, in_hour = by_hour(minutes).most_common(1)[0]
    # A month on, when the first wave is over.
    late = {minute: counts for minute, counts in minutes.items() if minute >= 33 * 1440}
    late_hour, in_late_hour = by_hour(late).most_common(1)[0]
    in_minute = max(checks for checks, _ in minutes.values())
    return (
        f"| {name} | {checks:,} | {posts:,} | {in_hour / 3600:.1f} (day {hour // 24}) "
        f"| {in_late_hour / 3600:.1f} (day {late_hour // 24}) | {in_minute / 60:.1f} |"
    )


def picture(results: dict[str, dict[int, tuple[int, int]]]) -> str:
    """Date checks per second, hour by hour; each row has a scale of its own."""
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{ROW * len(results) + 20}" '
        'font-family="sans-serif" font-size="12">',
        f'<rect width="{WIDTH}" height="{ROW * len(results) + 20}" fill="white"/>',
    ]
    scale = (WIDTH - LEFT - 20) / (DAYS * 24)
    for number, (name, minutes) in enumerate(results.items()):
        hours = by_hour(minutes)
        most = max(hours.values())
        top = number * ROW + 28
        parts.append(f'<text x="{LEFT}" y="{top - 10}">{name.replace("&", "&amp;")}</text>')
        parts.append(f'<text x="{LEFT - 6}" y="{top + 10}" text-anchor="end">{most / 3600:.1f}/s</text>')
        parts.append(f'<path d="M{LEFT} {top + PLOT - 10}H{WIDTH - 20}" stroke="#888"/>')
        bars = "".join(
            f"M{LEFT + hour * scale:.1f} {top + PLOT - 10}v{-(PLOT - 14) * count / most:.1f}"
            for hour, count in sorted(hours.items())
        )
        parts.append(f'<path d="{bars}" stroke="#2266aa" stroke-width="{max(scale, 0.8):.2f}"/>')
        for day in range(0, DAYS + 1, 10):
            x = LEFT + day * 24 * scale
            parts.append(f'<text x="{x:.0f}" y="{top + PLOT + 3}" text-anchor="middle" fill="#666">{day}</text>')
    return "\n".join([*parts, "</svg>", ""])


def main() -> None:
    agents = int(sys.argv[1]) if len(sys.argv) > 1 else 100_000
    build()
    print(f"{agents:,} agents, {DAYS} days; checks a second are means of the busiest hour, or minute\n")
    print("| scenario | checks | posts | busiest hour | busiest hour after day 33 | busiest minute |")
    print("|---|---|---|---|---|---|")
    results = {}
    for name, scenario in SCENARIOS.items():
        results[name] = simulate(agents, scenario)
        print(table_row(name, results[name]), flush=True)
    (ROOT / "docs" / "fleet.svg").write_text(picture(results), encoding="utf-8")


if __name__ == "__main__":
    main()
