# SPDX-License-Identifier: MIT
"""What the shelf does as a native panel, the same in each session that has such panels."""
import os

from gi.repository import GLib

from .parklet import uri_of
from .waiting import wait_for
from .wayland_case import WaylandParklet, WaylandTest

CONTRACTS = os.environ.get("PARKLET_CONTRACTS")
NATIVE = {"QT_QPA_PLATFORM": "", "PARKLET_WAYLAND": "native"}  # what asks for native panels
ZONE = (88, 88)  # points; the size of the drop zone


class NativeParklet(WaylandParklet):
    """Parklet as a native program. Its panels are found by a screen reader's means, as no X server knows them."""

    def environment(self):
        return NATIVE

    def panels(self):
        root = self.root()
        try:
            return [node.frame for node in root.children if node.name == "Parklet" and node.has_state("showing")]
        except GLib.Error:
            return []

    def frame(self):
        return next((frame for frame in self.panels() if frame[2:] != ZONE), None)

    def zone(self):
        return next((frame for frame in self.panels() if frame[2:] == ZONE), None)

    def hidden(self):
        return self.frame() is None

    def show(self):
        self.perform()
        return wait_for(self.frame, "the shelf comes up")

    def copy(self, uris):
        """Puts addresses on the clipboard, as a native file manager does."""
        listing = self.desktop.folder / "clipboard"
        listing.write_bytes(b"".join(uri.encode() + b"\r\n" for uri in uris))
        self.desktop.run("sh", "-c", 'exec wl-copy --type text/uri-list <"$0" >/dev/null 2>&1', listing)

    def hold(self, *paths):
        self.copy(map(uri_of, paths))
        before = len(self.tiles())
        self.choose("Add From Clipboard")
        wait_for(lambda: len(self.tiles()) == before + len(paths), f"{len(paths)} more tiles come")
        wait_for(self.frame, "the shelf comes up")


class NativePanelTest(WaylandTest):
    programs = ("thunar", "wl-copy")

    def parklet(self, **settings):
        self.app = NativeParklet(self.desktop, settings).start()
        return self.app

    def open_thunar(self, folder, x=20):
        return self.thunar(folder).place(x, 60, 560, 340)

    def bring(self, source, name="words.txt"):
        """Picks a file up, and waits for the shelf that this brings."""
        self.hand.pick_up(*source.item(name))
        self.hand.carry_to(*source.middle(), linger=1)
        return self.wait_for(self.app.frame, "the drag brings the shelf")

    def drop_on_shelf(self):
        self.hand.carry_to(*self.app.center())
        self.hand.release()


