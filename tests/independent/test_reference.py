"""Self-test of the independent reference: published values, physical sanity and
calendar edge cases, so that the cross-check compares against something sound."""

import math
import os
import plistlib
import sys
import tempfile
import unittest
from datetime import datetime, timezone
from zoneinfo import ZoneInfo

sys.dont_write_bytecode = True  # keep the source tree clean when run from CTest
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import reference as ref  # noqa: E402


def unix(*fields) -> float:
    return datetime(*fields, tzinfo=timezone.utc).timestamp()


def crossing(f, lo: float, hi: float) -> float:
    """Instant in [lo, hi] where f changes sign, by bisection."""
    flo = f(lo)
    assert (flo > 0) != (f(hi) > 0)
    while hi - lo > 0.5:
        mid = (lo + hi) / 2
        if (f(mid) > 0) == (flo > 0):
            lo = mid
        else:
            hi = mid
    return lo


def wrap180(x: float) -> float:
    return (x + 180.0) % 360.0 - 180.0


class TimeScale(unittest.TestCase):
    def test_j2000_epoch_round_trips(self):
        self.assertEqual(ref.days_since_j2000(946728000), 0.0)
        self.assertEqual(ref.date_from_days(0.0), 946728000.0)

    def test_day_number_steps_by_whole_days(self):
        for t, d in [(946728000 + 86400, 1.0), (946728000 - 86400 * 36525, -36525.0),
                     (0, -10957.5)]:
            with self.subTest(t=t):
                self.assertAlmostEqual(ref.days_since_j2000(t), d, places=9)

    def test_rounding_is_half_away_from_zero(self):
        cases = [(0.5, 1.0), (-0.5, -1.0), (1.5, 2.0), (2.5, 3.0), (-2.5, -3.0),
                 (0.49999999999999994, 0.0), (-1.4999999, -1.0), (7.0, 7.0)]
        for x, want in cases:
            with self.subTest(x=x):
                self.assertEqual(ref.round_half_away(x), want)


class Coordinates(unittest.TestCase):
    def test_sun_at_epoch(self):
        ra, dec = ref.sun_coordinates(0.0)
        self.assertAlmostEqual(math.degrees(ra) % 360.0, 281.2927, places=4)
        self.assertAlmostEqual(math.degrees(dec), -23.0336, places=4)

    def test_sun_declination_at_solstices_and_equinox(self):
        cases = [(unix(2024, 6, 20, 20, 51), 23.44), (unix(2024, 12, 21, 9, 20), -23.44),
                 (unix(2024, 3, 20, 3, 6), 0.0)]
        for t, want in cases:
            with self.subTest(t=t):
                _, dec = ref.sun_coordinates(ref.days_since_j2000(t))
                # No precession of the perihelion: a few hours of drift by 2024.
                self.assertAlmostEqual(math.degrees(dec), want, delta=0.2)

    def test_refraction_clamps_inside_the_tangent_only(self):
        self.assertAlmostEqual(ref.refraction(-0.5), 0.0084467, places=7)
        self.assertEqual(ref.refraction(-0.5), ref.refraction(0.0))
        self.assertEqual(ref.refracted(-0.5), -0.5 + ref.refraction(0.0))
        self.assertLess(ref.refraction(0.5), ref.refraction(0.0))

    def test_topocentric_moon_stays_finite_at_the_poles(self):
        for lat in (90.0, -90.0):
            with self.subTest(lat=lat):
                out = ref.topocentric_moon(1234.5, math.radians(lat), 2.0)
                self.assertTrue(all(math.isfinite(v) for v in out))
                self.assertTrue(0.0 <= out[0] < 2 * math.pi)
                tilt = ref.moon_tilt(unix(2026, 1, 1), lat, 0.0)
                self.assertTrue(-180.0 <= tilt <= 180.0)

    def test_moon_distance_and_parallax_lower_the_topocentric_moon(self):
        d = ref.days_since_j2000(unix(2025, 5, 5, 12))
        ra, dec, dist = ref.moon_coordinates(d)
        self.assertTrue(356000 < dist < 407000)
        # An observer on the equator sees the moon up to about a degree lower.
        _, dec_t, _ = ref.topocentric_moon(d, 0.0, ref.sidereal_angle(d))
        self.assertLess(abs(dec_t - dec), math.radians(1.1))


