# SPDX-License-Identifier: MIT
"""A test in a Wayland session, which all tests of a class share; programs and files are each test's own."""
import shutil
import unittest

from . import native
from .case import EVIDENCE, DesktopTest
from .parklet import PROGRAM, Parklet
from .waiting import wait_for

BUS_NAME = "com.orvane.Parklet"
# What the session itself keeps in its home folder.
KEPT = ("Desktop",)


class WaylandParklet(Parklet):
    """Parklet where there may be no tray: found by its name on the bus, told by the actions of its launcher."""

    def start(self):
        self.process = self.desktop.start("parklet", PROGRAM, environment=self.environment())
        wait_for(lambda: self.owns_name() or not self.runs(), "Parklet is on the bus")
        if not self.runs():
            raise AssertionError(f"Parklet ended as it started, with {self.process.returncode}")
        wait_for(self.root, "Parklet's widgets can be found")
        return self

    def environment(self):
        # The session's programs are told to be native ones; Parklet is to choose for itself.
        return {"QT_QPA_PLATFORM": ""}

    def owns_name(self):
        return self.desktop.is_on_bus(BUS_NAME)

    def perform(self, *action):
        """Does an action of the launcher; without one, what a start from the menu does."""
        method = ("ActivateAction", *action, "[]", "{}") if action else ("Activate", "{}")
        self.desktop.run("gdbus", "call", "--session", "--dest", BUS_NAME, "--object-path", "/com/orvane/Parklet",
                         "--method", f"org.freedesktop.Application.{method[0]}", *method[1:])

    def choose(self, title):
        """What the tray menu of the desktop tests does, by the launcher."""
        self.perform({"Add From Clipboard": "add-from-clipboard", "Show Shelf": "show-shelf"}[title])


class WaylandTest(DesktopTest):
    """A subclass names its `session_class` and may name its `monitors`."""

    session_class = None
    monitors = ((1280, 800),)
    programs = ("thunar",)  # that these tests need beside those of the session

    @classmethod
    def setUpClass(cls):
        cls.session_class.require()
        for program in cls.programs:
            if not shutil.which(program):
                raise unittest.SkipTest(f"{program} is not installed: script/bootstrap tests wayland")
        cls.desktop = None
        cls.open_session()
        cls.addClassCleanup(cls.close_session)

    @classmethod
    def open_session(cls):
        cls.desktop = cls.session_class(cls.monitors)
        cls.session_programs = len(cls.desktop.processes.own)

    @classmethod
    def close_session(cls):
        if cls.desktop:
            cls.desktop.close()
        cls.desktop = None

    def run(self, result=None):
        """Unlike a desktop, the session outlives the test; leave() keeps what a failed one looked like."""
        return unittest.TestCase.run(self, result)

    def setUp(self):
        if not self.desktop:
            self.open_session()
        self.hand = self.desktop.hand
        self.addCleanup(self.leave)

    def leave(self):
        """Cleans up after the test; a failed one takes the session with it."""
        result = self._outcome.result
        if any(test is self for test, _ in result.failures + result.errors):
            folder = EVIDENCE / self.id()
            self.desktop.keep_evidence(folder)
            print(f"the logs and a picture of the screen are in {folder}")
            self.close_session()
            return
        if self.hand.holds():
            self.hand.release()
        self.end_programs()

    def end_programs(self):
        """Ends what the test has started and throws its files away."""
        processes = self.desktop.processes
        while len(processes.own) > self.session_programs:
            processes.end(processes.own.pop())
        for entry in self.desktop.home.iterdir():
            if not entry.name.startswith(".") and entry.name not in KEPT:
                shutil.rmtree(entry) if entry.is_dir() else entry.unlink()

    def parklet(self, **settings):
        self.app = WaylandParklet(self.desktop, settings).start()
        return self.app

    def qt_source(self, content, kind="text/uri-list"):
        """A native Qt window from which that is dragged."""
        data = self.desktop.folder / "dragged"
        data.write_text(content)
        return self.peer("Qt source", "source", data, kind)

    def qt_target(self, milliseconds=0):
        """A native Qt window that takes drops, and asks for what was dropped after a time."""
        return self.peer("Qt target", "target", str(milliseconds))

    def peer(self, title, *arguments):
        return native.ProgramWindow(self.desktop, title, native.PEER, *arguments)

    def thunar(self, folder):
        """A native Thunar of this test's own."""
        return native.Thunar(self.desktop).open(folder)
