"""A client of a Wayland compositor: the wire protocol and the few interfaces that tests use."""

import contextlib
import mmap
import os
import socket
import struct
import threading

from .waiting import PATIENCE

# Requests in the order of their numbers, and events with the types of their arguments: i(nteger), u(nsigned),
# f(ixed), s(tring), o(bject), a(rray), h(andle: a file descriptor). What follows the last one used is left out.
_INTERFACES = {
    "wl_display": ("sync get_registry", "error:ous delete_id:u"),
    "wl_registry": ("bind", "global:usu global_remove:u"),
    "wl_callback": ("", "done:u"),
    "wl_compositor": ("create_surface", ""),
    "wl_shm": ("create_pool", ""),
    "wl_shm_pool": ("create_buffer destroy", ""),
    "wl_buffer": ("destroy", ""),
    "wl_surface": ("destroy attach damage frame set_opaque_region set_input_region commit set_buffer_transform "
                   "set_buffer_scale", ""),
    "wl_output": ("", "geometry:iiiiissi mode:uiii done: scale:i name:s"),
    "wl_seat": ("get_pointer get_keyboard", "capabilities:u"),
    "wl_pointer": ("", "enter:uoff leave:uo motion:uff button:uuuu"),
    "wl_keyboard": ("", "keymap:uhu enter:uoa leave:uo key:uuuu modifiers:uuuuu"),
    "xdg_wm_base": ("destroy create_positioner get_xdg_surface pong", "ping:u"),
    "xdg_surface": ("destroy get_toplevel get_popup set_window_geometry ack_configure", "configure:u"),
    "xdg_toplevel": ("destroy set_parent set_title set_app_id show_window_menu move resize set_max_size set_min_size "
                     "set_maximized unset_maximized set_fullscreen", "configure:iia close:"),
    "zwlr_virtual_pointer_manager_v1": ("create_virtual_pointer destroy create_virtual_pointer_with_output", ""),
    "zwlr_virtual_pointer_v1": ("motion motion_absolute button axis frame", ""),
    "zwp_virtual_keyboard_manager_v1": ("create_virtual_keyboard", ""),
    "zwp_virtual_keyboard_v1": ("keymap key modifiers", ""),
    "zwlr_screencopy_manager_v1": ("capture_output capture_output_region", ""),
    "zwlr_screencopy_frame_v1": ("copy destroy copy_with_damage", "buffer:uuuu flags:u ready:uuu failed: damage:uuuu"),
}


class Descriptor(int):
    """A file descriptor that a request passes on."""


class Thing:
    """An object that client and compositor share. Its methods are the interface's requests; an argument is an int,
    a float for a fixed-point number, a str, a Descriptor, another Thing (also a new one) or None. Functions set by
    `on` get the arguments of events, on the connection's thread."""

    def __init__(self, connection, interface):
        self.id, self._connection = None, connection
        requests, events = _INTERFACES[interface]
        self._numbers = {name: number for number, name in enumerate(requests.split())}
        self._events = [event.split(":") for event in events.split()]
        self._handlers = {}

    def __getattr__(self, request):
        try:
            number = self._numbers[request]
        except KeyError:
            raise AttributeError(request) from None
        return lambda *arguments: self._connection.send(self, number, arguments)

    def on(self, **handlers):
        self._handlers |= handlers
        return self

    def receive(self, number, body, descriptors):
        """Calls the function for an event; closes descriptors that nobody wants."""
        if number >= len(self._events):
            return
        name, types = self._events[number]
        arguments = list(_arguments(types, body, descriptors))
        if name in self._handlers:
            self._handlers[name](*arguments)
        elif "h" in types:
            os.close(arguments[types.index("h")])


def _arguments(types, body, descriptors):
    place = 0
    for kind in types:
        if kind == "h":
            yield descriptors.pop(0)
            continue
        value, = struct.unpack_from("<i" if kind in "if" else "<I", body, place)
        place += 4
        if kind in "sa":
            content = body[place:place + value]
            place += (value + 3) // 4 * 4
            yield content[:-1].decode() if kind == "s" else content
        else:
            yield value / 256 if kind == "f" else value


def _marshalled(argument):
    if isinstance(argument, Thing):
        argument = argument.id
    if isinstance(argument, float):
        argument = round(argument * 256)
    if isinstance(argument, str):
        text = argument.encode() + b"\0"
        return struct.pack("<I", len(text)) + text + bytes(-len(text) % 4)
    return struct.pack("<I", (argument or 0) & 0xffffffff)


