"""A headless Wayland desktop: sway, with a pointer and a keyboard that a script moves."""

import os
import pathlib
import subprocess
import threading
import time

from .desktop import Desktop
from .picture import Picture
from .waiting import PATIENCE, wait_until
from .wayland import Buffer, Connection, Descriptor

_STEP_PIXELS = 12
_STEP_SECONDS = 0.004
_LEFT_BUTTON = 0x110
# The numbers of the keys of a PC keyboard (Linux' input event codes), row by row.
_ROWS = {2: ("1234567890-=", "!@#$%^&*()_+"), 16: ("qwertyuiop[]", "QWERTYUIOP{}"),
         30: ("asdfghjkl;'`", "ASDFGHJKL:\"~"), 44: ("zxcvbnm,./", "ZXCVBNM<>?")}
_PLAIN = {letter: first + place for first, (row, _) in _ROWS.items() for place, letter in enumerate(row)} | {" ": 57}
_SHIFTED = {letter: first + place for first, (_, row) in _ROWS.items() for place, letter in enumerate(row)}
_NAMED = {"Escape": 1, "BackSpace": 14, "Tab": 15, "Return": 28, "Control_L": 29, "Shift_L": 42, "comma": 51,
          "Alt_L": 56, "space": 57, "F4": 62, "Home": 102, "Up": 103, "Left": 105, "Right": 106, "End": 107,
          "Down": 108, "Delete": 111}
_SHIFT = _NAMED["Shift_L"]
_MODIFIERS = {_SHIFT: 1, _NAMED["Control_L"]: 4, _NAMED["Alt_L"]: 8}
_KEYMAP = b"""xkb_keymap { xkb_keycodes { include "evdev+aliases(qwerty)" }; xkb_types { include "complete" };
xkb_compat { include "complete" }; xkb_symbols { include "pc+us+inet(evdev)" }; };\0"""
# In points.
_WINDOW_PLACE, _WINDOW_SIZE = (100, 300), (300, 200)
_CONFIGURATION = """xwayland {xwayland}
focus_follows_mouse no
default_border none
default_floating_border none
for_window [title="an ordinary window"] floating enable, move absolute position {x} {y}
output * resolution {width}x{height} position 0 0 scale {scale}
exec sh -c 'echo "$WAYLAND_DISPLAY $DISPLAY" >{folder}/display.new && mv {folder}/display.new {folder}/display'
"""


def _now():
    return round(1000 * time.monotonic()) & 0xffffffff


