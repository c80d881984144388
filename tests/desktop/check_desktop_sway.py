#!/usr/bin/env python3
"""`lunoval desktop` under a headless wlroots compositor (sway, WLR_BACKENDS=headless),
seen through grim's screenshots.

usage: check_desktop_sway.py LUNOVAL

Two instances anchored to the same corner: the phase widget on the bottom layer, started
first, then the event widget on the background layer. The screen shows the phase widget,
which is `lunoval render` of the same entry pixel for pixel but for the rounded corners: the
layers, not the order of starting, decide which is on top. Once it ends, the event widget
below it shows. sway refuses to run as root (it could not drop the privilege), so as root the
compositor runs as the user nobody. The last line is "N passed, M failed".
"""

from __future__ import annotations

import os
import subprocess
import shutil
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import (CORNER_RADIUS, DEVICE, Failures, Home, Program,  # noqa: E402
                             mismatches, png_reader, render)

MARGIN = 10
NOBODY = 65534


def start_sway(home: Home) -> tuple[subprocess.Popen, str]:
    """sway on a headless output of its own; the path of its Wayland socket. Its folder lies
    outside the home, which only we may enter."""
    runtime = tempfile.mkdtemp(prefix="lunoval-sway-")
    home.sway_runtime = runtime
    config = os.path.join(runtime, "config")
    # No wallpaper: swaybg would share the background layer, above a surface made before it.
    with open(config, "w", encoding="utf-8") as file:
        file.write("output HEADLESS-1 resolution 640x480\n")
    as_user = []
    if os.getuid() == 0:
        os.chown(runtime, NOBODY, NOBODY)
        as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
    env = {"PATH": os.environ["PATH"], "HOME": runtime, "XDG_RUNTIME_DIR": runtime,
           "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
    sway = subprocess.Popen([*as_user, "sway", "-c", config], env=env,
                            stdout=subprocess.DEVNULL, stderr=open(os.path.join(home.root, "sway.log"), "wb"))
    socket = os.path.join(runtime, "wayland-1")
    end = time.monotonic() + 10
    while not os.path.exists(socket) and time.monotonic() < end and sway.poll() is None:
        time.sleep(0.05)
    return sway, socket


def screenshot(home: Home, socket: str, name: str) -> tuple[int, bytes]:
    out = os.path.join(home.root, name)
    subprocess.run(["grim", "-t", "ppm", out], env=dict(home.env, WAYLAND_DISPLAY=socket),
                   check=True)
    with open(out, "rb") as file:
        _magic, width, _height, _depth, pixels = file.read().split(maxsplit=4)
    return int(width), pixels


def main() -> None:
    lunoval = sys.argv[1]
    failures = Failures()
    home = Home()
    sway, socket = start_sway(home)
    if not os.path.exists(socket):
        with open(os.path.join(home.root, "sway.log"), encoding="utf-8", errors="replace") as log:
            print(log.read())
        failures.check(False, "sway starts")
        failures.finish()
    started = []
    try:
        for kind, layer in (("MoonPhaseWidget", "bottom"), ("MoonEventWidget", "background")):
            runtime = os.path.join(home.root, layer)
            os.makedirs(runtime, mode=0o700)
            env = dict(home.env, WAYLAND_DISPLAY=socket, GDK_BACKEND="wayland",
                       XDG_RUNTIME_DIR=runtime)
            desktop = Program([lunoval, "desktop", "--widgets", f"{kind}:systemSmall",
                               "--layer", layer, "--corner", "top-left", "--margin", str(MARGIN),
                               "--no-tray", *DEVICE], env, os.path.join(home.root, layer + ".log"))
            started.append(desktop)
            failures.check(desktop.wait_for("🔄 Desktop: refreshed"), f"the {layer} one refreshes")
            failures.check(f"as a layer-shell surface on the {layer} layer" in desktop.log(),
                           f"the {layer} one is a layer-shell surface on that layer")
        time.sleep(0.5)
        for kind, shot in (("MoonPhaseWidget", "both.ppm"), ("MoonEventWidget", "below.ppm")):
            width, pixels = screenshot(home, socket, shot)
            image = render(lunoval, home, kind, "systemSmall", 1)
            wrong = mismatches(pixels, width, MARGIN, MARGIN, image, CORNER_RADIUS)
            failures.check(wrong == 0, f"{kind} shows at the corner ({wrong} pixels differ)")
            if kind == "MoonPhaseWidget":
                failures.check(started[0].stop() == 0, "the bottom one ends on SIGTERM")
                time.sleep(0.5)
    finally:
        for desktop in started:
            desktop.stop()
        sway.terminate()
        sway.wait()
        shutil.rmtree(home.sway_runtime, ignore_errors=True)
    failures.finish()


if __name__ == "__main__":
    main()
