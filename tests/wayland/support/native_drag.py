# SPDX-License-Identifier: MIT
"""A test of drags that begin in native programs."""
from .foreign import Announcements, ForeignDragTest
from .wayland_case import WaylandTest


class NativeDragTest(WaylandTest):
    """The helpers of the desktop's tests of foreign drags, for windows of which the X server knows nothing."""

    begins = ForeignDragTest.begins
    dragging = ForeignDragTest.dragging
    assert_stays_hidden = ForeignDragTest.assert_stays_hidden
    drop_on_shelf = ForeignDragTest.drop_on_shelf

    def setUp(self):
        super().setUp()
        self.words = self.file("words.txt")
        self.announcements = Announcements(self.desktop)

    def leave(self):
        self.announcements.close()
        super().leave()

    def source_window(self):
        return self.thunar(self.desktop.home / "things").place(20, 60, 560, 320)

    def pick_up(self, source, name="words.txt"):
        before = self.announcements.count()
        self.hand.pick_up(*source.item(name))
        self.assertTrue(self.begins(before), "the drag begins")

    def shelf_comes(self, app):
        """The shelf comes in the midst of the drag, and the focus stays where it is."""
        window = self.dragging(app.window, "the shelf comes up while the file is dragged")
        self.assertTrue(self.hand.holds())
        self.assertEqual([each.title for each in self.desktop.native.list() if each.focused], ["things - Thunar"])
        return window

    def assert_next_drag_works(self, app, source, name="words.txt"):
        """A whole drag to the shelf, as if nothing had happened before."""
        self.wait_for(app.hidden, "the unused shelf goes")
        self.pick_up(source, name)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == [name], "the shelf has a tile of the file")
