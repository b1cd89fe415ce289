"""The start of the agent: command line, checks before a run, guards against other instances, and the trace log."""

import shutil
import unittest

from sim import answers
from sim.answers import Gate
from sim.queues import QUEUE, queue_script
from sim.world import AGREEMENT, World

from .office import SERVER_URL, OfficeTestCase

SENT = "4 send sucessfully..."
OF_ANOTHER_COMPUTER = queue_script(more_of_queue="attributes = 0x10")


class CheckTest(OfficeTestCase):
    def test_command_line(self):
        disabled = "4 disabled by admin... bye~~~"
        self.set_flags(Disable=1)
        for arguments, texts in (
            ([], ["2 no QName!!! bye~"]),
            (["QName=Office", "nonsense", "/", "-", ""], ["2 no QName!!! bye~"]),
            (["-Driver", "-QName", QUEUE], ["2 no QName!!! bye~"]),
            (["-ShowTest", "-QName", QUEUE], ["4 Show Test"]),
            (["-Install", "-UnInstall"], ["4 wait...", "4 uninstall"]),
            (["/install", "-QName", QUEUE], ["4 wait...", "4 install"]),
            (["/QNAME", QUEUE], [disabled]),
            (["-Enable", "-ChangeMode", "-Install", "-Driver", "-ShowTest", "-QName", "Elsewhere", "-qname", QUEUE], [disabled]),
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
        for script, *texts in (
            ("", "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="GetPrinterW.fail = 0 5"), "2 open printer failed!!! bye~"),
            (queue_script(driver=""), "2 failed to get driver name!!! bye~"),
            (OF_ANOTHER_COMPUTER, "3 Shared !!! bye~", "3 not supported Environment! bye~" + QUEUE),
        ):
            with self.subTest(texts):
                self.world.spooler(script)
                self.assert_ends_with(self.run_agent(), *texts, marker=False)
                self.assertFalse(self.world.settings_file.exists())

    def test_flags_are_on_by_the_dword_1_only(self):
        self.world.spooler(OF_ANOTHER_COMPUTER)
        for value, disabled in ((1, True), (2, False), ("1", False)):
            self.set_flags(Disable=value)
            self.assertEqual("4 disabled by admin... bye~~~" in self.run_agent().log_texts, disabled)

    def test_settings_that_cannot_be_written(self):
        self.world.settings = "text"
        with self.hold("file", r"C:\ProgramData\Velnora\Printer\ZT.ini"):
            self.assert_ends_with(self.run_agent("-SBXPlus"), "4 not enough permission! bye~ ZT", marker=False)
        self.assertEqual(self.world.settings, "text")
        # Nor does a run begin whose history could not be kept: a folder has the file's name, or a file that of its folder.
        self.forget()
        self.world.settings_file.mkdir()
        self.assert_ends_with(self.run_agent(), "4 not enough permission! bye~ ZT", marker=False)
        folder = self.world.settings_file.parent
        shutil.rmtree(folder)
        folder.touch()
        self.addCleanup(folder.unlink)
        self.assert_ends_with(self.run_agent(), "4 not enough permission! bye~ ZT", marker=False)

    def test_program_of_another_name_or_place(self):
        # The settings file is named after the program ...
        copy = self.world.program_folder / "Büro.exe"
        copy.write_bytes((self.world.program_folder / "ZT.exe").read_bytes())
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        self.report_server()
        self.set_flags(VirtualTest=1)
        self.finish(self.world.start("-QName", QUEUE, program="Büro.exe"))
        self.assertIn("LastSendTime_", self.world.settings_file.with_name("Büro.ini").read_text())
        # ... whose path is recorded up to 260 characters. Without a name there is no settings file.
        folder = self.world.prefix.drive.joinpath(*["deep" * 10] * 7)
        folder.mkdir(parents=True)
        for file in self.world.program_folder.iterdir():
            (folder / file.name).write_bytes(file.read_bytes())
        program = "..\\" + str((folder / "ZT.exe").relative_to(self.world.prefix.drive)).replace("/", "\\")
        result = self.finish(self.world.start("-QName", QUEUE, program=program))
        self.assert_ends_with(result, "4 not enough permission! bye~ ", marker=False)
        self.assertFalse(self.world.settings_file.exists())

    def test_agreement_key_is_made_below_an_existing_parent(self):
        for parent in (False, True):
            with self.subTest(parent=parent), World() as world:
                world.spooler(queue_script())
                world.flags(VirtualTest=1, URL=SERVER_URL)
                if parent:
                    world.prefix.set_registry(AGREEMENT, {})
                self.assertEqual(world.run("-QName", QUEUE, "-SBXOnly").exit_code, 0)
                world.prefix.stop_windows()
                self.assertEqual(world.prefix.registry(AGREEMENT + r"\Velnora RV-2160") is not None, parent)


class InstanceTest(OfficeTestCase):
    def setUp(self) -> None:
        super().setUp()
        self.set_flags(VirtualTest=1)
        self.server = self.report_server()

    def test_one_report_at_a_time(self):
        gate = Gate(answers.check_date())
        self.server.answer("CheckDate.aspx", gate.answer)
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
        self.assertEqual([request.page for request in self.server.requests], ["CheckDate.aspx", "Connector.aspx"])
        # It is over with the process that was running.
        self.assert_ends_with(self.run_agent(), "4 skip send success local. bye~")

    def test_the_report_does_not_wait_for_product_protection(self):
        self.hold("section", "ZT.exe-" + QUEUE)
        result = self.run_agent("-SBXPlus")
        self.assertIn("[ZT] PPA - already running..", result.debug)
        self.assertNotIn("[ZT] refill - end", result.debug)
        self.assertFalse(any("[ZT]" in text for text in result.log_texts))
        self.assert_ends_with(result, SENT)


if __name__ == "__main__":
    unittest.main()
