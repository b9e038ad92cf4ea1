# SPDX-License-Identifier: MIT
"""The rooms of the program, as rooms.txt lists them."""


def rooms(root):
    """Returns each listed folder with the set of folders that it may include."""
    allowed = {}
    for line in (root / "rooms.txt").read_text(encoding="utf-8").splitlines():
        folder, colon, included = line.partition(":")
        if colon and not line.startswith("#"):
            allowed[folder] = set(included.split())
    return allowed


def top_rooms(root):
    """Returns the top folders of the sources."""
    return [folder for folder in rooms(root) if "/" not in folder]
