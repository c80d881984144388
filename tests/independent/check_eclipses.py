#!/usr/bin/env python3
"""Check the eclipse catalogue against PyEphem's ephemerides of the sun and the moon.

usage: check_eclipses.py EVENTS_TXT

Every new and full moon of the catalogue's years is searched, with positions of about
one arcsecond from PyEphem, for the instant when the moon's shadow axis passes closest
to the earth's centre (solar) or the moon's centre passes closest to the axis of the
earth's shadow (lunar). The shadows' geometry at that instant gives the eclipse's type.
Each eclipse found must be in the catalogue within TIME_TOLERANCE with the same key, and
the catalogue may hold no other. Disagreements on a threshold that the two methods
straddle by less than their own precision are accepted, listed apart with the reason.
The last line is "N passed, M failed".
"""

from __future__ import annotations

import math
import sys
from dataclasses import dataclass, field
from datetime import datetime, timedelta

import ephem

TIME_TOLERANCE = timedelta(minutes=3)

EARTH_RADIUS_KM = 6378.137
FLATTENING = 1 / 298.257
AU_IN_EARTH_RADII = 149597870.7 / EARTH_RADIUS_KM
SUN_RADIUS = 696000.0 / EARTH_RADIUS_KM
# The moon's radius in earth radii: as published Besselian elements take it for the penumbra
# and for the umbra, and the IAU's mean radius for the moon's disc in the earth's shadow.
MOON_RADIUS_PENUMBRA = 0.272488
MOON_RADIUS_UMBRA = 0.272281
MOON_RADIUS = 0.2725076
# Danjon's rule: the atmosphere widens the earth's shadow as if the earth's radius, taken at
# latitude 45°, were 1/85 larger.
DANJON_ENLARGEMENT = 1.01

HOUR = 1 / 24
SEARCH_HALF_WIDTH = 6 * HOUR  # greatest eclipse lies within hours of the syzygy
TIME_PRECISION = 1e-6  # days
PATH_SAMPLES = 60

# Margins inside which the two methods may honestly disagree on a type.
MAGNITUDE_MARGIN = 0.02
SHADOW_RADIUS_MARGIN = 0.0008  # earth radii, about 5 km of umbral or antumbral radius
CENTRAL_MARGIN = 0.003  # earth radii of the axis's distance from the earth's limb

SOLAR_KEYS = {"TSE", "ASE", "HSE", "PSE"}


# ---- vectors -------------------------------------------------------------------------

def sub(a, b):
    return tuple(x - y for x, y in zip(a, b))


def add(a, b):
    return tuple(x + y for x, y in zip(a, b))


def scale(a, s):
    return tuple(x * s for x in a)


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def norm(a):
    return math.sqrt(dot(a, a))


def unit(a):
    return scale(a, 1 / norm(a))


def squash(a):
    """Stretch the polar axis so that the flattened earth becomes the unit sphere."""
    return (a[0], a[1], a[2] / (1 - FLATTENING))


# ---- positions -----------------------------------------------------------------------

_SUN = ephem.Sun()
_MOON = ephem.Moon()


def geocentric(body, when: float):
    """Apparent geocentric position, true equator of date, in equatorial earth radii."""
    body.compute(ephem.Date(when))
    r = body.earth_distance * AU_IN_EARTH_RADII
    ra, dec = float(body.g_ra), float(body.g_dec)
    return (r * math.cos(dec) * math.cos(ra), r * math.cos(dec) * math.sin(ra),
            r * math.sin(dec))


def sun_and_moon(when: float):
    return geocentric(_SUN, when), geocentric(_MOON, when)


def minimize(function, low: float, high: float) -> float:
    """Golden-section search for the minimum of a unimodal function."""
    ratio = (math.sqrt(5) - 1) / 2
    a, b = low, high
    c, d = b - ratio * (b - a), a + ratio * (b - a)
    fc, fd = function(c), function(d)
    while b - a > TIME_PRECISION:
        if fc < fd:
            b, d, fd = d, c, fc
            c = b - ratio * (b - a)
            fc = function(c)
        else:
            a, c, fc = c, d, fd
            d = a + ratio * (b - a)
            fd = function(d)
    return (a + b) / 2