class SunTimes(unittest.TestCase):
    def test_polar_day_and_night_have_no_sun_times(self):
        utc = ZoneInfo("UTC")
        for lat, when in [(80.0, unix(2025, 6, 25, 12)), (80.0, unix(2025, 12, 25, 12)),
                          (-80.0, unix(2025, 6, 25, 12)), (90.0, unix(2025, 3, 1)),
                          (-90.0, unix(2025, 9, 1))]:
            with self.subTest(lat=lat, when=when):
                self.assertIsNone(ref.sunrise(when, utc, lat, 15.0))
                self.assertIsNone(ref.sunset(when, utc, lat, 15.0))

    def test_sun_stands_at_minus_0_833_at_rise_and_set(self):
        cases = [(51.4779, -0.0015, "Europe/London", unix(2025, 3, 20, 12)),
                 (-33.86, 151.21, "Australia/Sydney", unix(2025, 1, 10, 2)),
                 (64.1, -21.9, "Atlantic/Reykjavik", unix(2025, 6, 1, 12)),
                 (0.0, 179.9, "Pacific/Kiritimati", unix(2026, 8, 8))]
        for lat, lng, zone, t in cases:
            for fn in (ref.sunrise, ref.sunset):
                with self.subTest(zone=zone, fn=fn.__name__):
                    e = fn(t, ZoneInfo(zone), lat, lng)
                    self.assertIsNotNone(e)
                    true_e = crossing(lambda x: ref.sun_altitude_deg(x, lat, lng) + 0.833, e - 1800, e + 1800)
                    # The transit method keeps the declination of noon: a minute or two off.
                    self.assertLess(abs(e - true_e), 150)

    def test_any_instant_of_a_local_day_gives_the_same_times(self):
        zone = ZoneInfo("America/New_York")
        day = [unix(2025, 7, 4, 4, 0, 1), unix(2025, 7, 4, 16), unix(2025, 7, 5, 3, 59, 59)]
        got = {(ref.sunrise(t, zone, 40.7, -74.0), ref.sunset(t, zone, 40.7, -74.0)) for t in day}
        self.assertEqual(len(got), 1)

    def test_greenwich_equinox_times(self):
        zone = ZoneInfo("Europe/London")
        t = unix(2025, 3, 20, 12)
        rise, set_ = ref.sunrise(t, zone, 51.4779, 0.0), ref.sunset(t, zone, 51.4779, 0.0)
        self.assertAlmostEqual(rise, unix(2025, 3, 20, 6, 3), delta=240)
        self.assertAlmostEqual(set_, unix(2025, 3, 20, 18, 14), delta=240)


class MoonPositionAndRiseSet(unittest.TestCase):
    def test_azimuth_range_and_cardinal_points(self):
        for t in range(1700000000, 1700000000 + 30 * 86400, 7919):
            _, az = ref.moon_position(t, 47.0, 8.0)
            self.assertTrue(0.0 <= az <= 360.0)

    def test_moon_stands_at_the_event_altitude_at_rise_and_set(self):
        cases = [(40.7, -74.0, "America/New_York"), (-33.9, 151.2, "Australia/Sydney"),
                 (27.7, 85.3, "Asia/Kathmandu"), (51.48, 0.0, "Europe/London")]
        for lat, lng, zone in cases:
            for k in range(6):
                t = unix(2025, 2, 3) + k * 5 * 86400
                for want_rise in (True, False):
                    e = ref.moon_rise_set(t, ZoneInfo(zone), want_rise, lat, lng)
                    if e is None:
                        continue
                    with self.subTest(zone=zone, k=k, rise=want_rise):
                        def above(x):
                            return ref.moon_position(x, lat, lng)[0] - 0.133
                        # The parabola through hourly samples lands within a minute or so.
                        self.assertLess(abs(e - crossing(above, e - 1800, e + 1800)), 120)
                        start = ref.start_of_day(t, ZoneInfo(zone))
                        self.assertTrue(start <= e <= start + 86400)
                        self.assertEqual(above(e + 1200) > above(e - 1200), want_rise)

    def test_about_one_day_a_month_lacks_a_moonrise(self):
        zone = ZoneInfo("Europe/Berlin")
        missing = sum(ref.moon_rise_set(unix(2025, 1, 1, 12) + k * 86400, zone, True, 52.5, 13.4) is None
                      for k in range(365))
        self.assertTrue(8 <= missing <= 16, missing)

    def test_circumpolar_moon_has_neither_event(self):
        # Near a major lunar standstill the moon stays up all day at 85 N for days.
        zone = ZoneInfo("UTC")
        days = [unix(2025, 1, 1) + k * 86400 for k in range(30)]
        both_absent = [t for t in days
                       if ref.moon_rise_set(t, zone, True, 85.0, 0.0) is None
                       and ref.moon_rise_set(t, zone, False, 85.0, 0.0) is None]
        self.assertGreater(len(both_absent), 5)
        alts = {ref.moon_position(t + 3600 * h, 85.0, 0.0)[0] > 0 for t in both_absent[:1] for h in range(24)}
        self.assertEqual(len(alts), 1)


