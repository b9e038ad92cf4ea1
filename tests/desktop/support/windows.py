# SPDX-License-Identifier: MIT
"""The windows of a display, as another program sees them."""
from collections import namedtuple

from Xlib import X, Xatom, error
from Xlib.protocol import event

Frame = namedtuple("Frame", "x y width height")
Cursor = namedtuple("Cursor", "x y width height pixels")


class Windows:
    def __init__(self, display):
        self.display = display
        self.root = display.screen().root

    def atom(self, name):
        return self.display.intern_atom(name)

    def manager_runs(self):
        check = self.root.get_full_property(self.atom("_NET_SUPPORTING_WM_CHECK"), Xatom.WINDOW)
        if check is None:
            return False
        try:
            # A window manager that has ended leaves its property on the root window, but not the window that the
            # property names.
            self.display.create_resource_object("window", check.value[0]).get_attributes()
            return True
        except (error.BadWindow, error.BadDrawable):
            return False

    def compositor_runs(self):
        return self.display.get_selection_owner(self.atom("_NET_WM_CM_S0")) != X.NONE

    def tray_runs(self):
        return self.display.get_selection_owner(self.atom("_NET_SYSTEM_TRAY_S0")) != X.NONE

    def all(self, parent=None):
        """Returns every window under the root, at any depth, parents first."""
        try:
            children = (parent or self.root).query_tree().children
        except error.BadWindow:
            return
        for child in children:
            yield child
            yield from self.all(child)

    def find(self, role=None, instance=None, title=None, visible=True):
        """Returns the windows with that WM_WINDOW_ROLE, WM_CLASS instance and part of a title."""
        return [window for window in self.all() if self.matches(window, role, instance, title, visible)]

    def matches(self, window, role, instance, title, visible):
        try:
            if role and self.text(window, "WM_WINDOW_ROLE") != role:
                return False
            if instance and (window.get_wm_class() or ("",))[0].lower() != instance.lower():
                return False
            if title is not None and title not in self.title(window):
                return False
            return not visible or window.get_attributes().map_state == X.IsViewable
        except (error.BadWindow, error.BadDrawable):
            return False

    def text(self, window, name):
        found = window.get_full_property(self.atom(name), X.AnyPropertyType)
        if found is None or found.format != 8:
            return ""
        return bytes(found.value).rstrip(b"\0").decode("utf-8", "replace")

    def title(self, window):
        return self.text(window, "_NET_WM_NAME") or self.text(window, "WM_NAME")

    def numbers(self, window, name):
        found = window.get_full_property(self.atom(name), X.AnyPropertyType)
        return list(found.value) if found else []

    def states(self, window):
        return {self.display.get_atom_name(state) for state in self.numbers(window, "_NET_WM_STATE")}

    def frame(self, window):
        """Returns the window's frame on the screen, without the borders of the window manager."""
        geometry = window.get_geometry()
        corner = self.root.translate_coords(window, 0, 0)
        return Frame(corner.x, corner.y, geometry.width, geometry.height)

    def visible(self, window):
        try:
            return window.get_attributes().map_state == X.IsViewable
        except (error.BadWindow, error.BadDrawable):
            return False

    def alpha(self, window):
        """Returns the opacity that the compositor is told, from 0 to 1."""
        found = self.numbers(window, "_NET_WM_WINDOW_OPACITY")
        return found[0] / 0xFFFFFFFF if found else 1.0

    def active(self):
        found = self.numbers(self.root, "_NET_ACTIVE_WINDOW")
        return found[0] if found else X.NONE

    def ask(self, window, message, *values):
        """Sends the window manager a message about a window."""
        data = (32, list(values) + [0] * (5 - len(values)))
        self.root.send_event(event.ClientMessage(window=window, client_type=self.atom(message), data=data),
                             event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.flush()

    def activate(self, window):
        self.ask(window, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime, X.NONE)

    def minimise(self, window):
        iconic = 3
        self.ask(window, "WM_CHANGE_STATE", iconic)

    def place(self, window, x, y, width, height):
        """Moves a window so that its contents, without borders, cover this frame."""
        static, all_four, from_pager = 10, 0xF << 8, 2 << 12
        self.ask(window, "_NET_MOVERESIZE_WINDOW", static | all_four | from_pager, x, y, width, height)

    def pixel(self, x, y):
        """Returns red, green and blue of a screen pixel."""
        image = self.root.get_image(x, y, 1, 1, X.ZPixmap, 0xFFFFFFFF)
        return image.data[2], image.data[1], image.data[0]

    def cursor(self):
        """Returns the pointer's picture, four bytes a pixel in the order red, green, blue, alpha, and its position."""
        self.display.xfixes_query_version()
        image = self.display.xfixes_get_cursor_image(self.root)
        pixels = bytearray()
        for pixel in image.cursor_image:
            alpha, red, green, blue = (pixel >> shift & 0xFF for shift in (24, 16, 8, 0))
            # The server returns colours multiplied by their alpha.
            pixels += bytes(min(255, color * 255 // alpha) if alpha else 0 for color in (red, green, blue))
            pixels.append(alpha)
        return Cursor(image.x - image.xhot, image.y - image.yhot, image.width, image.height, bytes(pixels))

    def look(self, frame):
        """Returns the pixels of a part of the screen, four bytes each, row by row."""
        return self.root.get_image(*frame, X.ZPixmap, 0xFFFFFFFF).data

    def painted(self, frame, color):
        """Returns the smallest frame around all pixels of a colour, or None."""
        return self.turned(frame, b"", color)

    def turned(self, frame, before, color):
        """Returns the smallest frame around all pixels that have taken on a colour since the picture `before`, or None."""
        now = self.look(frame)
        pattern = bytes(reversed(color))
        rows, columns = [], []
        at = now.find(pattern)
        while at >= 0:
            if at % 4 == 0 and before[at:at + 3] != pattern:
                rows.append(at // 4 // frame.width)
                columns.append(at // 4 % frame.width)
            at = now.find(pattern, at + 1)
        if not rows:
            return None
        return Frame(frame.x + min(columns), frame.y + rows[0], max(columns) - min(columns) + 1,
                     rows[-1] - rows[0] + 1)
