# SPDX-License-Identifier: MIT
"""A test of drags that begin in other programs."""
import pathlib
import time

from . import filemanagers
from .case import DesktopTest
from .focus import FocusWatch

ATTEMPTS = 4  # to begin a drag
SOURCE = pathlib.Path(__file__).with_name("drag_source.py")


class ForeignDragTest(DesktopTest):
    manager_class = filemanagers.Thunar

    def setUp(self):
        super().setUp()
        self.manager = self.manager_class(self.desktop)
        self.words = self.file("words.txt")
        self.focus = None
        self.addCleanup(lambda: self.focus and self.focus.close())

    def source_window(self):
        return self.manager.open(self.desktop.home / "things").place(20, 60, 560, 300)

    def scripted_source(self, *addresses, delay=0, x=40, y=420):
        """Starts a window from which these addresses are dragged. It takes `delay` seconds to tell them."""
        listing = self.desktop.folder / f"addresses at {x}"
        listing.write_text("\n".join(addresses))
        before = {window.id for window in self.desktop.windows.find(title="drag source")}
        self.desktop.start("drag-source", "/usr/bin/python3", SOURCE, listing, str(delay))
        window = self.wait_for(lambda: next((each for each in self.desktop.windows.find(title="drag source")
                                             if each.id not in before), None), "the source of the drag comes up")
        self.desktop.windows.place(window, x, y, 240, 120)
        self.wait_for(lambda: self.desktop.windows.frame(window)[:2] == (x, y), "the source takes its place")
        return ScriptedSource(self.desktop, window)

    def pick_up(self, source, name="words.txt"):
        self.grab(source.item(name), source.window)

    def grab(self, place, window):
        """Begins a drag in the active window, and records changes of the focus from then on."""
        self.desktop.windows.activate(window)
        self.wait_for(lambda: self.desktop.windows.active() == window.id, "the source is the active window")
        if self.focus:
            self.focus.close()
        self.focus = FocusWatch(self.desktop)
        for _ in range(ATTEMPTS):
            if self.hand.pick_up(*place):
                return
            # A program that is busy with the previous drag has not noticed this one.
            self.hand.release()
        self.fail("no drag begins")

    def dragging(self, condition, message):
        """Waits for a condition while the pointer moves a little, as a user's hand does."""
        def met():
            self.hand.nudge(4, 2)
            self.hand.nudge(-4, -2)
            return condition()

        return self.wait_for(met, message)

    def shelf_comes(self, app):
        """The shelf shows during the drag, and the focus does not change."""
        window = self.dragging(app.window, "the shelf comes up while the file is dragged")
        self.assertTrue(self.hand.holds())
        self.assert_focus_kept()
        return window

    def assert_stays_hidden(self, app, role="shelf"):
        """The shelf does not show within a time that is always long enough for it."""
        end = time.monotonic() + 1.5
        while time.monotonic() < end:
            self.assertIsNone(app.window(role))
            self.hand.nudge(3, 0)
            self.hand.nudge(-3, 0)
            time.sleep(0.05)

    def assert_focus_kept(self):
        self.assertEqual(self.focus.losses(), [])

    def drop_on_shelf(self, app):
        self.hand.carry_to(*app.center())
        self.hand.release()

    def assert_next_drag_works(self, app, source, name="words.txt"):
        """A complete drag to the shelf works, whatever happened before."""
        self.wait_for(app.hidden, "the unused shelf goes")
        self.pick_up(source, name)
        self.shelf_comes(app)
        self.drop_on_shelf(app)
        self.wait_for(lambda: app.names() == [name], "the shelf has a tile of the file")
        self.assert_focus_kept()
        time.sleep(0.5)
        self.assertFalse(app.hidden())


class ScriptedSource:
    def __init__(self, desktop, window):
        self.desktop, self.window = desktop, window

    def item(self, _name=None):
        frame = self.desktop.windows.frame(self.window)
        return frame.x + 60, frame.y + 60
