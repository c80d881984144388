#!/usr/bin/env python3
"""Cross-check the pictures of `lunoval moon` against the disc's geometric description.

usage: check_moon_disc.py LUNOVAL_BINARY

Renders the disc alone for every phase over a range of lit fractions, tilts, sizes and
scales, decodes each PNG and compares what is lit with areas integrated row by row from
the two ellipses that make up each phase (nothing here follows the drawing code). Checked:
the lit area, the side the lit part faces after turning, the picture's size and its clear
corners, and that vector outputs carry their format's magic. The last line is
"N passed, M failed".
"""

from __future__ import annotations

import math
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ProcessPoolExecutor
from dataclasses import dataclass

sys.dont_write_bytecode = True  # keep the source tree clean when run from CTest
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import png_reader  # noqa: E402

STROKE = 1.5          # points: outline width, also the disc's inset
# Antialiasing and the flattening of ellipses into segments move an edge by a small fraction of
# a pixel; where a lit sliver runs within a pixel of the measured circle's rim, weighting the
# pixel by both shares overstates it by up to a quarter pixel per length.
EDGE_TOL_PX = 0.15    # area per unit length of lit outline, in pixels
# 8-bit alpha over a lit opacity as low as 0.2 reads each pixel to within 1 %, which mostly
# averages out; clamping fully lit pixels at 1 biases the sum by a quarter of that.
RELATIVE_TOL = 0.003
CENTROID_TOL_DEG = 3.0
ROW_STRIPS = 2000

WAXING = ("waxingCrescent", "firstQuarter", "waxingGibbous")
QUARTERS = ("firstQuarter", "lastQuarter")
DISPLAY = {"newMoon": "New Moon", "waxingCrescent": "Waxing Crescent",
           "firstQuarter": "First Quarter", "waxingGibbous": "Waxing Gibbous",
           "fullMoon": "Full Moon", "waningGibbous": "Waning Gibbous",
           "lastQuarter": "Last Quarter", "waningCrescent": "Waning Crescent"}
# Where the lit part's radial gradient is centred, as a fraction of the diameter from the
# disc's left, and the opacity it ends at.
GRADIENT = {"waxingCrescent": (0.8, 0.2), "waningCrescent": (0.2, 0.2),
            "waxingGibbous": (0.65, 0.2), "waningGibbous": (0.35, 0.2),
            "firstQuarter": (0.75, 0.5), "lastQuarter": (0.25, 0.5)}
GRADIENT_STOPS = (1.0, 0.95, 0.85, 0.7)  # then the end opacity


@dataclass(frozen=True)
class Case:
    phase: str           # camel-case name
    illumination: float
    tilt: float
    size: float
    scale: float
    rotate: bool = True
    spelled: str = ""    # how --phase is written; the camel-case name when empty

    def args(self, out: str) -> list[str]:
        args = ["moon", "--size", repr(self.size), "--scale", repr(self.scale), "--out", out,
                "--phase", self.spelled or self.phase,
                "--illumination", repr(self.illumination), "--tilt", repr(self.tilt)]
        return args + ([] if self.rotate else ["--no-rotation"])

    def describe(self) -> str:
        return (f"--phase \"{self.spelled or self.phase}\" --illumination {self.illumination!r} "
                f"--tilt {self.tilt!r} --size {self.size!r} --scale {self.scale!r}"
                f"{'' if self.rotate else ' --no-rotation'}")


# ------------------------------------------------------------------ geometry (points, y down)

def snap(value: float, scale: float) -> float:
    scaled = value * scale
    return math.copysign(math.floor(abs(scaled) + 0.5), scaled) / scale


@dataclass(frozen=True)
class Disc:
    size: float
    scale: float

    @property
    def d(self) -> float:
        return self.size - 2 * STROKE

    @property
    def r(self) -> float:
        return self.d / 2

    @property
    def x0(self) -> float:
        return snap((self.size - self.d) / 2, self.scale)

    @property
    def y0(self) -> float:
        return snap(STROKE, self.scale)

    @property
    def cx(self) -> float:
        return snap(self.r + (self.size - self.d) / 2, self.scale)

    @property
    def centre(self) -> tuple[float, float]:
        return self.x0 + self.r, self.y0 + self.r


def ring_band(scale: float) -> float:
    """How far inside the disc's edge measuring starts: the faint outline reaches half its
    width inward, and its antialiased edge up to a pixel's half-diagonal further."""
    return STROKE / 2 + 1.5 / scale


def rotation_deg(case: Case) -> float:
    if not case.rotate or case.phase in ("newMoon", "fullMoon"):
        return 0.0
    return case.tilt + 180.0 if case.phase in WAXING else case.tilt


