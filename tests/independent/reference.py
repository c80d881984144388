"""Second, independent implementation of the record that `lunoval record` fills.

Written from the formulas alone, in plain Python, so that a disagreement with the
C++ engine points at a real fault on one side.  Floating-point expressions keep
the engine's evaluation order: Python evaluates left to right, and several
results (the day number above all) depend on that order.

Only the standard library is used.  Time zones come from the system tz database
through `zoneinfo`, phase tables are read with `plistlib`, the eclipse catalogue
line by line.
"""

from __future__ import annotations

import math
import os
import plistlib
import re
import unicodedata
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo, ZoneInfoNotFoundError

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
EPOCH = datetime(1970, 1, 1)


def rad(x: float) -> float:
    return x * PI / 180.0


def deg(x: float) -> float:
    return x * 180.0 / PI


def ieee_div(a: float, b: float) -> float:
    """Division with IEEE results instead of ZeroDivisionError."""
    if b != 0.0:
        return a / b
    if a == 0.0 or math.isnan(a):
        return math.nan
    return math.copysign(math.inf, a) * math.copysign(1.0, b)


def round_half_away(x: float) -> float:
    r = float(math.trunc(x))
    if abs(x - r) >= 0.5:  # x - trunc(x) is exact, so halves are seen as halves
        r += math.copysign(1.0, x)
    return r


# ---------------------------------------------------------------- time scale

def days_since_j2000(t: float) -> float:
    return t * 1000.0 / 8.64e7 + (-0.5) + 2440588.0 + (-2451545.0)


def date_from_days(d: float) -> float:
    return (d + 2451545.0 + (-2440588.0) + 0.5) * 86400.0


# ------------------------------------------------------------- coordinates

def sun_coordinates(d: float) -> tuple[float, float]:
    m = rad(357.5291 + 0.98560028 * d)
    c = rad(1.9148 * math.sin(m) + 0.02 * math.sin(2 * m) + 0.0003 * math.sin(3 * m))
    lon = m + c + PERIHELION + PI
    ra = math.atan2(math.sin(lon) * COS_E, math.cos(lon))
    dec = math.asin(math.sin(lon) * SIN_E + 0)
    return ra, dec


def moon_coordinates(d: float) -> tuple[float, float, float]:
    mean_lon = rad(218.316 + 13.176396 * d)
    mean_anom = rad(134.963 + 13.064993 * d)
    node_dist = rad(93.272 + 13.22935 * d)
    lon = mean_lon + 0.10976375665792337 * math.sin(mean_anom)
    lat = 0.08950048404226922 * math.sin(node_dist)
    dist = 385001.0 - 20905.0 * math.cos(mean_anom)
    ra = math.atan2(math.sin(lon) * COS_E - math.tan(lat) * SIN_E, math.cos(lon))
    dec = math.asin(math.sin(lat) * COS_E + math.cos(lat) * SIN_E * math.sin(lon))
    return ra, dec, dist


def sidereal_angle(d: float) -> float:
    return rad(280.16 + 360.9856235 * d)


def refraction(h: float) -> float:
    h0 = h if h >= 0 else 0.0
    return 0.0002967 / math.tan(h0 + 0.00312536 / (h0 + 0.08901179))


def refracted(h: float) -> float:
    return h + refraction(h)


def topocentric_moon(d: float, phi: float, theta: float) -> tuple[float, float, float]:
    ra, dec, dist = moon_coordinates(d)
    u = math.atan(EARTH_AXIS_RATIO * math.tan(phi))
    rho_sin = EARTH_AXIS_RATIO * math.sin(u) + 0
    rho_cos = math.cos(u) + 0
    sin_p = math.sin(math.asin(EARTH_RADIUS_KM / dist))
    h = theta - ra
    a = math.cos(dec) * math.sin(h)
    b = math.cos(dec) * math.cos(h) - rho_cos * sin_p
    c = math.sin(dec) - rho_sin * sin_p
    h_topo = math.atan2(a, b)
    ra_topo = math.fmod(theta - h_topo, TWO_PI)
    if ra_topo < 0:
        ra_topo += TWO_PI
    dec_topo = math.atan2(c, math.sqrt(a * a + b * b))
    return ra_topo, dec_topo, h_topo


