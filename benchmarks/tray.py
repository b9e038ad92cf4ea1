# SPDX-License-Identifier: MIT
"""A system tray that docks nothing. It notes when a program asks for a place in it, and when the program's event
loop answers."""
import select
import time

from Xlib import X
from Xlib import display as xdisplay
from Xlib.protocol import event

REQUEST_DOCK = 0
PATIENCE = 30.0  # seconds; a program must start within them


class Tray:
    def __init__(self, address):
        self.display = xdisplay.Display(address)
        self.root = self.display.screen().root
        self.window = self.root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        # Qt sends its answer to the clients that select StructureNotify on the root window.
        self.root.change_attributes(event_mask=X.StructureNotifyMask)
        self.opcode, self.protocols, self.ping = map(
            self.display.intern_atom, ("_NET_SYSTEM_TRAY_OPCODE", "WM_PROTOCOLS", "_NET_WM_PING"))
        self.window.set_selection_owner(self.display.intern_atom("_NET_SYSTEM_TRAY_S0"), X.CurrentTime)
        self.display.sync()

    def wait_for_event_loop(self):
        """Returns the time at which a program that opens a tray icon has answered a ping, which shows that its event
        loop is running."""
        end = time.monotonic() + PATIENCE
        while True:
            message = self.next_message(end)
            if message.client_type == self.opcode and message.data[1][1] == REQUEST_DOCK:
                self.send_ping(message.data[1][2])
            elif message.client_type == self.protocols and message.data[1][0] == self.ping:
                return time.monotonic()

    def send_ping(self, icon):
        window = self.display.create_resource_object("window", icon)
        data = (32, [self.ping, X.CurrentTime, icon, 0, 0])
        window.send_event(event.ClientMessage(window=window, client_type=self.protocols, data=data))
        self.display.flush()

    def next_message(self, end):
        while True:
            while self.display.pending_events():
                found = self.display.next_event()
                if found.type == X.ClientMessage:
                    return found
            left = end - time.monotonic()
            if left <= 0 or not select.select([self.display], [], [], left)[0]:
                raise TimeoutError("the program's event loop does not answer")

    def close(self):
        self.display.close()
