#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Uses one Parklet for hours: drags of other programs, and drops of pictures on its shelf. Prints what it holds of memory,
open files and X resources meanwhile, a line each: soak.py BUILD_FOLDER [DRAGS [DROPS]]

Fails when it holds more at the end than after the first tenth: a file or resource more, or MEMORY more.
"""
import os
import pathlib
import select
import sys
import time

DRAGS = 2000
DROPS = 1000
PARTS = 10
HIDES = 10  # among so many drags one is waited for until the shelf has gone
FILLS = 25  # drops until the shelf is cleared
IDLE = 15.0  # seconds after which no helper is left
MEMORY = 2048  # kB that the allocator may keep in other places than before
PATIENCE = 60.0  # seconds


class DropSource:
    """Another program that drops addresses on a window, without a hand."""

    def __init__(self, name):
        self.display = xdisplay.Display(name)
        self.window = self.display.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.selection = self.atom("XdndSelection")
        self.type = self.atom("text/uri-list")

    def atom(self, name):
        return self.display.intern_atom(name)

    def send(self, target, name, *values):
        data = (32, [self.window.id, *values, *[0] * (4 - len(values))])
        message = event.ClientMessage(window=target, client_type=self.atom(name), data=data)
        target.send_event(message)
        self.display.flush()

    def drop(self, target, x, y, listing):
        """Drops that list of addresses, and answers whether it was taken."""
        self.window.set_selection_owner(self.selection, X.CurrentTime)
        self.send(target, "XdndEnter", 5 << 24, self.type)
        self.send(target, "XdndPosition", 0, x << 16 | y, X.CurrentTime, self.atom("XdndActionCopy"))
        if not self.wait_for("XdndStatus", listing) & 1:
            self.send(target, "XdndLeave")
            return False
        self.send(target, "XdndDrop", 0, X.CurrentTime)
        return bool(self.wait_for("XdndFinished", listing) & 1)

    def wait_for(self, name, listing):
        """The first flags that such a message brings; the list is given to who asks for it."""
        wanted = self.atom(name)
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            while self.display.pending_events():
                each = self.display.next_event()
                if each.type == X.SelectionRequest:
                    self.answer(each, listing)
                elif each.type == X.ClientMessage and each.client_type == wanted:
                    return each.data[1][1]
            select.select([self.display], [], [], 0.1)
        raise AssertionError(f"no {name} has come")

    def answer(self, request, listing):
        if request.target == self.type:
            request.requestor.change_property(request.property, self.type, 8, listing)
        notice = event.SelectionNotify(time=request.time, requestor=request.requestor, selection=request.selection,
                                       target=request.target,
                                       property=request.property if request.target == self.type else X.NONE)
        request.requestor.send_event(notice)
        self.display.flush()

    def close(self):
        self.display.close()


class Soak:
    def __init__(self, desktop, app):
        self.desktop, self.app = desktop, app
        self.display = xdisplay.Display(desktop.environment["DISPLAY"])
        self.display.res_query_version()

    def held(self):
        pid = self.app.process.pid
        return (drag_rows.own_memory(pid), len(os.listdir(f"/proc/{pid}/fd")), drag_rows.resources(self.display, pid))

    def run(self, name, count, part):
        """Does it in parts, and answers whether the program holds as much after the last as after the first."""
        before = None
        for number in range(PARTS):
            part(count // PARTS * number, count // PARTS)
            time.sleep(IDLE)
            held = self.held()
            before = before or held
            print(f"{count // PARTS * (number + 1)} {name}: {held[0]:,} kB, {held[1]} files, {held[2]} X resources",
                  flush=True)
        return held[0] <= before[0] + MEMORY and held[1] <= before[1] and held[2] <= before[2]


def soak_drags(soak, folder, count):
    source = drag_rows.Source(soak.desktop, folder)

    def part(_first, each):
        for number in range(each):
            source.do("drag")
            source.do("end")
            if number % HIDES == 0:
                source.do("gone")
        source.do("gone")

    flat = soak.run("drags", count, part)
    source.close()
    return flat


def soak_drops(soak, count):
    desktop, app = soak.desktop, soak.app
    things = desktop.home / "things"
    things.mkdir()
    desktop.run("convert", "-size", "800x600", "plasma:orange-teal", things / "first.jpg")
    picture = (things / "first.jpg").read_bytes()
    source = DropSource(desktop.environment["DISPLAY"])

    def part(first, each):
        for number in range(first, first + each):
            path = things / f"{number:04}.jpg"
            path.write_bytes(picture + number.to_bytes(4, "big"))
            if app.hidden():
                app.show()
            window = app.window()
            x, y = app.center()
            assert source.drop(window, x, y, uri_of(path).encode() + b"\r\n"), path.name
            if (number + 1) % FILLS == 0 or number + 1 == first + each:
                wait_for(lambda: app.tiles(), "the shelf has tiles")
                app.click("Clear all")
                wait_for(lambda: not app.tiles(), "the shelf is cleared")
                wait_for(app.hidden, "the empty shelf goes")

    flat = soak.run("drops of pictures", count, part)
    source.close()
    return flat


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    drags, drops = (int(number) for number in (sys.argv[2:] + [DRAGS, DROPS][len(sys.argv) - 2:]))
    desktop = Desktop(compositor=False)
    try:
        app = Parklet(desktop, {"skipClearAllConfirmation": True}).start()
        soak = Soak(desktop, app)
        flat = [soak_drags(soak, build / "benchmarks/drags", drags), soak_drops(soak, drops)]
    finally:
        desktop.close()
    sys.exit(0 if all(flat) else "Parklet holds more than at the beginning.")


if __name__ == "__main__":
    os.environ["PARKLET_PROGRAM"] = str(pathlib.Path(sys.argv[1]).resolve() / "parklet")
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/desktop"))
    import drag_rows
    from Xlib import X
    from Xlib import display as xdisplay
    from Xlib.protocol import event
    from support.desktop import Desktop
    from support.parklet import Parklet, uri_of
    from support.waiting import wait_for
    main()
