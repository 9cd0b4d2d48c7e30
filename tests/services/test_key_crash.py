"""A wallet or a keyring that is killed at any step leaves a complete key or none."""

import itertools
import json
import os
import shutil

from gi.repository import GLib
from wallet_child import NONE, SEEDS, SERVICE, A, B, KeyringTest, store

NOT_AVAILABLE = "-25291"


class KeyCrashTest(KeyringTest):
    def setUp(self):
        super().setUp()
        self.armed = self.desktop.folder / "armed"

    def whole_key(self, wallet):
        """The account of the wallet's key; checks that the key is complete."""
        account = wallet.ask("account")
        self.assertEqual(wallet.ask("read why"), SEEDS.get(account, "nothing"))
        return account

    def kill_switch(self, step, when):
        """The environment that kills a program at this step after it was armed."""
        self.armed.unlink(missing_ok=True)
        return {"LD_PRELOAD": os.environ["KILL_POINTS"], "CORVANE_KILL_STEP": str(step),
                "CORVANE_KILL_WHEN": when, "CORVANE_KILL_ARMED": str(self.armed)}

    def place_old_key(self, wallet):
        self.assertEqual(wallet.ask(store(A)), "0")
        self.assertEqual(self.items(f"{SERVICE}.unfinished"), [])

    def test_a_killed_wallet_leaves_the_old_key_no_key_or_the_new_key(self):
        wallet = self.wallet()
        for command, outcomes in ((store(B), {A, B, NONE}), ("remove", {A, NONE})):
            seen = set()
            for when in ("before", "after"):
                for step in itertools.count(1):
                    with self.subTest(command=command[:6], when=when, step=step):
                        died = False
                        self.place_old_key(wallet)
                        victim = self.wallet(**self.kill_switch(step, when))
                        self.armed.touch()
                        died = not victim.ask(command)
                        victim.end()
                        items = self.items()
                        # The account that would be returned for a locked keyring, before the wallet corrects
                        # it.
                        remembered = json.loads(self.accounts.read_text()).get(SERVICE, {}).get("account")
                        account = self.whole_key(wallet)
                        seen.add(account)
                        self.assertEqual([item["account"] for item in items], [] if account == NONE else [account])
                        if items:
                            self.assertEqual(remembered, account)
                    if not died:
                        break
                self.assertGreater(step, 10)
            self.assertEqual(seen, outcomes)

    def test_a_killed_keyring_leaves_a_whole_key_or_none(self):
        # A copy without the daemon's privileges, with which it would ignore some environment variables.
        daemon = shutil.copyfile(shutil.which("gnome-keyring-daemon"), self.desktop.folder / "keyring")
        daemon.chmod(0o700)
        wallet, seen, died = self.wallet(), set(), True
        for step in itertools.count(1):
            self.desktop.stop_keyring()
            self.desktop.start_keyring(program=daemon, environment=self.kill_switch(step, "after"))
            self.place_old_key(wallet)
            self.armed.touch()
            stored = wallet.ask(store(B)) == "0"
            try:
                died = self.items() is None
            except GLib.Error:
                died = True
            self.desktop.stop_keyring()
            self.desktop.start_keyring()
            self.assertLessEqual(len(self.items()), 1)
            account = self.whole_key(wallet)
            seen.add(account)
            self.assertTrue(not stored or account == B)
            if not died:
                break
        self.assertGreater(step, 10)
        self.assertEqual(seen, {A, B, NONE})

    def test_a_program_without_a_bus_has_no_keychain(self):
        wallet = self.wallet(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        self.assertEqual(self.whole_key(wallet), NONE)
        self.assertEqual(wallet.ask("remove"), NOT_AVAILABLE)
        self.assertEqual(wallet.ask(store(B)), NOT_AVAILABLE)
