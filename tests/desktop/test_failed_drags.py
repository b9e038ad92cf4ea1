# SPDX-License-Identifier: MIT
"""Drags out of the shelf that come to nothing: the items stay, and nothing hangs."""
import os
import signal

from support.case import DesktopTest
from support.filemanagers import Thunar
from support.waiting import stays


class FailedDragTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.paths = self.files(2)
        self.names = [path.name for path in self.paths]
        self.parklet()

    def assert_unharmed(self):
        """The shelf has kept its items, and a drag out of it still works."""
        stays(lambda: self.app.names() == self.names, "an item left the shelf", 1.0)
        for path in self.paths:
            self.assertTrue(path.exists())
        last = self.folder("last")
        window = Thunar(self.desktop).open(last).place(20, 420, 560, 300)
        self.hand.drag(self.app.grip(self.names[0]), window.empty_place())
        self.wait_for((last / self.names[0]).exists, "the next drag carries the file")
        self.wait_for(lambda: self.app.names() == self.names[1:], "the item has left the shelf")

    def test_a_drop_on_the_shelf_itself(self):
        self.app.hold(*self.paths)
        frame = self.app.frame()
        self.hand.drag(self.app.grip(self.names[0]), (frame.x + 30, frame.y + frame.height - 40))
        self.assert_unharmed()

    def test_a_drop_that_nobody_takes(self):
        self.app.hold(*self.paths)
        self.hand.drag(self.app.grip(self.names[0]), (640, 300))
        self.assert_unharmed()

    def test_escape_ends_a_drag(self):
        target = self.folder("target")
        window = Thunar(self.desktop).open(target).place(20, 60, 560, 300)
        self.app.hold(*self.paths)
        self.hand.pick_up(*self.app.grip(self.names[0]))
        self.hand.carry_to(*window.empty_place())
        self.hand.key("Escape")
        self.hand.release()
        stays(lambda: not list(target.iterdir()), "the cancelled drag left something behind", 1.0)
        self.assert_unharmed()

    def test_the_destination_dies_in_mid_drag(self):
        window = Thunar(self.desktop).open(self.folder("target")).place(20, 60, 560, 300)
        self.app.hold(*self.paths)
        self.hand.pick_up(*self.app.grip(self.names[0]))
        self.hand.carry_to(*window.empty_place())
        os.kill(window.pid(), signal.SIGKILL)
        self.hand.nudge(4, 4)
        self.hand.release()
        self.assert_unharmed()
