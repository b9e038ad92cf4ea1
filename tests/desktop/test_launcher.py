# SPDX-License-Identifier: MIT
"""Parklet's entry in the desktop's launcher: it reaches the running program, and starts it when there is none."""
import pathlib

from gi.repository import GLib

from support.case import DesktopTest
from support.parklet import Parklet, PROGRAM, uri_of
from support.waiting import stays, wait_for

ENTRY = "com.orvane.Parklet.desktop"
METADATA = pathlib.Path(PROGRAM).resolve().parent / "resources/linux"


class LauncherTest(DesktopTest):
    screen = {"panel": None}

    def setUp(self):
        super().setUp()
        self.app = Parklet(self.desktop)

    def install(self):
        """Writes the service file with which the bus starts the program."""
        self.desktop.services.mkdir(parents=True)
        (self.desktop.services / "com.orvane.Parklet.service").write_text(
            f"[D-BUS Service]\nName=com.orvane.Parklet\nExec={PROGRAM}\n")
        self.bus("ReloadConfig", "")

    def start(self):
        self.app.process = self.desktop.start("parklet", PROGRAM)
        wait_for(self.app.root, "Parklet runs")

    def bus(self, method, *arguments):
        command = ("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                   "--method", f"org.freedesktop.DBus.{method}")
        return self.desktop.run(*command, *filter(None, arguments))

    def perform(self, action):
        """Runs the command of an action, as a launcher without D-Bus activation does."""
        self.desktop.run(*self.read(f"Desktop Action {action}", "Exec").split())

    def read(self, group, key):
        entry = GLib.KeyFile()
        entry.load_from_file(str(METADATA / ENTRY), GLib.KeyFileFlags.NONE)
        return entry.get_string(group, key)

    def activate(self, *action):
        """Calls the program over D-Bus, as a launcher with D-Bus activation does."""
        method = ("ActivateAction", *action, "[]", "{}") if action else ("Activate", "{}")
        self.desktop.run("gdbus", "call", "--session", "--dest", "com.orvane.Parklet",
                         "--object-path", "/com/orvane/Parklet",
                         "--method", f"org.freedesktop.Application.{method[0]}", *method[1:])

    def adopt(self):
        """Uses the widgets of the program that the bus has started."""
        wait_for(self.is_owned, "the bus has started Parklet")
        self.app.process = Started(self.owner())

    def is_owned(self):
        return "true" in self.bus("NameHasOwner", "com.orvane.Parklet")

    def owner(self):
        return int(self.bus("GetConnectionUnixProcessID", "com.orvane.Parklet").strip("(),\n").split()[-1])

    def test_the_entry_is_one_that_is_called_over_the_bus(self):
        self.assertEqual(self.read("Desktop Entry", "DBusActivatable"), "true")
        actions = self.read("Desktop Entry", "Actions").strip(";").split(";")
        names = [self.read(f"Desktop Action {action}", "Name") for action in actions]
        self.assertEqual(names, ["Show Shelf", "Add From Clipboard", "Preferences…", "Check for Updates…",
                                 "Quit Parklet"])

    def test_without_a_tray_everything_is_reached_and_left(self):
        self.start()
        self.assertTrue(self.app.hidden())
        self.perform("show-shelf")
        wait_for(self.app.window, "the shelf comes up")
        self.app.copy([uri_of(self.file("words.txt"))])
        self.perform("add-from-clipboard")
        self.app.tile("words.txt")
        self.app.click("Preferences")
        preferences = wait_for(lambda: self.app.window("preferences"), "the gear opens the preferences")
        wait_for(lambda: self.desktop.windows.active() == preferences.id, "it has the focus")
        self.hand.key("F4", "Alt_L")
        wait_for(lambda: not self.desktop.windows.visible(preferences), "the preferences close")
        self.perform("preferences")
        wait_for(lambda: self.app.window("preferences"), "the launcher opens the preferences")
        self.perform("quit")
        self.assertEqual(self.app.process.wait(20), 0)

    def test_a_right_click_puts_the_shelf_away(self):
        self.start()
        self.perform("show-shelf")
        self.app.opaque(wait_for(self.app.window, "the shelf comes up"))
        self.hand.click(*self.app.center(), button=3)
        wait_for(self.app.menu_window, "its menu opens")
        self.hand.click(*self.desktop.accessibility.menu(self.hand).find("Hide Shelf").center)
        wait_for(self.app.hidden, "the shelf is put away")
        self.perform("show-shelf")
        wait_for(self.app.window, "the shelf comes up again")
        self.perform("show-shelf")
        wait_for(self.app.hidden, "the launcher puts it away too")

    def test_a_start_from_the_menu_shows_the_shelf(self):
        command = self.read("Desktop Entry", "Exec").split()
        self.assertEqual(command, ["parklet", "--show"])
        self.app.process = self.desktop.start("parklet", PROGRAM, *command[1:])
        wait_for(self.app.window, "the shelf comes up")

    def test_the_bus_starts_it_and_the_shelf_shows(self):
        self.install()
        self.activate()
        self.adopt()
        wait_for(self.app.window, "the shelf comes up")
        self.assertEqual(self.app.start_again(), 0)

    def test_an_action_starts_it_too(self):
        self.install()
        self.app.copy([uri_of(self.file("words.txt"))])
        self.activate("add-from-clipboard")
        self.adopt()
        self.app.tile("words.txt")
        self.activate("preferences")
        wait_for(lambda: self.app.window("preferences"), "the preferences open")

    def test_an_unknown_action_does_nothing(self):
        self.start()
        self.activate("no-such-action")
        stays(self.app.hidden, "the shelf came up", 0.5)
        self.activate("show-shelf")
        wait_for(self.app.window, "the shelf comes up")

    def test_quitting_what_does_not_run_leaves_nothing_running(self):
        self.install()
        self.activate("quit")
        wait_for(lambda: not self.is_owned(), "Parklet has ended")


class Started:
    """A process that another program has started."""

    def __init__(self, pid):
        self.pid = pid

    def poll(self):
        return None if pathlib.Path(f"/proc/{self.pid}").exists() else 0