class WaylandScreen:
    """The first output of a compositor, with a pointer and a keyboard, which stay as long as this object does.
    Positions are in pixels of the output."""

    def __init__(self, socket, scale):
        self.socket, self._scale, self._at, self._held = socket, scale, (0, 0), 0
        self._connection = connection = Connection(socket)
        self._output = connection.bind("wl_output").on(mode=self._set_size)
        self._shm, self._screencopy = connection.bind("wl_shm"), connection.bind("zwlr_screencopy_manager_v1")
        seat = connection.bind("wl_seat")
        self._pointer = connection.new("zwlr_virtual_pointer_v1")
        connection.bind("zwlr_virtual_pointer_manager_v1", 2).create_virtual_pointer_with_output(
            seat, self._output, self._pointer)
        self._keyboard = connection.new("zwp_virtual_keyboard_v1")
        connection.bind("zwp_virtual_keyboard_manager_v1").create_virtual_keyboard(seat, self._keyboard)
        keymap = os.memfd_create("keymap")
        os.write(keymap, _KEYMAP)
        self._keyboard.keymap(1, Descriptor(keymap), len(_KEYMAP))
        os.close(keymap)
        connection.roundtrip()

    def _set_size(self, _flags, width, height, _refresh):
        self.width, self.height = width, height

    def close(self):
        self._connection.close()

    def capture(self, x=0, y=0, width=None, height=None):
        """A picture of the screen with all windows."""
        width, height = width or self.width, height or self.height
        whole = int(self._scale) != self._scale
        # The compositor counts in points, of which the part wanted may not be a whole number.
        left, top = (0, 0) if whole else (x // self._scale, y // self._scale)
        right, bottom = -(-(x + width) // self._scale), -(-(y + height) // self._scale)
        frame, known, done = self._connection.new("zwlr_screencopy_frame_v1"), threading.Event(), threading.Event()
        said = {}

        def note(what, happened, *values):
            said[what] = values
            happened.set()
        frame.on(buffer=lambda *form: note("buffer", known, *form), flags=lambda flags: note("flags", known, flags),
                 ready=lambda *_: note("ready", done), failed=lambda: (note("failed", known), done.set()))
        if whole:
            self._screencopy.capture_output(frame, 0, self._output)
        else:
            self._screencopy.capture_output_region(frame, 0, self._output, left, top, right - left, bottom - top)
        known.wait(PATIENCE)
        if said.get("buffer", (None,))[0] not in (0, 1):
            raise RuntimeError(f"no picture of the screen: {said}")
        form, across, down, stride = said["buffer"]
        buffer = Buffer(self._connection, self._shm, across, down, stride, form)
        try:
            frame.copy(buffer.thing)
            done.wait(PATIENCE)
            if "ready" not in said:
                raise RuntimeError(f"no picture of the screen: {said}")
            first, start = y - round(top * self._scale), 4 * (x - round(left * self._scale))
            rows = range(first, first + height)
            if said.get("flags") == (1,):  # upside down
                rows = (down - 1 - row for row in rows)
            data = b"".join(buffer.memory[row * stride + start:row * stride + start + 4 * width] for row in rows)
        finally:
            frame.destroy()
            buffer.close()
        return Picture(x, y, width, height, data)

    def jump(self, x, y):
        """Moves the pointer in one step."""
        self._go(x, y)
        self._connection.roundtrip()

    def _go(self, x, y):
        self._at = x, y
        self._pointer.motion_absolute(_now(), round(x), round(y), self.width, self.height)
        self._pointer.frame()

    def move(self, x, y):
        """Moves the pointer through the positions in between, as a user does."""
        from_x, from_y = self._at
        steps = max(1, round(max(abs(x - from_x), abs(y - from_y)) / _STEP_PIXELS))
        for step in range(1, steps + 1):
            self.jump(from_x + (x - from_x) * step / steps, from_y + (y - from_y) * step / steps)
            time.sleep(_STEP_SECONDS)

    def _button(self, *states):
        for state in states:
            self._pointer.button(_now(), _LEFT_BUTTON, state)
            self._pointer.frame()

    def click(self, x=None, y=None):
        """Moves there, if a position is given, and clicks the first button."""
        if x is not None:
            self.move(x, y)
        self._button(1, 0)
        self._connection.roundtrip()

    def drag(self, x, y, to_x, to_y):
        """Moves there and drags with the first button to another position."""
        self.move(x, y)
        self._button(1)
        self.move(to_x, to_y)
        self._button(0)
        self._connection.roundtrip()

    def tap(self, x, y, away_x, away_y):
        """Moves there, clicks and moves away, before a program can react."""
        self._go(x, y)
        self._button(1, 0)
        self._go(away_x, away_y)
        self._connection.roundtrip()

    def press(self, key, *modifiers):
        """Presses and releases the key with this X name ("Return", "a"), while `modifiers`
        ("Control_L") are held."""
        self._stroke(_NAMED.get(key) or _PLAIN[key], [_NAMED[held] for held in modifiers])

    def type(self, text):
        """Types characters that have a key on the keyboard, alone or with Shift."""
        for character in text:
            if character in _PLAIN:
                self._stroke(_PLAIN[character], [])
            else:
                self._stroke(_SHIFTED[character], [_SHIFT])

    def _stroke(self, code, held):
        for one, state in [*((one, 1) for one in [*held, code]), *((one, 0) for one in [code, *reversed(held)])]:
            self._keyboard.key(_now(), one, state)
            if one in _MODIFIERS:
                self._held ^= _MODIFIERS[one]
                self._keyboard.modifiers(self._held, 0, 0, 0)
        self._connection.roundtrip()
        time.sleep(_STEP_SECONDS)


class WaylandWindow:
    """A window of one colour that writes down what it gets: clicks and, letter by letter, what is typed."""

    def __init__(self, socket, title, size, colour=(48, 92, 140)):
        self.colour = colour
        self._clicks, self._typed, self._keyboard, self._shift = [], [], False, False
        self._size, self._at, self._buffer = size, None, None
        self._connection = connection = Connection(socket)
        self._shm, shell = connection.bind("wl_shm"), connection.bind("xdg_wm_base")
        shell.on(ping=shell.pong)
        self._surface, self._role, self._top = (
            connection.new(kind) for kind in ("wl_surface", "xdg_surface", "xdg_toplevel"))
        connection.bind("wl_compositor").create_surface(self._surface)
        shell.get_xdg_surface(self._role.on(configure=self._draw), self._surface)
        self._role.get_toplevel(self._top.on(configure=self._resize))
        self._top.set_title(title)
        seat, pointer, keyboard = connection.bind("wl_seat"), connection.new("wl_pointer"), connection.new(
            "wl_keyboard")
        seat.get_pointer(pointer.on(enter=lambda _serial, _surface, x, y: self._point(0, x, y), motion=self._point,
                                    button=self._press))
        seat.get_keyboard(keyboard.on(enter=lambda *_: self._give(True), leave=lambda *_: self._give(False),
                                      key=self._key, modifiers=self._modify))
        self._surface.commit()
        wait_until(lambda: self._buffer, "a window's first picture")
        connection.roundtrip()

    def _resize(self, width, height, _states):
        self._size = width or self._size[0], height or self._size[1]

    def _draw(self, serial):
        self._role.ack_configure(serial)
        width, height = self._size
        former, self._buffer = self._buffer, Buffer(self._connection, self._shm, width, height)
        red, green, blue = self.colour
        self._buffer.memory[:] = bytes((blue, green, red, 255)) * (width * height)
        self._surface.attach(self._buffer.thing, 0, 0)
        self._surface.damage(0, 0, width, height)
        self._surface.commit()
        if former:
            former.close()

    def _point(self, _time, x, y):
        self._at = x, y

    def _press(self, _serial, _time, _button, state):
        if state:
            self._clicks.append(self._at)

    def _give(self, has):
        self._keyboard = has

    def _modify(self, _serial, pressed, *_):
        self._shift = bool(pressed & _MODIFIERS[_SHIFT])

    def _key(self, _serial, _time, code, state):
        table = _SHIFTED if self._shift else _PLAIN
        if state and code not in _MODIFIERS:
            self._typed.append(next((letter for letter, number in table.items() if number == code), f"<{code}>"))

    def close(self):
        self._connection.close()

    def clicks(self):
        """The number of clicks so far."""
        self._connection.roundtrip()
        return len(self._clicks)

    def typed(self):
        """What has been typed so far; keys without a letter as numbers in angle brackets."""
        self._connection.roundtrip()
        return "".join(self._typed)

    def has_keyboard(self):
        self._connection.roundtrip()
        return self._keyboard


class _OrdinaryWindow(WaylandWindow):
    """A floating window beside the island."""

    def __init__(self, screen, scale):
        super().__init__(screen.socket, "an ordinary window", _WINDOW_SIZE, (255, 255, 255))
        self._screen = screen
        self._middle = [(place + size / 2) * scale for place, size in zip(_WINDOW_PLACE, _WINDOW_SIZE)]

    def take_keyboard(self):
        """By a click, as a user does."""
        self._screen.click(*self._middle)


class WaylandClipboard:
    """What a Wayland desktop does with its clipboard."""

    def set_clipboard(self, text):
        """Copies a text to the clipboard, as another program does."""
        # It keeps running to serve the text until another program takes the clipboard.
        subprocess.run(["wl-copy"], env=self.environment, input=text.encode(), stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=PATIENCE, check=True, **self.identity)

    def clipboard(self):
        """The text on the clipboard."""
        read = subprocess.run(["wl-paste", "--no-newline"], env=self.environment, capture_output=True, text=True,
                              timeout=PATIENCE, check=False, **self.identity)
        return read.stdout if read.returncode == 0 else None


class SwayDesktop(WaylandClipboard, Desktop):
    """A headless sway, with or without an X server for programs that know no other (Xwayland). It runs as an ordinary
    user, with all programs on it, because it refuses root."""

    _refuses_root = True

    def __init__(self, xwayland=False, **more):
        super().__init__(**more)
        self._wanted["xwayland"] = xwayland

    def _start(self):
        self.environment |= {"XDG_SESSION_TYPE": "wayland", "XDG_CURRENT_DESKTOP": "sway"}
        self._start_services()
        width, height = self._size
        configuration = self.folder / "sway.conf"
        configuration.write_text(_CONFIGURATION.format(width=width, height=height, scale=self.scale, folder=self.folder, x=_WINDOW_PLACE[0],
                                                       y=_WINDOW_PLACE[1],
                                                       xwayland="enable" if self._wanted["xwayland"] else "disable"))
        self._run("sway", "--config", str(configuration), environment={
            "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"})
        wait_until((self.folder / "display").exists, lambda: f"sway\n{(self.folder / 'sway.log').read_text()}")
        names = (self.folder / "display").read_text().split()
        self.environment |= zip(("WAYLAND_DISPLAY", "DISPLAY"), names)
        self._socket = pathlib.Path(self.environment["XDG_RUNTIME_DIR"]) / self.environment["WAYLAND_DISPLAY"]
        self.screen = WaylandScreen(self._socket, self.scale)
        self.screen.jump(self.screen.width / 4, self.screen.height * 3 / 4)
        if self._wanted["backdrop"]:
            colour = self._wanted["backdrop"]
            self.backdrop = WaylandWindow(self._socket, "the backdrop", self._size,
                                          *([] if colour is True else [colour]))
            middle = (self.screen.width // 2, self.screen.height // 2, 1, 1)
            wait_until(lambda: self.screen.capture(*middle).at(*middle[:2]) == self.backdrop.colour,
                       "the backdrop")

    def open_window(self):
        """An ordinary window of another program, which has the keyboard."""
        window = _OrdinaryWindow(self.screen, self.scale)
        wait_until(window.has_keyboard, "its keyboard")
        return window
