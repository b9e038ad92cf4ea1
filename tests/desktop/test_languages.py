# SPDX-License-Identifier: MIT
"""The program in another language than English: its texts on screen and on the terminal."""
import re
import subprocess

from gi.repository import GLib

from support.case import DesktopTest
from support.parklet import PROGRAM, Parklet, uri_of
from support.waiting import stays

ENGLISH = {"LC_ALL": "C.UTF-8"}
# The locale need not be installed.
GERMAN = {"LC_ALL": "", "LANG": "de_DE.UTF-8"}
# Names, signs and values that are the same in every language. Numbers and paths are recognised by their form.
SAME = {"", " ", "Parklet", "+", "−", "org.example.Gone", "words.txt", "more words.txt"}
SAME_LOOK = re.compile(r"^©|^#[0-9a-f]{8}$")

MENU = ["Parklet", "Aus der Zwischenablage hinzufügen", "Ablage anzeigen", "Einstellungen\u00a0…",
        "Nach Aktualisierungen suchen\u00a0…", "Mehr von Orvane", "Beim Anmelden starten", "Parklet beenden"]
GENERAL = {"Allgemein", "Beim Anmelden starten", "Symbol in der Menüleiste anzeigen", "Symbol im Dock anzeigen",
           "Herausgezogene Objekte entfernen", "Beim Herausziehen", "Dateien kopieren",
           "Neue Bildschirmfotos automatisch hinzufügen"}
QUESTION = {"Alle Dateien entfernen?", "Damit werden alle 2 Dateien aus der Ablage entfernt.", "Alle entfernen",
            "Abbrechen", "Diese Meldung nicht mehr anzeigen"}
ADD, SHOW, PREFERENCES = 1, 2, 3  # indexes in the menu


