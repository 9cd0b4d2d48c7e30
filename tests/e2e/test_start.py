"""The program starts, shows the collapsed island and opens it, whichever services are missing."""

import os

from support import IslandTest, wait_until


class NoBusTest(IslandTest):
    desktop_kind = {"bus": False}

    def test_starts_and_opens(self):
        for demo in (True, False):
            with self.subTest(demo=demo), self.run_corvane(demo=demo) as corvane:
                self.assertEqual(corvane.start_again("--quit").returncode, 1)
                self.assert_opens_and_folds(corvane)


class LockedMemoryTest(IslandTest):
    def test_says_once_that_memory_cannot_be_locked(self):
        # The limit does not hold for root's capability.
        limited = ["prlimit", "--memlock=0", "--"]
        if os.geteuid() == 0:
            limited = ["setpriv", "--bounding-set", "-ipc_lock", *limited]
        for under, times in (((), 0), (limited, 1)):
            with self.subTest(times=times), self.run_corvane(under=under) as corvane:
                self.assertEqual(corvane.messages().count("cannot lock memory"), times)
                self.assert_opens_and_folds(corvane)


class BareServerTest(IslandTest):
    """Without window manager and compositor, on a screen without a notch."""

    desktop_kind = {"window_manager": False, "compositor": False}
    desktops = ("x11",)

    def test_desktop_shows_round_the_island(self):
        backdrop = self.desktop.backdrop.colour
        with self.run_corvane(notch=None) as corvane:
            round_the_tab = ((-340, 10), (-90, 10), (90, 10), (340, 10), (0, 60), (0, 380))
            for place in round_the_tab:
                self.assertEqual(self.colour_at(*place), backdrop, place)
            corvane.hover()
            corvane.settled()
            for place in ((-340, 10), (340, 10), (-340, 200), (340, 200), (0, 380)):
                self.assertEqual(self.colour_at(*place), backdrop, place)
            corvane.leave()
            for place in round_the_tab:
                wait_until(lambda at=place: self.colour_at(*at) == backdrop, f"the desktop at {place}")
