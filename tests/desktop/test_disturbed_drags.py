# SPDX-License-Identifier: MIT
"""Whatever happens during a drag, the shelf is in the right state afterwards and the next drag works."""
import os
import signal

from support.foreign import ForeignDragTest
from support.windows import Frame

SLOW = 2.0  # seconds; a slow source takes so long to tell what it carries
GAP = 24  # pixels from the pointer to the left edge of the drop zone
BELOW = 16  # pixels from the pointer to its top edge


class DisturbedDragTest(ForeignDragTest):
    def test_the_window_manager_restarts(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.desktop.restart_window_manager()
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        self.assertEqual(app.frame(), Frame(1160, 318, 116, 164))
        app.click("Clear all")
        self.assert_next_drag_works(app, source)

    def test_the_window_manager_restarts_while_the_shelf_is_away(self):
        app = self.parklet(autoShowTrigger=2)
        source = self.source_window()
        self.pick_up(source)
        self.desktop.restart_window_manager()
        self.assert_stays_hidden(app)
        self.hand.move_to(1100, 400)
        self.wait_for(app.window, "the shelf comes up when the pointer is near")
        self.hand.move_to(700, 600)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_the_screen_shrinks(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        self.desktop.resize(1024, 768)
        self.dragging(lambda: app.frame() == Frame(1024 - 120, 302, 116, 164), "the shelf moves with the edge")
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        app.click("Clear all")
        self.assert_next_drag_works(app, source)

    def test_the_button_goes_up_before_the_source_has_told_what_it_carries(self):
        app = self.parklet()
        slow = self.scripted_source(self.words.as_uri(), delay=SLOW)
        self.pick_up(slow)
        self.hand.release()
        self.assert_stays_hidden(app)
        # The answer arrives while no drag is in progress, and has no effect either.
        self.assert_stays_hidden(app)
        self.assert_next_drag_works(app, self.source_window())

    def test_a_source_that_is_slow_brings_the_shelf_late(self):
        app = self.parklet()
        slow = self.scripted_source(self.words.as_uri(), delay=SLOW)
        self.pick_up(slow)
        self.assertTrue(app.hidden())
        self.shelf_comes(app)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_a_drag_begins_as_soon_as_the_shelf_of_the_last_one_has_gone(self):
        app = self.parklet()
        first = self.scripted_source(self.words.as_uri())
        second = self.scripted_source(self.file("other.txt").as_uri(), x=340)
        (x, y), (other_x, other_y) = first.item(), second.item()
        self.hand.move_to(x, y)
        self.hand.press()
        self.hand.nudge(20, 10)
        self.dragging(app.window, "the shelf comes up with the first drag")
        self.hand.release()
        self.hand.move_to(other_x, other_y)
        self.wait_for(app.hidden, "the unused shelf goes")
        self.hand.press()
        self.hand.nudge(20, 10)
        self.dragging(app.window, "the shelf comes up with the second drag")
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["other.txt"], "the shelf has a tile of the second drag's file")
        app.click("Clear all")
        self.assert_next_drag_works(app, first)

    def test_a_source_that_is_killed_ends_its_drag(self):
        app = self.parklet()
        source = self.source_window()
        self.pick_up(source)
        self.shelf_comes(app)
        os.kill(source.pid(), signal.SIGKILL)
        self.wait_for(app.hidden, "the unused shelf goes, though the button is still down")
        self.hand.release()
        self.assert_next_drag_works(app, self.source_window())

    def test_a_source_that_is_killed_while_it_is_asked_ends_its_drag(self):
        app = self.parklet()
        slow = self.scripted_source(self.words.as_uri(), delay=SLOW)
        self.pick_up(slow)
        os.kill(self.desktop.processes.own[-1].pid, signal.SIGKILL)
        self.assert_stays_hidden(app)
        self.hand.release()
        self.assert_next_drag_works(app, self.source_window())


class TwoScreensTest(ForeignDragTest):
    """Two monitors side by side on one screen, as with a laptop and a projector."""

    screen = {"width": 1600, "height": 800}

    def setUp(self):
        super().setUp()
        self.desktop.split(800)

    def test_the_shelf_is_on_the_screen_of_the_source(self):
        app = self.parklet()
        source = self.source_window()
        for left, edge in ((20, 800), (820, 1600), (20, 800)):
            source.place(left, 60, 560, 300)
            self.pick_up(source)
            self.shelf_comes(app)
            self.assertEqual(app.frame(), Frame(edge - 120, 318, 116, 164))
            self.hand.release()
            self.wait_for(app.hidden, "the unused shelf goes again")

    def test_the_drop_zone_is_on_the_screen_of_the_pointer(self):
        app = self.parklet(autoShowTrigger=1)
        source = self.source_window()
        for left, low, high in ((20, 0, 800), (820, 800, 1600)):
            source.place(left, 60, 560, 300)
            self.pick_up(source)
            zone = self.dragging(lambda: app.window("cursor-shelf"), "the drop zone comes up")
            frame = self.desktop.windows.frame(zone)
            self.assertTrue(low + 4 <= frame.x and frame.x + frame.width <= high - 4)
            x, y = self.hand.position()
            self.assertLess(abs(frame.x - x - GAP), 20)
            self.assertLess(abs(frame.y - y - BELOW), 20)
            self.hand.release()
            self.wait_for(lambda: app.window("cursor-shelf") is None, "the drop zone goes")
            self.wait_for(app.hidden, "the unused shelf goes again")

    def test_a_drop_zone_at_the_edge_between_the_screens_stays_on_its_own(self):
        app = self.parklet(autoShowTrigger=1)
        source = self.scripted_source(self.words.as_uri(), x=640)
        self.hand.move_to(760, 470)
        self.grab((760, 470), source.window)
        zone = self.dragging(lambda: app.window("cursor-shelf"), "the drop zone comes up")
        self.assertEqual(self.desktop.windows.frame(zone).x, 800 - 88 - 4)
        self.hand.release()

    def test_the_screen_that_the_shelf_is_on_goes_away(self):
        app = self.parklet()
        source = self.source_window().place(820, 60, 560, 300)
        self.pick_up(source)
        self.shelf_comes(app)
        self.assertEqual(app.frame().x, 1600 - 120)
        self.desktop.join()
        self.desktop.resize(800, 800)
        self.dragging(lambda: app.frame() == Frame(800 - 120, 318, 116, 164), "the shelf moves to the screen that is left")
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")
        app.click("Clear all")
        self.assert_next_drag_works(app, source.place(20, 60, 560, 300))


if __name__ == "__main__":
    import unittest
    unittest.main()
