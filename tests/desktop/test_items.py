# SPDX-License-Identifier: MIT
"""The user selects, removes and clears items on the shelf."""
import time

from support.case import DesktopTest
from support.onlooker import Onlooker
from support.waiting import stays

BORDER = 1  # pixels into a tile, on the border of a selected one


class ItemsTest(DesktopTest):
    def selected(self):
        """Returns the names of the tiles whose border has its own colour."""
        return [tile.name for tile in self.app.tiles() if self.has_border(tile.frame)]

    def has_border(self, frame):
        middle = frame.y + frame.height // 2
        edge, inside = (self.desktop.windows.pixel(frame.x + x, middle) for x in (BORDER - 1, BORDER + 2))
        return max(abs(one - other) for one, other in zip(edge, inside)) > 24

    def rest_hand(self):
        self.hand.move_to(640, 400)

    def test_a_click_selects_one_tile_and_the_button_all(self):
        app = self.parklet()
        app.hold(*self.files(3))
        names = app.names()
        self.hand.click(*app.grip(names[1]))
        self.rest_hand()
        self.wait_for(lambda: self.selected() == [names[1]], f"one tile is selected, not {self.selected()}")
        app.click("Select all")
        self.rest_hand()
        self.wait_for(lambda: self.selected() == names, "all tiles are selected")
        app.click("Select all")
        self.rest_hand()
        self.wait_for(lambda: self.selected() == [], "no tile is selected")

    def tool_tip(self):
        """Returns the frame of the program's tool tip, or None."""
        kind = self.desktop.windows.atom("_NET_WM_WINDOW_TYPE_TOOLTIP")
        return next((self.desktop.windows.frame(window) for window in self.desktop.windows.find(instance="parklet")
                     if kind in self.desktop.windows.numbers(window, "_NET_WM_WINDOW_TYPE")), None)

    def test_a_hand_that_rests_on_a_button_is_told_what_it_does(self):
        app = self.parklet()
        app.show()
        self.assertIsNone(self.tool_tip())
        self.hand.move_to(*app.button("Preferences").center)
        frame = self.wait_for(self.tool_tip, "a tool tip comes up")
        self.assertTrue(app.find("Preferences", "tool tip"))
        self.assertLess(abs(frame.y - self.hand.position()[1]), 60)
        self.rest_hand()
        self.wait_for(lambda: not self.tool_tip(), "the tool tip goes")

    def test_a_screen_reader_meets_a_list_in_a_window(self):
        app = self.parklet()
        app.hold(*self.files(2))
        self.assertEqual(app.find("Files").role, "list")
        self.assertEqual([tile.role for tile in app.tiles()], ["list item", "list item"])
        shelf = next(node for node in app.root().children if node.find("Files"))
        self.assertEqual((shelf.role, shelf.name), ("frame", "Parklet"))
        self.assertEqual([node for node in shelf.walk() if node.role == "filler"], [])

    def test_a_whole_run_prints_nothing(self):
        app = self.parklet()
        app.hold(*self.files(3))
        first = app.names()[0]
        self.hand.move_to(*app.grip(first))
        self.hand.click(*app.tile(first).find("Remove", showing=False).center)
        self.wait_for(lambda: len(app.names()) == 2, "one item has left the shelf")
        app.click("Preferences")
        self.wait_for(lambda: app.window("preferences"), "the preferences open")
        for pane in ("General", "Behavior", "Appearance", "About", "Welcome"):
            self.hand.click(*app.find(pane, "list item").center)
            self.wait_for(lambda shown=pane: app.find(shown, "list item").has_state("selected"), f"{pane} is shown")
        app.choose("Quit Parklet")
        self.assertEqual(app.process.wait(20), 0)
        self.assertEqual((self.desktop.logs / "parklet.log").read_bytes(), b"")

    def test_the_remove_button_removes_its_item(self):
        app = self.parklet()
        paths = self.files(2)
        app.hold(*paths)
        first, second = app.names()
        self.hand.move_to(*app.grip(first))
        remove = app.tile(first).find("Remove", showing=False)
        self.hand.click(*remove.center)
        self.wait_for(lambda: app.names() == [second], "the item has left the shelf")
        self.assertTrue(paths[0].exists())

    def test_an_emptied_shelf_waits_a_moment_and_hides(self):
        app = self.parklet()
        app.hold(*self.files(1))
        clicked = time.monotonic()
        app.click("Clear all")
        self.wait_for(lambda: app.names() == [], "the item has left the shelf")
        self.wait_for(app.hidden, "the shelf hides")
        self.assertGreater(time.monotonic() - clicked, 1.5, "the shelf hid at once")

    def test_clearing_several_items_asks_first(self):
        app = self.parklet()
        app.hold(*self.files(3))
        app.click("Clear all")
        app.button("This will remove all 3 files from the shelf.")
        app.click("Cancel")
        self.wait_for(lambda: not app.find("Cancel"), "the question goes away")
        self.assertEqual(len(app.names()), 3)

        app.click("Clear all")
        app.click("Don't show this message again")
        app.click("Clear All")
        self.wait_for(lambda: app.names() == [], "the items have left the shelf")
        self.wait_for(lambda: app.read_settings().get("skipClearAllConfirmation") is True, "the wish is kept")

    def test_the_shelf_never_takes_the_focus(self):
        onlooker = Onlooker(self.desktop)
        app = self.parklet()
        app.hold(*self.files(2))
        onlooker_first = self.desktop.windows.activate(onlooker.window)
        self.assertIsNone(onlooker_first)
        self.wait_for(onlooker.is_active, "the onlooker has the focus")
        self.hand.click(*app.grip(app.names()[0]))
        app.click("Select all")
        stays(onlooker.is_active, "the shelf took the focus", 0.5)

    def test_control_a_belongs_to_the_shelf_only_while_something_is_selected(self):
        app = self.parklet()
        app.hold(*self.files(3))
        names = app.names()
        onlooker = Onlooker(self.desktop)
        self.hand.key("a", "Control_L")
        self.wait_for(lambda: onlooker.seen().count("a") == 1, "the focused program gets the key")

        for lock in (None, "Caps_Lock", "Num_Lock"):
            with self.subTest(lock=lock):
                self.hand.click(*app.grip(names[0]))
                self.rest_hand()
                self.wait_for(lambda: self.selected() == [names[0]], "one tile is selected")
                if lock:
                    self.hand.key(lock)
                self.hand.key("a", "Control_L")
                self.wait_for(lambda: self.selected() == names, "all tiles are selected")
                if lock:
                    self.hand.key(lock)
                self.hand.key("b")
                self.wait_for(lambda: onlooker.seen()[-1:] == ["b"], "the focused program gets other keys")
                self.assertEqual(onlooker.seen().count("a"), 1)
                onlooker.keys.remove("b")

        app.click("Select all")
        self.rest_hand()
        self.wait_for(lambda: self.selected() == [], "no tile is selected")
        self.hand.key("a", "Control_L")
        self.wait_for(lambda: onlooker.seen().count("a") == 2, "the focused program gets the key again")
