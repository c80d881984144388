#!/usr/bin/env python3
# `lunoval desktop` on a private X server (Xvfb), seen from outside.
#
# usage: check_desktop_x11.py LUNOVAL
#
# At scale 2, two widgets in the top-left corner: an undecorated desktop-type window below the
# others and out of the task bar, as large as the widgets and where asked; each widget on the
# screen is `lunoval render` of the same entry pixel for pixel, its rounded-off corners clear,
# but for the antialiasing along the arcs; `lunoval reload` refreshes it and SIGTERM ends it.
# With location access refused, the right button opens the menu and a click on the permission
# prompt opens the places window, where a city is added and selected.

import json
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import (CORNER_RADIUS, DEVICE, Home, Program, XServer,  # noqa: E402
                             mismatches, poll, render)

REFRESHED, RELOADED = "🔄 Desktop: refreshed", "📅 Desktop: refreshing after a reload request"


def start(lunoval: str, x: XServer, scale: int, *arguments: str) -> tuple[Home, Program]:
    home = Home(DISPLAY=x.display, GDK_SCALE=str(scale))
    desktop = Program([lunoval, "desktop", "--corner", "top-left", "--no-tray", *arguments], home)
    assert desktop.wait_for(REFRESHED), desktop.log()
    time.sleep(0.5)
    return home, desktop


def check_widgets(lunoval: str, x: XServer) -> None:
    home, desktop = start(lunoval, x, 2, "--widgets", "MoonPhaseWidget:systemSmall,"
                          "MoonTimesWidget:accessoryRectangular", "--margin", "20", *DEVICE)
    window = next((w for w in x.windows() if w[1] == "Lunoval"), None)
    assert window, desktop.log()
    props = subprocess.run(["xprop", "-id", window[0], "-display", x.display],
                           capture_output=True, text=True).stdout
    for atom in ("_NET_WM_WINDOW_TYPE_DESKTOP", "_NET_WM_STATE_BELOW", "_NET_WM_STATE_SKIP_TASKBAR",
                 "_NET_WM_STATE_STICKY", "_MOTIF_WM_HINTS"):  # the last: no decorations
        assert atom in props, f"{atom} asked for"
    # At scale 2, 20 points from the corner, as wide as the wider widget (172 points) and as
    # high as both (170 and 76 points) and the 12 between them.
    assert window[2] == (40, 40, 344, 516), window
    shot = x.screenshot()
    for kind, family, top, radius in (("MoonPhaseWidget", "systemSmall", 40, CORNER_RADIUS * 2),
                                      ("MoonTimesWidget", "accessoryRectangular", 404, None)):
        wrong = mismatches(shot, x.width, 40, top, render(lunoval, home, kind, family, 2), radius)
        assert wrong == 0, f"{kind} {family} on screen is its render but for {wrong} pixels"
    subprocess.run([lunoval, "reload"], env=home.env, check=True)
    assert desktop.wait_for(RELOADED), "lunoval reload refreshes it"
    assert desktop.stop() == 0, "SIGTERM ends it with status 0"


def check_places_window(lunoval: str, x: XServer) -> None:
    home, desktop = start(lunoval, x, 1, "--margin", "0", "--location-service", "denied",
                          "--at", "2025-10-07T21:30:00Z")
    before = len(x.windows())
    x.click(85, 85, 3)
    time.sleep(0.5)
    assert len(x.windows()) > before, "the right button opens the menu"
    x.click(600, 600)  # closes it
    time.sleep(0.3)
    x.click(85, 85)
    assert poll(lambda: any(w[1] == "Lunoval places" for w in x.windows())), \
        "a click on the prompt follows lunoval://settings to the places window"
    time.sleep(0.5)
    # The window stands at the screen's origin without a window manager: the entry below the
    # list, then the rows of the device, San Francisco (the list's first place) and Tokyo.
    x.click(150, 265)
    x.type("tokyo")

    def listed() -> dict:
        return json.loads(subprocess.run([lunoval, "locations", "list", "--json"], env=home.env,
                                         capture_output=True, text=True, check=True).stdout)

    poll(lambda: len(listed()["locations"]) >= 3)
    time.sleep(0.5)
    x.click(26, 94)
    assert desktop.wait_for(RELOADED), "selecting a place there refreshes the widgets"
    places = listed()
    assert [place["name"] for place in places["locations"]] == [
        "Current Location", "San Francisco, CA", "Tokyo"] and places["selectedIndex"] == 2, places
    desktop.stop()


def main() -> None:
    x = XServer()
    try:
        check_widgets(sys.argv[1], x)
        check_places_window(sys.argv[1], x)
    finally:
        x.stop()


if __name__ == "__main__":
    main()