class Connection:
    """A connection to the compositor with this socket. Events are read at once, on a thread of their own, because a
    compositor drops clients that do not read."""

    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._socket.connect(str(path))
        self._lock = threading.RLock()
        self._things, self._next, self._failure = {}, 0, None
        self.globals = {}  # number: (interface, version)
        display = self.new("wl_display").on(error=self._fail, delete_id=lambda number: self._things.pop(number, None))
        self._number(display)
        self._display = display
        self._thread = threading.Thread(target=self._read, daemon=True)
        self._thread.start()
        self._registry = self.new("wl_registry").on(
            **{"global": lambda number, interface, version: self.globals.update({number: (interface, version)})},
            global_remove=lambda number: self.globals.pop(number, None))
        display.get_registry(self._registry)
        self.roundtrip()

    def close(self):
        with contextlib.suppress(OSError):
            self._socket.shutdown(socket.SHUT_RDWR)
        self._thread.join(PATIENCE)
        self._socket.close()

    def new(self, interface):
        """A new object, to be passed to the request that creates it."""
        return Thing(self, interface)

    def _number(self, thing):
        """Numbers must be used in their order, so a new object gets its number when it is first sent."""
        if thing.id is None:
            self._next += 1
            thing.id = self._next
            self._things[thing.id] = thing

    def bind_all(self, interface, version=1):
        """Every object of this interface that the compositor offers."""
        return [self._bind(number, interface, version)
                for number, (offered, _) in sorted(self.globals.items()) if offered == interface]

    def bind(self, interface, version=1):
        """The first object of this interface; a RuntimeError if there is none."""
        for number, (offered, _) in sorted(self.globals.items()):
            if offered == interface:
                return self._bind(number, interface, version)
        raise RuntimeError(f"the compositor has no {interface}")

    def _bind(self, number, interface, version):
        thing = self.new(interface)
        self._registry.bind(number, interface, min(version, self.globals[number][1]), thing)
        return thing

    def send(self, thing, number, arguments):
        with self._lock:
            for argument in arguments:
                if isinstance(argument, Thing):
                    self._number(argument)
            body = b"".join(_marshalled(argument) for argument in arguments if not isinstance(argument, Descriptor))
            message = struct.pack("<II", thing.id, (8 + len(body)) << 16 | number) + body
            socket.send_fds(self._socket, [message], [one for one in arguments if isinstance(one, Descriptor)])

    def roundtrip(self):
        """Waits until the compositor has dealt with all requests and everything that it sent before was read."""
        answered = threading.Event()
        self._display.sync(self.new("wl_callback").on(done=lambda _: answered.set()))
        answered.wait(PATIENCE)
        if self._failure or not answered.is_set():
            raise RuntimeError(self._failure or "the compositor does not answer")

    def _fail(self, thing, code, message):
        self._failure = f"the compositor refused a request to object {thing}: {message} ({code})"

    def _read(self):
        data, descriptors = b"", []
        # Closed by either side, perhaps while an event is being answered.
        with contextlib.suppress(OSError):
            while True:
                piece, passed, _, _ = socket.recv_fds(self._socket, 65536, 16)
                if not piece:
                    break
                data += piece
                descriptors += passed
                while len(data) >= 8:
                    identifier, header = struct.unpack_from("<II", data)
                    if len(data) < header >> 16:
                        break
                    body, data = data[8:header >> 16], data[header >> 16:]
                    thing = self._things.get(identifier)
                    if thing:
                        thing.receive(header & 0xffff, body, descriptors)
        self._failure = self._failure or "the compositor has gone"


class Buffer:
    """Pixels shared with the compositor: blue, green, red and an unused byte each."""

    def __init__(self, connection, shm, width, height, stride=None, form=1):
        stride = stride or 4 * width
        size = stride * height
        handle = os.memfd_create("pixels")
        os.truncate(handle, size)
        self.memory = mmap.mmap(handle, size)
        pool, self.thing = connection.new("wl_shm_pool"), connection.new("wl_buffer")
        shm.create_pool(pool, Descriptor(handle), size)
        pool.create_buffer(self.thing, 0, width, height, stride, form)
        pool.destroy()
        os.close(handle)

    def close(self):
        self.thing.destroy()
        self.memory.close()
