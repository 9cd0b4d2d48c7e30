"""Transfers by a user, checked against the runtime's balances. With a real keyring and a real
polkit."""

from support import ADDRESS, KEY, KEY_ADDRESS, RECIPIENT, WalletTest, wait_until

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

    def test_sends_what_assistive_technology_sets(self):
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            corvane.fill("TO", ADDRESS)
            corvane.fill("AMOUNT", "1")
            corvane.field("TO").set_text(f"{RECIPIENT}\n")
            corvane.field("AMOUNT").set_text("0.6")
            corvane.wait_for("≈ 600 QUIB  ·  $90.15")
            corvane.press_button("SEND")
            corvane.wait_for("SENT ✓")
            self.assertEqual(self.localnet.lamports(RECIPIENT), 1_600_000_000)
            self.assertEqual(self.localnet.lamports(KEY_ADDRESS), 7_600_000_000 - FEE)

    def test_slow_cluster_gets_one_transfer(self):
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.wait_enabled("SEND")
            self.localnet.control("fault", match="sendTransaction", kind="latency", ms=1500)
            # The notification for screen readers comes when the transfer was sent, not before.
            corvane.tree.listen()
            corvane.double_click(corvane.tree.find("SEND", "push button"))
            corvane.wait_for("SENT ✓")
            self.assertEqual(len(self.sends()), 1)
            self.assertEqual(self.localnet.lamports(RECIPIENT), 2_000_000_000)
            wait_until(corvane.tree.heard, "a screen reader that says it")
            self.assertEqual(corvane.tree.heard(), ["SENT ✓"])

    def test_lost_answer_pays_once(self):
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            self.localnet.control("fault", match="sendTransaction", kind="drop-after", count=1)
            self.localnet.control("fault", match="getSignatureStatuses", kind="drop")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.press_button("SEND")
            corvane.wait_for("checking whether it went through…", "1 SOL to Hx1f…xGAT")
            # Again, on a new form.
            corvane.press_button("Back to the balance")
            corvane.press_button("SEND")
            corvane.wait_for("checking whether it went through…")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1.0")
            corvane.press_button("SEND")
            wait_until(lambda: len(self.sends()) == 2, "the same transfer again")
            corvane.fill("AMOUNT", "2")
            corvane.press_button("SEND")
            corvane.wait_for("the earlier transfer may still go through — press again to send this one too")
            self.localnet.control("clear-faults")
            corvane.wait_for("it went through", "SENT ✓", "VIEW ON SOLSCAN")
            self.assertEqual(len(self.sends()), 2)
            self.assertEqual(self.localnet.lamports(RECIPIENT), 2_000_000_000)

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
