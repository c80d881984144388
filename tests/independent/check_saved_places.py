#!/usr/bin/env python3
# A place picked with `lunoval locations` is what `lunoval timeline` draws when the device cannot
# say where it is; the shared defaults file and a list taken over from the old app are read and
# written here with Python's plistlib, another reader and writer of the format.
#
# usage: check_saved_places.py LUNOVAL_BINARY

import json
import os
import plistlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402

SAN_FRANCISCO = ("San Francisco, CA", 37.7749, -122.4194, "America/Los_Angeles")
PARIS, TOKYO = ("Paris", 48.8566, 2.3522, "Europe/Paris"), ("Tokyo", 35.6762, 139.6503, "Asia/Tokyo")


def shared(home: harness.Home) -> dict:
    with open(os.path.join(home.path, ".config", "lunoval", "group.com.orvane.lunoval.plist"), "rb") as f:
        return plistlib.load(f)


def expect_widget_shows(home: harness.Home, place: tuple) -> None:
    stored = json.loads(shared(home)["widgetData"])
    drawn = json.loads(home.run("timeline", "--json", "--at", "2026-03-20T12:00:00Z", "--location-service",
                                "unavailable"))["widgetData"]
    for record in (stored, drawn):
        assert (record["locationName"], record["latitude"], record["longitude"], record["timezone"]) == place, \
            f"the widget's place is {record}, not {place}"


def picked_places(binary: str) -> None:
    with harness.Home(binary) as home:
        home.run("locations", "select", "1")
        expect_widget_shows(home, SAN_FRANCISCO)
        for place in (PARIS, TOKYO):
            home.run("locations", "add", place[0], repr(place[1]), repr(place[2]), place[3])
        home.run("locations", "select", "3")
        home.run("locations", "move", "3", "1")
        listing = json.loads(home.run("locations", "list", "--json"))
        assert listing["locations"][listing["selectedIndex"]]["name"] == "Tokyo", f"Tokyo not selected: {listing}"
        stored = [(p["location_name"], p["latitude"], p["longitude"], p["timezoneId"])
                  for p in shared(home)["locations"]]
        assert stored == [TOKYO, SAN_FRANCISCO, PARIS], f"stored places {stored}"
        expect_widget_shows(home, TOKYO)


def old_apps_list(binary: str) -> None:
    with harness.Home(binary) as home:
        os.makedirs(os.path.join(home.path, "Documents"))
        with open(os.path.join(home.path, "Documents", "locations.plist"), "wb") as f:
            plistlib.dump(["48.1$$11.5$$Munich$$Europe/Berlin$$3600",  # the device's entry
                           "52.52$$13.405$$Berlin, DE$$Europe/Berlin$$3600",
                           "-33.8688$$151.2093$$Sydney$$Australia/Sydney$$36000"], f)
        names = [p["name"] for p in json.loads(home.run("locations", "list", "--json"))["locations"]]
        assert names == ["Current Location", "Berlin, DE", "Sydney"], f"taken over as {names}"
        home.run("locations", "select", "2")
        expect_widget_shows(home, ("Sydney", -33.8688, 151.2093, "Australia/Sydney"))


if __name__ == "__main__":
    harness.finish((check.__name__, harness.attempt(check, os.path.abspath(sys.argv[1])))
                   for check in (picked_places, old_apps_list))
