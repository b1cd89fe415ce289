"""What breaks around the agent, one thing at a time: the rows of fuzz.world.faults that take seconds, and a few of
those that take minutes in all."""

import unittest

from fuzz.world.faults import GROUPS
from fuzz.world.stage import Stage


class FaultsTest(unittest.TestCase):
    def test_rows(self):
        with Stage() as stage:
            for group, every in {
                "settings": 1,
                "log": 1,
                "registry": 2,
                "spooler": 5,
                "server": 5,
                "killed": 12,
            }.items():
                for name, row in list(GROUPS[group]())[::every]:
                    with self.subTest(name):
                        stage.reset()
                        row(stage)
