# SPDX-License-Identifier: MIT
"""Faults of the system for one program only, made without any privileges."""
import os
import pathlib

LIBRARY = os.environ.get("PARKLET_FAULTS") or pathlib.Path(__file__).parents[3] / "build/release/tests/desktop/faults.so"


class FullDisk:
    """A folder on its own disk, which fill() fills up."""

    def __init__(self, folder):
        self.environment = {"LD_PRELOAD": str(LIBRARY), "PARKLET_FULL_DISK": str(folder)}
        self.mark = folder.with_name(folder.name + ".full")

    def fill(self):
        self.mark.touch()

    def clear(self):
        self.mark.unlink()


class SlowDisk:
    """A folder whose files take until release() to be on the disk."""

    def __init__(self, folder):
        self.environment = {"LD_PRELOAD": str(LIBRARY), "PARKLET_SLOW_DISK": str(folder)}
        self.mark = folder.with_name(folder.name + ".slow")
        self.mark.touch()
        self.waited = folder.with_name(folder.name + ".waited")

    def is_waited_for(self):
        return self.waited.exists()

    def release(self):
        self.mark.unlink()


def home_in_user_database(home):
    """Returns the environment in which a program finds this home in the system's database of users."""
    return {"LD_PRELOAD": str(LIBRARY), "PARKLET_HOME_OF_USER": str(home)}


def make_read_only(folder):
    """Makes everything in a folder read-only, and returns a function that undoes it."""
    modes = [(path, path.stat().st_mode) for path in (folder, *folder.rglob("*")) if not path.is_symlink()]
    for path, mode in modes:
        path.chmod(mode & ~0o222)

    def give_back():
        for path, mode in modes:
            path.chmod(mode)

    return give_back
