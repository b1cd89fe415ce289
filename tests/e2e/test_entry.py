"""The start of the agent: command line, checks before a run, guards against other instances, and the trace log."""

import shutil
import subprocess
import unittest

from sim import answers
from sim.answers import Gate
from sim.queues import QUEUE, queue_script
from sim.world import AGREEMENT

from .office import OfficeTestCase

SENT = "4 send sucessfully..."


class EntryTest(OfficeTestCase):
    def test_command_line(self):
        disabled = "4 disabled by admin... bye~~~"
        self.set_flags(Disable=1)
        self.world.forget_spooler()
        for arguments, texts in (
            (["QName=Office", "nonsense", "/", "-", ""], ["2 no QName!!! bye~"]),
            (["-ShowTest", "-QName", QUEUE], ["4 Show Test"]),
            (["-Install", "-UnInstall"], ["4 wait...", "4 uninstall"]),
            (["/install", "-QName", QUEUE], ["4 wait...", "4 install"]),
            (["-Enable", "-Driver", "-ShowTest", "-QName", "Elsewhere", "/QNAME", QUEUE], [disabled]),
        ):
            with self.subTest(arguments=arguments):
                result = self.finish(self.world.start(*arguments))
                first = result.log[0]
                self.assertEqual((first.module, first.severity), ("TOVAgent", 4))
                for argument in arguments:
                    self.assertIn(argument, first.message)
                self.assertEqual(result.log_texts[1 : 1 + len(texts)], texts)
                self.assertNotIn("ZOLT - end", result.debug)
                self.assertEqual(bool(self.world.spooler_calls), texts == [disabled])
                self.assertEqual(self.world.settings_file.exists(), texts[-1] == "4 install")
                self.forget()

    def test_queue(self):
        for script, text in (
            ("", "2 open printer failed!!! bye~"),
            (queue_script(driver=""), "2 failed to get driver name!!! bye~"),
        ):
            self.world.spooler(script)
            self.assert_ends_with(self.run_agent(), text, marker=False)
            self.assertFalse(self.world.settings_file.exists())

    def test_flags_are_on_by_the_dword_1_only(self):
        self.world.spooler(queue_script(more_of_queue="attributes = 0x10"))  # of another computer
        for value, disabled in ((1, True), (2, False), ("1", False)):
            self.set_flags(Disable=value)
            self.assertEqual("4 disabled by admin... bye~~~" in self.run_agent().log_texts, disabled)

    def test_settings_that_cannot_be_written(self):
        self.world.settings = "text"
        with self.hold("file", r"C:\ProgramData\Velnora\Printer\ZT.ini"):
            self.assert_ends_with(self.run_agent("-SBXPlus"), "4 not enough permission! bye~ ZT", marker=False)
        self.assertEqual(self.world.settings, "text")
        # Nor does a run begin whose history could not be kept: a folder has the file's name, or a file the folder's.
        self.forget()
        self.world.settings_file.mkdir()
        self.assert_ends_with(self.run_agent(), "4 not enough permission! bye~ ZT", marker=False)
        folder = self.world.settings_file.parent
        shutil.rmtree(folder)
        folder.touch()
        self.addCleanup(folder.unlink)
        self.assert_ends_with(self.run_agent(), "4 not enough permission! bye~ ZT", marker=False)

    def test_program_in_a_place_with_a_long_name(self):
        # A path is recorded up to 260 characters. Without the program's name there is no settings file.
        folder = self.world.prefix.drive.joinpath(*["deep" * 10] * 7)
        folder.mkdir(parents=True)
        for file in self.world.program_folder.iterdir():
            (folder / file.name).write_bytes(file.read_bytes())
        program = "..\\" + str((folder / "ZT.exe").relative_to(self.world.prefix.drive)).replace("/", "\\")
        result = self.finish(self.world.start("-QName", QUEUE, program=program))
        self.assert_ends_with(result, "4 not enough permission! bye~ ", marker=False)
        self.assertFalse(self.world.settings_file.exists())

    def test_agreement_key_is_made_below_an_existing_parent(self):
        self.report_server()
        self.set_flags(VirtualTest=1)
        self.run_agent("-SBXOnly")
        query = ("reg", "query", rf"HKLM\{AGREEMENT}\Velnora RV-2160")
        with self.assertRaises(subprocess.CalledProcessError):
            self.wine(*query)
        self.set_registry(AGREEMENT, {})
        self.run_agent("-SBXOnly")
        self.wine(*query)

    def test_one_report_at_a_time(self):
        server = self.report_server()
        self.set_flags(VirtualTest=1)
        gate = Gate(answers.check_date())
        server.answer("CheckDate.aspx", gate.answer)
        first = self.start_agent()
        gate.wait_for_visitor()
        # Whatever the queue, the others leave at once. They write to the log that the first one will go on with.
        self.world.spooler(queue_script() + queue_script(name="Other"))
        second = self.finish(self.world.start("-QName", "Other"))
        self.assert_ends_with(second, "3 zolt data collecting already running.. bye~", marker=False)
        self.assertFalse(self.world.settings_file.exists())
        gate.open()
        lines = self.finish(first).log_texts
        self.assertIn("4 collecting from 192.0.2.10", lines)
        self.assertEqual(lines[-1], SENT)
        self.assertEqual([request.page for request in server.requests], ["CheckDate.aspx", "Connector.aspx"])
        # It is over with the process that was running.
        self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")


if __name__ == "__main__":
    unittest.main()
