# SPDX-License-Identifier: MIT
"""The processes of one desktop. They have its environment and end with it."""
import ctypes
import os
import pathlib
import signal
import subprocess
import time

PR_SET_CHILD_SUBREAPER = 36
GRACE = 2.0  # seconds between SIGTERM and SIGKILL


def adopt_orphans():
    """Makes orphaned descendants children of this process, so that it can end them."""
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def parent_of(pid):
    try:
        return int(pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[1])
    except (OSError, ValueError, IndexError):
        return 0


def descendants(ancestor):
    children = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            children.setdefault(parent_of(entry), []).append(int(entry))
    found, open_ends = [], [ancestor]
    while open_ends:
        below = children.get(open_ends.pop(), [])
        found += below
        open_ends += below
    return found


def has_children():
    """Collects the ended children. Returns whether there are others."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
        return True
    except ChildProcessError:
        return False


def end_descendants(grace=0.0):
    """Ends all descendants of a process that adopts orphans: first with SIGTERM, and after the time of grace with
    SIGKILL."""
    end = time.monotonic() + grace
    # A list of processes may miss one that changes its parent meanwhile. Without any child left, none was missed.
    while has_children():
        for pid in descendants(os.getpid()):
            try:
                os.kill(pid, signal.SIGTERM if time.monotonic() < end else signal.SIGKILL)
            except ProcessLookupError:
                pass
        time.sleep(0.02)


class Processes:
    def __init__(self, environment, logs):
        self.environment = environment
        self.logs = logs
        self.own = []
        adopt_orphans()

    def start(self, name, *command, pass_fds=(), environment=None):
        """Starts a program. Its output goes to a log of that name."""
        with open(self.logs / f"{name}.log", "ab") as log:
            process = subprocess.Popen(command, env={**self.environment, **(environment or {})}, pass_fds=pass_fds,
                                       cwd=self.environment["HOME"], stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.own.append(process)
        return process

    def end(self, process):
        """Ends one program, first with SIGTERM."""
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(GRACE)
            except subprocess.TimeoutExpired:
                process.kill()
        process.wait()

    def end_all(self):
        """Ends all programs, the last one first, and all their descendants."""
        for process in reversed(self.own):
            self.end(process)
        self.own.clear()
        end_descendants(GRACE)
