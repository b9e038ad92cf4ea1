# SPDX-License-Identifier: MIT
"""Drags in other programs show the shelf, and it hides again if nothing was dropped on it."""
import time
import unittest

from support import filemanagers
from support.foreign import ForeignDragTest
from support.waiting import stays


def look_at(path):
    """Returns everything about a file except its time of access."""
    status = path.stat()
    return status.st_ino, status.st_mode, status.st_mtime_ns, status.st_ctime_ns, path.read_bytes()


class Sources:
    """The behaviour of drags from every file manager."""

    moves = True  # whether a file that is dropped in another folder leaves its own

    def assert_landed(self, folder, moves):
        """The whole file is in the folder on which it was dropped, and not in its own folder any more if it was
        moved."""
        landed = folder / "words.txt"
        self.wait_for(landed.exists, f"the file lands in {folder.name}")
        self.wait_for(lambda: landed.read_text() == "some words\n", "the file is whole")
        self.wait_for(lambda: self.words.exists() != moves, "the file is where the file manager says")

    def assert_untouched(self, before):
        self.assertEqual(list(self.words.parent.iterdir()), [self.words])
        self.assertEqual(look_at(self.words), before)

    def test_a_drag_brings_the_shelf_and_a_drop_keeps_it(self):
        app = self.parklet()
        source = self.source_window()
        before = look_at(self.words)
        self.assertTrue(app.hidden())
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*app.center())
        self.assertTrue(self.hand.holds() and app.window())
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        time.sleep(0.5)
        self.assertFalse(app.hidden())
        self.assert_focus_kept()
        self.assert_untouched(before)

    def test_a_press_without_a_drag_brings_nothing(self):
        app = self.parklet()
        source = self.source_window()
        self.hand.move_to(*source.item("words.txt"))
        self.hand.press()
        stays(app.hidden, "the shelf came though nothing was dragged", 1.0)
        self.hand.release()

    def test_a_drag_that_goes_elsewhere_takes_the_empty_shelf_with_it(self):
        target = self.folder("target")
        app = self.parklet()
        source = self.source_window()
        other = self.manager.open(target).place(20, 420, 560, 300)
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*other.empty_place())
        self.assert_focus_kept()
        self.hand.release()
        self.manager.agree()
        self.assert_landed(target, self.moves)
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assertEqual(app.names(), [])

    def test_a_drag_back_into_its_own_window_takes_the_empty_shelf_with_it(self):
        app = self.parklet()
        source = self.source_window()
        before = look_at(self.words)
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*source.empty_place())
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assert_focus_kept()
        self.assert_untouched(before)

    def test_a_drag_to_the_desktop_lands_there_and_takes_the_empty_shelf_with_it(self):
        app = self.parklet()
        icons = filemanagers.PCManFMDesktop(self.desktop)
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*icons.empty_place())
        self.assert_focus_kept()
        self.hand.release()
        self.assert_landed(self.desktop.home / "Desktop", moves=True)
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assertEqual(app.names(), [])


class ThunarSourceTest(Sources, ForeignDragTest):
    manager_class = filemanagers.Thunar


class PCManFMSourceTest(Sources, ForeignDragTest):
    manager_class = filemanagers.PCManFM


class PCManFMQtSourceTest(Sources, ForeignDragTest):
    manager_class = filemanagers.PCManFMQt
    moves = False  # asked what to do, the test says "copy"


if __name__ == "__main__":
    unittest.main()
