# SPDX-License-Identifier: MIT
"""The rooms of the program, as rooms.txt lists them."""


def rooms(root):
    """Each listed folder, and the set of those that it may include."""
    allowed = {}
    for line in (root / "rooms.txt").read_text(encoding="utf-8").splitlines():
        folder, colon, included = line.partition(":")
        if colon and not line.startswith("#"):
            allowed[folder] = set(included.split())
    return allowed


def top_rooms(root):
    """The folders of the sources themselves, without the folders inside them."""
    return [folder for folder in rooms(root) if "/" not in folder]
