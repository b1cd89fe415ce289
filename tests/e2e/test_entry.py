"""The start of the agent: command line, checks before a run, guards against other instances, and the trace log."""

import unittest

from office import QUEUE, SERVER_URL, Gate, Holder, OfficeTestCase, answers, history, queue_script
from ztsim.prefix import REG_BINARY, REG_EXPAND_SZ, REG_QWORD, REG_SZ
from ztsim.world import AGREEMENT, World

INSTANCE = r"Global\{758F66C0-4B4C-4c4a-81F9-D289C5CCE8E5}"


class CommandLineTest(OfficeTestCase):
    def test_no_queue_name(self):
        for arguments in (
            [],
            ["-QName"],
            ["QName=Office"],
            ["--QName", QUEUE],
            ["-QNam", QUEUE],
            ["-Driver", "-QName", QUEUE],
            ["-Lang", "-QName", "-ChangeMode", QUEUE],
            ["nonsense", "/", "-", ""],
        ):
            with self.subTest(arguments=arguments):
                result = self.finish(self.world.start(*arguments))
                self.assert_ends_with(result, "2 no QName!!! bye~", marker=False)
                self.assertEqual(len(result.log), 2)
        self.assertEqual(self.world.spooler_calls, [])
        self.assertFalse(self.world.settings_file.exists())

    def test_spellings_that_count(self):
        self.set_flags(Disable=1)
        for arguments in (
            ["/QNAME", QUEUE],
            ["-qname", "Elsewhere", "-QName", QUEUE],
            ["-Enable", "-Disable", "-ShowAgreement", "-ChangeMode", "-Install", "-Driver", "-ShowTest", "-QName", QUEUE],
        ):
            with self.subTest(arguments=arguments):
                result = self.finish(self.world.start(*arguments))
                self.assert_ends_with(result, "4 disabled by admin... bye~~~", marker=False)

    def test_command_line_is_the_first_line_and_names_its_module(self):
        line = self.finish(self.world.start("-SomeThing", "a b")).log[0]
        self.assertEqual(line.module, "TOVAgent")
        self.assertEqual(line.severity, 4)
        self.assertIn("-SomeThing", line.message)
        self.assertRegex(line.stamp, r"^\d\d-\d\d \d\d:\d\d$")
        self.assertRegex(line.ticks, r"^\d+\.\d\d\d$")
        self.assertRegex(line.thread, r"^\d{4,}$")

    def test_service_actions_come_before_the_queue(self):
        for arguments, texts in (
            (["-Install", "-UnInstall"], ["4 wait...", "4 uninstall"]),
            (["/install", "-QName", QUEUE], ["4 wait...", "4 install"]),
        ):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.finish(self.world.start(*arguments)).log_texts[1 : 1 + len(texts)], texts)
        self.assertEqual(self.world.spooler_calls, [])


class QueueTest(OfficeTestCase):
    def test_unusable_queue(self):
        for script, text in (
            ("", "2 open printer failed!!! bye~"),
            (queue_script(name="Other"), "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="OpenPrinterW.fail = 5"), "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="GetPrinterW.fail = 5"), "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="GetPrinterW.fail = 0 5"), "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="GetPrinterW.needed = 8"), "2 open printer failed!!! bye~"),
            (queue_script(driver=""), "2 failed to get driver name!!! bye~"),
            (f"[queue {QUEUE}]\nport = P", "2 failed to get driver name!!! bye~"),
        ):
            with self.subTest(text=text, script=script):
                self.world.spooler(script)
                self.assert_ends_with(self.run_agent(), text, marker=False)
                self.assertFalse(self.world.settings_file.exists())

    def test_queue_of_another_computer(self):
        self.world.spooler(queue_script(more_of_queue="attributes = 0x10"))
        self.assert_ends_with(
            self.run_agent(),
            "4 Checking spooler info...",
            "3 Shared !!! bye~",
            "3 not supported Environment! bye~" + QUEUE,
            marker=False,
        )
        self.assertFalse(self.world.settings_file.exists())


class FlagTest(OfficeTestCase):
    def test_flags_are_on_by_the_dword_1_only(self):
        for value, disabled in (
            (1, True),
            (2, False),
            ("1", False),
            ((REG_BINARY, b"\1\0\0\0"), False),
            ((REG_QWORD, b"\1\0\0\0\0\0\0\0"), False),
        ):
            with self.subTest(value=value):
                self.set_flags(Disable=value)
                self.world.spooler(queue_script(more_of_queue="attributes = 0x10"))
                for arguments in ((), ("-SBXPlus",)):
                    result = self.run_agent(*arguments)
                    self.assertEqual("4 disabled by admin... bye~~~" in result.log_texts, disabled)
                    if disabled:
                        self.assert_ends_with(result, "4 disabled by admin... bye~~~", marker=False)
                self.assertFalse(self.world.settings_file.exists())


