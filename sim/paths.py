"""Where the simulated world and what it is made of lie."""

import os
from pathlib import Path

SIM = Path(__file__).resolve().parent
ROOT = SIM.parent
SCRIPTS = SIM / "bin"
PRINTERS = SIM / "printers"
# The build tree of the Windows programs, and what Wine loads of this world.
BUILD = Path(os.environ.get("ZT_BUILD", ROOT / "build" / "windows"))
WINDOWS = BUILD / "sim" / "windows"
