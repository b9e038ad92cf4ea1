# SPDX-License-Identifier: MIT
"""The GNOME session itself: a hand that drags between two native windows, without Parklet."""
from support.gnome import GnomeSession
from support.wayland_case import WaylandTest


class GnomeHarnessTest(WaylandTest):
    session_class = GnomeSession

    def test_a_file_is_dragged_from_one_native_window_into_another(self):
        source, target = self.folder("source"), self.folder("target")
        (source / "words.txt").write_text("some words\n")
        from_window = self.thunar(source).place(20, 60, 560, 320)
        to_window = self.thunar(target).place(640, 60, 560, 320)
        self.hand.drag(from_window.item("words.txt"), to_window.empty_place())
        self.wait_for((target / "words.txt").exists, "the file lands in the other folder")

    def test_a_key_reaches_the_native_window_that_has_the_focus(self):
        folder = self.folder("source")
        window = self.thunar(folder).place(20, 60, 560, 320)
        self.hand.click(*window.middle())
        self.hand.key("n", "Control_L", "Shift_L")
        self.wait_for(lambda: [each for each in self.desktop.native.find(instance="thunar")
                               if "New Folder" in each.title], "the question for the name of a new folder comes")
