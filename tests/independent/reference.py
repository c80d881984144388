# A second implementation of the record `lunoval record` fills, written from the formulas alone
# in plain Python, so that a disagreement points at a real fault on one side. Expressions keep
# the engine's evaluation order: several results, the day number above all, depend on it.

from __future__ import annotations

import calendar
import functools
import math
import os
import plistlib
import re
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

PI = 3.141592653589793
TWO_PI = 6.283185307179586
SIN_E = 0.39778370349342274
COS_E = 0.9174792233260962
PERIHELION = 1.796593062783907
EARTH_RADIUS_KM = 6378.137
EARTH_AXIS_RATIO = 0.9966471893352525
SUN_DISTANCE_KM = 1.49598e8
SUN_J0 = 0.0009
SIN_SUN_H0 = -0.014538080502496949
MOON_HC = -0.0023212879051524586
UTC = timezone.utc
DATA = os.path.join("com.orvane.Orvane", "Data")


def rad(x: float) -> float:
    return x * PI / 180.0


def round_half_away(x: float) -> float:
    r = float(math.trunc(x))
    return r + math.copysign(1.0, x) if abs(x - r) >= 0.5 else r


def days_since_j2000(t: float) -> float:
    return t * 1000.0 / 8.64e7 + (-0.5) + 2440588.0 + (-2451545.0)


def sun_anomaly_and_longitude(d: float) -> tuple[float, float]:
    m = rad(357.5291 + 0.98560028 * d)
    c = rad(1.9148 * math.sin(m) + 0.02 * math.sin(2 * m) + 0.0003 * math.sin(3 * m))
    return m, m + c + PERIHELION + PI


def sun_coordinates(d: float) -> tuple[float, float]:
    _, lon = sun_anomaly_and_longitude(d)
    return math.atan2(math.sin(lon) * COS_E, math.cos(lon)), math.asin(math.sin(lon) * SIN_E + 0)


def moon_coordinates(d: float) -> tuple[float, float, float]:
    mean_lon = rad(218.316 + 13.176396 * d)
    mean_anom = rad(134.963 + 13.064993 * d)
    lon = mean_lon + 0.10976375665792337 * math.sin(mean_anom)
    lat = 0.08950048404226922 * math.sin(rad(93.272 + 13.22935 * d))
    ra = math.atan2(math.sin(lon) * COS_E - math.tan(lat) * SIN_E, math.cos(lon))
    dec = math.asin(math.sin(lat) * COS_E + math.cos(lat) * SIN_E * math.sin(lon))
    return ra, dec, 385001.0 - 20905.0 * math.cos(mean_anom)


def sidereal_angle(d: float) -> float:
    return rad(280.16 + 360.9856235 * d)


def refracted(h: float) -> float:
    h0 = h if h >= 0 else 0.0
    return h + 0.0002967 / math.tan(h0 + 0.00312536 / (h0 + 0.08901179))


def altitude(phi: float, dec: float, hour_angle: float) -> float:
    return math.asin(math.sin(phi) * math.sin(dec) + math.cos(phi) * math.cos(dec) * math.cos(hour_angle))


def topocentric_moon(d: float, phi: float, theta: float) -> tuple[float, float, float]:
    ra, dec, dist = moon_coordinates(d)
    u = math.atan(EARTH_AXIS_RATIO * math.tan(phi))
    sin_p = math.sin(math.asin(EARTH_RADIUS_KM / dist))
    h = theta - ra
    a = math.cos(dec) * math.sin(h)
    b = math.cos(dec) * math.cos(h) - (math.cos(u) + 0) * sin_p
    c = math.sin(dec) - (EARTH_AXIS_RATIO * math.sin(u) + 0) * sin_p
    h_topo = math.atan2(a, b)
    return math.fmod(theta - h_topo, TWO_PI) % TWO_PI, math.atan2(c, math.sqrt(a * a + b * b)), h_topo


# ---------------------------------------------------------------- calendar

def local_datetime(t: float, zone: ZoneInfo) -> datetime:
    # Offsets are whole seconds, so the local calendar fields of t are those of floor(t).
    return datetime.fromtimestamp(math.floor(t), zone)


