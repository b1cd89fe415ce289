"""Install and uninstall: the settings file that every user may write, and the entry of the browser's elevation policy."""

import subprocess
import unittest

from office import BUILD, QUEUE, OfficeTestCase, history
from ztsim.prefix import reg_text
from ztsim.world import Result, World

ACCESS = BUILD / "tests" / "e2e" / "zt-access.exe"
# All but what is the owner's alone (1f01ff on Windows): Wine keeps the permission bits of Unix.
EVERYONE_FULL = "allow S-1-1-0 1301ff"
REG_LINK = 6
INSTANCE = r"Global\{758F66C0-4B4C-4c4a-81F9-D289C5CCE8E5}"
POLICIES = r"Software\Microsoft\Internet Explorer\Low Rights\ElevationPolicy"

# What is under the identifier's name in the registry, as Wine writes it; a character that is not ASCII stands escaped.
IDENTIFIERS = {
    "Z": "{9073F4DF-475C-4DAD-93BB-D64F61320470}",
    "ZT": "{9073F4DF-475C-4DAD-93BB-D61B61320470}",
    "ZTAgen": "{9073F4DF-475C-4DAD-93BB-D61B2055611E}",
    "ZTAgent for the office": "{9073F4DF-475C-4DAD-93BB-D61B2055611E}",
    "Büro": "{9073F4DF-475C-4DAD-93BB-CE8CDD406B70}",
}


def can_delete(path: str) -> str:
    return f"Can't delete file ({path})!!!"


class InstallTestCase(OfficeTestCase):
    def install(self, base_name: str = "ZT", switch: str = "-Install", extension: str = ".exe") -> Result:
        program = base_name + extension
        copy = self.world.program_folder / program
        if not copy.exists():
            copy.write_bytes((self.world.program_folder / "ZT.exe").read_bytes())
        self.world.extra_environment["LC_ALL"] = "C.UTF-8"
        return self.finish(self.world.start(switch, program=program))

    def settings_of(self, base_name: str):
        return self.world.settings_file.with_name(base_name + ".ini")

    def access_list(self, path: str) -> list[str]:
        self.world.install(ACCESS)
        output = self.world.folder / "access.txt"
        with open(output, "wb") as stdout:
            subprocess.run(
                ["wine", r"C:\agent\zt-access.exe", path],
                env=self.world.environment() | {"WINEDEBUG": "-all"},
                stdin=subprocess.DEVNULL,
                stdout=stdout,
                stderr=subprocess.DEVNULL,
                check=True,
            )
        return output.read_text().splitlines()


class SettingsFileTest(InstallTestCase):
    def test_every_user_may_write_it(self):
        result = self.install()
        self.assert_ends_with(result, "4 wait...", "4 install", "4 Installing...ZT", marker=False)
        self.assertEqual(self.world.settings_file.read_bytes(), b"")
        entries = self.access_list(r"C:\ProgramData\Velnora\Printer\ZT.ini")
        self.assertIn(EVERYONE_FULL, entries)
        self.assertFalse([entry for entry in entries if entry.startswith("deny")])
        # A file beside it has what its folder gives.
        other = self.world.settings_file.with_name("other.ini")
        other.touch(0o600)
        self.addCleanup(other.unlink)
        self.assertNotIn(EVERYONE_FULL, self.access_list(r"C:\ProgramData\Velnora\Printer\other.ini"))

    def test_what_is_there_stays(self):
        self.world.settings = text = history(LastSendTime_X="2014-03-06 10:00:00")
        mode = self.world.settings_file.stat().st_mode
        for _ in range(2):
            self.install()
            self.assertEqual(self.world.settings, text)
            self.assertEqual(self.world.settings_file.stat().st_mode, mode)

    def test_uninstall(self):
        self.install()
        path = r"C:\ProgramData\Velnora\Printer\ZT.ini"
        self.assert_ends_with(
            self.install(switch="-UnInstall"), "4 wait...", "4 uninstall", "4 Uninstalling...ZT", marker=False
        )
        self.assertFalse(self.world.settings_file.exists())
        result = self.install(switch="-UnInstall")
        self.assert_ends_with(result, "4 Uninstalling...ZT", "3 " + can_delete(path), marker=False)
        self.assertIn("[KVF] " + can_delete(path), result.debug)

    def test_file_that_somebody_holds(self):
        self.install()
        self.world.settings = "text"
        held = self.hold("file", r"C:\ProgramData\Velnora\Printer\ZT.ini")
        self.assert_ends_with(self.install(), "4 Installing...ZT", marker=False)
        self.assert_ends_with(
            self.install(switch="-UnInstall"),
            "3 " + can_delete(r"C:\ProgramData\Velnora\Printer\ZT.ini"),
            marker=False,
        )
        held.release()
        self.assertEqual(self.world.settings, "text")

    def test_folder_that_cannot_be_written(self):
        # In place of the folder stands a file.
        folder = self.world.settings_file.parent
        if folder.exists():
            for file in folder.iterdir():
                file.unlink()
            folder.rmdir()
        folder.parent.mkdir(parents=True, exist_ok=True)
        folder.touch()
        self.addCleanup(folder.unlink)
        self.assert_ends_with(self.install(), "4 Installing...ZT", marker=False)
        self.assert_ends_with(
            self.install(switch="-UnInstall"),
            "3 " + can_delete(r"C:\ProgramData\Velnora\Printer\ZT.ini"),
            marker=False,
        )

    def test_program_without_extension(self):
        self.assert_ends_with(self.install("Plain", extension=""), "4 Installing...Plain", marker=False)
        self.assertTrue(self.settings_of("Plain").exists())


