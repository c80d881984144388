#!/usr/bin/env python3
"""Open the page `lunoval gallery` writes in a real browser, headless Chromium.

usage: check_gallery_page.py LUNOVAL_BINARY

Draws the gallery twice, as the previews (no place known) and with location access refused,
and loads each index.html with a small script added that, once the page has loaded, writes
what the browser made of it into the page, read back from the dumped DOM. Checked: every
image loads and has an alt text; the images sit under four widget sections, 12 in all, six
for the home screen and six for the lock screen (told apart by their pixel size); with access
refused each home-screen image links to the settings and no lock-screen image links anywhere,
and nothing links in the previews. The last line is "N passed, M failed".
"""

from __future__ import annotations

import html
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

SCALE = 3
HOME_SCREEN = {(170, 170), (364, 170), (364, 382)}           # points
LOCK_SCREEN = {(76, 76), (172, 76), (257, 26)}
SECTIONS, IMAGES, PER_SCREEN = 4, 12, 6
SETTINGS = "lunoval://settings"

VERDICT_SCRIPT = """<script>
addEventListener("load", () => {
  const verdict = document.createElement("pre");
  verdict.id = "verdict";
  verdict.textContent = JSON.stringify({
    sections: [...document.querySelectorAll("section")].map(s => ({
      heading: s.querySelector("h1, h2, h3")?.textContent ?? "",
      images: s.querySelectorAll("img").length})),
    images: [...document.images].map(i => ({
      src: i.getAttribute("src"), complete: i.complete, width: i.naturalWidth,
      height: i.naturalHeight, alt: i.getAttribute("alt") ?? "",
      inSection: i.closest("section") !== null,
      link: i.closest("a")?.getAttribute("href") ?? null}))});
  document.body.append(verdict);
});
</script>
"""


def environment(home: str) -> dict[str, str]:
    """A fresh home, so that no saved place or cached location leaks in."""
    return dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(home, ".config"),
                XDG_DATA_HOME=os.path.join(home, ".local/share"),
                XDG_CACHE_HOME=os.path.join(home, ".cache"))


def browse(chromium: str, folder: str, env: dict[str, str]) -> tuple[dict | None, str]:
    """What the browser saw of the gallery's page, or why there is nothing."""
    with open(os.path.join(folder, "index.html"), encoding="utf-8") as f:
        page = f.read()
    probe = os.path.join(folder, "verdict.html")  # beside the images, so their paths hold
    with open(probe, "w", encoding="utf-8") as f:
        f.write(page + VERDICT_SCRIPT)
    with tempfile.TemporaryDirectory(prefix="lunoval-chromium-") as profile:
        done = subprocess.run(
            [chromium, "--headless=new", "--no-sandbox", "--disable-gpu",
             "--allow-file-access-from-files", "--virtual-time-budget=5000",
             f"--user-data-dir={profile}", "--dump-dom", "file://" + probe],
            capture_output=True, text=True, env=env, timeout=120)
    found = re.search(r'<pre id="verdict">(.*?)</pre>', done.stdout, re.S)
    if not found:
        return None, f"no verdict in the page (exit {done.returncode}): {done.stderr[-400:]}"
    return json.loads(html.unescape(found.group(1))), ""


def screen(image: dict) -> str:
    size = (image["width"] / SCALE, image["height"] / SCALE)
    return "home" if size in HOME_SCREEN else "lock" if size in LOCK_SCREEN else "unknown"


def check_images(verdict: dict) -> list[str]:
    problems = []
    for image in verdict["images"]:
        if not image["complete"] or image["width"] == 0:
            problems.append(f"{image['src']} did not load")
        elif screen(image) == "unknown":
            problems.append(f"{image['src']} is {image['width']}x{image['height']} pixels, "
                            "no widget size")
        if not image["alt"].strip():
            problems.append(f"{image['src']} has no alt text")
        if not image["inSection"]:
            problems.append(f"{image['src']} is outside every section")
    return problems


def check_grouping(verdict: dict) -> list[str]:
    problems = []
    sections, images = verdict["sections"], verdict["images"]
    if len(sections) != SECTIONS:
        problems.append(f"{len(sections)} sections, expected {SECTIONS}")
    if any(not s["heading"].strip() or s["images"] == 0 for s in sections):
        problems.append("a section without a heading or without images")
    if len(images) != IMAGES:
        problems.append(f"{len(images)} images, expected {IMAGES}")
    for where in ("home", "lock"):
        count = sum(screen(i) == where for i in images)
        if count != PER_SCREEN:
            problems.append(f"{count} {where}-screen images, expected {PER_SCREEN}")
    return problems


def check_links(verdict: dict, asks_for_location: bool) -> list[str]:
    """Only a home-screen widget that asks for location access has a tap target."""
    problems = []
    for image in verdict["images"]:
        want = SETTINGS if asks_for_location and screen(image) == "home" else None
        if image["link"] != want:
            problems.append(f"{image['src']} links to {image['link']}, expected {want}")
    return problems


def check_gallery(binary: str, chromium: str, options: list[str],
                  asks_for_location: bool) -> list[str]:
    with tempfile.TemporaryDirectory(prefix="lunoval-gallery-") as folder:
        home, out = os.path.join(folder, "home"), os.path.join(folder, "gallery")
        os.makedirs(home)
        env = environment(home)
        done = subprocess.run([binary, "gallery", "--out", out, *options],
                              capture_output=True, text=True, env=env, timeout=60)
        if done.returncode != 0:
            return [f"gallery exit {done.returncode}: {done.stderr.strip()}"]
        verdict, error = browse(chromium, out, env)
    if verdict is None:
        return [error]
    return check_images(verdict) + check_grouping(verdict) + check_links(verdict,
                                                                         asks_for_location)


CASES = (("previews", [], False),
         ("location access refused", ["--location-service", "denied"], True))


def main(argv: list[str]) -> int:
    if len(argv) < 2:
        print("usage: check_gallery_page.py LUNOVAL_BINARY", file=sys.stderr)
        return 2
    chromium = shutil.which("chromium")
    if chromium is None:
        print("FAILED: chromium is not installed; scripts/install-deps installs Debian's "
              "chromium package")
        return 1
    binary = os.path.abspath(argv[1])
    failed = 0
    for label, options, asks in CASES:
        problems = check_gallery(binary, chromium, options, asks)
        print(f"{label}: {'FAILED' if problems else 'ok'}")
        for problem in problems:
            print(f"  {problem}")
        failed += bool(problems)
    print(f"{len(CASES) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