def local_ymd(t: float, zone: ZoneInfo) -> tuple[int, int, int]:
    return local_datetime(t, zone).timetuple()[:3]


def first_change(zone: ZoneInfo, lo: int, hi: int) -> int:
    # The first second after lo whose offset differs from lo's, knowing one lies up to hi.
    before = local_datetime(lo, zone).utcoffset()
    while hi - lo > 1:
        mid = (lo + hi) // 2
        lo, hi = (mid, hi) if local_datetime(mid, zone).utcoffset() == before else (lo, mid)
    return hi


def resolve_local(zone: ZoneInfo, wall: datetime) -> int:
    # A repeated wall time gives its first occurrence; a skipped one the end of the gap.
    readings = [int(wall.replace(tzinfo=zone, fold=fold).timestamp()) for fold in (0, 1)]
    real = [t for t in readings if local_datetime(t, zone).replace(tzinfo=None) == wall]
    return min(real) if real else first_change(zone, min(readings), max(readings))


def start_of_day(t: float, zone: ZoneInfo) -> int:
    return resolve_local(zone, datetime(*local_ymd(t, zone)))


def local_noon(t: float, zone: ZoneInfo) -> int:
    return resolve_local(zone, datetime(*local_ymd(start_of_day(t, zone), zone), 12))


def utc_instant(year: int, month: int, day: int, hour: int = 0, minute: int = 0) -> float:
    return float(calendar.timegm((year, month, day, hour, minute, 0)))


# ---------------------------------------------------------------- sun and moon

def sun_event(t: float, zone: ZoneInfo, lat: float, lng: float, rise: bool) -> float | None:
    lw = -lng * PI / 180
    phi = lat * PI / 180
    n = round_half_away(days_since_j2000(local_noon(t, zone)) - SUN_J0 - lw / TWO_PI)
    ds = (0 + lw) / TWO_PI + SUN_J0 + n
    m, lon = sun_anomaly_and_longitude(ds)
    dec = math.asin(math.sin(lon) * SIN_E + 0)
    j_noon = ds + 2451545.0 + 0.0053 * math.sin(m) - 0.0069 * math.sin(2 * lon)
    arg = (SIN_SUN_H0 - math.sin(phi) * math.sin(dec)) / (math.cos(phi) * math.cos(dec))
    w = math.acos(arg) if -1.0 <= arg <= 1.0 else math.nan
    j = (w + lw) / TWO_PI + SUN_J0 + n + 2451545.0 + 0.0053 * math.sin(m) - 0.0069 * math.sin(2 * lon)
    if rise:
        j = j_noon + j_noon - j
    return ((j + 0.5 - 2440588.0) * 86400000.0) / 1000.0 if math.isfinite(j) else None


def moon_position(t: float, lat: float, lng: float) -> tuple[float, float]:
    # (altitude, azimuth) in degrees, the altitude refracted.
    phi = rad(lat)
    d = days_since_j2000(t)
    ra, dec, _ = moon_coordinates(d)
    h_angle = sidereal_angle(d) + rad(lng) - ra
    h = refracted(altitude(phi, dec, h_angle))
    az = math.atan2(math.sin(h_angle), math.cos(h_angle) * math.sin(phi) - math.tan(dec) * math.cos(phi))
    return h * 180 / PI, az * 180 / PI + 180


