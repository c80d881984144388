#!/usr/bin/env python3
# Checks the eclipse catalogue against PyEphem's positions of the sun and the moon (about an
# arcsecond). Around every new and full moon of the catalogue's years it finds the instant when
# the moon's shadow axis passes closest to the earth's centre (solar), or the moon's centre
# closest to the axis of the earth's shadow (lunar); the shadows' geometry then gives the type.
# Each eclipse found must be catalogued within three minutes with the same key, and nothing else
# may be. A type on a threshold the two methods straddle by less than their precision is accepted
# and listed.
#
# usage: check_eclipses.py EVENTS_TXT

from __future__ import annotations

import math
import os
import sys
from datetime import datetime, timedelta

import ephem

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402

TOLERANCE = timedelta(minutes=3)
FLATTENING = 1 / 298.257
AU = 149597870.7 / 6378.137  # in equatorial earth radii, the unit of all lengths here
SUN_RADIUS = 696000.0 / 6378.137
# The moon's radius as Besselian elements take it for the penumbra and the umbra, and the IAU's
# mean radius for its disc in the earth's shadow.
MOON_PENUMBRA, MOON_UMBRA, MOON_RADIUS = 0.272488, 0.272281, 0.2725076
DANJON = 1.01  # the atmosphere widens the earth's shadow as if the earth were 1/85 larger
HALF_WIDTH = 0.25  # days: greatest eclipse lies within hours of the syzygy
PRECISION = 1e-6  # days
# How near a threshold the two methods may honestly disagree on a type: magnitude, earth radii of
# umbral radius (about 5 km) and of the axis's distance from the earth's limb.
MAGNITUDE_MARGIN, RADIUS_MARGIN, CENTRAL_MARGIN = 0.02, 0.0008, 0.003
SUN, MOON = ephem.Sun(), ephem.Moon()


def dot(a, b) -> float:
    return sum(x * y for x, y in zip(a, b))


def norm(a) -> float:
    return math.sqrt(dot(a, a))


def axis_distance(point, direction) -> float:
    # From the point to the line through the origin along the direction.
    return math.sqrt(max(0.0, dot(point, point) - dot(point, direction) ** 2 / dot(direction, direction)))


def squash(a):
    # Stretches the polar axis so that the flattened earth becomes the unit sphere.
    return a[0], a[1], a[2] / (1 - FLATTENING)


def geocentric(body, when: float):
    # Apparent position, true equator of date.
    body.compute(ephem.Date(when))
    r, ra, dec = body.earth_distance * AU, float(body.g_ra), float(body.g_dec)
    return r * math.cos(dec) * math.cos(ra), r * math.cos(dec) * math.sin(ra), r * math.sin(dec)


def minimize(f, a: float, b: float) -> float:
    # Golden-section search for the minimum of a unimodal function.
    ratio = (math.sqrt(5) - 1) / 2
    c, d = b - ratio * (b - a), a + ratio * (b - a)
    fc, fd = f(c), f(d)
    while b - a > PRECISION:
        if fc < fd:
            b, d, fd = d, c, fc
            c = b - ratio * (b - a)
            fc = f(c)
        else:
            a, c, fc = c, d, fd
            d = a + ratio * (b - a)
            fd = f(d)
    return (a + b) / 2


def bisect(holds, inside: float, outside: float) -> float:
    while abs(outside - inside) > PRECISION:
        middle = (inside + outside) / 2
        inside, outside = (middle, outside) if holds(middle) else (inside, middle)
    return inside


def shadow_axis(when: float):
    # The moon, the axis's direction from the sun through it, and the tangents of the penumbral
    # and umbral cones' half angles.
    sun, moon = geocentric(SUN, when), geocentric(MOON, when)
    separation = norm([m - s for m, s in zip(moon, sun)])
    direction = tuple((m - s) / separation for m, s in zip(moon, sun))
    return (moon, direction, math.tan(math.asin((SUN_RADIUS + MOON_PENUMBRA) / separation)),
            math.tan(math.asin((SUN_RADIUS - MOON_UMBRA) / separation)))


def surface_distance(moon, direction) -> float | None:
    # From the moon to where the axis first meets the flattened earth, if it does.
    m, d = squash(moon), squash(direction)
    a, b, c = dot(d, d), 2 * dot(m, d), dot(m, m) - 1
    return None if b * b < 4 * a * c else (-b - math.sqrt(b * b - 4 * a * c)) / (2 * a) * norm(d)


def umbra_on_surface(when: float) -> float | None:
    # Negative inside the umbra (total), positive in the antumbra (annular).
    moon, direction, _, tan_f2 = shadow_axis(when)
    s = surface_distance(moon, direction)
    return None if s is None else s * tan_f2 - MOON_UMBRA * math.sqrt(1 + tan_f2 ** 2)