class SettingsTest(OfficeTestCase):
    def test_settings_that_cannot_be_written(self):
        text = history(LastSendTime_X="2014-03-06 10:00:00")
        self.world.settings = text
        held = self.hold("file", r"C:\ProgramData\Velnora\Printer\ZT.ini")
        self.assert_ends_with(self.run_agent(), "4 not enough permission! bye~ ZT", marker=False)
        self.assert_ends_with(self.run_agent("-SBXOnly"), "4 not enough permission! bye~ ZT", marker=False)
        held.release()
        self.assertEqual(self.world.settings, text)

    def test_folder_in_place_of_the_settings_file(self):
        # Such a thing is no file that could be locked: the run goes on, only its history is lost.
        self.world.settings_file.mkdir(parents=True)
        self.addCleanup(self.world.settings_file.rmdir)
        self.set_flags(VirtualTest=1)
        self.report_server()
        result = self.run_agent()
        self.assert_ends_with(result, "4 send sucessfully...", "2 Failed to save to file!")

    def test_settings_that_become_unwritable_meanwhile(self):
        text = history(LastSendTime_X="2014-03-06 10:00:00")
        self.world.settings = text
        self.set_flags(VirtualTest=1)
        gate = Gate(answers.upload())
        self.report_server().answer("Connector.aspx", gate.answer)
        run = self.start_agent()
        gate.wait_for_visitor()
        held = self.hold("file", r"C:\ProgramData\Velnora\Printer\ZT.ini")
        gate.open()
        self.assert_ends_with(self.finish(run), "4 send sucessfully...", "2 Failed to save to file!")
        held.release()
        self.assertEqual(self.world.settings, text)

    def test_switched_off_services(self):
        self.set_flags(VirtualTest=1)
        self.world.settings = "[Common]\r\nZOLTEnabled=2\r\nPPAEnabled=2\r\n"
        before = self.world.settings
        self.assert_ends_with(self.run_agent(), "4 zolt disabled! bye~ ZT", marker=False)
        for argument in ("-SBXPlus", "-SBXOnly"):
            self.assert_ends_with(
                self.run_agent(argument),
                "4 [ZT] Product protection mode processing start....",
                "4 PPA disabled! bye~ ZT",
                marker=False,
            )
        self.assertEqual(self.world.settings, before)
        self.report_server()
        for value in ("3", "", "1", "22"):
            self.world.settings = f"[Common]\r\nZOLTEnabled={value}\r\n"
            self.assert_ends_with(self.run_agent(), "4 send sucessfully...")


class InstanceTest(OfficeTestCase):
    def test_one_report_at_a_time(self):
        self.set_flags(VirtualTest=1)
        gate = Gate(answers.check_date())
        server = self.report_server()
        server.answer("CheckDate.aspx", gate.answer)
        first = self.start_agent()
        gate.wait_for_visitor()

        # Whatever the queue, the others leave at once.
        self.world.spooler(queue_script(name="Other"))
        second = self.finish(self.world.start("-QName", "Other"))
        self.assert_ends_with(second, "3 zolt data collecting already running.. bye~", marker=False)
        self.assertFalse(self.world.settings_file.exists())

        gate.open()
        self.assert_ends_with(self.finish(first), "4 Start uploading...", "4 send sucessfully...")
        self.assertEqual([request.page for request in server.requests], ["CheckDate.aspx", "Connector.aspx"])
        # It is over with the process that was running.
        self.assert_ends_with(self.run_agent(), "2 open printer failed!!! bye~", marker=False)

    def test_service_actions_wait_for_another_instance(self):
        # Two computers, as two processes that flush one log at the same moment may lose lines.
        other = self.enterContext(World())
        other.log_to(4)
        runs = {}
        for name, world in (("install", self.world), ("uninstall", other)):
            self.enterContext(Holder(world, "mutex", INSTANCE))
            runs[name] = world.start("-" + name)
        for name, run in runs.items():
            result = self.finish(run)
            expected = ["4 wait..."] + ["3 Waiting for previous instance terminated..."] * 10 + ["4 " + name]
            self.assertEqual(result.log_texts[1 : 1 + len(expected)], expected)
            # The attempts are counted once a second; then it goes on all the same.
            self.assertGreater(result.seconds, 9.5)

    def test_one_product_protection_run_for_a_queue(self):
        self.set_flags(VirtualTest=1)
        self.report_server()
        self.hold("section", "ZT.exe-" + QUEUE)
        for argument in ("-SBXPlus", "-SBXOnly"):
            with self.subTest(argument):
                self.forget()
                result = self.run_agent(argument)
                self.assertIn("[ZT] PPA - already running..", result.debug)
                self.assertNotIn("[ZT] refill - end", result.debug)
                self.assertIn("ZOLT - end", result.debug)
                self.assertFalse(any("[ZT]" in text for text in result.log_texts))
                # The report does not wait for it.
                self.assertEqual("4 send sucessfully..." in result.log_texts, argument == "-SBXPlus")