def chord(half_width_at_equator: float, radius: float, dy: float) -> float:
    """Half width, at height dy from the centre, of an ellipse with that equatorial half width."""
    if abs(dy) >= radius:
        return 0.0
    return half_width_at_equator * math.sqrt(1.0 - (dy / radius) ** 2)


def lit_intervals(case: Case, disc: Disc, dy: float) -> list[tuple[float, float]]:
    """The lit stretches of the row at height dy from the disc's centre, before turning."""
    r, x0, d = disc.r, disc.x0, disc.d
    mid = x0 + r
    h = chord(r, r, dy)
    if h == 0.0 or case.phase == "newMoon":
        return []
    left, right = mid - h, mid + h
    ill = case.illumination
    if case.phase == "fullMoon":
        lit = [(left, right)]
    elif case.phase in ("waxingCrescent", "waningCrescent"):
        a = (d - ill * d) / 2  # the erased ellipse's equatorial half width
        e = chord(a, r, dy)
        if case.phase == "waxingCrescent":
            lit = [(x0 + a + e, right)]
        else:
            lit = [(left, x0 + ill * d + a - e)]
    elif case.phase in QUARTERS:
        lit = [(disc.cx, disc.cx + r) if case.phase == "firstQuarter" else (x0, x0 + r)]
    else:
        e = chord(abs(ill - 0.5) * d, r, dy)
        half = (disc.cx, disc.cx + d / 2) if case.phase == "waxingGibbous" else (x0, x0 + d / 2)
        lit = [half, (mid - e, mid + e)]
    return [(max(a, left), min(b, right)) for a, b in lit if min(b, right) > max(a, left)]


def clip(intervals, lo: float, hi: float) -> list[tuple[float, float]]:
    """Intersects the union of the intervals with [lo, hi], merged into disjoint pieces."""
    pieces = sorted((max(a, lo), min(b, hi)) for a, b in intervals if min(b, hi) > max(a, lo))
    merged: list[list[float]] = []
    for a, b in pieces:
        if merged and a <= merged[-1][1]:
            merged[-1][1] = max(merged[-1][1], b)
        else:
            merged.append([a, b])
    return [(a, b) for a, b in merged]


@dataclass
class Expected:
    area: float          # points squared, inside the measured circle
    boundary: float      # points: length of the lit part's outline inside it


def expected_lit(case: Case, disc: Disc, radius: float) -> Expected:
    """Integrates the lit stretches inside the measured circle, row by row (midpoint rule),
    and follows their ends from row to row for the outline's length."""
    mid = disc.x0 + disc.r
    step = 2 * radius / ROW_STRIPS
    area, boundary, previous = 0.0, 0.0, []
    for i in range(ROW_STRIPS):
        dy = -radius + (i + 0.5) * step
        hm = chord(radius, radius, dy)
        pieces = clip(lit_intervals(case, disc, dy), mid - hm, mid + hm)
        area += sum(b - a for a, b in pieces) * step
        ends = [x for piece in pieces for x in piece]
        if len(ends) == len(previous):
            boundary += sum(math.hypot(step, x - p) for x, p in zip(ends, previous))
        previous = ends
    return Expected(area, boundary)


def gradient_opacity(case: Case, disc: Disc, u: float, v: float) -> float:
    """Opacity of the lit part at (u, v) before turning. A full moon is solid; on a new moon
    any trace of light counts at face value."""
    if case.phase not in GRADIENT:
        return 1.0
    fraction, end = GRADIENT[case.phase]
    gx, gy = disc.x0 + fraction * disc.d, disc.y0 + disc.r
    t = math.hypot(u - gx, v - gy) / (1.4 * disc.r) * 4
    stops = GRADIENT_STOPS + (end,)
    if t >= 4:
        return end
    k = int(t)
    return stops[k] + (stops[k + 1] - stops[k]) * (t - k)


# ------------------------------------------------------------------ measurement

@dataclass
class Measured:
    area: float = 0.0     # points squared
    mx: float = 0.0       # lit moments about the frame's centre, screen axes, points^3
    my: float = 0.0


def overlay_grey(image: png_reader.Image) -> float:
    """Grey level of the one non-white thing drawn (the quarters' terminator line), read off
    its darkest pixel among those it covers alone and fully (alpha near its 0.2 opacity);
    1.0 when everything is white."""
    darkest = 255.0
    for row in image.rows:
        for i in range(0, len(row), 4):
            if row[i + 3] >= 45:
                darkest = min(darkest, (row[i] + row[i + 1] + row[i + 2]) / 3)
    return darkest / 255


