#!/usr/bin/env python3
"""Examine the widget images of `lunoval gallery` and `lunoval render` from the outside.

usage: check_widget_images.py LUNOVAL_BINARY

Draws every widget for several places and days, for a refused location service and for the
previews, and checks each PNG without knowing how it was drawn: its size in pixels; on the
home screen an opaque picture with the dark backdrop in its corners and bright ink inside
the 16-point content margin and none outside it; on the lock screen clear corners and white
alone. Across images: the permission prompt replaces the content, the same command gives the
same bytes, another day gives another picture, `render` draws what `gallery` draws, and vector
outputs carry their format's magic. The last line is "N passed, M failed".
"""

from __future__ import annotations

import hashlib
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ProcessPoolExecutor
from dataclasses import dataclass, field

sys.dont_write_bytecode = True  # keep the source tree clean when run from CTest
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import png_reader  # noqa: E402

FAMILIES = {"systemSmall": (170, 170), "systemMedium": (364, 170), "systemLarge": (364, 382),
            "accessoryCircular": (76, 76), "accessoryRectangular": (172, 76),
            "accessoryInline": (257, 26)}
HOME_SCREEN = ("systemSmall", "systemMedium", "systemLarge")
GALLERY_SIZE = 12
MARGIN = 16                       # points
# The backdrop runs through three colours along the diagonal, lines of equal colour square to it.
BACKDROP = ((0.05, 0.1, 0.2), (0.1, 0.15, 0.3), (0.15, 0.2, 0.35))
# White over the top-left corner, full within 10 points of it and gone 150 points away, so
# no other corner of a home-screen widget shows it.
GLOW = 0.05
CORNER_TOL = 2                    # levels
BRIGHT = 160                      # a channel this high is ink: the backdrop stays below 100
MIN_INK = 40                      # points squared of bright ink inside the margin
MIN_LOCK_INK = 10                 # points squared of at least half opaque ink
WHITE_TOL = 1.5                   # premultiplied levels a lock-screen colour may fall short

PARIS = ("--location", "48.8566,2.3522", "--timezone", "Europe/Paris")
AT = "2025-10-09T20:00Z"


@dataclass(frozen=True)
class Run:
    label: str
    options: tuple[str, ...]
    scale: int = 3
    examine: bool = True                    # decode and look at the pixels
    widget: tuple[str, str] | None = None   # render this (kind, family); else the gallery
    suffix: str = ".png"

    def args(self, out: str) -> list[str]:
        scale = [] if self.scale == 3 else ["--scale", str(self.scale)]
        if self.widget is None:
            return ["gallery", "--out", out, *scale, *self.options]
        kind, family = self.widget
        return ["render", "--kind", kind, "--family", family, "--out",
                os.path.join(out, f"{kind}-{family}{self.suffix}"), *scale, *self.options]


@dataclass
class Result:
    problems: list[str] = field(default_factory=list)
    files: dict[str, str] = field(default_factory=dict)    # name -> digest of the bytes
    pixels: dict[str, str] = field(default_factory=dict)   # name -> digest of the pixels


# ------------------------------------------------------------------ one image

def backdrop(x: float, y: float, width: float, height: float) -> list[float]:
    """The backdrop's colour in levels at a point, leaving out the glow."""
    t = min(1.0, max(0.0, (x * width + y * height) / (width * width + height * height)))
    k = 0 if t < 0.5 else 1
    u = (t - 0.5 * k) * 2
    return [255 * (a + (b - a) * u) for a, b in zip(BACKDROP[k], BACKDROP[k + 1])]


def check_corners(image: png_reader.Image, width: int, height: int, scale: int) -> list[str]:
    problems = []
    for name, i, j in (("top-left", 0, 0), ("top-right", image.width - 1, 0),
                       ("bottom-left", 0, image.height - 1),
                       ("bottom-right", image.width - 1, image.height - 1)):
        want = backdrop((i + 0.5) / scale, (j + 0.5) / scale, width, height)
        if name == "top-left":
            want = [c + GLOW * (255 - c) for c in want]
        got = image.pixel(i, j)[:3]
        if max(abs(g - w) for g, w in zip(got, want)) > CORNER_TOL:
            problems.append(f"{name} corner is {got}, expected the backdrop "
                            f"{tuple(round(c) for c in want)}")
    return problems


def bright(row: bytes, start: int, stop: int) -> int:
    """How many pixels from start to stop (pixel indices) carry bright ink."""
    return sum(1 for i in range(4 * start, 4 * stop, 4) if max(row[i:i + 3]) >= BRIGHT)


