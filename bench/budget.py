#!/usr/bin/env python3
"""Prints the performance budget as one Markdown table: the medians of the in-process
benchmarks (build/bench/lunoval_bench) and, for whole `lunoval` processes, the median wall
time and the largest peak resident set size over several runs (`/usr/bin/time -v`), each
beside its target.

    bench/budget.py [BUILD_FOLDER] [RUNS]
"""

import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build")
RUNS = int(sys.argv[2]) if len(sys.argv) > 2 else 11
PLACE = ["--location", "48.8566,2.3522", "--timezone", "Europe/Paris",
         "--at", "2025-10-12T21:00:00Z"]

# Benchmark name → (what the table calls it, target in microseconds or None).
IN_PROCESS = {
    "fillMidLatitudePlace": ("warm `fill` (Paris)", 10),
    "nextPhase": ("`nextPhase`", None),
    "eclipseInfo": ("`eclipseInfo` on an eclipse day", None),
    "moonDisc": ("one disc, 56 pt at scale 3", 1000),
    "elevationChart": ("one chart, 200×100 pt at scale 3", 5000),
}
FAMILIES = ["systemSmall", "systemMedium", "systemLarge", "accessoryCircular",
            "accessoryRectangular", "accessoryInline"]
RENDERED = {"systemSmall": "MoonPhaseWidget", "systemMedium": "MoonTimesWidget",
            "systemLarge": "MoonPhaseWidget", "accessoryCircular": "MoonPhaseWidget",
            "accessoryRectangular": "MoonPhaseWidget", "accessoryInline": "MoonTimesWidget"}


def benchmark_medians():
    # The results go to a file: the library's own log lines share standard output.
    with tempfile.NamedTemporaryFile(suffix=".json") as results:
        subprocess.run([BUILD / "bench" / "lunoval_bench", f"--benchmark_out={results.name}",
                        "--benchmark_out_format=json"], check=True, capture_output=True)
        report = json.load(results)
    medians = {}
    for entry in report["benchmarks"]:
        if entry.get("aggregate_name") == "median":
            scale = {"ns": 1e-3, "us": 1, "ms": 1e3}[entry["time_unit"]]
            medians[entry["run_name"].split("/repeats")[0]] = entry["real_time"] * scale
    return medians


def run(command, environment):
    report = subprocess.run(command, env=environment, capture_output=True, text=True)
    if report.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))} failed:\n{report.stderr}")
    return report.stderr


def measure_process(arguments, environment):
    """Median wall seconds and largest peak RSS in MB over RUNS runs of one command. The wall
    time is taken here, around the process alone (time's own clock counts hundredths, and
    time adds its own start); the peak comes from separate runs under `/usr/bin/time -v`."""
    command = [BUILD / "lunoval", *arguments]
    walls, peaks = [], []
    for _ in range(RUNS):
        start = time.perf_counter()
        run(command, environment)
        walls.append(time.perf_counter() - start)
        report = run(["/usr/bin/time", "-v", *command], environment)
        peaks.append(int(re.search(r"Maximum resident set size \(kbytes\): (\d+)",
                                   report).group(1)) / 1024)
    return statistics.median(walls), max(peaks)


def host_peak(environment, refreshes=30):
    """Peak RSS in MB of `lunoval host` over that many refreshes (drawn back to back), read from
    the kernel's high-water mark before it is stopped."""
    host = subprocess.Popen([BUILD / "lunoval", "host", "--out", f"{environment['HOME']}/host",
                             "--min-interval", "0.001", *PLACE], env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    done = 0
    for line in host.stdout:
        done += "Host: refreshed" in line
        if done == refreshes:
            break
    status = pathlib.Path(f"/proc/{host.pid}/status").read_text()
    host.terminate()
    host.wait()
    return int(re.search(r"VmHWM:\s+(\d+) kB", status).group(1)) / 1024


def verdict(value, target):
    if target is None:
        return ""
    return "✅" if value <= target else "❌"


def microseconds(value):
    return f"{value / 1000:.2f} ms" if value >= 1000 else f"{value:.2f} µs"


def main():
    rows = []
    medians = benchmark_medians()
    for name, (label, target) in IN_PROCESS.items():
        value = medians[name]
        rows.append((label, microseconds(value), "", microseconds(target) if target else "—",
                     verdict(value, target)))
    for family in FAMILIES:
        value = medians[f"widgetFamily/{family}"]
        rows.append((f"{family} widget: layout, paint, PNG", microseconds(value), "", "—", ""))

    with tempfile.TemporaryDirectory() as home:
        environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=f"{home}/.config",
                           XDG_DATA_HOME=f"{home}/.local/share")
        record = ["record", "--lat", "48.8566", "--lng", "2.3522", "--timezone",
                  "Europe/Paris", "--at", "2025-10-12T21:00:00Z", "--json"]
        wall, peak = measure_process(record, environment)
        rows.append(("process `lunoval record --json`", f"{wall * 1000:.0f} ms",
                     f"{peak:.1f} MB", "30 ms, 15 MB",
                     verdict(wall, 0.030) + verdict(peak, 15)))
        for family in FAMILIES:
            kind = RENDERED[family]
            wall, peak = measure_process(
                ["render", "--kind", kind, "--family", family,
                 "--out", f"{home}/{family}.png", *PLACE], environment)
            rows.append((f"process `lunoval render` {kind} {family}", f"{wall * 1000:.0f} ms",
                         f"{peak:.1f} MB", "30 MB", verdict(peak, 30)))
        wall, peak = measure_process(["gallery", "--out", f"{home}/gallery", *PLACE],
                                     environment)
        rows.append(("process `lunoval gallery` (12 images)", f"{wall * 1000:.0f} ms",
                     f"{peak:.1f} MB", "400 ms, 30 MB", verdict(wall, 0.400) + verdict(peak, 30)))
        peak = host_peak(environment)
        rows.append(("process `lunoval host`, 30 refreshes of 12 images", "", f"{peak:.1f} MB",
                     "30 MB", verdict(peak, 30)))

    print(f"| measured ({RUNS} process runs, 9 benchmark repetitions; medians) "
          "| time | peak RSS | target | |")
    print("|---|---:|---:|---|---|")
    for row in rows:
        print("| " + " | ".join(row) + " |")


if __name__ == "__main__":
    main()