def lit_alpha(pixel, grey: float) -> float:
    """Opacity of the white lit part under a pixel, taking off a grey overlay composited on
    top of it: white underneath keeps colour equal to alpha, the grey pulls colour below it."""
    r, g, b, a = pixel
    alpha = a / 255
    if grey > 0.99:
        return alpha
    colour = (r + g + b) / (3 * 255) * alpha
    over = min(alpha, max(0.0, (alpha - colour) / (1 - grey)))
    return 0.0 if over >= 1 else (alpha - over) / (1 - over)


def measure(case: Case, disc: Disc, image: png_reader.Image, radius: float,
            grey: float) -> Measured:
    """Lit area inside the measured circle, each pixel weighted by its share of the circle
    and by how much of the lit opacity it holds."""
    s, half = case.scale, case.size / 2
    angle = math.radians(rotation_deg(case))
    cos_a, sin_a = math.cos(angle), math.sin(angle)
    ox, oy = disc.centre
    result = Measured()
    pixel_area = 1.0 / (s * s)
    for j in range(image.height):
        y = (j + 0.5) / s - half
        row = image.rows[j]
        for i in range(image.width):
            if row[4 * i + 3] == 0:
                continue
            x = (i + 0.5) / s - half
            u, v = half + cos_a * x + sin_a * y, half - sin_a * x + cos_a * y
            inside = (radius - math.hypot(u - ox, v - oy)) * s + 0.5
            if inside <= 0:
                continue
            lit = lit_alpha(row[4 * i:4 * i + 4], grey)
            cover = min(1.0, lit / gradient_opacity(case, disc, u, v))
            weight = min(1.0, inside) * cover * pixel_area
            result.area += weight
            result.mx += weight * x
            result.my += weight * y
    return result


# ------------------------------------------------------------------ checks

def render(binary: str, case: Case, folder: str, suffix: str = ".png") -> tuple[str, str]:
    """Returns the output's path and, if the command failed, why."""
    out = os.path.join(folder, "moon" + suffix)
    run = subprocess.run([binary] + case.args(out), capture_output=True, text=True)
    if run.returncode != 0:
        return out, f"exit {run.returncode}: {run.stderr.strip()}"
    return out, ""


def render_png(binary: str, case: Case) -> tuple[png_reader.Image | None, str]:
    with tempfile.TemporaryDirectory(prefix="lunoval-moon-") as folder:
        out, error = render(binary, case, folder)
        if error:
            return None, error
        try:
            return png_reader.read(out), ""
        except (OSError, png_reader.PngError) as e:
            return None, f"unreadable PNG: {e}"


def check_frame(case: Case, image: png_reader.Image) -> list[str]:
    # A part pixel at the edge is kept rather than cut.
    side = math.ceil(case.size * case.scale)
    problems = []
    if (image.width, image.height) != (side, side):
        problems.append(f"image is {image.width}x{image.height}, expected {side}x{side}")
    corners = [(0, 0), (image.width - 1, 0), (0, image.height - 1),
               (image.width - 1, image.height - 1)]
    if any(image.alpha(x, y) != 0 for x, y in corners):
        problems.append("a corner is not transparent")
    return problems


def area_tolerance(case: Case, expected: Expected) -> float:
    px = 1.0 / case.scale
    return EDGE_TOL_PX * px * expected.boundary + RELATIVE_TOL * expected.area + 2 * px * px


def check_side(case: Case, disc: Disc, got: Measured) -> list[str]:
    """The lit part must face right (waxing) or left (waning) before turning by the tilt."""
    if got.area <= 0:
        return ["nothing lit to find a side from"]
    half = case.size / 2
    angle = math.radians(rotation_deg(case))
    dx, dy = disc.centre[0] - half, disc.centre[1] - half
    centre_x = math.cos(angle) * dx - math.sin(angle) * dy
    centre_y = math.sin(angle) * dx + math.cos(angle) * dy
    seen = math.degrees(math.atan2(got.my / got.area - centre_y, got.mx / got.area - centre_x))
    facing = (0.0 if case.phase in WAXING else 180.0) + rotation_deg(case)
    off = (seen - facing + 180.0) % 360.0 - 180.0
    if abs(off) > CENTROID_TOL_DEG:
        return [f"lit part faces {seen % 360:.1f} deg (clockwise from right), "
                f"expected {facing % 360:.1f}"]
    return []


def faces_a_side(case: Case) -> bool:
    """Whether the lit centroid sits far enough from the centre for its direction to be read."""
    if case.phase in ("newMoon", "fullMoon"):
        return False
    return case.phase in QUARTERS or 0.1 <= case.illumination <= 0.9


@dataclass
class Outcome:
    problems: list[str]
    relative: float = 0.0   # area error over the expected area; 0 for slivers
    share: float = 0.0      # area error over its tolerance


