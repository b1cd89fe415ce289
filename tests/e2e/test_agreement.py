"""The sample agreement dialog: its languages, its answers by mouse and keyboard, its size on a dense display."""

import subprocess

from sim.desktop import Display, Hands
from sim.paths import BUILD
from sim.queues import queue_script
from sim.world import Run

from .office import OfficeTestCase

SAMPLE = BUILD / "agreement-sample" / "UA.dll"
ENGLISH = "Product protection"


class SampleTest(OfficeTestCase):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.world.install(SAMPLE)
        cls.display = cls.enterClassContext(Display())
        cls.world.extra_environment["DISPLAY"] = cls.display.name
        # Without a window manager, Wine would wait two seconds for one at the end of each window.
        cls.set_user_registry(r"Software\\Wine\\X11 Driver", '"Managed"="N"')

    @classmethod
    def set_user_registry(cls, key: str, value: str) -> None:
        cls.world.prefix.stop_windows()
        with open(cls.world.prefix.folder / "user.reg", "a", encoding="utf-8") as registry:
            registry.write(f"\n[{key}] 0\n{value}\n")

    def setUp(self) -> None:
        super().setUp()
        self.hands = Hands(self.world)
        self.server = self.report_server()
        self.scripted_printer()
        self.set_flags(DontCheckSkip=1)

    def ask(self) -> Run:
        """A run whose dialog is on the screen."""
        self.server.requests.clear()
        self.world.forget_spooler()
        run = self.start_agent("-SBXOnly")
        self.hands.wait(ENGLISH)
        return run

    def xdotool(self, *words: str) -> str:
        return subprocess.check_output(["env", f"DISPLAY={self.display.name}", "xdotool", *words], text=True)

    def test_languages(self):
        queue = "R&D 100%s – 事務所"  # shown as it is
        self.world.spooler(queue_script(name=queue))
        for language, title, printer, text, *buttons in (
            ("EN", ENGLISH, "Printer: ", "Your printer can", "&Agree", "&Disagree", "Disagree, do not &report"),
            ("de-AT", "Produktschutz", "Drucker: ", "kann sich davor schützen", "A&blehnen", "Ablehnen, nicht &melden"),
            ("fr_CH", "Protection du produit", "Imprimante : ", "Lorsque la protection du produit est activée, l’"),
            ("es", "Protección del producto", "Impresora: ", "tóner vacío", "&Rechazar"),
            ("JA", "製品保護", "プリンター: ", "このプリンターには、空になった", "同意する(&A)", "同意しない(&D)"),
            ("deutsch", ENGLISH, "Printer: ", "Your printer can", "&Agree"),
        ):
            with self.subTest(language):
                run = self.start_agent("-SBXOnly", "-Lang", language, queue=queue)
                shown = self.hands.wait(title)
                for control in (printer + queue, *buttons):
                    self.assertIn(f'"{control}"', shown)
                self.assertIn(text, shown)
                self.assertIn(r"\n\n", shown)
                self.hands.close(title)
                self.finish(run)

    def test_mouse_and_keyboard(self):
        for button, keys, answer in (
            ("Disagree", [], 2),
            (None, ["alt+a"], 1),
            # Neither what is typed when the window comes up, nor Enter, agrees to anything.
            (None, ["a", "d", "space", "Down", "Return"], 3),
            (None, ["Escape"], 3),
            (None, ["shift+Tab", "shift+Tab", "Return"], 2),
        ):
            with self.subTest(button, keys=keys):
                run = self.ask()
                if button:
                    self.hands.press(ENGLISH, button)
                else:
                    self.xdotool("search", "--sync", "--name", ENGLISH, "windowfocus")
                    self.xdotool("key", *keys)
                self.finish(run)
                # 1 leaves the printer alone, 2 is posted and 3 is not.
                posted = "ConnectorSBX.aspx" in [request.page for request in self.server.requests]
                self.assertEqual((bool(self.world.raw_jobs), posted), (answer != 1, answer == 2))

    def size(self) -> tuple[int, int]:
        run = self.ask()
        lines = self.xdotool("search", "--sync", "--name", ENGLISH, "getwindowgeometry", "--shell").splitlines()
        values = dict(line.split("=") for line in lines)
        self.hands.close(ENGLISH)
        self.finish(run)
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def test_size_grows_with_the_scaling(self):
        usual = self.size()
        self.set_user_registry(r"Control Panel\\Desktop", '"LogPixels"=dword:%08x' % 192)
        for before, after in zip(usual, self.size()):
            # Not exactly twice: the system's fonts come in steps.
            self.assertAlmostEqual(after / before, 2, delta=0.25)
