"""Reads and operates a program through the accessibility bus, as a screen reader does.

Uses the bus directly, because the usual client library keeps a cache that only a main loop
refreshes. """

import contextlib
from dataclasses import dataclass

from gi.repository import Gio, GLib

from .waiting import PATIENCE, wait_until

_ROOT = "/org/a11y/atspi/accessible/root"
_REGISTRY = "org.a11y.atspi.Registry"
_ACCESSIBLE = "org.a11y.atspi.Accessible"
_CALL_MS = round(1000 * PATIENCE)
_FLAGS = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
          | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
_SHOWING, _FOCUSED, _ACTIVE = 1 << 25, 1 << 12, 1 << 1


@dataclass(frozen=True)
class Accessible:
    """One accessible object of a program."""

    tree: "AccessibleTree"
    owner: str
    path: str
    name: str
    role: str
    depth: int
    focused: bool
    active: bool  # a window with the keyboard

    @property
    def description(self):
        """None if it no longer exists."""
        try:
            return self.tree.get(self.owner, self.path, "Description")
        except GLib.Error:
            return None

    def press(self):
        """Performs the object's default action, as a screen reader's user does."""
        done, = self.tree.call(self.owner, self.path, "org.a11y.atspi.Action", "DoAction",
                               GLib.Variant("(i)", (0,)))
        if not done:
            raise RuntimeError(f"{self.role} {self.name!r} cannot be pressed")

    def extents(self, scale):
        """(x, y, width, height) on the screen in pixels; `scale` is the number of pixels per point.
        None if the object no longer exists."""
        try:
            points, = self.tree.call(self.owner, self.path, "org.a11y.atspi.Component",
                                     "GetExtents", GLib.Variant("(u)", (0,)))
        except GLib.Error:
            return None
        return tuple(round(value * scale) for value in points)


class AccessibleTree:
    """The accessible objects of the program with this process id."""

    def __init__(self, bus_address, process_id):
        session = Gio.DBusConnection.new_for_address_sync(bus_address, _FLAGS, None, None)
        address, = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                     None, None, Gio.DBusCallFlags.NONE, _CALL_MS, None)
        session.close_sync(None)
        self._bus = Gio.DBusConnection.new_for_address_sync(address, _FLAGS, None, None)
        self._process_id = process_id
        self._owner = None
        self._heard = []

    def close(self):
        self._bus.close_sync(None)

    def listen(self):
        """Starts recording the notifications that a screen reader would announce."""
        wait_until(self.things, "the program on the accessibility bus")
        self.call(_REGISTRY, "/org/a11y/atspi/registry", _REGISTRY, "RegisterEvent",
                  GLib.Variant("(sass)", ("object:state-changed:showing", [], "")))
        self._bus.signal_subscribe(None, "org.a11y.atspi.Event.Object", "StateChanged", None, None,
                                   Gio.DBusSignalFlags.NONE, self._note)

    def _note(self, _bus, owner, path, _interface, _signal, arguments):
        what, shows = arguments.unpack()[:2]
        if owner == self._owner and what == "showing" and shows:
            with contextlib.suppress(GLib.Error):  # it no longer exists
                role, = self.call(owner, path, _ACCESSIBLE, "GetRoleName")
                if role == "notification":
                    self._heard.append(self.get(owner, path, "Name"))

    def heard(self):
        """The names of the notifications since `listen`."""
        self.things()
        return self._heard

    def call(self, owner, path, interface, method, arguments=None):
        return self._bus.call_sync(owner, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, _CALL_MS, None).unpack()

    def get(self, owner, path, what):
        """A property of an accessible object."""
        value, = self.call(owner, path, "org.freedesktop.DBus.Properties", "Get",
                           GLib.Variant("(ss)", (_ACCESSIBLE, what)))
        return value

    def _children(self, owner, path):
        return self.call(owner, path, _ACCESSIBLE, "GetChildren")[0]

    def _find_program(self):
        for owner, _ in self._children(_REGISTRY, _ROOT):
            process_id, = self.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                    "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                                    GLib.Variant("(s)", (owner,)))
            if process_id == self._process_id:
                return owner
        return None

    def things(self):
        """All visible objects, in the order of the tree. Empty while the program is not on the
        bus."""
        while GLib.MainContext.default().iteration(False):
            pass  # records notifications while they exist
        self._owner = self._owner or self._find_program()
        if self._owner is None:
            return []
        found = []
        self._collect(_ROOT, 0, found)
        return found

    def _collect(self, path, depth, found):
        try:
            name = self.get(self._owner, path, "Name")
            role, = self.call(self._owner, path, _ACCESSIBLE, "GetRoleName")
            (states, _), = self.call(self._owner, path, _ACCESSIBLE, "GetState")
            children = self._children(self._owner, path)
        except GLib.Error:
            return  # it disappeared during the query
        if depth > 1 and not states & _SHOWING:
            return
        found.append(Accessible(self, self._owner, path, name, role, depth,
                                bool(states & _FOCUSED), bool(states & _ACTIVE)))
        for _, child in children:
            self._collect(child, depth + 1, found)

    def texts(self):
        """The names of all visible objects, except the program and its window."""
        return [thing.name for thing in self.things() if thing.name and thing.depth > 1]

    def find(self, name, *roles):
        """The first visible object with this name (or for which `name`, a function, returns true)
        and, if given, one of these roles; None if there is none."""
        matches = name if callable(name) else lambda text: text == name
        return next((thing for thing in self.things()
                     if matches(thing.name) and (not roles or thing.role in roles)), None)
