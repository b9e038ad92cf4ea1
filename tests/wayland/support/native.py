# SPDX-License-Identifier: MIT
"""Native Wayland programs: their windows as the compositor tells of them, and file managers among them."""
import os
from collections import namedtuple

from . import filemanagers
from .waiting import wait_for

# A window as its compositor knows it: `frame` is what the user sees of it, `surface` has the shadow too.
NativeWindow = namedtuple("NativeWindow", "id title instance pid frame surface focused")
PLACING = 0.3  # seconds that a window has to take its place
# A program of the tests: a native one of Qt.
PEER = os.environ.get("PARKLET_WAYLAND_PEER")


class NativeWindows:
    """What a file manager's window asks of the display, answered by the compositor. A session subclasses it."""

    def list(self):
        """All native windows, as NativeWindow."""
        raise NotImplementedError

    def place(self, window, x, y, width, height):
        raise NotImplementedError

    def activate(self, window):
        raise NotImplementedError

    def find(self, instance=None, title=None):
        return [window for window in self.list()
                if (instance is None or instance.lower() in window.instance.lower())
                and (title is None or title in window.title)]

    def now(self, window):
        return next((each for each in self.list() if each.id == window.id), window)

    def frame(self, window):
        return self.now(window).frame

    def surface(self, window):
        return self.now(window).surface

    def title(self, window):
        return self.now(window).title


class NativeDesktop:
    """A session as the file managers of the desktop tests see theirs, with native windows in place of those of X."""

    def __init__(self, session):
        self.session = session
        self.windows = session.native

    def __getattr__(self, name):
        return getattr(self.session, name)


class NativeFolderWindow(filemanagers.FolderWindow):
    """Accessible places are relative to the surface there, as a native program does not know where its window is."""

    def pid(self):
        return self.window.pid

    def on_screen(self, place):
        surface = self.desktop.windows.surface(self.window)
        return surface.x + place[0], surface.y + place[1]

    def item(self, name):
        return self.on_screen(super().item(name))

    def empty_place(self):
        return self.on_screen(super().empty_place())

    def middle(self):
        return self.on_screen(super().middle())


def native(manager_class):
    """A file manager of the desktop tests as a native Wayland program."""
    class Native(manager_class):
        def __init__(self, session):
            super().__init__(NativeDesktop(session))

        def open(self, folder):
            before = {window.id for window in self.windows(folder)}
            process = self.desktop.start(self.instance, *self.command, folder)
            window = wait_for(lambda: next((each for each in self.windows(folder) if each.id not in before), None),
                              f"{self.instance} opens {folder.name}")
            shown = NativeFolderWindow(self, folder, window)
            shown.process = process
            shown.view()
            return shown

    Native.__name__ = f"Native{manager_class.__name__}"
    return Native


class ProgramWindow:
    """A program that shows a single window, by its title."""

    def __init__(self, desktop, title, *command):
        self.desktop = desktop
        self.log = desktop.logs / f"{title}.log"
        self.log.unlink(missing_ok=True)
        before = {window.id for window in desktop.native.find(title=title)}
        self.process = desktop.start(title, *command)
        self.window = wait_for(lambda: next((window for window in desktop.native.find(title=title)
                                             if window.id not in before), None), f"{title!r} comes up")

    def said(self, text):
        """Whether the program has printed that."""
        return text in self.log.read_text()

    def place(self, x, y):
        """Moves it and leaves its size as it is."""
        windows = self.desktop.native

        def is_there():
            frame = windows.frame(self.window)
            if frame.width and frame[:2] != (x, y):
                # A window that has just come may still be placed by the compositor, so it is told until it is there.
                windows.place(self.window, x, y, frame.width, frame.height)
            return frame.width and frame[:2] == (x, y)

        wait_for(is_there, "the window takes its place", pause=PLACING)
        return self

    def pid(self):
        return self.process.pid

    def middle(self):
        frame = self.desktop.native.frame(self.window)
        return frame.x + frame.width // 2, frame.y + frame.height // 2

    def item(self, _name=None):
        return self.middle()


Thunar = native(filemanagers.Thunar)
PCManFMQt = native(filemanagers.PCManFMQt)
