#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A settings portal with the values in a file, the colour scheme and the accent colour as four numbers: portal.py
FILE

On SIGUSR1 it reads the file again and reports the change.
"""
import pathlib
import signal
import sys

from gi.repository import Gio, GLib

NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
INTERFACE, GROUP = "org.freedesktop.portal.Settings", "org.freedesktop.appearance"
DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  <method name="ReadAll"><arg type="as" direction="in"/><arg type="a{{sa{{sv}}}}" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""


def settings_in(file):
    scheme, *accent = pathlib.Path(file).read_text().split()
    return {"color-scheme": GLib.Variant("u", int(scheme)),
            "accent-color": GLib.Variant("(ddd)", tuple(map(float, accent)))}


def main():
    file = sys.argv[1]
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def answer(_connection, _sender, _path, _interface, _method, _arguments, invocation):
        invocation.return_value(GLib.Variant("(a{sa{sv}})", ({GROUP: settings_in(file)},)))

    def change():
        for key, value in settings_in(file).items():
            bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", GLib.Variant("(ssv)", (GROUP, key, value)))
        return True

    bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], answer, None, None)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, change)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
