"""Operation by keyboard only: focus, the order of Tab, the effect of keys."""

from Xlib import X

from support import SHORT_ADDRESS, IslandTest, wait_until

TAB_ORDER = {
    "balance": ["Refresh", "Settings", "$1,234.05", "BACK TO YOUR ADDRESS", SHORT_ADDRESS, "RECEIVE", "SEND"],
    "SEND": ["Refresh", "Settings", "Back to the balance", "TO", "AMOUNT (SOL)", "MAX"],
    "RECEIVE": ["Refresh", "Settings", "Back to the balance", "BACK TO YOUR ADDRESS", "COPY ADDRESS"],
    "Settings": ["Refresh", "Settings", "WALLET ADDRESS (public key, watch-only)",
                 "CUSTOM RPC URL (optional, wins over public RPC)", "NETWORK", "BACKUP", "REMOVE",
                 "QUIT", "DONE"],
}


class KeyboardTest(IslandTest):
    def setUp(self):
        super().setUp()
        self.screen = self.desktop.screen

    def make_window(self):
        """An ordinary window of another program, with keyboard focus."""
        window = self.screen.root.create_window(100, 600, 300, 200, 0, X.CopyFromParent)
        window.map()
        self.screen.display.sync()
        wait_until(lambda: window.get_attributes().map_state == X.IsViewable, "a window")
        window.set_input_focus(X.RevertToParent, X.CurrentTime)
        wait_until(lambda: self.screen.keyboard_owner() == window, "its keyboard")
        self.addCleanup(window.destroy)
        return window

    def focused(self, corvane):
        return next((thing.name for thing in corvane.tree.things()
                     if thing.focused and thing.name and thing.role != "frame"), None)

    def test_takes_the_keyboard_and_gives_it_back(self):
        other = self.make_window()
        with self.run_corvane() as corvane:
            island = self.screen.window_named("Corvane")
            corvane.hover()
            corvane.settled()
            self.assertEqual(self.screen.keyboard_owner(), other, "opening must not take the focus")
            corvane.press_button("SEND")
            wait_until(lambda: self.screen.keyboard_owner() == island, "the island's keyboard")
            corvane.press_button("Back to the balance")
            corvane.leave()
            wait_until(lambda: self.screen.keyboard_owner() == other, "the keyboard back")

            # This time the previous owner of the focus no longer exists.
            corvane.hover()
            corvane.press_button("SEND")
            wait_until(lambda: self.screen.keyboard_owner() == island, "the island's keyboard")
            other.unmap()
            self.screen.display.sync()
            corvane.press_button("Back to the balance")
            corvane.leave()
            wait_until(lambda: self.screen.keyboard_owner() != island, "the keyboard let go")

    def test_tab_goes_in_the_order_of_reading(self):
        with self.run_corvane() as corvane:
            for pane, order in TAB_ORDER.items():
                with self.subTest(pane):
                    corvane.hover()
                    corvane.wait_for("TOTAL BALANCE", "$1,234.05")
                    if pane == "balance":
                        # No control of this card takes focus by a click, so the window gets it
                        # directly.
                        self.screen.window_named("Corvane").set_input_focus(X.RevertToParent,
                                                                            X.CurrentTime)
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
            before = self.focused(corvane)
            self.screen.press(*keys)
            names.append(wait_until(lambda last=before: self.moved(corvane, last),
                                    lambda: f"a step on from {names}"))
        return names

    def moved(self, corvane, before):
        name = self.focused(corvane)
        return name if name != before else None

    def test_the_picker_follows_the_keys(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.press_button("Settings")
            corvane.settled()
            while self.focused(corvane) != "NETWORK":
                self.screen.press("Tab")
            self.screen.press("Right")
            wait_until(lambda: corvane.settings().get("corvane.network") == "devnet", "devnet")
            self.screen.press("Left")
            wait_until(lambda: corvane.settings()["corvane.network"] == "mainnet", "mainnet")
