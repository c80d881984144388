"""A minimal reader for the 8-bit RGBA, non-interlaced PNG files the command writes."""

from __future__ import annotations

import struct
import zlib
from dataclasses import dataclass

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS = 4  # RGBA, one byte each


class PngError(ValueError):
    pass


@dataclass(frozen=True)
class Image:
    width: int
    height: int
    rows: list[bytes]  # unfiltered RGBA bytes, top row first

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


def unfilter_row(kind: int, row: bytearray, prior: bytes) -> None:
    """Undoes one row's filter in place; `prior` is the already unfiltered row above."""
    n = CHANNELS
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


def decode(data: bytes) -> Image:
    if not data.startswith(SIGNATURE):
        raise PngError("not a PNG file")
    header, compressed = None, bytearray()
    for kind, payload in chunks(data):
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", payload)
        elif kind == b"IDAT":
            compressed += payload
    if header is None:
        raise PngError("no IHDR chunk")
    width, height, depth, colour, _, _, interlace = header
    if (depth, colour, interlace) != (8, 6, 0):
        raise PngError(f"unsupported layout: depth {depth}, colour type {colour}, interlace {interlace}")
    raw = zlib.decompress(bytes(compressed))
    stride = width * CHANNELS
    if len(raw) != height * (stride + 1):
        raise PngError(f"image data holds {len(raw)} bytes, expected {height * (stride + 1)}")
    rows, prior = [], bytes(stride)
    for y in range(height):
        start = y * (stride + 1)
        row = bytearray(raw[start + 1:start + 1 + stride])
        unfilter_row(raw[start], row, prior)
        prior = bytes(row)
        rows.append(prior)
    return Image(width, height, rows)


def read(path: str) -> Image:
    with open(path, "rb") as f:
        return decode(f.read())
