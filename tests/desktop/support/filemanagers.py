# SPDX-License-Identifier: MIT
"""Three real file managers: how to set up and start each one, and where it shows a file."""
from .waiting import wait_for
from .windows import Frame

BUTTON_OF_FILE = 12  # pixels from the left of a name; this point is on the button for certain


class FolderWindow:
    """A window of a file manager that shows one folder."""

    def __init__(self, manager, folder, window):
        self.manager, self.folder, self.window = manager, folder, window
        self.desktop = manager.desktop

    def place(self, x, y, width, height):
        self.desktop.windows.place(self.window, x, y, width, height)
        wait_for(lambda: self.frame() == Frame(x, y, width, height), f"{self.manager.instance} takes its place")
        return self

    def frame(self):
        return self.desktop.windows.frame(self.window)

    def root(self):
        """Returns the window's widgets. A file manager may have several windows, told apart by their titles."""
        title = self.desktop.windows.title(self.window)
        application = self.desktop.accessibility.application(self.pid())
        return application and next((node for node in application.children if node.name == title), None)

    def pid(self):
        """Returns the process that owns the window, which may be another one than the started process."""
        return self.desktop.windows.numbers(self.window, "_NET_WM_PID")[0]

    def view(self):
        return wait_for(lambda: (root := self.root()) and self.manager.view_in(root), "the folder is shown")

    def item(self, name):
        """Returns the position of a file's icon or name."""
        return wait_for(lambda: self.manager.place_of(self, name), f"{self.manager.instance} shows {name!r}")

    def empty_place(self):
        """Returns a position in the view without a file. A file that is dropped there goes into the folder."""
        frame = self.view().frame
        return frame.x + frame.width - 40, frame.y + frame.height - 30

    def middle(self):
        """Returns the middle of the view, where no file is while the folder is empty."""
        frame = self.view().frame
        return frame.x + frame.width // 2, frame.y + frame.height // 2

    def select_all(self):
        self.desktop.hand.click(*self.empty_place())
        self.desktop.hand.key("a", "Control_L")


class FileManager:
    """One program; open() starts it, and shows further folders in further windows."""

    instance = None
    command = None

    def __init__(self, desktop):
        self.desktop = desktop
        self.configure(desktop.home / ".config")

    def configure(self, config):
        pass

    def open(self, folder):
        before = {window.id for window in self.windows(folder)}
        self.desktop.start(self.instance, *self.command, folder)
        window = wait_for(lambda: next((each for each in self.windows(folder) if each.id not in before), None),
                          f"{self.instance} opens {folder.name}")
        shown = FolderWindow(self, folder, window)
        shown.view()
        return shown

    def windows(self, folder):
        return self.desktop.windows.find(instance=self.instance, title=folder.name)

    def agree(self):
        """Answers the question that the file manager may ask after a drop."""

    def view_in(self, root):
        raise NotImplementedError

    def place_of(self, window, name):
        raise NotImplementedError


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)


