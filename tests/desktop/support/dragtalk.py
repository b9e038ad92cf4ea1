# SPDX-License-Identifier: MIT
"""Records the messages between source and target of a drag, so that a test can wait for them."""
import struct
import threading

from Xlib import X, error
from Xlib import display as xdisplay
from Xlib.ext import record

SET_SELECTION_OWNER, SEND_EVENT = 22, 25  # numbers in the core protocol's list of requests
NOTHING = (0, 0)
NEAR = 2  # pixels
FROM_CLIENT = 1


class DragTalk:
    def __init__(self, name):
        self.display, self.recording = xdisplay.Display(name), xdisplay.Display(name)
        atom = self.display.intern_atom
        self.aware, self.selection = atom("XdndAware"), atom("XdndSelection")
        self.heard_by = {atom("XdndPosition"): self.hear_position, atom("XdndStatus"): self.hear_status,
                         atom("XdndLeave"): self.hear_leave}
        self.begun = 0  # the number of drags that sources have announced
        self.position = None  # target, x and y of the last position message
        self.status = None  # whether the target accepts, and for which part of the screen; None: no answer yet
        self.context = self.recording.record_create_context(0, [record.AllClients], [{
            "core_requests": (SET_SELECTION_OWNER, SEND_EVENT), "core_replies": NOTHING, "ext_requests": NOTHING * 2,
            "ext_replies": NOTHING * 2, "delivered_events": NOTHING, "device_events": NOTHING, "errors": NOTHING,
            "client_started": False, "client_died": False}])
        # The recording has begun once the server has answered a later request.
        self.recording.sync()
        self.started = threading.Event()
        self.thread = threading.Thread(target=self.listen, daemon=True)
        self.thread.start()
        self.started.wait()

    def listen(self):
        try:
            self.recording.record_enable_context(self.context, self.hear)
        except (error.ConnectionClosedError, OSError):
            pass  # the server has ended
        self.started.set()

    def hear(self, reply):
        self.started.set()
        if reply.category != FROM_CLIENT:
            return
        data = reply.data
        while len(data) >= 4:
            length = struct.unpack_from("=H", data, 2)[0] * 4
            if not length:
                return
            if data[0] == SET_SELECTION_OWNER:
                owner, selection = struct.unpack_from("=II", data, 4)
                self.begun += selection == self.selection and owner != X.NONE
            elif data[0] == SEND_EVENT and data[12] & 0x7F == X.ClientMessage:
                window, kind, *values = struct.unpack_from("=II5I", data, 16)
                self.heard_by.get(kind, lambda *_: None)(window, values)
            data = data[length:]

    def hear_position(self, target, values):
        self.status = None
        self.position = target, values[2] >> 16, values[2] & 0xFFFF

    def hear_status(self, _source, values):
        corner, size = values[2:4]
        self.status = (bool(values[1] & 1), (corner >> 16, corner & 0xFFFF, size >> 16, size & 0xFFFF))

    def hear_leave(self, _target, _values):
        self.position = self.status = None

    def answered(self, x, y, agreed):
        """Whether the target has answered for this position, and has accepted a drop if `agreed` is set."""
        position, status = self.position, self.status
        if not position or not status or agreed and not status[0]:
            return False
        left, top, width, height = status[1]
        return (left <= x < left + width and top <= y < top + height
                or abs(position[1] - x) <= NEAR and abs(position[2] - y) <= NEAR)

    def is_between_programs(self):
        """Whether the pointer is over a drop target of another program than the source's. Within one program there
        are no messages to record."""
        owner = self.display.get_selection_owner(self.selection)
        root = self.display.screen().root
        pointer = root.query_pointer()
        target = owner and self.target(root, pointer.root_x, pointer.root_y, owner)
        return bool(target) and self.program(target) != self.program(owner)

    def program(self, window):
        return self.program_of(window.id)

    def program_of(self, number):
        """Returns the common bits in the numbers of all windows of one program."""
        return number & ~self.display.display.info.resource_id_mask

    def source_program(self):
        """Returns the program from which the drag comes, or None."""
        owner = self.display.get_selection_owner(self.selection)
        return self.program(owner) if owner else None

    def target(self, parent, x, y, owner=None):
        """Returns the outermost window at a position of its parent that takes drags, or None. Skips the window with
        the drag's picture, a window of the owner's program without a frame below the pointer."""
        for window in reversed(parent.query_tree().children):
            try:
                frame = window.get_geometry()
                if (window.get_attributes().map_state == X.IsViewable
                        and 0 <= x - frame.x < frame.width and 0 <= y - frame.y < frame.height
                        and not (owner and self.program(window) == self.program(owner))):
                    takes = window.get_full_property(self.aware, X.AnyPropertyType)
                    return window if takes else self.target(window, x - frame.x, y - frame.y)
            except (error.BadWindow, error.BadDrawable):
                pass  # the window is gone
        return None

    def close(self):
        try:
            self.display.record_disable_context(self.context)
            self.display.sync()
            self.thread.join()
            self.recording.close()
            self.display.close()
        except (error.ConnectionClosedError, OSError):
            pass  # the server has ended before
