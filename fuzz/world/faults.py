"""What breaks around the agent, one thing at a time: the settings, the log, the registry, the spooler at each call, the
printer and the server at each exchange, the process itself at each step.

    sim/bin/in-namespace python3 -m fuzz.world.faults
    sim/bin/in-namespace python3 -m fuzz.world.faults --group vanishing --part 1/4     # a quarter of the rows

Each row ends with exit code 0, with its line, with the history of others as it was, and without an open handle; what a
row asks beside that stands in it.
"""

import argparse
import os
import shutil
import signal
import subprocess
import sys
import threading
import time
import unittest
from collections.abc import Callable, Iterator
from contextlib import AbstractContextManager, ExitStack, contextmanager, suppress
from pathlib import Path

from sim import answers, misbehaviour
from sim.answers import Gate
from sim.holder import Holder
from sim.prefix import REG_BINARY, REG_MULTI_SZ, REG_QWORD, reg_text
from sim.world import FLAGS, LOGGER

from .hostile import USB_REPLIES
from .stage import OTHERS, ROADS, SNMP, SNMP_DOCUMENT, USB, Outcome, Stage, finish
from .stage import parse_settings, require, whole_lines

SENT, SKIPPED = "send sucessfully...", "skip send success local. bye~"
NO_PERMISSION, NOT_SAVED = "not enough permission! bye~ ZT", "Failed to save to file!"
ANY_END = None
COMMON_FOLDERS = r"Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders"

Row = tuple[str, Callable[[Stage], None]]


def ends_with(stage: Stage, end: str | None, road: str = SNMP, *switches: str, limit: float = 60) -> Outcome:
    outcome = stage.run(road, *switches, limit=limit)
    last = outcome.result.log[-1].message
    require(end in (ANY_END, last), f"it ended with {last!r}")
    return outcome


def recorded(stage: Stage) -> dict[str, str]:
    return parse_settings(stage.world.settings).get("History", {})


# The settings


