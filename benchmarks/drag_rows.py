# SPDX-License-Identifier: MIT
"""Measures drags in other programs, compared with a bare xcb client that reads what they carry and maps an empty
window."""
import os
import pathlib
import re
import statistics
import subprocess
import time

from Xlib import display as xdisplay
from Xlib.ext import res

from support.desktop import Desktop
from support.parklet import Parklet

DRAGS = 100
MANY = 1000
WARM_UP = 50
SETTLE = 3.0  # seconds; a started program is idle after them
SHELF = (1160, 318, 116, 164)  # the empty shelf on the screen of a desktop
WATCHED = (1218, 400)  # its middle
MOVES = 1000  # motions of the pointer during a drag of a text
HIDES = 10  # after so many drags, the benchmark waits until the shelf is hidden


class Source:
    """Moves the pointer, and owns the window from which it drags."""

    def __init__(self, desktop, folder):
        self.process = subprocess.Popen([folder / "drag-source", *map(str, WATCHED)], env=desktop.environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def do(self, command):
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()
        answer = int(self.process.stdout.readline())
        if answer < 0:
            raise AssertionError(f"the screen did not change as it should: {command}")
        return answer

    def close(self):
        self.process.stdin.close()
        self.process.wait()


def main_thread_time(pid):
    """The processor time of the main thread, in nanoseconds."""
    return int(pathlib.Path(f"/proc/{pid}/task/{pid}/schedstat").read_text().split()[0])


def resources(display, pid):
    """The number of resources that the X server has for a program, over all its connections."""
    total = 0
    for client in display.res_query_client_ids([{"client": 0, "mask": res.LocalClientPIDMask}]).ids:
        if client.value and client.value[0] == pid:
            total += sum(each.count for each in display.res_query_client_resources(client.spec.client).types)
    return total


def own_memory(pid):
    """The private memory of a process, in kB. Other programs that start and end do not change it."""
    return int(re.search(r"^Pss_Anon:\s+(\d+)", pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(), re.M)[1])


def latencies(source):
    """For each drag, the milliseconds until something is painted."""
    found = []
    for _ in range(DRAGS):
        found.append(source.do("drag") / 1000)
        source.do("end")
        source.do("gone")
        time.sleep(0.05)
    return found


def latency_rows(parklet, folder):
    # Without a compositor a panel is opaque from the beginning, so a pixel shows when it is painted.
    desktop = Desktop(compositor=False)
    try:
        source = Source(desktop, folder)
        bare = {}
        for kind in ("managed", "override"):
            floor = desktop.start("drag-floor", folder / "drag-floor", kind, *map(str, SHELF))
            time.sleep(SETTLE)
            bare[kind] = latencies(source)
            desktop.processes.end(floor)
        app = Parklet(desktop).start()
        time.sleep(SETTLE)
        shelf = latencies(source)
        assert app.runs()
        source.close()
    finally:
        desktop.close()
    for name, pick in (("median", statistics.median), ("worst", max)):
        value, plain, override = (pick(times) for times in (shelf, bare["managed"], bare["override"]))
        yield f"drag begins to shelf painted, {name} of {DRAGS}", value, "ms", plain, value / plain, "2 x"
        yield f"  beside a window that no manager frames, {name}", value, "ms", override, value / override, ""


def text_rows(parklet, folder):
    desktop = Desktop()
    try:
        app = Parklet(desktop).start()
        source = Source(desktop, folder)
        time.sleep(SETTLE)
        before = main_thread_time(app.process.pid)
        source.do(f"text {MOVES}")
        spent = main_thread_time(app.process.pid) - before
        source.close()
    finally:
        desktop.close()
    yield "drag of a text, each movement: main thread", spent / MOVES / 1e6, "ms", None, None, "0.1 ms"


def growth_rows(parklet, folder):
    desktop = Desktop(compositor=False)
    try:
        app = Parklet(desktop).start()
        pid = app.process.pid
        source = Source(desktop, folder)
        display = xdisplay.Display(desktop.environment["DISPLAY"])
        display.res_query_version()

        def drag(count):
            for number in range(1, count + 1):
                source.do("drag")
                source.do("end")
                if number % HIDES == 0:
                    source.do("gone")
            time.sleep(SETTLE)
            return own_memory(pid), len(os.listdir(f"/proc/{pid}/fd")), resources(display, pid)

        before = drag(WARM_UP)
        after = drag(MANY)
        display.close()
        source.close()
    finally:
        desktop.close()
    for name, unit, old, new in zip(("memory", "open files", "X resources"), ("kB", "", ""), before, after):
        yield f"{MANY} drags in a row: growth of {name}", new - old, unit, None, None, "0"


def rows(build):
    parklet, folder = build / "parklet", build / "benchmarks/drags"
    yield from latency_rows(parklet, folder)
    yield from text_rows(parklet, folder)
    yield from growth_rows(parklet, folder)