def bisect(predicate, inside: float, outside: float) -> float:
    """The boundary between an instant where predicate holds and one where it does not."""
    while abs(outside - inside) > TIME_PRECISION:
        middle = (inside + outside) / 2
        if predicate(middle):
            inside = middle
        else:
            outside = middle
    return inside


# ---- solar eclipses ------------------------------------------------------------------

@dataclass
class ShadowAxis:
    moon: tuple
    direction: tuple  # from the sun through the moon
    tan_f1: float
    tan_f2: float

    def distance_from_moon(self) -> float:
        """Distance along the axis from the moon to the fundamental plane."""
        return -dot(self.moon, self.direction)

    def penumbra_radius(self, s: float) -> float:
        return s * self.tan_f1 + MOON_RADIUS_PENUMBRA * math.sqrt(1 + self.tan_f1 ** 2)

    def umbra_radius(self, s: float) -> float:
        """Negative inside the umbra (total), positive in the antumbra (annular)."""
        return s * self.tan_f2 - MOON_RADIUS_UMBRA * math.sqrt(1 + self.tan_f2 ** 2)

    def gamma(self) -> float:
        return norm(add(self.moon, scale(self.direction, self.distance_from_moon())))

    def squashed_gamma(self) -> float:
        """The axis's least distance from the centre in units of the flattened earth."""
        moon, direction = squash(self.moon), squash(self.direction)
        s = -dot(moon, direction) / dot(direction, direction)
        return norm(add(moon, scale(direction, s)))

    def surface_distance(self) -> float | None:
        """Distance from the moon to where the axis first meets the earth, if it does."""
        moon, direction = squash(self.moon), squash(self.direction)
        a, b, c = dot(direction, direction), 2 * dot(moon, direction), dot(moon, moon) - 1
        discriminant = b * b - 4 * a * c
        if discriminant < 0:
            return None
        return (-b - math.sqrt(discriminant)) / (2 * a) * norm(direction)


def shadow_axis(when: float) -> ShadowAxis:
    sun, moon = sun_and_moon(when)
    separation = norm(sub(moon, sun))
    sin_f1 = (SUN_RADIUS + MOON_RADIUS_PENUMBRA) / separation
    sin_f2 = (SUN_RADIUS - MOON_RADIUS_UMBRA) / separation
    return ShadowAxis(moon, unit(sub(moon, sun)), math.tan(math.asin(sin_f1)),
                      math.tan(math.asin(sin_f2)))


def umbra_on_surface(when: float) -> float | None:
    axis = shadow_axis(when)
    s = axis.surface_distance()
    return None if s is None else axis.umbra_radius(s)


def central_path_radii(greatest: float) -> list[float]:
    """Umbral radii where the axis meets the earth, from one end of the path to the other."""
    def central(t):
        return umbra_on_surface(t) is not None
    start = bisect(central, greatest, greatest - SEARCH_HALF_WIDTH)
    end = bisect(central, greatest, greatest + SEARCH_HALF_WIDTH)
    times = [start + (end - start) * i / PATH_SAMPLES for i in range(PATH_SAMPLES + 1)]
    return [radius for radius in map(umbra_on_surface, times) if radius is not None]


@dataclass
class Finding:
    solar: bool
    when: datetime
    key: str | None  # None when the shadow is missed
    quantity: str  # what decided the key, for the report
    borderline: bool  # the quantity lies within the methods' precision of a threshold


def central_finding(greatest: float) -> Finding:
    radii = central_path_radii(greatest)
    lowest, highest = min(radii), max(radii)
    key = "TSE" if highest < 0 else "ASE" if lowest > 0 else "HSE"
    return Finding(True, ephem.Date(greatest).datetime(), key,
                   f"umbral radius along the path {lowest:+.5f}..{highest:+.5f}",
                   min(abs(lowest), abs(highest)) < SHADOW_RADIUS_MARGIN)


