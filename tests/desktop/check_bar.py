#!/usr/bin/env python3
# `lunoval bar` for status bars, against `lunoval record` of the same moment and place.
#
# usage: check_bar.py LUNOVAL
#
# `--format waybar --once` prints one JSON object with text, tooltip, class (the phase's case
# name) and percentage (lit, rounded); `--format plain --once` one line of text; left running on
# a moment that does not move, it prints once and again only when what it shows changes, which
# here is never; and it loads no GTK, nor anything that draws.

import json
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import DEVICE, Home  # noqa: E402


def main() -> None:
    lunoval = sys.argv[1]
    home = Home()

    def run(*arguments: str) -> str:
        return subprocess.run([lunoval, *arguments, *DEVICE], env=home.env, capture_output=True,
                              text=True, check=True).stdout

    phase = json.loads(run("record", "--json"))["currentMoonPhase"]
    percent = round(phase["illumination"] * 100)
    line = json.loads(run("bar", "--format", "waybar", "--once"))  # one object, one line
    assert (sorted(line) == ["class", "percentage", "text", "tooltip"] and
            (line["class"], line["percentage"]) == (phase["phaseType"], percent) and
            line["text"].endswith(f" {percent}%") and "\n🌙 ↑" in line["tooltip"]), line
    plain = run("bar", "--format", "plain", "--once")
    assert plain.endswith(f"{percent}% {phase['phaseName']}\n"), plain

    bar = subprocess.Popen([lunoval, "bar", "--min-interval", "0.002", *DEVICE], env=home.env,
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    time.sleep(3)
    with open(f"/proc/{bar.pid}/maps", encoding="utf-8") as maps:
        loaded = maps.read()
    bar.terminate()
    printed = bar.communicate()[0].splitlines()
    assert len(printed) == 1, f"an unchanged moon is printed once, not {len(printed)} times"
    assert not any(library in loaded for library in ("libgtk", "libgdk", "libcairo")), \
        "the bar loads neither GTK nor the drawing libraries"


if __name__ == "__main__":
    main()
