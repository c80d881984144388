# What the desktop checks share: a private X server driven through XTest, a fresh home, the
# program in the background with its log, and widgets on screen against `lunoval render`.

import ctypes
import math
import os
import re
import struct
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # keep the source tree clean when run from CTest
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "independent"))
import png_reader  # noqa: E402,F401  (re-exported for the checks)

# One moment and place for the widgets and for `lunoval render`, so both show one entry.
DEVICE = ["--at", "2025-10-07T21:30:00Z", "--location", "48.8566,2.3522",
          "--timezone", "Europe/Paris", "--locale", "en_US"]
CORNER_RADIUS = 22  # points: the phone's, on home-screen widgets


def poll(until, seconds: float = 10, wait=lambda: time.sleep(0.05)):
    end = time.monotonic() + seconds
    while not until() and time.monotonic() < end:
        wait()
    return until()


class Home:
    # A fresh home, which is also the runtime folder: one per running program.
    def __init__(self, **env: str) -> None:
        self.folder = tempfile.TemporaryDirectory(prefix="lunoval-desktop-")
        self.env = {k: v for k, v in os.environ.items()
                    if k not in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "WAYLAND_DISPLAY", "DISPLAY")}
        self.env.update(HOME=self.folder.name, XDG_RUNTIME_DIR=self.folder.name, LC_ALL="C.UTF-8",
                        NO_AT_BRIDGE="1", GSETTINGS_BACKEND="memory", **env)

    def path(self, name: str) -> str:
        return os.path.join(self.folder.name, name)


class Program(subprocess.Popen):
    # A command in the background, its output in a log in its home.
    def __init__(self, argv: list[str], home: Home) -> None:
        self.log_path = home.path("log")
        with open(self.log_path, "wb") as out:
            super().__init__(argv, env=home.env, stdout=out, stderr=subprocess.STDOUT)

    def log(self) -> str:
        with open(self.log_path, encoding="utf-8", errors="replace") as log:
            return log.read()

    def wait_for(self, text: str) -> bool:
        poll(lambda: text in self.log() or self.poll() is not None, 20)
        return text in self.log()

    def stop(self) -> int:
        self.terminate()
        return self.wait(10)


class XServer:
    # Xvfb with a 24-bit screen, which keeps its frame buffer in a file.
    def __init__(self, width: int = 1024, height: int = 768) -> None:
        self.frames = tempfile.TemporaryDirectory(prefix="lunoval-xvfb-")
        read, write = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24", "-fbdir",
             self.frames.name, "-nolisten", "tcp"], pass_fds=(write,), stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            self.display = ":" + pipe.readline().strip()
        self.width, self.height = width, height
        self.xlib, self.xtest = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
        self.xlib.XOpenDisplay.restype = ctypes.c_void_p
        self.connection = ctypes.c_void_p(self.xlib.XOpenDisplay(self.display.encode()))

    def stop(self) -> None:
        self.process.terminate()
        self.process.wait()

    def windows(self) -> list[tuple[str, str, tuple[int, int, int, int]]]:
        # Every top-level window's id, name ("" when it has none, as menus) and geometry.
        tree = subprocess.run(["xwininfo", "-root", "-children", "-display", self.display],
                              capture_output=True, text=True).stdout
        found = re.finditer(r'^\s+(0x[0-9a-f]+) (?:"([^"]*)"|\().*?'
                            r'(\d+)x(\d+)\S*\s+\+(-?\d+)\+(-?\d+)$', tree, re.MULTILINE)
        return [(m[1], m[2] or "", (int(m[5]), int(m[6]), int(m[3]), int(m[4]))) for m in found]

    def click(self, x: int, y: int, button: int = 1) -> None:
        self.xtest.XTestFakeMotionEvent(self.connection, -1, x, y, 0)
        self.xtest.XTestFakeButtonEvent(self.connection, button, 1, 0)
        self.xtest.XTestFakeButtonEvent(self.connection, button, 0, 0)
        self.xlib.XSync(self.connection, 0)

    def type(self, text: str) -> None:  # lower-case letters and digits, then Return
        for key in [*text, "Return"]:
            symbol = self.xlib.XStringToKeysym(key.encode())
            code = self.xlib.XKeysymToKeycode(self.connection, symbol)
            self.xtest.XTestFakeKeyEvent(self.connection, code, 1, 0)
            self.xtest.XTestFakeKeyEvent(self.connection, code, 0, 0)
        self.xlib.XSync(self.connection, 0)

    def screenshot(self) -> bytes:
        # The frame buffer is a window dump: a header and a colour map, then four bytes a pixel,
        # blue first. Returned as RGB, row after row.
        with open(os.path.join(self.frames.name, "Xvfb_screen0"), "rb") as file:
            dump = file.read()
        start = struct.unpack_from(">I", dump)[0] + 12 * struct.unpack_from(">I", dump, 76)[0]
        rgb = bytearray(self.width * self.height * 3)
        for channel in range(3):
            rgb[channel::3] = dump[start + 2 - channel:start + len(rgb) // 3 * 4:4]
        return bytes(rgb)


def mismatches(shot: bytes, shot_width: int, left: int, top: int, image: png_reader.Image,
               radius_px: float | None, backdrop: int = 0) -> int:
    # Pixels of `image` that differ in the screenshot at (left, top), the image taken over a
    # grey `backdrop` (black: a window without a compositor). Partly transparent pixels may be
    # one level off (a PNG stores colours without the alpha multiplied in). When `radius_px` is
    # given, the corners are rounded off on screen: clear outside the arcs, and any colour within
    # a pixel and a half of them, where antialiasing differs.
    count = 0
    for y in range(image.height):
        for x in range(image.width):
            r, g, b, a = image.pixel(x, y)
            if radius_px:
                cx = min(max(x + 0.5, radius_px), image.width - radius_px)
                cy = min(max(y + 0.5, radius_px), image.height - radius_px)
                beyond = math.hypot(x + 0.5 - cx, y + 0.5 - cy) - radius_px
                if abs(beyond) < 1.5:
                    continue
                a = 0 if beyond > 0 else a
            i = ((top + y) * shot_width + left + x) * 3
            count += any(abs(round((c * a + backdrop * (255 - a)) / 255) - s) > (a < 255)
                         for c, s in zip((r, g, b), shot[i:i + 3]))
    return count


def render(lunoval: str, home: Home, kind: str, family: str, scale: int) -> png_reader.Image:
    out = home.path(f"{kind}-{family}-{scale}.png")
    subprocess.run([lunoval, "render", "--kind", kind, "--family", family, "--scale", str(scale),
                    "--out", out, *DEVICE], env=home.env, check=True, capture_output=True)
    return png_reader.read(out)
