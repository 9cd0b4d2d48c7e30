"""Sending by hand, seen on the runtime's balances. Real keyring, real polkit."""

import unittest

from support import KEY, KEY_ADDRESS, WalletTest, wait_until

RECIPIENT = "Hx1fZkBAvtdAyy5RwEc3QuLnHYKCCFGSaDEXGqLGxGAT"
FEE = 5000
HINT = "one click — your fingerprint already unlocked the key"


class SendTest(WalletTest):
    def setUp(self):
        super().setUp()
        self.localnet.fund(KEY_ADDRESS, 8.2)
        self.localnet.fund(RECIPIENT, 1)

    def open_form(self, corvane):
        self.import_key(corvane, KEY)
        wait_until(lambda: "$1,232.05" in corvane.tree.texts(), "the balance")
        corvane.press_button("SEND")
        corvane.wait_for("TO", "AMOUNT (SOL)", HINT)

    def sends(self):
        return [entry for entry in self.localnet.requests() if entry["name"] == "sendTransaction"]

    def test_sends_what_is_typed(self):
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            corvane.wait_enabled("SEND", False)
            corvane.fill("TO", f" {RECIPIENT} ")
            corvane.fill("AMOUNT", "1,5")
            corvane.wait_for("≈ 1,500 QUIB  ·  $225.38")
            # Only the button sends.
            self.desktop.screen.press("Return")
            corvane.wait_enabled("SEND")
            self.assertEqual(self.sends(), [])
            corvane.press_button("SEND")
            corvane.wait_for("SENT ✓", "VIEW ON SOLSCAN")
            self.assertEqual(self.localnet.lamports(RECIPIENT), 2_500_000_000)
            self.assertEqual(self.localnet.lamports(KEY_ADDRESS), 6_700_000_000 - FEE)
            corvane.wait_enabled("SEND", False)
            self.assertNotIn("≈ 1,500 QUIB  ·  $225.38", corvane.tree.texts())

            corvane.fill("TO", RECIPIENT)
            corvane.press_button("MAX")
            corvane.wait_for("≈ 6,700 QUIB  ·  $1,006.66")
            corvane.fill("AMOUNT", "6.5")
            corvane.press_button("SEND")
            wait_until(lambda: self.localnet.lamports(RECIPIENT) == 9_000_000_000, "the second transfer")
            corvane.press_button("Back to the balance")
            # The figures follow without being asked.
            corvane.wait_for("TOTAL BALANCE", "$30.05")
            corvane.leave()

    def test_link_opens_with_the_desktops_browser(self):
        environment, opened = self.desktop.make_browser()
        with self.run_wallet(environment=environment) as corvane:
            self.open_form(corvane)
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.press_button("SEND")
            corvane.press_button("VIEW ON SOLSCAN")
            link = wait_until(opened, "the browser")
            self.assertRegex(link, f"^{self.localnet.url}/explorer/tx/[1-9A-HJ-NP-Za-km-z]{{86,88}}$")

    def test_takes_no_nonsense(self):
        amounts = {"0": False, "-1": False, " 1.5": False, "1.5x": False, "9": False, "8.2": True,
                   "1e-3": True, "": False}
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            corvane.fill("TO", RECIPIENT)
            for amount, ready in amounts.items():
                with self.subTest(amount):
                    corvane.fill("AMOUNT", amount)
                    corvane.wait_enabled("SEND", ready)
            corvane.fill("AMOUNT", "1")
            for recipient in ("abc", RECIPIENT[:-1] + "0", RECIPIENT + "1", ""):
                with self.subTest(recipient):
                    corvane.fill("TO", recipient)
                    corvane.wait_enabled("SEND", False)
            # Neither the pointer nor a screen reader gets it to send.
            corvane.press_button("SEND")
            corvane.tree.find("SEND", "push button").press()
            corvane.settled()
            self.assertEqual(self.sends(), [])

    def test_slow_cluster_gets_one_transfer(self):
        with self.run_wallet() as corvane:
            self.open_form(corvane)
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.wait_enabled("SEND")
            self.localnet.control("fault", match="sendTransaction", kind="latency", ms=1500)
            self.localnet.control("clear-log")
            corvane.double_click(corvane.tree.find("SEND", "push button"))
            corvane.wait_for("SENDING")
            corvane.click(corvane.tree.find("SENDING", "push button"))
            corvane.wait_for("SENT ✓")
            self.assertEqual(len(self.sends()), 1)
            self.assertEqual(self.localnet.lamports(RECIPIENT), 2_000_000_000)
            # A screen reader hears of the next one when it has been sent, and not before.
            corvane.tree.listen()
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "2")
            corvane.press_button("SEND")
            corvane.wait_for("SENDING")
            corvane.wait_for("SENT ✓")
            wait_until(corvane.tree.heard, "a screen reader that says it")
            self.assertEqual(corvane.tree.heard(), ["SENT ✓"])

    def test_watching_cannot_send(self):
        with self.run_wallet({"corvane.address": KEY_ADDRESS}) as corvane:
            corvane.open_pane("send")
            corvane.wait_for("no wallet yet — create or import one first")
            corvane.press_button("SET UP WALLET")
            corvane.wait_for("CREATE WALLET")

    def test_key_behind_a_prompt(self):
        if not self.tester:
            self.skipTest("needs with_polkit.py and root")
        with self.run_wallet() as corvane:
            self.import_key(corvane, KEY)
            corvane.leave()
        with self.run_corvane({"corvane.address": KEY_ADDRESS}, demo=False) as corvane:
            corvane.hover()
            corvane.press_button("SEND")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "2")
            corvane.wait_enabled("SEND")
            with self.agent(corvane, "dismiss") as reasons:
                corvane.press_button("SEND")
                corvane.wait_for("touch id cancelled — nothing was sent")
                self.assertTrue(reasons()[0].startswith("org.corvane.send: "))
            self.assertEqual(self.localnet.lamports(RECIPIENT), 1_000_000_000)
            with self.agent(corvane, "authenticate"):
                corvane.press_button("SEND")
                corvane.wait_for("SENT ✓")
            self.assertEqual(self.localnet.lamports(RECIPIENT), 3_000_000_000)


if __name__ == "__main__":
    unittest.main()
