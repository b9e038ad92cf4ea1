# SPDX-License-Identifier: MIT
"""Tests the installed program in a system that contains only the package and its dependencies."""
import os
import time

from support.case import DesktopTest
from support.filemanagers import Thunar
from support.parklet import Parklet, PROGRAM
from support.waiting import wait_for


class InstalledTest(DesktopTest):
    def test_a_file_goes_through_the_installed_program(self):
        file = self.file("letter.txt", "Dear all\n")
        target = self.folder("target")
        thunar = Thunar(self.desktop)
        source = thunar.open(file.parent).place(20, 60, 560, 300)
        other = thunar.open(target).place(20, 420, 560, 300)

        app = Parklet(self.desktop)
        app.settings_file.unlink()
        app.settings_file.parent.rmdir()
        home = self.listing()
        began = time.monotonic()
        app.process = self.desktop.start("parklet", PROGRAM,
                                         environment={"PARKLET_SYSTEM": os.environ["PARKLET_SYSTEM"]})
        app.button("Don't Check")
        print(f"\nfrom the first start to its question, seen by a screen reader: {time.monotonic() - began:.2f} s")
        app.click("Don't Check")
        wait_for(app.tray_icon, "Parklet's icon is in the tray")

        self.hand.pick_up(*source.item(file.name))
        wait_for(app.window, "the shelf comes by itself")
        self.hand.carry_to(*app.center())
        self.hand.release()
        app.tile(file.name)
        self.hand.drag(app.grip(file.name), other.empty_place())
        wait_for((target / file.name).exists, "the file lands in the other folder")
        wait_for(lambda: app.tiles() == [], "the file has left the shelf")
        self.assertEqual((target / file.name).read_text(), "Dear all\n")

        # A small picture is made by the programs that come with it.
        photo = self.desktop.home / "photo.jpg"
        self.desktop.run("convert", "-size", "800x600", "plasma:orange-teal", photo)
        os.utime(photo, (1_600_000_000, 1_600_000_000))
        app.hold(photo)
        wait_for(lambda: any((self.desktop.home / ".cache/thumbnails").rglob("*.png")), "the photo has a thumbnail")

        app.choose("Quit Parklet")
        self.assertEqual(app.process.wait(20), 0)
        new = {path for path in self.listing() - home if "parklet" in path.lower()}
        self.assertEqual(new, {".config/parklet", ".config/parklet/settings.json"})

    def listing(self):
        home = self.desktop.home
        return {str(path.relative_to(home)) for path in home.rglob("*")}