class Illumination(unittest.TestCase):
    def test_known_phases(self):
        # (instant, expected fraction, delta, waxing)
        cases = [(unix(2024, 4, 23, 23, 49), 1.0, 0.003, None),
                 (unix(2024, 4, 8, 18, 21), 0.0, 0.003, None),
                 (unix(2024, 4, 15, 19, 13), 0.5, 0.03, True),
                 (unix(2024, 5, 1, 11, 27), 0.5, 0.03, False),
                 (unix(2024, 4, 11, 12), 0.1, 0.06, True),
                 (unix(2024, 4, 28, 12), 0.75, 0.1, False)]
        for t, frac, delta, waxing in cases:
            with self.subTest(t=t):
                f, _, angle = ref.moon_illumination(t)
                self.assertAlmostEqual(f, frac, delta=delta)
                self.assertTrue(-180.0 <= angle <= 180.0)
                if waxing is not None:
                    self.assertEqual(angle > 0, waxing)

    def test_tilt_wraps_into_half_open_turn(self):
        for t in range(1700000000, 1700000000 + 40 * 86400, 3 * 3601):
            for lat in (-89.9, -45.0, 0.0, 45.0, 89.9):
                tilt = ref.moon_tilt(t, lat, 100.0)
                self.assertTrue(-180.0 <= tilt <= 180.0)

    def test_transit_is_a_meridian_passage_near_the_date(self):
        t0 = unix(2025, 9, 9, 12)
        tr = ref.moon_transit(t0, 48.0, 11.0)
        self.assertLess(abs(tr - t0), 0.6 * 86400)
        d = ref.days_since_j2000(tr)
        _, _, h = ref.topocentric_moon(d, math.radians(48.0), ref.sidereal_angle(d) + math.radians(11.0))
        self.assertLess(abs(wrap180(math.degrees(h))), 0.01)


class Calendar(unittest.TestCase):
    def test_wall_time_resolution(self):
        berlin = ZoneInfo("Europe/Berlin")
        cases = [  # zone, wall time, expected unix instant
            (berlin, datetime(2026, 3, 29, 2, 30), unix(2026, 3, 29, 1, 0)),   # skipped
            (berlin, datetime(2026, 10, 25, 2, 30), unix(2026, 10, 25, 0, 30)),  # repeated: first
            (berlin, datetime(2026, 7, 1, 0, 0), unix(2026, 6, 30, 22, 0)),
            (ZoneInfo("America/Santiago"), datetime(2022, 9, 11), unix(2022, 9, 11, 4)),
            (ZoneInfo("Australia/Lord_Howe"), datetime(2026, 10, 4, 2, 15), unix(2026, 10, 3, 15, 30)),
            (ZoneInfo("Asia/Kathmandu"), datetime(2026, 1, 1), unix(2025, 12, 31, 18, 15)),
            (ZoneInfo("Pacific/Chatham"), datetime(2026, 6, 1), unix(2026, 5, 31, 11, 15)),
        ]
        for zone, wall, want in cases:
            with self.subTest(zone=str(zone), wall=wall):
                self.assertEqual(ref.resolve_local(zone, wall), want)

    def test_noon_and_start_of_day_on_short_and_long_days(self):
        ny = ZoneInfo("America/New_York")
        cases = [(unix(2026, 3, 8, 20), unix(2026, 3, 8, 5), unix(2026, 3, 8, 16)),
                 (unix(2026, 11, 1, 20), unix(2026, 11, 1, 4), unix(2026, 11, 1, 17))]
        for t, start, noon in cases:
            with self.subTest(t=t):
                self.assertEqual(ref.start_of_day(t, ny), start)
                self.assertEqual(ref.local_noon(t, ny), noon)

    def test_date_line_zones_disagree_by_a_day(self):
        t = unix(2026, 5, 5, 11, 30)
        self.assertEqual(ref.local_ymd(t, ZoneInfo("Pacific/Kiritimati")), (2026, 5, 6))
        self.assertEqual(ref.local_ymd(t, ZoneInfo("Pacific/Pago_Pago")), (2026, 5, 5))