class LanguagesTest(DesktopTest):
    def start(self, language, **settings):
        self.app = Parklet(self.desktop, settings)
        self.app.process = self.desktop.start("parklet", PROGRAM, environment=language)
        return self.app

    def texts(self):
        """Returns every text that the program shows."""
        texts = set()
        for node in self.app.root().walk():
            try:
                if node.has_state("showing"):
                    texts |= {node.name, node.description if node.role == "push button" else ""}
            except GLib.Error:
                continue
        return texts

    def settled_texts(self, before=None):
        """Returns the texts once they have changed and are stable."""
        def look():
            texts = self.texts()
            return texts if texts != before and texts == self.texts() else None
        return self.wait_for(look, "the texts on screen change")

    def choose(self, place):
        """Chooses an item of the tray menu by its index, and returns the menu's texts."""
        items = [item for item in self.app.open_menu().children if item.name]
        texts = [item.name for item in items]
        self.hand.click(*items[place].center)
        self.wait_for(lambda: not self.app.menu_window(), "the menu closes")
        return texts

    def wait_for_focus(self):
        """Waits until a key goes to a window of Parklet."""
        windows = self.desktop.windows
        self.wait_for(lambda: windows.active() in [window.id for window in windows.find(instance="parklet")],
                      "Parklet has the focus")

    def tour(self, language):
        """Visits every window and menu, and returns all texts."""
        self.start(language, excludedBundleIDs=["org.example.Gone"], hasShownUpdatePrompt=False)
        places = {}
        self.wait_for(lambda: self.app.root() and self.app.root().find(role="alert message"), "there is a question")
        places["first question"] = self.settled_texts()
        self.wait_for_focus()
        self.hand.key("Escape")
        self.wait_for(self.app.tray_icon, "Parklet's icon is in the tray")

        places["menu"] = set(self.choose(PREFERENCES))
        window = self.wait_for(lambda: self.app.window("preferences"), "the preferences window opens")
        places["title"] = {self.desktop.windows.title(window)}
        places["pane 0"] = self.settled_texts()
        rows = self.app.root().find_all(role="list item")[:5]
        for number in range(1, 5):
            before = self.texts()
            rows[number].do("Toggle")
            places[f"pane {number}"] = self.settled_texts(before)
            choices = [node.name for box in self.app.root().find_all(role="combo box") for node in box.walk()
                       if node.role == "list item"]
            self.assertEqual(len(choices), (0, 3, 7, 10, 0)[number])
            places[f"the choices of pane {number}"] = set(choices)
        self.wait_for_focus()
        self.hand.key("Escape")
        self.wait_for(lambda: not self.app.window("preferences"), "the preferences window closes")

        self.choose(SHOW)
        self.app.opaque(self.wait_for(self.app.window, "the shelf comes up"))
        places["empty shelf"] = self.settled_texts()
        self.app.copy([uri_of(self.file("words.txt")), uri_of(self.file("more words.txt"))])
        self.choose(ADD)
        self.wait_for(lambda: self.app.find("more words.txt"), "the files are on the shelf")
        places["shelf"] = self.settled_texts()
        buttons = self.app.root().find_all(role="push button")
        self.hand.click(*buttons[2].center)
        self.wait_for(lambda: self.app.root().find(role="alert message"), "there is a question")
        places["question"] = self.settled_texts()
        self.wait_for_focus()
        self.hand.key("Escape")
        self.wait_for(lambda: not self.app.root().find(role="alert message"), "the question goes away")
        self.app.process.terminate()
        self.app.process.wait(20)
        return places

    def test_in_german_nothing_on_screen_stays_english(self):
        english, german = self.tour(ENGLISH), self.tour(GERMAN)
        self.assertEqual(english["menu"] & {"Show Shelf", "Preferences…"}, {"Show Shelf", "Preferences…"})
        self.assertEqual(german["menu"], set(MENU))
        self.assertEqual(GENERAL - german["pane 1"], set())
        self.assertEqual(QUESTION - german["question"], set())
        self.assertEqual(german["title"], {"Parklet-Einstellungen"})
        version = subprocess.run([PROGRAM, "--version"], capture_output=True, check=True, text=True).stdout.strip()
        self.assertIn(version, english["pane 4"])
        spoken = {text for text in set().union(*english.values()) if not SAME_LOOK.search(text)} - SAME - {version}
        self.assertGreater(len(spoken), 50)
        for place, texts in german.items():
            self.assertEqual(texts & spoken, set(), f"{place} is English in parts")

    def test_qt_speaks_the_same_language(self):
        self.start(GERMAN)
        self.choose(PREFERENCES)
        self.wait_for(lambda: self.app.find("Verhalten", "list item"), "the sidebar is there").do("Toggle")
        self.wait_for(lambda: self.app.find("+", "push button"), "the pane shows its list").do("Press")
        self.wait_for(lambda: self.desktop.windows.find(title="Anwendung hinzufügen"), "the open panel comes up")
        self.wait_for(lambda: self.app.find("Hinzufügen", "push button"), "it has the program's own button")
        self.wait_for(lambda: self.app.find("Abbrechen", "push button"), "and a button of Qt's").do("Press")
        self.wait_for(lambda: not self.desktop.windows.find(title="Anwendung hinzufügen"), "the open panel closes")

    def test_a_locale_that_does_not_exist_leaves_it_english(self):
        self.start({"LC_ALL": "xx_YY.UTF-8", "LANGUAGE": "xx"})
        self.assertIn("Show Shelf", self.choose(PREFERENCES))
        self.app.button("Welcome")
        stays(lambda: not (self.desktop.logs / "parklet.log").read_text(), "it complains", 0.5)

    def test_the_terminal_is_told_in_the_users_language(self):
        english, german = "Usage: parklet [OPTION]", "Aufruf: parklet [OPTION]"
        for language, line in (
                ({"LANG": "de_DE.UTF-8"}, german), ({"LANG": "de_AT.UTF-8"}, german), ({"LANG": "de"}, german),
                ({"LC_ALL": "de_DE.UTF-8", "LANG": "en_US.UTF-8"}, german),
                ({"LANG": "en_US.UTF-8", "LC_MESSAGES": "de_DE.UTF-8"}, german),
                ({"LANG": "en_US.UTF-8", "LANGUAGE": "de:en"}, german),
                ({"LANG": "de_DE.UTF-8", "LANGUAGE": "is:de"}, german),
                ({"LANG": "de_DE.UTF-8", "LANGUAGE": "en_GB:de"}, english), ({"LANG": "en_GB.UTF-8"}, english),
                ({"LANG": "is_IS.UTF-8"}, english), ({"LC_ALL": "xx_YY.UTF-8"}, english),
                ({"LC_ALL": "C", "LANG": "de_DE.UTF-8"}, english), ({"LC_ALL": "C", "LANGUAGE": "de"}, english),
                ({"LC_ALL": "C.UTF-8", "LANGUAGE": "de"}, english),
                ({"LC_ALL": "", "LANG": "C.UTF-8", "LANGUAGE": "de"}, english),
                ({"LC_ALL": "en_US.UTF-8", "LANG": "C", "LANGUAGE": "de"}, german),
                ({"LANG": "no locale at all"}, english), ({}, english)):
            with self.subTest(language):
                result = self.run_alone(language, "--help")
                self.assertEqual((result.stdout.splitlines()[0], result.stderr, result.returncode), (line, "", 0))
        self.assertEqual(self.run_alone({"LANG": "de_DE.UTF-8"}, "--shelf").stderr,
                         "parklet: unbekannte Option „--shelf“\nMehr dazu mit „parklet --help“.\n")
        self.assertEqual(self.run_alone({"LANG": "de_DE.UTF-8"}).stderr,
                         "parklet: DISPLAY ist nicht gesetzt; Parklet braucht einen X-Server oder in einer "
                         "Wayland-Sitzung XWayland\n")
        self.assertEqual(self.run_alone({"LANG": "de_DE.UTF-8", "DISPLAY": ":6543"}).stderr,
                         "parklet: keine Verbindung zum X-Server „:6543“, den DISPLAY nennt\n")

    def run_alone(self, environment, *arguments):
        return subprocess.run([PROGRAM, *arguments], env={"PATH": "/usr/bin:/bin", **environment},
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
