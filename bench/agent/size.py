"""What each room and library contributes to ZT.exe, in bytes, by the linker's map.

    cmake --build --preset windows --target ZT && python3 -m bench.agent.size
"""

import collections
import re

from sim.world import AGENT

# A piece of the program: its section (on a line of its own when long), address, size and object file.
PIECE = re.compile(r"^ (\.[^\s]+)\s+0x([0-9a-f]+)\s+0x([0-9a-f]+) (\S+)$", re.MULTILINE)
# What takes no room in the file.
NO_BYTES = (".bss", "COMMON")

LIBRARIES = (  # by a part of the object file's path; the first that fits
    ("tinyxml2", "TinyXML-2"),
    ("ltrans", "TinyXML-2"),  # nothing else is optimised at link time
    ("libstdc++", "C++ library"),
    ("libsupc++", "C++ library"),
    ("libgcc", "C++ exceptions"),
    ("pthread", "winpthreads"),
    ("delayimp", "late loading"),
    ("delay-load/", "late loading"),
    ("libmingw", "C runtime"),
    ("libmsvcrt", "C runtime"),
    ("crt2", "C runtime"),
    ("crtbegin", "C runtime"),
    ("crtend", "C runtime"),
    ("/lib/", "imports"),
)


def owner_of(path: str) -> str:
    """The room or library that an object file belongs to."""
    for part, library in LIBRARIES:
        if part in path:
            return library
    room = re.split(r"/(?:CMakeFiles|lib\w+\.a)", path)[0]
    return room if not room.startswith("/") else "imports"


def main() -> None:
    text = AGENT.with_suffix(".map").read_text()
    text = text[text.index("Linker script and memory map") :]
    sizes: collections.Counter[str] = collections.Counter()
    for section, address, size, path in PIECE.findall(text):
        if int(address, 16) != 0 and not section.startswith(NO_BYTES) and not section.startswith(".debug"):
            sizes[owner_of(path)] += int(size, 16)
    total = AGENT.stat().st_size
    for owner, size in sizes.most_common():
        print(f"{size:8} {owner}")
    print(f"{total - sizes.total():8} tables of exports, headers, and what fills up the sections")
    print(f"{total:8} in all")


if __name__ == "__main__":
    main()
