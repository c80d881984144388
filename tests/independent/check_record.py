#!/usr/bin/env python3
"""Cross-check `lunoval record --json` against the independent Python reference.

usage: check_record.py LUNOVAL_BINARY [RESOURCE_ROOT]

Runs the command for a fixed list of several hundred places and instants chosen
where the two implementations are most likely to part: polar days and nights,
the date line, zones with odd offsets, daylight-saving days, phase days near
midnight UTC, month ends, the ends of the tabulated century and eclipse days.
Every field of every record is compared; the last line is "N passed, M failed".
"""

from __future__ import annotations

import json
import math
import os
import random
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

sys.dont_write_bytecode = True  # keep the source tree clean when run from CTest
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import reference as ref  # noqa: E402

INSTANT_TOL = 1.0      # seconds
ANGLE_TOL = 1e-6       # degrees
FRACTION_TOL = 1e-9

INSTANT_FIELDS = ("selectedTime", "sunrise", "sunset", "moonrise", "moonset")
PHASE_FIELDS = ("currentMoonPhase", "nextMoonPhase")
ALL_FIELDS = ("latitude", "longitude", "timezone", "locationName", "isPlaceholder",
              "needsLocationPermission", "selectedTime", "sunrise", "sunset", "moonrise",
              "moonset", "moonAzimuth", "moonAltitude", "currentMoonPhase", "nextMoonPhase",
              "nextPhaseTime", "eclipseInfo")
UTC = timezone.utc


@dataclass(frozen=True)
class Case:
    label: str
    lat: float
    lng: float
    zone: str
    at: str  # as passed to --at

    @property
    def instant(self) -> float:
        if self.at.startswith("@"):
            return float(self.at[1:])
        return datetime.fromisoformat(self.at.replace("Z", "+00:00")).timestamp()

    def describe(self) -> str:
        return f"[{self.label}] --lat {num(self.lat)} --lng {num(self.lng)} --timezone {self.zone} --at {self.at}"


def num(x: float) -> str:
    return repr(float(x))


def unix(*fields) -> int:
    return int(datetime(*fields, tzinfo=UTC).timestamp())


# ------------------------------------------------------------------ cases

class CaseList:
    def __init__(self):
        self.cases: list[Case] = []
        self._style: dict[str, int] = {}

    def add(self, label: str, lat: float, lng: float, zone: str, t: float, style: str | None = None):
        """Adds a case; the --at spelling rotates between unix, fractional unix and ISO forms."""
        if style is None:
            k = self._style.get(label, 0)
            style = ("unix", "iso", "frac", "isoz")[k % 4]
            self._style[label] = k + 1
        if style == "frac":
            t = math.floor(t) + 0.5
        if style == "unix" or style == "frac" or t != math.floor(t):
            at = f"@{t:.6f}".rstrip("0").rstrip(".") if t != math.floor(t) else f"@{int(t)}"
        elif style == "isoz":
            at = datetime.fromtimestamp(t, UTC).strftime("%Y-%m-%dT%H:%M:%SZ")
        else:
            local = ref.local_datetime(t, ZoneInfo(zone))
            if local.utcoffset().seconds % 60:  # offsets of local mean time carry seconds
                at = datetime.fromtimestamp(t, UTC).strftime("%Y-%m-%dT%H:%M:%SZ")
            else:
                at = local.isoformat()
        self.cases.append(Case(label, lat, lng, zone, at))


def transitions(zone: ZoneInfo, year: int) -> list[int]:
    """Instants in the year at which the zone's UTC offset changes."""
    found = []
    step = 6 * 3600
    t = unix(year, 1, 1)
    end = unix(year + 1, 1, 1)
    prev = ref.local_datetime(t, zone).utcoffset()
    while t < end:
        nxt = t + step
        off = ref.local_datetime(nxt, zone).utcoffset()
        if off != prev:
            lo, hi = t, nxt
            while hi - lo > 1:
                mid = (lo + hi) // 2
                if ref.local_datetime(mid, zone).utcoffset() == prev:
                    lo = mid
                else:
                    hi = mid
            found.append(hi)
            prev = off
        t = nxt
    return found


def local_instant(zone: str, *wall) -> int:
    return ref.resolve_local(ZoneInfo(zone), datetime(*wall))