class Thunar(FileManager):
    """Thunar uses GTK 3. Its icon view is not accessible, so tests use the list; `icons` is for pictures."""

    instance = "thunar"
    command = ("thunar",)
    selection_color = (53, 132, 228)

    def __init__(self, desktop, icons=False):
        self.icons = icons
        super().__init__(desktop)

    def configure(self, config):
        view = "ThunarIconView" if self.icons else "ThunarDetailsView"
        write(config / "xfce4/xfconf/xfce-perchannel-xml/thunar.xml",
              '<?xml version="1.0" encoding="UTF-8"?>\n<channel name="thunar" version="1.0">\n'
              f'<property name="last-view" type="string" value="{view}"/>\n'
              '<property name="last-side-pane" type="string" value="void"/>\n'
              '<property name="last-menubar-visible" type="bool" value="false"/>\n'
              '<property name="last-statusbar-visible" type="bool" value="false"/>\n'
              '<property name="last-location-bar" type="string" value="ThunarLocationButtons"/>\n'
              '<property name="last-icon-view-zoom-level" type="string" value="THUNAR_ZOOM_LEVEL_100_PERCENT"/>\n'
              '<property name="misc-thumbnail-mode" type="string" value="THUNAR_THUMBNAIL_MODE_ALWAYS"/>\n'
              '<property name="misc-single-click" type="bool" value="false"/>\n'
              '</channel>\n')

    def view_in(self, root):
        pane = root.find(role="directory pane")
        if pane is None or self.icons:
            return pane
        return pane.find(role="table") or pane.find(role="tree table")

    def place_of(self, window, name):
        if self.icons:
            return self.place_of_icon(window, name)
        cell = window.view().find(name, role="table cell")
        return cell and (cell.frame.x + BUTTON_OF_FILE, cell.center[1])

    def place_of_icon(self, window, name):
        """Selects the file by typing its name, and searches for the colour of the selection."""
        desktop = self.desktop
        desktop.hand.click(*window.empty_place())
        frame = window.view().frame
        before = desktop.windows.look(frame)
        for letter in name[:3].lower():
            desktop.hand.key(letter)
        label = wait_for(lambda: desktop.windows.turned(frame, before, self.selection_color), f"{name} is selected")
        desktop.hand.key("Escape")
        return label.x + label.width // 2, label.y - 20


class PCManFM(FileManager):
    """PCManFM uses GTK 2. Its icons have no accessible names, but a fixed order: folders first, then by name."""

    instance = "pcmanfm"
    command = ("pcmanfm", "--new-win")

    def configure(self, config):
        write(config / "pcmanfm/default/pcmanfm.conf",
              "[config]\nbm_open_method=0\n[ui]\nside_pane_mode=hidden;places\nshow_statusbar=0\nview_mode=icon\n"
              "sort=name;ascending;\n")

    def view_in(self, root):
        return root.find(role="layered pane")

    def place_of(self, window, name):
        shown = sorted((path for path in window.folder.iterdir() if not path.name.startswith(".")),
                       key=lambda path: (not path.is_dir(), path.name.casefold()))
        icons = sorted((node.frame for node in window.view().children if node.role == "icon"),
                       key=lambda frame: (frame.y, frame.x))
        names = [path.name for path in shown]
        if name not in names or len(icons) != len(names):
            return None
        frame = icons[names.index(name)]
        return frame.x + frame.width // 2, frame.y + 24


class PCManFMDesktop:
    """The desktop with icons that PCManFM draws behind all windows."""

    def __init__(self, desktop):
        self.desktop = desktop
        write(desktop.home / ".config/pcmanfm/default/desktop-items-0.conf", "[*]\nwallpaper_mode=color\ndesktop_bg=#38567a\n")
        desktop.start("pcmanfm-desktop", "pcmanfm", "--desktop")
        kind = desktop.windows.atom("_NET_WM_WINDOW_TYPE_DESKTOP")
        wait_for(lambda: any(kind in desktop.windows.numbers(window, "_NET_WM_WINDOW_TYPE")
                             for window in desktop.windows.find(instance="pcmanfm")), "PCManFM draws the desktop")

    def empty_place(self):
        return self.desktop.width // 2 + 160, self.desktop.height - 120


class PCManFMQt(FileManager):
    """Qt 5."""

    instance = "pcmanfm-qt"
    command = ("pcmanfm-qt", "--new-window")

    def configure(self, config):
        write(config / "pcmanfm-qt/default/settings.conf",
              "[System]\nFallbackIconThemeName=Adwaita\n[Window]\nSidePaneVisible=false\nShowMenuBar=false\n"
              "[FolderView]\nMode=icon\nSortColumn=name\nSortFolderFirst=true\n")

    def agree(self):
        wait_for(lambda: self.desktop.windows.find(instance=self.instance, title=self.instance), "a menu opens")
        menu = self.desktop.accessibility.menu(self.desktop.hand)
        self.desktop.hand.click(*menu.find("Copy here").center)

    def view_in(self, root):
        pane = root.find(role="layered pane")
        return pane and pane.find(role="list")

    def place_of(self, window, name):
        item = window.view().find(name, role="list item")
        return item and item.center


ALL = (Thunar, PCManFM, PCManFMQt)
