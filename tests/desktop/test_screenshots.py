# SPDX-License-Identifier: MIT
"""Screenshots in the Desktop folder are added to the shelf automatically."""
import os
import shutil
import threading
import time

from support.case import EVIDENCE, DesktopTest
from support.waiting import stays

RED, GREEN, BACKGROUND = (200, 30, 40), (30, 160, 60), (56, 86, 122)
BARE = (640, 700)  # a point on the screen that nothing covers
SAME = 8  # levels a colour may differ by: some screenshot programs state a colour space
SETTLED = 1.2  # seconds; a change of the folder is reported within less
OLD = 10.5  # seconds; an older file is not a new screenshot


class ScreenshotsTest(DesktopTest):
    @property
    def folder(self):
        return self.desktop.home / "Desktop"

    def scrot(self, name):
        self.desktop.run("scrot", "--overwrite", self.folder / name)

    def import_(self, name):
        self.desktop.run("import", "-silent", "-window", "root", self.folder / name)

    def paint(self, color):
        self.desktop.run("hsetroot", "-solid", "#{:02x}{:02x}{:02x}".format(*color))
        self.wait_for(lambda: self.desktop.windows.pixel(*BARE) == color, "the compositor shows the colour")

    def shot_of(self, color):
        """Returns the bytes of a screenshot of a screen in that colour."""
        self.paint(color)
        path = self.desktop.home / "shot.png"
        self.desktop.run("scrot", "--overwrite", path)
        self.paint(BACKGROUND)
        return path.read_bytes()

    def shows(self, name, color):
        """Whether the tile shows a picture of that colour, and not an icon."""
        found = self.desktop.windows.pixel(*self.app.grip(name))
        return all(abs(one - other) <= SAME for one, other in zip(found, color))

    def wait_for_picture(self, name, color):
        self.wait_for(lambda: self.shows(name, color), f"the tile of {name} shows its picture")

    def picture(self, name):
        EVIDENCE.mkdir(parents=True, exist_ok=True)
        self.desktop.screenshot(EVIDENCE / f"{name}.png")

    def wait_for_names(self, *names):
        self.wait_for(lambda: sorted(self.app.names()) == sorted(names), f"the shelf holds {names}")

    def test_a_screenshot_brings_the_shelf(self):
        app = self.parklet()
        self.assertTrue(app.hidden())
        for program, name, color in ((self.scrot, "by scrot.png", RED), (self.import_, "by import.png", GREEN)):
            self.paint(color)
            program(name)
            self.paint(BACKGROUND)
            self.wait_for(app.window, "the shelf comes up")
            self.wait_for_picture(name, color)
        self.wait_for_names("by scrot.png", "by import.png")
        app.opaque(app.window())
        self.picture("screenshots-arrived")
        self.assertTrue((self.folder / "by scrot.png").exists())

    def test_what_is_no_new_screenshot_does_not_come(self):
        self.scrot("before.png")
        app = self.parklet()
        self.scrot("picture.jpg")
        self.scrot("UPPER.PNG")
        shutil.copy(self.folder / "before.png", self.desktop.home / "elsewhere.png")
        stays(app.hidden, "the shelf came up", SETTLED)
        self.scrot("last.png")
        self.wait_for_names("last.png")

    def test_an_old_file_does_not_come_however_it_is_moved(self):
        old = self.desktop.home / "old.png"
        self.desktop.run("scrot", old)
        made = time.time()
        app = self.parklet()
        self.wait_for(lambda: time.time() - made > OLD, "the file is old")
        old.touch()  # the date of creation counts
        for name in ("moved.png", "renamed.png"):
            old = old.rename(self.folder / name)
            stays(app.hidden, f"the shelf came up with {name}", SETTLED)
        self.scrot("last.png")
        self.wait_for_names("last.png")

    def test_an_old_file_does_not_come_when_it_is_copied(self):
        old = self.desktop.home / "old.png"
        app = self.parklet()
        self.desktop.run("scrot", old)
        an_hour_ago = time.time() - 3600
        os.utime(old, (an_hour_ago, an_hour_ago))
        shutil.copy2(old, self.folder / "copy.png")  # with the modification date of the original, as file managers copy
        stays(app.hidden, "the shelf came up", SETTLED)
        self.scrot("last.png")
        self.wait_for_names("last.png")

    def test_where_the_desktop_environment_has_its_desktop_does_not_matter(self):
        elsewhere = self.desktop.home / "Elsewhere"
        elsewhere.mkdir()
        (self.desktop.home / ".config/user-dirs.dirs").write_text('XDG_DESKTOP_DIR="$HOME/Elsewhere"\n')
        app = self.parklet()
        self.desktop.run("scrot", elsewhere / "elsewhere.png")
        stays(app.hidden, "the shelf came up", SETTLED)
        self.scrot("shot.png")
        self.wait_for_names("shot.png")

    def test_with_the_setting_off_no_screenshot_comes(self):
        app = self.parklet(autoAddScreenshots=False)
        self.scrot("shot.png")
        stays(app.hidden, "the shelf came up", SETTLED)

    def test_the_setting_takes_effect_at_once(self):
        app = self.parklet()
        app.choose("Preferences…")
        self.hand.click(*self.wait_for(lambda: app.find("General", "list item"), "the preferences open").center)
        self.switch(False)
        self.scrot("while off.png")
        stays(app.hidden, "the shelf came up", SETTLED)
        self.switch(True)
        self.scrot("while on.png")
        # The other file is added too while it is recent.
        self.wait_for(lambda: "while on.png" in app.names(), "screenshots come again")

    def switch(self, wanted):
        self.app.click("Automatically add new screenshots")
        self.wait_for(lambda: self.app.read_settings().get("autoAddScreenshots") == wanted, "the setting is stored")

    def test_a_folder_that_comes_later_and_is_replaced_is_watched(self):
        shutil.rmtree(self.folder)
        self.parklet()
        self.folder.mkdir()
        self.scrot("first.png")
        self.wait_for_names("first.png")

        shutil.rmtree(self.folder)
        self.folder.mkdir()
        self.scrot("second.png")
        self.wait_for_names("first.png", "second.png")

        shutil.rmtree(self.folder)
        self.folder.symlink_to(self.desktop.folder / "not there yet")
        (self.desktop.folder / "not there yet").mkdir()
        self.scrot("third.png")
        self.wait_for_names("first.png", "second.png", "third.png")

    def test_a_link_is_followed_to_where_it_leads(self):
        self.folder.rmdir()
        first, second = self.folder_of_target("first"), self.folder_of_target("second")
        self.folder.symlink_to(first)
        app = self.parklet()
        self.import_("through the link.png")
        self.wait_for_names("through the link.png")
        shutil.copy(self.folder / "through the link.png", first / "beside it.png")
        self.wait_for_names("through the link.png", "beside it.png")

        new = self.desktop.home / "new"
        new.symlink_to(second)
        new.rename(self.folder)
        self.scrot("elsewhere.png")
        self.wait_for_names("through the link.png", "beside it.png", "elsewhere.png")
        self.scrot("last.png")
        shutil.copy(self.folder / "last.png", first / "no more.png")
        self.wait_for(lambda: "last.png" in app.names(), "the new target is watched")
        stays(lambda: "no more.png" not in app.names(), "the old target is still watched", SETTLED)

    def folder_of_target(self, name):
        folder = self.desktop.folder / name
        folder.mkdir()
        return folder

    def test_a_folder_that_may_not_be_read_is_watched_once_it_may(self):
        self.scrot("before.png")
        self.folder.chmod(0)
        app = self.parklet()
        stays(app.hidden, "the shelf came up", SETTLED)
        self.folder.chmod(0o700)
        # The folder is examined from the start then: a file made a moment before counts as new, as after any pause.
        self.scrot("after.png")
        self.wait_for(lambda: "after.png" in app.names(), "the folder is watched")

    def test_while_a_menu_is_open_a_screenshot_waits(self):
        app = self.parklet()
        app.open_menu()
        self.scrot("shot.png")
        stays(app.hidden, "the shelf came up over the menu", SETTLED)
        self.hand.key("Escape")
        self.wait_for(app.window, "the shelf comes up")
        self.wait_for_names("shot.png")

    def test_a_screenshot_is_found_in_a_crowd_of_files(self):
        for number in range(20_000):
            (self.folder / f"file {number}.png").touch()
        app = self.parklet()
        stays(app.hidden, "old files came", SETTLED)
        self.scrot("shot.png")
        self.wait_for_names("shot.png")

    def test_a_burst_of_two_hundred_screenshots_fills_the_shelf(self):
        shot = self.shot_of(RED)
        app = self.parklet(skipClearAllConfirmation=True)
        for number in range(200):
            (self.folder / f"burst {number:03}.png").write_bytes(shot)
        # The shelf holds fifty files, each once.
        self.wait_for(lambda: len(app.names()) == 50, "the shelf is full")
        names = app.names()
        self.assertEqual(len(set(names)), 50)
        self.wait_for_picture(names[0], RED)
        stays(lambda: app.names() == names, "more came", SETTLED)
        app.click("Clear all")
        self.wait_for(lambda: not app.names(), "the shelf is empty")
        self.scrot("last.png")
        self.wait_for_names("last.png")

    def test_a_file_that_is_still_written_is_there_at_once_and_its_picture_when_it_is_closed(self):
        shot = self.shot_of(GREEN)
        app = self.parklet()
        for name, first in (("empty.png", 0), ("begun.png", 100), ("half.png", len(shot) // 2)):
            with open(self.folder / name, "wb", buffering=0) as slow:
                slow.write(shot[:first])
                self.wait_for(lambda: name in app.names(), "the tile comes at once")
                stays(lambda: not self.shows(name, GREEN), "there was a picture before there was one", SETTLED)
                slow.write(shot[first:])
            self.wait_for_picture(name, GREEN)

        (self.folder / "replaced.png").touch()
        self.wait_for(lambda: "replaced.png" in app.names(), "the tile comes at once")
        (self.desktop.home / "shot.png").rename(self.folder / "replaced.png")
        self.wait_for_picture("replaced.png", GREEN)

    def test_a_file_that_has_gone_again_does_no_harm(self):
        app = self.parklet()
        gone = threading.Thread(target=self.come_and_go)
        gone.start()
        gone.join()
        self.scrot("last.png")
        self.wait_for(lambda: "last.png" in app.names(), "the next screenshot comes")
        self.assertTrue(app.runs())

    def come_and_go(self):
        end = time.monotonic() + SETTLED
        while time.monotonic() < end:
            (self.folder / "gone.png").touch()
            (self.folder / "gone.png").unlink()
