"""Transfers by a user, checked against the runtime's balances. With a real keyring and a real
polkit."""

from support import KEY, KEY_ADDRESS, RECIPIENT, WalletTest, wait_until

FEE = 5000


class SendTest(WalletTest):
    def setUp(self):
        super().setUp()
        self.localnet.fund(KEY_ADDRESS, 8.2)
        self.localnet.fund(RECIPIENT, 1)

    def open_form(self, corvane):
        self.import_key(corvane, KEY)
        corvane.wait_for("$1,232.05")
        corvane.press_button("SEND")
        corvane.wait_for("TO", "AMOUNT (SOL)", "one click — your fingerprint already unlocked the key")

    def sends(self):
        return [entry for entry in self.localnet.requests() if entry["name"] == "sendTransaction"]

    def test_sends_what_is_typed(self):
        environment, opened = self.desktop.make_browser()
        with self.run_wallet(environment=environment) as corvane:
            self.open_form(corvane)
            corvane.wait_enabled("SEND", False)
            corvane.fill("TO", f" {RECIPIENT} ")
            corvane.fill("AMOUNT", "1,5")
            corvane.wait_for("≈ 1,500 QUIB  ·  $225.38")
            # The Return key does not send.
            self.desktop.screen.press("Return")
            corvane.wait_enabled("SEND")
            self.assertEqual(self.sends(), [])
            corvane.press_button("SEND")
            corvane.wait_for("SENT ✓", "VIEW ON SOLSCAN")
            self.assertEqual(self.localnet.lamports(RECIPIENT), 2_500_000_000)
            self.assertEqual(self.localnet.lamports(KEY_ADDRESS), 6_700_000_000 - FEE)
            self.assertNotIn("≈ 1,500 QUIB  ·  $225.38", corvane.tree.texts())
            corvane.press_button("VIEW ON SOLSCAN")
            self.assertRegex(wait_until(opened, "the browser"),
                             f"^{self.localnet.url}/explorer/tx/[1-9A-HJ-NP-Za-km-z]{{86,88}}$")
            corvane.press_button("MAX")
            corvane.wait_for("≈ 6,700 QUIB  ·  $1,006.66")
            corvane.press_button("Back to the balance")
            # The figures are refreshed automatically.
            corvane.wait_for("TOTAL BALANCE", "$1,006.67")
            corvane.leave()

    def test_sends_everything_by_keyboard(self):
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            corvane.fill("TO", RECIPIENT)
            for name in ("MAX", "SEND ALL 8.199995", "SEND"):
                corvane.tab_to(name)
                self.desktop.screen.press("space")
            corvane.wait_for("SENT ✓")
            self.assertEqual(self.localnet.lamports(KEY_ADDRESS), 0)
            self.assertEqual(self.localnet.lamports(RECIPIENT), 9_200_000_000 - FEE)
