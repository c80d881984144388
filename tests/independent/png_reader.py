"""A minimal reader for the 8-bit RGBA and RGB, non-interlaced PNG files the command writes."""

from __future__ import annotations

import struct
import zlib
from dataclasses import dataclass

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS = 4  # RGBA, one byte each
# Colour type to bytes per pixel; Cairo writes a fully opaque image as RGB.
COLOUR_TYPES = {6: 4, 2: 3}


class PngError(ValueError):
    pass


@dataclass(frozen=True)
class Image:
    width: int
    height: int
    rows: list[bytes]  # unfiltered RGBA bytes, top row first; RGB reads as opaque RGBA

    def pixel(self, x: int, y: int) -> tuple[int, int, int, int]:
        i = x * CHANNELS
        return tuple(self.rows[y][i:i + CHANNELS])

    def alpha(self, x: int, y: int) -> int:
        return self.rows[y][x * CHANNELS + 3]


def chunks(data: bytes):
    """Yields (type, payload) after checking each chunk's CRC."""
    pos = len(SIGNATURE)
    while pos + 8 <= len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        payload = data[pos + 8:pos + 8 + length]
        (crc,) = struct.unpack(">I", data[pos + 8 + length:pos + 12 + length])
        if zlib.crc32(kind + payload) != crc:
            raise PngError(f"bad CRC in {kind!r} chunk")
        yield kind, payload
        pos += 12 + length


def paeth(a: int, b: int, c: int) -> int:
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def unfilter_row(kind: int, row: bytearray, prior: bytes, n: int = CHANNELS) -> None:
    """Undoes one row's filter in place; `prior` is the already unfiltered row above and `n`
    the bytes per pixel."""
    if kind == 0:
        return
    if kind == 1:
        for i in range(n, len(row)):
            row[i] = (row[i] + row[i - n]) & 0xFF
    elif kind == 2:
        for i in range(len(row)):
            row[i] = (row[i] + prior[i]) & 0xFF
    elif kind == 3:
        for i in range(len(row)):
            left = row[i - n] if i >= n else 0
            row[i] = (row[i] + ((left + prior[i]) >> 1)) & 0xFF
    elif kind == 4:
        for i in range(len(row)):
            left = row[i - n] if i >= n else 0
            upper_left = prior[i - n] if i >= n else 0
            row[i] = (row[i] + paeth(left, prior[i], upper_left)) & 0xFF
    else:
        raise PngError(f"unknown row filter {kind}")


@dataclass(frozen=True)
class Header:
    width: int
    height: int
    colour: int  # PNG colour type: 6 RGBA, 2 RGB


def header(data: bytes) -> Header:
    """The image's size and colour type, checked to be a layout this reader decodes."""
    if not data.startswith(SIGNATURE):
        raise PngError("not a PNG file")
    kind, payload = next(chunks(data), (None, b""))
    if kind != b"IHDR":
        raise PngError("no IHDR chunk first")
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", payload)
    if depth != 8 or colour not in COLOUR_TYPES or interlace != 0:
        raise PngError(f"unsupported layout: depth {depth}, colour type {colour}, interlace {interlace}")
    return Header(width, height, colour)


def as_rgba(row: bytes, width: int) -> bytes:
    rgba = bytearray(b"\xff" * (width * CHANNELS))
    for c in range(3):
        rgba[c::CHANNELS] = row[c::3]
    return bytes(rgba)


def decode(data: bytes) -> Image:
    head = header(data)
    compressed = b"".join(payload for kind, payload in chunks(data) if kind == b"IDAT")
    raw = zlib.decompress(compressed)
    n = COLOUR_TYPES[head.colour]
    stride = head.width * n
    if len(raw) != head.height * (stride + 1):
        raise PngError(f"image data holds {len(raw)} bytes, expected {head.height * (stride + 1)}")
    rows, prior = [], bytes(stride)
    for y in range(head.height):
        start = y * (stride + 1)
        row = bytearray(raw[start + 1:start + 1 + stride])
        unfilter_row(raw[start], row, prior, n)
        prior = bytes(row)
        rows.append(prior if n == CHANNELS else as_rgba(prior, head.width))
    return Image(head.width, head.height, rows)


def read(path: str) -> Image:
    with open(path, "rb") as f:
        return decode(f.read())
