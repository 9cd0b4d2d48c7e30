"""The tour of a first run, with a real pointer and a real keyboard."""

from Xlib import X

from support import IslandTest, wait_until

FLAG = "corvane.onboarded.v1"
HEADINGS = ("CORVANE", "INSTALL", "THE ISLAND", "YOUR WALLET", "HOVER THE NOTCH")


class TourTest(IslandTest):
    def run_tour(self):
        return self.run_corvane(onboarded=False)

    def wait_for_page(self, corvane, number):
        """Waits until only this page is visible, with its buttons."""
        expected = {"CONTINUE" if number < 4 else "OPEN THE ISLAND", "Close", f"Page {number + 1} of 5"}

        def alone():
            texts = set(corvane.tree.texts())
            return expected <= texts and texts & set(HEADINGS) == {HEADINGS[number]}
        wait_until(alone, lambda: f"page {number} among {corvane.tree.texts()}")
        wait_until(lambda: corvane.has_keyboard("Welcome to Corvane"), "the keyboard for the tour")

    def wait_until_opening(self, corvane):
        """The pointer is not on the island, so it stays open only for a short time."""
        wait_until(lambda: corvane.outline()[2] > corvane.band + 60, "the opening island", pause=0)
        wait_until(lambda: not corvane.tree.find("Close"), "a tour that is gone")
        corvane.hover()
        corvane.wait_for("TOTAL BALANCE")

    def window(self, corvane):
        """The window's position in pixels."""
        return corvane.tree.find("Welcome to Corvane", "frame").extents(self.desktop.scale)

    def test_by_pointer_to_the_open_island(self):
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            self.assertIs(corvane.settings()[FLAG], True, "at once, whatever comes of the tour")
            x, y, width, height = self.window(corvane)
            self.assertEqual((x + width // 2, y + height // 2),
                             (self.desktop.screen.width // 2, self.desktop.screen.height // 2))
            # Task bars find the program's name and icon.
            owner, icon = (self.desktop.screen.keyboard_owner(),
                           self.desktop.screen.display.intern_atom("_NET_WM_ICON"))
            self.assertEqual(owner.get_wm_class()[1], "corvane")
            self.assertGreater(len(owner.get_full_property(icon, X.AnyPropertyType).value), 48 * 48)
            # It is dragged by its background, and starts to move shortly after the pointer.
            self.desktop.screen.drag(x + width / 2, y + 60, x + width / 2 + 150, y + 130)
            wait_until(lambda: all(abs(now - expected) <= 20 for now, expected in zip(
                self.window(corvane), (x + 150, y + 70, width, height))),
                       lambda: f"the moved window at {self.window(corvane)}")
            for number in (1, 0, 1, 2, 3, 4):
                corvane.press_button("BACK" if number == 0 else "CONTINUE")
                self.wait_for_page(corvane, number)
            corvane.press_button("OPEN THE ISLAND")
            self.wait_until_opening(corvane)

    def test_by_keyboard_to_the_open_island(self):
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            for keys, number in ((("Left", "Right"), 1),
                                 # Close, BACK, CONTINUE: in reading order.
                                 (("Tab", "Tab", "Tab", "Return"), 2), (("space",), 3), (("Right",), 4)):
                for key in keys:
                    self.desktop.screen.press(key)
                self.wait_for_page(corvane, number)
            self.desktop.screen.press("Return")
            self.wait_until_opening(corvane)

    def test_closed_half_way_it_does_not_come_again(self):
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            self.desktop.screen.press("F4", "Alt_L")
            wait_until(lambda: not corvane.tree.find("Close"), "a tour that is gone")
            corvane.stop()
            corvane.start()
            self.assert_opens_and_folds(corvane)
            self.assertIsNone(corvane.tree.find("Close"))
