# SPDX-License-Identifier: MIT
"""A desktop that a test has to itself, and a hand to use it with."""
