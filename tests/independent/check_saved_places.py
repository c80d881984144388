#!/usr/bin/env python3
"""Check that the places saved with `lunoval locations` are what the widgets show.

usage: check_saved_places.py LUNOVAL_BINARY

Each scenario runs in its own empty home and drives `lunoval locations` and
`lunoval timeline` together, reading the shared defaults file back with plistlib.
The point of it all: a place picked on the app's side is what the widget draws
when the device cannot say where it is. Prints one line per scenario and exits
non-zero if any failed.
"""

from __future__ import annotations

import json
import os
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
from datetime import datetime

TOL = 1e-9
AT = "2026-03-20T12:00:00Z"   # fixed, so no widget cache from the wall clock gets in the way
DEFAULTS = os.path.join(".config", "lunoval", "group.com.orvane.lunoval.plist")
SF = ("San Francisco, CA", 37.7749, -122.4194, "America/Los_Angeles")
BINARY = ""


class Failure(Exception):
    pass


def check(condition: bool, message: str) -> None:
    if not condition:
        raise Failure(message)


def close(a, b) -> bool:
    return isinstance(a, (int, float)) and abs(a - b) <= TOL


class Home:
    """An empty home folder; every command of a scenario runs against it."""

    def __enter__(self) -> "Home":
        self.path = tempfile.mkdtemp(prefix="lunoval-places-")
        self.env = {k: v for k, v in os.environ.items()
                    if k not in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME")}
        self.env.update(HOME=self.path, TZ="UTC", LC_ALL="C")
        return self

    def __exit__(self, *exc) -> None:
        shutil.rmtree(self.path, ignore_errors=True)

    def run(self, *args: str) -> subprocess.CompletedProcess:
        return subprocess.run([BINARY, *args], env=self.env, capture_output=True,
                              text=True, timeout=30)

    def ok(self, *args: str, code: int = 0) -> str:
        r = self.run(*args)
        check(r.returncode == code, f"`lunoval {' '.join(args)}` exited {r.returncode}, not {code}\n"
                                    f"stdout: {r.stdout.strip()}\nstderr: {r.stderr.strip()}")
        return r.stdout

    def places(self) -> dict:
        return json.loads(self.ok("locations", "list", "--json"))

    def raw(self) -> bytes:
        with open(os.path.join(self.path, DEFAULTS), "rb") as f:
            return f.read()

    def stored(self) -> dict:
        return plistlib.loads(self.raw())

    def widget(self, *options: str, at: str = AT) -> dict:
        return json.loads(self.ok("timeline", "--json", "--at", at, *options))["widgetData"]


def expect_place(got: dict, name, lat: float, lng: float, zone: str, what: str,
                 name_key: str = "locationName", zone_key: str = "timezone") -> None:
    check(got.get(name_key) == name and close(got.get("latitude"), lat)
          and close(got.get("longitude"), lng) and got.get(zone_key) == zone,
          f"{what}: expected {name!r} {lat}, {lng} {zone}, got {got}")


def expect_saved(listing: dict, expected: list[tuple], what: str) -> None:
    """The listed places after entry 0, in order; entry 0 is always the device."""
    entries = listing["locations"]
    check(entries[0]["name"] == "Current Location", f"{what}: entry 0 is {entries[0]}")
    check(len(entries) == len(expected) + 1,
          f"{what}: expected {[e[0] for e in expected]}, got {[e['name'] for e in entries[1:]]}")
    for entry, place in zip(entries[1:], expected):
        expect_place(entry, *place, what, name_key="name", zone_key="timezoneId")
        check(entry["locationInitialized"] is True, f"{what}: {entry} is not initialized")


def stored_places(home: Home) -> list[tuple]:
    return [(d["location_name"], d["latitude"], d["longitude"], d["timezoneId"])
            for d in home.stored()["locations"]]


def selected_name(home: Home) -> str:
    listing = home.places()
    return listing["locations"][listing["selectedIndex"]]["name"]


# ------------------------------------------------------------------ scenarios

def fresh_home_default_place() -> None:
    with Home() as home:
        listing = home.places()
        check(listing["selectedIndex"] == 0, f"fresh list selects {listing['selectedIndex']}")
        check(listing["locations"][0]["locationInitialized"] is False, "entry 0 starts initialized")
        expect_saved(listing, [SF], "fresh list")
        check(stored_places(home) == [SF], f"stored places {stored_places(home)}")
        home.ok("locations", "select", "1")
        stored = home.stored()
        check(stored["selectedIndex"] == 1, f"stored selectedIndex {stored['selectedIndex']}")
        expect_place(json.loads(stored["widgetData"]), *SF, "stored widgetData")
        record = home.widget("--location-service", "unavailable")
        expect_place(record, *SF, "widget without a device fix")
        check(record["needsLocationPermission"] is False, "authorized widget asks for permission")
    with Home() as home:
        # A legacy file that cannot be read is as good as none.
        os.makedirs(os.path.join(home.path, "Documents"))
        with open(os.path.join(home.path, "Documents", "locations.plist"), "w") as f:
            f.write("not a property list <<<")
        expect_saved(home.places(), [SF], "list after an unreadable legacy file")


def legacy_migration() -> None:
    berlin = ("Berlin, DE", 52.52, 13.405, "Europe/Berlin")
    equator = ("Equator Spot", 0.0, 9.19, "Africa/Nairobi")
    sydney = ("Sydney", -33.8688, 151.2093, "Australia/Sydney")
    lines = ["48.1$$11.5$$Munich$$Europe/Berlin$$3600",      # the device; only its position counts
             "52.52$$13.405$$Berlin, DE$$Europe/Berlin$$3600",
             "0$$9.19$$Equator Spot$$Africa/Nairobi$$10800",
             "-33.8688$$151.2093$$Sydney$$Australia/Sydney$$36000"]
    with Home() as home:
        os.makedirs(os.path.join(home.path, "Documents"))
        with open(os.path.join(home.path, "Documents", "locations.plist"), "wb") as f:
            plistlib.dump(lines, f)
        first = home.places()
        device = first["locations"][0]
        check(close(device["latitude"], 48.1) and close(device["longitude"], 11.5),
              f"entry 0 did not take the legacy device position: {device}")
        expect_saved(first, [berlin, equator, sydney], "first list")
        check(stored_places(home) == [berlin, equator, sydney], f"migrated {stored_places(home)}")
        second = home.places()
        device = second["locations"][0]
        check(not (close(device["latitude"], 48.1) and close(device["longitude"], 11.5)),
              f"entry 0 kept the legacy position after a reload: {device}")
        expect_saved(second, [berlin, sydney], "second list")
        kept = [p for p in stored_places(home) if p[1] != 0 and p[2] != 0]
        expect_saved(second, kept, "second list against the stored places")
        # Indices count the loaded places, not the stored ones.
        home.ok("locations", "select", "2")
        expect_place(json.loads(home.stored()["widgetData"]), *sydney, "widgetData after select 2")
        expect_place(home.widget("--location-service", "unavailable"), *sydney, "widget")


def edits_follow_selection() -> None:
    paris = ("Paris", 48.8566, 2.3522, "Europe/Paris")
    tokyo = ("Tokyo", 35.6762, 139.6503, "Asia/Tokyo")
    quito = ("Quito", -0.18, -78.47, "America/Guayaquil")
    with Home() as home:
        for index, place in enumerate((paris, tokyo, quito), start=2):
            out = home.ok("locations", "add", place[0], repr(place[1]), repr(place[2]), place[3])
            check(re.search(rf"\b{index}\b", out) is not None, f"add {place[0]} printed {out!r}")
        expect_saved(home.places(), [SF, paris, tokyo, quito], "after adding")
        home.ok("locations", "select", "3")
        expect_place(home.widget("--location-service", "unavailable"), *tokyo, "widget after select 3")

        home.ok("locations", "move", "3", "1")
        listing = home.places()
        expect_saved(listing, [tokyo, SF, paris, quito], "after move 3 1")
        check(listing["selectedIndex"] == 1, f"selection did not follow Tokyo: {listing['selectedIndex']}")
        expect_place(home.widget("--location-service", "unavailable"), *tokyo, "widget after the move")

        paris = ("Paris", 48.85, 2.35, "Europe/Paris")
        out = home.ok("locations", "add", "Paris", "48.85", "2.35", "Europe/Paris")
        check(re.search(r"\b3\b", out) is not None, f"replacing Paris printed {out!r}")
        expect_saved(home.places(), [tokyo, SF, paris, quito], "after replacing Paris")

        home.ok("locations", "select", "3")
        home.ok("locations", "move", "1", "4")
        listing = home.places()
        expect_saved(listing, [SF, paris, quito, tokyo], "after move 1 4")
        check(listing["selectedIndex"] == 2, f"selection did not follow Paris: {listing['selectedIndex']}")

        # Removing a place before the selection leaves the index alone, so it lands on the next place.
        home.ok("locations", "remove", "1")
        listing = home.places()
        expect_saved(listing, [paris, quito, tokyo], "after remove 1")
        check(listing["selectedIndex"] == 2 and selected_name(home) == "Quito",
              f"selection after remove 1: {listing['selectedIndex']}, {selected_name(home)}")

        home.ok("locations", "select", "3")
        home.ok("locations", "remove", "3")
        check(home.places()["selectedIndex"] == 0, "removing the selected place kept a selection")

        home.ok("locations", "select", "2")
        expect_place(home.widget("--location-service", "unavailable"), *quito, "widget after select 2")
        check(stored_places(home) == [paris, quito], f"stored places {stored_places(home)}")


def bad_input_changes_nothing() -> None:
    attempts = [
        ("add", "Mars", "10", "10", "Mars/Olympus"),
        ("add", "North", "91", "10", "Europe/Paris"),
        ("add", "East", "10", "181", "Europe/Paris"),
        ("add", "Paris", "0", "2.35", "Europe/Paris"),
        ("add", "Greenwich", "51.48", "0", "Europe/London"),
        ("add", "Word", "ten", "10", "Europe/Paris"),
        ("remove", "0"), ("remove", "3"), ("remove", "two"),
        ("move", "0", "1"), ("move", "1", "3"),
        ("select", "3"), ("select", "-1"),
    ]
    with Home() as home:
        home.ok("locations", "add", "Paris", "48.8566", "2.3522", "Europe/Paris")
        home.ok("locations", "select", "2")
        before = home.raw()
        for args in attempts:
            r = home.run("locations", *args)
            command = f"`lunoval locations {' '.join(args)}`"
            check(r.returncode == 2, f"{command} exited {r.returncode}\nstderr: {r.stderr.strip()}")
            lines = [line for line in r.stderr.splitlines() if line.strip()]
            check(len(lines) == 1, f"{command} wrote {len(lines)} lines on stderr: {r.stderr!r}")
            check(home.raw() == before, f"{command} changed the shared defaults")


def device_location() -> None:
    london = ("--location", "51.5,-0.12", "--timezone", "Europe/London")
    with Home() as home:
        home.ok("locations", "select", "1")
        home.run("locations", "select", "0", "--location-service", "denied")
        check(home.stored()["selectedIndex"] == 1, "select 0 without a fix changed the selection")
        home.ok("locations", "select", "0", *london)
        stored = home.stored()
        check(stored["selectedIndex"] == 0, f"stored selectedIndex {stored['selectedIndex']}")
        data = json.loads(stored["widgetData"])
        check("locationName" not in data, f"device widgetData has a name: {data}")
        check(close(data.get("latitude"), 51.5) and close(data.get("longitude"), -0.12)
              and data.get("timezone") == "Europe/London", f"device widgetData {data}")
        expect_place(home.widget(*london), None, 51.5, -0.12, "Europe/London", "widget with a device fix")

        lines = home.ok("locations", "update", "--location-service", "denied", code=1).splitlines()
        check("LocationServicesPermissionDenied" in lines
              and not any(line.startswith("Current Location") for line in lines),
              f"update with access denied printed {lines}")

    with Home() as home:
        # The widget's own cache of the last fix beats the saved place, but only for a day.
        home.ok("locations", "select", "1")
        t0 = "2026-01-01T00:00:00Z"
        lines = home.ok("--at", t0, "locations", "update", "--location", "40.7128,-74.006",
                        "--timezone", "America/New_York").splitlines()
        check("BeginLocationUpdate" in lines and "LocationUpdated: true" in lines, f"update printed {lines}")
        last = re.fullmatch(r"Current Location\s+(\S+),\s+(\S+)\s+(\S+)", lines[-1].strip())
        check(last is not None and close(float(last[1]), 40.7128) and close(float(last[2]), -74.006)
              and last[3] == "America/New_York", f"update's last line {lines[-1]!r}")
        stored = home.stored()
        check(close(stored.get("WidgetLastLocationLat"), 40.7128)
              and close(stored.get("WidgetLastLocationLng"), -74.006), f"cached fix {stored}")
        when = datetime.fromisoformat(t0.replace("Z", "+00:00")).timestamp()
        check(abs(stored.get("WidgetLastLocationTimestamp", 0) - when) < 1,
              f"cached at {stored.get('WidgetLastLocationTimestamp')}, not {when}")
        record = home.widget("--location-service", "unavailable", at="2026-01-01T01:00:00Z")
        check(record["locationName"] is None and close(record["latitude"], 40.7128)
              and close(record["longitude"], -74.006), f"widget an hour after the fix: {record}")
        expect_place(home.widget("--location-service", "unavailable", at="2026-01-04T00:00:00Z"),
                     *SF, "widget days after the fix")
        record = home.widget("--location-service", "denied", at="2026-01-04T00:00:00Z")
        check(record["needsLocationPermission"] is True, f"denied widget: {record}")


SCENARIOS = [fresh_home_default_place, legacy_migration, edits_follow_selection,
             bad_input_changes_nothing, device_location]


def main() -> int:
    global BINARY
    if len(sys.argv) != 2:
        print(__doc__.strip().splitlines()[2], file=sys.stderr)
        return 2
    BINARY = os.path.abspath(sys.argv[1])
    failed = 0
    for scenario in SCENARIOS:
        name = scenario.__name__
        try:
            scenario()
            print(f"PASS {name}")
        except (Failure, KeyError, IndexError, ValueError, TypeError, OSError,
                subprocess.TimeoutExpired) as e:
            failed += 1
            kind = "" if isinstance(e, Failure) else type(e).__name__ + ": "
            print(f"FAIL {name}: {kind}{e}".replace("\n", " | "))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