def moon_rise_set(t: float, zone: ZoneInfo, lat: float, lng: float) -> tuple[float | None, float | None]:
    # Rise and set on t's local day, by parabolas through the altitudes two hours apart.
    start = float(start_of_day(t, zone))
    lw, phi = rad(-lng), rad(lat)

    def height(hours: int) -> float:
        d = days_since_j2000(start + hours * 3600.0)
        ra, dec, _ = moon_coordinates(d)
        return refracted(altitude(phi, dec, sidereal_angle(d) - lw - ra)) + MOON_HC

    rise = set_ = None
    h0 = height(0)
    for i in range(1, 24, 2):
        h1, h2 = height(i), height(i + 1)
        a, b = (h0 + h2) / 2 - h1, (h2 - h0) / 2
        disc = b * b + h1 * a * (-4.0)
        if disc >= 0:
            xe = -b / (2 * a)
            dx = math.sqrt(disc) / (abs(a) + abs(a))
            x1, x2 = xe - dx, xe + dx
            if abs(x1) <= 1 and abs(x2) <= 1:
                up_first = h1 + xe * (b + a * xe) >= 0
                rise = start + (i + (x1 if up_first else x2)) * 3600.0
                set_ = start + (i + (x2 if up_first else x1)) * 3600.0
            elif abs(x1) <= 1 or abs(x2) <= 1:
                x = start + (i + (x1 if abs(x1) <= 1 else x2)) * 3600.0
                set_, rise = (x, rise) if h0 >= 0 else (set_, x)
        h0 = h2
        if rise is not None and set_ is not None:
            break
    return rise, set_


def moon_illumination(t: float) -> tuple[float, float]:
    # (lit fraction, phase angle in degrees).
    d = days_since_j2000(t)
    ra_s, dec_s = sun_coordinates(d)
    ra_m, dec_m, dist = moon_coordinates(d)
    elong = math.acos(math.sin(dec_s) * math.sin(dec_m) + math.cos(dec_s) * math.cos(dec_m) * math.cos(ra_s - ra_m))
    inc = math.atan2(SUN_DISTANCE_KM * math.sin(elong), dist - SUN_DISTANCE_KM * math.cos(elong))
    angle = math.atan2(math.cos(dec_s) * math.sin(ra_s - ra_m),
                       math.sin(dec_s) * math.cos(dec_m) - math.cos(dec_s) * math.sin(dec_m) * math.cos(ra_s - ra_m))
    return (math.cos(inc) + 1.0) * 0.5, angle * (-180.0) / PI


def moon_tilt(t: float, lat: float, lng: float) -> float:
    d = days_since_j2000(t)
    phi = rad(lat)
    ra_s, dec_s = sun_coordinates(d)
    ra_t, dec_t, h_t = topocentric_moon(d, phi, sidereal_angle(d) + rad(lng))
    q = math.atan2(math.sin(h_t), math.tan(phi) * math.cos(dec_t) - math.sin(dec_t) * math.cos(h_t))
    chi = math.atan2(math.cos(dec_s) * math.sin(ra_s - ra_t),
                     math.sin(dec_s) * math.cos(dec_t) - math.cos(dec_s) * math.sin(dec_t) * math.cos(ra_s - ra_t))
    tilt = -((chi - q) * 180.0 / PI + (-90.0))
    while tilt > 180:
        tilt -= 360
    while tilt < -180:
        tilt += 360
    return tilt


# ---------------------------------------------------------------- phases and eclipses

PHASES = {"NM": "newMoon", "FQ": "firstQuarter", "FM": "fullMoon", "LQ": "lastQuarter"}


@functools.cache
def phase_table(root: str, year: int) -> dict[str, list[str]]:
    try:
        with open(os.path.join(root, DATA, f"{year}.plist"), "rb") as f:
            return plistlib.load(f)
    except OSError:
        return {}


def phase_events(root: str, year: int, month: int) -> list[tuple[int, int, int, str]]:
    # The month's principal phases, (day, hour, minute, code) in UTC.
    return [(int(day), int(time[:-3]), int(time[-2:]), code) for day, time, code in
            (line.split() for line in phase_table(root, year).get(str(month), []))]


def local_events(t: float, zone: ZoneInfo, root: str):
    # (table's day, instant, local day of month, code) of the phases of t's local month.
    year, month, _ = local_ymd(t, zone)
    for day, hour, minute, code in phase_events(root, year, month):
        instant = utc_instant(year, month, day, hour, minute)
        yield day, instant, local_ymd(instant, zone)[2], code


