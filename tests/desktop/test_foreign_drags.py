# SPDX-License-Identifier: MIT
"""Drags in other programs bring the shelf, and it goes again when it was not wanted."""
import os
import signal
import time
import unittest

from support import filemanagers
from support.browser import Chromium
from support.case import DesktopTest

NEAR = 120  # pixels around the shelf from which a drag brings it in the third trigger mode
SHELF = (1160, 318, 116, 164)  # the empty shelf on the screen of these tests


class ForeignDrag(DesktopTest):
    manager_class = filemanagers.Thunar

    def setUp(self):
        super().setUp()
        self.manager = self.manager_class(self.desktop)
        self.words = self.file("words.txt")

    def source_window(self):
        return self.manager.open(self.desktop.home / "things").place(20, 60, 560, 300)

    def pick_up(self, source, name="words.txt"):
        self.grab(source.item(name))

    def grab(self, place):
        self.focus = self.desktop.windows.active()
        self.hand.pick_up(*place)

    def dragging(self, condition, message):
        """Waits for something while the hand goes on moving a little, as a hand does."""
        def met():
            self.hand.nudge(4, 2)
            self.hand.nudge(-4, -2)
            return condition()

        return self.wait_for(met, message)

    def shelf_comes(self, app):
        self.dragging(app.window, "the shelf comes up while the file is dragged")

    def assert_stays_hidden(self, app, role="shelf"):
        """Nothing comes within a time in which the shelf has always come long ago."""
        end = time.monotonic() + 1.5
        while time.monotonic() < end:
            self.assertIsNone(app.window(role))
            self.hand.nudge(3, 0)
            self.hand.nudge(-3, 0)
            time.sleep(0.05)

    def assert_focus_kept(self):
        self.assertEqual(self.desktop.windows.active(), self.focus)


class Sources:
    """What every file manager's drags do."""

    def test_a_drag_brings_the_shelf_and_a_drop_keeps_it(self):
        app = self.parklet()
        source = self.source_window()
        self.assertTrue(app.hidden())
        self.pick_up(source)
        self.shelf_comes(app)
        self.assert_focus_kept()
        self.hand.carry_to(*app.center())
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        self.assert_focus_kept()
        time.sleep(0.5)
        self.assertFalse(app.hidden())
        self.assertTrue(self.words.exists())

    def test_a_drag_that_goes_elsewhere_takes_the_empty_shelf_with_it(self):
        target = self.folder("target")
        app = self.parklet()
        source = self.source_window()
        other = self.manager.open(target).place(20, 420, 560, 300)
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*other.empty_place())
        self.hand.release()
        self.manager.agree()
        self.wait_for((target / "words.txt").exists, "the file lands in the other folder")
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_a_drag_back_into_its_own_window_takes_the_empty_shelf_with_it(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*source.empty_place())
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        self.assertTrue(self.words.exists())


class ThunarSourceTest(Sources, ForeignDrag):
    manager_class = filemanagers.Thunar


class PCManFMSourceTest(Sources, ForeignDrag):
    manager_class = filemanagers.PCManFM


class PCManFMQtSourceTest(Sources, ForeignDrag):
    manager_class = filemanagers.PCManFMQt


class BrowserTest(ForeignDrag):
    def open_page(self):
        return Chromium(self.desktop, self.words.as_uri()).place(20, 60, 560, 400)

    def test_a_link_to_a_file_brings_the_shelf_which_takes_it(self):
        app = self.parklet()
        page = self.open_page()
        # A source may know the shelf's window already when it comes back, as one that is not on the screen.
        for _ in range(2):
            self.grab(page.link())
            self.shelf_comes(app)
            self.hand.carry_to(*app.center())
            self.hand.release()
            self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
            self.assertFalse(app.hidden())
            app.click("Clear all")
            self.wait_for(app.hidden, "the emptied shelf hides")
        self.assertEqual(self.words.read_text(), "some words\n")

    def test_a_link_to_a_file_on_the_drop_zone_beside_the_pointer_is_on_the_shelf(self):
        app = self.parklet(autoShowTrigger=1)
        page = self.open_page()
        self.grab(page.link())
        zone = self.dragging(lambda: app.window("cursor-shelf"), "the drop zone comes up")
        frame = self.desktop.windows.frame(zone)
        self.hand.carry_to(frame.x + 44, frame.y + 44)
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")

    def test_a_selected_text_shows_nothing(self):
        app = self.parklet()
        page = self.open_page()
        self.grab(page.selected_text())
        self.assert_stays_hidden(app)
        self.hand.release()
        # It was the text that brought nothing, and not the browser.
        self.grab(page.link())
        self.shelf_comes(app)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_a_link_to_a_page_shows_nothing(self):
        app = self.parklet()
        page = Chromium(self.desktop, "https://example.org/").place(20, 60, 560, 400)
        self.grab(page.link())
        self.assert_stays_hidden(app)
        self.hand.release()