def moon_altitude_radians(t: float, lw: float, phi: float) -> float:
    d = days_since_j2000(t)
    ra, dec, _ = moon_coordinates(d)
    h = math.asin(math.sin(phi) * math.sin(dec)
                  + math.cos(phi) * math.cos(dec) * math.cos(sidereal_angle(d) - lw - ra))
    return refracted(h)


# ---------------------------------------------------------------- calendar

def zone_named(name: str) -> ZoneInfo | None:
    try:
        return ZoneInfo(name)
    except (ZoneInfoNotFoundError, ValueError):
        return None


def _utc_datetime(seconds: int) -> datetime:
    return (EPOCH + timedelta(seconds=seconds)).replace(tzinfo=UTC)


def local_datetime(t: float, zone: ZoneInfo) -> datetime:
    # Offsets are whole seconds, so the local calendar fields of t are those of floor(t).
    return _utc_datetime(math.floor(t)).astimezone(zone)


def local_ymd(t: float, zone: ZoneInfo) -> tuple[int, int, int]:
    dt = local_datetime(t, zone)
    return dt.year, dt.month, dt.day


def _offset_at(seconds: int, zone: ZoneInfo) -> timedelta:
    return _utc_datetime(seconds).astimezone(zone).utcoffset()


def resolve_local(zone: ZoneInfo, wall: datetime) -> int:
    """Unix seconds of a naive local wall time.

    A repeated wall time gives its first occurrence; a wall time skipped by a
    forward jump gives the first instant after the gap.
    """
    found = []
    for fold in (0, 1):
        utc = wall.replace(tzinfo=zone, fold=fold).astimezone(UTC)
        if utc.astimezone(zone).replace(tzinfo=None) == wall:
            found.append(utc)
    if found:
        return int((min(found).replace(tzinfo=None) - EPOCH).total_seconds())
    # In a gap: the transition lies between the readings with either offset.
    hi = int((wall.replace(tzinfo=zone, fold=0).astimezone(UTC).replace(tzinfo=None)
              - EPOCH).total_seconds())
    lo = int((wall.replace(tzinfo=zone, fold=1).astimezone(UTC).replace(tzinfo=None)
              - EPOCH).total_seconds())
    if lo > hi:
        lo, hi = hi, lo
    after = _offset_at(hi, zone)
    while hi - lo > 1:
        mid = (lo + hi) // 2
        if _offset_at(mid, zone) == after:
            hi = mid
        else:
            lo = mid
    return hi


def start_of_day(t: float, zone: ZoneInfo) -> int:
    y, m, d = local_ymd(t, zone)
    return resolve_local(zone, datetime(y, m, d))


def local_noon(t: float, zone: ZoneInfo) -> int:
    y, m, d = local_ymd(start_of_day(t, zone), zone)
    return resolve_local(zone, datetime(y, m, d, 12, 0, 0))


def utc_instant(year: int, month: int, day: int, hour: int, minute: int) -> float | None:
    """Instant of UTC calendar fields; out-of-range fields carry over as a lenient calendar does."""
    try:
        base = datetime(year, month, 1)
        dt = base + timedelta(days=day - 1, hours=hour, minutes=minute)
    except (ValueError, OverflowError):
        return None
    return float((dt - EPOCH).days * 86400 + (dt - EPOCH).seconds)


# ---------------------------------------------------------------- sun times

