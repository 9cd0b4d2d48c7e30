"""Faults of a few frames, looked for in every frame that the X server showed."""

from support import IslandTest, wait_until


class FilmTest(IslandTest):
    desktop_kind = {"size": (1000, 520), "backdrop": (255, 255, 255)}

    def film(self, corvane, act, *area):
        """The frames of an area, or of the panel, until all has been still for longer than any pause."""
        with self.desktop.screen.film(*area) if area else corvane.film() as film:
            act()
            wait_until(lambda: corvane.is_open() and film.still_for() > 0.5, "an open card at rest")
        return film

    def test_the_chart_is_uncovered_on_every_arrival(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            top = round(sum(corvane.still("BACK TO YOUR ADDRESS", "push button").extents(1)[1::2])) + 4
            x, below, width, _ = (round(part) for part in corvane.still("SEND", "push button").extents(1))
            right, below = x + width, below - 8
            corvane.leave()
            left = self.desktop.screen.width - right

            def chart_end(picture):
                """The rightmost green column above the buttons."""
                return max((x for x in range(left, right) for y in range(top, below)
                            if picture.at(x, y)[1] > 100 > picture.at(x, y)[0]), default=left)
            for name in ("opening", "RECEIVE", "SEND", "Settings"):
                if name == "opening":
                    act = lambda: corvane.point_at(0, 12)  # noqa: E731
                else:
                    corvane.press_button(name)
                    leave = corvane.still("DONE" if name == "Settings" else "Back to the balance", "push button")
                    act = lambda button=leave: corvane.click(button)  # noqa: E731
                film = self.film(corvane, act, left, top, right - left, below - top)
                ends = [chart_end(picture) for _, picture in film]
                uncovered = ends[max((at for at, end in enumerate(ends) if end == left), default=0):]
                parts = {end for end in uncovered if left + 50 < end < right - 50}
                self.assertGreater(len(parts), 5, f"{name}: the chart ends at {ends}")
