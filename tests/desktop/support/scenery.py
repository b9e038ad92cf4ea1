# SPDX-License-Identifier: MIT
"""The look of the demo's desktop: a wallpaper, window frames, and files to drag."""
import pathlib
import subprocess

WALLPAPER = ("-size", "1280x800", "xc:black", "-sparse-color", "Shepards",
             "0,0,#26385f 1280,0,#5c4a86 0,800,#1f6d7a 1280,800,#d98a72 640,360,#4d6aa3", "-blur", "0x40")

FRAMES = """window.active.title.bg: flat solid
window.active.title.bg.color: #ebeef2
window.inactive.title.bg: flat solid
window.inactive.title.bg.color: #f4f5f7
window.active.label.bg: parentrelative
window.inactive.label.bg: parentrelative
window.active.label.text.color: #2b3440
window.inactive.label.text.color: #8b95a1
window.active.button.*.bg: parentrelative
window.inactive.button.*.bg: parentrelative
window.active.button.*.image.color: #5b6673
window.inactive.button.*.image.color: #b3bac3
window.active.border.color: #c3cad3
window.inactive.border.color: #d5dae0
window.active.client.color: #ebeef2
window.inactive.client.color: #f4f5f7
window.handle.width: 0
window.client.padding.width: 0
border.width: 1
padding.width: 8
padding.height: 6
window.label.text.justify: center
"""


def decorate(desktop):
    """Sets a desktop's wallpaper and window frames before its window manager starts."""
    frames = desktop.home / ".local/share/themes/Parklet/openbox-3/themerc"
    frames.parent.mkdir(parents=True)
    frames.write_text(FRAMES)
    settings = pathlib.Path("/etc/xdg/openbox/rc.xml").read_text()
    settings = settings.replace("<name>Clearlooks</name>", "<name>Parklet</name>")
    settings = settings.replace("<name>sans</name>", "<name>Inter</name>").replace("<size>8</size>", "<size>10</size>")
    settings = settings.replace("<titleLayout>NLIMC</titleLayout>", "<titleLayout>LIMC</titleLayout>")
    target = desktop.home / ".config/openbox/rc.xml"
    target.parent.mkdir(parents=True)
    target.write_text(settings)
    picture = desktop.folder / "wallpaper.png"
    desktop.run("convert", *WALLPAPER, picture)
    return picture


def fill(home):
    """Makes the two folders of the demo: one with a text, an image and a folder, and an empty one."""
    source, target = home / "Holiday", home / "Backup"
    (source / "Recipes").mkdir(parents=True)
    target.mkdir()
    (source / "Recipes/Soup.txt").write_text("Water, salt, patience.\n")
    (source / "Letter.txt").write_text("Dear all,\n\nthe weather is fine and the mountains are high.\n")
    paint_mountains(source / "Mountains.jpg")
    return source, target


def paint_mountains(path):
    """Paints a landscape of five polygons."""
    subprocess.run(["convert", "-size", "1600x1200", "gradient:#f7c59f-#9fd3f0", "-flip",
                    "-fill", "#fff3d6", "-draw", "circle 1150,360 1150,470",
                    "-fill", "#7d93b8", "-draw", "polygon 0,820 380,380 700,760 980,470 1600,900 1600,1200 0,1200",
                    "-fill", "#4c6a92", "-draw", "polygon 0,980 300,700 640,960 1060,640 1600,1010 1600,1200 0,1200",
                    "-fill", "#2f4a63", "-draw", "polygon 0,1090 520,880 900,1060 1300,900 1600,1080 1600,1200 0,1200",
                    path], check=True)
