#!/usr/bin/env python3
# Compares `lunoval record --json` field by field with the second implementation in reference.py,
# where the two are likeliest to part: polar days and nights, the date line, odd offsets,
# daylight-saving days, phases near midnight UTC, month ends, the ends of the tabulated years and
# eclipse days.
#
# usage: check_record.py LUNOVAL_BINARY RESOURCE_ROOT

from __future__ import annotations

import calendar
import itertools
import json
import math
import os
import random
import re
import sys
from datetime import datetime
from zoneinfo import ZoneInfo

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402
import reference as ref  # noqa: E402

TOLERANCE = {"latitude": 1e-12, "longitude": 1e-12, "illumination": 1e-9, "moonAzimuth": 1e-6, "moonAltitude": 1e-6,
             "phaseAngle": 1e-6, "tiltAngle": 1e-6, "selectedTime": 1.0, "sunrise": 1.0, "sunset": 1.0,
             "moonrise": 1.0, "moonset": 1.0, "datetime": 1.0}
TURNS = ("moonAzimuth", "tiltAngle")  # both spellings of +-180 are the same tilt
ODD = ("Asia/Kathmandu Australia/Eucla Asia/Kolkata America/St_Johns Australia/Lord_Howe Pacific/Chatham "
       "Pacific/Marquesas Asia/Tehran Australia/Adelaide Asia/Yangon").split()
SEASONAL = ("Europe/Berlin America/New_York America/Santiago Australia/Sydney Australia/Lord_Howe America/St_Johns "
            "Pacific/Chatham America/Havana Asia/Beirut Europe/London").split()
FAR = "UTC Pacific/Pago_Pago Pacific/Kiritimati Europe/Berlin America/New_York Australia/Sydney".split()
POLAR = ("Arctic/Longyearbyen Europe/Oslo America/Anchorage Asia/Magadan Antarctica/McMurdo Antarctica/Troll UTC "
         "America/Nuuk").split()
DATE_LINE = ("Pacific/Kiritimati Pacific/Pago_Pago Pacific/Apia Pacific/Chatham Pacific/Tongatapu Pacific/Fiji "
             "Pacific/Tarawa Pacific/Niue").split()
ECLIPSE_WATCHERS = ("America/New_York Europe/Berlin Asia/Tokyo Australia/Sydney America/Santiago Africa/Cairo "
                    "Pacific/Honolulu Asia/Kolkata Arctic/Longyearbyen").split()


def zone_places() -> dict[str, tuple[float, float]]:
    # Each zone's principal place as the time zone database lists it: ISO 6709 degrees and minutes.
    places = {"UTC": (0.0, 0.0)}
    with open("/usr/share/zoneinfo/zone.tab", encoding="utf-8") as f:
        for at, zone in (line.split("\t")[1:3] for line in f if not line.startswith("#")):
            fields = re.fullmatch(r"([+-]\d\d)(\d\d)\d*([+-]\d{3})(\d\d)\d*", at).groups()
            places[zone.strip()] = tuple(round(int(d) + math.copysign(int(m) / 60, int(d + "1")), 4)
                                         for d, m in (fields[:2], fields[2:]))
    return places


PLACES = zone_places()


def spelled(i: int, zone: str, t: float) -> tuple[str, float]:
    # The i-th case's --at and instant: whole or fractional unix seconds, the local time with its
    # offset (unless local mean time gives that odd seconds) or the time in UTC, in turn.
    local = ref.local_datetime(t, ZoneInfo(zone))
    if i % 4 == 2:
        return f"@{math.floor(t) + 0.5}", math.floor(t) + 0.5
    if i % 4 == 1 and not local.utcoffset().seconds % 60:
        return local.isoformat(), t
    return f"@{int(t)}" if i % 4 == 0 else f"{datetime.fromtimestamp(t, ref.UTC):%Y-%m-%dT%H:%M:%SZ}", t


def unix(year: int, *fields: int) -> int:
    return calendar.timegm((year, *fields) + (1, 1, 0, 0, 0)[len(fields):])


def local(zone: str, *wall: int) -> int:
    return ref.resolve_local(ZoneInfo(zone), datetime(*wall))


