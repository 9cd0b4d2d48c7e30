"""The two kinds of status areas on a desktop."""

import threading

from gi.repository import Gio, GLib
from Xlib import X, display
from Xlib.protocol import event

from .waiting import PATIENCE, wait_until

_WATCHER = "org.kde.StatusNotifierWatcher"
_ITEM = "org.kde.StatusNotifierItem"
_MENU = "com.canonical.dbusmenu"
_CALL_MS = round(1000 * PATIENCE)
_FLAGS = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
          | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
_INTERFACE = f"""
<node><interface name="{_WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>"""


class MenuEntry:
    """One line of a menu, as a panel receives it."""

    def __init__(self, layout):
        self.id, properties, children = layout
        self.title = properties.get("label", "").replace("_", "")
        self.enabled = properties.get("enabled", True)
        self.separator = properties.get("type") == "separator"
        self.shortcut = properties.get("shortcut", [])
        self.children = [MenuEntry(child) for child in children]


class StatusNotifierHost:
    """A panel with the StatusNotifierItem protocol, while entered. `has_host` may be set later: the
    watcher may exist before a host that shows the items."""

    def __init__(self, bus_address, has_host=True):
        self._address, self._has_host = bus_address, has_host
        self._items = []
        self.asked = []  # names of the properties that have been read
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)

    def __enter__(self):
        ready = threading.Event()
        # On a separate thread, because the program blocks on some replies.
        self._thread = threading.Thread(target=self._run, args=[ready], daemon=True)
        self._thread.start()
        if not ready.wait(PATIENCE):
            raise RuntimeError("no status notifier host")
        return self

    def __exit__(self, *_):
        self._loop.quit()
        self._thread.join(5)
        if not self._bus.is_closed():
            self._bus.close_sync(None)

    def _run(self, ready):
        self._context.push_thread_default()
        self._bus = Gio.DBusConnection.new_for_address_sync(self._address, _FLAGS, None, None)
        interface = Gio.DBusNodeInfo.new_for_xml(_INTERFACE).interfaces[0]
        self._bus.register_object("/StatusNotifierWatcher", interface, self._on_call,
                                  self._on_read, None)
        self._call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                   "RequestName", GLib.Variant("(su)", (_WATCHER, 0)))
        ready.set()
        self._loop.run()

    def _on_call(self, _bus, sender, _path, _interface, _method, arguments, invocation):
        service, = arguments.unpack()
        self._items.append((sender, service if service[0] == "/" else "/StatusNotifierItem"))
        invocation.return_value(None)

    def _on_read(self, _bus, _sender, _path, _interface, name):
        self.asked.append(name)
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", [o + p for o, p in self._items]),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", self._has_host),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def _call(self, owner, path, interface, method, arguments=None):
        return self._bus.call_sync(owner, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, _CALL_MS, None).unpack()

    def register_host(self):
        """Announces a host."""
        self._has_host = True
        self._bus.emit_signal(None, "/StatusNotifierWatcher", _WATCHER,
                              "StatusNotifierHostRegistered", None)

    def _living_items(self):
        """The items whose programs are still on the bus."""
        def lives(owner):
            return self._call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "NameHasOwner",
                              GLib.Variant("(s)", (owner,)))[0]
        self._items = [item for item in self._items if lives(item[0])]
        return self._items

    def item(self):
        """The properties of the one item, once it has registered."""
        owner, path = wait_until(self._living_items, "a status notifier item")[-1]
        found, = self._call(owner, path, "org.freedesktop.DBus.Properties", "GetAll",
                            GLib.Variant("(s)", (_ITEM,)))
        return found

    def activate(self):
        """Activates the item, as a click on a panel does."""
        owner, path = self._items[-1]
        self._call(owner, path, _ITEM, "Activate", GLib.Variant("(ii)", (400, 300)))

    def menu(self):
        """The entries of the item's menu."""
        owner, path = self._items[-1][0], self.item()["Menu"]
        self._call(owner, path, _MENU, "AboutToShow", GLib.Variant("(i)", (0,)))
        _, layout = self._call(owner, path, _MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        return MenuEntry(layout).children

    def choose(self, title):
        """Clicks a line of the menu."""
        entry = next(entry for entry in self.menu() if entry.title == title)
        self._call(self._items[-1][0], self.item()["Menu"], _MENU, "Event",
                   GLib.Variant("(isvu)", (entry.id, "clicked", GLib.Variant("s", ""), 0)))


class XEmbedTray:
    """An XEmbed tray of one colour for icons of `side` pixels, while entered."""

    def __init__(self, screen, x, y, side=24, colour=(60, 60, 60)):
        self.x, self.y, self.side = x, y, side
        self._name, self._colour = screen.display.get_display_name(), colour

    def __enter__(self):
        # A separate connection, because it receives events.
        self._display = display.Display(self._name)
        root = self._display.screen().root
        red, green, blue = self._colour
        self._window = root.create_window(
            self.x, self.y, self.side, self.side, 0, X.CopyFromParent, override_redirect=True,
            background_pixel=red << 16 | green << 8 | blue, event_mask=X.SubstructureNotifyMask)
        self._window.map()
        selection = self._atom("_NET_SYSTEM_TRAY_S0")
        self._window.set_selection_owner(selection, X.CurrentTime)
        root.send_event(event.ClientMessage(
            window=root, client_type=self._atom("MANAGER"),
            data=(32, [X.CurrentTime, selection, self._window.id, 0, 0])), X.StructureNotifyMask)
        self._display.sync()
        return self

    def __exit__(self, *_):
        self._display.close()

    def _atom(self, name):
        return self._display.intern_atom(name)

    def docked(self):
        """True once an icon has docked."""
        self._display.sync()
        while self._display.pending_events():
            happened = self._display.next_event()
            if (happened.type == X.ClientMessage
                    and happened.client_type == self._atom("_NET_SYSTEM_TRAY_OPCODE")
                    and happened.data[1][1] == 0):
                self._dock(self._display.create_resource_object("window", happened.data[1][2]))
        return bool(self._window.query_tree().children)

    def _dock(self, icon):
        icon.reparent(self._window, 0, 0)
        icon.configure(width=self.side, height=self.side)
        icon.send_event(event.ClientMessage(
            window=icon, client_type=self._atom("_XEMBED"),
            data=(32, [X.CurrentTime, 0, 0, self._window.id, 0])))
        icon.map()
        self._display.sync()
