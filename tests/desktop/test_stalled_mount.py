# SPDX-License-Identifier: MIT
"""Files on a file system that does not answer, or answers slowly. Skipped where users may not mount one."""
import hashlib
import os
import signal
import time
import unittest

from support.case import DesktopTest
from support.parklet import PROGRAM, Parklet, uri_of
from support.waiting import wait_for

MOUNTER = os.environ.get("PARKLET_STALLED_MOUNT", "")
# Seconds on a busy machine; whoever asks the slow mount for anything takes longer.
AT_ONCE = 2.5
COUNT = 4  # files of the mount


def can_mount():
    return os.access(MOUNTER, os.X_OK) and os.access("/dev/fuse", os.R_OK | os.W_OK)


@unittest.skipUnless(can_mount(), "no file systems of users' own here")
class StalledMountTest(DesktopTest):
    def start(self):
        home = self.desktop.home
        self.things = home / "remote"
        self.mount = home / "mount"
        self.control = home / "behaviour"
        self.asked = home / "behaviour.asked"
        for folder in (self.things, self.mount):
            folder.mkdir()
        self.control.write_text("")
        self.addCleanup(self.control.unlink, missing_ok=True)
        self.desktop.run("convert", "-size", "800x600", "plasma:orange-teal", self.things / "0.jpg")
        for number in range(1, COUNT):
            (self.things / f"{number}.jpg").write_bytes((self.things / "0.jpg").read_bytes())
        app = Parklet(self.desktop)
        app.process = self.desktop.start("parklet", MOUNTER, self.mount, self.things, self.control, PROGRAM)
        wait_for(app.tray_icon, "Parklet's icon is in the tray")
        self.addCleanup(self.end, app)
        return app

    def end(self, app):
        self.control.unlink(missing_ok=True)
        app.process.kill()

    def has_picture(self, path):
        name = hashlib.md5(uri_of(path).encode()).hexdigest() + ".png"
        return any((self.desktop.home / ".cache/thumbnails").rglob(name))

    def is_drag(self):
        display = self.desktop.windows.display
        return display.get_selection_owner(self.desktop.windows.atom("XdndSelection"))

    def use(self, behaviour):
        """Shows the shelf with files of the mount, which has this behaviour from now on."""
        app = self.start()
        app.show()
        self.control.write_text(behaviour)
        began = time.monotonic()
        app.hold(*(self.mount / f"{number}.jpg" for number in range(COUNT)))
        print(f"\n{behaviour}: the tiles are there after {time.monotonic() - began:.2f} s")

        # The picture of another file still arrives.
        other = self.file("other.jpg", (self.things / "0.jpg").read_bytes())
        os.utime(other, (1_600_000_000, 1_600_000_000))
        app.hold(other)
        self.wait_for(lambda: self.has_picture(other), "the picture of another file comes")

        # A tile can be removed, and another dragged. It shows an icon, because a tile without an image cannot be
        # dragged.
        self.hand.move_to(*app.grip("0.jpg"))
        remove = app.tile("0.jpg").find("Remove", showing=False)
        began = time.monotonic()
        self.hand.click(*remove.center)
        self.wait_for(lambda: "0.jpg" not in app.names(), "the tile goes")
        print(f"{behaviour}: a tile is removed after {time.monotonic() - began:.2f} s")
        self.hand.pick_up(*app.grip("1.jpg"))
        self.wait_for(self.is_drag, "a drag of the file begins")
        self.hand.key("Escape")
        self.hand.release()
        return app

    def assert_ends(self, app, end, behaviour):
        began = time.monotonic()
        end()
        app.process.wait(20)
        seconds = time.monotonic() - began
        print(f"{behaviour}: the program has ended after {seconds:.3f} s")
        self.assertLess(seconds, AT_ONCE)
        # Others have asked in its place.
        self.assertFalse(self.asked.exists() and self.asked.read_text())

    def test_a_mount_that_finds_no_file_stops_nothing(self):
        app = self.use("lookup")
        self.assert_ends(app, lambda: app.process.send_signal(signal.SIGTERM), "lookup")

    def test_a_mount_that_reads_no_file_stops_nothing(self):
        app = self.use("read")
        self.assert_ends(app, lambda: app.process.send_signal(signal.SIGTERM), "read")

    def test_a_slow_mount_stops_nothing(self):
        app = self.use("slow")
        item = app.open_menu().find("Quit Parklet")
        self.assert_ends(app, lambda: self.hand.click(*item.center), "slow")

    def test_the_pictures_come_when_the_mount_answers_again(self):
        app = self.use("lookup")
        self.control.write_text("")
        self.wait_for(lambda: all(self.has_picture(self.mount / f"{number}.jpg") for number in range(1, COUNT)),
                      "the pictures come")
        self.assert_ends(app, lambda: app.process.send_signal(signal.SIGTERM), "again")


if __name__ == "__main__":
    unittest.main()