def transitions(zone: ZoneInfo, year: int) -> list[int]:
    offset = lambda t: ref.local_datetime(t, zone).utcoffset()  # noqa: E731
    return [ref.first_change(zone, t, t + 21600) for t in range(unix(year), unix(year + 1), 21600)
            if offset(t) != offset(t + 21600)]


def build_cases(root: str, eclipses: dict[float, str]) -> list[tuple]:
    # (label, lat, lng, zone, instant) of every case.
    cases, rng = [], random.Random(20260329)

    def each(label: str, zones: list[str], instants) -> None:  # at the zones' places in turn
        cases.extend((label, *PLACES[zone], zone, t) for zone, t in zip(itertools.cycle(zones), instants))

    days = [(2026, 6, 21), (2026, 12, 21), (2026, 3, 20), (2026, 9, 23), (2025, 1, 15), (2025, 7, 30), (2026, 5, 2)]
    for lat in (66.0, 66.6, 70.0, 75.5, 80.0, 85.0, 89.9, 90.0, -66.0, -66.6, -70.0, -75.5, -80.0, -85.0, -89.9, -90.0):
        for _ in range(3):
            cases.append(("polar", lat, rng.choice([15.6, -149.9, 166.7, 0.0, 2.5, -45.0]), rng.choice(POLAR),
                          unix(*rng.choice(days)) + rng.randrange(86400)))
    for zone, lng in ((zone, lng) for zone in DATE_LINE for lng in (179.9, -179.9, 180.0, -180.0)):
        midnight = local(zone, 2026, rng.randrange(1, 13), rng.randrange(1, 29))
        for t in (midnight - 1, midnight, midnight + 1 + rng.randrange(86398)):
            cases.append(("date line", PLACES[zone][0], lng, zone, t))
    # Samoa skipped 30 December 2011, Kiritimati 31 December 1994.
    each("skipped day", ["Pacific/Apia"] * 3 + ["Pacific/Kiritimati"] * 2,
         [local("Pacific/Apia", 2011, 12, 29, 23, 59, 59), local("Pacific/Apia", 2011, 12, 31),
          local("Pacific/Apia", 2011, 12, 31, 12), local("Pacific/Kiritimati", 1994, 12, 30, 23),
          local("Pacific/Kiritimati", 1995, 1, 1, 0, 30)])
    for zone in ODD:
        start = local(zone, 2026, 2, 14)
        each("odd offset", [zone], [unix(2025) + rng.randrange(2 * 365 * 86400) for _ in range(6)] + [start - 1, start])
    for zone, year in [(z, y) for z in SEASONAL for y in (2025, 2026)] + [(z, y) for z in SEASONAL[:3]
                                                                          for y in (1950, 2000)]:
        for change in transitions(ZoneInfo(zone), year):
            start = ref.start_of_day(change, ZoneInfo(zone))
            each("daylight saving", [zone], [change - 1, change, start, start + 1 + rng.randrange(3600),
                                             ref.start_of_day(start + 30 * 3600, ZoneInfo(zone)) - 1])
    # Past 2037 only the zone file's closing rule gives the offset, and one hour decides the local day.
    each("after 2037", SEASONAL[:4] + SEASONAL[:1], [unix(2038, 7, 1, 22, 30), unix(2050, 7, 4, 4, 30),
         unix(2070, 7, 15, 3, 30), unix(2060, 7, 10, 13, 30), unix(2099, 7, 1, 22, 30)])
    near = [ref.utc_instant(year, month, day, hour, minute) for year in (2025, 2026, 2027) for month in range(1, 13)
            for day, hour, minute, _ in ref.phase_events(root, year, month) if hour >= 22 or hour <= 1]
    for zone, t in zip(FAR * 4, near):
        start = ref.start_of_day(t, ZoneInfo(zone))
        each("phase near midnight", [zone], [t, start + rng.randrange(1800), start - 1 - rng.randrange(1800)])
    for month, zone in zip(range(1, 13), (FAR + ["Asia/Kathmandu", "America/Los_Angeles"]) * 2):
        first, last = local(zone, 2026, month, 1), local(zone, 2026 + month // 12, month % 12 + 1, 1) - 1
        each("month ends", [zone], [first + 30, first + 43200, last - 30, last - 43200])
    for year in (1900, 1950, 2000, 2026, 2099, 2100):
        each(f"year {year}", FAR + FAR[1:3], [unix(year) + rng.randrange(365 * 86400) for _ in range(6)]
             + [unix(year, 1, 1, 1), unix(year, 12, 31, 12, 30)])
    each("century ends", ["UTC", "Europe/Paris", "Europe/London", "Europe/London"],
         [946728000, 946728000, unix(1900), unix(2100, 12, 31, 23, 59, 59)])
    # Total eclipses of 2024 and 2025 seen and missed; an annular one by day, a hybrid one by day
    # and before sunrise.
    each("eclipse day", ["America/Chicago", "Asia/Tokyo", "Asia/Tokyo", "America/New_York", "Asia/Tokyo",
                         "America/Santiago", "Australia/Perth", "Europe/London"],
         [unix(2024, 4, 8, 14), unix(2024, 4, 9, 3), unix(2024, 4, 8, 14, 59), unix(2025, 3, 14, 16),
          unix(2025, 3, 14, 11), unix(2024, 10, 2, 15), unix(2023, 4, 20), unix(2023, 4, 20, 19)])
    instants = sorted(eclipses)
    for zone, t in zip(ECLIPSE_WATCHERS * 9, (t for t in instants if unix(2020) <= t < unix(2030))):
        each("eclipse of the 2020s", [zone], [ref.start_of_day(t, ZoneInfo(zone)) + 43200])
    each("catalogue ends", FAR[1:3], [t for t in instants[:2] + instants[-2:] for _ in (0, 1)])
    for zone in rng.choices(sorted(PLACES), k=90):
        cases.append(("anywhere", round(rng.uniform(-90, 90), 4), round(rng.uniform(-180, 180), 4), zone,
                      rng.randrange(unix(1900, 1, 2), unix(2100, 12, 30))))
    return cases


def differences(got, want, path: str = "record") -> list[str]:
    field = path.rpartition(".")[2]
    if isinstance(want, dict):
        if not isinstance(got, dict) or set(got) != set(want):
            return [f"{path}: lunoval {json.dumps(got)}, keys wanted {sorted(want)}"]
        return [line for key in want for line in differences(got[key], want[key], f"{path}.{key}")]
    if field in TOLERANCE and None not in (got, want) and type(got) in (int, float):
        off = abs(got - want)
        if field in TURNS:
            off = min(off % 360, 360 - off % 360)
        if off <= TOLERANCE[field] and (field not in ("phaseAngle", "tiltAngle") or -180 <= got <= 180):
            return []
    elif got == want:
        return []
    return [f"{path}: lunoval {json.dumps(got)}, reference {json.dumps(want)}"]


def main(binary: str, root: str) -> None:
    eclipses = ref.read_eclipses(root)
    cases = [(*case[:4], *spelled(i, case[3], case[4])) for i, case in enumerate(build_cases(root, eclipses))]
    # A process zone far from every case's own shows any leak of it into the record.
    with harness.Home(binary, TZ="Asia/Kathmandu", LUNOVAL_RESOURCE_PATH=root) as home:
        def compare(label: str, lat: float, lng: float, zone: str, at: str, t: float) -> list[str]:
            got = json.loads(home.run("record", "--json", "--lat", repr(lat), "--lng", repr(lng), "--timezone", zone,
                                      "--at", at, "--locale", "en_US"))
            (got.get("eclipseInfo") or {}).pop("title", None)  # the catalogue's words; the unit tests hold them
            return differences(got, ref.record(lat, lng, zone, t, root, eclipses))

        problems = harness.parallel(lambda case: harness.attempt(compare, *case), cases)
    harness.finish((f"[{c[0]}] --lat {c[1]!r} --lng {c[2]!r} --timezone {c[3]} --at {c[4]}", p)
                   for c, p in zip(cases, problems))


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2]))
