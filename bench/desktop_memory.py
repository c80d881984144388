#!/usr/bin/env python3
"""Resident memory of `lunoval desktop` over many refreshes, and its CPU time while idle.

    bench/desktop_memory.py [BUILD_FOLDER] [REFRESHES]

Runs on a private X server (Xvfb) and session bus (dbus-run-session), with the tray, three
widgets (small phase, medium times, rectangular times) at scale 2 and a fixed moment and
place, so every refresh asks the provider, lays the widgets out and paints them:

1. with a refresh budget of a few milliseconds, the resident set size (VmRSS) after every
   tenth of REFRESHES (default 1000) refreshes; the target is at most 60 MB and flat;
2. with the default budget (15 minutes), the CPU time (user + system) the process takes over
   one minute of idling after its first refresh; the target is 0.

Not a CI step: the two parts take about three minutes.
"""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build").resolve()
REFRESHES = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
DEVICE = ["--at", "2025-10-07T21:30:00Z", "--location", "48.8566,2.3522",
          "--timezone", "Europe/Paris"]
WIDGETS = "MoonPhaseWidget:systemSmall,MoonTimesWidget:systemMedium,MoonTimesWidget:accessoryRectangular"
REFRESHED = "🔄 Desktop: refreshed"


def rss_mb(pid: int) -> float:
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        for line in status:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    return float("nan")


def cpu_seconds(pid: int) -> float:
    with open(f"/proc/{pid}/stat", encoding="ascii") as stat:
        fields = stat.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def start(folder: str, display: str, budget: list[str]) -> tuple[subprocess.Popen, str]:
    log = os.path.join(folder, "desktop.log")
    runtime = tempfile.mkdtemp(dir=folder)
    env = dict(os.environ, HOME=folder, XDG_RUNTIME_DIR=runtime, DISPLAY=display, GDK_SCALE="2",
               NO_AT_BRIDGE="1")
    env.pop("WAYLAND_DISPLAY", None)
    with open(log, "wb") as out:
        process = subprocess.Popen([str(BUILD / "lunoval"), "desktop", "--widgets", WIDGETS,
                                    *budget, *DEVICE], env=env, stdout=out,
                                   stderr=subprocess.STDOUT)
    return process, log


def refreshes(log: str) -> int:
    with open(log, encoding="utf-8", errors="replace") as text:
        return text.read().count(REFRESHED)


def main() -> None:
    if "DBUS_SESSION_BUS_ADDRESS" not in os.environ:
        os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])
    read, write = os.pipe()
    xvfb = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1024x768x24"],
                            pass_fds=(write,), stderr=subprocess.DEVNULL)
    os.close(write)
    display = ":" + os.fdopen(read).readline().strip()
    try:
        with tempfile.TemporaryDirectory() as folder:
            desktop, log = start(folder, display, ["--min-interval", "0.0001"])
            print(f"| refreshes | VmRSS (MB) |\n|---:|---:|")
            began = time.monotonic()
            for target in range(REFRESHES // 10, REFRESHES + 1, REFRESHES // 10):
                while refreshes(log) < target:
                    time.sleep(0.05)
                print(f"| {target} | {rss_mb(desktop.pid):.1f} |", flush=True)
            print(f"\n{REFRESHES} refreshes in {time.monotonic() - began:.0f} s")
            desktop.terminate()
            desktop.wait()

            desktop, log = start(folder, display, [])
            while refreshes(log) < 1:
                time.sleep(0.05)
            time.sleep(2)
            before = cpu_seconds(desktop.pid)
            time.sleep(60)
            print(f"CPU time over a minute of idling: {cpu_seconds(desktop.pid) - before:.2f} s")
            desktop.terminate()
            desktop.wait()
    finally:
        xvfb.terminate()
        xvfb.wait()


if __name__ == "__main__":
    main()
