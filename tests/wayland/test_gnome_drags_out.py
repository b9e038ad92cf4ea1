# SPDX-License-Identifier: MIT
"""Drags out of the shelf of a GNOME session, into the windows of native programs."""
from support.gnome import GnomeSession
from support.wayland_case import WaylandTest

COPY, MOVE = range(2)  # what the setting "dragMode" stands for


class NativeDragOutTest(WaylandTest):
    session_class = GnomeSession

    def begin(self, count=1, **settings):
        self.paths = self.files(count)
        self.names = [path.name for path in self.paths]
        app = self.parklet(**settings)
        app.hold(*self.paths)
        self.target = self.folder("target")
        self.window = self.thunar(self.target).place(20, 60, 560, 320)
        return app

    def drag_out(self, app):
        self.hand.drag(app.grip(self.names[0]), self.window.empty_place())

    def test_a_copy_lands_and_the_tile_goes(self):
        app = self.begin(dragMode=COPY)
        self.drag_out(app)
        self.wait_for((self.target / self.names[0]).exists, "the copy lands")
        self.wait_for(lambda: app.names() == [], "the tile goes")
        self.assertTrue(self.paths[0].exists())
        self.wait_for(app.hidden, "the emptied shelf goes")

    def test_a_move_lands_and_the_tile_goes(self):
        app = self.begin(dragMode=MOVE)
        self.drag_out(app)
        self.wait_for((self.target / self.names[0]).exists, "the file lands")
        self.wait_for(lambda: not self.paths[0].exists(), "the file is no longer where it was")
        self.wait_for(lambda: app.names() == [], "the tile goes")