class RunningInstanceTest(InstallTestCase):
    def test_ten_seconds_are_waited(self):
        self.hold("mutex", INSTANCE)
        result = self.install()
        self.assertEqual(
            result.log_texts[1:],
            ["4 wait..."]
            + ["3 Waiting for previous instance terminated..."] * 10
            + ["4 install", "4 Installing...ZT"],
        )
        self.assertGreater(result.seconds, 10)
        self.assertTrue(self.world.settings_file.exists())


class PolicyTest(InstallTestCase):
    def test_entry_per_program(self):
        for base_name in IDENTIFIERS:
            self.install(base_name)
            self.install(base_name)
            self.assertEqual(self.settings_of(base_name).exists(), True)
            self.install(base_name, "-UnInstall")
            self.assertEqual(self.settings_of(base_name).exists(), False)
        self.install("Plain", extension="")
        self.world.prefix.stop_windows()

        # Programs whose names begin with the same six characters share an entry; the last one has it.
        owners = {identifier: base_name for base_name, identifier in IDENTIFIERS.items()}
        system = (self.world.prefix.folder / "system.reg").read_text(encoding="utf-8")
        prefix = "\n[" + POLICIES.replace("\\", "\\\\") + "\\\\{9073F4DF-"
        self.assertEqual(system.count(prefix), len(owners))
        for identifier, base_name in owners.items():
            with self.subTest(base_name):
                self.assertEqual(
                    self.world.prefix.registry(POLICIES + "\\" + identifier),
                    {
                        "AppName": '"%s.exe"' % base_name.replace("ü", r"\xfc"),
                        "AppPath": r'"C:\\agent\\"',
                        "Policy": "dword:00000003",
                    },
                )

    def test_registry_that_refuses(self):
        # A link that leads nowhere stands in place of the key above the entries, so none can be made there.
        with World() as world:
            world.log_to(4)
            target = r"\Registry\Machine\Absent\Key".encode("utf-16-le")
            with open(world.prefix.folder / "system.reg", "a", encoding="utf-8") as registry:
                registry.write("\n[%s] 0\n#link\n" % POLICIES.replace("\\", "\\\\"))
                registry.write('"SymbolicLinkValue"=%s\n' % reg_text((REG_LINK, target)))
            result = world.run("-Install")
            self.assertEqual(result.exit_code, 0)
            self.assertEqual(result.log_texts[-1], "4 Installing...ZT")
            self.assertTrue(world.settings_file.exists())
            world.prefix.stop_windows()
            registry = (world.prefix.folder / "system.reg").read_text(encoding="utf-8")
            self.assertNotIn('"AppPath"="C:\\\\agent', registry)


if __name__ == "__main__":
    unittest.main()
