"""The widget and the saved places against a real GeoClue daemon on a private bus.

Usage: check_geoclue.py LUNOVAL

Each scenario runs the command inside geoclue_sandbox.sh (a fresh bus, daemon, agent and fake
GPS fix, all removed afterwards) in a fresh home.
"""
import json
import os
import plistlib
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
SANDBOX = os.path.join(HERE, "geoclue_sandbox.sh")
SYDNEY = ["--lat", "-33.8688", "--lng", "151.2093"]


def run(command, sandbox=(), environment=None):
    """(status, stdout, stderr, seconds) of `command`, inside the sandbox unless it is None."""
    with tempfile.TemporaryDirectory(prefix="lunoval-geoclue-") as home:
        env = {name: value for name, value in os.environ.items()
               if not name.startswith(("XDG_", "DBUS_"))}
        env.update({"HOME": home, "TZ": "UTC", "LC_ALL": "C", **(environment or {})})
        argv = command if sandbox is None else [SANDBOX, *sandbox, "--", *command]
        start = time.monotonic()
        done = subprocess.run(argv, capture_output=True, text=True, env=env, timeout=60)
        seconds = time.monotonic() - start
        defaults = os.path.join(home, ".config/lunoval/group.com.orvane.lunoval.plist")
        cache = {}
        if os.path.exists(defaults):
            with open(defaults, "rb") as file:
                cache = plistlib.load(file)
        return done.returncode, done.stdout, done.stderr, seconds, cache


def timeline(lunoval, *options):
    return [lunoval, "timeline", "--json", "--timezone", "Australia/Sydney", *options]


def expect(condition, message):
    if not condition:
        raise AssertionError(message)


def widget_data(stdout):
    return json.loads(stdout)["widgetData"]


def a_fix_reaches_the_widget_and_its_cache(lunoval):
    for options in (["--location-service", "geoclue"], []):  # chosen, and by default
        status, out, err, _, cache = run(timeline(lunoval, *options), SYDNEY)
        expect(status == 0, f"timeline {options} exited {status}: {err}")
        data = widget_data(out)
        expect(abs(data["latitude"] + 33.8688) < 1e-6 and abs(data["longitude"] - 151.2093) < 1e-6,
               f"widget at {data['latitude']}, {data['longitude']}")
        expect(data["timezone"] == "Australia/Sydney" and data["locationName"] is None, str(data))
        expect("App: 3, Widget: true" in err, "not authorized: " + err)
        expect(abs(cache.get("WidgetLastLocationLat", 0) + 33.8688) < 1e-6, f"cache {cache}")


def a_denied_app_gets_the_permission_record(lunoval):
    status, out, err, _, _ = run(timeline(lunoval), ["--deny", "lunoval"])
    expect(status == 0, err)
    expect(widget_data(out)["needsLocationPermission"] is True, out)
    expect("App: 2, Widget: false" in err, err)


# Saves and selects a place, then runs the rest of the command line in the same home and says
# how long that took.
WITH_A_SAVED_PLACE = """
"$1" locations add Quito -0.18 -78.47 America/Guayaquil >/dev/null &&
"$1" locations select 2 >/dev/null && shift || exit 1
start=$(date +%s%N); "$@"; status=$?
echo "took $((($(date +%s%N) - start) / 1000000)) ms" >&2; exit $status
"""


def without_geoclue_the_saved_place_shows_at_once(lunoval):
    no_bus = {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus"}
    for sandbox, environment in ((["--no-geoclue"], None), (None, no_bus)):
        status, out, err, _, _ = run(timeline(lunoval), sandbox, environment)
        expect(status == 0 and "App: 3, Widget: true" in err, err)
        expect(widget_data(out) is None, out)
        saved = ["sh", "-c", WITH_A_SAVED_PLACE, "sh", lunoval, *timeline(lunoval)]
        status, out, err, _, _ = run(saved, sandbox, environment)
        expect(status == 0 and widget_data(out)["locationName"] == "Quito", out + err)
        took = int(err.rsplit("took ", 1)[1].split()[0])
        expect(took < 1000, f"the saved place took {took} ms")


def an_agent_that_never_answers_meets_the_time_out(lunoval):
    status, out, err, seconds, _ = run(timeline(lunoval), ["--no-agent"])
    expect(status == 0, err)
    expect("⏱️ Widget: Location fetch timed out" in err, err)
    expect(8 <= seconds < 20, f"took {seconds:.1f} s")


# Three refreshes of a host, then GeoClue is asked whether any client is still in use.
HOST_THEN_ASK = """
"$1" host --out "$HOME/out" --widgets MoonPhaseWidget:accessoryInline --min-interval 60 \
    --location-service geoclue > "$HOME/host.log" 2>&1 &
host=$!
refreshes() { grep -c 'Host: refreshed' "$HOME/host.log"; }
for want in 1 2 3; do
  for _ in $(seq 100); do [ "$(refreshes)" -ge $want ] && break; sleep 0.1; done
  [ $want -lt 3 ] && "$1" reload
done
sleep 0.5
dbus-send --system --print-reply --dest=org.freedesktop.GeoClue2 /org/freedesktop/GeoClue2/Manager \
    org.freedesktop.DBus.Properties.Get string:org.freedesktop.GeoClue2.Manager string:InUse
kill $host; wait $host; cat "$HOME/host.log" >&2
"""


def a_host_leaves_no_client_behind(lunoval):
    status, out, err, _, _ = run(["sh", "-c", HOST_THEN_ASK, "sh", lunoval], SYDNEY)
    expect(status == 0 and err.count("Host: refreshed") == 3, err)
    expect("boolean false" in out, "GeoClue still in use after the refreshes: " + out)


def the_device_update_prints_each_stage(lunoval):
    status, out, err, _, cache = run(
        [lunoval, "locations", "update", "--timezone", "Australia/Sydney"], SYDNEY)
    expect(status == 0, f"update exited {status}: {out} {err}")
    expect(out.startswith("BeginLocationUpdate\nLocationUpdated: true\n"), out)
    expect(out.rstrip().endswith("Current Location  -33.8688, 151.2093  Australia/Sydney"), out)
    expect(abs(cache.get("WidgetLastLocationLng", 0) - 151.2093) < 1e-6, f"cache {cache}")
    status, out, _, _, _ = run([lunoval, "locations", "update"], ["--deny", "lunoval"])
    expect(status == 1 and "LocationServicesPermissionDenied" in out, out)


def main():
    lunoval = os.path.abspath(sys.argv[1])
    scenarios = [a_fix_reaches_the_widget_and_its_cache, a_denied_app_gets_the_permission_record,
                 without_geoclue_the_saved_place_shows_at_once,
                 an_agent_that_never_answers_meets_the_time_out,
                 the_device_update_prints_each_stage, a_host_leaves_no_client_behind]
    failures = 0
    for scenario in scenarios:
        try:
            scenario(lunoval)
            print(f"PASS {scenario.__name__}")
        except (AssertionError, subprocess.TimeoutExpired, ValueError, KeyError) as error:
            failures += 1
            print(f"FAIL {scenario.__name__}: {error}")
    print(f"{len(scenarios) - failures} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
