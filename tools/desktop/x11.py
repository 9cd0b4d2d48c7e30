"""An X display as a user sees it: pixels, a pointer, windows that can be clicked."""

import time

from Xlib import XK, X, Xatom, display, error
from Xlib.ext import xtest

from .film import Film
from .picture import Picture
from .waiting import wait_until

_BAND_BYTES = 100_000
_STEP_PIXELS = 12
_STEP_SECONDS = 0.004


class Screen:
    """The first screen of a display. It moves the real pointer, so that the server generates the
    events."""

    def __init__(self, name):
        self.display = display.Display(name)
        self.root = self.display.screen().root
        self.width = self.display.screen().width_in_pixels
        self.height = self.display.screen().height_in_pixels

    def close(self):
        self.display.close()

    def capture(self, x=0, y=0, width=None, height=None):
        """A picture of the screen with all windows."""
        width, height = width or self.width, height or self.height
        rows = max(1, _BAND_BYTES // (4 * width))
        bands = []
        # Read in bands, because the client library reads large replies slowly; the grab keeps frames
        # from changing in between.
        self.display.grab_server()
        for top in range(y, y + height, rows):
            count = min(rows, y + height - top)
            bands.append(self.root.get_image(x, top, width, count, X.ZPixmap, 0xffffffff).data)
        self.display.ungrab_server()
        self.display.sync()
        return Picture(x, y, width, height, b"".join(bands))

    def film(self, x=0, y=0, width=None, height=None):
        """Records this part of the screen while entered."""
        return Film(self.display.get_display_name(), x, y, width or self.width, height or self.height)

    def jump(self, x, y):
        """Moves the pointer in one step."""
        xtest.fake_input(self.display, X.MotionNotify, x=round(x), y=round(y))
        self.display.sync()

    def move(self, x, y):
        """Moves the pointer through the positions in between, as a user does."""
        here = self.root.query_pointer()
        distance = max(abs(x - here.root_x), abs(y - here.root_y))
        steps = max(1, round(distance / _STEP_PIXELS))
        for step in range(1, steps + 1):
            self.jump(here.root_x + (x - here.root_x) * step / steps,
                      here.root_y + (y - here.root_y) * step / steps)
            time.sleep(_STEP_SECONDS)

    def click(self, x=None, y=None):
        """Moves there, if a position is given, and clicks the first button."""
        if x is not None:
            self.move(x, y)
        for event in (X.ButtonPress, X.ButtonRelease):
            xtest.fake_input(self.display, event, 1)
        self.display.sync()

    def drag(self, x, y, to_x, to_y):
        """Moves there and drags with the first button to another position."""
        self.move(x, y)
        xtest.fake_input(self.display, X.ButtonPress, 1)
        self.display.sync()
        self.move(to_x, to_y)
        xtest.fake_input(self.display, X.ButtonRelease, 1)
        self.display.sync()

    def tap(self, x, y, away_x, away_y):
        """Moves there, clicks and moves away, in one message to the server."""
        fake = xtest.fake_input
        fake(self.display, X.MotionNotify, x=round(x), y=round(y))
        fake(self.display, X.ButtonPress, 1)
        fake(self.display, X.ButtonRelease, 1)
        fake(self.display, X.MotionNotify, x=round(away_x), y=round(away_y))
        self.display.sync()

    def press(self, key, *modifiers):
        """Presses and releases the key with this X name ("Return", "a"), while `modifiers`
        ("Control_L") are held."""
        keysym = XK.string_to_keysym(key)
        self._stroke(keysym, [self.display.keysym_to_keycode(XK.string_to_keysym(held))
                              for held in modifiers])

    def type(self, text):
        """Types characters that have a key on the keyboard, alone or with Shift."""
        for character in text:
            self._stroke(ord(character), [])

    def _stroke(self, keysym, held):
        places = self.display.keysym_to_keycodes(keysym)
        keycode, level = min(places, key=lambda place: place[1], default=(0, 0))
        if not keycode or level > 1:
            raise ValueError(f"no key for the symbol {keysym:#x}")
        if level == 1:
            held = [*held, self.display.keysym_to_keycode(XK.XK_Shift_L)]
        strokes = [(X.KeyPress, code) for code in [*held, keycode]]
        strokes += [(X.KeyRelease, code) for code in [keycode, *reversed(held)]]
        for event, code in strokes:
            xtest.fake_input(self.display, event, code)
        self.display.sync()
        time.sleep(_STEP_SECONDS)

    def keyboard_owner(self):
        """The window with the keyboard focus; a number for the protocol's special values."""
        return self.display.get_input_focus().focus

    def keyboard_is_with(self, title):
        """True when a window with this title has the keyboard."""
        owner = self.keyboard_owner()
        try:
            return not isinstance(owner, int) and owner.get_wm_name() == title
        except error.BadWindow:
            return False  # it went while we were asking

    def window_named(self, name):
        """The visible child of the root window with this title, or None."""
        for window in self.root.query_tree().children:
            try:
                shown = window.get_attributes().map_state == X.IsViewable
                if shown and window.get_wm_name() == name:
                    return window
            except (error.BadWindow, error.BadDrawable):
                continue  # it disappeared during the query
        return None

    def has_window_manager(self):
        check = self.display.intern_atom("_NET_SUPPORTING_WM_CHECK")
        return self.root.get_full_property(check, Xatom.WINDOW) is not None

    def has_compositor(self):
        selection = self.display.intern_atom("_NET_WM_CM_S0")
        return self.display.get_selection_owner(selection) != X.NONE


class Window:
    """A window of another program, of one colour, which writes down what it gets: clicks and, letter by letter, what is
    typed."""

    def __init__(self, screen, x, y, width, height, colour=(255, 255, 255), managed=True):
        # A separate connection, because it receives events.
        self.colour = colour
        self._display = display.Display(screen.display.get_display_name())
        red, green, blue = colour
        self._window = self._display.screen().root.create_window(
            x, y, width, height, 0, X.CopyFromParent, X.InputOutput, X.CopyFromParent,
            background_pixel=red << 16 | green << 8 | blue, override_redirect=not managed,
            event_mask=X.ButtonPressMask | X.KeyPressMask)
        if not managed:
            self._window.configure(stack_mode=X.Below)
        self._window.map()
        self._clicks, self._typed = 0, []
        wait_until(lambda: self._window.get_attributes().map_state == X.IsViewable, "a window")

    def close(self):
        if self._display:
            self._display.close()
            self._display = None

    def _read(self):
        self._display.sync()
        while self._display.pending_events():
            happened = self._display.next_event()
            self._clicks += happened.type == X.ButtonPress
            if happened.type == X.KeyPress:
                symbol = self._display.keycode_to_keysym(happened.detail, happened.state & X.ShiftMask)
                if not XK.XK_Shift_L <= symbol <= XK.XK_Hyper_R:  # a modifier
                    self._typed.append(chr(symbol) if symbol < 256 else f"<{symbol}>")

    def clicks(self):
        """The number of clicks so far."""
        self._read()
        return self._clicks

    def typed(self):
        """What has been typed so far; keys without a letter as numbers in angle brackets."""
        self._read()
        return "".join(self._typed)

    def take_keyboard(self):
        self._window.set_input_focus(X.RevertToParent, X.CurrentTime)
        self._display.sync()

    def has_keyboard(self):
        return self._display.get_input_focus().focus == self._window


class Backdrop(Window):
    """A window that fills the screen below all others. It is not managed by the window manager, so that a click has
    arrived once the server has replied."""

    def __init__(self, screen, colour=(48, 92, 140)):
        super().__init__(screen, 0, 0, screen.width, screen.height, colour, managed=False)


class ClipboardManager:
    """Stands where a clipboard manager would, while entered, and takes nothing."""

    def __init__(self, screen):
        self._name = screen.display.get_display_name()

    def __enter__(self):
        self._display = display.Display(self._name)
        window = self._display.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        window.set_selection_owner(self._display.intern_atom("CLIPBOARD_MANAGER"), X.CurrentTime)
        self._display.sync()
        return self

    def __exit__(self, *_):
        self._display.close()

    def was_offered_something(self):
        """True if a program that ended wanted to hand over the clipboard."""
        self._display.sync()
        waiting = [self._display.next_event() for _ in range(self._display.pending_events())]
        return any(happened.type == X.SelectionRequest for happened in waiting)
