# SPDX-License-Identifier: MIT
"""Drags between the shelf of a GNOME session and native programs other than file managers of GTK 3."""
from support.gnome import GnomeSession
from support.parklet import uri_of
from support.wayland_case import WaylandTest


class NativeProgramsTest(WaylandTest):
    session_class = GnomeSession
    programs = ()

    def test_a_file_lands_in_a_qt_program(self):
        words = self.file("words.txt")
        app = self.parklet()
        app.hold(words)
        target = self.qt_target().place(60, 60)
        self.hand.drag(app.grip("words.txt"), target.middle())
        self.wait_for(lambda: target.said(f"dropped copy {uri_of(words)}"), "the drop lands")
        self.wait_for(lambda: app.names() == [], "the tile goes")
