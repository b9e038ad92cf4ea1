# SPDX-License-Identifier: MIT
"""Waits for conditions, never for a fixed time."""
import time

from gi.repository import GLib
from Xlib import error

PATIENCE = 20.0  # seconds, for a busy machine
PAUSE = 0.02
# The errors when a window or a widget disappears during a request.
GONE = (error.BadWindow, error.BadDrawable, GLib.Error)


class TimedOut(AssertionError):
    pass


def wait_for(condition, message, patience=None, pause=PAUSE):
    """Returns the first true value of condition(), and fails with the message when none comes. Tries again when a
    widget disappears during the condition."""
    patience = patience or PATIENCE
    end = time.monotonic() + patience
    while True:
        fault = None
        try:
            value = condition()
            if value:
                return value
        except GONE as gone:
            fault = gone
        if time.monotonic() > end:
            raise TimedOut(f"waited {patience:g} s in vain: {message}" + (f" ({fault})" if fault else ""))
        time.sleep(pause)


def stays(condition, message, seconds):
    """Fails as soon as condition() is false within that time. Use it for what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            raise AssertionError(message)
        time.sleep(PAUSE)
