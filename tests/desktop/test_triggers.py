# SPDX-License-Identifier: MIT
"""When and where a drag shows the shelf, as the settings say."""
import time
import unittest

from support.foreign import ForeignDragTest

NEAR = 120  # pixels around the shelf; within them a drag shows it in the third trigger mode
SHELF = (1160, 318, 116, 164)  # the empty shelf on the screen of these tests


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


if __name__ == "__main__":
    unittest.main()
