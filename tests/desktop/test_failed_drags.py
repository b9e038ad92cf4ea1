# SPDX-License-Identifier: MIT
"""Drags out of the shelf that fail: the items stay, and nothing hangs."""
import os
import pathlib
import signal

from support.case import DesktopTest
from support.filemanagers import Thunar
from support.parklet import uri_of
from support.waiting import stays

COPY, MOVE, LINK = range(3)  # the values of the setting "dragMode"


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
        for mode in COPY, MOVE, LINK:
            with self.subTest(mode=mode):
                self.app.write_settings({**self.app.read_settings(), "dragMode": mode})
                self.hand.drag(self.app.grip(self.names[0]), (frame.x + 30, frame.y + frame.height - 40))
                stays(lambda: self.app.names() == self.names, "an item left the shelf", 1.0)
                self.assertTrue(all(path.exists() for path in self.paths))
        self.app.write_settings({**self.app.read_settings(), "dragMode": COPY})
        self.assert_unharmed()

    def test_a_drop_that_the_destination_refuses(self):
        target = self.desktop.start("refusing-target", "/usr/bin/python3",
                                    pathlib.Path(__file__).parent / "support/refusing_target.py")
        window = self.wait_for(lambda: next(iter(self.desktop.windows.find(title="refusing target")), None),
                               "the target comes up")
        self.app.hold(*self.paths)
        frame = self.desktop.windows.frame(window)
        self.hand.drag(self.app.grip(self.names[0]), (frame.x + 60, frame.y + 60))
        log = self.desktop.logs / "refusing-target.log"
        self.wait_for(lambda: f"refused {uri_of(self.paths[0])}" in log.read_text(), "the target refuses the drop")
        self.desktop.processes.end(target)
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
