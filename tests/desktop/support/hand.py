# SPDX-License-Identifier: MIT
"""Controls the mouse and the keyboard through the X server's test devices, like real input."""
import contextlib
import time

from Xlib import XK, X
from Xlib.ext import xtest

from .dragtalk import DragTalk

STRIDE = 14  # pixels; the pointer moves so far in one step
TICK = 0.008  # seconds between two such steps
DRAG_START = 16  # pixels; every toolkit begins a drag after this distance
LINGER = 0.5  # seconds over the target, in case source and target are one program
PATIENCE = 20.0  # seconds for other programs


class Hand:
    display = None
    heard = None

    def __init__(self, display):
        self.display = display
        self.root = display.screen().root

    def listen(self):
        """Returns a recorder of the messages of drags, or None for a hand that must not use one."""
        if self.display and not self.heard:
            self.heard = DragTalk(self.display.get_display_name())
        return self.heard

    def close(self):
        if self.heard:
            self.heard.close()

    def position(self):
        pointer = self.root.query_pointer()
        return pointer.root_x, pointer.root_y

    def holds(self):
        """Whether the left button is down."""
        return bool(self.root.query_pointer().mask & X.Button1Mask)

    def nudge(self, dx, dy):
        xtest.fake_input(self.display, X.MotionNotify, detail=True, x=dx, y=dy)
        self.display.sync()

    def move_to(self, x, y, tick=TICK):
        """Moves the pointer there in small steps."""
        while True:
            here_x, here_y = self.position()
            dx, dy = round(x) - here_x, round(y) - here_y
            far = max(abs(dx), abs(dy))
            if far == 0:
                return
            share = min(1, STRIDE / far)
            self.nudge(round(dx * share), round(dy * share))
            time.sleep(tick)

    def press(self, button=1):
        xtest.fake_input(self.display, X.ButtonPress, button)
        self.display.sync()

    def release(self, button=1):
        xtest.fake_input(self.display, X.ButtonRelease, button)
        self.display.sync()

    def click(self, x, y, button=1, times=1):
        self.move_to(x, y)
        for _ in range(times):
            self.press(button)
            time.sleep(TICK)
            self.release(button)
            time.sleep(TICK * 4)

    def pick_up(self, x, y, begins=True):
        """Presses the button and moves until a drag has begun. Returns whether one has."""
        talk = self.listen()
        before = talk and talk.begun
        self.move_to(x, y)
        time.sleep(TICK * 4)
        self.press()
        time.sleep(TICK * 4)
        for _ in range(DRAG_START // 4):
            self.nudge(4, 2)
            time.sleep(TICK * 4)
        return not begins or not talk or self.linger_until(lambda: talk.begun > before)

    def carry_to(self, x, y, linger=LINGER, taken=True):
        """Moves a drag there and waits until the target has answered, and has accepted if `taken` is set."""
        self.move_to(x, y, tick=TICK * 2)
        talk = self.listen()
        if talk and talk.is_between_programs():
            self.linger_until(lambda: talk.answered(x, y, taken))
        else:
            end = time.monotonic() + linger
            while time.monotonic() < end:
                self.linger()
        time.sleep(TICK * 8)

    def linger(self):
        """Moves a little back and forth, because programs receive nothing from a pointer that does not move."""
        for step in 2, -2:
            self.nudge(step, 0)
            time.sleep(TICK * 4)

    def linger_until(self, condition):
        end = time.monotonic() + PATIENCE
        while not condition():
            if time.monotonic() > end:
                return False
            self.linger()
        return True

    def drag(self, start, target, linger=LINGER, begins=True, taken=True):
        """Drags from one position to another, and releases the button."""
        self.pick_up(*start, begins=begins)
        self.carry_to(*target, linger=linger, taken=taken)
        self.release()

    @contextlib.contextmanager
    def holding(self, name):
        """Holds a key down in the block."""
        code = self.display.keysym_to_keycode(XK.string_to_keysym(name))
        xtest.fake_input(self.display, X.KeyPress, code)
        self.display.sync()
        try:
            yield
        finally:
            xtest.fake_input(self.display, X.KeyRelease, code)
            self.display.sync()

    def key(self, name, *modifiers):
        """Presses and releases a key, while others are held: key("a", "Control_L")."""
        codes = [self.display.keysym_to_keycode(XK.string_to_keysym(each)) for each in (*modifiers, name)]
        for code in codes:
            xtest.fake_input(self.display, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()
