"""The life cycle of a key: creation or import, backup, unlocking, removal. With a real keyring
and a real polkit."""

import time
import unittest

from support import KEY, KEY_ADDRESS, WalletTest, solana, wait_until

from desktop import ClipboardManager, Keyring

BAD_KEY = "that key doesn't decode — paste the base58 secret key or a JSON byte array"
ADDRESS_OF = """
import { createKeyPairFromBytes, getAddressFromPublicKey, getBase58Codec } from "@solana/kit";
// Throws if the two halves of the pair do not match.
const pair = await createKeyPairFromBytes(getBase58Codec().encode(process.argv[1]));
console.log(await getAddressFromPublicKey(pair.publicKey));
"""
# Presses that follow faster count as a double click.
DOUBLE_CLICK = 1
REVEAL = "org.corvane.reveal: reveal your wallet backup key"


class KeysTest(WalletTest):
    def copied(self, copy):
        """The content of the clipboard after `copy`."""
        self.desktop.set_clipboard("nothing")
        copy()
        wait_until(lambda: self.desktop.clipboard() != "nothing", "something in the clipboard")
        return self.desktop.clipboard()

    def test_creates_backs_up_and_finds_it_again(self):
        manager = self.enterContext(ClipboardManager(self.desktop.screen))
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.press_button("CREATE WALLET")
            corvane.wait_for("BACK UP YOUR KEY")
            backup = self.copied(lambda: corvane.press_button("COPY"))
            address = solana(ADDRESS_OF, backup)
            self.assertEqual(corvane.settings()["corvane.address"], address)
            self.assertNotIn(backup, corvane.tree.texts())
            self.localnet.fund(address, 3)
            corvane.press_button("I'VE SAVED IT")
            corvane.wait_for("TOTAL BALANCE")
            corvane.press_button("Refresh")
            corvane.wait_for("$450.75")
            corvane.leave()
            self.assertEqual(self.desktop.clipboard(), backup)
        self.assertFalse(manager.was_offered_something())
        with self.run_wallet({"corvane.address": address}) as corvane:
            corvane.hover()
            corvane.wait_for("TOTAL BALANCE", "$450.75")
            self.assertNotIn("BACK UP YOUR KEY", corvane.tree.texts())

    def test_imports_after_a_mistake_and_removes(self):
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.press_button("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            corvane.wait_enabled("IMPORT", False)
            corvane.fill("secret key", KEY[:-1])
            corvane.press_button("IMPORT")
            corvane.wait_for(BAD_KEY)
            corvane.fill("secret key", "")
            self.desktop.set_clipboard(KEY + "\n")
            self.desktop.screen.press("v", "Control_L")
            corvane.wait_enabled("IMPORT")
            self.assertFalse([text for text in corvane.tree.texts() if KEY[:8] in text])
            corvane.press_button("IMPORT")
            corvane.wait_for("TOTAL BALANCE")
            self.assertEqual(corvane.settings()["corvane.address"], KEY_ADDRESS)
            corvane.press_button("Settings")
            corvane.wait_for("WALLET: 9C6h…Jtpj · key in keychain")
            corvane.double_click(corvane.still("REMOVE", "push button"))
            corvane.wait_for("REALLY REMOVE? (backup first!)", "WALLET: 9C6h…Jtpj · key in keychain")

            def removed():
                button = corvane.tree.find(lambda text: "REMOVE" in text, "push button")
                if button:
                    corvane.click(button)
                return "no wallet — create or import one on the balance card" in corvane.tree.texts()
            # Slowly, so that no press is taken for a part of a double click.
            wait_until(removed, "a removed key", pause=1)
            self.assertEqual(corvane.settings()["corvane.address"], "")
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.wait_for("CREATE WALLET")

    def test_a_whole_life_by_keyboard_alone(self):
        screen = self.desktop.screen

        def expect(*focused, after="Return"):
            """Presses a key and waits for the control that has the focus then."""
            screen.press(after)
            wait_until(lambda: corvane.focused() in focused, lambda: f"{focused}, but {corvane.focused()}")

        def press(name):
            corvane.tab_to(name)
            screen.press("Return")
        with self.run_wallet({"corvane.address": ""}, onboarded=False) as corvane:
            wait_until(lambda: corvane.has_keyboard("Welcome to Corvane"), "the keyboard for the tour")
            for number in (2, 3, 4, 5):
                screen.press("Return")
                corvane.wait_for(f"Page {number} of 5")
            expect("CREATE WALLET")
            expect("COPY")
            backup = self.copied(lambda: screen.press("Return"))
            self.localnet.fund(solana(ADDRESS_OF, backup), 3)
            press("I'VE SAVED IT")
            corvane.wait_for("TOTAL BALANCE")
            press("Refresh")
            corvane.wait_for("$450.75")
            corvane.tab_to("RECEIVE")
            expect("COPY ADDRESS")
            self.assertEqual(self.copied(lambda: screen.press("Return")), solana(ADDRESS_OF, backup))
            expect("SEND", after="Escape")
            expect("TO")
            screen.type(KEY_ADDRESS)
            screen.press("Tab")
            screen.type("1")
            corvane.tab_to("SEND")
            # The next recipient is typed.
            expect("TO")
            corvane.wait_for("SENT ✓")
            expect("SEND", after="Escape")
            corvane.tab_to("Settings")
            expect("DONE")
            press("REMOVE")
            corvane.wait_for("REALLY REMOVE? (backup first!)")
            time.sleep(DOUBLE_CLICK)
            screen.press("Return")
            corvane.wait_for("no wallet — create or import one on the balance card")
            expect("CREATE WALLET", after="Escape")
            press("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            screen.press("Escape")
            corvane.wait_for("YOUR WALLET, IN THE NOTCH")
            press("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            corvane.settled()
            screen.type(KEY)
            press("IMPORT")
            expect("SEND", after="Shift_L")
            corvane.wait_for("$150.25")
            screen.press("Escape")
            wait_until(corvane.is_resting, "the resting island")
            if not self.tester:
                return
        with self.run_corvane({"corvane.address": KEY_ADDRESS}, demo=False) as corvane:
            with self.agent(corvane, "refuse") as reasons:
                corvane.start_again("--open", "settings")
                wait_until(reasons, "the question")
                wait_until(lambda: corvane.focused() == "UNLOCK", "the locked card")
            with self.agent(corvane, "authenticate"):
                expect("DONE")

    def protection(self):
        with Keyring(self.desktop.bus_address) as keyring:
            (attributes, _), = keyring.items("corvane.signing-key")
        return attributes["protection"]

    @unittest.skipUnless(WalletTest.tester, "needs with_polkit.py and root")
    def test_reveals_the_backup_only_to_the_owner(self):
        with self.run_wallet() as corvane:
            self.import_key(corvane, KEY)
            self.assertEqual(self.protection(), "user-presence")
            corvane.leave()
        with self.run_corvane({"corvane.address": KEY_ADDRESS}, demo=False) as corvane:
            # No authentication is possible, so the island opens without the key.
            corvane.hover()
            corvane.wait_for("TOTAL BALANCE")
            corvane.press_button("Settings")
            missing = "nobody can ask for your password: start a polkit agent, then try again"
            corvane.wait_for(missing)
            with self.agent(corvane, "refuse") as reasons:
                corvane.press_button("BACKUP")
                wait_until(lambda: REVEAL in reasons(), "the reason")
                wait_until(lambda: missing not in corvane.tree.texts(), "an agent that was found")
                self.assertIn("BACKUP", corvane.tree.texts())
            with self.agent(corvane, "authenticate"):
                corvane.press_button("BACKUP")
                corvane.wait_for("BACK UP YOUR KEY")
                self.assertEqual(self.copied(lambda: corvane.press_button("COPY")), KEY)
                corvane.press_button("I'VE SAVED IT")
                corvane.wait_for("TOTAL BALANCE")

    @unittest.skipUnless(WalletTest.tester, "needs with_polkit.py and root")
    def test_is_kept_where_nobody_can_be_asked_and_nobody_may_look(self):
        with self.run_corvane({"corvane.address": ""}, demo=False) as corvane:
            corvane.hover()
            corvane.wait_for("nobody can ask for your password, so the key will lie unprotected in the keychain: to "
                             "protect it, start a polkit agent and then corvane again")
            self.import_key(corvane, KEY)
            self.assertEqual(self.protection(), "none")
            # For comparison: the memory of another program of the same user can be opened.
            with open(f"/proc/{self.desktop.process('Xvfb').pid}/mem", "rb"):
                self.assertRaises(PermissionError, open, f"/proc/{corvane.process_id}/mem", "rb")
            with open(f"/proc/{corvane.process_id}/limits", encoding="utf-8") as limits:
                self.assertRegex(limits.read(), r"Max core file size +0 +0 ")
