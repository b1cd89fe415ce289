"""ZT.ini: whatever stands in it, a run ends in order, and what it records is found by the next one."""

import random
import shutil
import unittest

from office import QUEUE, SERVER_URL, Gate, OfficeTestCase, answers, history, queue_script
from ztsim.world import World

SENT = "4 send sucessfully..."
SKIPPED = "4 skip send success local. bye~"
LAST_SEND = "LastSendTime_VIRTUAL0001"
OLD = "2014-03-06 10:00:00"


class SettingsTestCase(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.set_flags(VirtualTest=1)
        self.server = self.report_server()


class FileTest(SettingsTestCase):
    def test_broken_files(self):
        rubbish = random.Random(1)
        for name, content in {
            "empty": b"",
            "any bytes": rubbish.randbytes(50000).replace(b"=", b"-"),
            "zeros": bytes(5000),
            "brackets": b"[[]]\r\n[]\r\n[\r\n]\r\n[ ]\r\n",
            "no line end": b"[History]",
            "keys before any section": b"LastSendTime_VIRTUAL0001=2999-01-01\r\nZOLTEnabled=2\r\n",
            "UTF-16": "\ufeff[Common]\r\nZOLTEnabled=2\r\n".encode("utf-16-le"),
            "one long line": b"[History]\r\nX=" + b"x" * 1000000,
            "many lines": b"[History]\r\n" + b"".join(b"%d\r\n" % number for number in range(100000)),
            "only comments": b";[Common]\r\n;ZOLTEnabled=2\r\n",
        }.items():
            with self.subTest(name):
                self.world.settings = content.decode("latin-1")
                self.assert_ends_with(self.run_agent(), SENT)
                # The file is not shortened, and what is left of the old one behind the new text does no harm.
                self.assertGreaterEqual(self.world.settings_file.stat().st_size, len(content))
                self.assert_ends_with(self.run_agent(), SKIPPED)

    def test_too_large_file(self):
        line = b"[Common]\r\nZOLTEnabled=1\r\n"
        for size, usable in ((16 * 1024 * 1024, True), (16 * 1024 * 1024 + 1, False)):
            with self.subTest(size):
                self.world.settings = line.ljust(size, b"\n").decode()
                result = self.run_agent()
                if usable:
                    self.assert_ends_with(result, SENT)
                else:
                    self.assert_ends_with(result, "4 not enough permission! bye~ ZT", marker=False)
                    self.assertEqual(self.world.settings_file.read_bytes(), line.ljust(size, b"\n"))

    def test_forms_that_are_understood(self):
        recent = self.world.time_text(days_ago=1)
        for text in (
            f"[History]\n{LAST_SEND}={recent}\n",
            f"  [ History ]  \r\n  {LAST_SEND}  =  {recent}   ; yesterday\r\n",
            f"[History]\r\n{LAST_SEND}={OLD}\r\n[Common]\r\n[History]\r\n{LAST_SEND}={recent}",
        ):
            with self.subTest(text):
                self.world.settings = text
                self.assert_ends_with(self.run_agent(), SKIPPED)
                self.assertEqual(self.world.settings, text)

    def test_nothing_is_lost_but_what_was_no_setting(self):
        others = {f"LastSendTime_P{number:04}": OLD for number in range(2000)}
        text = "[Common]\r\nNSLanguageCode=24, 59\r\nOwn=1\r\n" + history(**others) + "[Own]\r\nKey=a=b\r\n"
        self.world.settings = text
        self.server.answer("CheckDate.aspx", answers.check_date(interval=14))
        self.assert_ends_with(self.run_agent(), SENT)
        self.assert_recorded(**others, **{LAST_SEND: None})
        self.assertEqual(self.settings()["Common"], {"NSLanguageCode": "24, 59", "Own": "1", "SendIntervalDays": "14"})
        self.assertEqual(self.settings()["Own"], {"Key": "a=b"})

    def test_run_that_is_cut_off_leaves_the_file_alone(self):
        text = history(LastSendTime_OTHER=OLD)
        self.world.settings = text
        gate = Gate(answers.upload())
        self.server.answer("Connector.aspx", gate.answer)
        run = self.start_agent()
        gate.wait_for_visitor()
        run.stop()
        gate.open()
        self.assertEqual(self.world.settings, text)

    def test_folder_that_cannot_be_made(self):
        vendor = self.world.settings_file.parent.parent
        shutil.rmtree(vendor, ignore_errors=True)
        vendor.write_text("a file in the folder's place")
        self.addCleanup(self.world.settings_file.parent.mkdir, parents=True)
        self.addCleanup(vendor.unlink)
        self.assert_ends_with(self.run_agent(), SENT, "2 Failed to save to file!")


class TimeTest(SettingsTestCase):
    def test_last_report(self):
        now = self.world.time_text
        for time, days, skipped in (
            (now(29.9), None, True),
            (now(30.1), None, False),
            (now(-0.9), None, True),  # within the next day is today
            (now(-1.1), None, False),
            (now(13.9), "14", True),
            (now(14.1), "14", False),
            (now(0.1), "0", False),
            (now(0.1), "-5", False),
            (now(1.5), "1e9", False),
            (now(1.5), "99999999999999", True),
            (now(1.5), "2 days", True),
            (now(0.1), "", False),
            (now(1)[:10], None, True),
            (now(1).replace("-", "/").replace(":", "-"), None, True),
            ("", None, False),
        ):
            with self.subTest(time=time, days=days):
                self.world.settings = ("" if days is None else f"[Common]\r\nSendIntervalDays={days}\r\n") + history(**{LAST_SEND: time})
                result = self.run_agent()
                self.assert_ends_with(result, SKIPPED if skipped else SENT)
                self.assertEqual("3 Last svr success near! bye~" in result.log_texts, skipped)
                if not skipped:
                    self.assert_recorded(**{LAST_SEND: None})

    def test_times_that_are_none(self):
        for time in ("1899-12-31 00:00:00", "2026-13-01", "now", "2026", "2026-11-21 24:00:00 x", "9" * 500, "9999999999-1-1", "-"):
            with self.subTest(time[:30]):
                keys = ("LastCollectFailedTime_192.0.2.10", "LastServerFailedTime", LAST_SEND)
                self.world.settings = history(**dict.fromkeys(keys, time))
                result = self.run_agent()
                self.assert_ends_with(result, SENT)
                self.assertEqual(result.log_texts.count("2 Can't convert time : " + time), 3)

    def test_failures(self):
        now = self.world.time_text
        for key, text in (
            ("LastCollectFailedTime_192.0.2.10", "3 found last col fail. try later. bye~"),
            ("LastServerFailedTime", "4 found last server fail. try later bye~"),
        ):
            for time, stops in ((now(6.99), True), (now(7.01), False), (now(-0.9), True), (now(-1.1), False)):
                with self.subTest(key=key, time=time):
                    self.world.settings = history(**{key: time})
                    before = self.world.settings
                    result = self.run_agent()
                    self.assert_ends_with(result, text if stops else SENT)
                    if stops:
                        self.assertEqual(self.world.settings, before)
        # None of them counts when the checks are off.
        self.set_flags(VirtualTest=1, DontCheckSkip=1)
        self.world.settings = history(**{"LastCollectFailedTime_192.0.2.10": now(1), "LastServerFailedTime": now(1), LAST_SEND: now(1)})
        self.assert_ends_with(self.run_agent(), SENT)

    def test_times_are_those_of_the_place(self):
        with World(time_zone="JST-9") as world:
            world.spooler(queue_script())
            world.log_to(4)
            world.flags(VirtualTest=1, URL=SERVER_URL)
            self.assertEqual(world.run("-QName", QUEUE).log_texts[-1], SENT)
            time = world.settings.split("=")[1].strip()
            self.assertLessEqual(world.time_text(days_ago=5 / 1440), time)
            self.assertLessEqual(time, world.time_text())
            world.settings = history(**{LAST_SEND: world.time_text(days_ago=29.8)})
            self.assertEqual(world.run("-QName", QUEUE).log_texts[-1], SKIPPED)
            world.settings = history(**{LAST_SEND: world.time_text(days_ago=30.2)})
            self.assertEqual(world.run("-QName", QUEUE).log_texts[-1], SENT)


if __name__ == "__main__":
    unittest.main()
