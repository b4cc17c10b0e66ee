#!/usr/bin/env python3
"""Opens settings files by their type alone, on a desktop where the program is installed, and checks that
the program shows their values. It must leave nothing in the user's own folders.

usage: file_type_client.py PROGRAM_FOLDER, within an X display and a session bus of its own, and an empty HOME.
Prints the files of code that the running program has loaded, one a line."""

import os
import pathlib
import sqlite3
import subprocess
import sys

from assistive import Atspi, environment, press, program, value_of, wait_for

MIME_TYPE = "application/x-ztv-link-settings"
APPLICATION_ID = 0x5A545631
NEAR_DISTANCE = 28


def said_by(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def make_settings_file(path, presets, near_distance):
    with sqlite3.connect(presets) as database:
        values = [value for (value,) in database.execute("SELECT Value FROM Parameters ORDER BY rowid")]
    values[NEAR_DISTANCE] = near_distance
    with sqlite3.connect(path) as database:
        database.execute(f"PRAGMA application_id = {APPLICATION_ID}")
        database.execute("CREATE TABLE Settings (Tag INTEGER, Name TEXT, Value INTEGER)")
        database.executemany("INSERT INTO Settings VALUES (?, '', ?)", enumerate(values))
        database.execute("CREATE TABLE Properties (Notes TEXT, SWVersion TEXT, UserUnits TEXT)")
        database.execute("INSERT INTO Properties VALUES (' ', '', '')")


def open_by_type(opener, file, shown, program_folder):
    subprocess.run([*opener, file], check=True, env=environment())
    wait_for(f"{file} in the program", lambda: value_of("Near Distance") == shown)
    process = pathlib.Path("/proc", str(program().get_process_id()))
    assert (process / "exe").resolve() == program_folder / "ZtvLink", (process / "exe").resolve()
    assert (process / "cmdline").read_bytes().split(b"\0")[1] == os.fsencode(file)
    mapped = {line.split(maxsplit=5)[5] for line in (process / "maps").read_text().splitlines()
              if "x" in line.split()[1] and " /" in line}
    press(Atspi.Role.PUSH_BUTTON, "Exit")
    wait_for("the end of the program", lambda: not process.exists() or "Z" in (process / "stat").read_text())
    return mapped


def main():
    program_folder = pathlib.Path(sys.argv[1])
    home = pathlib.Path.home()
    os.environ["XDG_CURRENT_DESKTOP"] = "GNOME"  # without any, xdg-open knows no types but those of file(1)
    assert said_by("xdg-mime", "query", "default", MIME_TYPE) == "ztv-link.desktop"
    mapped = set()
    for opener, name, near_distance, shown in (
        (["gio", "open"], "it's line 4.ztv", 1500, '15.00"'),
        (["xdg-open"], "line5.ztv", 2000, '20.00"'),
        (["gio", "open"], "renamed", 2500, '25.00"'),
    ):
        file = home / name
        make_settings_file(file, program_folder / "Presets.fil", near_distance)
        assert said_by("xdg-mime", "query", "filetype", file) == MIME_TYPE
        mapped |= open_by_type(opener, file, shown, program_folder)
    traces = [path for path in (home / ".local").rglob("*ztv*")]
    assert not traces, traces
    print("\n".join(sorted(mapped)))


main()
