#!/usr/bin/env python3
# Looks at the widget images of `lunoval gallery` and `lunoval render` without knowing how they
# were drawn: each family's size in pixels; on the home screen an opaque picture with bright ink
# inside the 16-point content margin and none in it; on the lock screen clear corners and white
# alone. Across images: the same command gives the same bytes, another day another picture, a
# refused location service one prompt instead of the content, `render` what `gallery` draws, and
# vector outputs carry their format's magic.
#
# usage: check_widget_images.py LUNOVAL_BINARY

from __future__ import annotations

import functools
import hashlib
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402
import png_reader  # noqa: E402

FAMILIES = {"systemSmall": (170, 170), "systemMedium": (364, 170), "systemLarge": (364, 382),
            "accessoryCircular": (76, 76), "accessoryRectangular": (172, 76), "accessoryInline": (257, 26)}
MARGIN, BRIGHT = 16, 160  # points; a channel this bright is ink, the backdrop stays far below
MAGIC = {"svg": (b"<?xml", b"<svg"), "pdf": (b"%PDF",)}
PARIS = "--at 2025-10-09T20:00Z --location 48.8566,2.3522 --timezone Europe/Paris"
TROMSO = "--at 2025-12-21T12:00Z --location 69.6492,18.9553 --timezone Europe/Oslo"
SYDNEY = "--at 2026-03-20T22:00Z --location -33.8688,151.2093 --timezone Australia/Sydney"
DENIED = "--at 2025-10-09T20:00Z --location-service denied --timezone Europe/Paris"
PREVIEW = "--at 2025-10-09T20:00Z --timezone UTC"
# The commands: the gallery, or `render` of the widget the file is named for, at scale 3 unless said.
RUNS = {"preview": f"gallery {PREVIEW}", "Paris": f"gallery --scale 1 {PARIS}",
        "Paris again": f"gallery --scale 1 {PARIS}",
        "Paris a week later": f"gallery --scale 1 {PARIS.replace('10-09', '10-16')}",
        "Tromso in the polar night": f"gallery --scale 1 {TROMSO}", "Sydney": f"gallery --scale 1 {SYDNEY}",
        "Quito at full moon": "gallery --scale 1 --at 2025-10-07T03:48Z --location -0.1807,-78.4678 --timezone "
                              "America/Guayaquil", "denied": f"gallery --scale 1 {DENIED}",
        "render Paris": f"render MoonPhaseWidget-systemSmall.png --scale 1 {PARIS}",
        "render denied": f"render MoonEventWidget-systemSmall.png --scale 1 {DENIED}",
        "render preview": f"render MoonSunTimesWidget-systemSmall.png --preview {PREVIEW}",
        "render Sydney": f"render MoonTimesWidget-systemMedium.png --scale 2 {SYDNEY}",
        "render Tromso": f"render MoonTimesWidget-accessoryRectangular.png --scale 2 {TROMSO}",
        "render SVG": f"render MoonPhaseWidget-systemLarge.svg {PARIS}",
        "render PDF": f"render MoonTimesWidget-accessoryInline.pdf {PARIS}"}


def bright(row: bytes, start: int, stop: int) -> int:
    # Pixels from start to stop with a channel bright enough to be ink.
    hot = row[4 * start:4 * stop].translate(bytes(v >= BRIGHT for v in range(256)))
    return sum(map(max, hot[0::4], hot[1::4], hot[2::4]))


