# SPDX-License-Identifier: MIT
"""Each session has one Parklet, and its settings survive crashes and full disks."""
import contextlib
import fcntl
import json
import os
import pathlib
import signal

from support.case import DesktopTest
from support.faults import FullDisk, SlowDisk
from support.parklet import Parklet
from support.waiting import stays

BAD_SETTINGS = {
    "empty": "",
    "truncated": '{"windowEdge": 0, "shelfItem',
    "no object": "[1, 2, 3]",
    "wrong types": json.dumps({"hasShownUpdatePrompt": True, "shelfItemSize": "large", "windowEdge": [], "dragMode": {},
                               "excludedBundleIDs": 7, "tintColorData": "red", "tintIntensity": None}),
}


class SessionTest(DesktopTest):
    def test_a_second_start_shows_the_running_shelf(self):
        app = self.parklet()
        self.assertTrue(app.hidden())
        self.assertEqual(app.start_again(), 0)
        self.wait_for(app.window, "the running shelf comes up")
        self.assertTrue(app.runs())
        self.assertEqual(app.start_again(), 0)
        stays(lambda: not app.hidden(), "the second call hid the shelf", 0.5)

    def test_quitting_ends_the_program(self):
        app = self.parklet()
        app.choose("Quit Parklet")
        self.assertEqual(app.process.wait(20), 0)

    def test_the_first_start_asks_about_updates_once(self):
        app = Parklet(self.desktop)
        app.write_settings({})

        def question():
            return self.desktop.windows.find(instance="parklet", title="Check for updates automatically?")

        disk = SlowDisk(app.settings_file.parent)
        app.process = self.desktop.start("parklet", app_program(), environment=disk.environment)
        self.wait_for(disk.is_waited_for, "Parklet is writing its settings")
        stays(lambda: not question(), "the question is shown before it is noted as asked", 1.0)
        disk.release()
        self.wait_for(question, "the question is shown")
        # The setting is on disk before any crash.
        app.kill()
        self.assertIs(app.read_settings().get("hasShownUpdatePrompt"), True)
        app.start()
        stays(lambda: not app.find("Check for updates automatically?"), "the question came back", 1.0)

    def test_settings_are_whole_after_a_kill(self):
        app = self.parklet(windowEdge=0, shelfItemSize=100.0)
        for round in range(4):
            with self.subTest(round=round):
                menu = app.open_menu()
                self.hand.click(*menu.find("Launch at Login").center)
                app.kill()
                settings = app.read_settings()
                self.assertEqual((settings["windowEdge"], settings["shelfItemSize"]), (0, 100.0))
                app.start()

    def test_bad_settings_are_no_obstacle(self):
        for name, text in BAD_SETTINGS.items():
            with self.subTest(name):
                app = Parklet(self.desktop)
                app.settings_file.write_text(text)
                app.process = self.desktop.start("parklet", app_program())
                self.wait_for(app.tray_icon, "Parklet's icon is in the tray")
                if name != "wrong types":
                    app.click("Don't Check")
                    self.wait_for(lambda: app.read_settings().get("autoCheckUpdates") is False, "the answer is kept")
                app.show()
                self.wait_for(lambda: app.frame().width == 116, "the shelf has its own size")
                app.kill()

    def test_settings_that_cannot_be_written_are_no_obstacle(self):
        app = Parklet(self.desktop, {"windowEdge": 0})
        app.settings_file.chmod(0o400)
        app.settings_file.parent.chmod(0o500)
        self.addCleanup(app.settings_file.parent.chmod, 0o700)
        app.start()
        app.choose("Launch at Login")
        app.show()
        self.assertEqual(app.frame().x, 4)
        self.assertEqual(app.read_settings()["windowEdge"], 0)

    def test_two_programs_write_the_settings(self):
        app = self.parklet(windowEdge=0)
        app.show()
        app.write_settings({**app.read_settings(), "windowEdge": 3, "note": "of another program"})
        app.choose("Launch at Login")
        self.wait_for(lambda: app.read_settings().get("launchAtLogin") is True, "the choice is stored")
        self.assertEqual((app.read_settings()["windowEdge"], app.read_settings()["note"]), (3, "of another program"))

    def test_a_full_disk_keeps_the_old_settings(self):
        app = Parklet(self.desktop, {"windowEdge": 0})
        disk = FullDisk(app.settings_file.parent)
        app.process = self.desktop.start("parklet", app_program(), environment=disk.environment)
        self.wait_for(app.tray_icon, "Parklet's icon is in the tray")
        before = app.settings_file.read_text()
        disk.fill()

        app.choose("Launch at Login")
        app.show()
        self.assertEqual(app.frame().x, 4)
        stays(lambda: app.settings_file.read_text() == before, "the settings have changed on a full disk", 1.0)
        self.assertEqual(os.listdir(app.settings_file.parent), ["settings.json"])

        disk.clear()
        app.choose("Launch at Login")
        self.wait_for(lambda: "launchAtLogin" in app.read_settings(), "the next change is stored")
        self.assertEqual(app.read_settings()["windowEdge"], 0)


class EndTest(DesktopTest):
    """The program ends within a second, and never fails to start without a message."""
    MOMENT = 5  # seconds; ten times the usual time, because other tests run at the same time

    def test_a_signal_ends_it_with_the_settings_on_disk(self):
        for sent in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(sent.name):
                app = self.parklet()
                app.choose("Launch at Login")
                app.process.send_signal(sent)
                self.assertEqual(app.process.wait(self.MOMENT), -sent)
                self.assertIs(app.read_settings().get("launchAtLogin"), True)

    def test_it_ends_though_another_program_keeps_the_settings_locked(self):
        for ends in (lambda app: app.choose("Quit Parklet"), lambda app: app.process.terminate()):
            app = self.parklet()
            with locked(app.settings_file.parent):
                app.choose("Launch at Login")
                ends(app)
                app.process.wait(self.MOMENT)
            self.assertIn("another program has locked the folder", self.said("parklet"))

    def test_a_signal_ends_one_whose_loop_stands(self):
        app = self.parklet()
        # The first start waits for the same file system as a write.
        app.kill()
        app.write_settings({})
        with locked(app.settings_file.parent):
            app.process = self.desktop.start("parklet", app_program())
            self.wait_for(lambda: any(os.path.realpath(entry) == str(app.settings_file.parent)
                                      for entry in pathlib.Path(f"/proc/{app.process.pid}/fd").iterdir()),
                          "Parklet is about to write its settings")
            app.process.terminate()
            app.process.wait(self.MOMENT)

    def test_a_start_beside_one_that_does_not_answer_says_so(self):
        app = self.parklet()
        app.process.send_signal(signal.SIGSTOP)
        self.addCleanup(app.process.send_signal, signal.SIGCONT)
        self.assertEqual(app.start_again(), 1)
        self.assertIn("does not answer", self.said("parklet-again"))

    def test_a_start_after_the_bus_died_makes_no_second_shelf(self):
        app = self.parklet()
        self.assertTrue(app.hidden())
        # There is no bus, or an address where no bus listens.
        nowhere = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.desktop.folder / 'no-bus'}"}
        again = self.desktop.start("parklet-again", app_program(), environment=nowhere)
        self.assertEqual(again.wait(20), 0)
        self.wait_for(app.window, "the running shelf comes up")

    def said(self, name):
        return (self.desktop.processes.logs / f"{name}.log").read_text()


@contextlib.contextmanager
def locked(folder):
    """Blocks every writer of settings in that folder."""
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        yield
    finally:
        os.close(descriptor)


def app_program():
    from support.parklet import PROGRAM
    return PROGRAM
