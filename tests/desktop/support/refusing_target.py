#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A window that accepts every drag over it but refuses each drop. It prints a line for each drop."""
import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def agree(widget, context, _x, _y, time):
    Gdk.drag_status(context, context.get_suggested_action(), time)
    return True


def drop(widget, context, _x, _y, time):
    widget.drag_get_data(context, Gdk.Atom.intern("text/uri-list", False), time)
    return True


def refuse(_widget, context, _x, _y, data, _info, time):
    print("refused", *data.get_uris(), flush=True)
    Gtk.drag_finish(context, False, False, time)


def main():
    window = Gtk.Window(title="refusing target", default_width=300, default_height=200)
    window.drag_dest_set(Gtk.DestDefaults(0), None, Gdk.DragAction.COPY | Gdk.DragAction.MOVE | Gdk.DragAction.LINK)
    window.drag_dest_add_uri_targets()
    window.connect("drag-motion", agree)
    window.connect("drag-drop", drop)
    window.connect("drag-data-received", refuse)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main()
