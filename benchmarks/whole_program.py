# SPDX-License-Identifier: MIT
"""Measures the whole program on a virtual desktop, compared with a bare Qt Widgets program with one tray icon."""
import pathlib
import re
import statistics
import time

from support.desktop import Desktop
from support.parklet import Parklet
from tray import Tray

STARTS = 20
IDLE = 30.0  # seconds
SETTLE = 3.0  # seconds; a started program is idle after them
ITEMS = 50
PICTURE = "2000x1500"


def wake_ups(pid):
    """How often the main thread has gone to sleep, which is how often it was woken."""
    status = pathlib.Path(f"/proc/{pid}/task/{pid}/status").read_text()
    return int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status, re.M)[1])


def pss(pid):
    """The proportional memory (PSS) of the process, in kB."""
    return int(re.search(r"^Pss:\s+(\d+)", pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text(), re.M)[1])


def start_rows(parklet, bare):
    """Measures from the start of the process until its event loop runs and the icon is requested: the median of
    interleaved starts."""
    desktop = Desktop(panel=None)
    try:
        app = Parklet(desktop)
        tray = Tray(desktop.environment["DISPLAY"])
        times = {bare: [], parklet: []}
        for _ in range(STARTS):
            for program in times:
                begin = time.monotonic()
                process = desktop.start(program.name, program)
                times[program].append(tray.wait_for_event_loop() - begin)
                process.kill()
                process.wait()
        tray.close()
        assert app.read_settings()
    finally:
        desktop.close()
    floor, value = (statistics.median(times[program]) * 1000 for program in (bare, parklet))
    yield "start to event loop", value, "ms", floor, value / floor, "1.5 x"


def idle_rows(parklet):
    desktop = Desktop()
    try:
        app = Parklet(desktop).start()
        # At the first motion, the server tells every Qt program which device moves the pointer.
        desktop.hand.move_to(200, 600)
        time.sleep(SETTLE)
        before = wake_ups(app.process.pid)
        time.sleep(IDLE)
        yield "idle 30 s, pointer still: wake-ups", wake_ups(app.process.pid) - before, "", None, None, "0"

        before = wake_ups(app.process.pid)
        end = time.monotonic() + IDLE
        while time.monotonic() < end:
            desktop.hand.move_to(200, 600)
            desktop.hand.move_to(900, 200)
        yield "idle 30 s, pointer moving: wake-ups", wake_ups(app.process.pid) - before, "", None, None, "0"
    finally:
        desktop.close()


def memory_rows(parklet, bare):
    desktop = Desktop()
    try:
        process = desktop.start("bare", bare)
        time.sleep(SETTLE)
        floor = pss(process.pid)
        desktop.processes.end(process)

        app = Parklet(desktop).start()
        app.show()
        time.sleep(SETTLE)
        empty = pss(app.process.pid)
        yield "memory, empty shelf", empty, "kB", floor, empty / floor, "1.5 x"

        pictures = [desktop.home / f"{number:02}.jpg" for number in range(ITEMS)]
        desktop.run("convert", "-size", PICTURE, "plasma:orange-teal", pictures[0])
        for number, picture in enumerate(pictures[1:], 1):
            # Each file is different, so that no cache knows it.
            picture.write_bytes(pictures[0].read_bytes() + bytes([number]))
        app.hold(*pictures)
        cache = desktop.home / ".cache/thumbnails"
        end = time.monotonic() + 120
        while len(list(cache.rglob("*.png"))) < ITEMS and time.monotonic() < end:
            time.sleep(0.2)
        time.sleep(SETTLE)
        yield "memory, each of 50 items", (pss(app.process.pid) - empty) / ITEMS, "kB", None, None, "150 kB"
    finally:
        desktop.close()


def rows(build):
    parklet, bare = build / "parklet", build / "benchmarks/bare/bare"
    yield from start_rows(parklet, bare)
    yield from idle_rows(parklet)
    yield from memory_rows(parklet, bare)