def solar(new_moon: float) -> tuple:
    # (greatest eclipse, key or None, what decided it, whether that lies on a threshold)
    def gamma(t: float) -> float:
        moon, direction, _, _ = shadow_axis(t)
        return axis_distance(moon, direction)

    when = minimize(gamma, new_moon - HALF_WIDTH, new_moon + HALF_WIDTH)
    moon, direction, tan_f1, tan_f2 = shadow_axis(when)
    if surface_distance(moon, direction) is not None:
        start = bisect(lambda t: umbra_on_surface(t) is not None, when, when - HALF_WIDTH)
        end = bisect(lambda t: umbra_on_surface(t) is not None, when, when + HALF_WIDTH)
        radii = [r for r in (umbra_on_surface(start + (end - start) * i / 60) for i in range(61)) if r is not None]
        low, high = min(radii), max(radii)
        return (when, "TSE" if high < 0 else "ASE" if low > 0 else "HSE",
                f"umbral radius along the path {low:+.5f}..{high:+.5f}", min(abs(low), abs(high)) < RADIUS_MARGIN)
    gap = axis_distance(squash(moon), squash(direction)) - 1  # from the earth's limb to the axis
    s = -dot(moon, direction)
    umbra = s * tan_f2 - MOON_UMBRA * math.sqrt(1 + tan_f2 ** 2)
    penumbra = s * tan_f1 + MOON_PENUMBRA * math.sqrt(1 + tan_f1 ** 2)
    if gap < abs(umbra):
        return when, "TSE" if umbra < 0 else "ASE", f"non-central, gap {gap:.5f}", gap < CENTRAL_MARGIN
    magnitude = (penumbra - gap) / (penumbra + umbra)
    return (when, "PSE" if magnitude > 0 else None, f"magnitude {magnitude:.4f}, gap {gap:.5f}",
            abs(magnitude) < MAGNITUDE_MARGIN or gap < CENTRAL_MARGIN)


def lunar(full_moon: float) -> tuple:
    def from_shadow_axis(t: float) -> float:
        sun, moon = geocentric(SUN, t), geocentric(MOON, t)
        return math.acos(max(-1.0, min(1.0, -dot(sun, moon) / norm(sun) / norm(moon))))

    when = minimize(from_shadow_axis, full_moon - HALF_WIDTH, full_moon + HALF_WIDTH)
    sun, moon = geocentric(SUN, when), geocentric(MOON, when)
    parallaxes = DANJON * math.asin(1 / norm(moon)) + math.asin(1 / norm(sun))
    sun_radius, moon_radius = math.asin(SUN_RADIUS / norm(sun)), math.asin(MOON_RADIUS / norm(moon))
    # The fractions of the moon's diameter in the umbra and in the penumbra.
    umbral, penumbral = ((parallaxes + side * sun_radius + moon_radius - from_shadow_axis(when)) / (2 * moon_radius)
                         for side in (-1, 1))
    key, margin = ("TLE", umbral - 1) if umbral >= 1 else ("PLE", min(umbral, 1 - umbral)) if umbral > 0 else \
        ("NLE", min(-umbral, penumbral)) if penumbral > 0 else (None, -penumbral)
    return when, key, f"umbral magnitude {umbral:.4f}, penumbral {penumbral:.4f}", margin < MAGNITUDE_MARGIN


def main(path: str) -> None:
    with open(path, encoding="utf-8") as f:
        catalogue = [(datetime.strptime(when, "%m/%d/%Y %H:%M"), key.strip(), number) for number, (when, key) in
                     ((n, line.split(",")) for n, line in enumerate(f, 1) if line.strip() and line[0] != "#")]
    first, last = catalogue[0][0].year, catalogue[-1][0].year
    outcomes, accepted, matched = [], [], set()
    when = ephem.Date(f"{first - 1}/12/1")
    while when < ephem.Date(f"{last + 1}/2/1"):
        new_moon, full_moon = ephem.next_new_moon(when), ephem.next_full_moon(when)
        for instant, is_new in sorted([(float(new_moon), True), (float(full_moon), False)]):
            greatest, key, quantity, borderline = solar(instant) if is_new else lunar(instant)
            found = ephem.Date(greatest).datetime()
            if not (key or borderline) or not first <= found.year <= last:
                continue
            label = f"{found:%Y-%m-%d %H:%M:%S} {key or 'none'} ({quantity})"
            near = [e for e in catalogue if (e[1] in ("TSE", "ASE", "HSE", "PSE")) == is_new
                    and abs(e[0] - found) < timedelta(days=1)]
            entry = min(near, key=lambda e: abs(e[0] - found), default=None)
            if entry is None:
                if key:  # not a near miss that neither side counts
                    outcomes.append((label, [] if borderline else ["missing from the catalogue"]))
                    accepted += [f"missing on a threshold: {label}"] if borderline else []
                continue
            matched.add(entry[2])
            label = f"line {entry[2]} {entry[0]:%Y-%m-%d %H:%M} {entry[1]} against {label}"
            if entry[1] != key and borderline and abs(entry[0] - found) <= TOLERANCE:
                accepted.append(f"type on a threshold: {label}")
            outcomes.append((label, [f"time off by {abs(entry[0] - found)}"] * (abs(entry[0] - found) > TOLERANCE)
                             + ["another type"] * (entry[1] != key and not borderline)))
        when = ephem.Date(max(new_moon, full_moon) + 1)
    outcomes += [(f"line {number} {when:%Y-%m-%d %H:%M} {key}", ["not an eclipse"])
                 for when, key, number in catalogue if number not in matched]
    harness.finish(outcomes, f"{len(catalogue)} catalogued eclipses {first}-{last}; accepted on a threshold:\n  "
                   + "\n  ".join(accepted))


if __name__ == "__main__":
    main(sys.argv[1])
