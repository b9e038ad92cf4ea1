# SPDX-License-Identifier: MIT
"""Starts Parklet on a desktop with given settings, and uses it as a user does."""
import json
import os
import pathlib

from gi.repository import GLib

from .waiting import wait_for

PROGRAM = os.environ.get("PARKLET_PROGRAM") or pathlib.Path(__file__).parents[3] / "build/release/parklet"
TRAY_ICON_SIZE = 48  # pixels; a larger window is not a tray icon
# Without this, the question of the first start would appear in every test.
SETTLED = {"hasShownUpdatePrompt": True}


def uri_of(path):
    return GLib.filename_to_uri(os.fspath(path))


class Parklet:
    def __init__(self, desktop, settings=None):
        self.desktop = desktop
        self.settings_file = desktop.home / ".config/parklet/settings.json"
        self.process = None
        self.write_settings({**SETTLED, **(settings or {})})

    def write_settings(self, settings):
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        self.settings_file.write_text(json.dumps(settings))

    def read_settings(self):
        return json.loads(self.settings_file.read_text())

    def start(self):
        """Starts the program and waits for its icon in the tray."""
        self.process = self.desktop.start("parklet", PROGRAM)
        wait_for(lambda: self.tray_icon() or not self.runs(), "Parklet's icon is in the tray")
        if not self.runs():
            raise AssertionError(f"Parklet ended as it started, with {self.process.returncode}")
        return self

    def start_again(self):
        """Starts a second instance, and returns its exit code."""
        return self.desktop.start("parklet-again", PROGRAM).wait(30)

    def runs(self):
        return self.process.poll() is None

    def kill(self):
        self.process.kill()
        self.process.wait()

    # The tray

    def tray_icon(self):
        for window in self.desktop.windows.find(instance="parklet"):
            frame = self.desktop.windows.frame(window)
            embedded = window.query_tree().parent.id != self.desktop.windows.root.id
            if embedded and 1 < frame.width <= TRAY_ICON_SIZE and 1 < frame.height <= TRAY_ICON_SIZE:
                return frame
        return None

    def open_menu(self):
        """Opens the tray menu and returns it."""
        icon = wait_for(self.tray_icon, "Parklet's icon is in the tray")
        self.desktop.hand.click(icon.x + icon.width // 2, icon.y + icon.height // 2)
        wait_for(self.menu_window, "the tray menu opens")
        return self.desktop.accessibility.menu(self.desktop.hand)

    def menu_window(self):
        """Returns a visible window of the program without a role, larger than its icon."""
        return next((window for window in self.desktop.windows.find(instance="parklet")
                     if not self.desktop.windows.text(window, "WM_WINDOW_ROLE")
                     and self.desktop.windows.frame(window).height > TRAY_ICON_SIZE), None)

    def choose(self, title):
        """Opens the tray menu and clicks an item."""
        item = self.open_menu().find(title)
        self.desktop.hand.click(*item.center)
        wait_for(lambda: not self.menu_window(), "the menu closes")

    # The shelf

    def root(self):
        return self.desktop.accessibility.application(self.process.pid)

    def find(self, name=None, role=None):
        root = self.root()
        return root and root.find(name, role)

    def button(self, name):
        return wait_for(lambda: self.find(name), f"Parklet shows {name!r}")

    def click(self, name):
        self.desktop.hand.click(*self.button(name).center)

    def window(self, role="shelf"):
        return next(iter(self.desktop.windows.find(role=role, instance="parklet")), None)

    def frame(self):
        window = self.window()
        return window and self.desktop.windows.frame(window)

    def show(self):
        self.choose("Show Shelf")
        window = wait_for(self.window, "the shelf comes up")
        self.opaque(window)
        return window

    def opaque(self, window):
        wait_for(lambda: self.desktop.windows.alpha(window) > 0.999, "the shelf has faded in")

    def hidden(self):
        return self.window() is None

    def center(self):
        frame = self.frame()
        return frame.x + frame.width // 2, frame.y + frame.height // 2

    def tiles(self):
        """Returns the tiles in order: every widget that has a remove button."""
        root = self.root()
        return [node for node in root.walk() if self.is_tile(node)] if root else []

    def is_tile(self, node):
        try:
            return any(child.name == "Remove" for child in node.children)
        except GLib.Error:
            return False

    def names(self):
        """Returns the names of the tiles. Reads them again when a tile disappears meanwhile."""
        while True:
            try:
                return [tile.name for tile in self.tiles()]
            except GLib.Error:
                if not self.runs():
                    raise

    def tile(self, name):
        return wait_for(lambda: next((tile for tile in self.tiles() if tile.name == name), None),
                        f"the shelf has a tile {name!r}")

    def grip(self, name):
        """Returns a position on a tile where it can be clicked and dragged."""
        frame = self.tile(name).frame
        return frame.x + frame.width // 2, frame.y + frame.height // 3

    def hold(self, *paths):
        """Adds files to the shelf from the clipboard, and waits for their tiles."""
        self.copy(map(uri_of, paths))
        before = len(self.tiles())
        self.choose("Add From Clipboard")
        wait_for(lambda: len(self.tiles()) == before + len(paths), f"{len(paths)} more tiles come")
        self.opaque(wait_for(self.window, "the shelf comes up"))

    def copy(self, uris):
        """Puts addresses on the clipboard, as a file manager does."""
        listing = self.desktop.folder / "clipboard"
        listing.write_bytes(b"".join(uri.encode() + b"\r\n" for uri in uris))
        self.desktop.run("sh", "-c", 'exec xclip -selection clipboard -t text/uri-list -i "$0" >/dev/null 2>&1', listing)
