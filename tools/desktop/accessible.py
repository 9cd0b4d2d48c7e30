"""Reads and operates a program over the accessibility bus, as a screen reader does.

It talks to the bus itself: the usual client library keeps a cache that only a main loop refreshes.
"""

from dataclasses import dataclass

from gi.repository import Gio, GLib

_ROOT = "/org/a11y/atspi/accessible/root"
_REGISTRY = "org.a11y.atspi.Registry"
_ACCESSIBLE = "org.a11y.atspi.Accessible"
_CALL_MS = 5000
_FLAGS = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
          | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
_SHOWING, _FOCUSED = 1 << 25, 1 << 12


@dataclass(frozen=True)
class Accessible:
    """One thing that a program shows."""

    tree: "AccessibleTree"
    owner: str
    path: str
    name: str
    role: str
    depth: int
    focused: bool

    @property
    def description(self):
        """None when it has gone meanwhile."""
        try:
            return self.tree.get(self.owner, self.path, "Description")
        except GLib.Error:
            return None

    def press(self):
        """Does what a screen reader's user does to a button."""
        done, = self.tree.call(self.owner, self.path, "org.a11y.atspi.Action", "DoAction",
                               GLib.Variant("(i)", (0,)))
        if not done:
            raise RuntimeError(f"{self.role} {self.name!r} cannot be pressed")

    def extents(self, scale):
        """(x, y, width, height) on the screen, in pixels, of which `scale` make a point. None when
        it has gone meanwhile."""
        try:
            points, = self.tree.call(self.owner, self.path, "org.a11y.atspi.Component",
                                     "GetExtents", GLib.Variant("(u)", (0,)))
        except GLib.Error:
            return None
        return tuple(round(value * scale) for value in points)


class AccessibleTree:
    """What the program with this process id shows."""

    def __init__(self, bus_address, process_id):
        session = Gio.DBusConnection.new_for_address_sync(bus_address, _FLAGS, None, None)
        address, = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress",
                                     None, None, Gio.DBusCallFlags.NONE, _CALL_MS, None)
        session.close_sync(None)
        self._bus = Gio.DBusConnection.new_for_address_sync(address, _FLAGS, None, None)
        self._process_id = process_id
        self._owner = None

    def close(self):
        self._bus.close_sync(None)

    def call(self, owner, path, interface, method, arguments=None):
        return self._bus.call_sync(owner, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, _CALL_MS, None).unpack()

    def get(self, owner, path, what):
        """A property of something that the bus names."""
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
        """Everything that shows now, in the order of the tree. Empty while the program is not on
        the bus."""
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
            return  # it went while we were asking
        if depth > 1 and not states & _SHOWING:
            return
        found.append(Accessible(self, self._owner, path, name, role, depth,
                                bool(states & _FOCUSED)))
        for _, child in children:
            self._collect(child, depth + 1, found)

    def texts(self):
        """The names of all that shows, without the program and its window."""
        return [thing.name for thing in self.things() if thing.name and thing.depth > 1]

    def find(self, name, *roles):
        """The thing with this name, or for which `name`, a function, is true, and with one of these
        roles if there are any; None when nothing shows that."""
        matches = name if callable(name) else lambda text: text == name
        return next((thing for thing in self.things()
                     if matches(thing.name) and (not roles or thing.role in roles)), None)
