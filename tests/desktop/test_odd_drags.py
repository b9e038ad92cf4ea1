# SPDX-License-Identifier: MIT
"""Drags that carry many, odd or mixed things."""
import os

from support.foreign import ForeignDragTest
from support.parklet import uri_of
from test_bad_input import ODD_NAMES


class OddDragTest(ForeignDragTest):
    def test_ten_thousand_files_bring_the_shelf_and_fill_it(self):
        folder = self.folder("many")
        app = self.parklet()
        source = self.scripted_source(*(uri_of(folder / f"{number:05}.txt") for number in range(10_000)))
        self.pick_up(source)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: len(app.tiles()) == 50, "fifty files are on the shelf")
        self.assertEqual(app.names()[0], "00000.txt")
        self.assert_focus_kept()

    def test_a_source_that_takes_its_time_costs_nobody_any(self):
        app = self.parklet()
        source = self.scripted_source(self.words.as_uri(), delay=2)
        app.show()
        self.pick_up(source)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == ["words.txt"], "the file is on the shelf")

    def test_odd_names_bring_the_shelf(self):
        paths = [self.file(name, os.fsencode(name)) for name in ODD_NAMES]
        app = self.parklet()
        source = self.scripted_source(*map(uri_of, paths))
        self.pick_up(source)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: len(app.tiles()) == len(paths), "all of them are on the shelf")
        for path in paths:
            self.assertEqual(path.read_bytes(), os.fsencode(path.name))

    def test_all_kinds_of_files_bring_the_shelf(self):
        folder = self.folder("folder")
        link = self.desktop.home / "link"
        link.symlink_to("nowhere")
        paths = [self.words, folder, link, self.desktop.home / "gone.txt"]
        app = self.parklet()
        source = self.scripted_source(*map(uri_of, paths))
        self.pick_up(source)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == [path.name for path in paths], "all of them are on the shelf")

    def test_what_a_drop_would_refuse_brings_nothing(self):
        app = self.parklet()
        elsewhere = "file://elsewhere.example.org/words.txt"
        for at, addresses in enumerate((["https://example.org/"], [self.words.as_uri(), "https://example.org/"],
                                        [self.words.as_uri(), elsewhere], [])):
            with self.subTest(addresses=addresses):
                source = self.scripted_source(*addresses, x=40 + 260 * at)
                self.pick_up(source)
                self.assert_stays_hidden(app)
                self.hand.release()
        self.assert_next_drag_works(app, self.source_window())


if __name__ == "__main__":
    import unittest
    unittest.main()
