# SPDX-License-Identifier: MIT
"""A headless GNOME session: GNOME Shell with XWayland, a logind that only pretends, and a remote-controlled pointer."""
import importlib.util
import json
import os
import time
import unittest

from gi.repository import Gio, GLib
from Xlib import XK, Xatom

from .accessibility import connect
from .hand import LINGER, TICK, Hand
from .native import NativeWindow, NativeWindows
from .session import START_PATIENCE, WaylandSession, has_owner
from .waiting import wait_for
from .windows import Frame

PATIENCE = 30000  # milliseconds that the shell has for an answer
REMOTE = "org.gnome.Mutter.RemoteDesktop"
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}  # as the kernel counts them
LIST_WINDOWS = """JSON.stringify(global.get_window_actors().map(actor => {
    let window = actor.meta_window, frame = window.get_frame_rect(), surface = window.get_buffer_rect();
    return [window.get_id(), window.get_title() || '', window.get_wm_class() || '', window.get_pid(),
            [frame.x, frame.y, frame.width, frame.height], [surface.x, surface.y, surface.width, surface.height],
            window.has_focus(), window.get_client_type()];
}))"""
NATIVE_CLIENT = 0  # Meta.WindowClientType.WAYLAND


class Shell:
    """GNOME Shell, asked and told by its own language."""

    def __init__(self, address):
        self.bus = connect(address)

    def call(self, name, path, interface, method, arguments=None):
        return self.bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, PATIENCE,
                                  None).unpack()

    def evaluate(self, script):
        """The value of a script in the shell, None while there is no shell."""
        try:
            done, answer = self.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval",
                                     GLib.Variant("(s)", (script,)))
        except GLib.Error:
            return None
        if not done:
            raise RuntimeError(f"the shell could not evaluate {script!r}: {answer}")
        return json.loads(answer) if answer else None

    def picture(self, path):
        self.call("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
                  "Screenshot", GLib.Variant("(bbs)", (True, False, os.fspath(path))))


class ShellWindows(NativeWindows):
    def __init__(self, shell):
        self.shell = shell

    def list(self):
        windows = json.loads(self.shell.evaluate(LIST_WINDOWS) or "[]")
        return [NativeWindow(number, title, instance, pid, Frame(*frame), Frame(*surface), focused)
                for number, title, instance, pid, frame, surface, focused, kind in windows if kind == NATIVE_CLIENT]

    def tell(self, window, what):
        self.shell.evaluate("global.get_window_actors().map(actor => actor.meta_window)"
                            f".filter(window => window.get_id() === {window.id}).forEach(window => {{ {what} }})")

    def place(self, window, x, y, width, height):
        self.tell(window, f"window.unmaximize(3); window.move_resize_frame(true, {x}, {y}, {width}, {height});")

    def activate(self, window):
        self.tell(window, "window.activate(global.get_current_time());")


