# SPDX-License-Identifier: MIT
"""The check for a newer version, against a web server of this machine."""
import http.server
import json
import os
import pathlib
import threading
import time

from support.case import EVIDENCE, DesktopTest
from support.parklet import Parklet
from support.waiting import stays

# The program built as version 1.9, with the address of its version record taken from the environment.
PROGRAM = os.environ.get("PARKLET_LOOPBACK_PROGRAM") or (
    pathlib.Path(__file__).parents[3] / "build/release/loopback/parklet")
NOTES = "Folders are dragged faster.\nA <b>tile</b> no longer forgets its name."
UPDATE = "Parklet update available"
UP_TO_DATE = "Parklet is up to date"


class Server:
    """Answers every request with `body`, or never, and counts them."""

    def __init__(self, body):
        self.body = body
        self.requests = 0
        self.release = threading.Event()
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                outer.requests += 1
                if outer.body is None:
                    outer.release.wait(60)
                    return
                self.send_response(200)
                self.send_header("Content-Length", str(len(outer.body)))
                self.end_headers()
                self.wfile.write(outer.body)

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.thread = threading.Thread(target=self.server.serve_forever)
        self.thread.start()

    @property
    def url(self):
        return f"http://127.0.0.1:{self.server.server_port}/version.json"

    def close(self):
        self.release.set()
        self.server.shutdown()
        self.server.server_close()
        self.thread.join()


class UpdatesTest(DesktopTest):
    def start(self, record, **settings):
        body = json.dumps(record).encode() if isinstance(record, dict) else record
        self.server = Server(body)
        self.addCleanup(self.server.close)
        self.app = Parklet(self.desktop, settings)
        self.desktop.environment["PARKLET_TEST_VERSION_URL"] = self.server.url
        self.app.process = self.desktop.start("parklet", PROGRAM)
        self.wait_for(self.app.tray_icon, "Parklet's icon is in the tray")
        return self.app

    def fake_browser(self):
        """Makes a browser that writes down what it is to open."""
        opened = self.desktop.home / "opened"
        applications = self.desktop.home / ".local/share/applications"
        applications.mkdir(parents=True)
        script = self.desktop.home / "browser"
        script.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{opened}"\n')
        script.chmod(0o755)
        (applications / "browser.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Browser\nExec={script} %u\nMimeType=x-scheme-handler/https;\n")
        (applications / "mimeapps.list").write_text("[Default Applications]\nx-scheme-handler/https=browser.desktop\n")
        return opened

    def check(self):
        """Asks for a check, as the user does. The alert may be there before the menu has gone."""
        item = self.app.open_menu().find("Check for Updates…")
        self.hand.click(*item.center)

    def picture(self, name):
        EVIDENCE.mkdir(parents=True, exist_ok=True)
        self.desktop.screenshot(EVIDENCE / f"{name}.png")

    def test_a_newer_version_is_told_and_its_page_opened(self):
        opened = self.fake_browser()
        app = self.start({"version": "1.10", "url": "https://example.com/get?v=1.10", "notes": NOTES})
        self.check()
        app.button(UPDATE)
        app.button(f"Version 1.10 is available.\n\nRelease notes: {NOTES}")
        alert = self.wait_for(lambda: self.desktop.windows.find(instance="parklet", title=UPDATE), "the alert is there")[0]
        self.wait_for(lambda: self.desktop.windows.active() == alert.id, "the alert has the focus")
        self.picture("update-alert")
        # The first button is the default one.
        self.hand.key("Return")
        self.wait_for(lambda: opened.exists() and opened.read_text(), "the browser is asked for the page")
        self.assertEqual(opened.read_text(), "https://example.com/get?v=1.10\n")
        self.assertFalse(app.find(UPDATE))
        self.assertTrue(app.runs())

    def test_later_opens_nothing(self):
        opened = self.fake_browser()
        app = self.start({"version": "2.0", "url": "https://example.com/get"}, autoCheckUpdates=True)
        app.button("Version 2.0 is available.")
        app.click("Later")
        self.wait_for(lambda: not app.find(UPDATE), "the alert goes away")
        stays(lambda: not opened.exists(), "the browser was asked for a page", 0.5)

    def test_the_same_version_is_told_to_the_user_only(self):
        app = self.start({"version": "1.9", "url": "https://example.com/get", "notes": NOTES}, autoCheckUpdates=True)
        self.wait_for(lambda: self.server.requests == 1, "the program asks at its start")
        stays(lambda: not app.find(UP_TO_DATE), "the silent check spoke", 1.0)
        self.check()
        app.button(UP_TO_DATE)
        app.button("You're running the latest version.")
        self.picture("up-to-date-alert")
        app.click("OK")
        self.wait_for(lambda: not app.find(UP_TO_DATE), "the alert goes away")
        self.assertEqual(self.server.requests, 2)

    def test_without_the_setting_nobody_is_asked(self):
        self.start({"version": "2.0", "url": "https://example.com/get"})
        stays(lambda: self.server.requests == 0, "the program asked the server", 1.0)

    def test_long_notes_leave_the_buttons_in_reach(self):
        notes = "\n".join(f"{number}. Another thing that works better now." for number in range(1, 400))
        app = self.start({"version": "2.0", "url": "https://example.com/get", "notes": notes})
        self.check()
        later = app.button("Later").frame
        self.picture("long-notes-alert")
        self.assertLess(later.y + later.height, self.desktop.height)
        self.assertGreater(later.y, 0)
        app.click("Later")
        self.wait_for(lambda: not app.find(UPDATE), "the alert goes away")

    def test_quitting_does_not_wait_for_an_answer(self):
        app = self.start(None)
        self.check()
        self.wait_for(lambda: self.server.requests == 1, "the program asks")
        began = time.monotonic()
        app.choose("Quit Parklet")
        self.assertEqual(app.process.wait(20), 0)
        self.assertLess(time.monotonic() - began, 4.0)