def _sun_event(t: float, zone: ZoneInfo, lat: float, lng: float, rise: bool) -> float | None:
    noon = local_noon(t, zone)
    lw = -lng * PI / 180
    phi = lat * PI / 180
    d = days_since_j2000(noon)
    n = round_half_away(d - SUN_J0 - lw / TWO_PI)
    ds = (0 + lw) / TWO_PI + SUN_J0 + n
    m = rad(357.5291 + 0.98560028 * ds)
    c = rad(1.9148 * math.sin(m) + 0.02 * math.sin(2 * m) + 0.0003 * math.sin(3 * m))
    lon = m + c + PERIHELION + PI
    dec = math.asin(math.sin(lon) * SIN_E + 0)
    j_noon = ds + 2451545.0 + 0.0053 * math.sin(m) - 0.0069 * math.sin(2 * lon)
    arg = ieee_div(SIN_SUN_H0 - math.sin(phi) * math.sin(dec), math.cos(phi) * math.cos(dec))
    w = math.acos(arg) if -1.0 <= arg <= 1.0 else math.nan
    j_set = ((w + lw) / TWO_PI + SUN_J0 + n + 2451545.0
             + 0.0053 * math.sin(m) - 0.0069 * math.sin(2 * lon))
    j = j_set if not rise else j_noon + j_noon - j_set
    if not math.isfinite(j):
        return None
    return ((j + 0.5 - 2440588.0) * 86400000.0) / 1000.0


def sunrise(t: float, zone: ZoneInfo, lat: float, lng: float) -> float | None:
    return _sun_event(t, zone, lat, lng, True)


def sunset(t: float, zone: ZoneInfo, lat: float, lng: float) -> float | None:
    return _sun_event(t, zone, lat, lng, False)


def sun_altitude_deg(t: float, lat: float, lng: float) -> float:
    """Unrefracted geometric altitude of the sun (used only by the self-test)."""
    d = days_since_j2000(t)
    ra, dec = sun_coordinates(d)
    phi = rad(lat)
    h = sidereal_angle(d) + rad(lng) - ra
    return deg(math.asin(math.sin(phi) * math.sin(dec) + math.cos(phi) * math.cos(dec) * math.cos(h)))


# ------------------------------------------------------------------- moon

def moon_position(t: float, lat: float, lng: float) -> tuple[float, float]:
    lam = rad(lng)
    phi = rad(lat)
    d = days_since_j2000(t)
    ra, dec, _ = moon_coordinates(d)
    h_angle = sidereal_angle(d) + lam - ra
    h = math.asin(math.sin(phi) * math.sin(dec) + math.cos(phi) * math.cos(dec) * math.cos(h_angle))
    h = refracted(h)
    az = math.atan2(math.sin(h_angle), math.cos(h_angle) * math.sin(phi) - math.tan(dec) * math.cos(phi))
    return h * 180 / PI, az * 180 / PI + 180


def moon_rise_set(t: float, zone: ZoneInfo, want_rise: bool, lat: float, lng: float) -> float | None:
    start = float(start_of_day(t, zone))
    lw = rad(-lng)
    phi = rad(lat)
    h0 = moon_altitude_radians(start, lw, phi) - 0.0023212879051524586
    rise = None
    set_ = None
    for i in range(1, 24, 2):
        h1 = moon_altitude_radians(start + i * 3600.0, lw, phi) + MOON_HC
        h2 = moon_altitude_radians(start + (i + 1) * 3600.0, lw, phi) + MOON_HC
        a = (h0 + h2) / 2 - h1
        b = (h2 - h0) / 2
        disc = b * b + h1 * a * (-4.0)
        if disc >= 0:
            xe = ieee_div(-b, 2 * a)
            dx = ieee_div(math.sqrt(disc), abs(a) + abs(a))
            x1 = xe - dx
            x2 = xe + dx
            in1 = abs(x1) <= 1
            in2 = abs(x2) <= 1
            if in1 and in2:
                ye = h1 + xe * (b + a * xe)
                if ye >= 0:
                    rise = start + (i + x1) * 3600.0
                    set_ = start + (i + x2) * 3600.0
                else:
                    rise = start + (i + x2) * 3600.0
                    set_ = start + (i + x1) * 3600.0
            elif in1 or in2:
                x = x1 if in1 else x2
                if h0 >= 0:
                    set_ = start + (i + x) * 3600.0
                else:
                    rise = start + (i + x) * 3600.0
        h0 = h2
        if rise is not None and set_ is not None:
            break
    return rise if want_rise else set_


