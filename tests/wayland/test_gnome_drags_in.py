# SPDX-License-Identifier: MIT
"""Drags of native programs bring the shelf of a GNOME session, and what is dropped there stays."""
from support.gnome import GnomeSession
from support.native_drag import NativeDragTest
from support.waiting import stays


class NativeDragInTest(NativeDragTest):
    session_class = GnomeSession

    def test_the_shelf_comes_with_the_drag_and_keeps_the_file(self):
        app = self.parklet()
        source = self.source_window()
        self.assertTrue(app.hidden())
        self.pick_up(source)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        stays(lambda: not app.hidden(), "the shelf went with a file on it", 0.5)
        self.assertTrue(self.words.exists())

    def test_the_unused_shelf_goes_after_the_drag(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(700, 600)
        self.assertFalse(app.hidden())
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assert_next_drag_works(app, source)

    def test_near_the_pointer_only_the_shelf_comes_as_the_pointer_is_not_known(self):
        app = self.parklet(autoShowTrigger=1)
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.assertIsNone(app.window("cursor-shelf"))
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")

    def test_a_drag_to_the_edge_beside_the_shelf_brings_it(self):
        app = self.parklet(autoShowTrigger=2)
        source = self.source_window()
        self.pick_up(source)
        strip = self.dragging(lambda: app.window("edge-strip"), "the strip comes up")
        self.assertEqual(self.desktop.windows.frame(strip)[0::2], (1276, 4))
        self.hand.move_to(1100, 400)
        self.assertTrue(app.hidden())
        self.hand.move_to(1278, 400)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        self.wait_for(lambda: app.window("edge-strip") is None, "the strip goes with the drag")
