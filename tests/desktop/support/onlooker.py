# SPDX-License-Identifier: MIT
"""A window that has the focus and records the keys that it receives. It plays the program in which the user works."""
from Xlib import X, XK
from Xlib import display as xdisplay

from .waiting import wait_for


class Onlooker:
    def __init__(self, desktop, x=100, y=500, width=300, height=120):
        self.desktop = desktop
        self.display = xdisplay.Display(desktop.environment["DISPLAY"])
        screen = self.display.screen()
        self.window = screen.root.create_window(x, y, width, height, 0, screen.root_depth,
                                                background_pixel=screen.white_pixel, event_mask=X.KeyPressMask)
        self.window.set_wm_name("onlooker")
        self.window.map()
        self.display.sync()
        wait_for(lambda: desktop.windows.visible(desktop.x.create_resource_object("window", self.window.id)),
                 "the onlooker comes up")
        desktop.windows.activate(self.window)
        wait_for(self.is_active, "the onlooker has the focus")
        self.keys = []

    def is_active(self):
        return (self.desktop.windows.active() == self.window.id
                and self.display.get_input_focus().focus == self.window)

    def seen(self):
        """Returns the names of all received keys."""
        self.display.sync()
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == X.KeyPress:
                self.keys.append(XK.keysym_to_string(self.display.keycode_to_keysym(event.detail, 0)))
        return self.keys

    def close(self):
        self.display.close()
