# SPDX-License-Identifier: MIT
"""Files dragged from a real file manager onto the shelf, and out of it into a real folder window."""
import unittest

from support import filemanagers
from support.case import DesktopTest


class Drags:
    """The road of a file, with each file manager at both ends of it."""

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
        self.wait_for((self.target / "words.txt").exists, "the file lands in the other folder")
        self.assertEqual((self.target / "words.txt").read_bytes(), words.read_bytes())
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