def moon_illumination(t: float) -> tuple[float, float, float]:
    d = days_since_j2000(t)
    ra_s, dec_s = sun_coordinates(d)
    ra_m, dec_m, dist = moon_coordinates(d)
    elong = math.acos(math.sin(dec_s) * math.sin(dec_m)
                      + math.cos(dec_s) * math.cos(dec_m) * math.cos(ra_s - ra_m))
    inc = math.atan2(SUN_DISTANCE_KM * math.sin(elong), dist - SUN_DISTANCE_KM * math.cos(elong))
    angle = math.atan2(math.cos(dec_s) * math.sin(ra_s - ra_m),
                       math.sin(dec_s) * math.cos(dec_m)
                       - math.cos(dec_s) * math.sin(dec_m) * math.cos(ra_s - ra_m))
    fraction = (math.cos(inc) + 1.0) * 0.5
    return fraction, -angle, angle * (-180.0) / PI


def moon_tilt(t: float, lat: float, lng: float) -> float:
    d = days_since_j2000(t)
    phi = rad(lat)
    lam = rad(lng)
    theta = sidereal_angle(d) + lam
    ra_s, dec_s = sun_coordinates(d)
    ra_t, dec_t, h_t = topocentric_moon(d, phi, theta)
    q = math.atan2(math.sin(h_t), math.tan(phi) * math.cos(dec_t) - math.sin(dec_t) * math.cos(h_t))
    chi = math.atan2(math.cos(dec_s) * math.sin(ra_s - ra_t),
                     math.sin(dec_s) * math.cos(dec_t)
                     - math.cos(dec_s) * math.sin(dec_t) * math.cos(ra_s - ra_t))
    x = deg(chi - q) + (-90.0)
    tilt = -x
    while tilt > 180:
        tilt -= 360
    while tilt < -180:
        tilt += 360
    return tilt


def moon_transit(t: float, lat: float, lng: float) -> float:
    d = days_since_j2000(t)
    rho_cos = math.cos(math.atan(EARTH_AXIS_RATIO * math.tan(rad(lat))))
    for _ in range(6):
        theta = sidereal_angle(d) + rad(lng)
        ra, dec, dist = moon_coordinates(d)
        sin_p = math.sin(math.asin(EARTH_RADIUS_KM / dist))
        h = math.atan2(math.cos(dec) * math.sin(theta - ra),
                       math.cos(dec) * math.cos(theta - ra) - rho_cos * sin_p)
        while h > PI:
            h -= TWO_PI
        while h < -PI:
            h += TWO_PI
        step = h / TWO_PI
        d = d - step
        if abs(step) < 1e-12:
            break
    return date_from_days(d)


def tilt_angle_for(tilt_date: float | None, lat: float, lng: float, now: float) -> float:
    if tilt_date is not None:
        return moon_tilt(tilt_date, lat, lng)
    return moon_tilt(moon_transit(now, lat, lng), lat, lng)


# ------------------------------------------------------------- phase tables

PHASE_CODES = ("NM", "FQ", "FM", "LQ")
EIGHT_WAY = {  # event code -> eight-way case
    "NM": "newMoon", "FQ": "firstQuarter", "FM": "fullMoon", "LQ": "lastQuarter",
}
PHASE_NAMES = {
    "newMoon": "New Moon", "waxingCrescent": "Waxing Crescent",
    "firstQuarter": "First Quarter", "waxingGibbous": "Waxing Gibbous",
    "fullMoon": "Full Moon", "waningGibbous": "Waning Gibbous",
    "lastQuarter": "Last Quarter", "waningCrescent": "Waning Crescent",
}

