# SPDX-License-Identifier: MIT
"""Files dragged from a real file manager onto the shelf, and out of it into a real folder window."""
import os
import unittest

from support import filemanagers
from support.case import DesktopTest
from support.waiting import stays


class DragModeTest(DesktopTest):
    """The destination decides what a drag out of the shelf does to the file, among the offered operations."""

    def drag_out(self, **settings):
        self.words = self.file("words.txt")
        app = self.parklet(**settings)
        target = self.folder("target")
        window = filemanagers.Thunar(self.desktop).open(target).place(20, 420, 560, 300)
        app.hold(self.words)
        self.hand.drag(app.grip("words.txt"), window.empty_place())
        landed = target / "words.txt"
        self.wait_for(lambda: os.path.lexists(landed), "the file lands in the other folder")
        self.wait_for(lambda: app.names() == [], "the file has left the shelf")
        return landed

    def test_a_file_is_moved(self):
        landed = self.drag_out(dragMode=1)
        self.wait_for(lambda: not self.words.exists(), "the original is gone")
        self.wait_for(lambda: landed.read_text() == "some words\n", "the file is whole")
        self.assertFalse(landed.is_symlink())

    def test_a_file_is_linked(self):
        landed = self.drag_out(dragMode=2)
        self.assertTrue(landed.is_symlink())
        self.assertEqual(landed.resolve(), self.words)
        self.assertEqual(self.words.read_text(), "some words\n")

    def test_a_file_is_copied(self):
        landed = self.drag_out(dragMode=0)
        self.assertFalse(landed.is_symlink())
        self.assertTrue(self.words.exists())


class DropOverATileTest(DesktopTest):
    def test_a_drop_over_a_tile_lands_on_the_shelf(self):
        held = self.file("held.txt")
        self.file("new.txt")
        app = self.parklet()
        source = filemanagers.Thunar(self.desktop).open(self.desktop.home / "things").place(20, 60, 560, 300)
        app.hold(held)
        self.hand.drag(source.item("new.txt"), app.grip("held.txt"))
        self.wait_for(lambda: app.names() == ["held.txt", "new.txt"], "both files are on the shelf")

    def test_a_drop_that_may_only_be_moved_is_refused(self):
        moved = self.file("moved.txt")
        app = self.parklet()
        source = filemanagers.Thunar(self.desktop).open(self.desktop.home / "things").place(20, 60, 560, 300)
        app.show()
        self.hand.pick_up(*source.item("moved.txt"))
        # With this key, a drag out of Thunar offers a move only.
        with self.hand.holding("Shift_L"):
            self.hand.carry_to(*app.center(), taken=False)
            self.hand.release()
        stays(lambda: app.names() == [], "the shelf took the file", 1.0)
        self.assertTrue(moved.exists())


class Drags:
    """A file's way onto the shelf and out of it, with each file manager at both ends."""

    manager_class = None

    def setUp(self):
        super().setUp()
        self.manager = self.manager_class(self.desktop)

    def source_window(self):
        return self.manager.open(self.desktop.home / "things").place(20, 60, 560, 300)

    def target_window(self):
        self.target = self.folder("target")
        return self.manager.open(self.target).place(20, 420, 560, 300)

    def test_a_file_is_dragged_in_and_out(self):
        words = self.file("words.txt")
        self.file("other.txt")
        app = self.parklet()
        source, target = self.source_window(), self.target_window()
        app.show()

        self.hand.drag(source.item("words.txt"), app.center())
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        self.assertTrue(words.exists())

        self.hand.drag(app.grip("words.txt"), target.empty_place())
        self.manager.agree()
        landed = self.target / "words.txt"
        self.wait_for(lambda: landed.exists() and landed.read_bytes() == words.read_bytes(),
                      "the whole file lands in the other folder")
        self.wait_for(lambda: app.names() == [], "the file has left the shelf")
        self.wait_for(app.hidden, "the emptied shelf hides")

    def test_all_files_are_dragged_in_and_out_at_once(self):
        names = ["alpha.txt", "beta.txt", "gamma.txt"]
        for name in names:
            self.file(name, name)
        app = self.parklet()
        source, target = self.source_window(), self.target_window()
        app.show()

        source.select_all()
        self.hand.drag(source.item("beta.txt"), app.center())
        self.wait_for(lambda: sorted(app.names()) == names, "the shelf has a tile of each file")

        app.click("Select all")
        self.hand.drag(app.grip("gamma.txt"), target.empty_place())
        self.manager.agree()
        for name in names:
            self.wait_for((self.target / name).exists, f"{name} lands in the other folder")
            self.wait_for(lambda: (self.target / name).read_text() == name, f"{name} is whole")
        self.wait_for(lambda: app.names() == [], "the files have left the shelf")


class ThunarTest(Drags, DesktopTest):
    manager_class = filemanagers.Thunar


class PCManFMTest(Drags, DesktopTest):
    manager_class = filemanagers.PCManFM


class PCManFMQtTest(Drags, DesktopTest):
    manager_class = filemanagers.PCManFMQt


if __name__ == "__main__":
    unittest.main()
