"""What the end-to-end tests share."""

import pathlib
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from desktop import Corvane, Localnet, VirtualDesktop, processes, wait_until  # noqa: E402
from desktop.corvane import PROGRAM  # noqa: E402

processes.interrupt_on_terminate()

ADDRESS = "4uQeVj5tqViQh7yWWGStvkEG1Zmhx6uasJtWCJziofM"
SHORT_ADDRESS = "4uQe…iofM"
PRICE = {"price": 150.25, "change": 2.345, "chart": None}


class IslandTest(unittest.TestCase):
    """Tests with one cluster and one desktop of the kind that `desktop` says."""

    desktop_kind = {}

    @classmethod
    def setUpClass(cls):
        cls.localnet = cls.enterClassContext(Localnet())
        cls.desktop = cls.enterClassContext(VirtualDesktop(**cls.desktop_kind))

    def setUp(self):
        self.localnet.control("clear-faults")
        self.localnet.control("price", **PRICE)
        for cluster in ("mainnet", "devnet"):
            self.localnet.fund(ADDRESS, 8.2, "2", cluster)

    def run_corvane(self, settings=None, **more):
        """The program, watching the funded address, with a key of its own."""
        if settings is None or isinstance(settings, dict):
            settings = {"corvane.address": ADDRESS, **(settings or {})}
        return Corvane(self.desktop, self.localnet, settings=settings, **more)

    def colour_at(self, x, y):
        """The colour of the screen at a place given as for Corvane."""
        screen, scale = self.desktop.screen, self.desktop.scale
        place = screen.width // 2 + round(x * scale), round(y * scale)
        return screen.capture(*place, 1, 1).at(*place)

    def assert_opens_and_folds(self, corvane):
        corvane.hover()
        corvane.leave()



__all__ = ["ADDRESS", "PROGRAM", "ROOT", "SHORT_ADDRESS", "IslandTest", "wait_until"]
