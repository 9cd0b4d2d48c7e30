"""The balance card: its figures, and what a screen reader says of them."""

from support import ADDRESS, SHORT_ADDRESS, IslandTest, wait_until

GREEN, RED = (60, 208, 107), (232, 86, 86)


class BalanceTest(IslandTest):
    def test_shows_the_figures_and_follows_them(self):
        with self.run_corvane() as corvane:
            self.assertEqual(corvane.tree.texts(), [], "the collapsed island shows no text")
            corvane.tree.listen()
            corvane.hover()
            # The demo's key is not that of the address that it watches here.
            spoken = ["TOTAL BALANCE $1,234.05", "watching another address — not this wallet's key"]
            wait_until(lambda: sorted(corvane.tree.heard()) == spoken,
                       lambda: f"a screen reader that says it, not {corvane.tree.heard()}")
            corvane.wait_for("QUIB", "DEMO", "TOTAL BALANCE", "MAINNET", "+2.35%", "$1,234.05",
                             "≈ 8,200 QUIB  ·  USDC 2.00", "SOL $150.25", SHORT_ADDRESS, "RECEIVE",
                             "SEND")
            self.assert_drawn_in(corvane, "+2.35%", GREEN)
            self.localnet.fund(ADDRESS, 10, "12.5")
            self.localnet.control("price", price=100, change=-1.5)
            corvane.press_button("Refresh")
            corvane.wait_for("$1,012.50", "≈ 10,000 QUIB  ·  USDC 12.50", "SOL $100.00", "-1.50%")
            self.assert_drawn_in(corvane, "-1.50%", RED)
            corvane.leave()
            wait_until(lambda: not corvane.tree.texts(), "a folded card that shows no text")

    def test_hides_the_amounts_by_command_and_by_key(self):
        hidden = "•••••", "≈ •••••  ·  USDC •••••", "SOL $150.25"
        with self.run_corvane() as corvane:
            self.assertEqual(corvane.start_again("--hide-amounts").returncode, 0)
            corvane.hover()
            corvane.wait_for(*hidden)
            corvane.stop()
            corvane.start()
            corvane.hover()
            corvane.wait_for(*hidden)
            self.assertEqual(corvane.start_again("--open", "balance").returncode, 0)
            wait_until(corvane.has_keyboard, "the keyboard")
            self.desktop.screen.press("h")
            corvane.wait_for("$1,234.05", "≈ 8,200 QUIB  ·  USDC 2.00")

    def assert_drawn_in(self, corvane, text, colour):
        """The text has this colour, apart from antialiasing."""
        picture = corvane.settled()
        drawn = picture.colours(*corvane.tree.find(text).extents(self.desktop.scale))
        near = [other for other in (GREEN, RED) if any(
            all(abs(one - two) < 40 for one, two in zip(seen, other)) for seen in drawn)]
        self.assertEqual(near, [colour], text)
