# SPDX-License-Identifier: MIT
"""Faults of the system that a program meets and nobody else, made without any rights."""
import os
import pathlib

LIBRARY = os.environ.get("PARKLET_FAULTS") or pathlib.Path(__file__).parents[3] / "build/release/tests/desktop/faults.so"


class FullDisk:
    """A folder that lies on a disk of its own, which fill() leaves no room on."""

    def __init__(self, folder):
        self.environment = {"LD_PRELOAD": str(LIBRARY), "PARKLET_FULL_DISK": str(folder)}
        self.mark = folder.with_name(folder.name + ".full")

    def fill(self):
        self.mark.touch()

    def clear(self):
        self.mark.unlink()


def home_in_user_database(home):
    """The environment of a program that finds this home where the system keeps its users."""
    return {"LD_PRELOAD": str(LIBRARY), "PARKLET_HOME_OF_USER": str(home)}


def make_read_only(folder):
    """Takes from everything in a folder that it may be written, and answers what gives it back."""
    modes = [(path, path.stat().st_mode) for path in (folder, *folder.rglob("*")) if not path.is_symlink()]
    for path, mode in modes:
        path.chmod(mode & ~0o222)

    def give_back():
        for path, mode in modes:
            path.chmod(mode)

    return give_back
