#!/usr/bin/env python3
"""`lunoval bar` for status bars, against `lunoval record` of the same moment and place.

usage: check_bar.py LUNOVAL

`--format waybar --once` prints one JSON object with text, tooltip, class (the phase's case
name) and percentage (lit, rounded); `--format plain --once` one line of text; left running on
a moment that does not move, it prints once and again only when what it shows changes, which
here is never; and it loads no GTK, nor anything that draws. The last line is "N passed, M failed".
"""

from __future__ import annotations

import json
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import DEVICE, Failures, Home  # noqa: E402


def main() -> None:
    lunoval = sys.argv[1]
    failures = Failures()
    home = Home()
    run = lambda *arguments: subprocess.run([lunoval, *arguments, *DEVICE], env=home.env,  # noqa: E731
                                            capture_output=True, text=True)
    phase = json.loads(run("record", "--json").stdout)["currentMoonPhase"]
    percent = round(phase["illumination"] * 100)

    waybar = run("bar", "--format", "waybar", "--once")
    lines = waybar.stdout.splitlines()
    failures.check(waybar.returncode == 0 and len(lines) == 1, f"one line: {waybar.stdout!r}")
    line = json.loads(lines[0]) if lines else {}
    failures.check(sorted(line) == ["class", "percentage", "text", "tooltip"],
                   f"the fields waybar reads: {sorted(line)}")
    failures.check(line.get("class") == phase["phaseType"], f"class {line.get('class')}")
    failures.check(line.get("percentage") == percent, f"percentage {line.get('percentage')}")
    failures.check(line.get("text", "").endswith(f" {percent}%"), f"text {line.get('text')!r}")
    tooltip = line.get("tooltip", "").split("\n")
    failures.check(tooltip[0] == f"{phase['phaseName']} · {percent} %", f"tooltip {tooltip}")
    failures.check(any(t.startswith("🌙 ↑") for t in tooltip), "moon times in the tooltip")

    plain = run("bar", "--format", "plain", "--once").stdout
    failures.check(plain.endswith(f"{percent}% {phase['phaseName']}\n"), f"plain {plain!r}")

    with open(os.path.join(home.root, "bar.out"), "w+b") as out:
        bar = subprocess.Popen([lunoval, "bar", "--min-interval", "0.002", *DEVICE],
                               env=home.env, stdout=out, stderr=subprocess.DEVNULL)
        time.sleep(3)
        with open(f"/proc/{bar.pid}/maps", encoding="utf-8") as maps:
            loaded = maps.read()
        bar.terminate()
        bar.wait()
        out.seek(0)
        printed = out.read().decode().splitlines()
    failures.check(len(printed) == 1, f"an unchanged moon is printed once: {len(printed)} lines")
    failures.check("libgtk" not in loaded and "libgdk" not in loaded and "libcairo" not in loaded,
                   "the bar loads neither GTK nor the drawing libraries")

    bad = run("bar", "--format", "json")
    failures.check(bad.returncode == 2 and bad.stdout == "", "an unknown format is refused")
    failures.finish()


if __name__ == "__main__":
    main()