_INT_RE = re.compile(r"[+-]?[0-9]+\Z")
_INT_MIN, _INT_MAX = -(2 ** 63), 2 ** 63 - 1


def _parse_int(text: str) -> int | None:
    if not _INT_RE.match(text):
        return None
    v = int(text)
    return v if _INT_MIN <= v <= _INT_MAX else None


def parse_phase_table(data: bytes) -> dict[int, list[tuple[int, int, int, str]]] | None:
    try:
        root = plistlib.loads(data)
    except Exception:  # any unreadable document counts as "cannot parse"
        return None
    if not isinstance(root, dict):
        return None
    for k, v in root.items():
        if not isinstance(k, str) or not isinstance(v, list) or not all(isinstance(s, str) for s in v):
            return None
    table: dict[int, list[tuple[int, int, int, str]]] = {}
    for key, lines in root.items():
        month = _parse_int(key)
        if month is None:
            continue
        events = []
        for line in lines:
            parts = line.split(" ")
            if len(parts) != 3:
                continue
            day = _parse_int(parts[0])
            hm = parts[1].split(":")
            if len(hm) != 2:
                continue
            hour, minute = _parse_int(hm[0]), _parse_int(hm[1])
            if day is None or hour is None or minute is None or parts[2] not in PHASE_CODES:
                continue
            events.append((day, hour, minute, parts[2]))
        table[month] = events
    return table


class PhaseTables:
    """Per-year tables read from <root>/com.orvane.Orvane/Data/<year>.plist, cached."""

    BUNDLE = "com.orvane.Orvane"

    def __init__(self, resource_root: str):
        self.root = resource_root
        self._cache: dict[int, dict] = {}

    def _load(self, year: int):
        if year in self._cache:
            return self._cache[year]
        path = os.path.join(self.root, self.BUNDLE, "Data", f"{year}.plist")
        try:
            with open(path, "rb") as f:
                data = f.read()
        except OSError:
            return None
        table = parse_phase_table(data)
        if table is not None:
            self._cache[year] = table
        return table

    def events(self, year: int, month: int) -> list[tuple[int, int, int, str]]:
        table = self._load(year)
        if table is None:
            return []
        return table.get(month, [])


def next_phase(t: float, zone: ZoneInfo, tables: PhaseTables):
    """(event, days until) of the current local month's next tabulated phase, or None."""
    year, month, day = local_ymd(t, zone)
    for ev in sorted(tables.events(year, month), key=lambda e: e[0]):
        inst = utc_instant(year, month, ev[0], ev[1], ev[2])
        if inst is None:
            continue
        local_day = local_ymd(inst, zone)[2]
        if local_day < day:
            continue
        return ev, local_day - day
    return None


def moon_phase(t: float, zone: ZoneInfo, include_tilt: bool, tilt_date: float | None,
               lat: float, lng: float, tables: PhaseTables, now: float | None = None) -> dict:
    now = t if now is None else now
    fraction, _, angle = moon_illumination(t)
    year, month, day = local_ymd(t, zone)
    kind = None
    for ev in tables.events(year, month):
        inst = utc_instant(year, month, ev[0], ev[1], ev[2])
        if inst is None:
            continue
        if local_ymd(inst, zone)[2] == day:
            kind = EIGHT_WAY[ev[3]]
            break
    if kind is None:
        waxing = angle > 0
        if fraction < 0.1 or fraction < 0.5:
            kind = "waxingCrescent" if waxing else "waningCrescent"
        else:
            kind = "waxingGibbous" if waxing else "waningGibbous"
    tilt = tilt_angle_for(tilt_date, lat, lng, now) if include_tilt else 0.0
    return {
        "illumination": fraction,
        "phaseAngle": angle,
        "phaseName": PHASE_NAMES[kind],
        "phaseType": kind,
        "tiltAngle": tilt,
    }


# ---------------------------------------------------------- eclipse catalogue