def moon_phase(t: float, zone: ZoneInfo, tilt_date: float, lat: float, lng: float, root: str) -> dict:
    fraction, angle = moon_illumination(t)
    today = local_ymd(t, zone)[2]
    kind = next((PHASES[code] for _, _, day, code in local_events(t, zone, root) if day == today), None)
    if kind is None:
        kind = ("waxing" if angle > 0 else "waning") + ("Crescent" if fraction < 0.5 else "Gibbous")
    return {"illumination": fraction, "phaseAngle": angle, "phaseName": re.sub("([A-Z])", r" \1", kind).title(),
            "phaseType": kind, "tiltAngle": moon_tilt(tilt_date, lat, lng)}


def read_eclipses(root: str) -> dict[float, str]:
    # {instant: key} of the catalogue, whose instants are UTC wall-clock times.
    table = {}
    with open(os.path.join(root, DATA, "events.txt"), encoding="utf-8") as f:
        for line in (raw.strip() for raw in f):
            if line and not line.startswith("#"):
                when, key = line.split(",")
                table.setdefault(float(calendar.timegm(datetime.strptime(when, "%m/%d/%Y %H:%M").timetuple())), key)
    return table


def eclipse_seen(instant: float, zone: ZoneInfo, lat: float, lng: float, lunar: bool) -> bool:
    if not lunar:
        rise, set_ = sun_event(instant, zone, lat, lng, True), sun_event(instant, zone, lat, lng, False)
        return rise is not None and set_ is not None and rise <= instant <= set_
    day_start = start_of_day(instant, zone)
    rise, set_ = moon_rise_set(day_start, zone, lat, lng)
    if rise is None or set_ is None:
        return False
    if rise <= set_:
        return rise <= instant <= set_
    next_day = resolve_local(zone, local_datetime(day_start, zone).replace(tzinfo=None) + timedelta(days=1))
    return day_start <= instant <= set_ or rise <= instant <= next_day


def eclipse_info(t: float, zone: ZoneInfo, lat: float, lng: float, table: dict[float, str]) -> dict | None:
    # The earliest catalogued eclipse of t's local day, and whether the place sees it.
    day = local_ymd(t, zone)
    for instant in sorted(i for i in table if abs(i - t) < 2 * 86400 and local_ymd(i, zone) == day):
        key = table[instant]
        lunar = "LE" in key
        return {"key": key, "datetime": instant, "isLunarEvent": lunar,
                "isVisible": eclipse_seen(instant, zone, lat, lng, lunar)}
    return None


def record(lat: float, lng: float, zone_name: str, t: float, root: str, eclipses: dict[float, str]) -> dict:
    # The record of a device location at instant t, the device being in the place's zone.
    rec = dict.fromkeys(("locationName", "sunrise", "sunset", "moonrise", "moonset", "moonAzimuth",
                         "moonAltitude", "currentMoonPhase", "nextMoonPhase", "nextPhaseTime", "eclipseInfo"))
    rec.update(latitude=lat, longitude=lng, timezone=zone_name, isPlaceholder=False,
               needsLocationPermission=False, selectedTime=t)
    zone = ZoneInfo(zone_name)
    rec["moonrise"], rec["moonset"] = moon_rise_set(t, zone, lat, lng)
    rec["moonAltitude"], rec["moonAzimuth"] = moon_position(t, lat, lng)
    rec["sunrise"], rec["sunset"] = sun_event(t, zone, lat, lng, True), sun_event(t, zone, lat, lng, False)
    rec["currentMoonPhase"] = moon_phase(t, zone, t, lat, lng, root)
    today = local_ymd(t, zone)[2]
    # The first in the table's order of days whose local day has not passed; only days compare.
    coming = [(day, instant) for _, instant, day, _ in sorted(local_events(t, zone, root), key=lambda e: e[0])
              if day >= today]
    if coming:
        day, instant = coming[0]
        rec["nextMoonPhase"] = moon_phase(instant, zone, t, lat, lng, root)
        days = day - today
        rec["nextPhaseTime"] = "today" if days == 0 else "tomorrow" if days == 1 else f"in {days} days"
    rec["eclipseInfo"] = eclipse_info(t, zone, lat, lng, eclipses)
    return rec
