#!/usr/bin/env python3
"""Uses the program through the accessibility bus, as a user who can't see the screen does: finds the controls by their
accessible names, goes online, reads each value, changes the tab and exits.

usage: assistive_client.py BIN_DIR, within an X display and a session bus of its own"""

import pathlib
import subprocess
import sys
import tempfile

from assistive import DEADLINE_S, Atspi, find, press, program, started, status, value_of, wait_for


def visit(bin_dir, line):
    ztv_link = started(bin_dir, line)
    try:
        wait_for("the program", program)
        press(Atspi.Role.PUSH_BUTTON, "Online")
        press(Atspi.Role.PUSH_BUTTON, "Read")
        wait_for("the link", lambda: status() == "Communication Status:  Online")

        seen = set()
        wait_for("a changing distance", lambda: seen.add(value_of("Actual Distance")) or len(seen - {None}) >= 3)
        expected = {
            "Far Voltage": "10.00V", "Near Voltage": "0.00V", "Min Range": '6.00"', "Near Distance": '12.00"',
            "Far Distance": '360.00"', "Max Range": '420.00"', "Manual Output": "0",
        }  # fmt: skip
        for caption, value in expected.items():
            assert value_of(caption) == value, f"{caption}: {value_of(caption)}"
        assert value_of("Output Voltage").endswith("V")
        print("distances read:", ", ".join(sorted(d for d in seen if d)))

        press(Atspi.Role.PAGE_TAB, "Distance")
        bar = wait_for("the bar", lambda: find(Atspi.Role.PROGRESS_BAR, "Actual Distance"))
        assert Atspi.Value.get_current_value(bar) >= 600
        press(Atspi.Role.PUSH_BUTTON, "Exit")
        assert ztv_link.wait(DEADLINE_S) == 0
    finally:
        ztv_link.kill()


def main():
    bin_dir = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        line = pathlib.Path(folder) / "line"
        sensor = subprocess.Popen([bin_dir / "ztv-sim", "--link", line], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL)
        try:
            wait_for("the sensor", line.exists)
            visit(bin_dir, line)
        finally:
            sensor.terminate()
            sensor.wait()
    print("1 passed, 0 failed")


main()
