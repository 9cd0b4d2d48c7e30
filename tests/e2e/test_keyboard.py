"""Operation by keyboard only: focus, the order of Tab, the effect of keys."""

from support import SHORT_ADDRESS, IslandTest, wait_until

TAB_ORDER = {
    "balance": ["Refresh", "Settings", "$1,234.05", "BACK TO YOUR ADDRESS", SHORT_ADDRESS, "RECEIVE", "SEND"],
    # From the field where the recipient is typed.
    "SEND": ["AMOUNT (SOL)", "MAX", "Refresh", "Settings", "Back to the balance", "TO"],
    "RECEIVE": ["Refresh", "Settings", "Back to the balance", "BACK TO YOUR ADDRESS", "COPY ADDRESS"],
    "Settings": ["Refresh", "Settings", "WALLET ADDRESS (public key, watch-only)",
                 "CUSTOM RPC URL (optional, wins over public RPC)", "NETWORK", "BACKUP", "REMOVE",
                 "QUIT", "DONE"],
}


class FocusTest(IslandTest):
    def setUp(self):
        super().setUp()
        self.screen = self.desktop.screen

    def open_window(self, *place):
        """An ordinary window of another program, with keyboard focus."""
        window = self.desktop.open_window(*place)
        self.addCleanup(window.close)
        return window

    def open_and_dismiss(self, corvane, before):
        """Opens the island as a command does, repeatedly, and sends it away with Escape."""
        for pane in ("send", "balance", "send"):
            corvane.start_again("--open", pane)
            wait_until(corvane.is_open, "the open card")
            wait_until(corvane.has_keyboard, "the island's keyboard")
            wait_until(lambda: corvane.focused() == ("TO" if pane == "send" else "SEND"), "the focus")
            if pane == "send":
                self.screen.press("Escape")
                wait_until(lambda: corvane.focused() == "SEND", "the balance card")
            self.screen.press("Escape")
            wait_until(corvane.is_resting, "the resting island")
            wait_until(before.has_keyboard, "the keyboard back")


class KeyboardTest(FocusTest):
    def test_takes_the_keyboard_and_gives_it_back(self):
        other = self.open_window()
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.settled()
            self.assertTrue(other.has_keyboard(), "opening must not take the focus")
            corvane.press_button("SEND")
            wait_until(corvane.has_keyboard, "the island's keyboard")
            corvane.press_button("Back to the balance")
            corvane.leave()
            wait_until(other.has_keyboard, "the keyboard back")

            # This time the previous owner of the focus no longer exists.
            corvane.hover()
            corvane.press_button("SEND")
            wait_until(corvane.has_keyboard, "the island's keyboard")
            other.close()
            corvane.press_button("Back to the balance")
            corvane.leave()
            wait_until(lambda: not corvane.has_keyboard(), "the keyboard let go")

    def test_stays_while_it_has_the_keyboard(self):
        other = self.open_window()
        with self.run_corvane() as corvane:
            self.open_and_dismiss(corvane, other)
            corvane.start_again()
            wait_until(lambda: corvane.focused() == "SEND", "the balance card")
            other.take_keyboard()
            wait_until(corvane.is_resting, "the resting island")

    def test_tab_goes_in_the_order_of_reading(self):
        with self.run_corvane() as corvane:
            for pane, order in TAB_ORDER.items():
                with self.subTest(pane):
                    corvane.hover()
                    corvane.wait_for("TOTAL BALANCE", "$1,234.05")
                    if pane == "balance":
                        # No control of this card takes focus by a click.
                        corvane.start_again("--open", "balance")
                        wait_until(corvane.has_keyboard, "the island's keyboard")
                    else:
                        corvane.press_button(pane)
                    corvane.settled()
                    self.assertEqual(self.walk(corvane, len(order), "Tab"), order)
                    back = self.walk(corvane, len(order) - 1, "Tab", "Shift_L")
                    self.assertEqual(back, order[-2::-1])
                    if pane != "balance":
                        corvane.press_button("DONE" if pane == "Settings" else "Back to the balance")
                    corvane.leave()

    def walk(self, corvane, steps, *keys):
        """The names of the focused controls after each of `steps` key presses."""
        names = []
        for _ in range(steps):
            before = corvane.focused()
            self.screen.press(*keys)
            names.append(wait_until(lambda last=before: self.moved(corvane, last),
                                    lambda: f"a step on from {names}"))
        return names

    def moved(self, corvane, before):
        name = corvane.focused()
        return name if name != before else None

    def test_the_picker_follows_the_keys(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.press_button("Settings")
            corvane.settled()
            while corvane.focused() != "NETWORK":
                self.screen.press("Tab")
            self.screen.press("Right")
            wait_until(lambda: corvane.settings().get("corvane.network") == "devnet", "devnet")
            self.screen.press("Left")
            wait_until(lambda: corvane.settings()["corvane.network"] == "mainnet", "mainnet")


class UnmanagedTest(FocusTest):
    desktop_kind = {"window_manager": False}
    desktops = ("x11",)

    def test_is_covered_by_no_window_and_takes_the_keyboard(self):
        with self.run_corvane() as corvane:
            # A window that appears covers neither the collapsed island nor the card.
            self.open_window(self.screen.width // 2 - 150, 0)
            wait_until(corvane.is_resting, "the resting island")
            before = self.open_window(self.screen.width // 2 - 300, 0)
            wait_until(corvane.is_resting, "the resting island")
            self.open_and_dismiss(corvane, before)
            corvane.start_again("--open", "receive")
            corvane.wait_for("COPY ADDRESS")
            self.open_window(self.screen.width // 2 - 150, 0)
            wait_until(corvane.is_open, "the open card")