def non_central_finding(greatest: float, axis: ShadowAxis) -> Finding:
    when = ephem.Date(greatest).datetime()
    gap = axis.squashed_gamma() - 1  # from the earth's limb to the axis
    umbra = axis.umbra_radius(axis.distance_from_moon())
    penumbra = axis.penumbra_radius(axis.distance_from_moon())
    if gap < abs(umbra):
        return Finding(True, when, "TSE" if umbra < 0 else "ASE", f"non-central, gap {gap:.5f}",
                       gap < CENTRAL_MARGIN)
    magnitude = (penumbra - gap) / (penumbra + umbra)
    return Finding(True, when, "PSE" if magnitude > 0 else None,
                   f"magnitude {magnitude:.4f}, gap {gap:.5f}",
                   abs(magnitude) < MAGNITUDE_MARGIN or gap < CENTRAL_MARGIN)


def solar_finding(new_moon: float) -> Finding:
    greatest = minimize(lambda t: shadow_axis(t).gamma(),
                        new_moon - SEARCH_HALF_WIDTH, new_moon + SEARCH_HALF_WIDTH)
    axis = shadow_axis(greatest)
    if axis.surface_distance() is not None:
        return central_finding(greatest)
    return non_central_finding(greatest, axis)


# ---- lunar eclipses ------------------------------------------------------------------

def moon_from_shadow_axis(when: float) -> float:
    """Angle between the moon's centre and the antisolar point, radians."""
    sun, moon = sun_and_moon(when)
    return math.acos(max(-1.0, min(1.0, -dot(unit(sun), unit(moon)))))


def shadow_magnitudes(when: float) -> tuple[float, float]:
    """Umbral and penumbral magnitudes: the fraction of the moon's diameter in each shadow."""
    sun, moon = sun_and_moon(when)
    distance = moon_from_shadow_axis(when)
    moon_parallax = math.asin(1 / norm(moon))
    sun_parallax = math.asin(1 / norm(sun))
    sun_radius = math.asin(SUN_RADIUS / norm(sun))
    moon_radius = math.asin(MOON_RADIUS / norm(moon))
    umbra = DANJON_ENLARGEMENT * moon_parallax + sun_parallax - sun_radius
    penumbra = DANJON_ENLARGEMENT * moon_parallax + sun_parallax + sun_radius
    return ((umbra + moon_radius - distance) / (2 * moon_radius),
            (penumbra + moon_radius - distance) / (2 * moon_radius))


def lunar_key(umbral: float, penumbral: float) -> tuple[str | None, float]:
    """The key, and how far the deciding magnitude lies from its threshold."""
    if umbral >= 1:
        return "TLE", umbral - 1
    if umbral > 0:
        return "PLE", min(umbral, 1 - umbral)
    if penumbral > 0:
        return "NLE", min(-umbral, penumbral)
    return None, -penumbral


def lunar_finding(full_moon: float) -> Finding:
    greatest = minimize(moon_from_shadow_axis,
                        full_moon - SEARCH_HALF_WIDTH, full_moon + SEARCH_HALF_WIDTH)
    umbral, penumbral = shadow_magnitudes(greatest)
    key, margin = lunar_key(umbral, penumbral)
    return Finding(False, ephem.Date(greatest).datetime(), key,
                   f"umbral magnitude {umbral:.4f}, penumbral {penumbral:.4f}",
                   margin < MAGNITUDE_MARGIN)


# ---- the comparison ------------------------------------------------------------------

@dataclass
class Entry:
    when: datetime
    key: str
    line: int


def read_catalogue(path: str) -> list[Entry]:
    entries = []
    with open(path, encoding="utf-8") as file:
        for number, raw in enumerate(file, start=1):
            line = raw.strip()
            if not line or line.startswith("#"):
                continue
            text, key = line.split(",")
            entries.append(Entry(datetime.strptime(text, "%m/%d/%Y %H:%M"), key, number))
    return entries


