# SPDX-License-Identifier: MIT
"""Drags in other programs bring the shelf, and it goes again when it was not wanted."""
import os
import signal
import time
import unittest

from support import filemanagers
from support.foreign import ForeignDragTest
from support.waiting import stays

NEAR = 120  # pixels around the shelf from which a drag brings it in the third trigger mode
SHELF = (1160, 318, 116, 164)  # the empty shelf on the screen of these tests


def look_at(path):
    """All of a file but when it was read last."""
    status = path.stat()
    return status.st_ino, status.st_mode, status.st_mtime_ns, status.st_ctime_ns, path.read_bytes()


class Sources:
    """What every file manager's drags do."""

    moves = True  # whether a file that is dropped in another folder leaves its own

    def assert_landed(self, folder, moves):
        """The file is in the folder that it was dropped on, whole, and has left its own if it was moved."""
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


class TriggerTest(ForeignDragTest):
    def test_a_drag_to_where_nothing_is_takes_the_empty_shelf_with_it(self):
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
