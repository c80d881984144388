#!/usr/bin/env python3
# Measures the pictures of `lunoval moon` against the disc's geometry: each phase is the disc with
# a half disc and an ellipse, or two ellipses, lit; the lit area inside a circle just within the
# outline, integrated row by row, must be what the pixels hold, the lit part must face the side
# its phase and tilt say, and the picture must have its size and clear corners.
#
# usage: check_moon_disc.py LUNOVAL_BINARY

from __future__ import annotations

import functools
import math
import os
import re
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402
import png_reader  # noqa: E402

STROKE = 1.5  # points: the outline's width and the disc's inset
# Antialiasing moves an edge by a fraction of a pixel, so the area may be off by that much per
# length of lit outline; 8-bit alpha over an opacity as low as 0.2 reads to about 0.3 %.
EDGE_TOL_PX, RELATIVE_TOL, SIDE_TOL_DEG = 0.15, 0.003, 3.0
WAXING, QUARTERS = ("waxingCrescent", "firstQuarter", "waxingGibbous"), ("firstQuarter", "lastQuarter")
PHASES = ("newMoon", "waxingCrescent", "firstQuarter", "waxingGibbous", "fullMoon", "waningGibbous",
          "lastQuarter", "waningCrescent")
# Reading coverage off alpha needs the lit part's radial gradient: its centre as a fraction of the
# diameter from the left, and its end opacity after the stops 1, 0.95, 0.85 and 0.7.
GRADIENT = {"waxingCrescent": (0.8, 0.2), "waningCrescent": (0.2, 0.2), "waxingGibbous": (0.65, 0.2),
            "waningGibbous": (0.35, 0.2), "firstQuarter": (0.75, 0.5), "lastQuarter": (0.25, 0.5)}


def snap(value: float, scale: float) -> float:
    return math.copysign(math.floor(abs(value * scale) + 0.5), value) / scale


def turn(phase: str, tilt: float, rotate: bool) -> float:
    # How far the picture is turned, clockwise in degrees: a waxing moon's lit side faces left before.
    return 0.0 if not rotate or phase in ("newMoon", "fullMoon") else tilt + 180.0 * (phase in WAXING)


def chord(half_width: float, radius: float, dy: float) -> float:
    # Half the width, dy from the centre, of an ellipse that half_width wide at its equator.
    return half_width * math.sqrt(1.0 - (dy / radius) ** 2) if abs(dy) < radius else 0.0


def lit_row(phase: str, ill: float, x0: float, d: float, cx: float, dy: float, lo: float, hi: float) -> list:
    # The lit stretches of the row dy from the centre before turning, within [lo, hi].
    r = d / 2
    if phase == "fullMoon":
        lit = [(x0, x0 + d)]
    elif phase.endswith("Crescent"):
        a = (d - ill * d) / 2  # the dark ellipse's equatorial half width
        lit = [(x0 + a + chord(a, r, dy), hi)] if phase in WAXING else [(lo, x0 + ill * d + a - chord(a, r, dy))]
    elif phase in QUARTERS or phase.endswith("Gibbous"):  # a half and, for a gibbous moon, an ellipse
        e = chord(abs(ill - 0.5) * d, r, dy) if phase.endswith("Gibbous") else 0.0
        lit = [(cx, cx + r) if phase in WAXING else (x0, x0 + r), (x0 + r - e, x0 + r + e)]
    else:
        lit = []
    merged = []
    for a, b in sorted((max(a, lo, x0 + r - chord(r, r, dy)), min(b, hi, x0 + r + chord(r, r, dy))) for a, b in lit):
        if b > a and merged and a <= merged[-1][1]:
            merged[-1] = (merged[-1][0], max(merged[-1][1], b))
        elif b > a:
            merged.append((a, b))
    return merged


def expected(phase: str, ill: float, x0: float, d: float, cx: float, radius: float) -> tuple[float, float]:
    # The lit area within the measured circle by the midpoint rule over 2000 rows, and the length
    # of its outline, following the stretches' ends from row to row.
    step, area, outline, previous = 2 * radius / 2000, 0.0, 0.0, []
    for i in range(2000):
        dy = -radius + (i + 0.5) * step
        half_chord = chord(radius, radius, dy)
        pieces = lit_row(phase, ill, x0, d, cx, dy, x0 + d / 2 - half_chord, x0 + d / 2 + half_chord)
        area += sum(b - a for a, b in pieces) * step
        ends = [x for piece in pieces for x in piece]
        outline += sum(math.hypot(step, x - p) for x, p in zip(ends, previous)) if len(ends) == len(previous) else 0
        previous = ends
    return area, outline

def opacity(phase: str, x0: float, y0: float, d: float, u: float, v: float) -> float:
    if phase not in GRADIENT:
        return 1.0
    at, end = GRADIENT[phase]
    t = math.hypot(u - x0 - at * d, v - y0 - d / 2) / (0.7 * d) * 4
    if t >= 4:
        return end
    stops, k = (1.0, 0.95, 0.85, 0.7, end), int(t)
    return stops[k] + (stops[k + 1] - stops[k]) * (t - k)


def lit_alpha(pixel, grey: float) -> float:
    # The white lit part's opacity under a grey line composited over it (a quarter's terminator):
    # white keeps colour equal to alpha, the grey pulls colour below it.
    r, g, b, a = (c / 255 for c in pixel)
    over = min(a, max(0.0, (a - (r + g + b) / 3 * a) / (1 - grey))) if grey < 0.99 else 0.0
    return 0.0 if over >= 1 else (a - over) / (1 - over)


