# A small reader for the 8-bit, non-interlaced RGBA and RGB PNG files the command writes.

from __future__ import annotations

import struct
import zlib
from collections import namedtuple
from dataclasses import dataclass

SIGNATURE = b"\x89PNG\r\n\x1a\n"
BYTES_PER_PIXEL = {6: 4, 2: 3}  # by colour type; Cairo writes a fully opaque image as RGB
Header = namedtuple("Header", "width height colour")


class PngError(ValueError):
    pass


@dataclass(frozen=True)
class Image:
    width: int
    height: int
    rows: list[bytes]  # RGBA, top row first; RGB reads as opaque RGBA

    def pixel(self, x: int, y: int) -> tuple[int, int, int, int]:
        return tuple(self.rows[y][4 * x:4 * x + 4])

    def alpha(self, x: int, y: int) -> int:
        return self.rows[y][4 * x + 3]


def chunks(data: bytes):
    pos = len(SIGNATURE)
    while pos + 12 <= len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        payload, crc = data[pos + 8:pos + 8 + length], data[pos + 8 + length:pos + 12 + length]
        if zlib.crc32(kind + payload).to_bytes(4, "big") != crc:
            raise PngError(f"bad CRC in the {kind!r} chunk")
        yield kind, payload
        pos += 12 + length


def header(data: bytes) -> Header:
    # The size and colour type, once they are a layout this reader decodes.
    kind, payload = next(chunks(data), (None, b"")) if data.startswith(SIGNATURE) else (None, b"")
    if kind != b"IHDR":
        raise PngError("not a PNG file")
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", payload)
    if depth != 8 or colour not in BYTES_PER_PIXEL or interlace:
        raise PngError(f"unsupported layout: depth {depth}, colour type {colour}, interlace {interlace}")
    return Header(width, height, colour)


def unfilter(kind: int, row: bytearray, prior: bytes) -> None:
    # The command's writer filters every row by the row above; each byte is added to the one above
    # modulo 256, all at once in one big integer.
    if kind == 2:
        low, high = int.from_bytes(b"\x7f" * len(row), "big"), int.from_bytes(b"\x80" * len(row), "big")
        above, this = int.from_bytes(prior, "big"), int.from_bytes(row, "big")
        row[:] = (((above & low) + (this & low)) ^ ((above ^ this) & high)).to_bytes(len(row), "big")
    elif kind:
        raise PngError(f"row filter {kind}, where the command's writer uses none or Up")


def decode(data: bytes) -> Image:
    head = header(data)
    raw = zlib.decompress(b"".join(payload for kind, payload in chunks(data) if kind == b"IDAT"))
    n = BYTES_PER_PIXEL[head.colour]
    stride = head.width * n
    if len(raw) != head.height * (stride + 1):
        raise PngError(f"image data holds {len(raw)} bytes, not {head.height * (stride + 1)}")
    rows, prior = [], bytes(stride)
    for y in range(head.height):
        row = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        unfilter(raw[y * (stride + 1)], row, prior)
        prior = bytes(row)
        if n == 3:  # opaque
            row = bytearray(b"\xff" * (4 * head.width))
            row[0::4], row[1::4], row[2::4] = prior[0::3], prior[1::3], prior[2::3]
        rows.append(bytes(row))
    return Image(head.width, head.height, rows)


def read(path: str) -> Image:
    with open(path, "rb") as f:
        return decode(f.read())
