"""The whole agent between a printer, a report server and a print spooler that say anything at all.

    sim/bin/in-namespace python3 -m fuzz.world.hostile --runs 2000 --seed 1

Each run has its own seed, which decides everything: the road, the switches, who misbehaves and how. After each the
exit code is 0, time and memory are bounded, the trace log holds whole lines and tells how the run ended, the others'
history is what it was, and nothing is left open in the spooler or at a USB printer. A run that fails is named by its
seed: `--seed N --runs 1` repeats it and shows its log.
"""

import argparse
import sys
import time
from collections import Counter
from dataclasses import replace

from sim import answers, ber, misbehaviour
from sim.answers import Answer
from sim.misbehaviour import Exchange, Rule

from .mutator import Mutator
from .stage import COLOUR, RDS, ROADS, SNMP, SNMP_DOCUMENT, USB, USB_DOCUMENT, Broken, Outcome, Stage

LIMIT = 200.0  # seconds: a walk without an end takes one minute, an answer that trickles two
PEAK = 95.3  # MiB: 100 MB

SWITCHES = ((), (), ("-SBXPlus",), ("-SBXOnly",))
WALKS = ("1.3.6.1.2.1.43.11.1.1", "1.3.6.1.4.1.53017", "1.3.6.1.2.1.43.5")
SPOOLER_CALLS = ("OpenPrinterW", "ClosePrinter", "GetPrinterW", "EnumJobsW", "EnumPrintersW", "EnumPortsW", "XcvDataW")
SPOOLER_CALLS += ("StartDocPrinterW", "StartPagePrinter", "WritePrinter", "EndPagePrinter", "EndDocPrinter")
SPOOLER_LIES = [f"{call}.needed" for call in ("GetPrinterW", "EnumJobsW", "EnumPrintersW", "EnumPortsW")]
SPOOLER_LIES += [f"{call}.returned" for call in ("EnumJobsW", "EnumPrintersW", "EnumPortsW")] + ["WritePrinter.written"]
EDGE_NUMBERS = (0, 1, 2, 7, 100, 65535, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF)

USB_REPLIES = {
    "id": b"MFG:Velnora;CMD:PJL,PCL,ZOLT,FWV,RDS,EXT,MPS;MDL:Velnora RV-2160 Series;CLS:PRINTER;",
    "E0 01 00": b"CMD:SBXON,CI_12;".ljust(255, b"\0"),
    "02 00 00": bytes.fromhex("0000000040000000"),
    "49 00 01": b"VNRV2160004711\r\n",
    "56 00 00": b"Main Firmware Version@V1.00.06.00-2024.02.05-RV;Boot@V1.2".ljust(255, b"\0"),
    "43 00 00": bytes.fromhex("00001ED8000000410000002C0000001B00000060").ljust(255, b"\0"),
    "43 01 00": bytes.fromhex("4F4E000000000000"),
    "43 02 00": bytes.fromhex("4F46460000000000"),
}


def hostile_snmp(mutator: Mutator) -> Rule:
    """Spoils some of a printer's answers: as bytes, in its structure, or by a rule of the misbehaving printer."""
    dice, share, silences = mutator.dice, mutator.dice.choice((0.02, 0.1, 0.5)), [1, 2]
    rules = [misbehaviour.twice(), misbehaviour.trailing(3), misbehaviour.indefinite(), misbehaviour.same_name()]
    rules += [misbehaviour.error(status) for status in (1, 2, 3, 5, 77)] + [misbehaviour.fewer(), misbehaviour.more(40)]
    rules += [misbehaviour.lengths(octets) for octets in (2, 4, 9)] + [
        misbehaviour.giant(60000),
        misbehaviour.swapped(),
    ]
    rules += [
        misbehaviour.request_id(1),
        misbehaviour.version(1),
        misbehaviour.value("Counter64: 99999999999999999999"),
    ]

    def spoiled(part: str, tag: int, content: bytes) -> bytes:
        if mutator.chance(0.1):
            content = mutator.data(content, 20000)
        return ber.tlv(part, dice.randrange(256) if mutator.chance(0.02) else tag, content)

    def rule(exchange: Exchange) -> None:
        way = dice.random()
        if way >= share:
            exchange.send(exchange.right())
        elif way < share * 0.4:
            exchange.send(mutator.data(exchange.right(), 60000))
        elif way < share * 0.7:
            exchange.send(ber.encode(exchange.answer, spoiled)[:60000])
        elif way < share * 0.9:
            dice.choice(rules)(exchange)
        elif way < share * 0.98 or not silences:
            exchange.send(exchange.right(), after=dice.random() / 4)
        else:
            silences.pop()

    return rule


