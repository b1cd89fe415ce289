"""UA.dll without a user, in a World: answers the agreement as it is told, and records what it was asked.

    with World() as world:
        agreement = ScriptedAgreement(world)
        agreement.answer(2)
        world.run("-QName", "Office", "-SBXOnly")
        print(agreement.asked)
"""

import shutil
from pathlib import Path

from .paths import WINDOWS
from .world import World

LIBRARY = WINDOWS / "agreement" / "UA.dll"


class ScriptedAgreement:
    """Stands in place of the agreement dialog until remove()."""

    def __init__(self, world: World):
        self.library = world.program_folder / "UA.dll"
        self._answer = world.program_folder / "UA-answer.txt"
        self._asked = world.program_folder / "UA-asked.txt"
        self.install(LIBRARY)

    def install(self, file: Path) -> None:
        """Puts another file in the place of the library."""
        shutil.copy(file, self.library)

    def answer(self, number: int) -> None:
        """1 agrees, 2 disagrees, 3 disagrees without a report; any other number may be given, too. 3 until told."""
        self._answer.write_text(str(number), encoding="ascii")

    @property
    def asked(self) -> list[str]:
        """The questions so far, in order: queue "Office" language "EN" countryIs52 0 -> 2"""
        return self._asked.read_text(encoding="utf-8").splitlines() if self._asked.exists() else []

    def forget(self) -> None:
        """Empties the record."""
        self._asked.unlink(missing_ok=True)

    def remove(self) -> None:
        """Takes the library away, with its answer and its record."""
        for file in (self.library, self._answer, self._asked):
            file.unlink(missing_ok=True)
