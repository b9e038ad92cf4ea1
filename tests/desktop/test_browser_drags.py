# SPDX-License-Identifier: MIT
"""Drags out of a browser: the shelf takes a link to a file, and nothing else."""
import unittest

from support.browser import Chromium
from support.foreign import ForeignDragTest


class BrowserTest(ForeignDragTest):
    def open_page(self):
        return Chromium(self.desktop, self.words.as_uri()).place(20, 60, 560, 400)

    def test_a_link_to_a_file_brings_the_shelf_which_takes_it(self):
        app = self.parklet()
        page = self.open_page()
        # When the shelf shows again, a source may still have its window in a cache as hidden.
        for _ in range(2):
            self.grab(page.link(), page.window)
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
        self.grab(page.link(), page.window)
        zone = self.dragging(lambda: app.window("cursor-shelf"), "the drop zone comes up")
        frame = self.desktop.windows.frame(zone)
        self.hand.carry_to(frame.x + 44, frame.y + 44)
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf has a tile of the file")

    def test_a_selected_text_shows_nothing(self):
        app = self.parklet()
        page = self.open_page()
        self.grab(page.selected_text(), page.window)
        self.assert_stays_hidden(app)
        self.hand.release()
        # The text was the reason, and not the browser.
        self.grab(page.link(), page.window)
        self.shelf_comes(app)
        self.hand.release()
        self.wait_for(app.hidden, "the unused shelf goes again")

    def test_a_link_to_a_page_shows_nothing(self):
        app = self.parklet()
        page = Chromium(self.desktop, "https://example.org/").place(20, 60, 560, 400)
        self.grab(page.link(), page.window)
        self.assert_stays_hidden(app)
        self.hand.release()


if __name__ == "__main__":
    unittest.main()
