# SPDX-License-Identifier: MIT
"""A headless session of KWin, the compositor of KDE Plasma."""
import json
import os
import pathlib
import shutil
import unittest

from gi.repository import Gio, GLib

from .accessibility import connect
from .native import NativeWindow, NativeWindows
from .session import WaylandSession
from .waiting import wait_for
from .windows import Frame
from .wlhand import PROGRAM, ClientHand

PATIENCE = 30000  # milliseconds that KWin has for an answer
LIST_WINDOWS = """
var all = workspace.clientList(), found = [];
for (var i = 0; i < all.length; ++i) {
    var client = all[i], frame = client.frameGeometry, surface = client.bufferGeometry;
    if (client.normalWindow)
        found.push(["" + client.internalId, client.caption, "" + client.resourceClass, client.pid,
                    [frame.x, frame.y, frame.width, frame.height],
                    [surface.x, surface.y, surface.width, surface.height], client.active]);
}
print("%s" + JSON.stringify(found));
"""
TELL_WINDOW = """
var all = workspace.clientList();
for (var i = 0; i < all.length; ++i) {
    var client = all[i];
    if ("" + client.internalId === "%s") { %s }
}
print("%s");
"""


class KWinWindows(NativeWindows):
    """KWin runs scripts, and prints what they print to its log."""

    def __init__(self, session):
        self.session = session
        self.bus = connect(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.count = 0

    def call(self, path, interface, method, arguments=None):
        return self.bus.call_sync("org.kde.KWin", path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                  PATIENCE, None).unpack()

    def run(self, script):
        """Runs a script that prints the mark that it is given, and answers what follows that in the log."""
        self.count += 1
        mark = f"answer-{self.count}:"
        path = self.session.folder / f"script-{self.count}.js"
        path.write_text(script(mark))
        number, = self.call("/Scripting", "org.kde.kwin.Scripting", "loadScript",
                            GLib.Variant("(ss)", (str(path), path.name)))
        self.call(f"/{number}", "org.kde.kwin.Script", "run")
        log = self.session.logs / "kwin.log"
        line = wait_for(lambda: next((line for line in log.read_text(errors="replace").splitlines() if mark in line),
                                     None), "KWin's script answers")
        self.call("/Scripting", "org.kde.kwin.Scripting", "unloadScript", GLib.Variant("(s)", (path.name,)))
        return line.split(mark, 1)[1]

    def list(self):
        answer = self.run(lambda mark: LIST_WINDOWS % mark)
        return [NativeWindow(number, title, instance, pid, Frame(*map(round, frame)), Frame(*map(round, surface)),
                             focused)
                for number, title, instance, pid, frame, surface, focused in json.loads(answer)]

    def tell(self, window, what):
        self.run(lambda mark: TELL_WINDOW % (window.id, what, mark))

    def place(self, window, x, y, width, height):
        self.tell(window, f"client.frameGeometry = {{x: {x}, y: {y}, width: {width}, height: {height}}};")

    def activate(self, window):
        self.tell(window, "workspace.activeClient = client;")


class KWinSession(WaylandSession):
    name = "KWin"
    programs = ("kwin_wayland", "Xwayland", "dbus-daemon")

    @classmethod
    def require(cls):
        super().require()
        if not PROGRAM:
            raise unittest.SkipTest("this build has no native panels")

    def make_environment(self):
        return super().make_environment() | {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true",
                                             "KDE_SESSION_VERSION": "5"}

    def start_compositor(self):
        # The installed one may have a capability that a container does not grant; a copy has none.
        program = self.folder / "kwin_wayland"
        shutil.copy(shutil.which("kwin_wayland"), program)
        environment = {"KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1", "KWIN_COMPOSE": "Q", "QT_QUICK_BACKEND": "software",
                       "QT_LOGGING_RULES": "kwin_scripting.debug=true;js.debug=true", "QT_FORCE_STDERR_LOGGING": "1"}
        without = ["env", "-u", "WAYLAND_DISPLAY", "-u", "DISPLAY", "-u", "GDK_BACKEND", "-u", "QT_QPA_PLATFORM"]
        width, height = self.monitors[0]
        self.compositor = self.start(
            "kwin", *without, program, "--virtual", "--xwayland", "--width", str(width), "--height", str(height),
            "--output-count", str(len(self.monitors)), "--socket", self.socket, "--no-lockscreen",
            "--no-global-shortcuts", environment=environment)
        self.wait_for_socket(self.compositor)
        self.native = wait_for(self.connect_windows, "KWin is on the bus")
        display, authority = wait_for(self.x_server, "KWin starts XWayland")
        self.join_x(display, authority)
        self.hand = ClientHand(self.environment, self.width, self.height)

    def connect_windows(self):
        return KWinWindows(self) if self.is_on_bus("org.kde.KWin") else None

    def x_server(self):
        """The display of the X server that is KWin's child, and its authority file if it has one."""
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                words = (folder / "cmdline").read_bytes().decode().split("\0")
                parent = (folder / "stat").read_text().rsplit(")", 1)[1].split()[1]
            except (OSError, UnicodeDecodeError):
                continue
            if int(parent) == self.compositor.pid and os.path.basename(words[0]) == "Xwayland":
                authority = words[words.index("-auth") + 1] if "-auth" in words else None
                return next(word for word in words if word.startswith(":")), authority
        return None

    def screenshot(self, path):
        raise OSError("KWin has no pictures for programs that are not its own")

    def close(self):
        if hand := getattr(self, "hand", None):
            hand.close()
        super().close()
