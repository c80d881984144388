"""Runs `lunoval record` and `lunoval gallery` in several languages and checks what a reader of
each would see: the phase and the day count in their language, dates and times in their
locale's form, and a gallery page and images in that language.

Usage: check_locales.py LUNOVAL
"""
import os
import re
import subprocess
import sys
import tempfile

FULL_MOON = ["--lat", "48.8566", "--lng", "2.3522", "--timezone", "Europe/Paris",
             "--at", "2025-10-07T03:48:00Z"]
# What a careful reader expects, written from the languages themselves, not our catalogues.
EXPECTED = {
    "de_DE": {"phase": "Vollmond", "today": "heute", "time": "05:48", "name": "Mondphase"},
    "fr_FR": {"phase": "Pleine lune", "today": "aujourd’hui|aujourd'hui", "time": "05:48",
              "name": "Phase"},
    "pl_PL": {"phase": "Pełnia", "today": "dzisiaj|dziś", "time": "05:48", "name": "Faza"},
    "ja_JP": {"phase": "満月", "today": "今日", "time": "5:48", "name": "月"},
    "pt_BR": {"phase": "Lua cheia", "today": "hoje", "time": "05:48", "name": "Fase"},
}


def run(lunoval, *arguments, home):
    # The caller's environment stays (sanitizer options, for one); the user's folders do not.
    env = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
    env.update({"HOME": home, "TZ": "UTC", "LC_ALL": "C"})
    done = subprocess.run([lunoval, *arguments], capture_output=True, text=True, env=env,
                          timeout=120)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(arguments)} exited {done.returncode}: {done.stderr}")
    return done.stdout


def check_record(lunoval, locale, expected, home):
    out = run(lunoval, "record", *FULL_MOON, "--locale", locale, home=home)
    lines = {line[:11].strip(): line[12:] for line in out.splitlines() if len(line) > 12}
    assert lines["Phase"].startswith(expected["phase"] + " "), lines["Phase"]
    assert re.fullmatch(f"{re.escape(expected['phase'])} · ({expected['today']})",
                        lines["Next phase"]), lines["Next phase"]
    assert re.search(rf"(^|\D){re.escape(expected['time'])}(\D|$)", lines["Time"]), lines["Time"]


def check_gallery(lunoval, locale, expected, home, english):
    folder = os.path.join(home, "gallery-" + locale)
    run(lunoval, "gallery", "--out", folder, "--location", "48.8566,2.3522", *FULL_MOON[4:],
        "--locale", locale, "--scale", "1", home=home)
    page = open(os.path.join(folder, "index.html"), encoding="utf-8").read()
    assert expected["name"] in page, f"no '{expected['name']}' in the {locale} page"
    assert "Moon Phase" not in page, f"English widget name left in the {locale} page"
    large = open(os.path.join(folder, "MoonPhaseWidget-systemLarge.png"), "rb").read()
    assert large != english, f"the {locale} calendar looks like the English one"


def main():
    lunoval = sys.argv[1]
    failures = 0
    with tempfile.TemporaryDirectory(prefix="lunoval-locales-") as home:
        folder = os.path.join(home, "gallery-en")
        run(lunoval, "gallery", "--out", folder, "--location", "48.8566,2.3522", *FULL_MOON[4:],
            "--locale", "en_US", "--scale", "1", home=home)
        english = open(os.path.join(folder, "MoonPhaseWidget-systemLarge.png"), "rb").read()
        for locale, expected in EXPECTED.items():
            try:
                check_record(lunoval, locale, expected, home)
                check_gallery(lunoval, locale, expected, home, english)
                print(f"PASS {locale}")
            except AssertionError as error:
                failures += 1
                print(f"FAIL {locale}: {error}")
    print(f"{len(EXPECTED) - failures} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
