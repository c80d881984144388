#!/usr/bin/env python3
# The tray indicator of `lunoval desktop` as a status notifier host sees it, on a private
# session bus with a StatusNotifierWatcher of our own (run under dbus-run-session).
#
# usage: check_tray.py LUNOVAL
#
# The item registers with the watcher; its title is the phase and lit percentage that
# `lunoval record` gives for the same moment and place; its icon is a drawn moon disc of that
# phase found in its icon theme path; its menu starts with that title and holds the moon and
# sun times, the places window, refresh and quit.

import json
import os
import subprocess
import sys
import time

from gi.repository import Gio, GLib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from desktop_session import DEVICE, Home, Program, XServer, png_reader, poll  # noqa: E402

WATCHER = """<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
</interface></node>"""


def serve_watcher(bus: Gio.DBusConnection, items: list[tuple[str, str]]) -> None:
    # Records each item's bus name and object path (the indicator library registers by path).
    def register(_bus, sender, _path, _interface, _method, args, invocation) -> None:
        items.append((sender, args.unpack()[0]))
        invocation.return_value(None)

    bus.register_object("/StatusNotifierWatcher", Gio.DBusNodeInfo.new_for_xml(WATCHER)
                        .interfaces[0], register, lambda *_: GLib.Variant("b", True), None)
    Gio.bus_own_name_on_connection(bus, "org.kde.StatusNotifierWatcher",
                                   Gio.BusNameOwnerFlags.NONE, None, None)


def labels(layout) -> list[str]:
    _id, properties, children = layout
    own = [properties["label"]] if "label" in properties else []
    return own + sum(map(labels, children), [])


def main() -> None:
    lunoval = sys.argv[1]
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    items: list[tuple[str, str]] = []
    serve_watcher(bus, items)
    x = XServer()
    home = Home(DISPLAY=x.display)
    phase = json.loads(subprocess.run([lunoval, "record", "--json", *DEVICE], env=home.env,
                                      capture_output=True, check=True).stdout)["currentMoonPhase"]
    title = f"{phase['phaseName']} · {round(phase['illumination'] * 100)} %"
    desktop = Program([lunoval, "desktop", *DEVICE], home)
    try:
        assert poll(lambda: items, 20,
                    lambda: GLib.MainContext.default().iteration(False) or time.sleep(0.01)), \
            "the item registers with the watcher: " + desktop.log()

        def call(path: str, interface: str, method: str, args: GLib.Variant):
            return bus.call_sync(items[0][0], path, interface, method, args, None,
                                 Gio.DBusCallFlags.NONE, 2000, None).unpack()

        def item(key: str):
            return call(items[0][1], "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", key)))[0]

        assert poll(lambda: item("Title") == title), f"{item('Title')!r}, not {title!r}"
        icon = item("IconName")
        disc = png_reader.read(os.path.join(item("IconThemePath"), icon + ".png"))
        assert (icon.startswith("lunoval-moon-" + phase["phaseType"]) and disc.width == 64 ==
                disc.height and disc.alpha(0, 0) == 0 < disc.alpha(32, 32)), \
            f"the icon {icon} is a 64-pixel disc of the phase, clear in the corners"
        shown = labels(call(item("Menu"), "com.canonical.dbusmenu", "GetLayout",
                            GLib.Variant("(iias)", (0, -1, [])))[1])
        assert shown[:1] == [title] and {"Places…", "Refresh", "Quit"} <= set(shown), shown
        assert all(any(line.startswith(times) for line in shown) for times in ("🌙 ↑", "☀ ↑")), \
            f"moon and sun times in the menu: {shown}"
    finally:
        desktop.stop()
        x.stop()


if __name__ == "__main__":
    main()
