"""A program that covers the screen takes the resting island away, if the user wants that."""

from Xlib import X, display
from Xlib.protocol import event

from support import IslandTest, wait_until


class Film:
    """A window that turns full screen when asked to, while entered."""

    def __init__(self, screen):
        self._display = display.Display(screen.display.get_display_name())
        self._root = self._display.screen().root
        self._window = self._root.create_window(0, 0, 300, 200, 0, X.CopyFromParent, background_pixel=0x884422)
        self._window.map()
        self._display.sync()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._display.close()

    def set_full_screen(self, on):
        state, full = (self._display.intern_atom(name) for name in ("_NET_WM_STATE", "_NET_WM_STATE_FULLSCREEN"))
        self._root.send_event(event.ClientMessage(window=self._window, client_type=state,
                                                  data=(32, [int(on), full, 0, 1, 0])),
                              event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self._display.sync()


class FullscreenTest(IslandTest):
    desktops = ("x11",)

    def shows(self, corvane):
        return self.desktop.screen.window_named("Corvane") is not None and corvane.is_resting()

    def test_hides_at_rest_alone(self):
        hide = {"corvane.fullscreen": "hide"}
        with self.run_corvane(hide) as corvane, Film(self.desktop.screen) as film:
            film.set_full_screen(True)
            wait_until(lambda: self.desktop.screen.window_named("Corvane") is None, "no island above a film")
            corvane.point_at(0, 12)
            corvane.point_at(-600, 500)
            corvane.start_again("--open", "balance")
            wait_until(corvane.is_open, "the card that was asked for")
            corvane.point_at(0, 100)
            self.assertTrue(corvane.is_open(corvane.settled()), "an open card stays")
            corvane.point_at(-600, 500)
            wait_until(lambda: self.desktop.screen.window_named("Corvane") is None, "no island after folding")
            corvane.point_at(0, 12)
            corvane.settled()
            self.assertIsNone(self.desktop.screen.window_named("Corvane"), "the pointer is the film's")
            corvane.point_at(-600, 500)
            film.set_full_screen(False)
            wait_until(lambda: self.shows(corvane), "the island after the film")
            corvane.hover()
            film.set_full_screen(True)
            self.assertTrue(corvane.is_open(corvane.settled()), "an open card stays under a new film")
        with self.run_corvane(hide, environment={"CORVANE_FULLSCREEN": "show"}) as corvane, \
                Film(self.desktop.screen) as film:
            film.set_full_screen(True)
            wait_until(lambda: self.colour_at(0, 500) == (0x88, 0x44, 0x22), "the film")
            corvane.hover()
            corvane.leave()
