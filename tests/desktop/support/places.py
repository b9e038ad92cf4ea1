# SPDX-License-Identifier: MIT
"""Where files are for whoever started the tests: not where another user finds their copies."""
import os
import pathlib


def for_the_caller(path):
    """The path that the caller knows, from the one that a command run by as-user has."""
    root = os.environ.get("AS_USER_ROOT")
    return pathlib.Path("/") / os.path.relpath(path, root) if root else pathlib.Path(path)
