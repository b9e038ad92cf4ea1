#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A window from which the addresses in a file are dragged, one a line. It answers after a delay: drag_source.py FILE
[SECONDS]"""
import pathlib
import sys
import time

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def main():
    addresses = pathlib.Path(sys.argv[1]).read_text().split()
    delay = float(sys.argv[2]) if len(sys.argv) > 2 else 0

    def tell(_widget, _context, data, _info, _time):
        time.sleep(delay)
        data.set_uris(addresses)

    window = Gtk.Window(title="drag source", default_width=240, default_height=120)
    surface = Gtk.EventBox()
    surface.add(Gtk.Label(label=f"{len(addresses)} addresses"))
    surface.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, None, Gdk.DragAction.COPY)
    surface.drag_source_add_uri_targets()
    surface.connect("drag-data-get", tell)
    window.add(surface)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main()
