"""The user's settings for all programs: reduced motion and higher contrast."""

from gi.repository import Gio, GLib

from support import IslandTest, wait_until

PORTAL = "org.freedesktop.portal.Desktop"
INTERFACE = """<node><interface name='org.freedesktop.portal.Settings'><method name='ReadAll'>
<arg type='as' direction='in'/><arg type='a{sa{sv}}' direction='out'/></method></interface></node>"""
SETTINGS = {"org.gnome.desktop.interface": {"enable-animations": GLib.Variant("b", False)},
            "org.freedesktop.appearance": {"contrast": GLib.Variant("u", 1)}}
MUTED, BRIGHT = (140, 136, 126), (214, 210, 200)
FEW = 3  # widths: at rest, wide, open


def answer_as_portal():
    while GLib.MainContext.default().iteration(False):
        pass


class MannersTest(IslandTest):
    def serve_portal(self):
        """A portal with these settings on the session bus."""
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        bus = Gio.DBusConnection.new_for_address_sync(self.desktop.bus_address, flags, None, None)
        self.addCleanup(bus.close_sync, None)

        def answer(_bus, _caller, _path, _interface, _method, _arguments, invocation):
            invocation.return_value(GLib.Variant("(a{sa{sv}})", (SETTINGS,)))
        bus.register_object("/org/freedesktop/portal/desktop",
                            Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], answer)
        bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                      "RequestName", GLib.Variant("(su)", (PORTAL, 0)), None,
                      Gio.DBusCallFlags.NONE, -1, None)

    def widths_while_opening(self, corvane):
        """The widths of the island seen between collapsed and open."""
        corvane.leave()
        seen = set()

        def opened():
            answer_as_portal()
            left, right, bottom = corvane.outline(corvane.capture())
            seen.add(round(right - left))
            return bottom > corvane.band + 100 and right - left > 615
        corvane.point_at(0, 12)
        wait_until(opened, "the open card", pause=0)
        return len(seen)

    def colours(self, corvane):
        answer_as_portal()
        x, y, width, height = corvane.still("TOTAL BALANCE", "label").extents(self.desktop.scale)
        return self.desktop.screen.capture(x, y, width, height).colours(x, y, width, height)

    def test_portal(self):
        with self.run_corvane() as corvane:
            # A busy machine may skip all intermediate frames of one opening.
            wait_until(lambda: self.widths_while_opening(corvane) > FEW, "an island that unfolds gradually")
            wait_until(lambda: MUTED in self.colours(corvane), "muted labels")
            self.serve_portal()
            # After one opening the program has read the settings.
            self.widths_while_opening(corvane)
            wait_until(lambda: BRIGHT in self.colours(corvane), "bright labels")
            self.assertLessEqual(self.widths_while_opening(corvane), FEW)
