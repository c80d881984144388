#!/usr/bin/env python3
"""`lunoval desktop` on a private X server (Xvfb) at scale 2, seen from outside.

usage: check_desktop_x11.py LUNOVAL X11_TOOL

Two widgets in the top-left corner: the window is an undecorated desktop-type window below
the others and out of the task bar, as large as the widgets and where asked; each widget on
the screen is `lunoval render` of the same entry at scale 2 pixel for pixel, but for the
antialiasing at the rounded corners; `lunoval reload` refreshes it and SIGTERM ends it. With
location access refused, a click on the permission prompt opens the places window, and the
right button opens the menu. The last line is "N passed, M failed".
"""

from __future__ import annotations

import json
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import (CORNER_RADIUS, DEVICE, Failures, Home, Program, XServer,  # noqa: E402
                             geometry, mismatches, read_ppm, render, window_ids,
                             windows)

SCALE = 2
MARGIN = 20
GAP = 12
WIDGETS = [("MoonPhaseWidget", "systemSmall", (170, 170)),
           ("MoonTimesWidget", "accessoryRectangular", (172, 76))]


def check_widgets(lunoval: str, tool: str, x: XServer, failures: Failures) -> None:
    home = Home()
    env = dict(home.env, DISPLAY=x.display, GDK_SCALE=str(SCALE))
    choice = ",".join(f"{kind}:{family}" for kind, family, _ in WIDGETS)
    desktop = Program([lunoval, "desktop", "--widgets", choice, "--corner", "top-left",
                       "--margin", str(MARGIN), "--no-tray", *DEVICE], env,
                      os.path.join(home.root, "desktop.log"))
    failures.check(desktop.wait_for("🔄 Desktop: refreshed"), "the desktop refreshes")
    failures.check("as a desktop window on X11" in desktop.log(), "it says what it stands on")
    time.sleep(0.5)
    window = windows(x.display, env).get("Lunoval")
    failures.check(window is not None, "the window is there")
    if window is None:
        print(desktop.log())
        desktop.stop()
        return
    props = subprocess.run(["xprop", "-id", window, "-display", x.display], env=env,
                           capture_output=True, text=True).stdout
    failures.check("_NET_WM_WINDOW_TYPE_DESKTOP" in props, "a desktop-type window")
    for state in ("_NET_WM_STATE_BELOW", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_STICKY"):
        failures.check(state in props, f"{state} asked for")
    failures.check("_MOTIF_WM_HINTS" in props, "no decorations asked for")
    width = max(size[0] for *_, size in WIDGETS)
    height = sum(size[1] for *_, size in WIDGETS) + GAP * (len(WIDGETS) - 1)
    where = geometry(x.display, window, env)
    failures.check(where == (MARGIN * SCALE, MARGIN * SCALE, width * SCALE, height * SCALE),
                   f"the window at the corner, as large as the widgets: {where}")

    shot_path = os.path.join(home.root, "screen.ppm")
    subprocess.run([tool, "grab", "0", "0", "1024", "768", shot_path], env=env, check=True)
    shot_width, _, shot = read_ppm(shot_path)
    top = where[1]
    for kind, family, (w, h) in WIDGETS:
        image = render(lunoval, home, kind, family, SCALE)
        failures.check((image.width, image.height) == (w * SCALE, h * SCALE),
                       f"{family} rendered at scale {SCALE}")
        radius = None if family.startswith("accessory") else CORNER_RADIUS * SCALE
        wrong = mismatches(shot, shot_width, where[0], top, image, radius)
        failures.check(wrong == 0, f"{kind} {family} on screen is its render ({wrong} pixels differ)")
        if radius:
            corners = [(where[0] + dx, top + dy) for dx in (0, w * SCALE - 1)
                       for dy in (0, h * SCALE - 1)]
            failures.check(all(shot[(y * shot_width + x) * 3:][:3] == b"\0\0\0" for x, y in corners),
                           "its corners are rounded off, clear (black without a compositor)")
        top += (h + GAP) * SCALE

    subprocess.run([lunoval, "reload"], env=env, check=True)
    failures.check(desktop.wait_for("📅 Desktop: refreshing after a reload request"),
                   "lunoval reload refreshes it")
    failures.check(desktop.wait_for("🔄 Desktop: refreshed", times=2), "and it refreshed")
    failures.check(desktop.stop() == 0, "SIGTERM ends it with status 0")
    failures.check("ℹ️ Desktop: stopped" in desktop.log(), "saying so")


def check_taps(lunoval: str, tool: str, x: XServer, failures: Failures) -> None:
    home = Home()
    env = dict(home.env, DISPLAY=x.display, GDK_SCALE="1")
    desktop = Program([lunoval, "desktop", "--corner", "top-left", "--margin", "0", "--no-tray",
                       "--location-service", "denied", "--at", "2025-10-07T21:30:00Z"], env,
                      os.path.join(home.root, "desktop.log"))
    failures.check(desktop.wait_for("🔄 Desktop: refreshed"), "the prompt is shown")
    time.sleep(0.3)
    before = window_ids(x.display, env)
    subprocess.run([tool, "click", "85", "85", "3"], env=env, check=True)
    time.sleep(0.5)
    failures.check(len(window_ids(x.display, env) - before) >= 1,
                   "the right button opens the menu")
    subprocess.run([tool, "click", "600", "600", "1"], env=env, check=True)  # closes it
    time.sleep(0.3)
    subprocess.run([tool, "click", "85", "85", "1"], env=env, check=True)
    end = time.monotonic() + 10
    while "Lunoval places" not in windows(x.display, env) and time.monotonic() < end:
        time.sleep(0.1)
    failures.check("Lunoval places" in windows(x.display, env),
                   "a click on the prompt follows lunoval://settings to the places window")
    time.sleep(0.5)
    # The window stands at the screen's origin without a window manager: the entry below the
    # list, then the rows of the device, San Francisco (the list's first place) and Tokyo.
    subprocess.run([tool, "click", "150", "265", "1"], env=env, check=True)
    subprocess.run([tool, "type", "tokyo"], env=env, check=True)
    listed = lambda: json.loads(subprocess.run(  # noqa: E731
        [lunoval, "locations", "list", "--json"], env=env, capture_output=True, text=True,
        check=True).stdout)
    end = time.monotonic() + 10
    while len(listed()["locations"]) < 3 and time.monotonic() < end:
        time.sleep(0.1)
    names = [place["name"] for place in listed()["locations"]]
    failures.check(names == ["Current Location", "San Francisco, CA", "Tokyo"],
                   f"a city added by name in the places window: {names}")
    time.sleep(0.5)
    subprocess.run([tool, "click", "26", "94", "1"], env=env, check=True)
    failures.check(desktop.wait_for("📅 Desktop: refreshing after a reload request"),
                   "selecting it there refreshes the widgets")
    failures.check(listed()["selectedIndex"] == 2, "and selects it")
    failures.check(desktop.stop() == 0, "SIGTERM ends it")


def main() -> None:
    lunoval, tool = sys.argv[1:3]
    failures = Failures()
    x = XServer()
    try:
        check_widgets(lunoval, tool, x, failures)
        check_taps(lunoval, tool, x, failures)
    finally:
        x.stop()
    failures.finish()


if __name__ == "__main__":
    main()
