# SPDX-License-Identifier: MIT
"""A test with its own desktop."""
import os
import pathlib
import unittest

from .desktop import Desktop
from .parklet import Parklet
from .places import for_the_caller
from .waiting import wait_for

EVIDENCE = pathlib.Path(os.environ.get("PARKLET_EVIDENCE", "/tmp/parklet-evidence"))


def faults(result):
    return len(result.failures) + len(result.errors) + len(result.unexpectedSuccesses)


class DesktopTest(unittest.TestCase):
    screen = {}  # the arguments of Desktop()

    desktop = None

    def setUp(self):
        self.desktop = Desktop(**self.screen)
        self.hand = self.desktop.hand

    def run(self, result=None):
        """Runs the test and then ends its desktop. Keeps logs and a picture if the test has failed."""
        result = result or self.defaultTestResult()
        before = faults(result)
        try:
            super().run(result)
            if self.desktop and faults(result) > before:
                folder = EVIDENCE / self.id()
                self.desktop.keep_evidence(folder)
                print(f"the logs and a picture of the screen are in {for_the_caller(folder)}")
        finally:
            if self.desktop:
                self.desktop.close()
        return result

    def parklet(self, **settings):
        """Starts the program with these settings."""
        self.app = Parklet(self.desktop, settings).start()
        return self.app

    def file(self, name, content="some words\n"):
        """Makes a file in the folder "things". The name may be bytes."""
        folder = os.fsencode(self.desktop.home / "things")
        os.makedirs(folder, exist_ok=True)
        path = pathlib.Path(os.fsdecode(os.path.join(folder, os.fsencode(name))))
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def files(self, count):
        return [self.file(f"file {number:02}.txt") for number in range(1, count + 1)]

    def folder(self, name):
        path = self.desktop.home / name
        path.mkdir()
        return path

    def wait_for(self, condition, message):
        return wait_for(condition, message)