def look_at(image: png_reader.Image, family: str, scale: int) -> list[str]:
    rows, m = image.rows, MARGIN * scale
    if family.startswith("system"):
        inside = sum(bright(row, m, image.width - m) for row in rows[m:image.height - m])
        outside = sum(bright(row, 0, image.width) for row in rows) - inside
        found = [("not opaque", any(row[3::4] != b"\xff" * image.width for row in rows)),
                 (f"only {inside} bright pixels inside the margin", inside < 40 * scale * scale),
                 (f"{outside} bright pixels in the {MARGIN}-point margin", outside > 0)]
    else:
        # Premultiplied, a white pixel's colour equals its opacity; 1.5 levels allow for rounding.
        tinted = sum(sum(map(lambda r, g, b, a: a > 0 and a - min(r, g, b) * a / 255 > 1.5, *(row[c::4] for c in
                                                                                             range(4)))) for row in rows)
        ink = sum(sum(row[3::4].translate(bytes(v >= 128 for v in range(256)))) for row in rows)
        found = [("a corner is not clear", any(image.alpha(x, y) for x in (0, image.width - 1) for y in (0, -1))),
                 (f"{tinted} pixels not white", tinted > 0), (f"only {ink} pixels of ink", ink < 10 * scale * scale)]
    return [problem for problem, seen in found if seen]

def draw(binary: str, label: str) -> tuple[list[str], dict[str, tuple[str, str]]]:
    # Runs the command ("gallery ..." or "render KIND-FAMILY.SUFFIX ..."); looks at what it drew.
    command, *options = RUNS[label].split()
    scale = int(options[options.index("--scale") + 1]) if "--scale" in options else 3
    problems, drawn = [], {}
    with harness.Home(binary) as home:
        out = os.path.join(home.path, "out")
        if command == "gallery":
            home.run("gallery", "--out", out, *options)
        else:
            os.makedirs(out)
            (kind, family), target = options[0].split(".")[0].split("-"), os.path.join(out, options.pop(0))
            home.run("render", "--kind", kind, "--family", family, "--out", target, *options)
        for name in sorted(n for n in os.listdir(out) if not n.endswith(".html")):
            with open(os.path.join(out, name), "rb") as f:
                data = f.read()
            family, suffix, pixels = name.split(".")[0].rpartition("-")[2], name.rpartition(".")[2], ""
            if suffix != "png":
                problems += [] if data.lstrip().startswith(MAGIC[suffix]) else [f"{name} starts {data[:16]!r}"]
            elif png_reader.header(data)[:2] != tuple(scale * side for side in FAMILIES[family]):
                problems.append(f"{name} is {png_reader.header(data)}, not {FAMILIES[family]} points at {scale}x")
            else:
                image = png_reader.decode(data)
                pixels = hashlib.sha256(b"".join(image.rows)).hexdigest()
                problems += [f"{name}: {problem}" for problem in look_at(image, family, scale)]
            drawn[name] = (hashlib.sha256(data).hexdigest(), pixels)
    return problems + ([] if len(drawn) == (12 if command == "gallery" else 1) else [f"{len(drawn)} images"]), drawn

def across(drawn: dict, a: str, b: str, same: bool, which: int) -> list[str]:
    return [f"{name} is {'not ' if same else ''}the same" for name in sorted(drawn[a].keys() & drawn[b].keys())
            if (drawn[a][name][which] == drawn[b][name][which]) != same]


if __name__ == "__main__":
    results = dict(zip(RUNS, harness.parallel(functools.partial(draw, os.path.abspath(sys.argv[1])), RUNS,
                                              processes=True)))
    drawn = {label: images for label, (_, images) in results.items()}
    prompts = {family: {pixels for name, (_, pixels) in drawn["denied"].items() if name.endswith(f"-{family}.png")}
               for family in ("systemSmall", "systemMedium", "systemLarge")}
    harness.finish([(label, problems) for label, (problems, _) in results.items()] + [
        ("the same gallery twice gives the same bytes", across(drawn, "Paris", "Paris again", True, 0)),
        ("another day gives another picture", across(drawn, "Paris", "Paris a week later", False, 1)),
        ("a refused location service shows the prompt", across(drawn, "Paris", "denied", False, 1)),
        ("one prompt whatever the widget", [f"{len(p)} {f} prompts" for f, p in prompts.items() if len(p) != 1]),
        ("render draws what gallery draws", across(drawn, "Paris", "render Paris", True, 1)
         + across(drawn, "denied", "render denied", True, 1) + across(drawn, "preview", "render preview", True, 1))])
