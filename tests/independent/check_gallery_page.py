#!/usr/bin/env python3
# Opens the page `lunoval gallery` writes in headless Chromium, for the previews, with location
# access refused and in German, and reads back what the browser made of it: every image loads, has an alt text
# and sits in one of four headed sections, six of the home screen's sizes and six of the lock
# screen's; only the home screen's images link to the settings, and only when access is refused;
# the page's language and headings are those of the locale asked for.
#
# usage: check_gallery_page.py LUNOVAL_BINARY

import html
import json
import os
import re
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import harness  # noqa: E402

SCALE = 3
HOME_SCREEN, LOCK_SCREEN = {(170, 170), (364, 170), (364, 382)}, {(76, 76), (172, 76), (257, 26)}  # points
# Once the page has loaded, writes what the browser saw into it, for --dump-dom to print.
VERDICT = """<script>addEventListener("load", () => {
  const verdict = document.createElement("pre");
  verdict.id = "verdict";
  verdict.textContent = JSON.stringify({lang: document.documentElement.lang,
    headings: [...document.querySelectorAll("section")].map(s => s.querySelector("h1, h2, h3")?.textContent ?? ""),
    images: [...document.images].map(i => ({src: i.getAttribute("src"), width: i.naturalWidth,
      height: i.naturalHeight, alt: i.getAttribute("alt") ?? "", inSection: i.closest("section") !== null,
      link: i.closest("a")?.getAttribute("href") ?? null}))});
  document.body.append(verdict);
});</script>"""


def screen(image: dict) -> str:
    size = (image["width"] / SCALE, image["height"] / SCALE)
    return "home" if size in HOME_SCREEN else "lock" if size in LOCK_SCREEN else f"no widget's size {size}"


def check_page(binary: str, chromium: str, options: list[str], lang: str, heading: str) -> list[str]:
    refused = "denied" in options
    with harness.Home(binary) as home:
        out = os.path.join(home.path, "gallery")
        home.run("gallery", "--out", out, *options)
        with open(os.path.join(out, "index.html"), encoding="utf-8") as f:
            page = f.read()
        with open(os.path.join(out, "verdict.html"), "w", encoding="utf-8") as f:  # beside the images
            f.write(page + VERDICT)
        done = subprocess.run([chromium, "--headless=new", "--no-sandbox", "--disable-gpu",
                               "--virtual-time-budget=5000", f"--user-data-dir={home.path}/chromium", "--dump-dom",
                               f"file://{out}/verdict.html"],
                              capture_output=True, text=True, env=home.env, timeout=120)
    found = re.search(r'<pre id="verdict">(.*?)</pre>', done.stdout, re.S)
    assert found, f"no verdict in the page (exit {done.returncode}): {done.stderr[-400:]}"
    verdict = json.loads(html.unescape(found.group(1)))
    screens = sorted(screen(image) for image in verdict["images"])
    problems = [] if screens == ["home"] * 6 + ["lock"] * 6 else [f"images of {screens}"]
    if len(verdict["headings"]) != 4 or not all(verdict["headings"]) or heading not in verdict["headings"]:
        problems.append(f"sections headed {verdict['headings']}, wanted one {heading}")
    problems += [] if verdict["lang"] == lang else [f"the page's language is {verdict['lang']}, not {lang}"]
    for image in verdict["images"]:
        link = "lunoval://settings" if refused and screen(image) == "home" else None
        if not image["alt"].strip() or not image["inSection"] or image["link"] != link:
            problems.append(f"{image}: wanted an alt text, a section and a link to {link}")
    return problems


if __name__ == "__main__":
    chromium = shutil.which("chromium")
    assert chromium, "chromium is not installed; scripts/install-deps installs it"
    cases = {"previews": ([], "en-US", "Moon Phase"), "in German": (["--locale", "de_DE"], "de-DE", "Mondphase"),
             "location access refused": (["--location-service", "denied"], "en-US", "Moon Phase")}
    harness.finish(zip(cases, harness.parallel(lambda case: harness.attempt(
        check_page, os.path.abspath(sys.argv[1]), chromium, *case), cases.values())))