def hostile_usb(mutator: Mutator, stage: Stage, document: bytes) -> str:
    """Lines of a USB printer's script, which come before the usual ones."""
    dice, lines = mutator.dice, []
    share = dice.choice((0.1, 0.5))
    slow = [1]  # a transfer that is held ends after seven seconds
    for key, reply in USB_REPLIES.items():
        for turn in range(4):
            action = "hex " + reply.hex()
            if mutator.chance(share):
                delay = f"delay {dice.randrange(200)} " if mutator.chance(0.2) else ""
                cut = f"cut {dice.randrange(len(reply) + 1)} " if mutator.chance(0.2) else ""
                spoiled = mutator.data(reply, 2000)
                action = "fail" if mutator.chance(0.15) else f"{delay}{cut}hex {spoiled.hex()}"
            elif turn == 3:
                break
            lines.append(f"{key} = {action}")
    for key in ("read", "write"):
        for _ in range(8):
            action = "usual"
            if mutator.chance(share / 4):
                action = dice.choice(
                    ("fail", "fail C0000185", "delay 100 usual", "cut 15 usual", "cut 0 usual", "noise")
                )
                if slow and mutator.chance(0.02):
                    action = "hold" if slow.pop() else ""
                if action == "noise":
                    action = "hex " + mutator.data(bytes.fromhex("1B910000000000060000000200000400"), 600).hex()
            lines.append(f"{key} = {action}")
    path = stage.usb.document(hostile_document(mutator, document), "hostile.xml")
    return "\n".join([*lines, f"document = file {path}"])


