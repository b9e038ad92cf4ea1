# SPDX-License-Identifier: MIT
"""Waiting for a condition, never for a time."""
import time

from gi.repository import GLib
from Xlib import error

PATIENCE = 20.0  # seconds, for a busy machine
PAUSE = 0.02
# What is answered about a window or a widget that goes away in the midst of the question.
GONE = (error.BadWindow, error.BadDrawable, GLib.Error)


class TimedOut(AssertionError):
    pass


def wait_for(condition, message, patience=None, pause=PAUSE):
    """Answers the first true value of condition(); fails with the message when none comes. The condition is asked again
    when something that it looks at goes away."""
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
    """Fails as soon as condition() is false within that time; for what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            raise AssertionError(message)
        time.sleep(PAUSE)
