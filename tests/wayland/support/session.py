# SPDX-License-Identifier: MIT
"""A headless Wayland session with XWayland: buses, folders and processes of its own. A compositor is a subclass."""
import os
import pathlib
import shutil
import unittest

from gi.repository import Gio, GLib
from Xlib import display as xdisplay

from . import hand, waiting
from .desktop import Desktop, listens
from .waiting import wait_for
from .windows import Windows

# A compositor that draws by the processor, and what runs beside it, take their time on a busy machine.
START_PATIENCE = 600.0  # seconds
waiting.PATIENCE = hand.PATIENCE = 240.0  # seconds


def has_owner(bus, name):
    """Whether anybody on a bus has that name."""
    return bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                         GLib.Variant("(s)", (name,)), None, Gio.DBusCallFlags.NONE, -1, None).unpack()[0]


def mounts_below(folder):
    """The file systems that are mounted in a folder or below it."""
    places = [line.split()[1] for line in pathlib.Path("/proc/self/mounts").read_text().splitlines()]
    return [place for place in places if pathlib.Path(place).is_relative_to(folder)]


class WaylandSession(Desktop):
    """`Session(monitors)` starts everything and answers when it is there; close() ends everything.

    A subclass names the `programs` that it needs, starts its compositor in start_compositor(), and sets `hand` (as
    support.hand.Hand), `native` (as support.native.NativeWindows) and, by join_x(), what is known of XWayland.
    """

    name = None  # of the compositor
    programs = ()
    socket = "wayland-parklet"

    def __init__(self, monitors=((1280, 800),)):
        self.monitors = monitors
        self.width = sum(width for width, _ in monitors)
        self.height = max(height for _, height in monitors)
        self.make_folders()
        try:
            self.start_system_bus()
            self.start_bus()
            self.start_compositor()
        except BaseException:
            self.close()
            raise

    @classmethod
    def require(cls):
        """Skips the tests where the session's programs are not installed."""
        for program in cls.programs:
            if not shutil.which(program):
                raise unittest.SkipTest(f"{program} is not installed: script/bootstrap wayland")

    def make_environment(self):
        environment = super().make_environment()
        environment |= {
            "XDG_SESSION_TYPE": "wayland", "LIBGL_ALWAYS_SOFTWARE": "1",
            # Programs of the session are native ones, as in a user's session; Qt 5 would choose otherwise.
            "WAYLAND_DISPLAY": self.socket, "GDK_BACKEND": "wayland", "QT_QPA_PLATFORM": "wayland",
        }
        return environment

    def x_environment(self):
        """What a program gets that is to run under XWayland."""
        return {"GDK_BACKEND": "x11", "QT_QPA_PLATFORM": "xcb"}

    def start_system_bus(self):
        """A system bus with nobody on it, so that nothing in the session talks to the machine's own."""
        socket = self.folder / "run/system-bus"
        settings = self.folder / "system-bus.conf"
        settings.write_text('<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN" '
                            '"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">\n'
                            f'<busconfig><listen>unix:path={socket}</listen><auth>EXTERNAL</auth>'
                            '<policy context="default"><allow send_destination="*" eavesdrop="true"/>'
                            '<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>\n')
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={socket}"
        self.start("system-bus", "dbus-daemon", f"--config-file={settings}", "--nofork", "--nopidfile", "--nosyslog")
        wait_for(lambda: listens(socket), "the system bus starts", START_PATIENCE)

    def wait_for_socket(self, compositor):
        """Waits until the compositor takes native clients."""
        socket = self.folder / "run" / self.socket
        wait_for(lambda: listens(socket) or compositor.poll() is not None, f"{self.name} starts", START_PATIENCE)
        if compositor.poll() is not None:
            raise RuntimeError(f"{self.name} did not start: exit code {compositor.returncode}")

    def is_on_bus(self, name):
        """Whether anybody on the session bus has that name."""
        return has_owner(self.accessibility.session, name)

    def join_x(self, display, authority=None):
        """Connects to the session's XWayland."""
        self.environment["DISPLAY"] = display
        if authority:
            self.environment["XAUTHORITY"] = authority
            os.environ["XAUTHORITY"] = authority  # Xlib looks for it there
        self.x = wait_for(lambda: self.connect_x(display), "XWayland starts", START_PATIENCE)
        self.windows = Windows(self.x)

    def connect_x(self, display):
        try:
            return xdisplay.Display(display)
        except OSError:
            return None

    def close(self):
        if self.x:
            self.x.close()
        self.processes.end_all()
        if mounted := mounts_below(self.folder):
            raise RuntimeError(f"something is mounted in the session's folder: {mounted}")
        shutil.rmtree(self.folder, ignore_errors=True)
