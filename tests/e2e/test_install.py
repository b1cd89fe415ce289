"""Install and uninstall: the settings file that every user may write, the entry of the browser's elevation policy."""

from sim.paths import WINDOWS
from sim.world import Result

from .office import OfficeTestCase, history

ACCESS = WINDOWS / "access" / "zt-access.exe"
# All but what is the owner's alone (1f01ff on Windows): Wine keeps the permission bits of Unix.
EVERYONE_FULL = "allow S-1-1-0 1301ff"
INSTANCE = r"Global\{758F66C0-4B4C-4c4a-81F9-D289C5CCE8E5}"
POLICIES = r"Software\Microsoft\Internet Explorer\Low Rights\ElevationPolicy"
SETTINGS = r"C:\ProgramData\Velnora\Printer\ZT.ini"
INSTALLED = "4 Installing...ZT"
CANNOT_DELETE = f"Can't delete file ({SETTINGS})!!!"


class InstallTest(OfficeTestCase):
    def install(self, switch: str = "-Install", program: str = "ZT.exe") -> Result:
        copy = self.world.program_folder / program
        if not copy.exists():
            copy.write_bytes((self.world.program_folder / "ZT.exe").read_bytes())
        return self.finish(self.start(switch, program=program))

    def access_list(self, path: str) -> list[str]:
        self.world.install(ACCESS)
        self.run_of_windows("cmd", "/c", rf"C:\agent\{ACCESS.name} {path} >C:\access.txt")
        return (self.world.prefix.drive / "access.txt").read_text().splitlines()

    def test_every_user_may_write_the_settings_file(self):
        self.install()
        self.assertEqual(self.world.settings_file.read_bytes(), b"")
        entries = self.access_list(SETTINGS)
        self.assertIn(EVERYONE_FULL, entries)
        self.assertFalse([entry for entry in entries if entry.startswith("deny")])
        self.assertNotIn(EVERYONE_FULL, self.access_list(r"C:\agent\ZT.exe"))  # which has what its folder gives

        # What is there stays, with its access, until it is deleted.
        self.world.settings = text = history(LastSendTime_X="2014-03-06 10:00:00")
        mode = self.world.settings_file.stat().st_mode
        self.install()
        with self.hold("file", SETTINGS):
            self.assert_ends_with(self.install(), INSTALLED, marker=False)
            result = self.install("-UnInstall")
        self.assert_ends_with(result, "4 uninstall", "4 Uninstalling...ZT", "3 " + CANNOT_DELETE, marker=False)
        self.assertIn("[KVF] " + CANNOT_DELETE, result.debug)
        self.assertEqual((self.world.settings, self.world.settings_file.stat().st_mode), (text, mode))
        self.assert_ends_with(self.install("-UnInstall"), "4 Uninstalling...ZT", marker=False)
        self.assertFalse(self.world.settings_file.exists())

    def test_ten_seconds_are_waited_for_a_running_instance(self):
        self.hold("mutex", INSTANCE)
        result = self.install()
        waits = ["3 Waiting for previous instance terminated..."] * 10
        self.assertEqual(result.log_texts[1:], ["4 wait...", *waits, "4 install", INSTALLED])
        self.assertGreater(result.seconds, 9.5)

    def test_policy_entry_per_program(self):
        # Without an extension there is a settings file, and no entry. An entry outlives the settings file.
        for program, base_name in (("Büro.exe", "Büro"), ("Plain", "Plain")):
            settings = self.world.settings_file.with_name(base_name + ".ini")
            for switch in ("-Install", "-UnInstall"):
                self.install(switch, program)
                self.assertEqual(settings.exists(), switch == "-Install")
        self.world.prefix.stop_windows()
        system = (self.world.prefix.folder / "system.reg").read_text(encoding="utf-8")
        self.assertNotIn('"AppName"="Plain', system)
        # As Wine writes it; a character that is not ASCII stands escaped.
        entry = {"AppName": r'"B\xfcro.exe"', "AppPath": r'"C:\\agent\\"', "Policy": "dword:00000003"}
        self.assertEqual(self.world.prefix.registry(POLICIES + r"\{9073F4DF-475C-4DAD-93BB-CE8CDD406B70}"), entry)