def settings_rows() -> Iterator[Row]:
    def text(content: str, end: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            stage.world.settings = content
            # What is in it is no history that could be kept.
            require(finish(stage.world.start("-QName", SNMP), 60).result.log[-1].message == end, "another end")
            if end == SENT:
                require("LastSendTime_VNRV2160004711" in stage.world.settings, "nothing is recorded")

        return row

    for name, content, end in (
        ("of no bytes", "", SENT),
        ("of any bytes", "".join(map(chr, range(256))) * 40, SENT),
        ("of one endless line", "[History]\r\nLastSendTime_X=" + "9" * 1_000_000, SENT),
        ("of UTF-16", "\xff\xfe[\0H\0]\0\r\0\n\0", SENT),
        ("of 16 MiB", "[History]\r\n" + "x" * (16 * 1024 * 1024 - 11), SENT),
        ("of 100 MB", "x" * 100_000_000, NO_PERMISSION),
    ):
        yield f"settings file {name}", text(content, end)

    def folder_missing(stage: Stage) -> None:
        shutil.rmtree(stage.world.settings_file.parent.parent)
        ends_with(stage, SENT)
        require("LastSendTime_VNRV2160004711" in recorded(stage), "nothing is recorded")

    yield "settings folder missing", folder_missing

    def removed(stage: Stage) -> None:
        gate = Gate(answers.check_date())
        stage.server.answer("CheckDate.aspx", gate.answer)
        threading.Thread(
            target=lambda: (gate.wait_for_visitor(), stage.world.settings_file.unlink(), gate.open())
        ).start()
        ends_with(stage, SENT)

    yield "settings file removed during the run", removed

    def locked(stage: Stage) -> None:
        with Holder(stage.world, "file", r"C:\ProgramData\Velnora\Printer\ZT.ini"):
            require(stage.world.run("-QName", SNMP).log[-1].message == NO_PERMISSION, "another end")

    yield "settings file locked", locked

    def locked_during_the_run(stage: Stage) -> None:
        gate = Gate(answers.check_date())
        stage.server.answer("CheckDate.aspx", gate.answer)
        run = stage.world.start("-QName", SNMP)
        gate.wait_for_visitor()
        with Holder(stage.world, "file", r"C:\ProgramData\Velnora\Printer\ZT.ini"):
            gate.open()
            require(run.wait().log[-1].message == NOT_SAVED, "another end")
        require(recorded(stage) == OTHERS, "the history has changed")

    yield "settings file locked at the end of the run", locked_during_the_run

    def read_only(stage: Stage) -> None:
        with mounted(stage.world.settings_file):
            ends_with(stage, NO_PERMISSION)

    yield "settings file read-only", read_only

    def folder_unwritable(stage: Stage) -> None:
        folder = stage.world.settings_file.parent
        with mounted(folder):
            ends_with(stage, NO_PERMISSION)
        stage.world.settings_file.unlink()
        with mounted(folder):
            ends_with(stage, NO_PERMISSION)

    yield "settings folder unwritable", folder_unwritable

    def other_folder(length: int, there: bool, end: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            names = "/".join(["deep" * 10] * 7)[: length - 3].strip("/")
            if there:
                (stage.world.prefix.drive / names).mkdir(parents=True)
            try:
                import_registry(stage, COMMON_FOLDERS, {"Common AppData": "C:\\" + names.replace("/", "\\")})
                last = finish(stage.world.start("-QName", SNMP), 60).result.log[-1].message
            finally:
                import_registry(stage, COMMON_FOLDERS, {"Common AppData": r"C:\ProgramData"})
            written = [file.parent for file in stage.world.folder.rglob("ZT.ini")]
            expected = {stage.world.settings_file.parent}
            if end == SENT:
                expected.add(stage.world.prefix.drive / names / "Velnora" / "Printer")
            shutil.rmtree(stage.world.prefix.drive / ("deep" * 10), ignore_errors=True)
            require(last == end, f"it ended with {last!r}")
            require(set(written) == expected, f"there are settings in {written}")
            require(recorded(stage) == OTHERS, "another file was changed")

        return row

    for length, there, end in (
        (30, False, NO_PERMISSION),
        (236, True, SENT),
        (237, True, NO_PERMISSION),
        (250, True, NO_PERMISSION),
    ):
        name = f"settings folder below one of {length} characters that is {'there' if there else 'not there'}"
        yield name, other_folder(length, there, end)

    def folder_full(size: int) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            folder = stage.world.settings_file.parent
            kept = OTHERS | {"TonerChangeCount_Z": "7"}
            more = "".join(f"Other{at:03}={'x' * 80}\r\n" for at in range(200))
            lines = "".join(f"{key}={value}\r\n" for key, value in kept.items())
            with mounted(folder, "-t", "tmpfs", "-o", "size=64k"):
                text = ("[Common]\r\n" + more)[: size - len(lines) - 13] + "\r\n[History]\r\n" + lines
                stage.world.settings = text
                with suppress(OSError):
                    (folder / "filler").write_bytes(bytes(65536))
                outcome = finish(stage.world.start("-QName", SNMP), 60)
                require(outcome.result.log[-1].message in (SENT, NOT_SAVED), "another end")
                require(kept.items() <= recorded(stage).items(), f"the history is damaged: {recorded(stage)}")

        return row

    for size in (4096, 8192, 8100):
        yield f"settings folder full, file of {size} bytes", folder_full(size)


@contextmanager
def mounted(target: Path, *options: str) -> Iterator[None]:
    """Something mounted over a path, within a with block; without options, the path itself, read-only. A world that
    allows no mounts skips the row."""
    mounts = [[*options, "full"]] if options else [["--bind", str(target)], ["-o", "remount,bind,ro"]]
    try:
        for mount in mounts:
            subprocess.run(["mount", *mount, target], check=True, stderr=subprocess.DEVNULL)
    except subprocess.CalledProcessError:
        print("SKIPPED HERE: test_faults: read-only files and a full disk: need mounts", flush=True)
        raise unittest.SkipTest from None
    try:
        yield
    finally:
        subprocess.run(["umount", target], check=True)


# The log


def log_rows() -> Iterator[Row]:
    def without_log(broken: Callable[[Stage], AbstractContextManager]) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            with broken(stage):
                require(stage.world.start("-QName", SNMP).process.wait(60) == 0, "another exit code")
            require("LastSendTime_VNRV2160004711" in recorded(stage), "nothing is recorded")
            require(OTHERS.items() <= recorded(stage).items(), "the others' history is lost")

        return row

    @contextmanager
    def folder(stage: Stage) -> Iterator[None]:
        stage.world.log_file.mkdir()
        yield
        stage.world.log_file.rmdir()

    @contextmanager
    def read_only(stage: Stage) -> Iterator[None]:
        stage.world.log_file.touch()
        with mounted(stage.world.log_file):
            yield

    yield "log locked", without_log(lambda stage: Holder(stage.world, "file", r"C:\zt.log"))
    yield "log is a folder", without_log(folder)
    yield "log unwritable", without_log(read_only)

    def rotation(missing: int) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            log, line = stage.world.log_file, b"01-01 00:00\t1.000\t0001\tX,1\t4\t" + b"x" * 70 + b"\r\n"
            log.write_bytes((line * 20000)[: (1048576 - missing) // len(line) * len(line)])
            old = log.read_bytes().count(line)
            runs = [stage.world.start("-QName", road) for road in (SNMP, SNMP_DOCUMENT, USB)]
            for run in runs:
                require(run.process.wait(60) == 0, "exit code")
            files = [log, *log.parent.glob("zt.log.*")]
            lines = sum(whole_lines(file.read_bytes()) for file in files)
            require(sum(file.read_bytes().count(line) for file in files) == old, "old lines are lost")
            require(lines > old, f"nothing was added to {old} lines")
            for file in files:
                file.unlink()

        return row

    for missing in (-200, 0, 1, 1000):
        yield f"three starts and a log that lacks {missing} bytes to its rotation", rotation(missing)


# The registry


def registry_rows() -> Iterator[Row]:
    def row_of(key: str, values: dict[str, object], end: str | None, logs: bool = True) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            try:
                set_registry(stage, key, values)
                outcome = finish(stage.world.start("-QName", SNMP), 60)
                require(bool(outcome.result.log) == logs, f"the log has {len(outcome.result.log)} lines")
                if logs and end:
                    require(outcome.result.log[-1].message == end, f"ended with {outcome.result.log[-1].message}")
            finally:
                set_registry(stage, FLAGS, {"URL": stage.server.url})
                set_registry(stage, LOGGER, {"Level": 4, "File": r"C:\zt.log"})

        return row

    for kind, one in (("text", "1"), ("bytes", (REG_BINARY, b"\1\0\0\0")), ("64 bits", (REG_QWORD, b"\1" + bytes(7)))):
        yield f"flag Disable is {kind}", row_of(FLAGS, {"Disable": one}, "svr not connect. bye~")
        yield f"log level is {kind}", row_of(LOGGER, {"Level": one, "File": r"C:\zt.log"}, None, logs=False)
    for kind, url in (
        ("a number", 8080),
        ("a list", (REG_MULTI_SZ, "http://x/\0\0".encode("utf-16-le"))),
        ("without an end", (1, "http://127.0.0.1:1/".encode("utf-16-le"))),
        ("of an odd size", (1, "http://127.0.0.1:1/".encode("utf-16-le")[:-1])),
        ("empty", ""),
        ("of no bytes", (1, b"")),
        ("64 KB long", "http://127.0.0.1:1/" + "x" * 32000),
    ):
        yield f"URL is {kind}", row_of(FLAGS, {"URL": url}, "svr not connect. bye~")
    for kind, file in (("a number", 1), ("bytes", (REG_BINARY, b"C:\\x")), ("of 300 characters", "C:\\" + "x" * 300)):
        yield f"log file is {kind}", row_of(LOGGER, {"Level": 4, "File": file}, None, logs=False)


def set_registry(stage: Stage, key: str, values: dict[str, object]) -> None:
    r"""Replaces the values under HKEY_LOCAL_MACHINE\key while Windows runs."""
    import_registry(stage, key, values, f"[-HKEY_LOCAL_MACHINE\\{key}]")


def import_registry(stage: Stage, key: str, values: dict[str, object], before: str = "") -> None:
    r"""Adds values under HKEY_LOCAL_MACHINE\key while Windows runs; `before` goes in front."""
    lines = ["Windows Registry Editor Version 5.00", "", before, f"[HKEY_LOCAL_MACHINE\\{key}]"]
    lines += [f'"{name}"={reg_text(value)}' for name, value in values.items()]
    (stage.world.prefix.drive / "values.reg").write_text("\r\n".join([*lines, ""]), encoding="utf-16")
    program = r"..\windows\system32\reg.exe"
    require(stage.world.run("import", r"C:\values.reg", program=program).exit_code == 0, "reg import failed")


# The spooler


def spooler_rows() -> Iterator[Row]:
    """One row a road and switch: each call that a usual run makes fails once, in a run of its own."""

    def row_of(road: str, *switches: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            stage.run(road, *switches)
            calls = [line.split(" ", 1)[0] for line in stage.world.spooler_calls]
            seen: dict[str, int] = {}
            for call in calls:
                turn = seen[call] = seen.get(call, -1) + 1
                if call == "ClosePrinter":
                    continue  # its handle would be left
                stage.reset()
                stage.world.spooler(f"[spooler]\n{call}.fail = {'0 ' * turn}5 0\n\n{Stage.queues()}")
                ends_with(stage, ANY_END, road, *switches)

        return row

    for road in ROADS:
        for switches in ((), ("-SBXPlus",)):
            yield f"{road} {' '.join(switches)}: each call of the spooler fails", row_of(road, *switches)


# Printers and servers that vanish


def vanishing_rows() -> Iterator[Row]:
    def silent_from(road: str, at: int, *switches: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            stage.agents[road].misbehave(misbehaviour.silence(), skip=at)
            ends_with(stage, ANY_END, road, *switches, limit=300)

        return row

    for at in range(67):
        yield f"{SNMP}: silent from exchange {at} on", silent_from(SNMP, at)
    for at in range(0, 90, 6):
        yield f"{SNMP} -SBXPlus: silent from exchange {at} on", silent_from(SNMP, at, "-SBXPlus")

    def usb(key: str, turn: int, action: str, *switches: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            usual = "usual" if key in ("read", "write") else None
            lines = [f"{key} = {usual}"] * turn if usual else repeated_usb(key, turn)
            script = "\n".join([*lines, f"{key} = {action}"])
            stage.usb.script(stage.usb_script({USB: script}))
            ends_with(stage, ANY_END, USB, *switches, limit=300)

        return row

    for key, turns in (("id", 2), ("02 00 00", 3), ("49 00 01", 2), ("56 00 00", 2), ("E0 01 00", 2), ("43 00 00", 2)):
        for turn in range(turns):
            yield f"{USB}: request {key} fails, time {turn}", usb(key, turn, "fail")
            yield f"{USB} -SBXPlus: request {key} fails, time {turn}", usb(key, turn, "fail", "-SBXPlus")
    for key in ("read", "write"):
        for turn in range(5):
            for action in ("fail", "cut 7 usual", "hold"):
                yield f"{USB}: {key} {turn}: {action}", usb(key, turn, action)


def repeated_usb(key: str, times: int) -> list[str]:
    return [f"{key} = hex {USB_REPLIES[key].hex()}"] * times


def unplugging_rows() -> Iterator[Row]:
    """Each in a Windows of its own, as a printer that is gone does not come back."""

    def row_of(key: str, turn: int) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            usual = [f"{key} = usual"] * turn if key in ("read", "write") else repeated_usb(key, turn)
            stage.usb.script(stage.usb_script({USB: "\n".join([*usual, f"{key} = unplug"])}))
            ends_with(stage, ANY_END, USB, "-SBXPlus")

        return row

    for key, turns in (
        ("id", 2),
        ("02 00 00", 2),
        ("49 00 01", 1),
        ("56 00 00", 1),
        ("E0 01 00", 1),
        ("43 00 00", 1),
        ("read", 3),
        ("write", 3),
    ):
        for turn in range(turns):
            yield f"{USB} -SBXPlus: unplugged at {key}, time {turn}", row_of(key, turn)


def server_rows() -> Iterator[Row]:
    """The server is gone before, in the middle of or after an exchange. Started again, the agent leaves it alone; and a
    report that was received is not posted again."""
    usual = {
        "CheckDate.aspx": answers.check_date(),
        "Connector.aspx": answers.upload(),
        "CheckSBX.aspx": answers.check_sbx(),
        "ConnectorSBX.aspx": answers.upload(),
    }

    def row_of(page: str, answer: answers.Answer, failed: bool, *switches: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            stage.server.answer(page, answer)
            ends_with(stage, ANY_END, SNMP, *switches)
            stage.server.answer(page, usual[page])
            if page == "Connector.aspx":
                stage.server.requests.clear()
                ends_with(stage, "found last server fail. try later bye~" if failed else SKIPPED)
                require(not stage.server.requests, "it is posted again")
            else:
                ends_with(stage, ANY_END, SNMP, *switches)

        return row

    for page, answer in usual.items():
        switches = ("-SBXOnly",) if "SBX" in page else ()
        whole = len(answer.content())
        for name, vanishing in (
            ("without an answer", answers.dropped()),
            ("in the status line", answers.Answer(answer.body, cut=5)),
            ("in the head", answers.Answer(answer.body, cut=60)),
            ("in the middle of the answer", answers.broken_off(answer)),
            (
                "at the answer's last bytes",
                answers.Answer([answer.content()[:-9]], headers={"Content-Length": str(whole)}),
            ),
            ("after an answer without a length", answers.Answer([answer.content()])),
        ):
            yield f"{page}: the server goes away {name}", row_of(page, vanishing, "length" not in name, *switches)

    def refused(stage: Stage) -> None:
        set_registry(stage, FLAGS, {"URL": "http://127.0.0.1:1/"})
        try:
            ends_with(stage, "svr not connect. bye~")
            ends_with(stage, "found last server fail. try later bye~")
        finally:
            set_registry(stage, FLAGS, {"URL": stage.server.url})

    yield "there is no server", refused


# The process is killed


def killed_rows() -> Iterator[Row]:
    def killed_at(road: str, at: int) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            seen, run = [0], stage.world.start("-QName", road)

            def kill(_: object) -> None:
                seen[0] += 1
                if seen[0] == at + 1:
                    os.kill(run.process.pid, signal.SIGKILL)

            stage.at_exchange = kill
            run.process.wait(60)
            stage.at_exchange = lambda request: None
            require(recorded(stage) == OTHERS, f"the history has changed: {recorded(stage)}")
            stage.world.forget_log()
            stage.world.forget_spooler()
            stage.usb.forget()
            ends_with(stage, SENT, road)

        return row

    for at in range(69):  # the 68th is the check, the last one the post
        yield f"{SNMP}: killed at exchange {at}, started again", killed_at(SNMP, at)

    def killed_after(milliseconds: int, road: str, *switches: str) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            run = stage.world.start("-QName", road, *switches)
            time.sleep(milliseconds / 1000)
            run.stop()
            history = recorded(stage)
            require(OTHERS.items() <= history.items(), f"the others' history is lost: {history}")
            stage.world.forget_log()
            stage.world.forget_spooler()
            ends_with(stage, SKIPPED if "LastSendTime_VNRV2160004711" in history else SENT, road, *switches)

        return row

    for step in range(0, 2000, 50):
        yield f"{USB}: killed after {step} ms, started again", killed_after(step, USB)
    for step in range(0, 1000, 25):
        yield f"{SNMP} -SBXPlus: killed after {step} ms, started again", killed_after(step, SNMP, "-SBXPlus")

    def killed_after_the_post(seconds: float) -> Callable[[Stage], None]:
        def row(stage: Stage) -> None:
            posted, run = threading.Event(), stage.world.start("-QName", SNMP)
            stage.at_exchange = lambda request: getattr(request, "page", "") == "Connector.aspx" and posted.set()
            require(posted.wait(60), "nothing was posted")
            time.sleep(seconds)
            run.stop()
            history = recorded(stage)
            require(OTHERS.items() <= history.items(), f"the others' history is lost: {history}")
            stage.world.forget_log()
            stage.world.forget_spooler()
            remembered = "LastSendTime_VNRV2160004711" in history
            ends_with(stage, SKIPPED if remembered else SENT)

        return row

    for step in range(40):
        yield f"{SNMP}: killed {step} ms after the post, started again", killed_after_the_post(step / 1000)


GROUPS: dict[str, Callable[[], Iterator[Row]]] = {
    "settings": settings_rows,
    "log": log_rows,
    "registry": registry_rows,
    "spooler": spooler_rows,
    "vanishing": vanishing_rows,
    "unplugging": unplugging_rows,
    "server": server_rows,
    "killed": killed_rows,
}


def main() -> None:
    parser = argparse.ArgumentParser(description="Breaks one thing at a time around the agent.")
    parser.add_argument("--group", choices=GROUPS, action="append")
    parser.add_argument("--part", default="1/1", help="1/4: the first quarter of the rows")
    options = parser.parse_args()
    part, parts = map(int, options.part.split("/"))
    failed = 0
    for group in options.group or GROUPS:
        rows = list(GROUPS[group]())[part - 1 :: parts]
        begun, longest, broken_rows = time.monotonic(), (0.0, ""), 0
        with ExitStack() as stack:
            stage = None
            for name, row in rows:
                if stage is None or group == "unplugging":
                    stack.close()
                    stage = stack.enter_context(Stage())
                stage.reset()
                row_begun = time.monotonic()
                try:
                    row(stage)
                except unittest.SkipTest:
                    pass
                except (subprocess.SubprocessError, AssertionError, OSError) as broken:
                    broken_rows += 1
                    print(f"{name}: {type(broken).__name__} {broken}", flush=True)
                longest = max(longest, (time.monotonic() - row_begun, name))
        taken = time.monotonic() - begun
        print(f"{group}: {len(rows)} rows in {taken:.0f} s, {broken_rows} failed; {longest[0]:.0f} s: {longest[1]}")
        failed += broken_rows
    sys.exit(bool(failed))


if __name__ == "__main__":
    main()
