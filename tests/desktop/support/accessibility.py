# SPDX-License-Identifier: MIT
"""Finds the widgets of all programs by name, as a screen reader does. Nothing is cached."""
import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .waiting import wait_for  # noqa: E402
from .windows import Frame  # noqa: E402

ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
PROPERTIES = "org.freedesktop.DBus.Properties"
VALUE = "org.a11y.atspi.Value"
LABELLED_BY = 2  # a number in the protocol's list of relations
SCREEN = 0  # a coordinate type
PATIENCE = 5000  # milliseconds; a program must answer within them
# Numbers in the protocol's list of states.
STATES = {"checked": 4, "enabled": 8, "sensitive": 24, "showing": 25, "visible": 30, "selected": 23}


def connect(address):
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(address, flags, None, None)


class Node:
    """One widget, or a part of one."""

    def __init__(self, bus, owner, path):
        self.bus, self.owner, self.path = bus, owner, path

    def __repr__(self):
        return f"<{self.role} {self.name!r} {self.path}>"

    def ask(self, interface, method, arguments=None):
        return self.bus.call_sync(self.owner, self.path, interface, method, arguments, None,
                                  Gio.DBusCallFlags.NONE, PATIENCE, None).unpack()

    def get(self, interface, name):
        return self.ask(PROPERTIES, "Get", GLib.Variant("(ss)", (interface, name)))[0]

    @property
    def name(self):
        return self.get(ACCESSIBLE, "Name")

    @property
    def description(self):
        return self.get(ACCESSIBLE, "Description")

    @property
    def role(self):
        return self.ask(ACCESSIBLE, "GetRoleName")[0]

    @property
    def children(self):
        return [Node(self.bus, owner, path) for owner, path in self.ask(ACCESSIBLE, "GetChildren")[0]]

    @property
    def parent(self):
        return Node(self.bus, *self.get(ACCESSIBLE, "Parent"))

    @property
    def frame(self):
        return Frame(*self.ask(COMPONENT, "GetExtents", GLib.Variant("(u)", (SCREEN,)))[0])

    @property
    def center(self):
        frame = self.frame
        return frame.x + frame.width // 2, frame.y + frame.height // 2

    def has_state(self, state):
        low, high = self.ask(ACCESSIBLE, "GetState")[0]
        return bool((low | high << 32) >> STATES[state] & 1)

    @property
    def actions(self):
        """The names of the widget's actions."""
        return [name for name, _, _ in self.ask(ACTION, "GetActions")[0]]

    def do(self, action):
        """Performs the action, as a screen reader does for a user without a pointer. Returns when it is done."""
        if not self.ask(ACTION, "DoAction", GLib.Variant("(i)", (self.actions.index(action),)))[0]:
            raise AssertionError(f"{self} does not {action}")

    @property
    def value(self):
        return self.get(VALUE, "CurrentValue")

    @value.setter
    def value(self, value):
        self.ask(PROPERTIES, "Set", GLib.Variant("(ssv)", (VALUE, "CurrentValue", GLib.Variant("d", value))))

    @property
    def labels(self):
        """The names of the widgets that label this one."""
        return [Node(self.bus, *target).name for kind, targets in self.ask(ACCESSIBLE, "GetRelationSet")[0]
                if kind == LABELLED_BY for target in targets]

    def walk(self):
        """Yields this node and all nodes below it, without those that disappear meanwhile."""
        yield self
        try:
            children = self.children
        except GLib.Error:
            return
        for child in children:
            yield from child.walk()

    def find_all(self, name=None, role=None, showing=True):
        return [node for node in self.walk() if node.matches(name, role, showing)]

    def find(self, name=None, role=None, showing=True):
        """Returns the first visible widget of that name and role, or None."""
        return next((node for node in self.walk() if node.matches(name, role, showing)), None)

    def matches(self, name, role, showing):
        try:
            return ((name is None or self.name == name) and (role is None or self.role == role)
                    and (not showing or self.has_state("showing")))
        except GLib.Error:
            return False


class Accessibility:
    """The accessibility bus of a session."""

    def __init__(self, session_address):
        self.session = connect(session_address)
        address = self.session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                         Gio.DBusCallFlags.NONE, PATIENCE * 4, None).unpack()[0]
        self.session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                               GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))), None,
                               Gio.DBusCallFlags.NONE, PATIENCE, None)
        self.bus = connect(address)
        self.last_focused = None
        self.listen("object:state-changed:focused", "org.a11y.atspi.Event.Object", "StateChanged")
        self.listen("focus:", "org.a11y.atspi.Event.Focus", "Focus")

    def listen(self, event, interface, signal):
        self.bus.call_sync("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
                           "RegisterEvent", GLib.Variant("(s)", (event,)), None, Gio.DBusCallFlags.NONE, PATIENCE, None)
        self.bus.signal_subscribe(None, interface, signal, None, None, Gio.DBusSignalFlags.NONE, self.note_focus)

    def note_focus(self, _, owner, path, interface, signal, values):
        kind, gained = values.unpack()[:2]
        if signal == "Focus" or (kind == "focused" and gained):
            self.last_focused = Node(self.bus, owner, path)

    def focused(self):
        """Returns the widget that last reported the focus."""
        while GLib.MainContext.default().iteration(False):
            pass
        return self.last_focused

    def forget_focus(self):
        self.focused()
        self.last_focused = None

    def menu(self, hand):
        """Returns the menu that has just been opened. A key press selects an item of it, because no program lists
        its open menus."""
        self.forget_focus()
        hand.key("Down")
        item = wait_for(self.focused_item, "a menu has opened")
        return item.parent

    def focused_item(self):
        node = self.focused()
        try:
            return node if node and node.role in ("menu item", "check menu item") else None
        except GLib.Error:
            return None

    def application(self, pid):
        """Returns the root of a program's widgets, or None while there is none."""
        for node in self.applications():
            try:
                if self.pid(node.owner) == pid:
                    return node
            except GLib.Error:
                continue
        return None

    def applications(self):
        return Node(self.bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root").children

    def pid(self, owner):
        return self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                  "GetConnectionUnixProcessID", GLib.Variant("(s)", (owner,)), None,
                                  Gio.DBusCallFlags.NONE, PATIENCE, None).unpack()[0]