ECLIPSE_TITLES = {
    "TLE": "Total Lunar Eclipse", "PLE": "Partial Lunar Eclipse", "NLE": "Penumbra Lunar Eclipse",
    "TSE": "Total Solar Eclipse", "PSE": "Partial Solar Eclipse", "ASE": "Annular Solar Eclipse",
    "HSE": "Hybrid Solar Eclipse",
}
NEWLINES = "\n\x0b\x0c\r\x85\u2028\u2029"
_ECLIPSE_DATE_RE = re.compile(r"(\d\d)/(\d\d)/(\d\d\d\d) (\d\d):(\d\d)\Z")


def _blank(c: str, newlines: bool) -> bool:
    return c == "\t" or unicodedata.category(c) == "Zs" or (newlines and c in NEWLINES)


def strip_blanks(text: str, newlines: bool = False) -> str:
    """Text without tabs and space separators (and newline characters if asked) at its ends."""
    start, end = 0, len(text)
    while start < end and _blank(text[start], newlines):
        start += 1
    while end > start and _blank(text[end - 1], newlines):
        end -= 1
    return text[start:end]


def catalogue_lines(text: str) -> list[str]:
    """Pieces between single newline characters; CR LF leaves an empty piece."""
    return re.split("[" + NEWLINES + "]", text)


def eclipse_instant(text: str) -> float | None:
    m = _ECLIPSE_DATE_RE.match(text)
    if not m:
        return None
    month, day, year, hour, minute = (int(g) for g in m.groups())
    try:
        dt = datetime(year, month, day, hour, minute)
    except ValueError:
        return None
    return float((dt - EPOCH).days * 86400 + (dt - EPOCH).seconds)


def parse_catalogue(text: str, zone: ZoneInfo) -> tuple[dict[float, str], list[str]]:
    """({instant: key}, warnings) of the catalogue text; years are counted in `zone`."""
    table: dict[float, str] = {}
    warnings = []
    for number, raw in enumerate(catalogue_lines(text), start=1):
        line = strip_blanks(raw)
        if not line or line.startswith("#"):
            continue
        parts = line.split(",")
        if len(parts) != 2:
            warnings.append(f"Warning: Invalid entry at line {number}: {line}")
            continue
        date_text, key = strip_blanks(parts[0]), strip_blanks(parts[1])
        if not key:
            warnings.append(f"Warning: Empty event key at line {number}")
        elif key not in ECLIPSE_TITLES:
            warnings.append(f"Warning: Unknown event key '{key}' at line {number}")
        elif not date_text:
            warnings.append(f"Warning: Empty date string at line {number}")
        elif (instant := eclipse_instant(date_text)) is None:
            warnings.append(f"Warning: Could not parse date '{date_text}' at line {number}")
        elif not 1900 <= local_ymd(instant, zone)[0] <= 2100:
            warnings.append(f"Warning: Date {date_text} is outside valid range (1900-2100)")
        elif instant in table:
            warnings.append(f"Warning: Duplicate date entry at line {number}: {date_text}")
        else:
            table[instant] = key
    return table, warnings


class EclipseCatalogue:
    """Data/events.txt of the framework bundle, else of the host app; parsed per device zone."""

    BUNDLES = ("com.orvane.Orvane", "com.orvane.Lunoval")

    def __init__(self, resource_root: str):
        self.text = None
        for bundle in self.BUNDLES:
            path = os.path.join(resource_root, bundle, "Data", "events.txt")
            if not os.path.isfile(path):
                continue
            try:
                with open(path, "rb") as f:
                    self.text = f.read().decode("utf-8")
            except (OSError, UnicodeDecodeError):
                pass  # the first file found is the catalogue, readable or not
            break
        self._tables: dict[str, dict[float, str]] = {}

    def table(self, device_zone: ZoneInfo) -> dict[float, str]:
        if self.text is None or not strip_blanks(self.text, newlines=True):
            return {}
        name = str(device_zone)
        if name not in self._tables:
            self._tables[name] = parse_catalogue(self.text, device_zone)[0]
        return self._tables[name]


