# SPDX-License-Identifier: MIT
"""Sessions in which a service or a folder is missing: Parklet works with what there is, or says what is missing."""
import os
import pathlib
import signal
import subprocess

from support.case import DesktopTest
from support.faults import FullDisk, home_in_user_database, make_read_only
from support.parklet import Parklet, PROGRAM
from support.waiting import wait_for

PORTAL = pathlib.Path(__file__).with_name("support") / "portal.py"
XDG = ("XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS",
       "XDG_RUNTIME_DIR", "XDG_SESSION_TYPE")


def without(*names):
    """Removes these variables in the block."""
    return ("env", *(f"--unset={name}" for name in names))


class SurroundingsTest(DesktopTest):
    def start(self, *how, settings=None, **environment):
        """Starts the program with its own variables, and waits for its icon in the tray."""
        self.app = Parklet(self.desktop, settings)
        self.app.process = self.desktop.start("parklet", *how, PROGRAM, environment=environment)
        wait_for(lambda: self.app.tray_icon() or not self.app.runs(), "Parklet's icon is in the tray")
        self.assertTrue(self.app.runs(), "Parklet ended as it started")
        return self.app

    def assert_works(self):
        """The shelf takes a file and shows it, and the program can be set to start with the session."""
        self.app.choose("Launch at Login")
        self.app.hold(self.file("words.txt"))
        self.assertEqual(self.app.names(), ["words.txt"])

    def fails(self, **environment):
        """Returns what the program prints when it ends at once."""
        variables = {**self.desktop.environment, **environment}
        result = subprocess.run([PROGRAM], env={name: value for name, value in variables.items() if value is not None},
                                stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        return result.stderr

    def test_without_an_x_server_it_says_so(self):
        self.assertEqual(self.fails(DISPLAY=None), "parklet: DISPLAY is not set; Parklet needs an X server, "
                                                   "or XWayland in a Wayland session\n")
        self.assertEqual(self.fails(DISPLAY=":6543"),
                         'parklet: cannot connect to the X server ":6543" that DISPLAY names\n')
        # A platform that a Wayland session sets for all of its programs changes nothing.
        self.assertIn("DISPLAY is not set", self.fails(DISPLAY=None, QT_QPA_PLATFORM="wayland;xcb"))

    def test_a_session_that_wishes_for_wayland_gets_the_x_server(self):
        self.start(QT_QPA_PLATFORM="wayland")
        self.assert_works()

    def test_the_command_line_is_answered_without_a_display(self):
        bare = {"PATH": "/usr/bin:/bin"}
        for option, code in (("--version", 0), ("--help", 0), ("--shelf", 2)):
            result = subprocess.run([PROGRAM, option], env=bare, capture_output=True, text=True, timeout=60)
            self.assertEqual((result.returncode, bool(result.stdout), bool(result.stderr)), (code, not code, bool(code)))

    def test_without_home_the_user_database_tells_where_it_is(self):
        self.start(*without("HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"), settings={"windowEdge": 0},
                   **home_in_user_database(self.desktop.home))
        self.assert_works()
        wait_for(lambda: self.app.read_settings().get("launchAtLogin"), "the settings are written")
        self.assertEqual(self.app.frame().x, 4)

    def test_a_read_only_home_is_no_obstacle(self):
        words = self.file("words.txt")
        self.app = Parklet(self.desktop, {"windowEdge": 0})
        self.addCleanup(make_read_only(self.desktop.home))
        self.app.start()
        before = self.app.settings_file.read_bytes()
        self.app.choose("Launch at Login")
        self.app.hold(words)
        self.assertEqual(self.app.frame().x, 4)
        self.assertEqual(self.app.settings_file.read_bytes(), before)

    def test_a_full_disk_leaves_the_settings_whole(self):
        disk = FullDisk(self.desktop.home / ".config")
        disk.fill()
        self.start(settings={"windowEdge": 0}, **disk.environment)
        before = self.app.settings_file.read_bytes()
        self.assert_works()
        self.assertEqual(self.app.frame().x, 4)
        self.assertEqual(self.app.settings_file.read_bytes(), before)
        self.assertEqual(os.listdir(self.app.settings_file.parent), ["settings.json"])

    def test_without_a_session_bus_there_is_still_one_shelf(self):
        self.assert_one_shelf(self.private_folder("run-without-bus"))

    def test_a_runtime_folder_that_cannot_be_written_is_no_obstacle(self):
        folder = self.private_folder("run-unwritable")
        folder.chmod(0o500)
        self.addCleanup(folder.chmod, 0o700)
        self.assert_one_shelf(folder)
        self.assertEqual(os.listdir(folder), [])

    def test_without_a_runtime_folder_there_is_still_one_shelf(self):
        self.assert_one_shelf(self.desktop.folder / "no-such-folder")

    def private_folder(self, name):
        folder = self.desktop.folder / name
        folder.mkdir(mode=0o700)
        return folder

    def assert_one_shelf(self, runtime_folder):
        """Without a bus, widgets cannot be found by name, but the shelf is visible."""
        how = without("DBUS_SESSION_BUS_ADDRESS")
        self.desktop.processes.environment |= {"XDG_RUNTIME_DIR": str(runtime_folder),
                                               "TMPDIR": str(self.private_folder("tmp"))}
        self.start(*how)
        self.assertTrue(self.app.hidden())
        self.assertEqual(self.desktop.start("again", *how, PROGRAM).wait(30), 0)
        wait_for(self.app.window, "the running shelf comes up")

    def test_without_xdg_folders_it_makes_its_own(self):
        home = self.private_folder("empty home")
        self.app = Parklet(self.desktop)
        self.app.process = self.desktop.start("parklet", *without(*XDG), PROGRAM, environment={"HOME": str(home)})
        self.app.click("Don't Check")
        wait_for(self.app.tray_icon, "Parklet's icon is in the tray")
        self.assert_works()
        wait_for((home / ".config/parklet/settings.json").exists, "the settings are where they belong")

    def test_a_locale_that_does_not_exist_is_no_obstacle(self):
        self.start(LC_ALL="xx_YY.UTF-8", LANG="xx_YY.UTF-8", LANGUAGE="xx")
        name = "größer als 1 € – 日本.txt"
        self.app.hold(self.file(name))
        self.assertEqual(self.app.names(), [name])

    def test_without_any_icon_there_are_pictures_still(self):
        empty = self.private_folder("no data")
        self.start(XDG_DATA_DIRS=str(empty), XDG_DATA_HOME=str(empty))
        folder = self.folder("a folder")
        self.app.hold(self.file("words.txt"), folder)
        for tile in self.app.tiles():
            wait_for(lambda: self.colors(tile.frame) > 3, f"{tile.name} has a picture")

    def test_the_desktops_colours_are_the_programs(self):
        colors = self.desktop.folder / "colours"
        colors.write_text("1 1.0 0.0 0.0")
        portal = self.desktop.start("portal", "/usr/bin/python3", "-B", PORTAL, colors)
        wait_for(self.portal_is_there, "the portal is on the bus")
        self.start(settings={"tintIntensity": 1.0, "windowEdge": 0})
        self.app.show()
        frame = self.app.frame()
        shelf = (frame.x + frame.width // 2, frame.y + frame.height - 20)
        wait_for(lambda: self.leads(shelf, 0), "the shelf is tinted red")
        self.app.choose("Preferences…")
        window = wait_for(lambda: self.app.window("preferences"), "the preferences open")
        pane = self.desktop.windows.frame(window)
        corner = (pane.x + pane.width - 8, pane.y + pane.height - 8)
        wait_for(lambda: sum(self.desktop.windows.pixel(*corner)) < 200, "they are dark")
        colors.write_text("2 0.0 0.0 1.0")
        portal.send_signal(signal.SIGUSR1)
        wait_for(lambda: self.leads(shelf, 2), "the shelf is tinted blue")
        wait_for(lambda: sum(self.desktop.windows.pixel(*corner)) > 600, "the preferences are light")

    def portal_is_there(self):
        return "true" in self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                                          "--object-path", "/org/freedesktop/DBus", "--method",
                                          "org.freedesktop.DBus.NameHasOwner", "org.freedesktop.portal.Desktop")

    def leads(self, place, part):
        """Whether a pixel has far more of one of red, green and blue than of the others."""
        color = list(self.desktop.windows.pixel(*place))
        return color.pop(part) > max(color) + 60

    def colors(self, frame):
        return len({self.desktop.windows.pixel(frame.x + x, frame.y + y)
                    for x in range(8, frame.width - 8, 6) for y in range(8, 72, 6)})
