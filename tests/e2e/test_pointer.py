"""A real pointer on the island and on the window below it."""

from support import IslandTest, wait_until


class PointerTest(IslandTest):
    def passes(self, corvane, x, y):
        """True if a click there reaches the window below. Moves the pointer away immediately."""
        before = self.desktop.backdrop.clicks()
        corvane.tap(x, y)
        return self.desktop.backdrop.clicks() > before

    def test_clicks_pass_where_no_card_is(self):
        with self.run_corvane() as corvane:
            for place in ((0, 5), (-130, 20), (90, 20), (0, 100), (340, 350)):
                self.assertTrue(self.passes(corvane, *place), f"at rest at {place}")
            corvane.hover()
            before = self.desktop.backdrop.clicks()
            for place in ((-300, 60), (0, 100), (300, 20), (0, 5), (-290, 200), (0, 0)):
                corvane.click_at(*place)
                corvane.settled()
                self.assertTrue(corvane.is_open(), f"the open card stays open at {place}")
            self.assertEqual(self.desktop.backdrop.clicks(), before, "the open card takes clicks")
            for place in ((-335, 60), (335, 60), (0, 380)):
                self.assertTrue(self.passes(corvane, *place), f"beside the open card at {place}")
            corvane.leave()
            for place in ((0, 5), (-130, 20), (-300, 20), (0, 100)):
                wait_until(lambda at=place: self.passes(corvane, *at),
                           f"after folding, a click through {place}")

            # It opens if the pointer jumps to the edge of the screen.
            corvane.point_at(0, 0)
            wait_until(corvane.is_open, "the open card")