def write_table(folder: str, year: int, months: dict) -> None:
    data = os.path.join(folder, ref.PhaseTables.BUNDLE, "Data")
    os.makedirs(data, exist_ok=True)
    with open(os.path.join(data, f"{year}.plist"), "wb") as f:
        plistlib.dump(months, f)


class PhaseTables(unittest.TestCase):
    def setUp(self):
        self.tmp = tempfile.TemporaryDirectory()
        self.addCleanup(self.tmp.cleanup)
        write_table(self.tmp.name, 2030, {
            "3": ["10 02:00 NM", "6 18:15 FM", "bad", "6 18:15", "6 18:15 XX",
                  "7 1:2:3 FQ", "7  01:00 FQ", "18 23:50 LQ"],
            "Jan": ["1 00:00 NM"],
            "+4": ["30 23:50 FQ", "12 00:10 LQ"],
        })
        self.tables = ref.PhaseTables(self.tmp.name)

    def test_malformed_lines_and_keys_are_skipped(self):
        self.assertEqual(self.tables.events(2030, 3),
                         [(10, 2, 0, "NM"), (6, 18, 15, "FM"), (18, 23, 50, "LQ")])
        self.assertEqual(self.tables.events(2030, 4), [(30, 23, 50, "FQ"), (12, 0, 10, "LQ")])
        self.assertEqual(self.tables.events(2030, 1), [])
        self.assertEqual(self.tables.events(2031, 3), [])

    def test_unusable_root_rejects_the_file(self):
        write_table(self.tmp.name, 2032, {"1": [1, 2]})
        self.assertIsNone(ref.PhaseTables(self.tmp.name)._load(2032))

    def test_next_phase_by_local_day(self):
        ny, tokyo = ZoneInfo("America/New_York"), ZoneInfo("Asia/Tokyo")
        cases = [  # instant, zone, expected (code, days) or None
            (unix(2030, 3, 1, 12), ny, ("FM", 5)),       # sorted by day: the 6th comes first
            (unix(2030, 3, 9, 12), ny, ("NM", 0)),       # 10 02:00 UTC is the 9th in New York
            (unix(2030, 3, 10, 12), ny, ("LQ", 8)),
            (unix(2030, 3, 10, 12), tokyo, ("NM", 0)),
            (unix(2030, 3, 25, 12), ny, None),           # after the month's last event
            (unix(2030, 4, 13, 12), ny, ("FQ", 17)),
            (unix(2030, 4, 13, 12), tokyo, None),        # 30 23:50 UTC is local day 1 of May
        ]
        for t, zone, want in cases:
            with self.subTest(t=t, zone=str(zone)):
                got = ref.next_phase(t, zone, self.tables)
                self.assertEqual(None if got is None else (got[0][3], got[1]), want)

    def test_phase_type_on_event_day_and_around_it(self):
        ny = ZoneInfo("America/New_York")
        on_day = ref.moon_phase(unix(2030, 3, 9, 23), ny, False, None, 40.7, -74.0, self.tables)
        self.assertEqual((on_day["phaseType"], on_day["phaseName"]), ("newMoon", "New Moon"))
        self.assertEqual(on_day["tiltAngle"], 0.0)
        for t in (unix(2030, 3, 8, 12), unix(2030, 3, 10, 12)):
            other = ref.moon_phase(t, ny, False, None, 40.7, -74.0, self.tables)
            self.assertIn(other["phaseType"], ("waxingCrescent", "waningCrescent"))

    def test_no_table_never_names_a_principal_phase(self):
        empty = ref.PhaseTables(self.tmp.name)
        for k in range(60):
            t = unix(2031, 1, 1) + k * 86400 / 2
            p = ref.moon_phase(t, ZoneInfo("UTC"), True, t, 10.0, 10.0, empty)
            self.assertIn(p["phaseType"], ("waxingCrescent", "waningCrescent", "waxingGibbous", "waningGibbous"))
            self.assertEqual(p["phaseName"], ref.PHASE_NAMES[p["phaseType"]])

    def test_record_next_phase_fields(self):
        ny = ZoneInfo("America/New_York")
        t = unix(2030, 3, 9, 3)  # 2030-03-08 local
        rec = ref.record(40.7, -74.0, "America/New_York", t, self.tables)
        self.assertEqual(rec["nextPhaseTime"], "tomorrow")
        self.assertEqual(rec["nextMoonPhase"]["phaseType"], "newMoon")
        self.assertEqual(rec["nextMoonPhase"]["tiltAngle"], ref.moon_tilt(t, 40.7, -74.0))
        self.assertEqual(rec["nextMoonPhase"]["illumination"], ref.moon_illumination(unix(2030, 3, 10, 2))[0])
        late = ref.record(40.7, -74.0, "America/New_York", unix(2030, 3, 28), self.tables)
        self.assertIsNone(late["nextPhaseTime"])
        self.assertIsNone(late["nextMoonPhase"])
        self.assertEqual(ref.when_text(2), "in 2 days")
        self.assertIsNotNone(ny)

    def test_unknown_zone_fills_only_the_instant(self):
        rec = ref.record(1.0, 2.0, "Mars/Olympus", 5.0, self.tables)
        self.assertEqual(rec["selectedTime"], 5.0)
        self.assertTrue(all(rec[k] is None for k in ("sunrise", "moonrise", "moonAzimuth", "currentMoonPhase")))


