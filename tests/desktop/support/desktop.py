# SPDX-License-Identifier: MIT
"""A virtual desktop: X server, window manager, compositor, panel with a tray, session bus, and its own folders."""
import os
import pathlib
import shutil
import socket as sockets
import subprocess
import sys
import tempfile

from Xlib import display as xdisplay
from Xlib import error

from .accessibility import Accessibility
from .hand import Hand
from .processes import Processes
from .waiting import wait_for
from .windows import Windows

# The environment variables that a desktop inherits.
INHERITED = ("PATH", "TMPDIR", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS")

# The services that programs of a test desktop may start over the bus, with the files that define them. Other installed
# services must not affect a test.
SERVICES = {"org.a11y.Bus": "org.a11y.Bus", "org.xfce.Xfconf": "org.xfce.Xfconf",
            "org.xfce.Tumbler.Cache1": "org.freedesktop.thumbnails.Cache1",
            "org.xfce.Tumbler.Manager1": "org.freedesktop.thumbnails.Manager1",
            "org.xfce.Tumbler.Thumbnailer1": "org.freedesktop.thumbnails.Thumbnailer1"}
INSTALLED_SERVICES = pathlib.Path("/usr/share/dbus-1/services")
BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <keep_umask/>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <servicedir>{own_services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""
GTK3_SETTINGS = """[Settings]
gtk-theme-name=Adwaita
gtk-icon-theme-name=Adwaita
gtk-font-name=Inter 10
gtk-enable-animations=0
gtk-recent-files-enabled=0
"""
# All programs that ask for a sans serif font get the same one.
FONTS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
</fontconfig>
"""
GTK2_SETTINGS = """gtk-icon-theme-name = "Adwaita"
gtk-font-name = "Inter 10"
"""
TINT2_SETTINGS = """rounded = {rounded}
border_width = 0
background_color = #101418 {opacity}
border_color = #000000 0
panel_items = {items}
panel_position = {position}
panel_size = {size}
panel_margin = {margin}
panel_padding = 8 2 8
panel_background_id = 1
strut_policy = {strut}
panel_layer = bottom
systray_padding = 4 4 6
systray_background_id = 0
systray_icon_size = 20
systray_monitor = 1
time1_format = %H:%M
time1_font = Inter Medium 10
clock_font_color = #ffffff 90
clock_padding = 8 0
task_text = 1
task_icon = 1
task_centered = 0
task_font = Inter 10
task_font_color = #ffffff 90
task_padding = 8 6 8
task_maximum_size = 180 34
taskbar_padding = 4 0 4
"""


def listens(path):
    """Whether a server accepts connections there. The file of a socket exists a moment earlier."""
    with sockets.socket(sockets.AF_UNIX) as attempt:
        return attempt.connect_ex(os.fspath(path)) == 0


class Desktop:
    """`Desktop(...)` starts everything and waits until it is ready; close() ends everything.

    panel: "tray" is a small panel in the top left corner that reserves no space; "bar" is a bar with a clock along the
    bottom, which reserves its space; None is no panel. decorate: a function that is called with this desktop before it
    shows anything, and returns the picture of its wallpaper.
    """

    def __init__(self, width=1280, height=800, depth=24, dpi=96, window_manager=True, compositor=True, panel="tray",
                 decorate=None):
        self.width, self.height = width, height
        self.make_folders()
        try:
            self.start_server(depth, dpi)
            self.start_bus()
            wallpaper = decorate(self) if decorate else None
            if window_manager:
                self.start_window_manager()
            self.paint(wallpaper)
            if compositor:
                self.start_compositor()
            if panel:
                self.start_panel(panel)
        except BaseException:
            for log in sorted(self.logs.iterdir()):
                print(f"--- {log.name}", log.read_text(errors="replace"), sep="\n", file=sys.stderr)
            self.close()
            raise

    def make_folders(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="parklet-desktop."))
        self.logs = self.folder / "logs"
        self.logs.mkdir()
        self.home = self.folder / "home"
        self.services = self.home / ".local/share/dbus-1/services"  # a test adds its own services here
        self.environment = self.make_environment()
        self.processes = Processes(self.environment, self.logs)
        self.x = self.hand = None

    def make_environment(self):
        home = self.home
        environment = {name: os.environ[name] for name in INHERITED if name in os.environ}
        environment |= {
            "HOME": str(home), "USER": "parklet", "LOGNAME": "parklet", "SHELL": "/bin/sh", "LC_ALL": "C.UTF-8",
            "XDG_CONFIG_HOME": str(home / ".config"), "XDG_CACHE_HOME": str(home / ".cache"),
            "XDG_DATA_HOME": str(home / ".local/share"), "XDG_STATE_HOME": str(home / ".local/state"),
            "XDG_RUNTIME_DIR": str(self.folder / "run"), "XDG_SESSION_TYPE": "x11",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder / 'no-system-bus'}",
            "GIO_USE_VFS": "local", "GSETTINGS_BACKEND": "memory", "GTK_MODULES": "gail:atk-bridge",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "GTK_OVERLAY_SCROLLING": "0",
            "XCURSOR_THEME": "Adwaita", "XCURSOR_SIZE": "24",
        }
        for name in ("XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"):
            pathlib.Path(environment[name]).mkdir(parents=True, mode=0o700)
        (home / "Desktop").mkdir()
        (home / ".config/gtk-3.0").mkdir()
        (home / ".config/gtk-3.0/settings.ini").write_text(GTK3_SETTINGS)
        (home / ".config/fontconfig").mkdir()
        (home / ".config/fontconfig/fonts.conf").write_text(FONTS)
        (home / ".gtkrc-2.0").write_text(GTK2_SETTINGS)
        return environment

    def start(self, name, *command, **options):
        return self.processes.start(name, *map(os.fspath, command), **options)

    def run(self, *command):
        """Runs a program in this desktop's environment until its end, and returns its output."""
        return subprocess.run(list(map(os.fspath, command)), env=self.environment, cwd=self.home, check=True, text=True,
                              stdin=subprocess.DEVNULL, capture_output=True).stdout

    def start_server(self, depth, dpi):
        reader, writer = os.pipe()
        # A busy machine may be late with the release of a key, so no key repeats (-r).
        server = self.start("xvfb", "Xvfb", "-displayfd", str(writer), "-screen", "0",
                            f"{self.width}x{self.height}x{depth}", "-dpi", str(dpi), "-nolisten", "tcp", "-noreset",
                            "-ac", "-r", pass_fds=(writer,))
        os.close(writer)
        with os.fdopen(reader) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError(f"the X server did not start: exit code {server.wait()}")
        self.environment["DISPLAY"] = f":{number}"
        self.x = xdisplay.Display(f":{number}")
        self.windows = Windows(self.x)
        self.hand = Hand(self.x)

    def start_bus(self):
        socket, settings, services = (self.folder / name for name in ("run/bus", "bus.conf", "services"))
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={socket}"
        services.mkdir()
        for name in SERVICES:
            shutil.copy(INSTALLED_SERVICES / f"{name}.service", services)
        settings.write_text(BUS.format(socket=socket, services=services, own_services=self.services))
        self.start("dbus", "dbus-daemon", f"--config-file={settings}", "--nofork", "--nopidfile", "--nosyslog")
        wait_for(lambda: listens(socket), "the session bus starts")
        self.accessibility = Accessibility(self.environment["DBUS_SESSION_BUS_ADDRESS"])

    def start_window_manager(self):
        self.manager = self.start("openbox", "openbox", "--sm-disable")
        wait_for(self.windows.manager_runs, "the window manager starts")

    def restart_window_manager(self):
        self.processes.end(self.manager)
        wait_for(lambda: not self.windows.manager_runs(), "the window manager ends")
        self.start_window_manager()

    def start_compositor(self):
        settings = self.folder / "picom.conf"
        settings.write_text('backend = "xrender";\nvsync = false;\nshadow = true;\nshadow-radius = 14;\n'
                            'shadow-opacity = 0.45;\nshadow-offset-x = -14;\nshadow-offset-y = -10;\n'
                            'shadow-exclude = ["window_type = \'dnd\'", "_GTK_FRAME_EXTENTS@:c", "class_g = \'tint2\'",'
                            ' "class_g = \'Parklet\'"];\nfading = false;\n')
        self.start("picom", "picom", "--config", settings)
        wait_for(self.windows.compositor_runs, "the compositor starts")

    def start_panel(self, kind):
        bar = kind == "bar"
        settings = self.folder / "tint2rc"
        settings.write_text(TINT2_SETTINGS.format(
            items="TSC" if bar else "S", position="bottom center horizontal" if bar else "top left horizontal",
            size="100% 34" if bar else "60 30", margin="0 0", strut="follow_size" if bar else "none",
            rounded=0, opacity=78 if bar else 100))
        self.panel = self.start("tint2", "tint2", "-c", settings)
        wait_for(self.windows.tray_runs, "the tray starts")

    def paint(self, wallpaper):
        how = ("-cover", wallpaper) if wallpaper else ("-solid", "#38567a")
        self.run("hsetroot", *how)

    def resize(self, width, height):
        """Changes the size of the screen, as when a user turns it or unplugs a monitor."""
        mode = f"{width} by {height}"
        self.run("xrandr", "--newmode", mode, "0", *[str(width)] * 4, *[str(height)] * 4)
        self.run("xrandr", "--addmode", "screen", mode)
        self.run("xrandr", "--output", "screen", "--mode", mode)
        self.width, self.height = width, height

    def split(self, x):
        """Splits the screen into two monitors side by side, with the border at x."""
        for name, left, width, output in (("left", 0, x, "screen"), ("right", x, self.width - x, "none")):
            self.run("xrandr", "--setmonitor", name, f"{width}/150x{self.height}/200+{left}+0", output)

    def join(self):
        """Undoes split()."""
        for name in ("left", "right"):
            self.run("xrandr", "--delmonitor", name)

    def screenshot(self, path):
        """Writes a picture of the screen and the pointer, as PNG."""
        cursor = self.windows.cursor()
        self.run("import", "-silent", "-window", "root", path)
        self.draw_cursor(cursor, path)

    def moment(self):
        """Records the screen now. write_moment() can write it as a picture later."""
        return self.windows.look((0, 0, self.width, self.height)), self.windows.cursor()

    def write_moment(self, moment, path):
        pixels, cursor = moment
        raw = self.folder / "screen.bgra"
        raw.write_bytes(pixels)
        self.run("convert", "-size", f"{self.width}x{self.height}", "-depth", "8", f"bgra:{raw}", "-alpha", "off", path)
        self.draw_cursor(cursor, path)

    def draw_cursor(self, cursor, path):
        pixels = self.folder / "cursor.rgba"
        pixels.write_bytes(cursor.pixels)
        self.run("convert", path, "-size", f"{cursor.width}x{cursor.height}", "-depth", "8", f"rgba:{pixels}",
                 "-geometry", f"{cursor.x:+}{cursor.y:+}", "-composite", path)

    def keep_evidence(self, folder):
        """Copies the logs and a picture of the screen to a folder, to examine a failed test."""
        folder.mkdir(parents=True, exist_ok=True)
        shutil.copytree(self.logs, folder, dirs_exist_ok=True)
        try:
            self.screenshot(folder / "screen.png")
        except (OSError, subprocess.CalledProcessError, error.ConnectionClosedError) as fault:
            (folder / "screen.log").write_text(f"there is no picture of the screen: {fault}\n")

    def close(self):
        if self.hand:
            self.hand.close()
        if self.x:
            self.x.close()
        self.processes.end_all()
        shutil.rmtree(self.folder, ignore_errors=True)
