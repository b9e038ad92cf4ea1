#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs every benchmark program of a build, measures the whole program, and prints one table: run.py BUILD_FOLDER

A benchmark program prints lines of name, value, unit, floor, ratio and bound, separated by tabs. A row without a floor
has an empty floor and ratio.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

TITLES = ("row", "value", "floor", "ratio", "bound")


def program_rows(program):
    """Runs a benchmark program with its own folders and without a display, and returns its rows."""
    with tempfile.TemporaryDirectory(prefix="parklet-bench.") as folder:
        environment = dict(os.environ, HOME=folder, QT_QPA_PLATFORM="offscreen", LC_ALL="C.UTF-8",
                           XDG_CACHE_HOME=f"{folder}/.cache", XDG_CONFIG_HOME=f"{folder}/.config",
                           XDG_DATA_HOME=f"{folder}/.local/share", DBUS_SESSION_BUS_ADDRESS="disabled:")
        printed = subprocess.run([program], env=environment, cwd=folder, check=True, text=True,
                                 stdout=subprocess.PIPE).stdout
    for line in printed.splitlines():
        fields = line.split("\t")
        if len(fields) == 6:
            name, value, unit, floor, ratio, bound = fields
            yield (name, float(value), unit, float(floor) if floor else None, float(ratio) if ratio else None, bound)


def shown(value, unit=""):
    if value is None:
        return ""
    digits = 0 if value == int(value) or abs(value) >= 100 else 2 if abs(value) < 10 else 1
    return f"{value:,.{digits}f} {unit}".strip()


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    os.environ["PARKLET_PROGRAM"] = str(build / "parklet")
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/desktop"))
    import drag_rows
    import whole_program

    table = [TITLES]
    sources = [program_rows(program) for program in sorted((build / "benchmarks/rows").glob("*"))
               if os.access(program, os.X_OK) and program.is_file()]
    for source in (*sources, drag_rows.rows(build), whole_program.rows(build)):
        for name, value, unit, floor, ratio, bound in source:
            print(f"  {name}", file=sys.stderr)
            table.append((name, shown(value, unit), shown(floor, unit), shown(ratio), bound))
    widths = [max(len(row[column]) for row in table) for column in range(len(TITLES))]
    for row in table:
        first, *others = (cell.ljust(width) if not column else cell.rjust(width)
                          for column, (cell, width) in enumerate(zip(row, widths)))
        print("  ".join((first, *others)).rstrip())


if __name__ == "__main__":
    main()