class LoggerTest(OfficeTestCase):
    def test_levels(self):
        self.world.spooler(queue_script(more_of_queue="attributes = 0x10"))
        for level, shows in ((0, set()), (1, set()), (2, {2}), (3, {2, 3}), (4, {2, 3, 4}), (0xFFFFFFFF, {2, 3, 4}), ("4", set())):
            with self.subTest(level=level):
                self.set_logger(Level=level, File=r"C:\zt.log")
                lines = self.finish(self.world.start()).log + self.run_agent().log
                self.assertEqual({line.severity for line in lines}, shows)

    def test_unusable_log_files(self):
        for file in (
            r"C:\absent\zt.log",
            (REG_SZ, b"C\0:\0\\\0x"),
            (REG_EXPAND_SZ, "%TEMP%\\zt.log".encode("utf-16-le")),
            (REG_BINARY, "C:\\zt.log\0".encode("utf-16-le")),
            "C:\\" + "x" * 300,
            "C:\\windows",
            "",
            7,
        ):
            with self.subTest(file=file):
                self.set_logger(Level=4, File=file)
                self.assertEqual(self.run_agent().log, [])

    def test_two_processes_write_one_log(self):
        self.set_flags(VirtualTest=1)
        gate = Gate(answers.check_date())
        self.report_server().answer("CheckDate.aspx", gate.answer)
        first = self.start_agent()
        gate.wait_for_visitor()
        second = self.finish(self.start_agent("-SBXPlus"))
        self.assert_ends_with(second, "3 zolt data collecting already running.. bye~", marker=False)
        gate.open()
        # The first one's lines were still in its memory; none of either is lost.
        lines = self.finish(first).log_texts
        self.assertIn("4 collecting from 192.0.2.10", lines)
        self.assertEqual(lines[-1], "4 send sucessfully...")

    def test_full_log_goes_on_in_a_new_file(self):
        head = b"01-01 00:00\t0.000\t0001\tOld,1\t4\t"
        for size, rotated in ((1048576, False), (1048577, True)):
            with self.subTest(size=size):
                log = self.world.log_file
                copies = [log.with_name(f"zt.log.{number}") for number in range(7)]
                log.write_bytes(head.ljust(size - 2, b"x") + b"\r\n")
                self.world.take_log()
                copies[0].write_text("newest")
                copies[5].write_text("oldest")
                self.finish(self.world.start())
                self.assertEqual(log.stat().st_size < 10000, rotated)
                if rotated:
                    self.assertEqual(copies[0].stat().st_size, size)
                    self.assertEqual(copies[1].read_text(), "newest")
                    self.assertFalse(copies[5].exists() or copies[6].exists())
                for file in (log, *copies):
                    file.unlink(missing_ok=True)
                self.world.take_log()


class ProgramPathTest(OfficeTestCase):
    def test_program_in_a_very_deep_folder(self):
        # Its path does not fit the record of 260 characters: without a name it has no settings file.
        folder = self.world.prefix.drive
        while len(str(folder)) - len(str(self.world.prefix.drive)) < 270:
            folder /= "deep" * 10
        folder.mkdir(parents=True)
        for file in self.world.program_folder.iterdir():
            (folder / file.name).write_bytes(file.read_bytes())
        program = "..\\" + str((folder / "ZT.exe").relative_to(self.world.prefix.drive)).replace("/", "\\")
        result = self.finish(self.world.start("-QName", QUEUE, program=program))
        self.assert_ends_with(result, "4 not enough permission! bye~ ", marker=False)
        self.assertFalse(self.world.settings_file.exists())

    def test_program_of_another_name(self):
        # The settings file is named after the program.
        (self.world.program_folder / "Büro.exe").write_bytes((self.world.program_folder / "ZT.exe").read_bytes())
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        self.addCleanup(self.world.extra_environment.pop, "LC_ALL")
        self.report_server()
        self.set_flags(VirtualTest=1)
        self.finish(self.world.start("-QName", QUEUE, program="Büro.exe"))
        self.assertFalse(self.world.settings_file.exists())
        self.assertIn("LastSendTime_", self.world.settings_file.with_name("Büro.ini").read_text())


class AgreementTest(OfficeTestCase):
    def test_key_of_the_model_is_made_below_an_existing_parent(self):
        for parent in (False, True):
            with self.subTest(parent=parent), World() as world:
                world.spooler(queue_script())
                world.flags(VirtualTest=1, URL=SERVER_URL)
                if parent:
                    world.prefix.set_registry(AGREEMENT, {})
                self.assertEqual(world.run("-QName", QUEUE, "-SBXOnly").exit_code, 0)
                world.prefix.stop_windows()
                made = world.prefix.registry(AGREEMENT + r"\Velnora RV-2160")
                self.assertEqual(made is not None, parent)


if __name__ == "__main__":
    unittest.main()