class TriggerTest(ForeignDrag):
    def test_a_drag_to_the_bare_desktop_takes_the_empty_shelf_with_it(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(700, 600)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_a_shelf_that_was_there_stays_whatever_happens(self):
        app = self.parklet()
        source = self.source_window()
        app.show()
        self.pick_up(source)
        self.hand.carry_to(700, 600)
        self.hand.release()
        time.sleep(1)
        self.assertFalse(app.hidden())

    def test_switched_off_nothing_comes(self):
        app = self.parklet(autoShowDropWindow=False)
        source = self.source_window()
        self.pick_up(source)
        self.assert_stays_hidden(app)
        self.hand.release()

    def test_near_the_pointer_a_small_drop_zone_comes_and_what_it_gets_is_on_the_shelf(self):
        app = self.parklet(autoShowTrigger=1)
        source = self.source_window()
        self.pick_up(source)
        zone = self.dragging(lambda: app.window("cursor-shelf"), "the drop zone comes up")
        self.wait_for(app.window, "the shelf comes up")
        self.assert_focus_kept()
        frame = self.desktop.windows.frame(zone)
        self.assertEqual((frame.width, frame.height), (88, 88))
        self.hand.carry_to(frame.x + 44, frame.y + 44)
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        self.wait_for(lambda: app.window("cursor-shelf") is None, "the drop zone goes")
        time.sleep(0.5)
        self.assertFalse(app.hidden())

    def test_the_drop_zone_goes_when_the_drop_went_elsewhere(self):
        app = self.parklet(autoShowTrigger=1)
        source = self.source_window()
        self.pick_up(source)
        self.dragging(lambda: app.window("cursor-shelf"), "the drop zone comes up")
        self.hand.carry_to(700, 600)
        self.hand.release()
        self.wait_for(lambda: app.window("cursor-shelf") is None, "the drop zone goes")
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_towards_the_shelf_it_comes_only_when_the_pointer_is_near(self):
        app = self.parklet(autoShowTrigger=2)
        source = self.source_window()
        x, y, _, height = SHELF
        self.pick_up(source)
        self.hand.move_to(x - NEAR - 40, y + height // 2)
        self.assert_stays_hidden(app)
        self.hand.move_to(x - NEAR + 4, y + height // 2)
        self.wait_for(app.window, "the shelf comes up")
        self.hand.move_to(x - NEAR - 200, y)
        time.sleep(0.5)
        self.assertFalse(app.hidden())
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_in_an_excluded_program_nothing_comes(self):
        app = self.parklet(excludedBundleIDs=["thunar"])
        source = self.source_window()
        self.pick_up(source)
        self.assert_stays_hidden(app)
        self.hand.release()
        app.write_settings({"hasShownUpdatePrompt": True, "excludedBundleIDs": ["thunar"], "excludeMode": 1})
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        app.write_settings({"hasShownUpdatePrompt": True, "excludedBundleIDs": ["pcmanfm"], "excludeMode": 1})
        self.pick_up(source)
        self.assert_stays_hidden(app)
        self.hand.release()

    def test_a_drag_out_of_the_shelf_itself_is_nothing_new(self):
        app = self.parklet(autoShowTrigger=1)
        app.hold(self.words)
        self.hand.pick_up(*app.grip("words.txt"))
        self.hand.move_to(700, 600)
        self.assert_stays_hidden(app, "cursor-shelf")
        self.hand.key("Escape")
        self.hand.release()
        self.assertEqual(app.names(), ["words.txt"])

    def test_a_source_that_is_killed_ends_its_drag_and_the_next_one_works(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        os.kill(source.pid(), signal.SIGKILL)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.hand.carry_to(*app.center())
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")


if __name__ == "__main__":
    unittest.main()
