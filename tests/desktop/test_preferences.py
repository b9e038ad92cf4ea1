# SPDX-License-Identifier: MIT
"""The preferences window and the settings file, used with a screen reader, a keyboard and a mouse."""
import subprocess

from gi.repository import GLib

from support.case import DesktopTest
from support.parklet import PROGRAM
from support.waiting import stays

ENTRY = """[Desktop Entry]
Type=Application
Name=Sample Editor
Exec=true
"""
BROWSER = """[Desktop Entry]
Type=Application
Name=Browser
Exec=sh -c "echo %u > {visited}"
MimeType=x-scheme-handler/https;x-scheme-handler/http;
"""


class PreferencesTest(DesktopTest):
    def open_preferences(self, **settings):
        self.parklet(**settings)
        self.app.choose("Preferences…")
        self.wait_for(lambda: self.app.window("preferences"), "the preferences window opens")
        return self.wait_for(lambda: self.app.root().find("Parklet Preferences"), "it can be read")

    def show_pane(self, title, landmark):
        """Clicks a row of the sidebar and waits for a text of its pane."""
        self.hand.click(*self.wait_for(lambda: self.app.find(title, "list item"), f"the sidebar has {title}").center)
        return self.wait_for(lambda: self.app.find(landmark), f"the pane shows {landmark!r}")

    def wait_for_setting(self, key, value):
        self.wait_for(lambda: self.app.read_settings().get(key) == value, f"{key} is stored as {value!r}")

    def labelled(self, name, role):
        """Returns the control of that role with that label."""
        return self.wait_for(lambda: next((node for node in self.app.root().find_all(role=role)
                                           if name in node.labels), None), f"{name!r} labels a {role}")

    def pick(self, name, key):
        """Opens the pop-up button of that label and takes what the key goes to."""
        before = len(self.desktop.windows.find(instance="parklet"))
        self.hand.click(*self.labelled(name, "combo box").center)
        self.wait_for(lambda: len(self.desktop.windows.find(instance="parklet")) > before, "the pop-up opens")
        self.hand.key(key)
        self.hand.key("Return")
        self.wait_for(lambda: len(self.desktop.windows.find(instance="parklet")) == before, "the pop-up closes")

    def test_the_window_opens_on_welcome_in_the_middle_of_the_screen(self):
        self.open_preferences()
        window = self.app.window("preferences")
        frame = self.desktop.windows.frame(window)
        self.assertEqual((frame.width, frame.height), (700, 500))
        self.assertLess(abs(frame.x + frame.width // 2 - self.desktop.width // 2), 10)
        self.assertLess(abs(frame.y + frame.height // 2 - self.desktop.height // 2), 40)
        self.assertEqual(self.desktop.windows.title(window), "Parklet Preferences")
        self.wait_for(lambda: self.desktop.windows.active() == window.id, "it has the focus")
        self.assertIsNotNone(self.app.find("Lightweight drag & drop file shelf for macOS"))
        rows = [node.name for node in self.app.root().find_all(role="list item")]
        self.assertEqual(rows, ["Welcome", "General", "Behavior", "Appearance", "About"])
        self.app.choose("Preferences…")
        self.assertEqual(len(self.desktop.windows.find(role="preferences")), 1)
        for _ in range(3):
            self.hand.key("Escape")
            self.wait_for(lambda: not self.app.window("preferences"), "the window closes")
            self.app.choose("Preferences…")
            window = self.wait_for(lambda: self.app.window("preferences"), "the window opens")
            self.wait_for(lambda: self.desktop.windows.frame(window) == frame, "it is where it was")
            self.wait_for(lambda: self.desktop.windows.active() == window.id, "it has the focus")

    def test_the_general_pane_writes_the_file(self):
        self.open_preferences()
        self.show_pane("General", "Remove items when dragged out")
        self.hand.click(*self.app.find("Remove items when dragged out", "check box").center)
        self.wait_for_setting("removeItemsWhenDraggedOut", False)
        self.hand.click(*self.app.find("Start at login", "check box").center)
        self.wait_for_setting("launchAtLogin", True)
        self.wait_for(lambda: list((self.desktop.home / ".config/autostart").glob("*.desktop")), "it starts at login")
        self.pick("Drag mode", "End")
        self.wait_for_setting("dragMode", 2)

    def test_the_behavior_pane_writes_the_file(self):
        applications = self.desktop.home / ".local/share/applications"
        applications.mkdir(parents=True)
        (applications / "org.example.SampleEditor.desktop").write_text(ENTRY)
        self.open_preferences(excludedBundleIDs=["org.example.Gone"])
        check_box = self.show_pane("Behavior", "Automatically show the drop window")
        trigger = self.labelled("When to show the drop window", "combo box")
        self.assertTrue(trigger.has_state("enabled"))
        check_box = self.app.find("Automatically show the drop window", "check box")
        self.hand.click(*check_box.center)
        self.wait_for_setting("autoShowDropWindow", False)
        self.wait_for(lambda: not trigger.has_state("enabled"), "the trigger is greyed out")
        self.assertIsNotNone(self.app.find("org.example.Gone", "list item"))

        self.app.click("+")
        self.wait_for(lambda: self.desktop.windows.find(title="Add application"), "the open panel comes up")
        field = self.wait_for(lambda: self.app.find(role="text"), "it takes a file's name")
        field.ask("org.a11y.atspi.EditableText", "SetTextContents",
                  GLib.Variant("(s)", (str(applications / "org.example.SampleEditor.desktop"),)))
        self.app.click("Add")
        self.wait_for_setting("excludedBundleIDs", ["org.example.Gone", "org.example.SampleEditor"])
        self.hand.click(*self.wait_for(lambda: self.app.find("Sample Editor", "list item"), "it is listed").center)
        self.app.click("−")
        self.wait_for_setting("excludedBundleIDs", ["org.example.Gone"])

    def test_the_appearance_pane_shows_the_shelf_and_what_becomes_of_it(self):
        self.open_preferences()
        self.assertTrue(self.app.hidden())
        size = self.show_pane("Appearance", "Shelf item size") and self.app.find("Shelf item size", "slider")
        window = self.wait_for(self.app.window, "the shelf shows as a preview")
        self.app.opaque(window)
        preferences = self.app.window("preferences")
        self.wait_for(lambda: self.desktop.windows.active() == preferences.id, "the preferences have the focus")
        stays(lambda: self.desktop.windows.active() == preferences.id, "the preferences lost the focus", 0.5)
        width = self.app.frame().width
        self.assertEqual(size.value, 72.0)
        size.value = 96.0
        self.wait_for_setting("shelfItemSize", 96.0)
        self.wait_for(lambda: self.app.frame().width == width + 24, "the shelf grows with its items")
        self.pick("Window edge", "Home")
        self.wait_for_setting("windowEdge", 0)
        self.wait_for(lambda: self.app.frame().x < 20, "the shelf moves to the left edge")
        self.show_pane("About", "More from Orvane")
        self.wait_for(self.app.hidden, "the preview ends")

    def test_the_preview_leaves_a_shelf_that_is_there(self):
        self.open_preferences()
        self.app.show()
        self.show_pane("Appearance", "Shelf item size")
        self.show_pane("About", "More from Orvane")
        stays(lambda: not self.app.hidden(), "the shelf went with the preview", 1.0)

    def test_the_preview_outlasts_the_window_and_ends_with_its_pane(self):
        self.open_preferences()
        self.show_pane("Appearance", "Shelf item size")
        self.app.opaque(self.wait_for(self.app.window, "the shelf shows as a preview"))
        self.hand.key("Escape")
        self.wait_for(lambda: not self.app.window("preferences"), "Escape closes the window")
        stays(lambda: not self.app.hidden(), "the shelf went with the window", 1.0)
        self.app.choose("Preferences…")
        self.wait_for(lambda: self.app.window("preferences"), "the window opens again")
        self.show_pane("About", "More from Orvane")
        self.wait_for(self.app.hidden, "the preview ends")

    def test_the_colour_panel_tints_at_once(self):
        self.open_preferences()
        self.show_pane("Appearance", "Tint colour")
        shelf = self.wait_for(self.app.window, "the shelf shows as a preview")
        self.app.opaque(shelf)
        frame = self.desktop.windows.frame(shelf)

        def preview():
            return self.desktop.windows.pixel(frame.x + 16, frame.y + frame.height // 2)

        in_accent = preview()
        self.hand.click(*self.app.find("Tint colour", "push button").center)
        self.wait_for(lambda: self.desktop.windows.find(title="Tint colour"), "the colour panel comes up")
        window = self.desktop.windows.find(title="Tint colour")[0]
        self.wait_for(lambda: self.desktop.windows.active() == window.id, "it has the focus")
        self.hand.key("Right")
        self.hand.key("space")
        self.wait_for(lambda: "tintColorData" in self.app.read_settings(), "the colour is stored")
        self.wait_for(lambda: preview() != in_accent, "the preview takes on the colour")
        in_color = preview()
        stays(lambda: self.desktop.windows.active() == window.id, "the panel lost the focus", 0.5)
        self.hand.key("Escape")
        self.wait_for(lambda: not self.desktop.windows.find(title="Tint colour"), "the colour panel closes")
        self.assertIsNotNone(self.app.window("preferences"))
        self.app.find("Tint intensity", "slider").value = 0.0
        self.wait_for(lambda: preview() not in (in_accent, in_color), "the preview loses the colour")

    def install_browser(self):
        """Installs a default browser that writes down what it is asked to open, and returns that file."""
        visited = self.desktop.home / "visited"
        applications = self.desktop.home / ".local/share/applications"
        applications.mkdir(parents=True)
        (applications / "browser.desktop").write_text(BROWSER.format(visited=visited))
        (self.desktop.home / ".config/mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/https=browser.desktop\n")
        return visited

    def test_the_about_pane_leads_to_the_makers_page(self):
        visited = self.install_browser()
        self.open_preferences()
        self.show_pane("About", "More from Orvane")
        told = subprocess.run([PROGRAM, "--version"], capture_output=True, check=True, text=True).stdout
        self.assertRegex(told, r"^Parklet \d+\.\d+")
        self.assertIsNotNone(self.app.find(told.strip(), "label"), "the version is the program's")
        self.app.click("More from Orvane")
        self.wait_for(visited.exists, "the browser opens")
        self.wait_for(lambda: "ref=parklet" in visited.read_text(), "it gets the maker's page")

    def select_pane(self, title, landmark, role):
        """Selects a row of the sidebar as a screen reader does, and returns a widget of the pane."""
        self.app.find(title, "list item").do("Toggle")
        return self.wait_for(lambda: self.app.find(landmark, role), f"the pane has {landmark!r}")

    def test_a_screen_reader_sets_something_in_every_pane(self):
        visited = self.install_browser()
        self.open_preferences()
        self.select_pane("General", "Show Dock icon", "check box").do("Toggle")
        self.wait_for_setting("showDockIcon", True)

        self.select_pane("Behavior", "Automatically show the drop window", "check box").do("Toggle")
        self.wait_for_setting("autoShowDropWindow", False)
        mode = self.labelled("The Parklet window in the following applications:", "combo box")
        mode.do("ShowMenu")
        self.wait_for(lambda: self.app.find("Show only in", "list item"), "the pop-up opens")
        self.hand.key("Down")
        self.hand.key("Return")
        self.wait_for_setting("excludeMode", 1)
        # The call returns while the open panel is visible.
        self.app.find("+", "push button").do("Press")
        self.wait_for(lambda: self.desktop.windows.find(title="Add application"), "the open panel comes up")
        self.wait_for(lambda: self.app.find("Cancel", "push button"), "it can be cancelled").do("Press")
        self.wait_for(lambda: not self.desktop.windows.find(title="Add application"), "the open panel closes")

        size = self.select_pane("Appearance", "Shelf item size", "slider")
        size.do("Increase")
        self.wait_for_setting("shelfItemSize", 73.0)
        size.value = 100.5
        self.wait_for_setting("shelfItemSize", 100.5)
        self.app.find("Tint intensity", "slider").value = 0.25
        self.wait_for_setting("tintIntensity", 0.25)
        self.app.find("Hide file extensions", "check box").do("Toggle")
        self.wait_for_setting("hideFileExtensions", True)

        self.select_pane("About", "More from Orvane", "push button").do("Press")
        self.wait_for(visited.exists, "the browser opens")
        self.select_pane("Welcome", "Lightweight drag & drop file shelf for macOS", "label")
        self.assertEqual(set(self.app.read_settings()),
                         {"hasShownUpdatePrompt", "showDockIcon", "autoShowDropWindow", "excludeMode", "shelfItemSize",
                          "tintIntensity", "hideFileExtensions"})

    def test_a_screen_reader_tells_every_control_from_the_others(self):
        self.open_preferences()
        for title, landmark in (("General", "Drag mode"), ("Behavior", "+"), ("Appearance", "File names"),
                                ("About", "More from Orvane")):
            self.select_pane(title, landmark, None)
            controls = [node for role in ("check box", "push button", "slider", "combo box")
                        for node in self.app.find("Parklet Preferences").find_all(role=role)]
            names = [" ".join(node.labels) if node.role == "combo box" else node.name for node in controls]
            self.assertEqual(len(names), {"General": 6, "Behavior": 6, "Appearance": 7, "About": 1}[title], names)
            self.assertTrue(all(names), names)
            self.assertEqual(len(set(names)), len(names), names)

    def test_everything_goes_by_keyboard(self):
        self.open_preferences()
        self.hand.key("Down")
        self.wait_for(lambda: self.app.find("Start at login"), "the arrow key shows the General pane")
        self.hand.key("Tab")
        self.hand.key("Tab")
        self.hand.key("space")
        self.wait_for_setting("showMenuBarIcon", False)
        self.hand.key("space")
        self.wait_for_setting("showMenuBarIcon", True)
        self.hand.key("Tab")
        self.hand.key("Tab")
        self.hand.key("Tab")
        self.hand.key("Down")
        self.wait_for_setting("dragMode", 1)
        self.hand.key("Escape")
        self.wait_for(lambda: not self.app.window("preferences"), "Escape closes the window")
        self.app.choose("Preferences…")
        self.wait_for(lambda: self.app.find("Start at login"), "it opens again with its pane")
        window = self.app.window("preferences")
        self.wait_for(lambda: self.desktop.windows.active() == window.id, "it has the focus")
        self.hand.key("w", "Control_L")
        self.wait_for(lambda: not self.app.window("preferences"), "Ctrl+W closes the window")

    def test_the_appearance_and_about_panes_go_by_keyboard(self):
        visited = self.install_browser()
        self.open_preferences()
        for _ in range(3):
            self.hand.key("Down")
        self.wait_for(lambda: self.app.find("Tint intensity", "slider"), "the arrow key shows the Appearance pane")
        self.hand.key("Tab")
        self.hand.key("Tab")
        self.hand.key("Right")
        self.wait_for_setting("tintIntensity", 0.41)
        self.hand.key("Tab", "Shift_L")
        self.hand.key("Tab", "Shift_L")
        self.hand.key("Down")
        self.wait_for(lambda: self.app.find("More from Orvane"), "the arrow key shows the About pane")
        self.hand.key("Tab")
        self.hand.key("space")
        self.wait_for(visited.exists, "the browser opens")

    def test_the_wheel_scrolls_the_pane_and_changes_no_control_under_it(self):
        self.open_preferences()
        self.show_pane("Appearance", "Shelf item size")
        window = self.app.window("preferences")
        self.desktop.windows.place(window, 100, 60, 600, 420)
        self.wait_for(lambda: self.desktop.windows.frame(window).height == 420, "the window becomes as small as it gets")
        slider = self.app.find("Shelf item size", "slider")
        before = slider.frame.y
        self.hand.click(*slider.center, button=5)
        self.wait_for(lambda: slider.frame.y < before, "the pane scrolls")
        stays(lambda: "shelfItemSize" not in self.app.read_settings(), "the wheel moved the slider", 0.5)

    def test_settings_edited_by_hand_show_when_their_pane_is_built_again(self):
        self.open_preferences(showDockIcon=False, dragMode=1)
        self.show_pane("General", "Show Dock icon")
        self.labelled("Drag mode", "combo box")
        self.app.write_settings({"showDockIcon": True, "dragMode": 2, "shelfItemSize": 5000, "hidden": "kept",
                                 "excludedBundleIDs": ["org.example.Gone"]})
        self.assertFalse(self.app.find("Show Dock icon", "check box").has_state("checked"))
        self.show_pane("Behavior", "org.example.Gone")
        self.show_pane("General", "Show Dock icon")
        self.assertTrue(self.app.find("Show Dock icon", "check box").has_state("checked"))
        self.assertEqual(self.labelled("Drag mode", "combo box").name, "Create alias")
        self.app.find("Remove items when dragged out", "check box").do("Toggle")
        self.wait_for_setting("removeItemsWhenDraggedOut", False)
        # An edit of the file at the same time is not lost.
        self.assertEqual(self.app.read_settings(),
                         {"showDockIcon": True, "dragMode": 2, "shelfItemSize": 5000, "hidden": "kept",
                          "excludedBundleIDs": ["org.example.Gone"], "removeItemsWhenDraggedOut": False})
        # The user can set the size from outside the range to the nearest end of the slider.
        self.show_pane("Appearance", "Shelf item size")
        slider = self.app.find("Shelf item size", "slider")
        self.assertEqual(slider.value, 120)
        slider.value = 120
        self.wait_for_setting("shelfItemSize", 120)

    def test_minimised_preferences_stay_where_they_are(self):
        self.open_preferences()
        box = self.select_pane("General", "Show Dock icon", "check box")
        box.do("Toggle")
        self.wait_for_setting("showDockIcon", True)
        window = self.app.window("preferences")
        self.wait_for(lambda: self.desktop.windows.active() == window.id, "a visible window is brought to the front")
        self.desktop.windows.minimise(window)
        self.wait_for(lambda: not self.app.window("preferences"), "the window is minimised")
        box.do("Toggle")
        self.wait_for_setting("showDockIcon", False)
        stays(lambda: not self.app.window("preferences"), "the window came back by itself", 0.5)
        self.app.choose("Preferences…")
        self.wait_for(lambda: self.app.window("preferences"), "the window comes back when it is asked for")

    def test_a_list_of_5000_applications_scrolls_at_once(self):
        self.open_preferences(excludedBundleIDs=[f"org.example.App{number}" for number in range(5000)])
        # The test does not search in the rows, because a screen reader that asks for each row makes the program look up
        # all of them.
        self.show_pane("Behavior", "Automatically show the drop window")
        self.hand.click(*self.app.find("The Parklet window in the following applications:", "list").center)
        for key in ("End", "Tab", "Tab", "space"):
            self.hand.key(key)
        self.wait_for(lambda: len(self.app.read_settings()["excludedBundleIDs"]) == 4999, "the last one is removed")
        self.assertEqual(self.app.read_settings()["excludedBundleIDs"][-1], "org.example.App4998")

    def test_a_settings_file_that_cannot_be_written_does_no_harm(self):
        self.open_preferences(dragMode="nonsense", shelfItemSize=9000)
        folder = self.app.settings_file.parent
        stored = self.app.settings_file.read_bytes()
        folder.chmod(0o500)
        self.addCleanup(folder.chmod, 0o700)
        self.show_pane("General", "Show Dock icon")
        self.hand.click(*self.app.find("Show Dock icon", "check box").center)
        self.wait_for(lambda: self.app.find("Show Dock icon", "check box").has_state("checked"), "the box is ticked")
        self.show_pane("Welcome", "Parklet")
        self.show_pane("General", "Show Dock icon")
        self.assertFalse(self.app.find("Show Dock icon", "check box").has_state("checked"))
        self.assertEqual(self.app.settings_file.read_bytes(), stored)
        self.assertTrue(self.app.runs())
