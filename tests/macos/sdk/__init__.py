# SPDX-License-Identifier: MIT
"""What script/check-macos knows of the Mac's SDK: the declarations of this repository, and what they are held against."""
