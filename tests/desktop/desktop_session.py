"""What the desktop checks share: a private X server, a fresh home, the program in the
background with its log, and images compared pixel for pixel."""

from __future__ import annotations

import math
import os
import re
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
FAMILIES = {"systemSmall": (170, 170), "systemMedium": (364, 170), "systemLarge": (364, 382),
            "accessoryCircular": (76, 76), "accessoryRectangular": (172, 76),
            "accessoryInline": (257, 26)}
CORNER_RADIUS = 22  # points: the phone's, on home-screen widgets


class Failures:
    def __init__(self) -> None:
        self.passed = 0
        self.failed = 0

    def check(self, condition: bool, what: str) -> None:
        if condition:
            self.passed += 1
        else:
            self.failed += 1
            print(f"FAIL {what}", flush=True)

    def finish(self) -> None:
        print(f"{self.passed} passed, {self.failed} failed", flush=True)
        sys.exit(1 if self.failed else 0)


class Home:
    """A fresh home, configuration and runtime folder for one check."""

    def __init__(self) -> None:
        self.folder = tempfile.TemporaryDirectory(prefix="lunoval-desktop-")
        self.root = self.folder.name
        self.runtime = os.path.join(self.root, "run")
        os.makedirs(self.runtime, mode=0o700)
        self.env = {k: v for k, v in os.environ.items()
                    if k not in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "WAYLAND_DISPLAY", "DISPLAY")}
        self.env.update(HOME=self.root, XDG_RUNTIME_DIR=self.runtime, LC_ALL="C.UTF-8",
                        NO_AT_BRIDGE="1", GSETTINGS_BACKEND="memory")


class XServer:
    def __init__(self, width: int = 1024, height: int = 768) -> None:
        read, write = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24",
             "-nolisten", "tcp"], pass_fds=(write,), stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            self.display = ":" + pipe.readline().strip()

    def stop(self) -> None:
        self.process.terminate()
        self.process.wait()


class Program:
    """A command in the background, its output in a log."""

    def __init__(self, argv: list[str], env: dict[str, str], log: str) -> None:
        self.log_path = log
        with open(log, "wb") as out:
            self.process = subprocess.Popen(argv, env=env, stdout=out, stderr=subprocess.STDOUT)

    def log(self) -> str:
        with open(self.log_path, encoding="utf-8", errors="replace") as log:
            return log.read()

    def wait_for(self, text: str, times: int = 1, seconds: float = 20) -> bool:
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if self.log().count(text) >= times:
                return True
            if self.process.poll() is not None:
                return self.log().count(text) >= times
            time.sleep(0.05)
        return False

    def stop(self) -> int:
        if self.process.poll() is None:
            self.process.terminate()
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            return -1


def top_level(display: str, env: dict[str, str]) -> str:
    return subprocess.run(["xwininfo", "-root", "-children", "-display", display], env=env,
                          capture_output=True, text=True).stdout


def windows(display: str, env: dict[str, str]) -> dict[str, str]:
    """Every named top-level window's name and id."""
    tree = top_level(display, env)
    return {m.group(2): m.group(1) for m in re.finditer(r'(0x[0-9a-f]+) "([^"]*)"', tree)}


def window_ids(display: str, env: dict[str, str]) -> set[str]:
    """Every top-level window, named or not (menus are not)."""
    return set(re.findall(r"^\s+(0x[0-9a-f]+) ", top_level(display, env), re.MULTILINE))


def geometry(display: str, window: str, env: dict[str, str]) -> tuple[int, int, int, int]:
    info = subprocess.run(["xwininfo", "-id", window, "-display", display], env=env,
                          capture_output=True, text=True).stdout
    value = {key: int(re.search(rf"{key}:\s+(-?\d+)", info).group(1))
             for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")}
    return tuple(value.values())


def read_ppm(path: str) -> tuple[int, int, bytes]:
    with open(path, "rb") as file:
        data = file.read()
    magic, width, height, _, pixels = data.split(maxsplit=4)
    assert magic == b"P6"
    return int(width), int(height), pixels


def near_rounded_corner(x: float, y: float, width: float, height: float, radius: float) -> bool:
    """Whether a pixel's centre lies outside the rounded rectangle or within a pixel of its
    arc, where antialiasing may differ."""
    cx = min(max(x, radius), width - radius)
    cy = min(max(y, radius), height - radius)
    return math.hypot(x - cx, y - cy) > radius - 1.5


def mismatches(shot: bytes, shot_width: int, left: int, top: int,
               image: png_reader.Image, radius_px: float | None) -> int:
    """Pixels of `image` that differ in the screenshot at (left, top), the image taken over
    black as a window without a compositor shows it. Partly transparent pixels may be one level
    off (a PNG stores colours without the alpha multiplied in); near the rounded corners (when
    `radius_px` is given) any may."""
    count = 0
    for y in range(image.height):
        for x in range(image.width):
            if radius_px and near_rounded_corner(x + 0.5, y + 0.5, image.width, image.height,
                                                 radius_px):
                continue
            r, g, b, a = image.pixel(x, y)
            want = [round(c * a / 255) for c in (r, g, b)]
            i = ((top + y) * shot_width + left + x) * 3
            got = shot[i:i + 3]
            slack = 0 if a == 255 else 1
            if any(abs(w - h) > slack for w, h in zip(want, got)):
                count += 1
    return count


def render(lunoval: str, home: Home, kind: str, family: str, scale: int) -> png_reader.Image:
    out = os.path.join(home.root, f"{kind}-{family}-{scale}.png")
    subprocess.run([lunoval, "render", "--kind", kind, "--family", family, "--scale", str(scale),
                    "--out", out, "--quiet", *DEVICE], env=home.env, check=True,
                   stdout=subprocess.DEVNULL)
    return png_reader.read(out)
