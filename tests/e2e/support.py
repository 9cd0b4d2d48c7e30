"""Base classes and helpers of the end-to-end tests."""

import contextlib
import os
import pathlib
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from desktop import Corvane, KWinDesktop, Localnet, SwayDesktop, VirtualDesktop, processes, wait_until  # noqa: E402
from desktop.corvane import PROGRAM  # noqa: E402

processes.interrupt_on_terminate()

ADDRESS = "4uQeVj5tqViQh7yWWGStvkEG1Zmhx6uasJtWCJziofM"
SHORT_ADDRESS = "4uQe…iofM"
# The key with the seed 1, 2, … 32, in the format that other wallets export.
KEY_ADDRESS = "9C6hybhQ6Aycep9jaUnP6uL9ZYvDjUp1aSkFWPUFJtpj"
KEY = "2Ana1pUpv2ZbMVkwF5FXapYeBEjdxDatLn7nvJkhgTSdZd8hbDHTd21as7EAsg7ypityqfsw2pMQKJcVDVcAEsd"
RECIPIENT = "Hx1fZkBAvtdAyy5RwEc3QuLnHYKCCFGSaDEXGqLGxGAT"
PRICE = {"price": 150.25, "change": 2.345, "chart": None}


DESKTOPS = {"x11": VirtualDesktop, "sway": SwayDesktop, "kwin": KWinDesktop}
DESKTOP = os.environ.get("CORVANE_DESKTOP", "x11")


class IslandTest(unittest.TestCase):
    """Tests with one cluster and one desktop, which is created with `desktop_kind`. CORVANE_DESKTOP chooses among the
    `desktops` on which they can run."""

    desktop_kind = {}
    desktops = tuple(DESKTOPS)

    @classmethod
    def setUpClass(cls):
        if DESKTOP not in cls.desktops:
            raise unittest.SkipTest(f"not for {DESKTOP}")
        cls.localnet = cls.enterClassContext(Localnet())
        cls.desktop = cls.enterClassContext(DESKTOPS[DESKTOP](**cls.desktop_kind))

    def setUp(self):
        self.localnet.control("clear-faults")
        self.localnet.control("clear-log")
        self.localnet.control("price", **PRICE)
        for cluster in ("mainnet", "devnet"):
            self.localnet.fund(ADDRESS, 8.2, "2", cluster)

    def run_corvane(self, settings=None, **more):
        """The program, watching the funded address."""
        if settings is None or isinstance(settings, dict):
            settings = {"corvane.address": ADDRESS, **(settings or {})}
        return Corvane(self.desktop, self.localnet, settings=settings, **more)

    def colour_at(self, x, y):
        """The colour of the screen at a position, given as for Corvane."""
        screen, scale = self.desktop.screen, self.desktop.scale
        place = screen.width // 2 + round(x * scale), round(y * scale)
        return screen.capture(*place, 1, 1).at(*place)

    def assert_opens_and_folds(self, corvane):
        corvane.hover()
        corvane.leave()


class WalletTest(IslandTest):
    """Tests of a wallet whose key is in a real keyring, protected by polkit if run under with_polkit.py.
    Every test starts with an empty keyring."""

    desktop_kind = {"keyring": True}
    tester = os.environ.get("CORVANE_TESTER")

    def setUp(self):
        super().setUp()
        self.desktop.empty_keyring()

    @contextlib.contextmanager
    def run_wallet(self, settings=None, manner="authenticate", **more):
        """The program with its key in the keyring. Prompts to prove presence are answered according to
        `manner`: authenticate, refuse, dismiss or hang."""
        settings = settings or {"corvane.address": ""}
        with self.run_corvane(settings, demo=False, **more) as corvane:
            with self.agent(corvane, manner):
                yield corvane

    @contextlib.contextmanager
    def agent(self, corvane, manner):
        """An agent that answers polkit's prompts; yields the reasons that were shown."""
        if not self.tester:
            yield None
            return
        command = ["/usr/bin/python3", str(ROOT / "tests/services/polkit_agent.py"),
                   str(corvane.process_id), manner, self.tester,
                   os.environ["CORVANE_TESTER_PASSWORD"]]
        with open(self.desktop.folder / "agent", "w+", encoding="utf-8") as reasons:
            agent = processes.start(command, self.desktop.environment,
                                    self.desktop.folder / "agent.log", stdout=reasons)

            def shown():
                return (self.desktop.folder / "agent").read_text(encoding="utf-8").splitlines()
            try:
                wait_until(lambda: "ready" in shown(), "polkit's agent")
                yield lambda: shown()[1:]
            finally:
                processes.stop(agent)

    def import_key(self, corvane, text):
        """Imports a key as a user does, starting from the first card."""
        corvane.hover()
        corvane.press_button("IMPORT")
        corvane.wait_for("IMPORT A WALLET")
        corvane.fill("secret key", text)
        corvane.press_button("IMPORT")
        corvane.wait_for("TOTAL BALANCE")


def solana(script, *arguments):
    """The output of a JavaScript program that may use the cluster's library."""
    command = [os.environ.get("CORVANE_NODE", "node"), "--input-type=module", "--eval", script,
               "--", *arguments]
    done = subprocess.run(command, cwd=ROOT / "tools/localnet", capture_output=True, text=True,
                          timeout=30, check=False)
    if done.returncode != 0:
        raise AssertionError(done.stderr)
    return done.stdout.strip()


__all__ = ["ADDRESS", "KEY", "KEY_ADDRESS", "PROGRAM", "RECIPIENT", "SHORT_ADDRESS", "IslandTest", "WalletTest",
           "solana", "wait_until"]
