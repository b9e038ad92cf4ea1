#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Plays one drag and a screenshot on a virtual desktop, with real input: demo.py FOLDER_FOR_PICTURES"""
import os
import pathlib
import sys
import traceback

from support import scenery
from support.desktop import Desktop
from support.filemanagers import Thunar
from support.parklet import SETTLED, Parklet
from support.waiting import wait_for

STEPS = 5  # of a fade, after which it is about half done
FILES = ["Letter.txt", "Mountains.jpg", "Recipes"]


class Demo:
    def __init__(self, pictures):
        self.pictures = pictures
        self.number = 0
        self.desktop = Desktop(panel="bar", decorate=scenery.decorate)
        self.hand = self.desktop.hand

    def done(self, what, picture, moment=None):
        """Records a step: prints a line, and writes a picture of the present or an earlier moment."""
        self.number += 1
        path = self.pictures / f"{self.number:02}-{picture}.png"
        if moment:
            self.desktop.write_moment(moment, path)
        else:
            self.desktop.screenshot(path)
        print(f"{self.number:2}  {what:58} {os.path.relpath(path)}", flush=True)

    def fail(self, fault):
        """Reports the failure, and copies the logs of all programs of the desktop to the folder."""
        logs = self.pictures / "logs"
        self.desktop.keep_evidence(logs)
        if not isinstance(fault, AssertionError):
            (logs / "demo.log").write_text("".join(traceback.format_exception(fault)))
        print(f"    After step {self.number} this did not happen: {fault}\n"
              f"    What the screen showed then:  {os.path.relpath(logs / 'screen.png')}\n"
              f"    What Parklet has printed:     {os.path.relpath(logs / 'parklet.log')}\n"
              f"    What the others have:         {os.path.relpath(logs)}/*.log", file=sys.stderr, flush=True)

    def play(self):
        source, target = scenery.fill(self.desktop.home)
        thunar = Thunar(self.desktop, icons=True)
        from_window = thunar.open(source).place(90, 96, 560, 300)
        to_window = thunar.open(target).place(420, 440, 560, 270)
        self.app = Parklet(self.desktop).start()
        self.done("Parklet waits in the tray", "desktop")
        self.play_by_hand(source, target, from_window, to_window)
        self.play_by_itself(target, from_window, to_window)
        self.play_near_the_pointer(from_window)
        self.play_screenshot()

    def play_by_hand(self, source, target, from_window, to_window):
        self.app.open_menu()
        self.done("A click on its icon opens the menu", "menu")

        self.hand.key("Escape")
        wait_for(lambda: not self.app.menu_window(), "the menu closes")
        self.app.show()
        self.done("\"Show Shelf\" brings the shelf", "shelf")

        start = from_window.item(FILES[0])
        from_window.select_all()
        self.hand.pick_up(*start)
        x, y = self.app.center()
        self.hand.carry_to(x - 30, y - 30)
        self.done("Three files are dragged over it", "drag-in")

        self.hand.release()
        wait_for(lambda: sorted(self.app.names()) == FILES, "the shelf holds the three files")
        self.hand.move_to(640, 420)
        self.settle()
        self.done("Dropped, they stay: a text, an image and a folder", "dropped")

        self.hand.move_to(*self.app.grip(FILES[1]))
        wait_for(lambda: self.app.tile(FILES[1]).find("Remove"), "the remove button shows")
        self.settle()
        self.done("Under the pointer a tile offers to be removed", "hover")

        self.app.click("Select all")
        self.hand.move_to(640, 420)
        self.settle()
        self.done("One click selects them all", "selected")

        self.hand.pick_up(*self.app.grip(FILES[1]))
        self.hand.carry_to(*to_window.middle())
        self.done("One drag takes them all to another folder", "drag-out")

        self.hand.release()
        for name in FILES:
            wait_for((target / name).exists, f"{name} lands in the other folder")
        wait_for(self.app.hidden, "the emptied shelf hides")
        self.settle()
        self.done("They are there, the shelf has gone, the originals stay", "landed")
        for name in FILES:
            if not (source / name).exists():
                raise AssertionError(f"{name} has left its folder")

    def play_by_itself(self, target, from_window, to_window):
        letter = FILES[0]
        (target / letter).unlink()
        self.pick_up(from_window, letter)
        self.done("A drag begins in another program, and the shelf comes", "drag-begins")

        self.hand.carry_to(*self.app.center())
        self.hand.release()
        wait_for(lambda: self.app.names() == [letter], "the shelf holds the letter")
        self.settle()
        self.done("Dropped and let go, the letter waits on the shelf", "kept")

        tile = self.app.tile(letter).frame
        self.hand.pick_up(*self.app.grip(letter))
        self.hand.carry_to(*to_window.middle())
        self.done("Later it is dragged out to another folder", "drag-on")

        shelf = self.app.frame()
        tile_fades = self.fading(tile, self.hand.release)
        wait_for(lambda: not self.app.tiles(), "the tile has gone")
        shelf_hides = self.fading(shelf)
        wait_for((target / letter).exists, "the letter lands in the other folder")
        wait_for(self.app.hidden, "the emptied shelf hides")
        self.done("Where it was dropped it is, and its tile fades", "tile-fades", tile_fades)
        self.done("The empty shelf fades away", "shelf-hides", shelf_hides)

        self.pick_up(from_window, letter)
        self.hand.carry_to(760, 260)
        self.hand.release()
        wait_for(self.app.hidden, "the shelf that was not wanted goes")
        self.settle()
        self.done("Brought by a drag and not wanted, the shelf goes again", "gone")

    def play_near_the_pointer(self, from_window):
        self.app.write_settings({**SETTLED, "autoShowTrigger": 1})
        self.pick_up(from_window, FILES[1])
        zone = wait_for(lambda: self.app.window("cursor-shelf"), "the drop zone comes up")
        self.app.opaque(zone)
        self.done("If wanted, a small drop zone comes beside the pointer", "near-cursor")

        frame = self.desktop.windows.frame(zone)
        self.hand.carry_to(frame.x + frame.width // 2, frame.y + frame.height // 2)
        self.hand.release()
        wait_for(lambda: self.app.names() == [FILES[1]], "the shelf holds the picture")
        wait_for(lambda: not self.app.window("cursor-shelf"), "the drop zone goes")
        self.settle()
        self.done("What is dropped there is on the shelf", "from-cursor")

        self.app.click("Clear all")
        wait_for(self.app.hidden, "the emptied shelf hides")

    def pick_up(self, window, name):
        """Drags a file until the shelf shows."""
        self.hand.click(*window.empty_place())
        self.hand.pick_up(*window.item(name))

        def shown():
            self.hand.nudge(4, 2)
            self.hand.nudge(-4, -2)
            return self.app.window()

        self.app.opaque(wait_for(shown, "the shelf comes while a file is dragged"))

    def fading(self, frame, act=lambda: None):
        """Calls `act`, and returns a picture taken in the middle of the fade that follows in that part of the
        screen."""
        looks = [self.desktop.windows.look(frame)]
        act()

        def half_gone():
            look = self.desktop.windows.look(frame)
            if look != looks[-1]:
                looks.append(look)
            return len(looks) > STEPS

        wait_for(half_gone, "something fades", pause=0)
        return self.desktop.moment()

    def play_screenshot(self):
        self.hand.move_to(640, 420)
        self.desktop.run("scrot", self.desktop.home / "Desktop/Screenshot.png")
        wait_for(lambda: self.app.names() == ["Screenshot.png"], "the screenshot is on the shelf")
        self.app.opaque(wait_for(self.app.window, "the shelf comes with it"))
        self.settle()
        self.done("A screenshot saved on the Desktop comes by itself", "screenshot")

    def settle(self):
        """Waits until two pictures of the screen are equal, so that all fades have ended."""
        looks = []

        def still():
            root = self.desktop.windows.root
            looks.append(root.get_image(0, 0, self.desktop.width, self.desktop.height - 40, 2, 0xFFFFFFFF).data)
            return len(looks) > 4 and looks[-1] == looks[-5]

        wait_for(still, "the screen comes to rest")


def main():
    demo = Demo(pathlib.Path(sys.argv[1]).resolve())
    try:
        demo.play()
    except Exception as fault:
        demo.fail(fault)
        sys.exit(1)
    finally:
        demo.desktop.close()


if __name__ == "__main__":
    main()
