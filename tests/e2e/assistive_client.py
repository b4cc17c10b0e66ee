#!/usr/bin/env python3
"""An assistive client on the accessibility bus: finds the program's controls by what is read out of them, goes
online, reads each value, changes the tab and leaves, as somebody does who doesn't see the screen.

usage: assistive_client.py BIN_DIR, within an X display and a session bus of its own"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

DEADLINE_S = 30


def wait_for(what, probe):
    end = time.monotonic() + DEADLINE_S
    while time.monotonic() < end:
        try:
            found = probe()
        except gi.repository.GLib.GError:
            found = None  # an object went away while it was looked at
        if found:
            return found
        time.sleep(0.05)
    sys.exit(f"FAILED: {what} didn't come")


def descendants(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child
            yield from descendants(child)


def program():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child is not None and child.get_name() in ("ZTV Link", "ZtvLink"):
            return child
    return None


def find(role, name):
    root = program()
    for node in descendants(root) if root else ():
        if node.get_role() == role and node.get_name().replace("&", "") == name:
            return node
    return None


def press(role, name):
    node = wait_for(f"{name}", lambda: find(role, name))
    names = [Atspi.Action.get_action_name(node, k) for k in range(Atspi.Action.get_n_actions(node))]
    Atspi.Action.do_action(node, names.index("Press"))


def value_of(caption):
    node = find(Atspi.Role.TEXT, caption)
    if node is None:
        return None
    return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))


def status():
    root = program()
    for node in descendants(root) if root else ():
        if node.get_name().startswith("Communication Status:"):
            return node.get_name()
    return ""


def visit(bin_dir, line):
    environment = dict(
        os.environ,
        QT_QPA_PLATFORM="xcb",
        QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
        XDG_CONFIG_HOME=tempfile.mkdtemp(dir=line.parent),
        XDG_DATA_HOME=tempfile.mkdtemp(dir=line.parent),
        ZTVLINK_PORT_1=str(line),
    )
    ztv_link = subprocess.Popen([bin_dir / "ZtvLink"], env=environment)
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