def check_home(image: png_reader.Image, width: int, height: int, scale: int) -> list[str]:
    problems = []
    if any(row[3::4].count(255) != image.width for row in image.rows):
        problems.append("not fully opaque")
    problems += check_corners(image, width, height, scale)
    m = MARGIN * scale
    inside = outside = 0
    for j, row in enumerate(image.rows):
        if m <= j < image.height - m:
            inside += bright(row, m, image.width - m)
            outside += bright(row, 0, m) + bright(row, image.width - m, image.width)
        else:
            outside += bright(row, 0, image.width)
    if inside < MIN_INK * scale * scale:
        problems.append(f"only {inside} bright pixels inside the content margin")
    if outside:
        problems.append(f"{outside} bright pixels in the {MARGIN}-point margin")
    return problems


def check_lock(image: png_reader.Image, scale: int) -> list[str]:
    problems = []
    corners = ((0, 0), (image.width - 1, 0), (0, image.height - 1),
               (image.width - 1, image.height - 1))
    if any(image.alpha(i, j) for i, j in corners):
        problems.append("a corner is not transparent")
    ink = off_white = 0
    for row in image.rows:
        for i in range(0, len(row), 4):
            a = row[i + 3]
            if a and a - min(row[i:i + 3]) * a / 255 > WHITE_TOL:
                off_white += 1
            ink += a >= 128
    if off_white:
        problems.append(f"{off_white} pixels are not white")
    if ink < MIN_LOCK_INK * scale * scale:
        problems.append(f"only {ink} pixels of ink")
    return problems


def check_png(name: str, data: bytes, run: Run, result: Result) -> list[str]:
    family = name.removesuffix(".png").rpartition("-")[2]
    if family not in FAMILIES:
        return [f"{name}: not named for a widget family"]
    try:
        head = png_reader.header(data)
    except png_reader.PngError as e:
        return [f"{name}: {e}"]
    width, height = FAMILIES[family]
    want = (width * run.scale, height * run.scale)
    if (head.width, head.height) != want:
        return [f"{name}: {head.width}x{head.height} pixels, expected {want[0]}x{want[1]}"]
    if not run.examine:
        return []
    image = png_reader.decode(data)
    result.pixels[name] = hashlib.sha256(b"".join(image.rows)).hexdigest()
    if family in HOME_SCREEN:
        problems = check_home(image, width, height, run.scale)
    else:
        problems = check_lock(image, run.scale)
    return [f"{name}: {p}" for p in problems]


def check_vector(name: str, data: bytes) -> list[str]:
    magic = {".svg": (b"<?xml", b"<svg"), ".pdf": (b"%PDF",)}[os.path.splitext(name)[1]]
    head = data[:64].lstrip()
    return [] if head.startswith(magic) else [f"{name} starts with {head[:16]!r}"]


# ------------------------------------------------------------------ one command

def environment(home: str) -> dict[str, str]:
    """A fresh home, so that no saved place or cached location leaks in."""
    env = dict(os.environ, HOME=home)
    for name, sub in (("XDG_CONFIG_HOME", ".config"), ("XDG_DATA_HOME", ".local/share"),
                      ("XDG_CACHE_HOME", ".cache")):
        env[name] = os.path.join(home, sub)
    return env


def execute(binary: str, run: Run) -> Result:
    result = Result()
    with tempfile.TemporaryDirectory(prefix="lunoval-widgets-") as folder:
        out = os.path.join(folder, "out")
        os.makedirs(os.path.join(folder, "home"))
        os.makedirs(out, exist_ok=True)
        done = subprocess.run([binary, *run.args(out)], capture_output=True, text=True,
                              env=environment(os.path.join(folder, "home")), timeout=60)
        if done.returncode != 0:
            result.problems.append(f"exit {done.returncode}: {done.stderr.strip()}")
            return result
        names = sorted(n for n in os.listdir(out) if n.endswith(run.suffix))
        for name in names:
            with open(os.path.join(out, name), "rb") as f:
                data = f.read()
            result.files[name] = hashlib.sha256(data).hexdigest()
            if run.suffix == ".png":
                result.problems += check_png(name, data, run, result)
            else:
                result.problems += check_vector(name, data)
    expected = 1 if run.widget else GALLERY_SIZE
    if len(names) != expected:
        result.problems.append(f"{len(names)} images, expected {expected}")
    return result


# ------------------------------------------------------------------ across images

def same(a: dict[str, str], b: dict[str, str]) -> list[str]:
    return [f"{n} differs" for n in sorted(a.keys() & b.keys()) if a[n] != b[n]]


def different(a: dict[str, str], b: dict[str, str]) -> list[str]:
    return [f"{n} is the same picture" for n in sorted(a.keys() & b.keys()) if a[n] == b[n]]


