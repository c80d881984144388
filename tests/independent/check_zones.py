#!/usr/bin/env python3
"""Check every zone of the system database from 2038 to 2100 against Python's zoneinfo.

usage: check_zones.py ZONE_OFFSETS_BINARY

Past the last change a zone file lists, the file's own rule for later years applies. For
each zone, zoneinfo's offsets on the 1st and 16th of every month, and on both sides of every
change it finds between them, are compared with what the C++ side answers for the same
instants. Prints the zones that differ and exits non-zero if any did.
"""

from __future__ import annotations

import calendar
import subprocess
import sys
import zoneinfo
from datetime import datetime, timezone

YEARS = range(2038, 2101)
SHOWN = 3  # differences printed per zone


def samples() -> list[int]:
    return [calendar.timegm((year, month, day, 0, 0, 0)) for year in YEARS
            for month in range(1, 13) for day in (1, 16)]


def offset(zone: zoneinfo.ZoneInfo, instant: int) -> int:
    return int(datetime.fromtimestamp(instant, zone).utcoffset().total_seconds())


def first_change(zone: zoneinfo.ZoneInfo, low: int, high: int) -> int:
    """The first second after `low` whose offset differs from low's (one lies up to `high`)."""
    before = offset(zone, low)
    while high - low > 1:
        middle = (low + high) // 2
        if offset(zone, middle) == before:
            low = middle
        else:
            high = middle
    return high


def expected(zone: zoneinfo.ZoneInfo, grid: list[int]) -> dict[int, int]:
    """zoneinfo's offset at every instant of the grid and on both sides of each change."""
    offsets = {instant: offset(zone, instant) for instant in grid}
    for low, high in zip(grid, grid[1:]):
        if offsets[low] != offsets[high]:
            change = first_change(zone, low, high)
            offsets[change - 1] = offsets[low]
            offsets[change] = offset(zone, change)
    return dict(sorted(offsets.items()))


def main() -> int:
    grid = samples()
    # Not places: this machine's own setting, and the zone of machines never set.
    names = sorted(zoneinfo.available_timezones() - {"localtime", "Factory"})
    asked = {name: expected(zoneinfo.ZoneInfo(name), grid) for name in names}
    request = "".join(f"{name} {' '.join(map(str, wanted))}\n" for name, wanted in asked.items())
    answer = subprocess.run([sys.argv[1]], input=request, capture_output=True, text=True,
                            check=True).stdout.splitlines()
    failed = 0
    for name, line in zip(names, answer):
        if line == "unknown":
            print(f"{name}: unknown to the C++ side")
            failed += 1
            continue
        wrong = [(t, want, got) for (t, want), got in zip(asked[name].items(), line.split())
                 if got != str(want)]
        if wrong:
            failed += 1
            shown = ", ".join(f"{datetime.fromtimestamp(t, timezone.utc):%Y-%m-%d %H:%M:%S}Z "
                              f"zoneinfo {want} C++ {got}" for t, want, got in wrong[:SHOWN])
            print(f"{name}: {len(wrong)} of {len(asked[name])} instants differ: {shown}")
    if len(answer) != len(names):
        print(f"the C++ side answered {len(answer)} of {len(names)} zones")
        failed += 1
    print(f"{len(names)} zones, {sum(map(len, asked.values()))} instants, {failed} differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
