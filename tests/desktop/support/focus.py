# SPDX-License-Identifier: MIT
"""Records every change of the focus by its event, so that none is missed."""
from Xlib import X
from Xlib import display as xdisplay

# These events are no change of the focus: a drag's source grabs the keyboard, and an inner window gets the focus.
GRABS = (X.NotifyGrab, X.NotifyUngrab)


class FocusWatch:
    """Watches the window that is active now, and which window the window manager calls active."""

    def __init__(self, desktop):
        self.display = xdisplay.Display(desktop.environment["DISPLAY"])
        self.root = self.display.screen().root
        self.property = self.display.intern_atom("_NET_ACTIVE_WINDOW")
        self.active = self.active_window()
        self.root.change_attributes(event_mask=X.PropertyChangeMask)
        # Programs move the focus between this window and an inner one.
        self.display.create_resource_object("window", self.active).change_attributes(event_mask=X.FocusChangeMask)
        self.display.sync()
        self.found = []

    def active_window(self):
        value = self.root.get_full_property(self.property, X.AnyPropertyType)
        return value.value[0] if value else X.NONE

    def losses(self):
        """Returns a line for each time that the window lost the focus or another window became active."""
        self.display.sync()
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == X.FocusOut and event.mode not in GRABS and event.detail != X.NotifyInferior:
                self.found.append(f"the window lost the focus, mode {event.mode}, detail {event.detail}")
            elif event.type == X.PropertyNotify and event.atom == self.property:
                active = self.active_window()
                self.found.append(f"the active window was named anew: {active:#x}, it was {self.active:#x}")
        return self.found

    def close(self):
        self.display.close()