def one_prompt(pixels: dict[str, str]) -> list[str]:
    """The prompt replaces the content, so each home-screen size shows one picture."""
    problems = []
    for family in HOME_SCREEN:
        drawn = {d for n, d in pixels.items() if n.endswith(f"-{family}.png")}
        if len(drawn) > 1:
            problems.append(f"{len(drawn)} different {family} prompts")
    return problems


def at(instant: str, *options: str) -> tuple[str, ...]:
    return (*options, "--at", instant)


RUNS = (
    Run("preview", at(AT, "--timezone", "UTC")),
    Run("Paris", at(AT, *PARIS), scale=1),
    Run("Paris again", at(AT, *PARIS), scale=1, examine=False),
    Run("Paris a week later", at("2025-10-16T20:00Z", *PARIS), scale=1),
    Run("Paris at scale 2", at(AT, *PARIS), scale=2, examine=False),
    Run("Tromso, polar night",
        at("2025-12-21T12:00Z", "--location", "69.6492,18.9553", "--timezone", "Europe/Oslo"),
        scale=1),
    Run("Sydney", at("2026-03-20T22:00Z", "--location", "-33.8688,151.2093",
                     "--timezone", "Australia/Sydney"), scale=1),
    Run("Quito, full moon", at("2025-10-07T03:48Z", "--location", "-0.1807,-78.4678",
                    "--timezone", "America/Guayaquil"), scale=1),
    Run("denied", at(AT, "--location-service", "denied", "--timezone", "Europe/Paris"), scale=1),
    Run("render Paris", at(AT, *PARIS), scale=1, widget=("MoonPhaseWidget", "systemSmall")),
    Run("render Paris again", at(AT, *PARIS), scale=1, examine=False,
        widget=("MoonPhaseWidget", "systemSmall")),
    Run("render denied", at(AT, "--location-service", "denied", "--timezone", "Europe/Paris"),
        scale=1, widget=("MoonEventWidget", "systemSmall")),
    Run("render preview", ("--preview", *at(AT, "--timezone", "UTC")),
        widget=("MoonSunTimesWidget", "systemSmall")),
    Run("render Sydney medium", at("2026-03-20T22:00Z", "--location", "-33.8688,151.2093",
                                   "--timezone", "Australia/Sydney"),
        scale=2, widget=("MoonTimesWidget", "systemMedium")),
    Run("render Tromso rectangular", at("2025-12-21T12:00Z", "--location", "69.6492,18.9553",
                                        "--timezone", "Europe/Oslo"),
        scale=2, widget=("MoonTimesWidget", "accessoryRectangular")),
    Run("render SVG", at(AT, *PARIS), widget=("MoonPhaseWidget", "systemLarge"), suffix=".svg"),
    Run("render PDF", at(AT, *PARIS), widget=("MoonTimesWidget", "accessoryInline"),
        suffix=".pdf"),
)

ACROSS = (
    ("the same gallery twice gives the same bytes", "Paris", "Paris again", "files", same),
    ("the same render twice gives the same bytes", "render Paris", "render Paris again",
     "files", same),
    ("another day gives another picture", "Paris", "Paris a week later", "pixels", different),
    ("a refused location service shows the prompt", "Paris", "denied", "pixels", different),
    ("render draws what gallery draws", "Paris", "render Paris", "pixels", same),
    ("render draws the prompt gallery draws", "denied", "render denied", "pixels", same),
    ("render draws the preview gallery draws", "preview", "render preview", "pixels", same),
)


def main(argv: list[str]) -> int:
    if len(argv) < 2:
        print("usage: check_widget_images.py LUNOVAL_BINARY", file=sys.stderr)
        return 2
    binary = os.path.abspath(argv[1])
    with ProcessPoolExecutor(max_workers=2) as pool:
        results = dict(zip((r.label for r in RUNS),
                           pool.map(execute, [binary] * len(RUNS), RUNS)))
    failed = [(label, r.problems) for label, r in results.items() if r.problems]
    for label, a, b, kind, compare in ACROSS:
        problems = compare(getattr(results[a], kind), getattr(results[b], kind))
        if problems:
            failed.append((label, problems))
    prompt = one_prompt(results["denied"].pixels)
    if prompt:
        failed.append(("one prompt whatever the widget", prompt))
    images = sum(len(r.files) for r in results.values())
    print(f"{len(RUNS)} commands drew {images} images, "
          f"{sum(len(r.pixels) for r in results.values())} examined pixel by pixel")
    for label, problems in failed:
        print(f"{label}:")
        for problem in problems:
            print(f"  {problem}")
    total = len(RUNS) + len(ACROSS) + 1
    print(f"{total - len(failed)} passed, {len(failed)} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
