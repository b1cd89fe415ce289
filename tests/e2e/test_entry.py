"""The start of the agent: command line, checks before a run, settings file, guard against other instances."""

import shutil

from sim import answers
from sim.answers import Gate
from sim.queues import QUEUE, queue_script

from .office import SENT, OfficeTestCase, history

SETTINGS = r"C:\ProgramData\Velnora\Printer\ZT.ini"
SKIPPED = "4 skip send success local. bye~"
LAST_SEND = "LastSendTime_VIRTUAL0001"


class EntryTest(OfficeTestCase):
    def test_command_line(self):
        disabled = "4 disabled by admin... bye~~~"
        self.set_flags(Disable=1)
        self.world.forget_spooler()
        for arguments, texts in (
            (["QName=Office", "nonsense", "/", "-", ""], ["2 no QName!!! bye~"]),
            (["-Install", "-UnInstall"], ["4 wait...", "4 uninstall"]),
            (["/install", "-QName", QUEUE], ["4 wait...", "4 install"]),
            (["-Enable", "-Driver", "-ShowTest", "-QName", "Elsewhere", "/QNAME", QUEUE], [disabled]),
        ):
            with self.subTest(arguments=arguments):
                result = self.finish(self.start(*arguments))
                for argument in arguments:
                    self.assertIn(argument, result.log[0].message)
                self.assertEqual(result.log_texts[1 : 1 + len(texts)], texts)
                self.assertNotIn("ZOLT - end", result.debug)
                self.assertEqual(bool(self.world.spooler_calls), texts == [disabled])
                self.assertEqual(self.world.settings_file.exists(), texts[-1] == "4 install")
                self.forget()

    def test_nothing_to_run_for(self):
        for script, settings, runs, text in (
            ("", "", "-SBXPlus", "2 open printer failed!!! bye~"),
            (queue_script(driver=""), "", "-SBXPlus", "2 failed to get driver name!!! bye~"),
            (queue_script(), "[Common]\r\nZOLTEnabled=2\r\n", "", "4 zolt disabled! bye~ ZT"),
            (queue_script(), "[Common]\r\nPPAEnabled=2\r\n", "-SBXPlus", "4 PPA disabled! bye~ ZT"),
        ):
            with self.subTest(text):
                self.world.spooler(script)
                self.world.settings = settings
                self.assert_ends_with(self.run_agent(runs), text, marker=False)
                self.assertEqual(self.world.settings, settings)

    def test_settings_that_cannot_be_kept(self):
        no_permission = "4 not enough permission! bye~ ZT"
        self.world.settings = "text"
        with self.hold("file", SETTINGS):
            self.assert_ends_with(self.run_agent("-SBXPlus"), no_permission, marker=False)
        self.assertEqual(self.world.settings, "text")
        # A folder has the file's name, or a file the folder's.
        self.forget()
        self.world.settings_file.mkdir()
        self.assert_ends_with(self.run_agent(), no_permission, marker=False)
        folder = self.world.settings_file.parent
        shutil.rmtree(folder)
        folder.touch()
        self.addCleanup(folder.unlink)
        self.assert_ends_with(self.run_agent(), no_permission, marker=False)

    def test_program_in_a_place_with_a_long_name(self):
        # A path is recorded up to 260 characters. Without the program's name there is no settings file.
        deep = ["deep" * 10] * 6
        folder = shutil.copytree(self.world.program_folder, self.world.prefix.drive.joinpath(*deep))
        (folder / "ZT.exe").rename(folder / "ZT-of-another-name.exe")
        run = self.start("-QName", QUEUE, program="\\".join(["..", *deep, "ZT-of-another-name.exe"]))
        self.assert_ends_with(self.finish(run), "4 not enough permission! bye~ ", marker=False)
        self.assertFalse(list(self.world.settings_file.parent.glob("*.ini")))

    def test_left_over_lines_of_a_longer_file_do_not_come_back(self):
        # The file gets shorter by more than its last line takes, which then stays whole behind the new text.
        server = self.report_server()
        server.answer("CheckDate.aspx", answers.check_date(), answers.check_date("NOMORESERVICE"))
        self.set_flags(VirtualTest=1)
        # A time that is due by a few hours: were it taken for one of Greenwich, it would not be.
        due = f"; {'-' * 99}\r\n" + history(**{LAST_SEND: self.world.time_text(days_ago=30.2)})
        enabled = "[Common]\r\nZOLTEnabled=1 ; ZOLTEnabled=2 ends it\r\n"
        for text, *ends in (
            (due, SENT, SKIPPED),
            (enabled, "4 service stopped. bye~", "4 zolt disabled! bye~ ZT"),
        ):
            with self.subTest(ends):
                self.world.settings = text
                self.assertEqual([self.run_agent().log_texts[-1] for _ in ends], ends)
                self.assertGreaterEqual(len(self.world.settings), len(text))  # on purpose

    def test_one_report_at_a_time(self):
        server = self.report_server()
        self.set_flags(VirtualTest=1)
        gate = Gate(answers.check_date())
        server.answer("CheckDate.aspx", gate.answer)
        self.world.settings = before = history(LastSendTime_OTHER="2014-03-06 10:00:00")
        first = self.start_agent()
        gate.wait_for_visitor()
        # Whatever the queue, the others leave at once. They write to the log that the first one will go on with.
        self.world.spooler(queue_script() + queue_script("Other"))
        second = self.run_agent(queue="Other")
        self.assert_ends_with(second, "3 zolt data collecting already running.. bye~", marker=False)
        self.assertEqual(self.world.settings, before)  # until the end of a run, however it comes
        gate.open()
        lines = self.finish(first).log_texts
        self.assertIn("4 collecting from 192.0.2.10", lines)
        self.assertEqual(lines[-1], SENT)
        self.assertEqual([request.page for request in server.requests], ["CheckDate.aspx", "Connector.aspx"])
        # It is over with the process that was running.
        self.assert_ends_with(self.run_agent(), SKIPPED)