def hostile_document(mutator: Mutator, document: bytes) -> bytes:
    """A printer's document, spoiled in its bytes or in its elements, or blown up."""
    way = mutator.dice.random()
    if way < 0.35:
        return mutator.data(document)
    if way < 0.75:
        return mutator.xml(document.decode("latin-1")).encode("latin-1", "replace")
    begin, end = b"<root><ZOLT><Count/><Supplies>", b"</Supplies></ZOLT></root>"
    piece = mutator.dice.choice((b"x<!>", b"<Toner/>", b"<a><a>", b"x<!><Toner/>", b"&amp;", b"<![CDATA[]]>"))
    size = mutator.dice.choice((1 << 16, (1 << 20) - 100, (1 << 20) + 1, 3 << 20))
    return begin + piece * (size // len(piece)) + (end if mutator.chance(0.7) else b"")


def hostile_answer(mutator: Mutator, usual: Answer) -> Answer:
    """An HTTP answer, spoiled in its body, its head or its time."""
    dice, body = mutator.dice, usual.content()
    way = dice.randrange(20)
    if way < 5:
        return replace(usual, body=mutator.data(body))
    if way < 10:
        return replace(usual, body=mutator.xml(body.decode("latin-1")).encode("latin-1", "replace"))
    if way == 10:
        return answers.endless(dice.choice((b"<root>" * 1000, b"\0" * 65536, b"x<!>" * 4000)))
    if way == 11:
        return answers.huge(dice.choice((1 << 20, (1 << 20) + 1, 5 << 20)))
    if way == 12:
        return answers.late(dice.random(), usual)
    if way == 13:
        return answers.trickling(replace(usual, body=body[:200]), 0.001)
    if way == 14:
        return replace(usual, cut=dice.randrange(300))
    if way == 15:
        return answers.status(dice.choice((204, 206, 301, 302, 304, 401, 403, 407, 500, 503, 999)))
    if way == 16:
        pieces = [mutator.data(b"%x\r\n" % len(body) + body + b"\r\n0\r\n\r\n")]
        return Answer(pieces, headers={"Transfer-Encoding": "chunked"})
    if way == 17:
        length = dice.choice(("-1", "0", "1", "99999999999999999999", "x", "4294967296"))
        return Answer([body], headers={"Content-Length": length})
    head = b"HTTP/1.1 200 OK\r\nServer: x\r\nContent-Type: text/xml\r\nConnection: close\r\n"
    return answers.raw(mutator.data(head + b"Content-Length: %d\r\n\r\n" % len(body)) + body)


def hostile_spooler(mutator: Mutator) -> str:
    """A spooler's script with calls that fail or lie."""
    dice = mutator.dice
    lines = ["[spooler]"]
    for call in SPOOLER_CALLS:
        if mutator.chance(0.1):
            turns = [0] * dice.randrange(6) + [dice.choice((2, 5, 122, 1722, 1801, 234))] + [0] * dice.randrange(2)
            lines.append(f"{call}.fail = {' '.join(map(str, turns))}")
    for lie in SPOOLER_LIES:
        if mutator.chance(0.1):
            lines.append(f"{lie} = {dice.choice(EDGE_NUMBERS)}")
    port = ""
    if mutator.chance(0.3):
        port = f"GetConfigInfo.{dice.choice(('status', 'needed', 'fail'))} = {dice.choice(EDGE_NUMBERS)}"
    elif mutator.chance(0.3):
        port = "GetConfigInfo.hex = " + mutator.data(bytes(700) + b"\x01\x00\x00\x00" * 20, 3000).hex()
    jobs = dice.choice(("0", "0", "0", "1 0", "0 1 0"))
    return "\n".join(lines) + "\n\n" + Stage.queues(more_of_port={SNMP: port, SNMP_DOCUMENT: port}, jobs=jobs)


def play(stage: Stage, seed: int) -> tuple[str, Outcome]:
    """One run with that seed: what was played, and how it ended. Raises Broken."""
    mutator = Mutator(seed)
    dice = mutator.dice
    own = {"LastSendTime_VNRV2160004711": stage.world.time_text(dice.choice((29.9, 31, 400)))}
    stage.reset(**(own if mutator.chance(0.1) else {}))
    road, switches = dice.choice(ROADS), dice.choice(SWITCHES)
    stage.agreement.answer(dice.choice((1, 2, 2, 2, 3, 0, -1)))

    parties = dice.sample(("printer", "document", "server", "spooler"), dice.choice((1, 1, 2, 3)))
    document = RDS if road in (SNMP_DOCUMENT, USB_DOCUMENT) else COLOUR
    if "printer" in parties or "document" in parties:
        if road in (USB, USB_DOCUMENT):
            script = hostile_usb(Mutator(f"{seed} usb"), stage, document)
            if "printer" not in parties:
                script = script.splitlines()[-1]
            stage.usb.script(stage.usb_script({road: script}))
    if "printer" in parties and road in (SNMP, SNMP_DOCUMENT):
        stage.agents[road].misbehave(hostile_snmp(Mutator(f"{seed} snmp")))
        if mutator.chance(0.02):
            stage.agents[road].misbehave(misbehaviour.endless_walk(), dice.choice(WALKS))
    if "document" in parties:
        spoiled = Mutator(f"{seed} document")
        answer = Answer(hostile_document(spoiled, document))
        stage.web.answer("rds/rds.xml", answer if mutator.chance(0.7) else hostile_answer(spoiled, answer))
    if "server" in parties:
        for page, usual in (
            ("CheckDate.aspx", answers.check_date(last_date=stage.world.time_text(dice.choice((1, 40))))),
            ("CheckSBX.aspx", answers.check_sbx(models={"Velnora RV-2160": 90})),
            ("Connector.aspx", answers.upload()),
            ("ConnectorSBX.aspx", answers.upload()),
        ):
            if mutator.chance(0.5):
                stage.server.answer(page, hostile_answer(Mutator(f"{seed} {page}"), usual))
    if "spooler" in parties:
        stage.world.spooler(hostile_spooler(Mutator(f"{seed} spooler")))

    outcome = stage.run(road, *switches, limit=LIMIT)
    if outcome.peak > PEAK:
        raise Broken(f"peak memory {outcome.peak:.1f} MiB")
    return f"{road}: {' '.join(sorted(parties))}", outcome


def main() -> None:
    parser = argparse.ArgumentParser(description="Runs the agent in a hostile world.")
    parser.add_argument("--runs", type=int, default=2000)
    parser.add_argument("--seed", type=int, default=1, help="of the first run; each further run has the next one")
    options = parser.parse_args()
    found, ends, roads = [], Counter(), Counter()
    worst, peak = (0.0, 0), (0.0, 0)
    begun = time.monotonic()
    with Stage() as stage:
        for seed in range(options.seed, options.seed + options.runs):
            try:
                played, outcome = play(stage, seed)
            except Broken as broken:
                found.append(seed)
                print(f"seed {seed}: {broken}", flush=True)
                if options.runs == 1:
                    raise
                continue
            finally:
                if options.runs == 1:
                    print(stage.world.log_file.read_text("cp1252"), *stage.world.spooler_calls, stage.world.settings)
            roads[played.partition(":")[0]] += 1
            ends[outcome.result.log[-1].message[:40]] += 1
            worst, peak = max(worst, (outcome.result.seconds, seed)), max(peak, (outcome.peak, seed))
            done = seed - options.seed + 1
            if done % 100 == 0 or done == options.runs:
                print(
                    f"{done} runs in {time.monotonic() - begun:.0f} s, {len(found)} failed; longest {worst[0]:.1f} s "
                    f"(seed {worst[1]}), peak {peak[0]:.1f} MiB (seed {peak[1]})",
                    flush=True,
                )
    print("by road:", dict(roads))
    for end, count in ends.most_common(25):
        print(f"{count:6} {end}")
    sys.exit(bool(found))


if __name__ == "__main__":
    main()
