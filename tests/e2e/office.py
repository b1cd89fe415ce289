"""The office that the end-to-end tests work in: a queue on a TCP/IP port, and runs of the agent against it."""

import unittest

from ztsim.world import Result, World

QUEUE = "Office"
DRIVER = "Velnora RV-2160 PCL"


def queue_script(
    name: str = QUEUE,
    driver: str = DRIVER,
    port: str = "IP_127.0.0.1",
    jobs: str = "0",
    address: str = "127.0.0.1",
    more_of_queue: str = "",
    more_of_port: str = "",
) -> str:
    """A spooler script with one queue on a standard TCP/IP port."""
    return f"""
[queue {name}]
driver = {driver}
port = {port}
jobs = {jobs}
{more_of_queue}

[port {port}]
monitor = TCPMON.DLL
address = {address}
{more_of_port}
"""


class OfficeTestCase(unittest.TestCase):
    """A test with Windows worlds of its own, in which the trace log is on."""

    def make_world(self, spooler: str = queue_script(), level: object = 4, **flags: object) -> World:
        world = World()
        self.addCleanup(world.__exit__, None, None, None)
        world.spooler(spooler)
        world.log_to(level)
        if flags:
            world.flags(**flags)
        return world

    def run_agent(self, world: World, *arguments: str) -> Result:
        """Starts the agent for the queue and checks what holds for every run: exit code 0 and no handle left."""
        result = world.run("-QName", QUEUE, *arguments)
        self.assertEqual(result.exit_code, 0)
        self.assertEqual(set(world.spooler_handles_left) - {0}, set())
        return result

    def assert_ends_with(self, result: Result, *texts: str) -> None:
        """The last lines of the run's trace log, as severity and message."""
        self.assertEqual(result.log_texts[-len(texts) :], list(texts))
