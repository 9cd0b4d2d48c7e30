"""Runs rows of peers.py against the program, and holds after each what no peer may change."""

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
    """Rows share a program that runs until one of them fails or ends it."""

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
        """What is true from now on."""
        new = figures == NEW
        self.localnet.fund(KEY_ADDRESS, 4 if new else 8.2, "1" if new else "2")
        self.localnet.fund(RECIPIENT, 1)
        self.localnet.control("price", price=100 if new else 150.25, change=-1.5 if new else 2.345)

    def stop(self):
        if self.corvane:
            self.running.close()
            self.corvane = None

    def start(self):
        """The program with its key, open, with the figures of before the row."""
        if not self.corvane:
            self.desktop.empty_keyring()
            self.running = contextlib.ExitStack()
            self.corvane = self.running.enter_context(self.run_wallet())
            self.import_key(self.corvane, KEY)
            self.corvane.tree.listen()
        self.refresh(LAST)
        return self.corvane

    def figures(self):
        """Everything on the card that could be taken for an amount."""
        amount = re.compile(r"[\d—∞]|nan", re.IGNORECASE)
        # What a screen reader is told of is the headline.
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
        """A forced cycle ends with the chart."""
        wait_until(lambda: any(entry["name"] == "chart" for entry in self.localnet.requests(after)),
                   "the end of the cycle")

    def refresh(self, figures):
        self.cycle_ended(self.press_refresh())
        self.shows(figures)

    def in_keyring(self, act, *arguments):
        with Keyring(self.desktop.bus_address) as keyring:
            return getattr(keyring, act)(*arguments)

    def prepare(self, protection="none"):
        """A key in the keyring of which the program has heard."""
        self.stop()
        self.desktop.empty_keyring()
        self.in_keyring("create", {"service": SERVICE, "account": KEY_ADDRESS,
                                   "protection": protection, "xdg:schema": "org.corvane.Item"}, SECRET)
        self.accounts_file.parent.mkdir()
        self.accounts_file.write_text(json.dumps({SERVICE: {
            "account": KEY_ADDRESS, "collection": "/org/freedesktop/secrets/collection/login"}}))

    @contextlib.contextmanager
    def run_with_key(self, address=KEY_ADDRESS, **more):
        """The program, which has not read its key yet."""
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
        """Sends what is in the form; nothing has moved before."""
        self.assertEqual(self.localnet.lamports(RECIPIENT), SOL)
        self.corvane.press_button("SEND")
        self.corvane.wait_for(SENT)
        self.assertEqual(self.localnet.lamports(RECIPIENT), 2 * SOL)

    def kept(self):
        """What no peer may change."""
        # Neither about a machine without sound nor about a bus that is slow while others build.
        said = [line for line in self.corvane.messages().splitlines() if not line.startswith(("ALSA", "QSpi"))]
        return self.keys(), self.accounts_file.read_text(), self.corvane.settings(), said

    def opens_and_folds(self):
        self.corvane.leave()
        self.corvane.hover()