def syzygies(first_year: int, last_year: int):
    """(instant, is_new_moon) for every new and full moon around the years, in order."""
    when = ephem.Date(f"{first_year - 1}/12/1")
    end = ephem.Date(f"{last_year + 1}/2/1")
    while when < end:
        new_moon = ephem.next_new_moon(when)
        full_moon = ephem.next_full_moon(when)
        yield from sorted([(float(new_moon), True), (float(full_moon), False)])
        when = ephem.Date(max(new_moon, full_moon) + 1)


def findings(first_year: int, last_year: int):
    """Eclipses, and near misses on a threshold, of the years in chronological order."""
    for instant, is_new_moon in syzygies(first_year, last_year):
        finding = solar_finding(instant) if is_new_moon else lunar_finding(instant)
        if (finding.key or finding.borderline) and first_year <= finding.when.year <= last_year:
            yield finding


def nearest_entry(finding: Finding, entries: list[Entry]) -> Entry | None:
    near = [e for e in entries if (e.key in SOLAR_KEYS) == finding.solar and
            abs(e.when - finding.when) < timedelta(days=1)]
    return min(near, key=lambda e: abs(e.when - finding.when), default=None)


@dataclass
class Report:
    passed: int = 0
    failures: list[str] = field(default_factory=list)
    accepted: list[str] = field(default_factory=list)
    largest: timedelta = timedelta(0)
    matched: set[int] = field(default_factory=set)

    def absent(self, finding: Finding, label: str) -> None:
        if finding.key is None:
            return  # a near miss that neither side counts
        if finding.borderline:
            self.accepted.append(f"missing on a threshold: {label}")
            self.passed += 1
        else:
            self.failures.append(f"missing: {label}")

    def compare(self, finding: Finding, entry: Entry, label: str) -> None:
        self.matched.add(entry.line)
        difference = abs(entry.when - finding.when)
        self.largest = max(self.largest, difference)
        where = f"line {entry.line} {entry.when:%Y-%m-%d %H:%M} {entry.key} vs {label}"
        if difference > TIME_TOLERANCE:
            self.failures.append(f"time off by {difference}: {where}")
        elif entry.key != finding.key and not finding.borderline:
            self.failures.append(f"type differs: {where}")
        else:
            if entry.key != finding.key:
                self.accepted.append(f"type on a threshold: {where}")
            self.passed += 1

    def unmatched(self, entries: list[Entry]) -> None:
        for entry in entries:
            if entry.line not in self.matched:
                self.failures.append(
                    f"invented: line {entry.line} {entry.when:%Y-%m-%d %H:%M} {entry.key}")

    def print(self) -> None:
        print(f"largest time difference {self.largest.total_seconds():.0f} s "
              f"(tolerance {TIME_TOLERANCE.total_seconds():.0f} s)")
        print(f"accepted disagreements on a threshold ({len(self.accepted)}):")
        for line in self.accepted:
            print(f"  {line}")
        print(f"failures ({len(self.failures)}):")
        for line in self.failures:
            print(f"  {line}")
        print(f"{self.passed} passed, {len(self.failures)} failed")


def main() -> int:
    entries = read_catalogue(sys.argv[1])
    first_year, last_year = entries[0].when.year, entries[-1].when.year
    print(f"{len(entries)} catalogued eclipses {first_year}-{last_year}")
    report = Report()
    for finding in findings(first_year, last_year):
        entry = nearest_entry(finding, entries)
        label = f"{finding.when:%Y-%m-%d %H:%M:%S} {finding.key or 'none'} ({finding.quantity})"
        if entry is None:
            report.absent(finding, label)
        else:
            report.compare(finding, entry, label)
    report.unmatched(entries)
    report.print()
    return 1 if report.failures else 0


if __name__ == "__main__":
    sys.exit(main())
