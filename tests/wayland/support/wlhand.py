# SPDX-License-Identifier: MIT
"""A hand that works the pointer and the keys of a compositor by a program of ours that is its client."""
import os
import subprocess

from .hand import TICK, Hand

PROGRAM = os.environ.get("PARKLET_WAYLAND_HAND")
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}  # as the kernel counts them
KEYS = {"a": 30, "b": 48, "n": 49, "Escape": 1, "Control_L": 29, "Shift_L": 42}
MASKS = {"Shift_L": 1, "Control_L": 4}  # as the keyboard's layout has them


class ClientHand(Hand):
    def __init__(self, environment, width, height):
        self.process = subprocess.Popen([PROGRAM, str(width), str(height)], env=environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.width, self.height = width, height
        self.x, self.y = width // 2, height // 2
        self.down = False
        self.nudge(0, 0)

    def act(self, *words):
        print(*words, file=self.process.stdin, flush=True)
        if self.process.stdout.readline() != "done\n":
            raise RuntimeError("the compositor has gone")

    def close(self):
        self.process.stdin.close()
        self.process.wait()
        self.process.stdout.close()

    def position(self):
        return self.x, self.y

    def holds(self):
        return self.down

    def nudge(self, dx, dy):
        self.x = min(max(self.x + dx, 0), self.width - 1)
        self.y = min(max(self.y + dy, 0), self.height - 1)
        self.act("move", self.x, self.y)

    def move_to(self, x, y, tick=TICK):
        super().move_to(min(max(x, 0), self.width - 1), min(max(y, 0), self.height - 1), tick)

    def press(self, button=1):
        self.down = button == 1
        self.act("button", BUTTONS[button], 1)

    def release(self, button=1):
        self.act("button", BUTTONS[button], 0)
        self.down = False

    def key(self, name, *modifiers):
        mask = 0
        for each in modifiers:
            mask |= MASKS[each]
            self.act("key", KEYS[each], 1, mask)
        self.act("key", KEYS[name], 1, mask)
        self.act("key", KEYS[name], 0, mask)
        for each in reversed(modifiers):
            mask &= ~MASKS[each]
            self.act("key", KEYS[each], 0, mask)