class ShellHand(Hand):
    """A hand that GNOME's remote control moves. Native windows hear it as they hear a mouse."""

    def __init__(self, shell, display, width, height):
        self.shell, self.display = shell, display
        path, = shell.call(REMOTE, "/org/gnome/Mutter/RemoteDesktop", REMOTE, "CreateSession")
        self.path = path
        self.tell("Start")
        # Motion is relative. The lower right corner is the one where nothing happens.
        self.x, self.y = width - 1, height - 1
        self.width, self.height = width, height
        self.push(4 * width, 4 * height)
        self.settle()

    def tell(self, method, signature="()", *values):
        self.shell.call(REMOTE, self.path, f"{REMOTE}.Session", method, GLib.Variant(signature, values))

    def push(self, dx, dy):
        self.tell("NotifyPointerMotionRelative", "(dd)", dx, dy)

    def seen(self):
        """Where the compositor has the pointer, and which buttons and modifiers are down."""
        return self.shell.evaluate("global.get_pointer()") or [-1, -1, 0]

    def settle(self):
        """Waits until the compositor has moved the pointer to where this hand is."""
        wait_for(lambda: tuple(self.seen()[:2]) == (self.x, self.y), f"the pointer reaches {self.x}, {self.y}")

    def position(self):
        return self.x, self.y

    def holds(self):
        button1 = 1 << 8
        return bool(self.seen()[2] & button1)

    def nudge(self, dx, dy):
        x = min(max(self.x + dx, 0), self.width - 1)
        y = min(max(self.y + dy, 0), self.height - 1)
        self.push(x - self.x, y - self.y)
        self.x, self.y = x, y

    def move_to(self, x, y, tick=TICK):
        super().move_to(x, y, tick)
        self.settle()

    def carry_to(self, x, y, linger=LINGER, taken=True):
        """Moves a drag there and stays until the target has answered, where that goes through the X server."""
        self.move_to(x, y, tick=TICK * 2)
        talk = self.listen()
        if talk.source_program() not in (None, self.compositor(talk)) or talk.target(self.display.screen().root, x, y):
            self.linger_until(lambda: talk.answered(x, y, taken))
        else:
            end = time.monotonic() + linger
            while time.monotonic() < end:
                self.linger()
        time.sleep(TICK * 8)

    def compositor(self, talk):
        """What the numbers of all of the compositor's X windows have in common."""
        check = self.display.screen().root.get_full_property(
            self.display.intern_atom("_NET_SUPPORTING_WM_CHECK"), Xatom.WINDOW)
        return talk.program_of(check.value[0])

    def press(self, button=1):
        self.tell("NotifyPointerButton", "(ib)", BUTTONS[button], True)

    def release(self, button=1):
        self.tell("NotifyPointerButton", "(ib)", BUTTONS[button], False)

    def key(self, name, *modifiers):
        symbols = [XK.string_to_keysym(each) for each in (*modifiers, name)]
        for symbol in symbols:
            self.tell("NotifyKeyboardKeysym", "(ub)", symbol, True)
        for symbol in reversed(symbols):
            self.tell("NotifyKeyboardKeysym", "(ub)", symbol, False)
        time.sleep(TICK)



class GnomeSession(WaylandSession):
    name = "GNOME Shell"
    programs = ("gnome-shell", "Xwayland", "dbus-daemon")

    @classmethod
    def require(cls):
        super().require()
        # It stands in for the machine's logind, without which GNOME Shell does not start.
        if not importlib.util.find_spec("dbusmock"):
            raise unittest.SkipTest("python3-dbusmock is not installed: script/bootstrap wayland")

    def make_environment(self):
        return super().make_environment() | {"XDG_CURRENT_DESKTOP": "GNOME"}

    def start_compositor(self):
        # Only GNOME Shell wants a logind; no test has need of what it says.
        self.start("logind", "/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind")
        system = connect(self.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        wait_for(lambda: has_owner(system, "org.freedesktop.login1"), "a logind comes up", START_PATIENCE)
        monitors = [argument for width, height in self.monitors
                    for argument in ("--virtual-monitor", f"{width}x{height}")]
        environment = {"NO_AT_BRIDGE": "1", "GTK_A11Y": "none"}
        # What a compositor finds of another session would be taken for the one to run in.
        without = ["env", "-u", "WAYLAND_DISPLAY", "-u", "DISPLAY", "-u", "GDK_BACKEND", "-u", "QT_QPA_PLATFORM"]
        self.compositor = self.start("gnome-shell", *without, "gnome-shell", "--headless", "--unsafe-mode", "--wayland",
                                     "--wayland-display", self.socket, *monitors, environment=environment)
        self.wait_for_socket(self.compositor)
        self.shell = Shell(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: self.shell.evaluate("Main.layoutManager._startingUp === false"), "GNOME Shell is ready",
                 START_PATIENCE)
        self.shell.evaluate("new imports.gi.Gio.Settings({schema_id: 'org.gnome.desktop.interface'})"
                            ".set_boolean('enable-animations', false)")
        self.shell.evaluate("Main.overview.hide()")
        wait_for(lambda: self.shell.evaluate("Main.overview.visible === false"), "the overview goes", START_PATIENCE)
        self.native = ShellWindows(self.shell)
        display, authority = json.loads(self.shell.evaluate(
            "JSON.stringify(['DISPLAY', 'XAUTHORITY'].map(name => imports.gi.GLib.getenv(name)))"))
        self.join_x(display, authority)
        self.hand = ShellHand(self.shell, self.x, self.width, self.height)

    def screenshot(self, path):
        self.shell.picture(path)
