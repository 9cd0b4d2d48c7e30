"""Runs rows of peers.py with the program, and checks after each that no peer has changed the wallet's
state."""

import contextlib
import json
import re

from support import KEY, KEY_ADDRESS, RECIPIENT, WalletTest, wait_until

from desktop import Keyring
from peers import LAST, NEW, SENT

SERVICE = "corvane.signing-key"
SECRET = bytes(range(1, 33))
SHORT = "9C6h…Jtpj"
SOL, FEE = 1_000_000_000, 5000


class PeersTest(WalletTest):
    """Rows share one running program, until one of them fails or stops it."""

    maxDiff = None  # what the program has warned of is seen whole

    def setUp(self):
        super().setUp()
        self.corvane = None
        self.addCleanup(self.stop)

    def run_rows(self, rows):
        for row in rows:
            with self.subTest(f"{row.peer} {row.does}"):
                self.localnet.control("clear-faults")
                self.world(LAST)
                act, *arguments = row.act
                try:
                    getattr(self, act)(row, *arguments)
                except BaseException:
                    self.stop()
                    raise

    @property
    def accounts_file(self):
        return self.desktop.folder / "xdg_data_home/corvane/accounts.json"

    def world(self, figures):
        """Sets the true values from now on."""
        new = figures == NEW
        self.localnet.fund(KEY_ADDRESS, 4 if new else 8.2, "1" if new else "2")
        self.localnet.fund(RECIPIENT, 1)
        self.localnet.control("price", price=100 if new else 150.25, change=-1.5 if new else 2.345)

    def stop(self):
        if self.corvane:
            self.running.close()
            self.corvane = None

    def start(self):
        """The program with its key and an open island, showing the figures from before the row."""
        if not self.corvane:
            self.desktop.empty_keyring()
            self.running = contextlib.ExitStack()
            self.corvane = self.running.enter_context(self.run_wallet())
            self.import_key(self.corvane, KEY)
            self.corvane.tree.listen()
        self.refresh(LAST)
        return self.corvane

    def figures(self):
        """All texts on the card that look like an amount."""
        amount = re.compile(r"[\d—∞]|nan", re.IGNORECASE)
        # The text for screen readers contains the headline.
        return {text.removeprefix("TOTAL BALANCE ") for text in self.corvane.tree.texts()
                if amount.search(text) and text != SHORT}

    def shows(self, figures):
        wait_until(lambda: self.figures() == set(figures),
                   lambda: f"{figures}, but {self.figures()}")

    def press_refresh(self):
        after = max((entry["seq"] for entry in self.localnet.requests()), default=0)
        self.corvane.tree.find("Refresh").press()
        return after

    def cycle_ended(self, after):
        """Waits for the end of a forced cycle, which is the request for the chart."""
        wait_until(lambda: any(entry["name"] == "chart" for entry in self.localnet.requests(after)),
                   "the end of the cycle")

    def refresh(self, figures):
        self.cycle_ended(self.press_refresh())
        self.shows(figures)

    def in_keyring(self, act, *arguments):
        with Keyring(self.desktop.bus_address) as keyring:
            return getattr(keyring, act)(*arguments)

    def prepare(self, protection="none"):
        """Stores a key in the keyring and its account in the accounts file."""
        self.stop()
        self.desktop.empty_keyring()
        self.in_keyring("create", {"service": SERVICE, "account": KEY_ADDRESS,
                                   "protection": protection, "xdg:schema": "org.corvane.Item"}, SECRET)
        self.accounts_file.parent.mkdir()
        self.accounts_file.write_text(json.dumps({SERVICE: {
            "account": KEY_ADDRESS, "collection": "/org/freedesktop/secrets/collection/login"}}))

    @contextlib.contextmanager
    def run_with_key(self, address=KEY_ADDRESS, **more):
        """Starts the program, which has not read its key yet."""
        with self.run_corvane({"corvane.address": address}, demo=False, **more) as self.corvane:
            try:
                yield self.corvane
            finally:
                self.corvane = None

    def keys(self):
        return [(attributes["account"], secret)
                for attributes, secret in self.in_keyring("items", SERVICE)]

    def fill_form(self):
        self.corvane.press_button("SEND")
        self.corvane.wait_for("TO")
        self.corvane.fill("TO", RECIPIENT)
        self.corvane.fill("AMOUNT", "1")
        self.corvane.wait_enabled("SEND")

    def send_one(self):
        """Sends the form; checks that nothing was sent before."""
        self.assertEqual(self.localnet.lamports(RECIPIENT), SOL)
        self.corvane.press_button("SEND")
        self.corvane.wait_for(SENT)
        self.assertEqual(self.localnet.lamports(RECIPIENT), 2 * SOL)

    def kept(self):
        """The state that no peer may change, and the program's messages."""
        # Left out: a machine without sound, an accessibility bus that is slow while others build, and a
        # screen reader that asks for a text which is gone.
        others = ("ALSA", "QSpi", "qt.accessibility.atspi")
        said = [line for line in self.corvane.messages().splitlines() if not line.startswith(others)]
        settings = self.corvane.settings()
        settings.pop("corvane.transfers", None)
        return self.keys(), self.accounts_file.read_text(), settings, said

    def opens_and_folds(self):
        self.corvane.leave()
        self.corvane.hover()
