# SPDX-License-Identifier: MIT
"""Helpers of the tests in Wayland sessions, beside those of the desktop tests, which are part of this package too."""
import pathlib

__path__.append(str(pathlib.Path(__file__).parents[2] / "desktop/support"))