def run_case(binary: str, grey: float, case: Case) -> Outcome:
    image, error = render_png(binary, case)
    if image is None:
        return Outcome([error])
    disc = Disc(case.size, case.scale)
    radius = disc.r - ring_band(case.scale)
    got = measure(case, disc, image, radius, grey if case.phase in QUARTERS else 1.0)
    want = expected_lit(case, disc, radius)
    error, tolerance = got.area - want.area, area_tolerance(case, want)
    outcome = Outcome(check_frame(case, image), share=abs(error) / tolerance)
    if want.area > 0.01 * math.pi * radius ** 2:
        outcome.relative = abs(error) / want.area
    if abs(error) > tolerance:
        outcome.problems.append(f"lit area {got.area:.2f} pt^2, expected {want.area:.2f} "
                                f"(off by {error:+.2f}, tolerance {tolerance:.2f})")
    if faces_a_side(case):
        outcome.problems += check_side(case, disc, got)
    return outcome


def terminator_grey(binary: str) -> float:
    """Reads the terminator's grey off a wide first quarter, whose line then covers whole
    pixels on the dark side alone."""
    image, _ = render_png(binary, Case("firstQuarter", 0.5, 0.0, 40.0, 4.0, rotate=False))
    return overlay_grey(image) if image is not None else 1.0


def check_vector(binary: str, case: Case, suffix: str, magic: tuple[bytes, ...]) -> list[str]:
    with tempfile.TemporaryDirectory(prefix="lunoval-moon-") as folder:
        out, error = render(binary, case, folder, suffix)
        if error:
            return [error]
        with open(out, "rb") as f:
            head = f.read(64).lstrip()
    if not head.startswith(magic):
        return [f"{suffix} output starts with {head[:16]!r}"]
    return []


# ------------------------------------------------------------------ cases

PHASES = tuple(DISPLAY)
SIZES = (40.0, 57.5, 83.0, 120.0, 200.0)
SCALES = (1.0, 1.5, 2.0, 3.0)


def cases() -> list[Case]:
    """Every phase over lit fractions 0..1, tilts through all quadrants, and sizes and scales
    mixed so that half-pixel snapping of the disc comes up both ways, kept small in pixels."""
    out = []
    fractions = (0.0, 0.03, 0.1, 0.25, 0.4, 0.5, 0.6, 0.75, 0.9, 0.97, 1.0)
    tilts = (0.0, 37.5, -90.0, 135.0, 180.0, -200.0, 300.0)
    n = 0
    for phase in PHASES:
        for ill in fractions:
            for rotate in (False, True):
                size = SIZES[n % len(SIZES)]
                scale = SCALES[(n // 2) % len(SCALES)]
                if size * scale > 260:  # keep the pure-Python pixel loop short
                    scale = 1.0
                spelled = DISPLAY[phase] if n % 3 == 0 else ""
                out.append(Case(phase, ill, tilts[n % len(tilts)], size, scale, rotate, spelled))
                n += 1
    # A large, fine disc, where a fraction of a point shows as several pixels.
    out += [Case(phase, ill, 23.0, 200.0, 2.0) for phase, ill in
            (("waxingCrescent", 0.2), ("waningGibbous", 0.7), ("firstQuarter", 0.5))]
    return out


VECTOR_OUTPUTS = ((".svg", (b"<?xml", b"<svg")), (".pdf", (b"%PDF",)))


def main(argv: list[str]) -> int:
    if len(argv) < 2:
        print("usage: check_moon_disc.py LUNOVAL_BINARY", file=sys.stderr)
        return 2
    binary = os.path.abspath(argv[1])
    grey = terminator_grey(binary)
    pictures = cases()
    with ProcessPoolExecutor(max_workers=2) as pool:
        outcomes = list(pool.map(run_case, [binary] * len(pictures), [grey] * len(pictures),
                                 pictures))
    failed = [(case.describe(), o.problems) for case, o in zip(pictures, outcomes) if o.problems]
    for case in (Case("waxingGibbous", 0.7, 30.0, 64.0, 2.0), Case("newMoon", 0.0, 0.0, 40.0, 1.0)):
        for suffix, magic in VECTOR_OUTPUTS:
            problems = check_vector(binary, case, suffix, magic)
            if problems:
                failed.append((f"{case.describe()} ({suffix})", problems))
    total = len(pictures) + 2 * len(VECTOR_OUTPUTS)
    print(f"{len(pictures)} pictures and {total - len(pictures)} vector files; "
          f"largest relative area error {max(o.relative for o in outcomes):.3%}, "
          f"largest area error {max(o.share for o in outcomes):.0%} of its tolerance")
    for label, problems in failed:
        print(f"{label}:")
        for problem in problems:
            print(f"  {problem}")
    print(f"{total - len(failed)} passed, {len(failed)} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