class EclipseCatalogue(unittest.TestCase):
    TEXT = ("# greatest eclipse, UTC\r\n04/08/2024 18:17, TSE \n03/14/2025 06:59,TLE\n"
            "03/14/2025 06:59,PLE\n13/01/2025 00:00,TLE\n01/01/1900 02:00,PSE\nx,tle\n")

    def test_lines_are_counted_over_every_newline_character(self):
        table, warnings = ref.parse_catalogue(self.TEXT, ZoneInfo("America/New_York"))
        self.assertEqual(sorted(table.values()), ["TLE", "TSE"])
        self.assertEqual(warnings, [
            "Warning: Duplicate date entry at line 5: 03/14/2025 06:59",
            "Warning: Could not parse date '13/01/2025 00:00' at line 6",
            "Warning: Date 01/01/1900 02:00 is outside valid range (1900-2100)",
            "Warning: Unknown event key 'tle' at line 8",
        ])

    def test_visibility_of_the_total_eclipses_of_2024_and_2025(self):
        table, _ = ref.parse_catalogue(self.TEXT, ZoneInfo("UTC"))
        cases = [  # place, zone, an instant of the local day, expected (key, visible)
            ((32.78, -96.80), "America/Chicago", unix(2024, 4, 8, 17), ("TSE", True)),
            ((35.68, 139.77), "Asia/Tokyo", unix(2024, 4, 9, 3), ("TSE", False)),
            ((35.68, 139.77), "Asia/Tokyo", unix(2024, 4, 8, 3), None),
            ((40.71, -74.01), "America/New_York", unix(2025, 3, 14, 16), ("TLE", True)),
            ((35.68, 139.77), "Asia/Tokyo", unix(2025, 3, 14, 3), ("TLE", False)),
            ((None, None), "Asia/Tokyo", unix(2025, 3, 14, 3), ("TLE", True)),
        ]
        for (lat, lng), zone, t, want in cases:
            with self.subTest(zone=zone, t=t):
                got = ref.eclipse_info(t, ZoneInfo(zone), lat, lng, table)
                self.assertEqual(None if got is None else (got["key"], got["isVisible"]), want)

    def test_catalogue_is_searched_in_the_framework_then_the_host_app(self):
        with tempfile.TemporaryDirectory() as root:
            os.makedirs(os.path.join(root, "com.orvane.Orvane"))
            data = os.path.join(root, "com.orvane.Lunoval", "Data")
            os.makedirs(data)
            with open(os.path.join(data, "events.txt"), "w") as f:
                f.write("03/14/2025 06:59,TLE\n")
            self.assertEqual(list(ref.EclipseCatalogue(root).table(ZoneInfo("UTC")).values()), ["TLE"])
            self.assertEqual(ref.EclipseCatalogue(os.path.join(root, "none")).table(ZoneInfo("UTC")), {})


if __name__ == "__main__":
    unittest.main()
