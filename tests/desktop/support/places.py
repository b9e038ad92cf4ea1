# SPDX-License-Identifier: MIT
"""Translates paths of the test user's copies to those of the user who has started the tests."""
import os
import pathlib


def for_the_caller(path):
    """Returns the caller's path for the path that a command under as-user has."""
    root = os.environ.get("AS_USER_ROOT")
    return pathlib.Path("/") / os.path.relpath(path, root) if root else pathlib.Path(path)
