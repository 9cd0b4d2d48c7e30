"""Faults of a few frames, looked for in every frame that the X server showed."""

from support import IslandTest, wait_until

NEAR = 17  # a column this far from the card's edge lies beyond its round corner and before its content


class FilmTest(IslandTest):
    desktop_kind = {"size": (1000, 520), "backdrop": (255, 255, 255)}
    desktops = ("x11",)

    def film(self, corvane, act, *area):
        """The frames of an area, or of the panel, until all has been still for longer than any pause."""
        with self.desktop.screen.film(*area) if area else corvane.film() as film:
            act()
            wait_until(lambda: corvane.is_open() and film.still_for() > 0.5, "an open card at rest")
        return film

    def assert_no(self, faults, film, name):
        """`faults` finds none in any frame of an animation, of which there were some."""
        seen = [f"{name} after {seconds:.3f} s: {fault}" for seconds, picture in film for fault in faults(picture)]
        self.assertEqual(seen, [])
        self.assertGreater(len(film), 10, name)

    def shadow_faults(self, picture):
        left, right = picture.dark_run(4, self.desktop.screen.width // 2)
        if right - left < 400:
            return  # other corners, hardly a shadow
        column = [picture.at(left + NEAR, row)[1] for row in range(picture.height)]
        below = max(row for row, green in enumerate(column) if green < 40) + 1
        darkest = min(column[below + 1:])
        for corner in (left + 1, right - 2):
            if picture.at(corner, below - 2)[1] < darkest:
                yield "a corner darker than the shadow"
        shadow = [picture.at(x, below + 6)[1] for x in range(left, right)]
        for x in range(2, len(shadow) - 2):
            if shadow[x] > max(shadow[x - 2], shadow[x + 2]) + 1:
                yield f"a bright column in the shadow at {x}"

    def test_shadow_and_corners_stay_soft(self):
        with self.run_corvane() as corvane:
            for name, act in (("opening", lambda: corvane.point_at(0, 12)),
                              ("RECEIVE", lambda: corvane.press_button("RECEIVE")),
                              ("back", lambda: corvane.press_button("Back to the balance"))):
                self.assert_no(self.shadow_faults, self.film(corvane, act), name)

    def test_a_rolling_headline_is_never_cut(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.click(corvane.still("$1,234.05", "push button"))
            corvane.settled()
            headline = corvane.tree.find("8.2000 SOL", "push button")
            x, y, width, height = (round(part) for part in headline.extents(1))
            film = self.film(corvane, lambda: corvane.click(headline), x - 4, y - 4, width + 40, height + 8)
            figures = []
            for _, picture in film:
                columns = [max(picture.at(column, row)[1] for row in range(picture.y, picture.y + picture.height))
                           for column in range(picture.x, picture.x + picture.width)]
                ink = max(columns)
                ends = [at for at, brightness in enumerate(columns) if brightness > ink / 2]
                figures.append((ink, ends[-1] - ends[0]))
            faintest = min(range(len(figures)), key=lambda at: figures[at][0])
            self.assertGreater(faintest, 3)
            # The outgoing figure keeps its width while it leaves; its last letter is wider than the tolerance.
            narrow = [wide for _, wide in figures[:faintest] if wide < figures[0][1] - 8]
            self.assertEqual(narrow, [], figures)

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
