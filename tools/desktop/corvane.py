"""Runs the built program and operates it."""

import json
import os
import pathlib
import subprocess
import time

from . import processes
from .accessible import AccessibleTree
from .waiting import PATIENCE, wait_until

_ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ.get("CORVANE_BINARY", _ROOT / "build/release/app/corvane"))

NOTCH = (180, 38)
CARD_WIDTH = 620
ONBOARDED = "corvane.onboarded.v1"
ON_NOTCH = (0, 12)
ASIDE = (-600, 500)
DARK = 40  # upper limit of each colour channel in the island's black
_FIELDS = ("text", "password text")
_STILL_SECONDS = 0.4  # longer than any pause in an animation, shorter than a blink of the caret
_PANEL_SIDE = 354  # distance from the middle of the screen to the panel's edge
_PANEL_BODY = 360  # height of the panel below the top band


class Corvane:
    """Runs the program on a desktop while entered.

    `settings` is the initial content of the settings file: an object, or text that is written
    unchanged. `onboarded` is added to an object as the flag for a finished tour; None adds nothing.
    `under` is a command that runs the program by exec. All positions are in points, relative to the
    middle of the screen's top edge. """

    def __init__(self, desktop, localnet=None, demo=True, notch=NOTCH, settings=None,
                 arguments=(), environment=None, program=PROGRAM, onboarded=True, under=()):
        self.desktop, self.notch = desktop, notch
        self._command = [*map(str, under), str(desktop.runnable(program)),
                         *(["--endpoints", str(localnet.endpoints)] if localnet else []),
                         *(["--demo-keychain"] if demo else []), *arguments]
        self.environment = desktop.environment | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        if notch:
            self.environment["CORVANE_NOTCH"] = f"{notch[0]}x{notch[1]}"
        self.environment |= environment or {}
        folder = pathlib.Path(self.environment["XDG_CONFIG_HOME"])
        self.settings_file = folder / ("corvane-demo" if demo else "corvane") / "settings.json"
        self.band = notch[1] if notch else 32
        self._middle = desktop.screen.width // 2
        if not isinstance(settings, str) and onboarded is not None:
            settings = {ONBOARDED: onboarded, **(settings or {})}
        self._demo, self._initial = demo, settings
        self._process = self._tree = self.address = None

    def __enter__(self):
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        if self._initial is None:
            self.settings_file.unlink(missing_ok=True)
        else:
            text = self._initial if isinstance(self._initial, str) else json.dumps(self._initial)
            self.settings_file.write_text(text)
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        """Starts the program, with the pointer elsewhere, and waits until the collapsed island is on the screen."""
        self.desktop.screen.jump(*self.pixels(*ASIDE))
        self.log = self.desktop.folder / "corvane.log"
        self.desktop.hand_over()
        self._process = processes.start(self._command, self.environment, self.log,
                                        stdout=subprocess.PIPE, **self.desktop.identity)
        if self._demo:
            line = processes.read_line(self._process.stdout.fileno(), f"Corvane\n{self.messages()}")
            self.address = line.removeprefix("demo address: ")
        wait_until(self._shows_island, lambda: f"the resting island\n{self.messages()}")

    def stop(self):
        """Stops the program and returns its exit status."""
        if self._tree:
            self._tree.close()
            self._tree = None
        status = processes.stop(self._process) if self._process else None
        self._process = None
        return status

    @property
    def process_id(self):
        return self._process.pid

    def messages(self):
        return self.log.read_text(errors="replace")

    def settings(self):
        return json.loads(self.settings_file.read_text())

    @property
    def tree(self):
        if self._tree is None:
            self._tree = AccessibleTree(self.desktop.bus_address, self._process.pid)
        return self._tree

    def capture(self):
        """The area of the screen that contains the panel, and a margin."""
        return self.desktop.screen.capture(*self._area())

    def film(self):
        """Records that area while entered."""
        return self.desktop.screen.film(*self._area())

    def _area(self):
        scale = self.desktop.scale
        side, height = round((_PANEL_SIDE + 20) * scale), round((self.band + _PANEL_BODY) * scale)
        return self._middle - side, 0, 2 * side, height

    def outline(self, picture=None):
        """(left, right, bottom) of the black island; None if it is not visible."""
        scale = self.desktop.scale
        picture = picture or self.capture()
        # With higher contrast the island has an outline, and the top edge is not dark.
        row = round(4 * scale)
        run = picture.dark_run(row, self._middle)
        if run is None:
            return None
        # In no state is anything drawn this close to the left edge.
        column, bottom = run[0] + round(14 * scale), row
        while bottom < picture.height and max(picture.at(column, bottom)) < DARK:
            bottom += 1
        return (run[0] - self._middle) / scale, (run[1] - self._middle) / scale, bottom / scale

    def resting_outline(self):
        """The expected position of the collapsed island."""
        if not self.notch:
            return -80, 80, self.band
        width = max(160, self.notch[0] + 52)
        # Not centred: the mark needs more space to the left of the notch.
        return -width / 2 - 20, width / 2 - 20, self.band

    def is_resting(self, picture=None):
        outline = self.outline(picture)
        return outline is not None and all(
            abs(is_now - should) <= 1 for is_now, should in zip(outline, self.resting_outline()))

    def is_open(self, picture=None):
        """True if a card is visible below the full width of the top strip."""
        outline = self.outline(picture)
        return (outline is not None and outline[2] > self.band + 100
                and abs(outline[1] - outline[0] - CARD_WIDTH) <= 2)

    def settled(self):
        """A picture of the panel, taken once nothing in it moves."""
        latest, since = self.capture(), time.monotonic()

        def still():
            nonlocal latest, since
            picture, now = self.capture(), time.monotonic()
            if not picture.same_as(latest):
                latest, since = picture, now
            return now - since > _STILL_SECONDS
        wait_until(still, "a panel in which nothing moves")
        return latest

    def pixels(self, x, y):
        """A position on the screen in pixels."""
        return self._middle + x * self.desktop.scale, y * self.desktop.scale

    def point_at(self, x, y):
        self.desktop.screen.move(*self.pixels(x, y))

    def click_at(self, x, y):
        self.desktop.screen.click(*self.pixels(x, y))

    def tap(self, x, y):
        """Clicks there and leaves, before the program can react to the pointer."""
        self.desktop.screen.tap(*self.pixels(x, y), *self.pixels(*ASIDE))

    def click(self, thing):
        """Clicks the middle of an accessible object."""
        x, y, width, height = thing.extents(self.desktop.scale)
        self.desktop.screen.click(x + width / 2, y + height / 2)

    def double_click(self, thing):
        """Double-clicks."""
        self.click(thing)
        self.desktop.screen.click()

    def press_button(self, name):
        """Clicks the button with this name once it is visible and no longer moves."""
        self.click(self.still(name, "push button"))

    def focused(self):
        """The name of the control with keyboard focus; None without one."""
        return next((thing.name for thing in self.tree.things()
                     if thing.focused and thing.name and thing.role != "frame"), None)

    def has_keyboard(self, window="Corvane"):
        """True if the program's window with this title has the keyboard, and the program knows it."""
        frame = self.tree.find(window, "frame")
        return bool(frame and frame.active)

    def tab_to(self, name):
        """Presses Tab until the control with this name has keyboard focus."""
        while (before := self.focused()) != name:
            self.desktop.screen.press("Tab")
            wait_until(lambda last=before: self.focused() != last, f"the focus on from {before}")

    def wait_enabled(self, name, enabled=True):
        """Waits until the button with this name is enabled, or disabled."""
        wait_until(lambda: (self.still(name, "push button").description == "unavailable") != enabled,
                   lambda: f"{name} {'enabled' if enabled else 'disabled'}")

    def field(self, name):
        """The text field with this label or placeholder."""
        return self.still(lambda text: text.startswith(name), *_FIELDS)

    def still(self, name, *roles):
        """The object with this name and one of these roles, once it no longer moves."""
        latest = None

        def resting():
            nonlocal latest
            thing = self.tree.find(name, *roles)
            place = thing and thing.extents(1)
            before, latest = latest, place and (thing.path, place)
            return thing if place and latest == before else None
        return wait_until(resting, lambda: f"{name} at rest among {self.tree.things()}", pause=0.05)

    def fill(self, name, text):
        """Clicks a field and replaces its content, key by key."""
        self.click(self.field(name))
        screen = self.desktop.screen
        wait_until(self.has_keyboard, "the keyboard for the field")
        screen.press("a", "Control_L")
        if text:
            screen.type(text)
        else:
            screen.press("BackSpace")

    def hover(self):
        """Moves the pointer onto the notch and waits for the card."""
        self.point_at(*ON_NOTCH)
        wait_until(self.is_open, "the open card")

    def watch_opening(self):
        """Opens the card, repeatedly if necessary, until a picture of each intermediate state has
        been taken; returns the best picture of each."""
        pictures = {"resting": self.capture()}
        left, right, _ = self.outline(pictures["resting"])
        widest = dict.fromkeys(("hovered", "widened"), right - left)
        swollen = 1.04 * (right - left)

        def note():
            picture = self.capture()
            left, right, bottom = self.outline(picture)
            state = "hovered" if right - left < swollen else "widened"
            if bottom < self.band * 1.1 and right - left > widest[state]:
                widest[state], pictures[state] = right - left, picture
            return bottom > self.band * 1.1
        for _ in range(5):
            self.point_at(*ON_NOTCH)
            wait_until(note, "the opening card", pause=0)
            wait_until(self.is_open, "the open card")
            if {"hovered", "widened"} <= pictures.keys():
                return pictures
            # A busy machine may skip frames; try again.
            self.leave()
        raise TimeoutError(f"states seen while opening: {', '.join(pictures)}")

    def leave(self):
        """Moves the pointer away and waits until the island has collapsed."""
        self.point_at(*ASIDE)
        wait_until(self.is_resting, "the resting island")

    def wait_for(self, *names):
        """Waits until all of these texts are visible; returns all visible texts."""
        def complete():
            texts = self.tree.texts()
            return texts if set(names) <= set(texts) else None
        return wait_until(complete, lambda: f"{names} among {self.tree.texts()}")

    def _shows_island(self):
        if self._process.poll() is not None:
            raise RuntimeError(f"Corvane exited with {self._process.poll()}\n{self.messages()}")
        return self.is_resting()

    def wait_for_end(self):
        """Waits until the program exits by itself; returns its status."""
        return self._process.wait(PATIENCE)

    def send_signal(self, number):
        self._process.send_signal(number)

    def start_again(self, *arguments):
        """Starts it a second time and waits until that process exits; returns its status and
        output."""
        return subprocess.run([*self._command, *arguments], env=self.environment, timeout=PATIENCE,
                              capture_output=True, text=True, check=False, **self.desktop.identity)
