# SPDX-License-Identifier: MIT
"""Drags out of the shelf of a GNOME session, into the windows of native programs."""
from support.gnome import GnomeSession
from support.waiting import stays
from support.wayland_case import WaylandTest

COPY, MOVE = range(2)  # what the setting "dragMode" stands for
SOON = 1.5  # seconds in which a tile goes that is to go


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

    def assert_unharmed(self, app):
        """The shelf has kept its items, and a drag out of it still works."""
        stays(lambda: app.names() == self.names, "an item left the shelf", SOON)
        self.assertTrue(all(path.exists() for path in self.paths))
        self.assertEqual(list(self.target.iterdir()), [])
        self.drag_out(app)
        self.wait_for((self.target / self.names[0]).exists, "the next drag carries the file")
        self.wait_for(lambda: app.names() == self.names[1:], "its tile goes")

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

    def test_all_selected_files_land_and_their_tiles_go(self):
        for mode in COPY, MOVE:
            with self.subTest(mode=mode):
                app = self.begin(3, dragMode=mode)
                app.click("Select all")
                self.drag_out(app)
                self.wait_for(lambda: sorted(path.name for path in self.target.iterdir()) == self.names, "all files land")
                self.wait_for(lambda: app.names() == [], "the tiles go")
                self.wait_for(lambda: [path.exists() for path in self.paths] == [mode == COPY] * 3,
                              "the files are where they should be")
                self.end_programs()

    def test_a_drop_where_nobody_takes_it_leaves_the_tile(self):
        app = self.begin()
        self.hand.drag(app.grip(self.names[0]), (700, 620), taken=False)
        self.assert_unharmed(app)

    def test_a_file_that_stays_on_the_shelf_as_the_setting_says(self):
        app = self.begin(removeItemsWhenDraggedOut=False)
        self.drag_out(app)
        self.wait_for((self.target / self.names[0]).exists, "the copy lands")
        stays(lambda: app.names() == self.names, "the tile went", SOON)
