"""The agent's MSI: its tables, and its life in a Windows. What Wine's installer does of it is what is seen here."""

import re
import struct
import subprocess
import unittest
from pathlib import Path

from deploy.make_msi import make_msi
from sim.paths import BUILD, ROOT

from .office import OfficeTestCase, history
from .test_install import POLICIES

AGENT = BUILD / "agent" / "ZT.exe"
PROGRAMS = (AGENT, BUILD / "snmp" / "ztsnmp.dll", BUILD / "agreement-sample" / "UA.dll")
VERSION = re.search(r"^CMAKE_PROJECT_VERSION:\w+=(.*)", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)[1]
NEXT = f"{int(VERSION.split('.')[0]) + 1}.0.0"
# What was given out once must be so in every later version, or upgrades don't find it.
UPGRADE_CODE = "{68F8D5C4-0F3D-483C-8E4F-3B81317A3A69}"
COMPONENTS = {
    "ZT.exe": "{9478ED8F-F6DD-495A-A639-E54F6E5943BC}",
    "LICENSES.txt": "{5B6D9CF7-F951-41B1-8973-2359D998B03A}",
}
HARDENED = 0x20 | 0x40 | 0x100  # high-entropy and dynamic base, no execution of data
SYSTEM_DEFERRED_PROGRAM = str(18 + 1024 + 2048)


def rows(package: Path, table: str) -> list[list[str]]:
    command = ["msiinfo", "export", package, table]
    text = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
    return [line.split("\t") for line in text.splitlines()[3:]]


class PackageTest(OfficeTestCase):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.packages = {version: cls.world.prefix.drive / f"{version}.msi" for version in (VERSION, NEXT)}
        for version, package in cls.packages.items():
            make_msi(version, AGENT, ROOT / "LICENSE", package)
        cls.folder = cls.world.prefix.drive / "Program Files" / "TOVAgent"

    def msiexec(self, switch: str, version: str, *properties: str, code: int = 0) -> list[str]:
        """Returns how the agent was started; of the exit code, Wine hands on eight bits."""
        command = ["wine", "msiexec", switch, rf"C:\{version}.msi", *properties, "/qn"]
        self.world.start_windows()
        with open(self.world.folder / "msiexec.txt", "wb") as output:
            done = subprocess.run(
                command, env=self.world.environment(), stdin=subprocess.DEVNULL, stdout=output, stderr=output
            )
        self.assertEqual(done.returncode, code % 256)
        return re.findall(r'ZT\.exe" (-\w+)', "\n".join(line.message for line in self.world.take_log()))

    def test_versions_and_hardening(self):
        for program in PROGRAMS:
            data = program.read_bytes()
            headers = struct.unpack_from("<L", data, 0x3C)[0]
            flags = struct.unpack_from("<H", data, headers + 0x5E)[0]  # DllCharacteristics
            self.assertEqual(flags & HARDENED, HARDENED, program)
            _, low, high = struct.unpack_from("<3L", data, data.index(struct.pack("<L", 0xFEEF04BD)) + 4)
            self.assertEqual(f"{low >> 16}.{low & 0xFFFF}.{high >> 16}", VERSION, program)
            for text in ("CompanyName", "FileDescription", "LegalCopyright", "ProductName", "ProductVersion"):
                self.assertIn((text + "\0").encode("utf-16-le"), data, program)

    def test_tables(self):
        products = set()
        for version, package in self.packages.items():
            properties = dict(rows(package, "Property"))
            products.add(properties["ProductCode"])
            self.assertEqual((properties["ProductVersion"], properties["UpgradeCode"]), (version, UPGRADE_CODE))
            self.assertEqual({row[-1]: row[1] for row in rows(package, "Component")}, COMPONENTS)
            actions = {row[0]: row[1:4] for row in rows(package, "CustomAction")}
            self.assertEqual(actions["Prepare"], [SYSTEM_DEFERRED_PROGRAM, "ZT.exe", "-Install"])
            # Without it Windows would not replace the program by a newer one; with it, a hash is not wanted.
            self.assertEqual({row[0]: row[4] for row in rows(package, "File")}["ZT.exe"], version + ".0")
            self.assertEqual([row[0] for row in rows(package, "MsiFileHash")], ["LICENSES.txt"])
        self.assertEqual(len(products), 2)

    def test_life(self):
        # Windows tells the old version that it makes way for a newer one, Wine does not: so the newer one says it.
        to_old = f"ALL UPGRADINGPRODUCTCODE={dict(rows(self.packages[NEXT], 'Property'))['ProductCode']}"
        said = f"UPDATE `Upgrade` SET `Remove`='{to_old}' WHERE `ActionProperty`='OLDER'"
        subprocess.run(["msibuild", self.packages[NEXT], "-q", said], check=True)

        program = self.folder / "ZT.exe"
        self.assertEqual(self.msiexec("/i", VERSION), ["-Install"])
        self.assertEqual(program.read_bytes(), AGENT.read_bytes())
        mode = self.world.settings_file.stat().st_mode
        self.assertEqual(mode & 0o777, 0o777)
        self.world.settings = text = history(LastSendTime_X="2014-03-06 10:00:00")

        self.assertEqual(self.msiexec("/i", NEXT), ["-Install"])
        self.assertEqual(self.msiexec("/i", VERSION, code=1603), [])
        program.unlink()
        self.assertEqual(self.msiexec("/i", NEXT, "REINSTALL=ALL", "REINSTALLMODE=omus"), ["-Install"])
        self.assertTrue(program.exists())
        self.assertEqual((self.world.settings, self.world.settings_file.stat().st_mode), (text, mode))

        self.assertEqual(self.msiexec("/x", NEXT), ["-UnInstall"])
        self.assertFalse(self.world.settings_file.exists() or self.folder.exists())
        self.world.prefix.stop_windows()
        entry = self.world.prefix.registry(POLICIES + r"\{9073F4DF-475C-4DAD-93BB-D61B61320470}")
        self.assertEqual(entry["AppPath"], r'"C:\\Program Files\\TOVAgent\\"')


if __name__ == "__main__":
    unittest.main()
