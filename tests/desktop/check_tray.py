#!/usr/bin/env python3
"""The tray indicator of `lunoval desktop` as a status notifier host sees it, on a private
session bus with a StatusNotifierWatcher of our own (run under dbus-run-session).

usage: check_tray.py LUNOVAL

The item registers with the watcher; its title is the phase and lit percentage that
`lunoval record` gives for the same moment and place; its icon is a drawn moon disc found in
its icon theme path; its menu starts with that title and holds the moon and sun times, the
places window, refresh and quit. The last line is "N passed, M failed".
"""

from __future__ import annotations

import json
import os
import subprocess
import sys
import time

from gi.repository import Gio, GLib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import DEVICE, Failures, Home, Program, XServer, png_reader  # noqa: E402

WATCHER = """
<node>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  </interface>
</node>
"""


class Watcher:
    def __init__(self, bus: Gio.DBusConnection) -> None:
        self.items: list[tuple[str, str]] = []  # (bus name, object path)
        interface = Gio.DBusNodeInfo.new_for_xml(WATCHER).interfaces[0]
        bus.register_object("/StatusNotifierWatcher", interface, self.call, self.get, None)
        Gio.bus_own_name_on_connection(bus, "org.kde.StatusNotifierWatcher",
                                       Gio.BusNameOwnerFlags.NONE, None, None)

    def call(self, _bus, sender, _path, _interface, method, args, invocation) -> None:
        if method == "RegisterStatusNotifierItem":
            service = args.unpack()[0]
            self.items.append((sender, service) if service.startswith("/") else
                              (service, "/StatusNotifierItem"))
        invocation.return_value(None)

    def get(self, _bus, _sender, _path, _interface, name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", []),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]


def pump(until, seconds: float) -> bool:
    context = GLib.MainContext.default()
    end = time.monotonic() + seconds
    while not until() and time.monotonic() < end:
        context.iteration(False)
        time.sleep(0.01)
    return until()


def labels(layout) -> list[str]:
    _id, properties, children = layout
    found = [properties["label"]] if "label" in properties else []
    for child in children:
        found += labels(child)
    return found


def main() -> None:
    lunoval = sys.argv[1]
    failures = Failures()
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    watcher = Watcher(bus)
    home = Home()
    record = json.loads(subprocess.run([lunoval, "record", "--json", *DEVICE], env=home.env,
                                       capture_output=True, text=True, check=True).stdout)
    phase = record["currentMoonPhase"]
    title = f"{phase['phaseName']} · {round(phase['illumination'] * 100)} %"
    x = XServer()
    env = dict(home.env, DISPLAY=x.display, DBUS_SESSION_BUS_ADDRESS=os.environ[
        "DBUS_SESSION_BUS_ADDRESS"])
    desktop = Program([lunoval, "desktop", *DEVICE], env, os.path.join(home.root, "desktop.log"))
    try:
        failures.check(desktop.wait_for("🔄 Desktop: refreshed"), "the desktop refreshes")
        failures.check(pump(lambda: watcher.items, 10), "the item registers with the watcher")
        if not watcher.items:
            print(desktop.log())
            failures.finish()
        name, path = watcher.items[0]

        def item_property(key: str):
            return bus.call_sync(name, path, "org.freedesktop.DBus.Properties", "Get",
                                 GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", key)),
                                 None, Gio.DBusCallFlags.NONE, 2000, None).unpack()[0]

        failures.check(pump(lambda: item_property("Title") == title, 10),
                       f"the title is {title!r}, not {item_property('Title')!r}")
        icon = os.path.join(item_property("IconThemePath"), item_property("IconName") + ".png")
        failures.check(item_property("IconName").startswith("lunoval-moon-" + phase_case(record)),
                       f"the icon names the phase: {item_property('IconName')}")
        failures.check(os.path.exists(icon), f"the icon {icon} is there")
        if os.path.exists(icon):
            disc = png_reader.read(icon)
            failures.check((disc.width, disc.height) == (64, 64), "a 64-pixel disc")
            failures.check(disc.alpha(0, 0) == 0 and disc.alpha(32, 32) > 0,
                           "clear corners, a drawn middle")
        menu = item_property("Menu")
        layout = bus.call_sync(name, menu, "com.canonical.dbusmenu", "GetLayout",
                               GLib.Variant("(iias)", (0, -1, [])), None,
                               Gio.DBusCallFlags.NONE, 2000, None).unpack()[1]
        shown = labels(layout)
        failures.check(shown[:1] == [title], f"the menu starts with the title: {shown}")
        failures.check(any(label.startswith("🌙 ↑") for label in shown), "moon rise and set")
        failures.check(any(label.startswith("☀ ↑") for label in shown), "sun rise and set")
        for entry in ("Places…", "Refresh", "Quit"):
            failures.check(entry in shown, f"the menu offers {entry}")
    finally:
        failures.check(desktop.stop() == 0, "SIGTERM ends it")
        x.stop()
        home.folder.cleanup()
    failures.finish()


def phase_case(record: dict) -> str:
    return record["currentMoonPhase"]["phaseType"]


if __name__ == "__main__":
    main()
