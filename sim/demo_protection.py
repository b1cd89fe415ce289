"""The show of ./demo.sh --protection: product protection is switched on and off as the user wants, and reported."""

import sys

from . import answers
from .agreement import ScriptedAgreement
from .demo import PRINTER, QUEUE, ROADS, Show, pages
from .paths import PRINTERS
from .report_server import ReportServer
from .show_request import show_request
from .snmp_agent import start_agent
from .world import Result, World

UNPROTECTED = PRINTERS / "extended.mib"
AGREE, DISAGREE = 1, 2
CHECK, POST = "CheckSBX.aspx", "ConnectorSBX.aspx"
ANSWERS = {AGREE: "agrees", DISAGREE: "disagrees"}
PROTECT = "@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES="


class Road:
    """One start after the other, each with what it asked, sent and printed."""

    def __init__(self, show: Show, world: World, server: ReportServer):
        self._show, self._world, self._server = show, world, server
        self._agreement = ScriptedAgreement(world)

    def start(self, title: str, answer: int) -> Result:
        """Starts the agent for a user who answers so, and tells what happened."""
        show, world = self._show, self._world
        self._agreement.answer(answer)
        self._agreement.forget()
        self._server.requests.clear()
        world.forget_spooler()
        show.step(f'{title}: ZT.exe -QName "{QUEUE}" -SBXOnly')
        result = world.run("-QName", QUEUE, "-SBXOnly")
        for question in self._agreement.asked:
            print(f"   UA.dll was asked, and the user {ANSWERS[answer]}:")
            show.block(question)
        for request in self._server.requests:
            print("   The report server was sent:")
            show.block(show_request(request))
        for job in self.jobs:
            print("   The printer got a raw job:")
            show.block(repr(job))
        print("   The trace log:")
        show.block("\n".join(f"{line.module},{line.line}\t{line.text}" for line in result.log))
        print("   ZT.ini after:")
        show.block(world.settings)
        show.expect(result.exit_code == 0, f"exit code 0, after {result.seconds:.2f} s")
        return result

    @property
    def jobs(self) -> list[str]:
        return [job.decode("latin-1") for job in self._world.raw_jobs]

    @property
    def asked(self) -> list[str]:
        return self._agreement.asked

    @property
    def pages(self) -> list[str]:
        return pages(self._server, 0)

    @property
    def report(self) -> str:
        return self._server.requests[-1].fields.get("data", "") if self._server.requests else ""


def main() -> int:
    show = Show()
    with World() as world, ReportServer() as server:
        world.spooler(ROADS["tcp"])
        world.log_to(4)
        world.flags(URL=server.url)
        road = Road(show, world, server)

        show.step(f"A printer whose protection is off, of country 52: {UNPROTECTED.name}")
        show.block(
            "Its toner life is past the limit that the report server will tell, so the user is asked whether it is\n"
            "to protect itself."
        )
        with start_agent(UNPROTECTED):
            road.start("The user agrees", AGREE)
            show.expect(road.pages == [CHECK], "the server was asked for the model's limits, and sent no report")
            show.expect(
                [line.endswith("countryIs52 1 -> 1") for line in road.asked] == [True], "the user was asked once"
            )
            show.expect(road.jobs == [PROTECT + "ON\r\n"], "the printer was told to protect itself")

        world.settings_file.unlink(missing_ok=True)
        show.step(f"A printer whose protection is on: {PRINTER.name}")
        show.block("Its toner life is past the limit, so the user is asked whether it is to stay on.")
        with start_agent(PRINTER):
            result = road.start("The user disagrees", DISAGREE)
            show.expect(road.jobs == [PROTECT + "OFF\r\n"], "the printer was told not to protect itself")
            show.expect(road.pages == [CHECK, POST], "the server was asked for the limits, then sent the report")
            show.expect("<SBX>18282</SBX>" in road.report and "<Toner>" in road.report, "it holds life and toners")
            show.expect("4 send sucessfully..." in result.log_texts, '"send sucessfully..."')
            show.expect("LastPPSendTime_" in world.settings, "the history holds the time of this report")

            result = road.start("The next start, with the same toner", DISAGREE)
            skipped = "[UA] CanSkipByLastPPSendTime - skip send success local. bye~"
            show.expect(result.log_texts[-1:] == ["3 " + skipped], f'"{skipped}"')
            show.expect(road.pages == [CHECK], "no report was sent")

            server.answer(CHECK, answers.check_sbx("NOMORESERVICE"))
            result = road.start("The server ends the service", AGREE)
            show.expect(result.log_texts[-1:] == ["4 ppa service stopped. bye~"], '"ppa service stopped. bye~"')
            result = road.start("Every later start", AGREE)
            show.expect(result.log_texts[-1:] == ["4 PPA disabled! bye~ ZT"], '"PPA disabled! bye~ ZT"')
            show.expect(road.pages == [] and road.asked == [], "neither server nor user was asked")
        return show.close()


if __name__ == "__main__":
    sys.exit(main())
