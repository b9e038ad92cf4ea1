# SPDX-License-Identifier: MIT
"""A hand on the mouse and the keyboard: what it does comes from the X server's test devices, as from real ones."""
import contextlib
import time

from Xlib import XK, X
from Xlib.ext import xtest

STRIDE = 14  # pixels the pointer goes at once
TICK = 0.008  # seconds between two such steps
DRAG_START = 16  # pixels after which every toolkit has noticed a drag
LINGER = 0.5  # seconds over the target, for both sides of a drag to come to terms


class Hand:
    def __init__(self, display):
        self.display = display
        self.root = display.screen().root

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
        """Moves the pointer there in small steps, as a hand does."""
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

    def pick_up(self, x, y):
        """Presses the button and moves until a drag has begun."""
        self.move_to(x, y)
        time.sleep(TICK * 4)
        self.press()
        time.sleep(TICK * 4)
        for _ in range(DRAG_START // 4):
            self.nudge(4, 2)
            time.sleep(TICK * 4)

    def carry_to(self, x, y, linger=LINGER):
        """Moves a drag there and stays long enough for the target to have answered."""
        self.move_to(x, y, tick=TICK * 2)
        end = time.monotonic() + linger
        step = 2
        while time.monotonic() < end:
            self.nudge(step, 0)
            step = -step
            time.sleep(TICK * 4)
        self.move_to(x, y)
        time.sleep(TICK * 8)

    def drag(self, start, target, linger=LINGER):
        """Drags from one place to another and lets go."""
        self.pick_up(*start)
        self.carry_to(*target, linger=linger)
        self.release()

    @contextlib.contextmanager
    def holding(self, name):
        """Keeps a key down meanwhile."""
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
