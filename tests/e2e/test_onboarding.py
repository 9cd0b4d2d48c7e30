"""The tour of a first run, with a real pointer and a real keyboard, and pictures of its pages in
build/screenshots/."""

from support import IslandTest, wait_until

WINDOW = (520, 640)
FLAG = "corvane.onboarded.v1"
PAGES = (
    ("CORVANE", "a solana wallet, forged into the notch.",
     "your balance lives above the menu bar. hover to open.\n"
     "fingerprint to unlock. one click to send."),
    ("INSTALL", "two things make the island permanent:", "LIVES IN APPLICATIONS",
     "dev build — install with the installer script", "STARTS AT LOGIN",
     "registers itself automatically once installed"),
    ("THE ISLAND",),
    ("YOUR WALLET", "FORGED HERE, LOCKED HERE", "FINGERPRINT AT THE DOOR", "SEND WITH A BURST",
     "RECEIVE WITH A QR", "BACK UP THE KEY"),
    ("HOVER THE NOTCH", "that's it. that's the whole gesture.\nyour island is up there right now."),
)
INK, GREEN = (244, 241, 233), (60, 208, 107)
HEADINGS = {page[0] for page in PAGES}
# Of the island in miniature, in points: its size, a text on it, and the caption.
PHASES = (("resting", (92, 16), None, "it rests in the notch — a quiet green pulse"),
          ("stretched", (250, 16), None, "hover: it stretches along the menu bar"),
          ("unfurled", (250, 95), "$1,234.56",
           "…then unfurls. balance, send, receive — right there."))


class Tour(IslandTest):
    def run_tour(self, **more):
        return self.run_corvane(onboarded=False, **more)

    def wait_for_page(self, corvane, number):
        """Until the page shows alone, with its buttons."""
        forward = "CONTINUE" if number < 4 else "OPEN THE ISLAND"
        expected = {*PAGES[number], forward, "Close", f"Page {number + 1} of 5"}

        def alone():
            texts = corvane.tree.texts()
            return (expected <= set(texts) and ("BACK" in texts) == (number > 0)
                    and HEADINGS & set(texts) == {PAGES[number][0]})
        wait_until(alone, lambda: f"page {number} among {corvane.tree.texts()}")

    def click(self, corvane, name):
        corvane.click(corvane.tree.find(name, "push button"))

    def wait_until_gone(self, corvane):
        wait_until(lambda: not corvane.tree.find("Close"), "a tour that is gone")

    def wait_until_opening(self, corvane):
        """Nobody points at the island, so it does not stay open for long."""
        wait_until(lambda: corvane.outline()[2] > corvane.band + 60, "the opening island", pause=0)
        self.wait_until_gone(corvane)
        corvane.hover()
        corvane.wait_for("TOTAL BALANCE")

    def window(self, corvane):
        """The window's place, in pixels."""
        return corvane.tree.find("Welcome to Corvane", "frame").extents(self.desktop.scale)