def measure(image: png_reader.Image, phase: str, grey: float, size: float, scale: float, degrees: float,
            x0: float, y0: float, d: float, radius: float) -> tuple[float, float, float]:
    # The lit area inside the measured circle, each pixel weighted by its share of the circle and
    # of the lit opacity it holds, and its moments about the picture's centre.
    half, cos_a, sin_a = size / 2, math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    area = mx = my = 0.0
    for j, row in enumerate(image.rows):
        for i in (i for i in range(image.width) if row[4 * i + 3]):
            x, y = (i + 0.5) / scale - half, (j + 0.5) / scale - half
            u, v = half + cos_a * x + sin_a * y, half - sin_a * x + cos_a * y  # turned back
            inside = (radius - math.hypot(u - x0 - d / 2, v - y0 - d / 2)) * scale + 0.5
            if inside > 0:
                cover = min(1.0, lit_alpha(row[4 * i:4 * i + 4], grey) / opacity(phase, x0, y0, d, u, v))
                weight = min(1.0, inside) * cover / scale ** 2
                area, mx, my = area + weight, mx + weight * x, my + weight * y
    return area, mx, my


def check(binary: str, grey: float, case: tuple) -> list[str]:
    spelled, ill, tilt, size, scale, rotate = case
    phase, side = spelled[0].lower() + spelled[1:].replace(" ", ""), math.ceil(size * scale)
    with harness.Home(binary) as home:
        home.run("moon", "--size", repr(size), "--scale", repr(scale), "--out", f"{home.path}/moon.png", "--phase",
                 spelled, "--illumination", repr(ill), "--tilt", repr(tilt), *([] if rotate else ["--no-rotation"]))
        image = png_reader.read(f"{home.path}/moon.png")
    d, degrees = size - 2 * STROKE, turn(phase, tilt, rotate)
    x0, y0, cx = snap(STROKE, scale), snap(STROKE, scale), snap(d / 2 + STROKE, scale)
    radius = d / 2 - STROKE / 2 - 1.5 / scale  # inside the faint outline's inner half and its antialiased edge
    area, mx, my = measure(image, phase, grey if phase in QUARTERS else 1.0, size, scale, degrees, x0, y0, d, radius)
    want, outline = expected(phase, ill, x0, d, cx, radius)
    tolerance = EDGE_TOL_PX / scale * outline + RELATIVE_TOL * want + 2 / scale ** 2
    problems = [] if (image.width, image.height) == (side, side) else [f"{image.width}x{image.height} pixels"]
    problems += ["a corner not clear"] if any(image.alpha(x, y) for x in (0, side - 1) for y in (0, side - 1)) else []
    problems += [] if abs(area - want) <= tolerance else [f"lit area {area:.2f} pt^2, not {want:.2f}+-{tolerance:.2f}"]
    if phase in QUARTERS or ("Gibbous" in phase or "Crescent" in phase) and 0.1 <= ill <= 0.9:
        cos_a, sin_a = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
        dx, dy = x0 + d / 2 - size / 2, y0 + d / 2 - size / 2  # the disc's centre off the picture's, turned
        seen = math.degrees(math.atan2(my / area - (sin_a * dx + cos_a * dy), mx / area - (cos_a * dx - sin_a * dy)))
        facing = (0.0 if phase in WAXING else 180.0) + degrees
        if not abs((seen - facing + 180.0) % 360.0 - 180.0) <= SIDE_TOL_DEG:
            problems.append(f"lit part faces {seen % 360:.1f} deg clockwise from the right, not {facing % 360:.1f}")
    return problems

def terminator_grey(binary: str) -> float:
    # The darkest of the pixels a wide first quarter's terminator covers alone and fully.
    with harness.Home(binary) as home:
        home.run("moon", "--size", "40", "--scale", "4", "--out", f"{home.path}/q.png", "--phase", "firstQuarter",
                 "--illumination", "0.5", "--tilt", "0", "--no-rotation")
        rows = png_reader.read(f"{home.path}/q.png").rows
    return min([255.0] + [sum(row[i:i + 3]) / 3 for row in rows for i in range(0, len(row), 4)
                          if row[i + 3] >= 45]) / 255


def cases() -> list[tuple]:
    # Every phase over lit fractions 0 to 1, tilts in all quadrants, and sizes and scales mixed so
    # that the disc's snapping to pixels comes up both ways, a third with the phase's displayed
    # name; then a large, fine disc or three.
    out = []
    for n, (phase, ill, rotate) in enumerate((p, i, r) for p in PHASES for i in (0.0, 0.03, 0.1, 0.25, 0.4, 0.5, 0.6,
                                             0.75, 0.9, 0.97, 1.0) for r in (False, True)):
        size, scale = (40.0, 57.5, 83.0, 120.0, 200.0)[n % 5], (1.0, 1.5, 2.0, 3.0)[n // 2 % 4]
        out.append((re.sub("([A-Z])", r" \1", phase).title() if n % 3 == 0 else phase, ill,
                    (0.0, 37.5, -90.0, 135.0, 180.0, -200.0, 300.0)[n % 7], size, scale if size * scale <= 260 else 1.0,
                    rotate))
    return out + [(phase, ill, 23.0, 200.0, 2.0, True) for phase, ill in
                  (("waxingCrescent", 0.2), ("waningGibbous", 0.7), ("firstQuarter", 0.5))]


if __name__ == "__main__":
    binary = os.path.abspath(sys.argv[1])
    pictures = cases()
    problems = harness.parallel(functools.partial(harness.attempt, check, binary, terminator_grey(binary)),
                                pictures, processes=True)
    harness.finish((f"--phase {p} --illumination {i} --tilt {t} --size {s} --scale {sc}{'' if r else ' --no-rotation'}",
                    found) for (p, i, t, s, sc, r), found in zip(pictures, problems))
