# SPDX-License-Identifier: MIT
"""A headless session of sway, which stands for the compositors that are built on wlroots."""
import json
import subprocess
import unittest

from .native import NativeWindow, NativeWindows
from .session import WaylandSession
from .waiting import wait_for
from .windows import Frame
from .wlhand import PROGRAM, ClientHand

SETTINGS = """
xwayland force
default_border none
focus_follows_mouse no
for_window [app_id=".*"] floating enable
"""


class SwayWindows(NativeWindows):
    def __init__(self, session):
        self.session = session

    def list(self):
        found = []
        below = [json.loads(self.session.message("-t", "get_tree"))]
        while below:
            node = below.pop()
            below += node.get("nodes", []) + node.get("floating_nodes", [])
            if node.get("shell") == "xdg_shell":
                frame = Frame(*(node["rect"][key] for key in ("x", "y", "width", "height")))
                content = node["geometry"]
                surface = Frame(frame.x - content["x"], frame.y - content["y"], frame.width, frame.height)
                found.append(NativeWindow(node["id"], node["name"] or "", node["app_id"] or "", node["pid"], frame,
                                          surface, node["focused"]))
        return found

    def place(self, window, x, y, width, height):
        self.session.message(f"[con_id={window.id}] floating enable, resize set {width} {height}, "
                             f"move absolute position {x} {y}")

    def activate(self, window):
        self.session.message(f"[con_id={window.id}] focus")


class SwaySession(WaylandSession):
    name = "sway"
    programs = ("sway", "swaymsg", "grim", "Xwayland", "dbus-daemon")
    scale = 1

    @classmethod
    def require(cls):
        super().require()
        if not PROGRAM:
            raise unittest.SkipTest("this build has no native panels")

    def make_environment(self):
        return super().make_environment() | {"XDG_CURRENT_DESKTOP": "sway"}

    def start_compositor(self):
        settings = self.folder / "sway.conf"
        outputs, x = "", 0
        for number, (width, height) in enumerate(self.monitors, 1):
            outputs += (f"output HEADLESS-{number} resolution {width * self.scale}x{height * self.scale} "
                        f"position {x},0 scale {self.scale}\n")
            x += width
        settings.write_text(SETTINGS + outputs)
        environment = {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman",
                       "WLR_HEADLESS_OUTPUTS": str(len(self.monitors))}
        without = ["env", "-u", "WAYLAND_DISPLAY", "-u", "DISPLAY", "-u", "GDK_BACKEND", "-u", "QT_QPA_PLATFORM"]
        runtime = self.folder / "run"
        self.compositor = self.start("sway", *without, "sway", "--config", settings, environment=environment)
        ipc = wait_for(lambda: next(runtime.glob("sway-ipc.*.sock"), None), "sway listens")
        self.environment["SWAYSOCK"] = str(ipc)
        # It chooses the name of its socket itself.
        socket = wait_for(lambda: next((each for each in runtime.glob("wayland-*") if each.suffix != ".lock"), None),
                          "sway takes clients")
        self.environment["WAYLAND_DISPLAY"] = self.socket = socket.name
        self.wait_for_socket(self.compositor)
        self.native = SwayWindows(self)
        self.message("exec sh -c 'echo $DISPLAY >\"$XDG_RUNTIME_DIR/display\"'")
        display = wait_for(lambda: (runtime / "display").exists() and (runtime / "display").read_text().strip(),
                           "sway names its X server")
        self.join_x(display)
        self.hand = ClientHand(self.environment, self.width, self.height)

    def message(self, *words):
        return subprocess.run(["swaymsg", *words], env=self.environment, check=True, text=True,
                              capture_output=True).stdout

    def screenshot(self, path):
        self.run("grim", path)

    def close(self):
        if hand := getattr(self, "hand", None):
            hand.close()
        super().close()