def principal_phases_near_midnight(tables: ref.PhaseTables, years) -> list[int]:
    out = []
    for year in years:
        for month in range(1, 13):
            for day, hour, minute, _ in tables.events(year, month):
                if hour >= 22 or hour <= 1:
                    inst = ref.utc_instant(year, month, day, hour, minute)
                    if inst is not None:
                        out.append(int(inst))
    return out


def build_cases(tables: ref.PhaseTables, catalogue: ref.EclipseCatalogue) -> list[Case]:
    cl = CaseList()

    def seeded(section: str) -> random.Random:
        # One stream per section, so that what the tables hold cannot shift the other cases.
        return random.Random(f"20260329-{section}")

    # Polar days and nights, the poles themselves, both hemispheres.
    rng = seeded("polar")
    polar_zones = ["Arctic/Longyearbyen", "Europe/Oslo", "America/Anchorage", "Asia/Magadan",
                   "Antarctica/McMurdo", "Antarctica/Troll", "UTC", "America/Nuuk"]
    polar_days = [(2026, 6, 21), (2026, 12, 21), (2026, 3, 20), (2026, 9, 23), (2025, 1, 15),
                  (2025, 7, 30), (2026, 5, 2), (2026, 11, 10)]
    polar_lats = [66.0, 66.6, 70.0, 75.5, 80.0, 85.0, 89.9, 90.0]
    for i, lat in enumerate(polar_lats):
        for sign in (1, -1):
            for k in range(3):
                y, m, d = polar_days[(i + k * 3 + (sign < 0)) % len(polar_days)]
                zone = polar_zones[(i * 2 + k + (sign < 0)) % len(polar_zones)]
                lng = [15.6, -149.9, 166.7, 0.0, 2.5, -45.0][(i + k) % 6]
                t = unix(y, m, d) + rng.randrange(86400)
                cl.add("polar", sign * lat, lng, zone, t)

    # The date line: both signs of 180 and just inside it, far-off zones.
    rng = seeded("dateline")
    dl_zones = ["Pacific/Kiritimati", "Pacific/Pago_Pago", "Pacific/Apia", "Pacific/Chatham",
                "Pacific/Tongatapu", "Pacific/Fiji", "Pacific/Tarawa", "Pacific/Niue"]
    dl_lngs = [179.9, -179.9, 180.0, -180.0]
    for i, zone in enumerate(dl_zones):
        for j, lng in enumerate(dl_lngs):
            lat = [-13.8, 1.9, -44.0, 21.0, -20.0][(i + j) % 5]
            day = unix(2026, 1 + (i * 4 + j) % 12, 1 + (i * 7 + j * 5) % 28)
            midnight = local_instant(zone, *datetime.fromtimestamp(day, UTC).timetuple()[:3])
            for off in (-1, 0, 1 + rng.randrange(86398)):
                cl.add("dateline", lat, lng, zone, midnight + off)
    # Samoa skipped 30 December 2011; Kiritimati 31 December 1994.
    for zone, wall in [("Pacific/Apia", (2011, 12, 29, 23, 59, 59)), ("Pacific/Apia", (2011, 12, 31, 0, 0, 0)),
                       ("Pacific/Apia", (2011, 12, 31, 12, 0, 0)), ("Pacific/Kiritimati", (1994, 12, 30, 23, 0)),
                       ("Pacific/Kiritimati", (1995, 1, 1, 0, 30))]:
        cl.add("dateline-skip", -13.8, -171.8 if "Apia" in zone else -157.4, zone,
               local_instant(zone, *wall), style="unix")

    # Zones whose offsets are not whole hours.
    rng = seeded("odd")
    odd = [("Asia/Kathmandu", 27.7, 85.3), ("Australia/Eucla", -31.7, 128.9), ("Asia/Kolkata", 28.6, 77.2),
           ("America/St_Johns", 47.6, -52.7), ("Australia/Lord_Howe", -31.55, 159.08),
           ("Pacific/Chatham", -43.95, -176.55), ("Pacific/Marquesas", -9.0, -139.5),
           ("Asia/Tehran", 35.7, 51.4), ("Australia/Adelaide", -34.9, 138.6), ("Asia/Yangon", 16.8, 96.2)]
    for zone, lat, lng in odd:
        for k in range(6):
            t = unix(2025, 1, 1) + rng.randrange(2 * 365 * 86400)
            cl.add("odd-offset", lat, lng, zone, t)
        start = local_instant(zone, 2026, 2, 14)
        cl.add("odd-offset-midnight", lat, lng, zone, start - 1)
        cl.add("odd-offset-midnight", lat, lng, zone, start)

    # Daylight-saving days in both directions.
    rng = seeded("dst")
    dst = [("Europe/Berlin", 52.52, 13.40), ("America/New_York", 40.71, -74.01),
           ("America/Santiago", -33.45, -70.67), ("Australia/Sydney", -33.87, 151.21),
           ("Australia/Lord_Howe", -31.55, 159.08), ("America/St_Johns", 47.56, -52.71),
           ("Pacific/Chatham", -43.95, -176.55), ("America/Havana", 23.1, -82.4),
           ("Asia/Beirut", 33.9, 35.5), ("Europe/London", 51.5, -0.12)]
    for zone, lat, lng in dst:
        zi = ZoneInfo(zone)
        for year in (2025, 2026):
            for tr in transitions(zi, year):
                y, m, d = ref.local_ymd(tr, zi)
                start = ref.start_of_day(tr, zi)
                nxt = ref.start_of_day(start + 30 * 3600, zi)
                for t in (tr - 1, tr, start, start + 1 + rng.randrange(3600), nxt - 1):
                    cl.add("dst", lat, lng, zone, t)
    for zone, lat, lng, year in [("Europe/Berlin", 52.52, 13.40, 1950), ("America/New_York", 40.71, -74.01, 2000),
                                 ("America/Santiago", -33.45, -70.67, 2000), ("Europe/London", 51.5, -0.12, 1950)]:
        for tr in transitions(ZoneInfo(zone), year)[:2]:
            cl.add("dst-historic", lat, lng, zone, tr)
            cl.add("dst-historic", lat, lng, zone, ref.start_of_day(tr, ZoneInfo(zone)))

    # Beyond 2037 the zone files list no transitions; only their closing rule gives the offset,
    # and one hour decides the local day of these instants.
    for zone, lat, lng, at in [("Europe/Berlin", 52.52, 13.40, "2038-07-01T22:30:00Z"),
                               ("Europe/Berlin", 52.52, 13.40, "2099-07-01T22:30:00Z"),
                               ("America/New_York", 40.71, -74.01, "2050-07-04T04:30:00Z"),
                               ("Australia/Sydney", -33.87, 151.21, "2060-07-10T13:30:00Z"),
                               ("America/Santiago", -33.45, -70.67, "2070-07-15T03:30:00Z")]:
        cl.cases.append(Case("dst-after-2037", lat, lng, zone, at))

    # Principal phases near midnight UTC, seen from zones on both sides of Greenwich.
    rng = seeded("phase")
    near = principal_phases_near_midnight(tables, (2025, 2026, 2027))
    near_zones = [("UTC", 0.0, 0.0), ("America/New_York", 40.71, -74.01), ("Asia/Tokyo", 35.68, 139.69),
                  ("Pacific/Kiritimati", 1.87, -157.4), ("Pacific/Pago_Pago", -14.28, -170.7),
                  ("Europe/Berlin", 52.52, 13.40)]
    for i, ev in enumerate(near[:24]):
        zone, lat, lng = near_zones[i % len(near_zones)]
        zi = ZoneInfo(zone)
        cl.add("phase-midnight", lat, lng, zone, ev)
        cl.add("phase-midnight", lat, lng, zone, ref.start_of_day(ev, zi) + rng.randrange(1800))
        cl.add("phase-midnight", lat, lng, zone, ref.start_of_day(ev, zi) - 1 - rng.randrange(1800))
    if not near:
        # Without tables, midnights UTC across a lunation still vary the phase.
        for k in range(30):
            cl.add("phase-midnight", 0.0, 0.0, "UTC", unix(2026, 1, 1) + k * 86400 + (k % 3 - 1))

    # First and last days of months.
    month_zones = [("UTC", 0.0, 0.0), ("Asia/Kathmandu", 27.7, 85.3), ("America/Los_Angeles", 34.05, -118.24),
                   ("Pacific/Kiritimati", 1.87, -157.4), ("Pacific/Pago_Pago", -14.28, -170.7),
                   ("Europe/Berlin", 52.52, 13.40)]
    for month in range(1, 13):
        zone, lat, lng = month_zones[month % len(month_zones)]
        first = local_instant(zone, 2026, month, 1)
        last = local_instant(zone, 2026 + month // 12, month % 12 + 1, 1) - 1
        cl.add("month-first", lat, lng, zone, first + 30)
        cl.add("month-first", lat, lng, zone, first + 12 * 3600)
        cl.add("month-last", lat, lng, zone, last - 30)
        cl.add("month-last", lat, lng, zone, last - 12 * 3600)

    # The ends of the tabulated years and a few years between.
    rng = seeded("century")
    century = [("UTC", 0.0, 0.0), ("Pacific/Pago_Pago", -14.28, -170.7), ("Pacific/Kiritimati", 1.87, -157.4),
               ("Europe/Berlin", 52.52, 13.40), ("America/New_York", 40.71, -74.01), ("Australia/Sydney", -33.87, 151.21)]
    for year in (1900, 1950, 2000, 2026, 2099, 2100):
        for j, (zone, lat, lng) in enumerate(century):
            t = unix(year, 1, 1) + rng.randrange(365 * 86400)
            cl.add(f"year-{year}", lat, lng, zone, t)
        cl.add(f"year-{year}", -14.28, -170.7, "Pacific/Pago_Pago", unix(year, 1, 1) + 3600)
        cl.add(f"year-{year}", 1.87, -157.4, "Pacific/Kiritimati", unix(year, 12, 31, 12, 30))
    cl.add("epoch", 0.0, 0.0, "UTC", 946728000, style="unix")
    cl.add("epoch", 48.85, 2.35, "Europe/Paris", 946728000, style="iso")
    cl.add("year-1900", 51.4779, 0.0, "Europe/London", unix(1900, 1, 1), style="isoz")
    cl.add("year-2100", 51.4779, 0.0, "Europe/London", unix(2100, 12, 31, 23, 59, 59), style="isoz")

    # Eclipse days: the total solar eclipse of 2024 from Dallas and, on local 9 April before
    # sunrise, from Tokyo; the total lunar eclipse of March 2025 from New York (moon up) and
    # Tokyo (daylight); an annular one by day in Santiago; a hybrid one by day in Perth and
    # before sunrise in London.
    for lat, lng, zone, at in [(32.78, -96.80, "America/Chicago", "2024-04-08T09:00:00-05:00"),
                               (35.68, 139.77, "Asia/Tokyo", "2024-04-09T12:00:00+09:00"),
                               (35.68, 139.77, "Asia/Tokyo", "2024-04-08T23:59:00+09:00"),
                               (40.71, -74.01, "America/New_York", "2025-03-14T12:00:00-04:00"),
                               (35.68, 139.77, "Asia/Tokyo", "2025-03-14T20:00:00+09:00"),
                               (-33.45, -70.67, "America/Santiago", "2024-10-02T12:00:00-03:00"),
                               (-31.95, 115.86, "Australia/Perth", "2023-04-20T08:00:00+08:00"),
                               (51.51, -0.13, "Europe/London", "2023-04-20T20:00:00+01:00")]:
        cl.cases.append(Case("eclipse-day", lat, lng, zone, at))
    # Every catalogued eclipse of the 2020s from one of several places, and the catalogue's ends
    # from the zones farthest from Greenwich.
    places = [("America/New_York", 40.71, -74.01), ("Europe/Berlin", 52.52, 13.40),
              ("Asia/Tokyo", 35.68, 139.69), ("Australia/Sydney", -33.87, 151.21),
              ("America/Santiago", -33.45, -70.67), ("Africa/Cairo", 30.04, 31.24),
              ("Pacific/Honolulu", 21.31, -157.86), ("Asia/Kolkata", 28.6, 77.2),
              ("Arctic/Longyearbyen", 78.22, 15.65)]
    instants = sorted(catalogue.table(ZoneInfo("UTC")))
    for i, inst in enumerate(t for t in instants if unix(2020, 1, 1) <= t < unix(2030, 1, 1)):
        zone, lat, lng = places[i % len(places)]
        cl.add("eclipse-catalogue", lat, lng, zone, ref.start_of_day(inst, ZoneInfo(zone)) + 43200)
    for inst in instants[:2] + instants[-2:]:
        for zone, lat, lng in [("Pacific/Kiritimati", 1.87, -157.4), ("Pacific/Pago_Pago", -14.28, -170.7)]:
            cl.add("eclipse-ends", lat, lng, zone, inst)

    # Greenwich.
    rng = seeded("greenwich")
    for k in range(16):
        t = unix(2026, 1, 1) + k * 23 * 86400 + rng.randrange(86400)
        cl.add("greenwich", 51.4779, [0.0, -0.0015][k % 2], "Europe/London", t)

    # Anywhere, any time.
    rng = seeded("random")
    zones = ["UTC", "Europe/Berlin", "America/New_York", "America/Santiago", "Australia/Sydney", "Asia/Tokyo",
             "Asia/Kathmandu", "Pacific/Chatham", "Africa/Cairo", "America/Sao_Paulo", "Pacific/Honolulu",
             "Asia/Kolkata", "Europe/Moscow", "America/Mexico_City", "Africa/Casablanca", "Pacific/Apia"]
    for k in range(90):
        lat = round(rng.uniform(-90, 90), 4)
        lng = round(rng.uniform(-180, 180), 4)
        t = rng.randrange(unix(1900, 1, 2), unix(2100, 12, 30))
        cl.add("random", lat, lng, zones[k % len(zones)], t)
    return cl.cases


# ------------------------------------------------------------ comparison

class Stats:
    def __init__(self):
        self.instant = 0.0
        self.angle = 0.0
        self.fraction = 0.0

    def merge(self, other: "Stats") -> None:
        self.instant = max(self.instant, other.instant)
        self.angle = max(self.angle, other.angle)
        self.fraction = max(self.fraction, other.fraction)

    def __str__(self) -> str:
        return f"instant {self.instant:.3g} s, angle {self.angle:.3g} deg, illumination {self.fraction:.3g}"


def angle_diff(a: float, b: float, modulo: bool) -> float:
    d = abs(a - b)
    if modulo:
        d = d % 360.0
        d = min(d, 360.0 - d)
    return d


def compare(case: Case, got: dict, want: dict, stats: Stats) -> list[str]:
    problems = []

    def bad(field, g, w, why=""):
        problems.append(f"  {field}: lunoval={json.dumps(g)} reference={json.dumps(w)}{(' (' + why + ')') if why else ''}")

    if set(got) != set(ALL_FIELDS):
        missing = sorted(set(ALL_FIELDS) - set(got))
        extra = sorted(set(got) - set(ALL_FIELDS))
        problems.append(f"  keys: missing {missing}, unexpected {extra}")
    for field in ALL_FIELDS:
        g, w = got.get(field), want[field]
        if (g is None) != (w is None):
            bad(field, g, w, "presence differs")
            continue
        if w is None:
            continue
        if field in ("latitude", "longitude"):
            if not isinstance(g, (int, float)) or abs(g - w) > 1e-12:
                bad(field, g, w)
        elif field in INSTANT_FIELDS:
            if not isinstance(g, (int, float)):
                bad(field, g, w, "not a number")
                continue
            stats.instant = max(stats.instant, abs(g - w))
            if abs(g - w) > INSTANT_TOL:
                bad(field, g, w, f"differs by {g - w:+.3f} s")
        elif field in ("moonAzimuth", "moonAltitude"):
            if not isinstance(g, (int, float)):
                bad(field, g, w, "not a number")
                continue
            d = angle_diff(g, w, field == "moonAzimuth")
            stats.angle = max(stats.angle, d)
            if d > ANGLE_TOL:
                bad(field, g, w, f"differs by {d:.3g} deg")
        elif field in PHASE_FIELDS:
            problems += compare_phase(field, g, w, stats)
        elif field == "eclipseInfo":
            problems += compare_eclipse(g, w, stats)
        elif g != w:
            bad(field, g, w)
    return problems


def compare_phase(field: str, g, w: dict, stats: Stats) -> list[str]:
    out = []
    if not isinstance(g, dict) or set(g) != set(w):
        return [f"  {field}: lunoval={json.dumps(g)} reference={json.dumps(w)} (shape differs)"]
    for key in ("phaseName", "phaseType"):
        if g[key] != w[key]:
            out.append(f"  {field}.{key}: lunoval={g[key]!r} reference={w[key]!r}")
    try:
        d = abs(g["illumination"] - w["illumination"])
        stats.fraction = max(stats.fraction, d)
        if d > FRACTION_TOL:
            out.append(f"  {field}.illumination: lunoval={g['illumination']!r} reference={w['illumination']!r}")
        for key in ("phaseAngle", "tiltAngle"):
            # The tilt wraps at +-180, where both spellings of one angle are valid.
            d = angle_diff(g[key], w[key], key == "tiltAngle")
            stats.angle = max(stats.angle, d)
            if d > ANGLE_TOL or not -180.0 <= g[key] <= 180.0:
                out.append(f"  {field}.{key}: lunoval={g[key]!r} reference={w[key]!r} (differs by {d:.3g} deg)")
    except TypeError:
        out.append(f"  {field}: lunoval={json.dumps(g)} reference={json.dumps(w)} (not numbers)")
    return out


def compare_eclipse(g, w: dict, stats: Stats) -> list[str]:
    if not isinstance(g, dict) or set(g) != set(w):
        return [f"  eclipseInfo: lunoval={json.dumps(g)} reference={json.dumps(w)} (shape differs)"]
    out = [f"  eclipseInfo.{key}: lunoval={g[key]!r} reference={w[key]!r}"
           for key in ("key", "title", "isLunarEvent", "isVisible") if g[key] != w[key]]
    if not isinstance(g["datetime"], (int, float)):
        return out + [f"  eclipseInfo.datetime: lunoval={g['datetime']!r} (not a number)"]
    stats.instant = max(stats.instant, abs(g["datetime"] - w["datetime"]))
    if abs(g["datetime"] - w["datetime"]) > INSTANT_TOL:
        out.append(f"  eclipseInfo.datetime: lunoval={g['datetime']!r} reference={w['datetime']!r}")
    return out


# ------------------------------------------------------------------- run

def run_case(binary: str, env: dict, case: Case) -> tuple[dict | None, str]:
    cmd = [binary, "record", "--json", "--lat", num(case.lat), "--lng", num(case.lng),
           "--timezone", case.zone, "--at", case.at, "--locale", "en_US"]
    try:
        proc = subprocess.run(cmd, env=env, capture_output=True, text=True, timeout=60)
    except (OSError, subprocess.TimeoutExpired) as e:
        return None, f"  could not run: {e}"
    if proc.returncode != 0:
        return None, f"  exit status {proc.returncode}; stderr: {proc.stderr.strip()[:500]}"
    try:
        return json.loads(proc.stdout), ""
    except json.JSONDecodeError as e:
        return None, f"  stdout is not one JSON object ({e}): {proc.stdout[:500]!r}"


def main(argv: list[str]) -> int:
    if len(argv) < 2:
        print("usage: check_record.py LUNOVAL_BINARY [RESOURCE_ROOT]", file=sys.stderr)
        return 2
    binary = os.path.abspath(argv[1])
    here = os.path.dirname(os.path.abspath(__file__))
    root = os.path.abspath(argv[2]) if len(argv) > 2 else os.path.join(here, "..", "..", "resources")
    tables = ref.PhaseTables(root)
    if not os.path.isdir(os.path.join(root, ref.PhaseTables.BUNDLE, "Data")):
        print(f"warning: no phase tables under {root}; both sides run without them", file=sys.stderr)

    catalogue = ref.EclipseCatalogue(root)
    if catalogue.text is None:
        print(f"warning: no eclipse catalogue under {root}; both sides run without it", file=sys.stderr)

    cases = build_cases(tables, catalogue)
    with tempfile.TemporaryDirectory() as home:
        env = dict(os.environ)
        env.update({
            "LC_ALL": "C",
            "LUNOVAL_RESOURCE_PATH": root,
            # A process zone far from every case's zone shows any leak of it into the record.
            "TZ": "Asia/Kathmandu",
            # Keep saved places and defaults of the person running the check out of it.
            "HOME": home, "XDG_DATA_HOME": os.path.join(home, "data"),
            "XDG_CONFIG_HOME": os.path.join(home, "config"), "XDG_STATE_HOME": os.path.join(home, "state"),
            "XDG_CACHE_HOME": os.path.join(home, "cache"),
        })
        with ThreadPoolExecutor(max_workers=2) as pool:
            results = list(pool.map(lambda c: run_case(binary, env, c), cases))

    in_passed, in_all = Stats(), Stats()
    passed = failed = 0
    for case, (got, err) in zip(cases, results):
        stats = Stats()
        want = ref.record(case.lat, case.lng, case.zone, case.instant, tables, catalogue)
        problems = [err] if got is None else compare(case, got, want, stats)
        in_all.merge(stats)
        if problems:
            failed += 1
            print(f"FAIL {case.describe()}")
            print("\n".join(problems))
        else:
            passed += 1
            in_passed.merge(stats)
    print(f"max differences in passed cases: {in_passed}")
    if failed:
        print(f"max differences in all cases: {in_all}")
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
