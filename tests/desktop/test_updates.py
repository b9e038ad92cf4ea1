# SPDX-License-Identifier: MIT
"""The check for a newer version, with a web server on this machine."""
import json
import os
import pathlib
import socketserver
import ssl
import threading
import time

from support.case import EVIDENCE, DesktopTest
from support.parklet import Parklet
from support.waiting import stays

# The program built as version 1.9, which reads the address of its version record from the environment.
PROGRAM = os.environ.get("PARKLET_LOOPBACK_PROGRAM") or (
    pathlib.Path(__file__).parents[3] / "build/release/loopback/parklet")
NOTES = "Folders are dragged faster.\nA <b>tile</b> no longer forgets its name."
PAGE = "https://example.com/get"
NEWER = {"version": "2.0", "url": PAGE}
UPDATE = "Parklet update available"
UP_TO_DATE = "Parklet is up to date"


def reply(body, status=200, headers=()):
    """Returns a complete answer. The body is bytes, or an object that becomes JSON."""
    body = body if isinstance(body, bytes) else json.dumps(body).encode()
    lines = [f"HTTP/1.1 {status} Reason", f"Content-Length: {len(body)}", "Connection: close", *headers]
    return "\r\n".join([*lines, "", ""]).encode() + body


class Server:
    """Answers every request with `answer(connection)`, or with `answer` itself if it is bytes, and counts the
    requests."""

    def __init__(self, answer, certificate=None):
        self.answer = answer
        self.requests = 0  # the number of requests that have begun
        self.ended = 0  # the number of closed connections
        self.release = threading.Event()
        self.tls = None
        if certificate:
            self.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            self.tls.load_cert_chain(*certificate)
        outer = self

        class Handler(socketserver.BaseRequestHandler):
            def handle(self):
                try:
                    outer.serve(self.request)
                except OSError:
                    pass  # the program has closed the connection
                finally:
                    outer.ended += 1

        socketserver.ThreadingTCPServer.daemon_threads = True
        self.server = socketserver.ThreadingTCPServer(("127.0.0.1", 0), Handler)
        self.thread = threading.Thread(target=self.server.serve_forever, args=(0.05,))
        self.thread.start()

    def serve(self, connection):
        if self.tls:
            connection = self.tls.wrap_socket(connection, server_side=True)
        request = b""
        while b"\r\n\r\n" not in request:
            piece = connection.recv(65536)
            if not piece:
                return
            request += piece
        self.requests += 1
        if callable(self.answer):
            self.answer(connection, request)
        else:
            connection.sendall(self.answer)

    def never(self, connection, _):
        """Never answers."""
        connection.recv(1)

    def held(self, answer):
        """Answers when the test allows it."""
        def send(connection, _):
            self.release.wait(60)
            connection.sendall(answer)
        return send

    @staticmethod
    def drip(answer, pieces):
        """Sends the end of the answer byte by byte, one a second."""
        def send(connection, _):
            connection.sendall(answer[:-pieces])
            for number in range(len(answer) - pieces, len(answer)):
                time.sleep(1)
                connection.sendall(answer[number:number + 1])
        return send

    def gigabytes(self, connection, _):
        """Sends a valid record, and then four gigabytes of blanks unless the program stops that."""
        piece = b" " * 1_000_000
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 4000000000\r\n\r\n" + json.dumps(NEWER).encode())
        self.sent = 0
        while self.sent < 4_000_000_000:
            connection.sendall(piece)
            self.sent += len(piece)

    @property
    def url(self):
        return f"{'https' if self.tls else 'http'}://127.0.0.1:{self.server.server_address[1]}/version.json"

    def close(self):
        self.release.set()
        self.server.shutdown()
        self.server.server_close()
        self.thread.join()


