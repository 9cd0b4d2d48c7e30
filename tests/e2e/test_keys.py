"""The life of a key: made or imported, backed up, opened, removed. Real keyring, real polkit."""

import unittest

from support import KEY, KEY_ADDRESS, SEED, WalletTest, solana, wait_until

BAD_KEY = "that key doesn't decode — paste the base58 secret key or a JSON byte array"
ADDRESS_OF = """
import { createKeyPairFromBytes, getAddressFromPublicKey, getBase58Codec } from "@solana/kit";
// Refuses a pair whose halves do not belong together.
const pair = await createKeyPairFromBytes(getBase58Codec().encode(process.argv[1]));
console.log(await getAddressFromPublicKey(pair.publicKey));
"""
REVEAL = "org.corvane.reveal: reveal your wallet backup key"


class KeysTest(WalletTest):
    def test_creates_backs_up_and_finds_it_again(self):
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.press_button("CREATE WALLET")
            corvane.wait_for("BACK UP YOUR KEY")
            corvane.press_button("COPY")
            corvane.wait_for("COPIED")
            backup = self.desktop.clipboard()
            address = solana(ADDRESS_OF, backup)
            self.assertEqual(corvane.settings()["corvane.address"], address)
            self.assertNotIn(backup, corvane.tree.texts())
            corvane.wait_for("COPY")
            self.assertEqual(self.drag_over_backup(corvane), backup)
            self.localnet.fund(address, 3)
            corvane.press_button("I'VE SAVED IT")
            corvane.wait_for("TOTAL BALANCE")
            corvane.press_button("Refresh")
            corvane.wait_for("$450.75")
            corvane.leave()
        with self.run_wallet({"corvane.address": address}) as corvane:
            corvane.hover()
            corvane.wait_for("TOTAL BALANCE", "$450.75")
            self.assertNotIn("BACK UP YOUR KEY", corvane.tree.texts())

    def drag_over_backup(self, corvane):
        """What is copied when one selects all of the key with the pointer."""
        screen = self.desktop.screen
        self.desktop.set_clipboard("nothing")
        key = corvane.still(lambda text: text.startswith("Your secret key"))
        x, y, width, height = key.extents(self.desktop.scale)
        screen.drag(x + 1, y + 3, x + width - 1, y + height - 3)
        wait_until(lambda: screen.keyboard_owner() == screen.window_named("Corvane"), "the keyboard for the key")
        screen.press("c", "Control_L")
        wait_until(lambda: self.desktop.clipboard() != "nothing", "something in the clipboard")
        return self.desktop.clipboard()

    def test_imports_each_form_after_mistakes(self):
        numbers = ",".join(map(str, range(1, 33)))
        cases = {"Base58": (KEY, KEY_ADDRESS), "a seed": (SEED, KEY_ADDRESS),
                 "numbers, with spaces": (f"  [{numbers}]", KEY_ADDRESS)}
        for name, (text, address) in cases.items():
            with self.subTest(name), self.run_wallet() as corvane:
                corvane.hover()
                corvane.press_button("IMPORT")
                corvane.wait_for("IMPORT A WALLET")
                for mistake in (KEY[:-1], KEY.replace("A", "0"), "[1,2,3]", "[1,", "hello"):
                    corvane.fill("secret key", mistake)
                    corvane.press_button("IMPORT")
                    corvane.wait_for(BAD_KEY)
                corvane.fill("secret key", text)
                corvane.press_button("IMPORT")
                corvane.wait_for("TOTAL BALANCE")
                self.assertEqual(corvane.settings()["corvane.address"], address)
                corvane.leave()
            self.setUp()

    def test_secret_field_keeps_its_secret(self):
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.press_button("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            corvane.wait_enabled("IMPORT", False)
            self.desktop.set_clipboard(KEY + "\n")
            corvane.fill("secret key", "   ")
            corvane.wait_enabled("IMPORT", False)
            screen = self.desktop.screen
            screen.press("v", "Control_L")
            corvane.wait_enabled("IMPORT")
            self.desktop.set_clipboard("something else")
            for key in ("a", "c", "x", "z"):
                screen.press(key, "Control_L")
            self.assertEqual(self.desktop.clipboard(), "something else")
            self.assertFalse([text for text in corvane.tree.texts() if KEY[:8] in text])
            corvane.press_button("IMPORT")
            corvane.wait_for("TOTAL BALANCE")
            corvane.leave()

    def test_going_back_forgets_text_and_error(self):
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.press_button("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            corvane.fill("secret key", "hello")
            corvane.press_button("IMPORT")
            corvane.wait_for(BAD_KEY)
            corvane.press_button("BACK")
            corvane.wait_for("CREATE WALLET")
            wait_until(lambda: BAD_KEY not in corvane.tree.texts(), "no error")
            corvane.press_button("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            corvane.wait_enabled("IMPORT", False)

    def test_removes_only_when_asked_twice(self):
        with self.run_wallet() as corvane:
            self.import_key(corvane, KEY)
            corvane.press_button("Settings")
            corvane.wait_for("WALLET: 9C6h…Jtpj · key in keychain")
            corvane.press_button("REMOVE")
            corvane.wait_for("REALLY REMOVE? (backup first!)")
            corvane.wait_for("REMOVE")
            self.assertEqual(corvane.settings()["corvane.address"], KEY_ADDRESS)
            corvane.press_button("REMOVE")
            corvane.press_button("REALLY REMOVE? (backup first!)")
            corvane.wait_for("no wallet — create or import one on the balance card")
            self.assertEqual(corvane.settings()["corvane.address"], "")
            corvane.press_button("DONE")
            corvane.wait_for("CREATE WALLET")
            corvane.leave()
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.wait_for("CREATE WALLET")


@unittest.skipUnless(WalletTest.tester, "needs with_polkit.py and root")
class PresenceTest(WalletTest):
    """Whoever is asked says no, then yes."""

    def setUp(self):
        super().setUp()
        with self.run_wallet() as corvane:
            self.import_key(corvane, KEY)
            corvane.leave()

    def test_reveals_the_backup_only_to_the_owner(self):
        with self.run_corvane({"corvane.address": KEY_ADDRESS}, demo=False) as corvane:
            # Nobody can be asked, so the island opens without the key.
            corvane.hover()
            corvane.wait_for("TOTAL BALANCE")
            corvane.press_button("Settings")
            with self.agent(corvane, "refuse") as reasons:
                corvane.press_button("BACKUP")
                wait_until(lambda: REVEAL in reasons(), "the reason")
                self.assert_stays(corvane, "BACKUP")
            with self.agent(corvane, "authenticate") as reasons:
                corvane.press_button("BACKUP")
                corvane.wait_for("BACK UP YOUR KEY")
                self.assertEqual(reasons(), [REVEAL])
                corvane.press_button("COPY")
                corvane.wait_for("COPIED")
                self.assertEqual(self.desktop.clipboard(), KEY)
                corvane.press_button("I'VE SAVED IT")
                corvane.wait_for("TOTAL BALANCE")

    def assert_stays(self, corvane, name):
        """What happened has been worked through, and this still shows."""
        corvane.settled()
        self.assertIn(name, corvane.tree.texts())
        self.assertNotIn("BACK UP YOUR KEY", corvane.tree.texts())


if __name__ == "__main__":
    unittest.main()
