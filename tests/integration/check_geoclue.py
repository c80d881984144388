#!/usr/bin/env python3
# The widget, the saved places and the host against a real GeoClue daemon: each case runs in
# geoclue_sandbox.sh (a fresh bus, daemon, agent and GPS fix) and a fresh home.
#   check_geoclue.py LUNOVAL
import json
import os
import plistlib
import subprocess
import sys
import tempfile
import time
import unittest

SANDBOX = os.path.join(os.path.dirname(os.path.abspath(__file__)), "geoclue_sandbox.sh")
SYDNEY = ["--fix", "-33.8688", "151.2093"]
NO_BUS = {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus"}
LUNOVAL = ""

# Three refreshes of a host, then GeoClue is asked whether any client is still in use.
HOST_THEN_ASK = """
"$1" host --out "$HOME/out" --widgets MoonPhaseWidget:accessoryInline --min-interval 60 \
    --location-service geoclue >"$HOME/host.log" 2>&1 &
for want in 1 2 3; do
  until [ "$(grep -c 'Host: refreshed' "$HOME/host.log")" -ge $want ]; do sleep 0.1; done
  [ $want = 3 ] || "$1" reload
done
sleep 0.5
dbus-send --system --print-reply --dest=org.freedesktop.GeoClue2 /org/freedesktop/GeoClue2/Manager \
    org.freedesktop.DBus.Properties.Get string:org.freedesktop.GeoClue2.Manager string:InUse
kill $!; cat "$HOME/host.log" >&2
"""


class Home:
    def __init__(self) -> None:
        self.folder = tempfile.TemporaryDirectory(prefix="lunoval-geoclue-")
        self.env = {k: v for k, v in os.environ.items() if not k.startswith(("XDG_", "DBUS_"))}
        # Its own runtime folder too: without one, every host of the machine shares a socket.
        self.env.update(HOME=self.folder.name, XDG_RUNTIME_DIR=self.folder.name, TZ="UTC",
                        LC_ALL="C")

    def run(self, *command: str, sandbox=None, env=None) -> tuple[int, str, str, float]:
        # The status, output, errors and seconds of `command`, in the sandbox unless it is None.
        argv = list(command) if sandbox is None else [SANDBOX, *sandbox, "--", *command]
        start = time.monotonic()
        done = subprocess.run(argv, capture_output=True, text=True, timeout=60,
                              env={**self.env, **(env or {})})
        return done.returncode, done.stdout, done.stderr, time.monotonic() - start

    def timeline(self, *options: str, sandbox=None, env=None) -> tuple[dict | None, str, float]:
        # The widget's data, the log ending with how long the command took ("took 0.25 s"),
        # and the seconds the whole run took.
        status, out, err, seconds = self.run(
            "bash", "-c", 'TIMEFORMAT="took %R s"; time "$@"', "-", LUNOVAL, "timeline", "--json",
            "--timezone", "Australia/Sydney", *options, sandbox=sandbox, env=env)
        assert status == 0, err
        return json.loads(out)["widgetData"], err, seconds


class WithGeoClue(unittest.TestCase):
    def test_a_fix_reaches_the_widget_and_its_cache(self) -> None:
        for options in (["--location-service", "geoclue"], []):  # chosen, and found by default
            home = Home()
            data, err, _ = home.timeline(*options, sandbox=SYDNEY)
            self.assertEqual((round(data["latitude"], 6), round(data["longitude"], 6),
                              data["timezone"], data["locationName"]),
                             (-33.8688, 151.2093, "Australia/Sydney", None))
            self.assertIn("App: 3, Widget: true", err)
            with open(os.path.join(home.folder.name, ".config/lunoval/group.com.orvane.lunoval"
                                   ".plist"), "rb") as cache:
                self.assertEqual(round(plistlib.load(cache)["WidgetLastLocationLat"], 6), -33.8688)
        out = home.run(LUNOVAL, "locations", "update", sandbox=SYDNEY)[1]
        self.assertTrue(out.startswith("BeginLocationUpdate\nLocationUpdated: true\n"), out)

    def test_a_denied_app_gets_the_permission_record(self) -> None:
        data, err, _ = Home().timeline(sandbox=["--deny"])
        self.assertTrue(data["needsLocationPermission"])
        self.assertIn("App: 2, Widget: false", err)

    def test_without_geoclue_the_saved_place_shows_at_once(self) -> None:
        for sandbox, env in ((["--no-geoclue"], None), (None, NO_BUS)):
            home = Home()
            for step in (["add", "Quito", "-0.18", "-78.47", "America/Guayaquil"], ["select", "2"]):
                self.assertEqual(home.run(LUNOVAL, "locations", *step, env=NO_BUS)[0], 0)
            data, err, _ = home.timeline(sandbox=sandbox, env=env)
            self.assertEqual(data["locationName"], "Quito")
            self.assertIn("App: 3, Widget: true", err)
            self.assertLess(float(err.rsplit("took ", 1)[1].split()[0]), 1)

    def test_an_agent_that_never_answers_meets_the_time_out(self) -> None:
        _, err, seconds = Home().timeline(sandbox=["--no-agent"])
        self.assertIn("⏱️ Widget: Location fetch timed out", err)
        self.assertTrue(8 <= seconds < 20, f"took {seconds:.1f} s")

    def test_a_host_leaves_no_client_behind(self) -> None:
        status, out, err, _ = Home().run("sh", "-c", HOST_THEN_ASK, "sh", LUNOVAL, sandbox=SYDNEY)
        self.assertEqual(err.count("Host: refreshed"), 3, err)
        self.assertIn("boolean false", out, "GeoClue still in use after the refreshes")


if __name__ == "__main__":
    LUNOVAL = os.path.abspath(sys.argv.pop(1))
    unittest.main(warnings="ignore")
