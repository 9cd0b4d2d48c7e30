"""The keychain of a wallet without a user interface (wallet_actor) on a real keyring."""

import base64
import itertools
import json
import pathlib
import shutil
import signal
import subprocess

from wallet_child import NONE, SEEDS, SERVICE, A, B, Child, KeyringTest, store

from desktop import wait_until

SUCCESS, NOT_AVAILABLE, AUTH_FAILED, DUPLICATE, NOT_FOUND = "0", "-25291", "-25293", "-25299", "-25300"
READ = "read why"
CREATION = b"CreateCollection"


class SecretServiceTest(KeyringTest):
    def expect(self, wallet, **answers):
        """Checks the wallet's answers to these one-word commands."""
        for question, answer in answers.items():
            self.assertEqual(wallet.ask(READ if question == "read" else question), answer, question)

    def restart_keyring(self, unlocked=True):
        self.desktop.stop_keyring()
        self.desktop.start_keyring(unlocked)

    def listen(self):
        """Records the messages on the bus. Returns a function that returns all of them up to now."""
        traffic, ends = self.desktop.folder / "traffic", itertools.count()
        with traffic.open("wb") as output:
            monitor = subprocess.Popen(["dbus-monitor", "--address", self.desktop.bus_address, "--binary"],
                                       stdout=output)
        self.addCleanup(monitor.wait)
        self.addCleanup(monitor.kill)

        def heard():
            end = f"End{next(ends)}Sent"

            def has_ended():
                # Sent until the monitor has recorded it, and so all earlier messages.
                subprocess.run(["dbus-send", "--session", "--dest=org.freedesktop.DBus", "/",
                                f"org.corvane.{end}"], env=self.desktop.environment, check=True)
                return end.encode() in traffic.read_bytes()
            wait_until(has_ended, "the recording")
            return traffic.read_bytes()
        heard()
        return heard

    def test_keeps_one_item_and_hands_it_out_by_its_protection(self):
        wallet = self.wallet()
        for protection, prompts in (("user-presence", "1"), ("none", "0")):
            with self.subTest(protection):
                self.expect(wallet, account=NONE, remove=NOT_FOUND)
                self.assertEqual(wallet.ask(f"add {SEEDS[A]} {A} {protection}"), SUCCESS)
                for again in (A, B):
                    self.assertEqual(wallet.ask(f"add {SEEDS[A]} {again} {protection}"), DUPLICATE)
                item, = self.items()
                self.assertEqual((item["account"], item["protection"]), (A, protection))
                self.expect(wallet, account=A, asked="0", read=SEEDS[A])
                self.expect(wallet, asked=prompts)
                wallet.ask("agree no")
                self.expect(wallet, read="nothing" if protection == "user-presence" else SEEDS[A],
                            protected="yes" if protection == "user-presence" else "no")
                wallet.ask("agree yes")
                wallet.ask("asked")
                self.expect(wallet, remove=SUCCESS)
                self.assertEqual(self.items(), [])

    def test_a_context_opens_the_protected_item_once_after_it_has_passed(self):
        wallet = self.wallet()
        self.assertEqual(wallet.ask(store(A)), SUCCESS)
        self.expect(wallet, open="nothing")
        self.assertEqual(wallet.ask("evaluate why"), "passed")
        self.expect(wallet, open=SEEDS[A])
        self.expect(wallet, open="nothing", asked="1")

    def test_a_locked_keyring_is_not_taken_for_an_empty_one(self):
        wallet = self.wallet()
        self.assertEqual(wallet.ask(store(A)), SUCCESS)
        for lock in (self.desktop.lock_keyring, lambda: self.restart_keyring(unlocked=False)):
            lock()
            self.expect(wallet, account=A, protected="no", read="nothing", remove=AUTH_FAILED)
            self.assertEqual(wallet.ask(store(B)), AUTH_FAILED)
            self.expect(wallet, account=A)
            self.restart_keyring()
            self.assertEqual(len(self.items()), 1)
            self.expect(wallet, account=A, read=SEEDS[A])

    def test_a_key_that_could_not_be_seen_is_not_replaced(self):
        wallet = self.wallet()
        self.assertEqual(wallet.ask(store(A)), SUCCESS)
        for locked in (True, False):
            with self.subTest(locked=locked):
                self.desktop.stop_keyring()
                if locked:
                    self.desktop.start_keyring(unlocked=False)
                self.accounts.unlink()
                self.expect(wallet, account=NONE)
                self.restart_keyring()
                for _ in range(2):
                    self.assertEqual(wallet.ask(store(B)), DUPLICATE)
                self.expect(wallet, read=SEEDS[A], account=A)
        # Once its account was returned, it may be replaced; otherwise not.
        self.assertEqual(wallet.ask(store(B)), SUCCESS)
        self.accounts.unlink()
        self.expect(wallet, remembered=NONE)
        self.assertEqual(wallet.ask(store(A)), DUPLICATE)

    def test_believes_its_memory_where_the_keyring_shows_nothing(self):
        self.accounts.write_text(json.dumps({SERVICE: {
            "account": A, "collection": "/org/freedesktop/secrets/collection/login"}}))
        self.desktop.stop_keyring()
        shutil.rmtree(pathlib.Path(self.desktop.environment["XDG_DATA_HOME"]) / "keyrings")
        self.desktop.start_keyring(unlocked=False)
        wallet = self.wallet()
        self.expect(wallet, account=A, remove=AUTH_FAILED)
        self.assertEqual(wallet.ask(f"add {SEEDS[A]} {A} none"), NOT_AVAILABLE)

    def test_asks_for_a_keyring_where_there_is_none(self):
        heard = self.listen()
        self.desktop.stop_keyring()
        shutil.rmtree(pathlib.Path(self.desktop.environment["XDG_DATA_HOME"]) / "keyrings")
        prompter = Child(self, "/usr/bin/python3", pathlib.Path(__file__).with_name("prompter.py"),
                         **self.desktop.environment)
        self.desktop.start_keyring(unlocked=False,
                                   environment={"GNOME_KEYRING_TEST_PROMPTER": prompter.ask("name")})
        wallet = self.wallet()
        prompter.ask("refuse")
        prompter.process.send_signal(signal.SIGSTOP)
        self.assertEqual(wallet.ask(store(A)), NOT_AVAILABLE)
        wait_until(lambda: CREATION in heard(), "the prompt")
        self.assertEqual(wallet.ask(store(A)), NOT_AVAILABLE)
        self.assertEqual(heard().count(CREATION), 1, "one prompt at a time")
        prompter.process.send_signal(signal.SIGCONT)
        wait_until(lambda: prompter.ask("waits") == "no", "the refusal")
        prompter.ask("agree")
        wait_until(lambda: wallet.ask(store(A)) == SUCCESS, "the new keyring")
        self.expect(wallet, read=SEEDS[A], account=A)

    def test_survives_a_service_that_hangs_dies_and_comes_back(self):
        wallet, hasty = self.wallet(), self.wallet(60_000, 1000)
        self.assertEqual(wallet.ask(store(A)), SUCCESS)

        def kill():
            self.desktop.stop_keyring()
        for harm in (lambda: self.desktop.keyring.send_signal(signal.SIGSTOP), kill):
            harm()
            self.expect(hasty, remove=NOT_AVAILABLE, read="nothing", account=A)
            self.assertEqual(hasty.ask(store(B)), NOT_AVAILABLE)
        self.restart_keyring()
        self.expect(wallet, read=SEEDS[A], remove=SUCCESS)

    def test_corrects_its_memory_from_an_open_keyring(self):
        wallet = self.wallet()
        self.assertEqual(wallet.ask(store(A)), SUCCESS)
        # A lost accounts file is restored ...
        self.accounts.unlink()
        self.expect(wallet, account=A)
        self.desktop.stop_keyring()
        self.expect(wallet, account=A)
        # ... a damaged one is treated as empty ...
        for damaged in ("{", "[]", '{"corvane.signing-key":7}'):
            self.accounts.write_text(damaged)
            self.expect(wallet, account=NONE)
        # ... and the account of a key that another program has deleted is removed.
        self.desktop.start_keyring()
        self.expect(wallet, account=A)
        self.in_keyring("delete", SERVICE)
        self.expect(wallet, account=NONE)
        self.desktop.stop_keyring()
        self.expect(wallet, account=NONE)

    def test_the_secret_never_crosses_the_bus_in_the_clear(self):
        heard = self.listen()
        wallet = self.wallet()
        self.assertEqual(wallet.ask(store(A)), SUCCESS)
        self.expect(wallet, read=SEEDS[A])
        said, seed = heard(), bytes.fromhex(SEEDS[A])
        self.assertIn(A.encode(), said)
        for form in (seed, seed.hex().encode(), seed.hex().upper().encode(), base64.b64encode(seed)):
            self.assertNotIn(form, said)
