"""The start-up checks of the agent: each early end with its text, level and end marker."""

import unittest

from office import QUEUE, OfficeTestCase, queue_script
from ztsim.prefix import REG_BINARY, REG_EXPAND_SZ, REG_SZ
from ztsim.world import AGREEMENT


class CommandLineTest(OfficeTestCase):
    def test_no_queue_name(self):
        world = self.make_world()
        for arguments in ([], ["-QName"], ["QName=Office"], ["--QName", QUEUE], ["-Driver", "-QName", QUEUE], ["nonsense", "/"]):
            with self.subTest(arguments=arguments):
                result = world.run(*arguments)
                self.assertEqual(result.exit_code, 0)
                self.assert_ends_with(result, "2 no QName!!! bye~")
                self.assertIn("ZOLT - start", result.debug)
                self.assertNotIn("ZOLT - end", result.debug)
        self.assertEqual(world.spooler_calls, [])

    def test_command_line_is_the_first_line_and_names_its_module(self):
        world = self.make_world()
        line = world.run("-SomeThing", "a b").log[0]
        self.assertEqual(line.module, "TOVAgent")
        self.assertEqual(line.severity, 4)
        self.assertIn("-SomeThing", line.message)
        self.assertRegex(line.stamp, r"^\d\d-\d\d \d\d:\d\d$")
        self.assertRegex(line.ticks, r"^\d+\.\d\d\d$")
        self.assertRegex(line.thread, r"^\d{4,}$")

    def test_service_actions_come_before_the_queue(self):
        world = self.make_world()
        for arguments, texts in (
            (["-Install", "-UnInstall"], ["4 wait...", "4 uninstall"]),
            (["/install", "-QName", QUEUE], ["4 wait...", "4 install"]),
            (["-ShowTest", "-QName", QUEUE], ["4 Show Test"]),
        ):
            with self.subTest(arguments=arguments):
                self.assertEqual(world.run(*arguments).log_texts[1 : 1 + len(texts)], texts)
        self.assertEqual(world.spooler_calls, [])


class QueueTest(OfficeTestCase):
    def test_unusable_queue(self):
        for script, text in (
            ("", "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="OpenPrinterW.fail = 5"), "2 open printer failed!!! bye~"),
            (queue_script(more_of_queue="GetPrinterW.fail = 122 5"), "2 open printer failed!!! bye~"),
            (queue_script(driver=""), "2 failed to get driver name!!! bye~"),
        ):
            with self.subTest(text=text, script=script):
                world = self.make_world(script)
                result = self.run_agent(world)
                self.assert_ends_with(result, text)
                self.assertFalse(world.settings_file.exists())

    def test_shared_queue_is_no_environment(self):
        world = self.make_world(queue_script(more_of_queue="attributes = 0x10"))
        result = self.run_agent(world)
        self.assert_ends_with(
            result, "4 Checking spooler info...", "3 Shared !!! bye~", "3 not supported Environment! bye~" + QUEUE
        )
        self.assertNotIn("ZOLT - end", result.debug)


class FlagTest(OfficeTestCase):
    def test_disable_is_exactly_the_dword_1(self):
        for value, disabled in ((1, True), (2, False), ("1", False), ((REG_BINARY, b"\1\0\0\0"), False)):
            with self.subTest(value=value):
                result = self.run_agent(self.make_world(Disable=value, VirtualTest=1))
                self.assertEqual("4 disabled by admin... bye~~~" in result.log_texts, disabled)

    def test_disabled_agent_leaves_no_settings_file(self):
        world = self.make_world(Disable=1)
        self.assert_ends_with(self.run_agent(world, "-SBXPlus"), "4 disabled by admin... bye~~~")
        self.assertFalse(world.settings_file.exists())


class SettingsTest(OfficeTestCase):
    def test_settings_file_that_cannot_be_written(self):
        world = self.make_world(VirtualTest=1)
        world.settings_file.mkdir(parents=True)  # a folder in its place is no file: it reads as a first start
        self.assertNotIn("4 not enough permission! bye~ ZT", self.run_agent(world).log_texts)

    def test_switched_off_services(self):
        world = self.make_world(VirtualTest=1)
        world.settings = "[Common]\r\nZOLTEnabled=2\r\nPPAEnabled=2\r\n"
        self.assert_ends_with(self.run_agent(world), "4 zolt disabled! bye~ ZT")
        both = self.run_agent(world, "-SBXPlus")
        self.assert_ends_with(
            both, "4 [ZT] Product protection mode processing start....", "4 PPA disabled! bye~ ZT"
        )
        self.assertNotIn("ZOLT - end", both.debug)
        world.settings = "[Common]\r\nZOLTEnabled=3\r\nPPAEnabled=\r\n"
        self.assertNotIn("4 zolt disabled! bye~ ZT", self.run_agent(world).log_texts)


class LoggerTest(OfficeTestCase):
    def test_levels(self):
        for level, shows in ((0, None), (2, {2}), (3, {2, 3}), (4, {2, 3, 4}), (9, {2, 3, 4}), ("4", None)):
            with self.subTest(level=level):
                world = self.make_world(queue_script(more_of_queue="attributes = 0x10"), level=level)
                world.run()
                self.run_agent(world)
                if shows is None:
                    self.assertFalse(world.log_file.exists())
                else:
                    text = world.log_file.read_text()
                    self.assertEqual({int(line.split("\t")[4]) for line in text.splitlines()}, shows)

    def test_unusable_log_files(self):
        for file in (r"C:\absent\zt.log", (REG_SZ, b"C\0:\0\\\0x"), (REG_EXPAND_SZ, b"%\0T\0%\0"), 7):
            with self.subTest(file=file):
                world = self.make_world()
                world.log_to(4, file)
                self.assertEqual(self.run_agent(world).exit_code, 0)
                self.assertFalse(world.log_file.exists())


class AgreementTest(OfficeTestCase):
    def test_key_of_the_model_is_made_below_an_existing_parent(self):
        for parent in (False, True):
            with self.subTest(parent=parent):
                world = self.make_world(VirtualTest=1)
                if parent:
                    world.prefix.set_registry(AGREEMENT, {})
                self.run_agent(world, "-SBXOnly")
                world.prefix.stop_windows()
                made = world.prefix.registry(AGREEMENT + r"\Velnora RV-2160")
                self.assertEqual(made is not None, parent)


if __name__ == "__main__":
    unittest.main()
