#!/usr/bin/env python3
"""Listens to the program through the accessibility bus, as a screen reader does, while the line to the sensor fails and
recovers: each message of the strip must be spoken once, and none while all is well.

usage: strip_listener.py BIN_DIR, within an X display and a session bus of its own"""

import pathlib
import subprocess
import sys
import tempfile

from assistive import DEADLINE_S, Atspi, GLib, find, press, program, started, status, wait_for

spoken = []


def hear(event):
    """Keeps what a screen reader speaks: an alert that comes to show."""
    if event.detail1 and event.source.get_role() == Atspi.Role.ALERT:
        spoken.append(event.source.get_name())


def heard(beginning):
    """Waits for the next message, which must be this one."""

    def probe():
        while GLib.MainContext.default().iteration(False):
            pass
        return spoken

    wait_for(f"the message {beginning!r}", probe)
    message = spoken.pop(0)
    assert message.startswith(beginning), f"heard {message!r} instead of {beginning!r}"
    print("heard:", message)


def strip():
    root = program()
    return root and next((node for node in alerts(root)), None)


def alerts(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            if child.get_role() == Atspi.Role.ALERT and child.get_state_set().contains(Atspi.StateType.SHOWING):
                yield child
            yield from alerts(child)


def silent():
    """Waits until the strip is gone."""
    wait_for("the end of the message", lambda: program() is not None and strip() is None)
    while GLib.MainContext.default().iteration(False):
        pass
    assert not spoken, spoken


def listen(bin_dir, line, tell):
    ztv_link = started(bin_dir, line)
    try:
        wait_for("the window", lambda: find(Atspi.Role.PUSH_BUTTON, "Read") or find(Atspi.Role.PUSH_BUTTON, "Online"))
        assert strip().get_name().startswith("Not connected. The values are the factory's"), strip().get_name()
        spoken.clear()
        press(Atspi.Role.PUSH_BUTTON, "Online")
        press(Atspi.Role.PUSH_BUTTON, "Read")
        wait_for("the link", lambda: status() == "Communication Status:  Online")
        silent()
        for fault, message, end in (
            ("set 38 0", "No echo.", "set 38 1"),
            ("mute on", "No answer for 2 s. Address 1 on port 1 (", "mute off"),
            ("corrupt 1", "Only damaged answers for 2 s.", "corrupt 0"),
            ("addressing 0", "Another sensor answers.", "addressing 1"),
            ("unplug", "The serial port is gone.", "plug"),
        ):
            tell(fault)
            heard(message)
            tell(end)
            silent()
        tell("set 38 0")  # one message takes the other's place
        heard("No echo.")
        tell("mute on")
        heard("No answer for 2 s.")
        tell("mute off")
        heard("No echo.")
        press(Atspi.Role.PUSH_BUTTON, "Exit")
        assert ztv_link.wait(DEADLINE_S) == 0
    finally:
        ztv_link.kill()


def main():
    bin_dir = pathlib.Path(sys.argv[1])
    listener = Atspi.EventListener.new(hear)
    listener.register("object:state-changed:showing")
    with tempfile.TemporaryDirectory() as folder:
        line = pathlib.Path(folder) / "line"
        sensor = subprocess.Popen([bin_dir / "ztv-sim", "--link", line], stdin=subprocess.PIPE,
                                  stdout=subprocess.DEVNULL, text=True)

        def tell(command):
            sensor.stdin.write(command + "\n")
            sensor.stdin.flush()

        try:
            wait_for("the sensor", line.exists)
            listen(bin_dir, line, tell)
        finally:
            sensor.terminate()
            sensor.wait()
    print("1 passed, 0 failed")


main()
