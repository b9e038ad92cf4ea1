# SPDX-License-Identifier: MIT
"""Waiting for a condition, never for a time."""
import time

PATIENCE = 20.0  # seconds, for a busy machine
PAUSE = 0.02


class TimedOut(AssertionError):
    pass


def wait_for(condition, message, patience=PATIENCE, pause=PAUSE):
    """Answers the first true value of condition(); fails with the message when none comes."""
    end = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise TimedOut(f"waited {patience:g} s in vain: {message}")
        time.sleep(pause)


def stays(condition, message, seconds):
    """Fails as soon as condition() is false within that time; for what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            raise AssertionError(message)
        time.sleep(PAUSE)
