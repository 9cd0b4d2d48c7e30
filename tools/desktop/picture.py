"""Pixels of the screen."""

import struct
import zlib


class Picture:
    """Pixels of the screen, in screen coordinates."""

    def __init__(self, x, y, width, height, data):
        self.x, self.y, self.width, self.height = x, y, width, height
        self._data = data  # blue, green, red, unused

    def at(self, x, y):
        """The colour (red, green, blue) at a position."""
        place = 4 * ((y - self.y) * self.width + x - self.x)
        blue, green, red = self._data[place:place + 3]
        return red, green, blue

    def row(self, number):
        """The bytes of a row, counted from the picture's top: blue, green, red and an unused one each."""
        return self._data[4 * self.width * number:4 * self.width * (number + 1)]

    def same_as(self, other):
        return self._data == other._data

    def colours(self, x, y, width, height):
        """The set of colours in a part of the screen."""
        return {self.at(column, row) for row in range(y, y + height)
                for column in range(x, x + width)}

    def dark_run(self, y, middle, limit=40):
        """(left, right) of the run of nearly black pixels around the column `middle` of a row, or
        None."""
        def dark(x):
            return self.x <= x < self.x + self.width and max(self.at(x, y)) < limit
        if not dark(middle):
            return None
        left = right = middle
        while dark(left - 1):
            left -= 1
        while dark(right + 1):
            right += 1
        return left, right + 1

    def save(self, path):
        """Writes a PNG file."""
        rows = bytearray()
        for start in range(0, len(self._data), 4 * self.width):
            row = self._data[start:start + 4 * self.width]
            pixels = bytearray(3 * self.width)
            pixels[0::3], pixels[1::3], pixels[2::3] = row[2::4], row[1::4], row[0::4]
            rows += b"\0" + pixels

        def chunk(kind, body):
            check = zlib.crc32(kind + body)
            return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", check)
        header = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                         + chunk(b"IDAT", zlib.compress(bytes(rows), 6)) + chunk(b"IEND", b""))
