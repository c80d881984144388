#!/usr/bin/env python3
# `lunoval desktop` under a headless wlroots compositor (sway, WLR_BACKENDS=headless),
# seen through grim's screenshots.
#
# usage: check_desktop_sway.py LUNOVAL
#
# Two instances anchored to the same corner: the phase widget on the bottom layer, started
# first, then the event widget on the background layer. The screen shows the phase widget,
# which is `lunoval render` of the same entry pixel for pixel but for the rounded corners: the
# layers, not the order of starting, decide which is on top. Once it ends, the event widget
# below it shows. sway refuses to run as root (it could not drop the privilege), so as root the
# compositor runs as the user nobody.

import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import (CORNER_RADIUS, DEVICE, Home, Program, mismatches,  # noqa: E402
                             poll, render)

MARGIN = 10
NOBODY = 65534
SWAY_GREY = 0x3f  # sway's background, without a wallpaper


def main() -> None:
    lunoval = sys.argv[1]
    # sway on a headless output of its own, in a home of its own. No wallpaper: swaybg would
    # share the background layer, above a surface made before it.
    sway = Home(WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1", WLR_RENDERER="pixman")
    with open(sway.path("config"), "w", encoding="utf-8") as config:
        config.write("output HEADLESS-1 resolution 640x480\n")
    as_nobody = []
    if os.getuid() == 0:
        os.chown(sway.folder.name, NOBODY, NOBODY)
        as_nobody = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
    started = [Program([*as_nobody, "sway", "-c", sway.path("config")], sway)]
    socket = sway.path("wayland-1")
    try:
        poll(lambda: os.path.exists(socket) or started[0].poll() is not None)
        assert os.path.exists(socket), "sway starts: " + started[0].log()
        for kind, layer in (("MoonPhaseWidget", "bottom"), ("MoonEventWidget", "background")):
            home = Home(WAYLAND_DISPLAY=socket, GDK_BACKEND="wayland")
            started.append(Program([lunoval, "desktop", "--widgets", f"{kind}:systemSmall",
                                    "--layer", layer, "--corner", "top-left", "--margin",
                                    str(MARGIN), "--no-tray", *DEVICE], home))
            assert started[-1].wait_for("🔄 Desktop: refreshed"), started[-1].log()
        time.sleep(0.5)
        for kind in ("MoonPhaseWidget", "MoonEventWidget"):
            subprocess.run(["grim", "-t", "ppm", home.path("shot.ppm")], env=home.env, check=True)
            with open(home.path("shot.ppm"), "rb") as file:
                _, width, _, _, pixels = file.read().split(maxsplit=4)
            wrong = mismatches(pixels, int(width), MARGIN, MARGIN,
                               render(lunoval, home, kind, "systemSmall", 1), CORNER_RADIUS,
                               SWAY_GREY)
            assert wrong == 0, f"{kind} shows at the corner but for {wrong} pixels"
            if kind == "MoonPhaseWidget":
                started[1].stop()  # the bottom one, so that the background one shows
                time.sleep(0.5)
    finally:
        for program in reversed(started):
            program.stop()


if __name__ == "__main__":
    main()