class TourTest(Tour):
    def test_by_pointer_to_the_open_island(self):
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            self.assertIs(corvane.settings()[FLAG], True, "at once, whatever comes of the tour")
            x, y, width, height = self.window(corvane)
            self.assertEqual((width, height), WINDOW)
            self.assertEqual((x + width // 2, y + height // 2),
                             (self.desktop.screen.width // 2, self.desktop.screen.height // 2))
            for number in (1, 0, 1, 2, 3, 4):
                self.click(corvane, "BACK" if number == 0 else "CONTINUE")
                self.wait_for_page(corvane, number)
            self.click(corvane, "OPEN THE ISLAND")
            self.wait_until_opening(corvane)

    def test_by_keyboard_to_the_open_island(self):
        press = self.desktop.screen.press
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            for keys, number in ((("Left", "Right"), 1), (("Right",), 2), (("Left",), 1),
                                 # Close, BACK, CONTINUE: as they are read.
                                 (("Tab", "Tab", "Tab", "Return"), 2), (("space",), 3),
                                 (("Right", "Right", "Right"), 4)):
                for key in keys:
                    press(key)
                self.wait_for_page(corvane, number)
            press("Return")
            self.wait_until_opening(corvane)

    def test_closed_half_way_it_does_not_come_again(self):
        def by_key(_):
            self.desktop.screen.press("Escape")

        def by_window_manager(_):
            self.desktop.screen.press("F4", "Alt_L")

        def by_button(corvane):
            self.click(corvane, "Close")

        def by_screen_reader(corvane):
            corvane.tree.find("Close", "push button").press()
        managed = [by_window_manager] if self.desktop.screen.has_window_manager() else []
        for close in (by_key, by_button, by_screen_reader, *managed):
            with self.subTest(close.__name__), self.run_tour() as corvane:
                self.click(corvane, "CONTINUE")
                self.wait_for_page(corvane, 1)
                close(corvane)
                self.wait_until_gone(corvane)
                self.assertTrue(corvane.is_resting())
                corvane.stop()
                corvane.start()
                self.assert_opens_and_folds(corvane)
                self.assertIsNone(corvane.tree.find("Close"))

    def test_is_for_first_runs_only(self):
        for demo, onboarded, shown in ((False, None, True), (False, True, False),
                                       (True, None, False)):
            with self.subTest(demo=demo, onboarded=onboarded), \
                    self.run_corvane(demo=demo, onboarded=onboarded) as corvane:
                wait_until(corvane.tree.things, "the program on the accessibility bus")
                if shown:
                    self.wait_for_page(corvane, 0)
                self.assert_opens_and_folds(corvane)
                self.assertEqual(bool(corvane.tree.find("Close")), shown)

    def test_is_moved_by_its_background(self):
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            x, y, width, height = self.window(corvane)
            middle = (x + width / 2, y + 60)
            self.desktop.screen.drag(*middle, middle[0] + 150, middle[1] + 70)
            # It sets out a little after the pointer, which has to be dragging first.
            wait_until(lambda: all(abs(now - expected) <= 20 for now, expected in zip(
                self.window(corvane), (x + 150, y + 70, width, height))),
                       lambda: f"the moved window at {self.window(corvane)}")
            self.click(corvane, "CONTINUE")
            self.wait_for_page(corvane, 1)


class BareServerTourTest(TourTest):
    """Neither window manager nor compositor."""

    desktop_kind = {"window_manager": False, "compositor": False}


class TourPictures:
    def save(self, picture, name):
        super().save(picture, f"tour-{name}")

    def capture(self):
        x, y, width, height = self.place
        margin = 20 * self.desktop.scale
        return self.desktop.screen.capture(x - margin, y - margin, width + 2 * margin,
                                           height + 2 * margin)

    def settled(self):
        pictures = [self.capture()]

        def same():
            pictures.append(self.capture())
            return pictures[-2].same_as(pictures[-1])
        wait_until(same, "a page at rest", pause=0.3)
        return pictures[-1]

    def demo(self, corvane, size, text, caption):
        """The demo in the phase with this caption, as soon as its island has its size and the text
        on it its full brightness."""
        scale = self.desktop.scale
        middle = self.place[0] + self.place[2] // 2
        wait_until(lambda: corvane.tree.find(caption), caption, pause=0)
        heading = corvane.tree.find("THE ISLAND").extents(scale)
        # The stage lies 18 points below the heading and is 210 high; its island hangs at the top.
        stage = heading[1] + heading[3] + 18 * scale
        seen = None

        def grown():
            nonlocal seen
            picture = self.capture()
            run = picture.dark_run(stage + 2 * scale, middle, limit=4)
            bottom = stage
            while max(picture.at(middle + 20 * scale, bottom)) < 4:
                bottom += 1
            seen = run and ((run[1] - run[0]) / scale, (bottom - stage) / scale)
            writing = corvane.tree.find(text) if text else None
            bright = writing and INK in picture.colours(*writing.extents(scale))
            fits = seen and all(abs(now - final) <= 1 for now, final in zip(seen, size))
            return picture if fits and (bright or not text) else None
        return wait_until(grown, lambda: f"{text} on an island of {size}, not {seen}", pause=0)

    def test_pages(self):
        with self.run_tour() as corvane:
            self.wait_for_page(corvane, 0)
            self.place = self.window(corvane)
            for number, page in enumerate(PAGES):
                if number > 0:
                    self.click(corvane, "CONTINUE")
                    self.wait_for_page(corvane, number)
                if number == 2:
                    for name, *phase in PHASES:
                        self.save(self.demo(corvane, *phase), f"demo-{name}")
                    continue
                # The mark on the first page breathes; nothing else moves there.
                picture = self.settled() if number > 0 else self.capture()
                self.save(picture, page[0].lower().replace(" ", "-"))
                x, y, width, height = self.place
                self.assertLessEqual({INK, GREEN}, picture.colours(x, y, width, height))
                # Round corners, and a dark ground that the backdrop does not get through to.
                for corner in ((x, y), (x + width - 1, y), (x, y + height - 1)):
                    self.assertEqual(picture.at(*corner), self.desktop.backdrop.colour)
                self.assertLess(max(picture.at(x + width // 2, y + 40)), 48)


class TourPicturesAtScale1Test(TourPictures, Tour):
    pass


class TourPicturesAtScale2Test(TourPictures, Tour):
    desktop_kind = {"size": (1800, 1600), "scale": 2}


class TourPicturesWithoutCompositorTest(TourPictures, Tour):
    desktop_kind = {"compositor": False}

    def save(self, picture, name):
        super().save(picture, f"uncomposited-{name}")
