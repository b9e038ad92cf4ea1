# SPDX-License-Identifier: MIT
"""Tests the desktop itself: drags between two windows of each file manager, without Parklet."""
import os
import pathlib
import re
import subprocess
import unittest

from support import filemanagers
from support.case import DesktopTest
from support.desktop import SERVICES, Desktop
from support.processes import descendants
from support.waiting import wait_for

AS_USER = pathlib.Path(__file__).with_name("as-user")
LONG = "98765.4321"  # seconds; no other program has this argument


def command_runs(*command):
    """Whether any process was started with exactly this command."""
    wanted = "\0".join(command).encode() + b"\0"
    for file in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        try:
            if file.read_bytes() == wanted:
                return True
        except OSError:
            pass
    return False


class DragTest(DesktopTest):
    def drag(self, manager_class):
        source, target = self.folder("source"), self.folder("target")
        (source / "words.txt").write_text("some words\n")
        (source / "other.txt").write_text("others\n")
        manager = manager_class(self.desktop)
        from_window = manager.open(source).place(20, 100, 560, 400)
        to_window = manager.open(target).place(640, 100, 560, 400)
        self.hand.drag(from_window.item("words.txt"), to_window.empty_place())
        manager.agree()
        landed = target / "words.txt"
        self.wait_for(lambda: landed.exists() and landed.read_text() == "some words\n",
                      "the whole file lands in the other folder")
        self.assertTrue((source / "other.txt").exists())

    def test_thunar(self):
        self.drag(filemanagers.Thunar)

    def test_pcmanfm(self):
        self.drag(filemanagers.PCManFM)

    def test_pcmanfm_qt(self):
        self.drag(filemanagers.PCManFMQt)


class BusTest(DesktopTest):
    screen = {"window_manager": False, "compositor": False, "panel": None}

    def test_the_bus_starts_nothing_but_what_the_tests_bring(self):
        answer = self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                                  "--method", "org.freedesktop.DBus.ListActivatableNames")
        names = set(re.findall("'(.*?)'", answer))
        self.assertEqual(names, {"org.freedesktop.DBus", *SERVICES.values()})


class EndTest(unittest.TestCase):
    def test_nothing_outlives_a_desktop(self):
        desktop = Desktop()
        filemanagers.Thunar(desktop).open(desktop.home)
        self.assertGreater(len(descendants(os.getpid())), 4)
        desktop.close()
        self.assertEqual(descendants(os.getpid()), [])
        self.assertFalse(desktop.folder.exists())

    def test_nothing_outlives_a_test_that_is_killed(self):
        for options in ((), ("--no-namespaces",)):
            with self.subTest(options=options):
                self.kill_a_test(*options)

    def kill_a_test(self, *options):
        # A process in its own session, whose parent has ended, is hidden from most ways to find it.
        test = subprocess.Popen([AS_USER, *options, "sh", "-c", f"(setsid sleep {LONG} &); sleep {LONG}"])
        try:
            wait_for(lambda: command_runs("sleep", LONG), "the test runs")
        finally:
            test.kill()
            test.wait()
        wait_for(lambda: not command_runs("sleep", LONG), "the test's program ends with it")

    def test_nothing_outlives_a_test_that_ends(self):
        for options in ((), ("--no-namespaces",)):
            with self.subTest(options=options):
                code = subprocess.run([AS_USER, *options, "sh", "-c", f"setsid sleep {LONG} & exit 7"]).returncode
                self.assertEqual(code, 7)
                self.assertFalse(command_runs("sleep", LONG))
