"""Helpers for tests of a wallet without a user interface (wallet_actor)."""

import os
import pathlib
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
from desktop import Keyring, VirtualDesktop  # noqa: E402

SERVICE = "corvane.signing-key"
A, B, NONE = "4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU", "9WzDXwBbmkg8ZTbNMqUxvQRAyrZzDsGYdLVL9zYtAWWM", "none"
SEEDS = {A: bytes(range(200, 232)).hex(), B: bytes(range(100, 132)).hex()}


class Child:
    """A program that is controlled by lines of text, once it is ready; killed at the end of the test at the
    latest."""

    def __init__(self, test, *command, **environment):
        self.process = subprocess.Popen([*map(str, command)], env=os.environ | environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        test.addCleanup(self.end)
        test.assertEqual(self.line(), "ready")

    def line(self):
        return self.process.stdout.readline().strip()

    def ask(self, question):
        """The line of the answer; empty if the program has died."""
        print(question, file=self.process.stdin, flush=True)
        return self.line()

    def end(self):
        self.process.kill()
        self.process.communicate()


class Wallet(Child):
    def __init__(self, test, accounts, authenticator, *more, **environment):
        super().__init__(test, os.environ["WALLET_ACTOR"], accounts, authenticator, *more, **environment)


def store(account):
    return f"store {SEEDS[account]} {account}"


class KeyringTest(unittest.TestCase):
    """Tests with a real keyring, which is initially empty."""

    def setUp(self):
        self.desktop = self.enterContext(
            VirtualDesktop(window_manager=False, compositor=False, backdrop=False, keyring=True))
        self.accounts = self.desktop.folder / "accounts.json"
        # One connection for all questions: GNOME Keyring 48 aborts now and then when one connection is
        # made while another ends.
        self.keyring = Keyring(self.desktop.bus_address)

    def wallet(self, *bounds_ms, **environment):
        return Wallet(self, self.accounts, "willing", *bounds_ms, **(self.desktop.environment | environment))

    def in_keyring(self, act, *arguments):
        with self.keyring as keyring:
            return getattr(keyring, act)(*arguments)

    def items(self, service=SERVICE):
        """The items' attributes; when they arrive, the service has completed all earlier requests."""
        return [attributes for attributes, _ in self.in_keyring("items", service)]
