"""ZT.ini: whatever stands in it, a run ends in order, and what it records is found by the next one."""

import unittest

from sim import answers
from sim.agreement import ScriptedAgreement
from sim.answers import Gate
from sim.queues import QUEUE, queue_script
from sim.world import World

from .office import SERVER_URL, OfficeTestCase, history

SENT = "4 send sucessfully..."
SKIPPED = "4 skip send success local. bye~"
LAST_SEND = "LastSendTime_VIRTUAL0001"
OLD = "2014-03-06 10:00:00"


class SettingsTest(OfficeTestCase):
    def setUp(self):
        super().setUp()
        self.set_flags(VirtualTest=1)
        self.server = self.report_server()

    def test_left_over_lines_of_a_longer_file_do_not_come_back(self):
        # Each file gets shorter by more than its last line takes, which then stays whole behind the new text.
        agreement = ScriptedAgreement(self.world)
        self.addCleanup(agreement.remove)
        agreement.answer(2)
        self.server.answer("CheckDate.aspx", answers.check_date(), answers.check_date("NOMORESERVICE"))
        countries = ", ".join(map(str, range(100, 150)))
        policy = f"[Common]\r\nNSLanguageCode={countries}\r\nSBXPolicyReceived=1\r\n"
        sent = history(LastPPSendTime_VIRTUAL0001=OLD, TonerChangeCount_VIRTUAL0001=3)
        near = "3 [UA] CanSkipByLastPPSendTime - skip send success local. bye~"
        enabled = "[Common]\r\nZOLTEnabled=1 ; ZOLTEnabled=2 ends it\r\n"
        for name, arguments, text, *ends in (
            ("comment", [], f"; {'-' * 99}\r\n" + history(**{LAST_SEND: OLD}), SENT, SKIPPED),
            ("shorter list", ["-SBXOnly"], policy + sent, SENT, near),
            ("end of service", [], enabled, "4 service stopped. bye~", "4 zolt disabled! bye~ ZT"),
        ):
            with self.subTest(name):
                self.world.settings = text
                self.assertEqual([self.run_agent(*arguments).log_texts[-1] for _ in ends], ends)
                self.assertGreaterEqual(len(self.world.settings), len(text))  # on purpose

    def test_run_that_is_cut_off_leaves_the_file_alone(self):
        self.world.settings = text = history(LastSendTime_OTHER=OLD)
        gate = Gate(answers.upload())
        self.server.answer("Connector.aspx", gate.answer)
        run = self.start_agent()
        gate.wait_for_visitor()
        run.stop()
        gate.open()
        self.assertEqual(self.world.settings, text)

    def test_times_are_those_of_the_place(self):
        with World(time_zone="JST-9") as world:
            world.spooler(queue_script())
            world.log_to(4)
            world.flags(VirtualTest=1, URL=SERVER_URL)
            self.assertEqual(world.run("-QName", QUEUE).log_texts[-1], SENT)
            time = world.settings.split("=")[1].strip()
            self.assertLessEqual(world.time_text(days_ago=5 / 1440), time)
            self.assertLessEqual(time, world.time_text())
            for days, end in ((29.8, SKIPPED), (30.2, SENT)):
                world.settings = history(**{LAST_SEND: world.time_text(days)})
                self.assertEqual(world.run("-QName", QUEUE).log_texts[-1], end)


if __name__ == "__main__":
    unittest.main()
