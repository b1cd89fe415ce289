"""USB printers for a simulated Windows: lays the driver, its script and the printers' registry keys into a prefix.

    with World() as world:
        usb = UsbPrinters(world.prefix, SCRIPT)
        ...
        print(usb.transcript)

By hand, for a prefix in which Windows does not run:

    python3 -m sim.usb_printers PREFIX SCRIPT

A printer's section gives its port number as "port = 1", beside the keys that UsbScript.h describes; without it, the
printer has no number. Printers are there from the start of Windows; all other keys may change while it runs.
"""

import re
import shutil
import sys
from pathlib import Path

from .paths import WINDOWS
from .prefix import Prefix

DRIVER = WINDOWS / "usb" / "usbprint-sim.sys"

INTERFACE_CLASS = "{28d78fad-5a12-11d1-ae5b-0000f803a8c2}"
DEVICE_CLASS = "{4d36e979-e325-11ce-bfc1-08002be10318}"
CONTROL_SET = r"System\CurrentControlSet"


def device_path(name: str) -> str:
    """The device path of a printer: VID_1A2B&PID_0001#SN0001 is the name that its section in the script has."""
    return rf"\\?\usb#{name}#{INTERFACE_CLASS}".lower()


def read_ports(script: str) -> dict[str, int | None]:
    """The printers of a script with their port numbers."""
    ports: dict[str, int | None] = {}
    name = None
    for line in script.splitlines():
        if match := re.fullmatch(r"\s*\[printer\s+(.*?)\s*\]\s*", line, re.IGNORECASE):
            name = match[1]
            ports[name] = None
        elif name and (match := re.fullmatch(r"\s*port\s*=\s*(\d+)\s*", line, re.IGNORECASE)):
            ports[name] = int(match[1])
    return ports


class UsbPrinters:
    """The simulated USB printers of a prefix. Make it before Windows runs there."""

    def __init__(self, prefix: Prefix, script: str):
        self.folder = prefix.drive / "usbprint"
        self.folder.mkdir()
        shutil.copy(DRIVER, self.folder)
        self.script(script)
        prefix.set_registry(
            rf"{CONTROL_SET}\Services\usbprint-sim",
            {"Type": 1, "Start": 2, "ErrorControl": 1, "ImagePath": rf"C:\usbprint\{DRIVER.name}"},
        )
        for name, port in read_ports(script).items():
            self._register(prefix, name, port)

    def script(self, text: str) -> None:
        """Changes the script; each key begins with its first answer again. Printers neither come nor go by it."""
        (self.folder / "printers.ini").write_bytes(text.encode("latin-1"))

    def document(self, content: bytes, name: str = "document.xml") -> str:
        r"""Stores a file for the script and answers its name there: "document = file " + usb.document(b"<root/>")."""
        (self.folder / name).write_bytes(content)
        return rf"\??\C:\usbprint\{name}"

    @property
    def transcript(self) -> list[str]:
        """What the printers were asked, in order: "NAME read 16 -> 16"."""
        file = self.folder / "transcript.txt"
        return file.read_text(encoding="latin-1").splitlines() if file.exists() else []

    def forget(self) -> None:
        """Empties the transcript."""
        (self.folder / "transcript.txt").unlink(missing_ok=True)

    @staticmethod
    def _register(prefix: Prefix, name: str, port: int | None) -> None:
        instance = "USB\\" + name.replace("#", "\\")
        prefix.set_registry(
            rf"{CONTROL_SET}\Enum\{instance}",
            {"ClassGUID": DEVICE_CLASS, "Class": "Printer", "DeviceDesc": "USB printer"},
        )
        interface = rf"{CONTROL_SET}\Control\DeviceClasses\{INTERFACE_CLASS}\##?#USB#{name}#{INTERFACE_CLASS}"
        prefix.set_registry(interface, {"DeviceInstance": instance})
        prefix.set_registry(rf"{interface}\#", {"SymbolicLink": device_path(name)})
        prefix.set_registry(rf"{interface}\#\Control", {"Linked": 1})
        prefix.set_registry(rf"{interface}\#\Device Parameters", {} if port is None else {"Port Number": port})


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: python3 -m sim.usb_printers PREFIX SCRIPT")
    folder = Path(sys.argv[1])
    if not (folder / "system.reg").is_file():
        sys.exit(f"{folder} is no Wine prefix")
    UsbPrinters(Prefix(folder), Path(sys.argv[2]).read_text(encoding="latin-1"))
