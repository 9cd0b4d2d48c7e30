"""Reads and changes the content of a desktop's keyring directly."""

from gi.repository import Gio, GLib

from .waiting import PATIENCE

_NAME = "org.freedesktop.secrets"
_ROOT = "/org/freedesktop/secrets"
_SERVICE, _ITEM = "org.freedesktop.Secret.Service", "org.freedesktop.Secret.Item"
_CALL_MS = round(1000 * PATIENCE)


class Keyring:
    """A connection to the bus with this address, with a session of its Secret Service while entered."""

    def __init__(self, bus_address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._bus = Gio.DBusConnection.new_for_address_sync(bus_address, flags, None, None)

    def __enter__(self):
        _, self._session = self._call(_ROOT, _SERVICE, "OpenSession", "(sv)", "plain",
                                      GLib.Variant("s", ""))
        return self

    def __exit__(self, *_):
        """The service closes the session at the end of the connection."""

    def _call(self, path, interface, method, types, *arguments):
        return self._bus.call_sync(_NAME, path, interface, method, GLib.Variant(types, arguments),
                                   None, Gio.DBusCallFlags.NONE, _CALL_MS, None).unpack()

    def _found(self, service):
        unlocked, locked = self._call(_ROOT, _SERVICE, "SearchItems", "(a{ss})",
                                      {"service": service})
        return [*unlocked, *locked]

    def items(self, service):
        """(attributes, secret) of each item; the keyring must be unlocked."""
        def attributes(path):
            return self._call(path, "org.freedesktop.DBus.Properties", "Get", "(ss)", _ITEM,
                              "Attributes")[0]
        return [(attributes(path), bytes(self._call(path, _ITEM, "GetSecret", "(o)",
                                                    self._session)[0][2]))
                for path in self._found(service)]

    def overwrite(self, service, secret):
        for path in self._found(service):
            self._call(path, _ITEM, "SetSecret", "((oayays))",
                       (self._session, b"", secret, "application/octet-stream"))

    def delete(self, service):
        for path in self._found(service):
            self._call(path, _ITEM, "Delete", "()")

    def create(self, attributes, secret):
        properties = {f"{_ITEM}.Label": GLib.Variant("s", "Corvane"),
                      f"{_ITEM}.Attributes": GLib.Variant("a{ss}", attributes)}
        self._call(f"{_ROOT}/aliases/default", "org.freedesktop.Secret.Collection", "CreateItem",
                   "(a{sv}(oayays)b)", properties,
                   (self._session, b"", secret, "application/octet-stream"), False)