class UpdatesTest(DesktopTest):
    def start(self, record, certificate=None, **settings):
        answer = reply(record) if isinstance(record, dict) else record
        self.server = Server(answer, certificate)
        self.addCleanup(self.server.close)
        self.app = Parklet(self.desktop, settings)
        self.desktop.environment["PARKLET_TEST_VERSION_URL"] = self.server.url
        self.app.process = self.desktop.start("parklet", PROGRAM)
        self.wait_for(self.app.tray_icon, "Parklet's icon is in the tray")
        return self.app

    def fake_browser(self):
        """Makes a browser that writes down what it is asked to open."""
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
        """Starts a check from the menu. The alert may show before the menu has closed."""
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

    def alerts(self, title):
        return self.desktop.windows.find(instance="parklet", title=title)

    def dismiss(self, title):
        """Closes the alert that has the focus, and waits until it is gone."""
        alerts = self.wait_for(lambda: self.alerts(title), f"there is an alert {title!r}")
        self.wait_for(lambda: self.desktop.windows.active() in [alert.id for alert in alerts], "the alert has the focus")
        self.hand.key("Escape")
        self.wait_for(lambda: len(self.alerts(title)) < len(alerts), "the alert goes away")

    def check_in_silence(self, answer):
        """A check by the user has no visible result."""
        self.server.answer = answer
        before = self.server.ended
        self.check()
        # The program may ask again when a server just closes the connection.
        self.wait_for(lambda: self.server.requests > before, "the program asks")
        self.wait_for(lambda: self.server.ended == self.server.requests, "the program has its answer or gives up")
        stays(lambda: not self.alerts(UPDATE) and not self.alerts(UP_TO_DATE), "the check spoke", 0.5)
        self.wait_for(lambda: not self.app.menu_window(), "the menu closes")

    def test_what_is_no_record_ends_in_silence_also_for_the_user(self):
        app = self.start(b"")
        for name, answer in {
                "nothing": b"",
                "an empty body": reply(b""),
                "HTML": reply(b"<html><body>Welcome</body></html>"),
                "an error page": reply(b"<html><body>Oops</body></html>", 500),
                "a list": reply([NEWER]),
                "a version that is a number": reply({**NEWER, "version": 2}),
                "a url that is a list": reply({**NEWER, "url": [PAGE]}),
                "no url": reply({"version": "2.0"}),
                "less than was said": reply(NEWER)[:-1],
        }.items():
            with self.subTest(name):
                self.check_in_silence(answer)
        # A valid answer still works after all of these.
        self.server.answer = reply({**NEWER, "notes": 7})
        self.check()
        app.button("Version 2.0 is available.")
        self.dismiss(UPDATE)
        self.assertTrue(app.runs())

    def test_an_older_version_is_told_to_the_user_only(self):
        self.start({"version": "1.8.99", "url": PAGE}, autoCheckUpdates=True)
        self.wait_for(lambda: self.server.ended == 1, "the program asks at its start")
        stays(lambda: not self.alerts(UP_TO_DATE), "the silent check spoke", 1.0)
        self.check()
        self.dismiss(UP_TO_DATE)

    def test_the_status_of_the_answer_does_not_matter(self):
        self.start(b"")
        for status, headers in ((500, ()), (404, ()), (401, ("WWW-Authenticate: Basic realm=\"a\"",)), (407, ())):
            with self.subTest(status):
                self.server.answer = reply(NEWER, status, headers)
                self.check()
                self.dismiss(UPDATE)

    def test_a_redirect_is_followed(self):
        def answer(connection, request):
            found = request.startswith(b"GET /elsewhere ")
            connection.sendall(reply(NEWER) if found else reply(b"", 302, ("Location: /elsewhere",)))
        self.start(answer)
        self.check()
        self.dismiss(UPDATE)
        self.assertEqual(self.server.requests, 2)

    def test_a_server_that_never_answers_is_given_up(self):
        app = self.start(None)
        self.check_in_silence(self.server.never)
        self.assertTrue(app.runs())

    def test_an_answer_that_takes_longer_than_the_time_without_data_is_waited_for(self):
        self.start(Server.drip(reply(NEWER), 7))
        self.check()
        self.dismiss(UPDATE)

    def test_gigabytes_are_not_received(self):
        app = self.start(None)
        self.check_in_silence(self.server.gigabytes)
        self.assertLess(self.server.sent, 100_000_000)
        self.assertTrue(app.runs())

    def test_a_certificate_that_is_not_valid_ends_in_silence(self):
        key, certificate = self.desktop.folder / "key.pem", self.desktop.folder / "certificate.pem"
        self.desktop.run("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                         "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", key, "-out", certificate)
        app = self.start(NEWER, (certificate, key))
        self.check()
        self.wait_for(lambda: self.server.ended == 1, "the program hangs up")
        stays(lambda: not self.alerts(UPDATE), "the program trusts anybody", 0.5)
        self.assertEqual(self.server.requests, 0)
        self.assertTrue(app.runs())

    def test_a_second_check_while_one_is_under_way_is_a_check_of_its_own(self):
        app = self.start(None)
        self.server.answer = self.server.held(reply({"version": "1.9", "url": PAGE}))
        for number in (1, 2):
            self.check()
            self.wait_for(lambda: self.server.requests == number, "the program asks")
            self.wait_for(lambda: not app.menu_window(), "the menu closes")
        self.assertFalse(self.alerts(UP_TO_DATE))
        self.server.release.set()
        self.wait_for(lambda: len(self.alerts(UP_TO_DATE)) == 2, "each check tells the user")
        self.dismiss(UP_TO_DATE)
        self.dismiss(UP_TO_DATE)
        self.assertTrue(app.runs())

    def test_quitting_at_an_alert_opens_nothing_and_waits_for_no_answer(self):
        opened = self.fake_browser()
        app = self.start(None)
        self.server.answer = self.server.held(reply(NEWER))
        self.check()
        self.wait_for(lambda: self.server.requests == 1, "the program asks")
        self.wait_for(lambda: not app.menu_window(), "the menu closes")
        self.server.answer = reply(NEWER)
        self.check()
        app.button("Version 2.0 is available.")
        # The tray menu cannot be opened during an alert, but the launcher's menu can.
        self.desktop.run("gdbus", "call", "--session", "--dest", "com.orvane.Parklet", "--object-path",
                         "/com/orvane/Parklet", "--method", "org.freedesktop.Application.ActivateAction", "quit", "[]",
                         "{}")
        self.assertEqual(app.process.wait(20), 0)
        stays(lambda: not opened.exists(), "the browser was asked for a page", 0.5)

    def test_quitting_does_not_wait_for_an_answer(self):
        app = self.start(None)
        # The program would listen to this for the 30 seconds that an answer may take.
        self.server.answer = Server.drip(reply(NEWER), 60)
        self.check()
        self.wait_for(lambda: self.server.requests == 1, "the program asks")
        app.choose("Quit Parklet")
        self.assertEqual(app.process.wait(20), 0)
