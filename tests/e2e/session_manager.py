"""A session manager of the X protocol (XSMP) that one program logs in to, and a logout."""

import ctypes
import queue
import select
import threading
from ctypes import CFUNCTYPE, POINTER, byref, c_char_p, c_int, c_ulong, c_void_p

from support import wait_until

_LOCAL, _BOTH = 1, 2
_ANY_INTERACTION = 2
# What the program may say, in the order of the library's masks.
_EVENTS = ("register", "interact request", "interact done", "save request", "phase 2", "saved", "closed",
           "set properties", "delete properties", "get properties")

# The library's callbacks differ in arguments that are of no interest here.
_Callback = CFUNCTYPE(c_int, c_void_p)
_NewClient = CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), POINTER(c_void_p))


class SessionManager:
    """Serves while entered. `address` belongs into the environment as SESSION_MANAGER."""

    def __init__(self):
        self._sm, self._ice = ctypes.CDLL("libSM.so.6"), ctypes.CDLL("libICE.so.6")
        self._sm.SmsGenerateClientID.restype = self._ice.IceAcceptConnection.restype = c_void_p
        self._ice.IceComposeNetworkIdList.restype = c_char_p
        self.events = []
        self._connection = self._client = None
        self._orders, self._stopping = queue.SimpleQueue(), threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._callbacks = [_Callback(lambda _, name=name: self._note(name)) for name in _EVENTS]
        self._new, self._allow = _NewClient(self._new_client), _Callback(lambda _: 1)
        self._ice.IceSetIOErrorHandler(self._allow)
        self._sm.SmsInitialize(b"tests", b"1", self._new, None, self._allow, 0, None)
        count, listeners = c_int(), POINTER(c_void_p)()
        self._ice.IceListenForConnections(byref(count), byref(listeners), 0, None)
        self.address = self._ice.IceComposeNetworkIdList(count, listeners).decode()
        self._listeners = {}
        for index in range(count.value):
            listener = c_void_p(listeners[index])
            self._ice.IceSetHostBasedAuthProc(listener, self._allow)
            self._listeners[self._ice.IceGetListenConnectionNumber(listener)] = listener

    def _new_client(self, client, _data, mask, callbacks):
        self._client = c_void_p(client)
        mask[0] = (1 << len(_EVENTS)) - 1
        for index, callback in enumerate(self._callbacks):
            callbacks[2 * index] = ctypes.cast(callback, c_void_p)
        return 1

    def _note(self, name):
        if name == "register":
            self._sm.SmsRegisterClientReply(self._client, c_void_p(self._sm.SmsGenerateClientID(self._client)))
            self._sm.SmsSaveYourself(self._client, _LOCAL, 0, 0, 0)
        self.events.append(name)
        return 1

    def _run(self):
        # The only thread that uses the library from now on.
        while not self._stopping.is_set():
            watched = [*self._listeners, *([self._ice.IceConnectionNumber(self._connection)] if self._connection else [])]
            for ready in select.select(watched, [], [], 0.02)[0]:
                if ready in self._listeners:
                    self._connection = c_void_p(
                        self._ice.IceAcceptConnection(self._listeners[ready], byref(c_int())))
                elif self._ice.IceProcessMessages(self._connection, None, None) != 0:
                    self._connection = None
            while not self._orders.empty():
                self._orders.get()()

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._stopping.set()
        self._thread.join()

    def wait_for(self, name):
        """Waits until the program has done this."""
        wait_until(lambda: name in self.events, lambda: f"{name} among {self.events}")

    def log_out(self):
        """The user logs out: programs may ask, and are told to end when they have answered."""
        self.events.clear()
        self._orders.put(lambda: self._sm.SmsSaveYourself(self._client, _BOTH, 1, _ANY_INTERACTION, 0))
        self.wait_for("saved")
        self._orders.put(lambda: self._sm.SmsDie(self._client))