def next_local_day(t: int, zone: ZoneInfo) -> int:
    wall = local_datetime(t, zone).replace(tzinfo=None) + timedelta(days=1)
    return resolve_local(zone, wall)


def moon_up_for_eclipse(t: float, zone: ZoneInfo, lat: float, lng: float) -> bool:
    day_start = start_of_day(t, zone)
    rise = moon_rise_set(day_start, zone, True, lat, lng)
    set_ = moon_rise_set(day_start, zone, False, lat, lng)
    if rise is None or set_ is None:
        return False
    if rise <= set_:
        return rise <= t <= set_
    return day_start <= t <= set_ or rise <= t <= next_local_day(day_start, zone)


def sun_up_for_eclipse(t: float, zone: ZoneInfo, lat: float, lng: float) -> bool:
    rise, set_ = sunrise(t, zone, lat, lng), sunset(t, zone, lat, lng)
    return rise is not None and set_ is not None and rise <= t <= set_


def eclipse_info(t: float, zone: ZoneInfo, lat: float | None, lng: float | None,
                 table: dict[float, str]) -> dict | None:
    """The earliest catalogued eclipse on t's local day, with its visibility from the place."""
    day = local_ymd(t, zone)
    for instant in sorted(table):
        if local_ymd(instant, zone) != day:
            continue
        key = table[instant]
        lunar = "LE" in key
        if lat is None or lng is None:
            visible = True
        elif lunar:
            visible = moon_up_for_eclipse(instant, zone, lat, lng)
        else:
            visible = sun_up_for_eclipse(instant, zone, lat, lng)
        return {"key": key, "title": ECLIPSE_TITLES[key], "datetime": instant,
                "isLunarEvent": lunar, "isVisible": visible}
    return None


# ------------------------------------------------------------------ record

def when_text(days: int) -> str:
    if days == 1:
        return "tomorrow"
    if days == 0:
        return "today"
    return f"in {days} days"


def record(lat: float, lng: float, zone_name: str, t: float, tables: PhaseTables,
           catalogue: EclipseCatalogue | None = None) -> dict:
    """The record filled for a device location at instant t (tilt date = t), the device being
    in the place's zone."""
    rec = {
        "latitude": lat, "longitude": lng, "timezone": zone_name, "locationName": None,
        "isPlaceholder": False, "needsLocationPermission": False, "selectedTime": t,
        "sunrise": None, "sunset": None, "moonrise": None, "moonset": None,
        "moonAzimuth": None, "moonAltitude": None, "currentMoonPhase": None,
        "nextMoonPhase": None, "nextPhaseTime": None, "eclipseInfo": None,
    }
    zone = zone_named(zone_name)
    if zone is None:
        return rec
    rec["moonrise"] = moon_rise_set(t, zone, True, lat, lng)
    rec["moonset"] = moon_rise_set(t, zone, False, lat, lng)
    alt, az = moon_position(t, lat, lng)
    rec["moonAzimuth"] = az
    rec["moonAltitude"] = alt
    rec["sunrise"] = sunrise(t, zone, lat, lng)
    rec["sunset"] = sunset(t, zone, lat, lng)
    rec["currentMoonPhase"] = moon_phase(t, zone, True, t, lat, lng, tables)
    nxt = next_phase(t, zone, tables)
    if nxt is not None:
        ev, days = nxt
        year, month, _ = local_ymd(t, zone)
        inst = utc_instant(year, month, ev[0], ev[1], ev[2])
        if inst is not None:
            rec["nextMoonPhase"] = moon_phase(inst, zone, True, t, lat, lng, tables)
        rec["nextPhaseTime"] = when_text(days)
    if catalogue is not None:
        rec["eclipseInfo"] = eclipse_info(t, zone, lat, lng, catalogue.table(zone))
    return rec
