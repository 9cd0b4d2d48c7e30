"""Films a part of the screen: every picture that the X server showed there, and when."""

import bisect
import ctypes
import select
import threading
import time

from Xlib import X, display
from Xlib.ext import damage
from Xlib.protocol import rq

from .picture import Picture

_LOOK_SECONDS = 0.05  # how often the end of the film is looked for while nothing changes
_SHARED_MEMORY = "MIT-SHM"
_libc = ctypes.CDLL(None, use_errno=True)
_libc.shmat.restype = ctypes.c_void_p
_libc.shmdt.argtypes = [ctypes.c_void_p]


class _Attach(rq.Request):
    _request = rq.Struct(rq.Card8("opcode"), rq.Opcode(1), rq.RequestLength(), rq.Card32("segment"),
                         rq.Card32("id"), rq.Bool("read_only"), rq.Pad(3))


class _GetImage(rq.ReplyRequest):
    _request = rq.Struct(rq.Card8("opcode"), rq.Opcode(4), rq.RequestLength(), rq.Drawable("drawable"),
                         rq.Int16("x"), rq.Int16("y"), rq.Card16("width"), rq.Card16("height"),
                         rq.Card32("plane_mask"), rq.Card8("format"), rq.Pad(3), rq.Card32("segment"),
                         rq.Card32("offset"))
    _reply = rq.Struct(rq.ReplyCode(), rq.Card8("depth"), rq.Card16("sequence_number"), rq.ReplyLength(),
                       rq.Card32("visual"), rq.Card32("size"), rq.Pad(16))


class _Camera:
    """Copies a part of the screen through memory shared with the server, in about a millisecond."""

    def __init__(self, connection, root, area):
        self._connection, self._root, self._area = connection, root, area
        self._size = 4 * area[2] * area[3]
        self._opcode = connection.query_extension(_SHARED_MEMORY).major_opcode
        identifier = _libc.shmget(0, self._size, 0o600)
        self._address = _libc.shmat(identifier, None, 0)
        self._segment = connection.display.allocate_resource_id()
        _Attach(display=connection.display, opcode=self._opcode, segment=self._segment, id=identifier,
                read_only=False)
        connection.sync()
        _libc.shmctl(identifier, 0, None)  # removed as soon as both have detached from it

    def shoot(self):
        """The pixels; blue, green, red and an unused byte each."""
        x, y, width, height = self._area
        _GetImage(display=self._connection.display, opcode=self._opcode, drawable=self._root, x=x, y=y,
                  width=width, height=height, plane_mask=0xffffffff, format=X.ZPixmap,
                  segment=self._segment, offset=0)
        return ctypes.string_at(self._address, self._size)

    def close(self):
        _libc.shmdt(self._address)


class Film:
    """Records a part of the screen while entered; iterating over it then yields (seconds, picture)
    for every change, beginning with what was there at the start.

    The server announces each change of the screen by its DAMAGE extension, so that nothing is missed
    between two looks, and nothing is looked at while nothing changes. Seconds count from the start, by
    `time.monotonic`. Only the rows that changed are kept. """

    def __init__(self, name, x, y, width, height):
        self.x, self.y, self.width, self.height = x, y, width, height
        self._name, self._frames = name, []

    def __enter__(self):
        self._connection = display.Display(self._name)
        root = self._connection.screen().root
        self._connection.damage_query_version()
        self._damage = root.damage_create(damage.DamageReportNonEmpty)
        self._camera = _Camera(self._connection, root, (self.x, self.y, self.width, self.height))
        self._latest, self.began = self._camera.shoot(), time.monotonic()
        self._frames = [(0.0, 0, self._latest)]
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._record, daemon=True)
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self._thread.join()
        self._camera.close()
        self._connection.close()

    def __len__(self):
        return len(self._frames)

    def __iter__(self):
        data, stride = b"", 4 * self.width
        for seconds, top, rows in list(self._frames):
            data = data[:top * stride] + rows + data[top * stride + len(rows):]
            yield seconds, Picture(self.x, self.y, self.width, self.height, data)

    def now(self):
        """Seconds since the start."""
        return time.monotonic() - self.began

    def still_for(self):
        """Seconds since the latest change."""
        return self.now() - self._frames[-1][0]

    def _record(self):
        while not self._ended.is_set():
            if not self._connection.pending_events():
                select.select([self._connection], [], [], _LOOK_SECONDS)
                continue
            seconds = self.now()
            while self._connection.pending_events():
                self._connection.next_event()
            # In this order: what changes after the picture is announced again.
            self._connection.damage_subtract(self._damage)
            self._keep(seconds, self._camera.shoot())

    def _keep(self, seconds, data):
        """Keeps the rows that differ from the latest picture; none if nothing changed here."""
        before, self._latest = self._latest, data
        if data == before:
            return
        stride, rows = 4 * self.width, range(1, self.height + 1)
        top = bisect.bisect(rows, False, key=lambda row: data[:row * stride] != before[:row * stride])
        below = bisect.bisect(rows, False, key=lambda row: data[-row * stride:] != before[-row * stride:])
        self._frames.append((seconds, top, data[top * stride:(self.height - below) * stride]))

    def save(self, folder):
        """Writes each frame as a PNG file, named by its time in milliseconds."""
        for seconds, picture in self:
            picture.save(folder / f"{round(1000 * seconds):06}.png")

    def save_sheet(self, path, columns=4, begin=0.0, end=float("inf"), most=40):
        """Writes the frames between two times as one PNG file, row by row; evenly chosen if there are
        more than `most`."""
        shown = [picture for seconds, picture in self if begin <= seconds <= end]
        shown = shown[::-(-len(shown) // most)] if shown else []
        sheet = []
        for first in range(0, len(shown), columns):
            group = shown[first:first + columns]
            group += [Picture(0, 0, self.width, self.height, bytes(4 * self.width * self.height))] * (
                columns - len(group))
            sheet += [picture.row(row) for row in range(self.height) for picture in group]
        Picture(0, 0, columns * self.width, len(sheet) // columns, b"".join(sheet)).save(path)
