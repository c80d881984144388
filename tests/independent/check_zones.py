#!/usr/bin/env python3
# Every zone of the system's database from 2038 to 2100, past the last change its file lists,
# where only the file's closing rule gives the offset: the C++ side's offsets against Python's
# zoneinfo on the 1st and 16th of every month and on both sides of every change between them.
#
# usage: check_zones.py ZONE_OFFSETS_BINARY

import calendar
import os
import subprocess
import sys
import zoneinfo

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402
import reference as ref  # noqa: E402

GRID = [calendar.timegm((year, month, day, 0, 0, 0)) for year in range(2038, 2101) for month in range(1, 13)
        for day in (1, 16)]


def offsets(zone: zoneinfo.ZoneInfo) -> dict[int, int]:
    seconds = {t: int(ref.local_datetime(t, zone).utcoffset().total_seconds()) for t in GRID}
    for low, high in zip(GRID, GRID[1:]):
        if seconds[low] != seconds[high]:
            change = ref.first_change(zone, low, high)
            seconds[change - 1], seconds[change] = seconds[low], seconds[high]
    return dict(sorted(seconds.items()))


def main(binary: str) -> None:
    # Not places: this machine's own setting, and the zone of machines never set.
    names = sorted(zoneinfo.available_timezones() - {"localtime", "Factory"})
    wanted = {name: offsets(zoneinfo.ZoneInfo(name)) for name in names}
    request = "".join(f"{name} {' '.join(map(str, w))}\n" for name, w in wanted.items())
    answers = subprocess.run([binary], input=request, capture_output=True, text=True, check=True).stdout.splitlines()
    assert len(answers) == len(names), f"the C++ side answered {len(answers)} of {len(names)} zones"

    def differences(name: str, answer: str) -> list[str]:
        got = answer.split()
        wrong = [f"{ref.local_datetime(t, ref.UTC):%Y-%m-%d %H:%M:%S}Z: zoneinfo {want}, C++ {offset}"
                 for (t, want), offset in zip(wanted[name].items(), got) if offset != str(want)]
        counted = [] if len(got) == len(wanted[name]) else [f"{len(got)} of {len(wanted[name])} offsets answered"]
        return wrong[:3] + counted

    harness.finish((name, differences(name, answer)) for name, answer in zip(names, answers))


if __name__ == "__main__":
    main(sys.argv[1])
