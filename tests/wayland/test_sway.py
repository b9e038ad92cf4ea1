# SPDX-License-Identifier: MIT
"""The shelf as a native panel in sway."""
from support.native_panels import NativePanelTest, NativePanelTests
from support.sway import SwaySession


class SwayTest(NativePanelTests, NativePanelTest):
    session_class = SwaySession

    def test_an_excluded_program_does_not_bring_the_shelf(self):
        source = self.folder("source")
        (source / "words.txt").write_text("some words\n")
        app = self.parklet(excludedBundleIDs=["thunar"])
        window = self.open_thunar(source)
        self.hand.pick_up(*window.item("words.txt"))
        self.hand.carry_to(*window.middle(), linger=2)
        self.assertIsNone(app.frame())

    def check_picture(self, frame):
        """Looks for the panel where it says that it is: its colours are in the middle of each of its sides."""
        def is_drawn():
            x, y, width, height = frame
            inside = [(x + 2, y + height // 2), (x + width - 3, y + height // 2), (x + width // 2, y + 2),
                      (x + width // 2, y + height - 3)]
            outside = [(x - 2, y + height // 2), (x + width + 1, y + height // 2), (x + width // 2, y - 2),
                       (x + width // 2, y + height + 1)]
            picture = self.desktop.folder / "look.ppm"
            self.desktop.run("grim", "-t", "ppm", picture)
            data = picture.read_bytes()
            _, columns, rows, _ = data.split(maxsplit=4)[:4]
            columns, rows = int(columns), int(rows)
            pixels = data[-columns * rows * 3:]

            def color(place):
                start = (place[1] * columns + place[0]) * 3
                return tuple(pixels[start:start + 3])
            ground = color((600, 400))
            return (all(color(place) != ground for place in inside)
                    and all(color(place) == ground for place in outside))
        self.wait_for(is_drawn, f"the shelf is drawn at {tuple(frame)}")
