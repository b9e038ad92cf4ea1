# SPDX-License-Identifier: MIT
"""A test of drags that begin in native programs."""
import time

from Xlib import X
from Xlib import display as xdisplay
from Xlib.ext import xfixes

from . import waiting
from .foreign import ForeignDragTest
from .wayland_case import WaylandTest

PAUSE = 0.02


class NativeDragTest(WaylandTest):
    """The helpers of the desktop's tests of foreign drags, for windows of which the X server knows nothing."""

    dragging = ForeignDragTest.dragging
    assert_stays_hidden = ForeignDragTest.assert_stays_hidden
    drop_on_shelf = ForeignDragTest.drop_on_shelf

    def setUp(self):
        super().setUp()
        self.words = self.file("words.txt")
        self.announcements = Announcements(self.desktop)
        self.addCleanup(self.announcements.close)

    def source_window(self):
        return self.thunar(self.desktop.home / "things").place(20, 60, 560, 320)

    def pick_up(self, source, name="words.txt"):
        self.source = source
        before = self.announcements.count()
        self.hand.pick_up(*source.item(name))
        self.assertTrue(self.begins(before), "the drag begins")

    def drop_elsewhere(self):
        """Lets go over the empty desktop."""
        self.hand.carry_to(700, 620)
        self.hand.release()

    def begins(self, before):
        """Whether the compositor announces a drag within a time that is long enough for any."""
        end = time.monotonic() + waiting.PATIENCE
        while self.announcements.count() == before:
            if time.monotonic() > end:
                return False
            self.hand.nudge(4, 2)
            self.hand.nudge(-4, -2)
            time.sleep(PAUSE)
        return True

    def shelf_comes(self, app):
        """The shelf comes in the midst of the drag, and the focus stays where it is."""
        window = self.dragging(app.window, "the shelf comes up while the file is dragged")
        self.assertTrue(self.hand.holds())
        self.assertEqual([each.id for each in self.desktop.native.list() if each.focused], [self.source.window.id])
        return window

    def assert_next_drag_works(self, app, source, name="words.txt"):
        """A whole drag to the shelf, as if nothing had happened before."""
        self.wait_for(app.hidden, "the unused shelf goes")
        self.pick_up(source, name)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == [name], "the shelf has a tile of the file")


class Announcements:
    """Counts the drags that the compositor announces on its X server."""

    def __init__(self, desktop):
        self.display = xdisplay.Display(desktop.environment["DISPLAY"])
        self.display.xfixes_query_version()
        root = self.display.screen().root
        self.display.xfixes_select_selection_input(root, self.display.intern_atom("XdndSelection"),
                                                   xfixes.XFixesSetSelectionOwnerNotifyMask)
        self.display.sync()
        self.seen = 0

    def count(self):
        self.display.sync()
        while self.display.pending_events():
            if getattr(self.display.next_event(), "owner", X.NONE) != X.NONE:
                self.seen += 1
        return self.seen

    def close(self):
        self.display.close()
