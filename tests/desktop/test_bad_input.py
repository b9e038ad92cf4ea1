# SPDX-License-Identifier: MIT
"""The shelf shows files with odd names and contents, does not change them, and continues to work."""
import os
import pathlib
import stat
import struct
import zlib

from support.case import DesktopTest
from support.filemanagers import Thunar
from support.parklet import uri_of

ODD_NAMES = ["two words.txt", "line\nbreak.txt", "quote's \"end\".txt", "\N{ROCKET} rocket.txt", "שלום עולם.txt",
             "percent%20sign.txt", "#hash?query.txt", b"no-utf8-\xff\xfe.txt"]


def png_claiming(width, height):
    """Returns the first bytes of a PNG that claims this size."""
    header = b"IHDR" + struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + struct.pack(">I", 13) + header + struct.pack(">I", zlib.crc32(header))


class BadInputTest(DesktopTest):
    def test_odd_names_go_in_and_out_unchanged(self):
        paths = [self.file(name, os.fsencode(name)) for name in ODD_NAMES]
        app = self.parklet()
        target = self.folder("target")
        window = Thunar(self.desktop).open(target).place(20, 60, 560, 300)
        app.hold(*paths)
        # Bytes that are not text are shown as replacement characters.
        self.assertEqual(app.names(), [os.fsencode(name).decode(errors="replace") for name in ODD_NAMES])
        app.click("Select all")
        frame = app.tiles()[0].frame
        self.hand.drag((frame.x + frame.width // 2, frame.y + 30), window.empty_place())
        for path in paths:
            copy = target / path.name
            self.wait_for(copy.exists, f"{path.name!r} lands in the other folder")
            self.wait_for(lambda: copy.read_bytes() == os.fsencode(path.name), f"{path.name!r} is whole")
        self.wait_for(lambda: app.tiles() == [], "the files have left the shelf")

    def test_odd_files_are_shown_and_left_as_they_are(self):
        things = self.file("plain.txt").parent
        picture = self.file("good.png")
        self.desktop.run("convert", "-size", "300x200", "gradient:orange-teal", picture)
        photo = self.file("whole.jpg")
        self.desktop.run("convert", picture, photo)
        self.file("truncated.jpg", photo.read_bytes()[:900])
        self.file("empty.png", b"")
        self.file("claims.png", png_claiming(60000, 60000))
        (things / "folder").mkdir()
        (things / "nowhere").symlink_to(things / "gone")
        os.mkfifo(things / "fifo")
        self.file("secret.txt").chmod(0)
        paths = sorted(things.iterdir()) + [pathlib.Path("/dev/zero"), pathlib.Path("/dev/full")]
        before = {path: self.look_at(path) for path in paths}

        app = self.parklet()
        app.hold(*paths)
        self.assertEqual(app.names(), [path.name for path in paths])
        self.wait_for_pictures(app)
        self.assertEqual({path: self.look_at(path) for path in paths}, before)

    def test_files_may_go_while_they_are_on_the_shelf(self):
        deleted, renamed, locked, kept = self.files(4)
        app = self.parklet()
        app.hold(deleted, renamed, locked, kept)
        deleted.unlink()
        renamed.rename(renamed.with_name("other name.txt"))
        locked.chmod(0)
        target = self.folder("target")
        window = Thunar(self.desktop).open(target).place(20, 60, 560, 300)
        self.hand.drag(app.grip(kept.name), window.empty_place())
        self.wait_for((target / kept.name).exists, "the file that is left can be dragged out")
        for name in (deleted.name, renamed.name, locked.name):
            self.hand.move_to(*app.grip(name))
            self.hand.click(*app.tile(name).find("Remove", showing=False).center)
            self.wait_for(lambda: name not in app.names(), "the item has left the shelf")
        self.wait_for(app.hidden, "the emptied shelf hides")

    def test_a_drop_of_ten_thousand_addresses_fills_the_shelf(self):
        folder = self.folder("many")
        self.drop([uri_of(folder / f"{number:05}.txt") for number in range(10_000)])
        self.wait_for(lambda: len(self.app.tiles()) == 50, "fifty files are on the shelf")
        self.assertEqual(self.app.names()[0], "00000.txt")
        self.app.click("Clear all")
        self.app.click("Clear All")
        self.wait_for(self.app.hidden, "the emptied shelf hides")

    def test_a_drop_of_web_and_file_addresses_is_refused(self):
        self.drop([uri_of(self.file("file.txt")), "https://example.org/page"], taken=False)
        self.assert_takes_a_file()

    def drop(self, addresses, taken=True):
        """Shows the shelf and drops these addresses onto it, once it accepts them."""
        listing = self.desktop.folder / "addresses"
        listing.write_text("\n".join(addresses))
        self.desktop.start("drag-source", "/usr/bin/python3",
                           pathlib.Path(__file__).parent / "support/drag_source.py", listing)
        window = self.wait_for(lambda: next(iter(self.desktop.windows.find(title="drag source")), None),
                               "the source of the drag comes up")
        frame = self.desktop.windows.frame(window)
        self.parklet().show()
        self.hand.drag((frame.x + 60, frame.y + 60), self.app.center(), taken=taken)

    def assert_takes_a_file(self):
        self.app.hold(self.file("next.txt"))
        self.assertEqual(self.app.names(), ["next.txt"])

    def look_at(self, path):
        """Returns everything that could have changed in a file."""
        status = os.lstat(path)
        content = path.read_bytes() if stat.S_ISREG(status.st_mode) and status.st_mode & 0o400 else None
        return status.st_mode, status.st_size, status.st_mtime_ns, status.st_ino, content

    def wait_for_pictures(self, app):
        """Every tile shows something: a picture of the file, or its icon."""
        for tile in app.tiles():
            frame = tile.frame
            if frame.y + 60 < self.desktop.height:
                self.wait_for(lambda: self.has_picture(frame), f"{tile.name} has a picture")

    def has_picture(self, frame):
        colors = {self.desktop.windows.pixel(frame.x + x, frame.y + y)
                  for x in range(8, frame.width - 8, 6) for y in range(8, 72, 6)}
        return len(colors) > 3
