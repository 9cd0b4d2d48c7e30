"""A session manager of the X protocol (XSMP) that one program logs in to, and a logout."""

import ctypes
import queue
import select
import threading
from ctypes import CFUNCTYPE, POINTER, byref, c_char_p, c_int, c_ulong, c_void_p

from support import wait_until

_LOCAL, _BOTH = 1, 2
_ANY_INTERACTION = 2

_Notice = CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p)
_Number = CFUNCTYPE(None, c_void_p, c_void_p, c_int)
_Close = CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p)
_NewClient = CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), POINTER(c_void_p), c_void_p)
_HostAuth = CFUNCTYPE(c_int, c_char_p)
_IoError = CFUNCTYPE(None, c_void_p)


class _Value(ctypes.Structure):
    _fields_ = [("length", c_int), ("value", c_void_p)]


class _Property(ctypes.Structure):
    _fields_ = [("name", c_char_p), ("type", c_char_p), ("count", c_int), ("values", POINTER(_Value))]


_SetProperties = CFUNCTYPE(None, c_void_p, c_void_p, c_int, POINTER(POINTER(_Property)))


class SessionManager:
    """Serves while entered. `address` belongs into the environment as SESSION_MANAGER."""

    def __init__(self):
        self._sm, self._ice = ctypes.CDLL("libSM.so.6"), ctypes.CDLL("libICE.so.6")
        for name in ("SmsGenerateClientID", "IceAcceptConnection"):
            getattr(self._sm if name[0] == "S" else self._ice, name).restype = c_void_p
        self._ice.IceComposeNetworkIdList.restype = c_char_p
        self.events, self.properties = [], {}
        self._ice_connection = self._client = None
        self._orders, self._stopping = queue.SimpleQueue(), threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)
        # In the order of the library's masks.
        self._callbacks = [
            _Notice(self._register), _Number(self._note("interact request")),
            _Number(self._note("interact done")), _Number(self._note("save request")),
            _Number(self._note("phase 2")), _Number(self._note("saved")), _Close(self._close),
            _SetProperties(self._set_properties), _Number(self._note("delete properties")),
            _Number(self._note("get properties"))]
        self._procedures = [_NewClient(self._new_client), _HostAuth(lambda host: 1),
                            _IoError(lambda connection: None)]
        message = ctypes.create_string_buffer(256)
        self._ice.IceSetIOErrorHandler(self._procedures[2])
        if not self._sm.SmsInitialize(b"tests", b"1", self._procedures[0], None,
                                      self._procedures[1], 256, message):
            raise RuntimeError(message.value)
        count, listeners = c_int(), POINTER(c_void_p)()
        if not self._ice.IceListenForConnections(byref(count), byref(listeners), 256, message):
            raise RuntimeError(message.value)
        self.address = self._ice.IceComposeNetworkIdList(count, listeners).decode()
        self._listeners = {}
        for index in range(count.value):
            listener = c_void_p(listeners[index])
            self._ice.IceSetHostBasedAuthProc(listener, self._procedures[1])
            self._listeners[self._ice.IceGetListenConnectionNumber(listener)] = listener

    def _note(self, name):
        return lambda client, data, value: self.events.append(name)

    def _new_client(self, client, _data, mask, callbacks, _failure):
        self._client = c_void_p(client)
        mask[0] = (1 << len(self._callbacks)) - 1
        for index, callback in enumerate(self._callbacks):
            callbacks[2 * index] = ctypes.cast(callback, c_void_p)
        return 1

    def _register(self, client, _data, _previous):
        client = c_void_p(client)
        self._sm.SmsRegisterClientReply(client, c_void_p(self._sm.SmsGenerateClientID(client)))
        self._sm.SmsSaveYourself(client, _LOCAL, 0, 0, 0)
        return 1

    def _close(self, _client, _data, _count, _reasons):
        self.events.append("closed")

    def _set_properties(self, _client, _data, count, properties):
        for index in range(count):
            of_client = properties[index].contents
            value = of_client.values[0]
            self.properties[of_client.name.decode()] = ctypes.string_at(value.value, value.length)

    def _serve(self):
        watched = list(self._listeners)
        if self._ice_connection:
            watched.append(self._ice.IceConnectionNumber(self._ice_connection))
        for ready in select.select(watched, [], [], 0.02)[0]:
            if ready in self._listeners:
                status = c_int()
                self._ice_connection = c_void_p(
                    self._ice.IceAcceptConnection(self._listeners[ready], byref(status)))
            elif self._ice.IceProcessMessages(self._ice_connection, None, None) != 0:
                self._ice_connection = None

    def _run(self):
        # The only thread that uses the library from now on.
        while not self._stopping.is_set():
            self._serve()
            while not self._orders.empty():
                self._orders.get()()

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._stopping.set()
        self._thread.join(5)

    def wait_for(self, name):
        """Waits until the program has done this."""
        wait_until(lambda: name in self.events, lambda: f"{name} among {self.events}")

    def log_out(self):
        """The user logs out: programs may ask, and are told to end when they have answered."""
        self.events.clear()
        self._orders.put(lambda: self._sm.SmsSaveYourself(self._client, _BOTH, 1, _ANY_INTERACTION, 0))
        self.wait_for("saved")
        self._orders.put(lambda: self._sm.SmsDie(self._client))