class NativePanelTests:
    """The tests, for each session once more."""

    def test_the_shelf_is_at_its_place_on_every_edge(self):
        row = None
        for edge, alignment, left, top, right, bottom in (
                (1, 1, 1160, 318, 1276, 482), (1, 2, 1160, 616, 1276, 780), (0, 0, 4, 20, 120, 184),
                (0, 1, 4, 318, 120, 482), (2, 0, 20, 4, row, row), (2, 2, row, 4, 1260, row),
                (3, 0, 20, row, row, 796)):
            with self.subTest(edge=edge, alignment=alignment):
                app = self.parklet(windowEdge=edge, windowAlignment=alignment)
                x, y, width, height = app.show()
                for found, expected in zip((x, y, x + width, y + height), (left, top, right, bottom)):
                    if expected is not row:
                        self.assertEqual(found, expected)
                self.check_picture(app.frame())
                app.kill()

    def test_a_native_drag_brings_the_shelf_which_takes_the_file_and_gives_it_back(self):
        source, target = self.folder("source"), self.folder("target")
        (source / "words.txt").write_text("some words\n")
        app = self.parklet()
        window = self.open_thunar(source)
        self.bring(window)
        self.drop_on_shelf()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf holds the file")
        to_window = self.open_thunar(target, x=590)
        self.hand.drag(app.grip("words.txt"), to_window.empty_place())
        self.wait_for((target / "words.txt").exists, "the file is copied")
        self.assertTrue((source / "words.txt").exists())
        self.wait_for(lambda: app.names() == [], "the file leaves the shelf")
        self.wait_for(app.hidden, "the emptied shelf goes")

    def test_all_selected_files_are_moved_in_one_drag(self):
        source, target = self.folder("source"), self.folder("target")
        files = [source / f"{name}.txt" for name in ("one", "two", "three")]
        for file in files:
            file.write_text(file.name)
        app = self.parklet(dragMode=1)
        app.hold(*files)
        to_window = self.open_thunar(target, x=400)
        app.click("Select all")
        self.hand.drag(app.grip("two.txt"), to_window.empty_place())
        self.wait_for(lambda: sorted(each.name for each in target.iterdir()) == ["one.txt", "three.txt", "two.txt"],
                      "all files land in the folder")
        self.wait_for(lambda: list(source.iterdir()) == [], "they have been moved")
        self.wait_for(lambda: app.names() == [], "they leave the shelf")

    def test_an_empty_shelf_that_a_drag_brought_goes_when_the_drag_ends_elsewhere(self):
        source, target = self.folder("source"), self.folder("target")
        (source / "words.txt").write_text("some words\n")
        app = self.parklet()
        window, to_window = self.open_thunar(source), self.open_thunar(target, x=590)
        self.bring(window)
        self.hand.carry_to(*to_window.empty_place())
        self.hand.release()
        self.wait_for((target / "words.txt").exists, "the file lands where it was dropped")
        self.wait_for(app.hidden, "the shelf goes")

    def test_a_shelf_under_a_resting_drag_stays(self):
        source = self.folder("source")
        (source / "words.txt").write_text("some words\n")
        app = self.parklet()
        window = self.open_thunar(source)
        self.bring(window)
        self.hand.carry_to(*app.center(), linger=12)
        self.assertIsNotNone(app.frame())
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf holds the file")

    def test_a_drag_that_comes_near_brings_the_shelf(self):
        source = self.folder("source")
        (source / "words.txt").write_text("some words\n")
        app = self.parklet(autoShowTrigger=2)
        window = self.open_thunar(source)
        self.hand.pick_up(*window.item("words.txt"))
        self.hand.carry_to(1000, 600)
        self.assertIsNone(app.frame())
        self.hand.carry_to(1160 - 100, 400)
        self.wait_for(app.frame, "the shelf comes")
        self.drop_on_shelf()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf holds the file")

    def test_the_drop_zone_comes_beside_the_pointer(self):
        source = self.folder("source")
        (source / "words.txt").write_text("some words\n")
        app = self.parklet(autoShowTrigger=1)
        window = self.open_thunar(source)
        x, y = window.item("words.txt")
        self.bring(window)
        zone = self.wait_for(app.zone, "the drop zone comes")
        # Where the drag began, or on its way to the middle of the window.
        self.assertLess(abs(zone.x - 24 - x), 350)
        self.assertLess(abs(zone.y - 16 - y), 250)
        self.hand.carry_to(zone.x + 44, zone.y + 44)
        self.hand.release()
        self.wait_for(lambda: app.names() == ["words.txt"], "the shelf holds the file")
        self.wait_for(lambda: not app.zone(), "the drop zone goes")

    def test_control_a_selects_all_while_the_pointer_is_on_the_shelf(self):
        files = self.files(3)
        app = self.parklet()
        app.hold(*files)
        self.hand.click(*app.grip(files[0].name))

        def select_all():
            # The keyboard comes a moment after the click.
            self.hand.key("a", "Control_L")
            return all(tile.has_state("selected") for tile in app.tiles())
        self.wait_for(select_all, "all tiles are selected")

    def test_what_is_copied_in_another_program_is_added_from_the_clipboard(self):
        file = self.file("words.txt")
        app = self.parklet()
        app.hold(file)
        self.assertEqual(app.names(), ["words.txt"])

    def test_the_services_keep_what_their_headers_promise(self):
        contracts = self.desktop.start("contracts", CONTRACTS, environment={**NATIVE, "QT_FATAL_WARNINGS": "1"})
        self.assertEqual(contracts.wait(120), 0)

    def test_without_being_asked_for_it_is_a_program_of_the_x_server(self):
        self.app = WaylandParklet(self.desktop).start()
        self.app.perform()
        self.wait_for(self.app.window, "the shelf is a window of XWayland")

    def test_a_second_start_shows_the_shelf_of_the_first(self):
        app = self.parklet()
        self.assertEqual(app.start_again(), 0)
        self.wait_for(app.frame, "the shelf comes up")
