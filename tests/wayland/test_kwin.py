# SPDX-License-Identifier: MIT
"""The shelf as a native panel in KWin."""
from support.kwin import KWinSession
from support.native_panels import NativePanelTest, NativePanelTests


class KWinTest(NativePanelTests, NativePanelTest):
    session_class = KWinSession

    def check_picture(self, frame):
        """There are no pictures; the pointer finds the panel where it says that it is."""
