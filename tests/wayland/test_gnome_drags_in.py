# SPDX-License-Identifier: MIT
"""Drags of native programs bring the shelf of a GNOME session, and what is dropped there stays."""
from support.gnome import GnomeSession
from support.native_drag import NativeDragTest
from support.waiting import stays

MOST = 50  # files that the shelf holds
GOES = 1.0  # seconds in which an unused shelf has gone, and a used one would have


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
        stays(lambda: not app.hidden(), "the shelf went with a file on it", GOES)
        self.assertTrue(self.words.exists())

    def test_fifty_files_of_one_drag_are_all_on_the_shelf(self):
        self.words.unlink()
        names = [path.name for path in self.files(MOST)]
        app = self.parklet()
        source = self.source_window()
        source.item(names[0])
        source.select_all()
        self.pick_up(source, names[0])
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: sorted(app.names()) == names, "the shelf has a tile of each file")
        stays(lambda: not app.hidden(), "the shelf went with files on it", GOES)

    def test_the_unused_shelf_goes_after_the_drag(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.drop_elsewhere()
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assert_next_drag_works(app, source)

    def test_a_shelf_that_was_there_stays_whatever_happens(self):
        app = self.parklet()
        source = self.source_window()
        app.show()
        self.pick_up(source)
        self.drop_elsewhere()
        stays(lambda: not app.hidden(), "the shelf went that no drag had brought", GOES)

    def test_escape_ends_a_drag_and_the_unused_shelf_goes(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.key("Escape")
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assert_next_drag_works(app, source)

    def test_a_link_or_a_text_shows_nothing(self):
        app = self.parklet()
        for x, content, kind in (60, "https://example.org/\r\n", "text/uri-list"), (400, "some words", "text/plain"):
            with self.subTest(kind=kind):
                source = self.qt_source(content, kind).place(x, 60)
                self.pick_up(source)
                self.assert_stays_hidden(app)
                self.drop_elsewhere()
                self.wait_for(lambda: source.said("ended"), "the drag ends")
        self.assert_next_drag_works(app, self.source_window().place(20, 300, 560, 320))

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
        self.assertIsNone(app.window("edge-strip"))
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

    def test_a_drag_that_came_to_the_edge_and_goes_takes_the_empty_shelf_with_it(self):
        app = self.parklet(autoShowTrigger=2)
        source = self.source_window()
        self.pick_up(source)
        self.dragging(lambda: app.window("edge-strip"), "the strip comes up")
        self.hand.move_to(1278, 400)
        self.shelf_comes(app)
        # Moving away again does not hide it; the end of the drag does.
        self.hand.carry_to(700, 620)
        self.assertFalse(app.hidden())
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.wait_for(lambda: app.window("edge-strip") is None, "the strip goes with the drag")

    def test_switched_off_nothing_comes(self):
        app = self.parklet(autoShowDropWindow=False)
        source = self.source_window()
        self.pick_up(source)
        self.assert_stays_hidden(app)
        self.drop_elsewhere()
