# SPDX-License-Identifier: MIT
"""A virtual desktop for one test, and the means to use it as a user does."""
