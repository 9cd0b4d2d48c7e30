"""Pictures of every card in every state, at scale 1 and 2, for people to look at, with what a script
can hold them to: the width, and equal heights at both scales."""

from support import ADDRESS, KEY, KEY_ADDRESS, WalletTest, wait_until

RECIPIENT = "Hx1fZkBAvtdAyy5RwEc3QuLnHYKCCFGSaDEXGqLGxGAT"
heights = {}


class CardPictures:
    def look(self, corvane, name, *texts):
        """Waits for these texts and keeps a picture of the card."""
        corvane.wait_for(*texts)
        self.keep(corvane, name, corvane.settled())

    def keep(self, corvane, name, picture):
        self.save(picture, name)
        left, right, bottom = corvane.outline(picture)
        self.assertAlmostEqual(right - left, 620, delta=2)
        self.assertAlmostEqual(bottom, heights.setdefault(name, bottom), delta=1.5,
                               msg=f"{name}: as high at scale 1 as at scale 2")

    def test_setup_and_backup(self):
        with self.run_wallet() as corvane:
            corvane.hover()
            self.look(corvane, "setup-choice", "YOUR WALLET, IN THE NOTCH")
            corvane.press_button("IMPORT")
            self.look(corvane, "setup-import-empty", "IMPORT A WALLET")
            corvane.fill("secret key", KEY)
            self.look(corvane, "setup-import-filled")
            corvane.fill("secret key", KEY[:-1])
            corvane.press_button("IMPORT")
            self.look(corvane, "setup-import-error",
                      "that key doesn't decode — paste the base58 secret key or a JSON byte array")
            corvane.press_button("BACK")
            corvane.press_button("CREATE WALLET")
            corvane.wait_for("BACK UP YOUR KEY")
            self.look(corvane, "backup", "COPY")
            corvane.press_button("COPY")
            self.look(corvane, "backup-copied", "COPIED")
            corvane.press_button("I'VE SAVED IT")
            corvane.wait_for("TOTAL BALANCE")
            corvane.leave()
        self.desktop.empty_keyring()
        with self.run_wallet() as corvane:
            corvane.hover()
            corvane.wait_for("CREATE WALLET")
            self.desktop.lock_keyring()
            corvane.press_button("CREATE WALLET")
            wait_until(lambda: corvane.tree.find(lambda text: text.startswith("keychain refused")),
                       "a refusal")
            self.look(corvane, "setup-choice-error")

    def test_send(self):
        self.localnet.fund(KEY_ADDRESS, 8.2)
        self.localnet.fund(RECIPIENT, 1)
        with self.run_wallet() as corvane:
            self.import_key(corvane, KEY)
            wait_until(lambda: "$1,232.05" in corvane.tree.texts(), "the balance")
            corvane.press_button("SEND")
            self.look(corvane, "send-empty", "AMOUNT (SOL)", "MAX")
            corvane.fill("TO", "nobody")
            corvane.fill("AMOUNT", "8.3")
            self.look(corvane, "send-wrong")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "0.12345678")
            self.look(corvane, "send-ready", "≈ 123 QUIB  ·  $18.55")
            self.localnet.control("fault", match="getLatestBlockhash", kind="latency", ms=1500)
            corvane.press_button("SEND")
            corvane.wait_for("SENDING")
            # The wave never rests, so there is nothing to wait for.
            self.keep(corvane, "send-sending", corvane.capture())
            corvane.wait_for("SENT ✓")
            self.save(corvane.capture(), "send-burst")
            self.look(corvane, "send-sent", "VIEW ON SOLSCAN")
            self.localnet.control("fault", match="sendTransaction", kind="drop")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.press_button("SEND")
            self.look(corvane, "send-failed", "send failed — check balance covers amount + fee")

    def test_settings(self):
        with self.run_wallet({"corvane.address": ADDRESS}) as corvane:
            corvane.hover()
            corvane.press_button("Settings")
            self.look(corvane, "settings-watching", "CORVANE SETTINGS")
            corvane.fill("WALLET ADDRESS", ADDRESS[:20])
            self.look(corvane, "settings-invalid", "not a valid solana address")
            corvane.fill("WALLET ADDRESS", ADDRESS)
            corvane.fill("CUSTOM RPC", "https://mainnet.helius-rpc.com/?api-key=" + 20 * "0123")
            corvane.click(corvane.still("DEVNET", "radio button"))
            self.look(corvane, "settings-custom", "RPC: HELIUS · CUSTOM ENDPOINT")
            corvane.fill("CUSTOM RPC", "")
            corvane.click(corvane.still("MAINNET", "radio button"))
            corvane.press_button("DONE")
            self.import_key(corvane, KEY)
            corvane.press_button("Settings")
            self.look(corvane, "settings-key", "WALLET: 9C6h…Jtpj · key in keychain", "BACKUP")
            corvane.press_button("REMOVE")
            corvane.wait_for("REALLY REMOVE? (backup first!)")
            self.keep(corvane, "settings-armed", corvane.capture())

    def test_locked(self):
        if not self.tester:
            self.skipTest("needs with_polkit.py and root")
        with self.run_wallet(manner="refuse") as corvane:
            corvane.hover()
            corvane.wait_for("CORVANE LOCKED")
            corvane.still("UNLOCK", "push button")
            # The mark on it never rests.
            self.keep(corvane, "locked", corvane.capture())


class CardPicturesAtScale1Test(CardPictures, WalletTest):
    pass


class CardPicturesAtScale2Test(CardPictures, WalletTest):
    desktop_kind = {"size": (1800, 1000), "scale": 2, "keyring": True}
