# SPDX-License-Identifier: MIT
"""Screenshots taken into the Desktop folder come to the shelf by themselves."""
import shutil
import threading
import time

from support.case import EVIDENCE, DesktopTest
from support.waiting import stays

SETTLED = 1.2  # seconds; more than the time within which a change of the folder is told


class ScreenshotsTest(DesktopTest):
    @property
    def folder(self):
        return self.desktop.home / "Desktop"

    def scrot(self, name):
        self.desktop.run("scrot", "--overwrite", self.folder / name)

    def picture(self, name):
        EVIDENCE.mkdir(parents=True, exist_ok=True)
        self.desktop.screenshot(EVIDENCE / f"{name}.png")

    def wait_for_names(self, *names):
        self.wait_for(lambda: sorted(self.app.names()) == sorted(names), f"the shelf holds {names}")

    def test_a_screenshot_brings_the_shelf(self):
        app = self.parklet()
        self.assertTrue(app.hidden())
        self.scrot("first.png")
        self.wait_for(app.window, "the shelf comes up")
        self.wait_for_names("first.png")
        self.desktop.screenshot(self.folder / "second.png")
        self.wait_for_names("first.png", "second.png")
        self.app.opaque(self.app.window())
        self.picture("screenshots-arrived")
        self.assertTrue((self.folder / "first.png").exists())

    def test_what_is_no_new_screenshot_does_not_come(self):
        self.scrot("before.png")
        app = self.parklet()
        self.scrot("picture.jpg")
        self.scrot("UPPER.PNG")
        shutil.copy(self.folder / "before.png", self.desktop.home / "elsewhere.png")
        stays(app.hidden, "the shelf came up", SETTLED)
        self.scrot("last.png")
        self.wait_for_names("last.png")

    def test_with_the_setting_off_no_screenshot_comes(self):
        app = self.parklet(autoAddScreenshots=False)
        self.scrot("shot.png")
        stays(app.hidden, "the shelf came up", SETTLED)

    def test_a_folder_that_comes_later_and_is_replaced_is_watched(self):
        shutil.rmtree(self.folder)
        self.parklet()
        self.folder.mkdir()
        self.scrot("first.png")
        self.wait_for_names("first.png")

        shutil.rmtree(self.folder)
        elsewhere = self.desktop.home / "elsewhere"
        elsewhere.mkdir()
        self.folder.symlink_to(elsewhere)
        self.scrot("second.png")
        self.wait_for_names("first.png", "second.png")

    def test_a_crowd_of_files_and_a_burst_of_screenshots(self):
        for number in range(20_000):
            (self.folder / f"file {number}.png").touch()
        app = self.parklet()
        stays(app.hidden, "old files came", SETTLED)
        self.scrot("shot.png")
        self.wait_for_names("shot.png")
        for number in range(200):
            shutil.copyfile(self.folder / "shot.png", self.folder / f"burst {number:03}.png")
        # The shelf holds fifty, and not one twice.
        self.wait_for(lambda: len(app.names()) == 50, "the shelf is full")
        self.assertEqual(len(set(app.names())), 50)
        self.assertTrue(app.runs())

    def test_a_file_that_is_still_written_is_there_at_once_and_one_that_has_gone_does_no_harm(self):
        self.scrot("whole.png")
        picture = (self.folder / "whole.png").read_bytes()
        app = self.parklet()
        with open(self.folder / "slow.png", "wb", buffering=0) as slow:
            slow.write(picture[:100])
            self.wait_for_names("slow.png")
            slow.write(picture[100:])

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
