"""Operates the program through the accessibility bus, as an assistive client does: finds controls by their accessible
names, presses them, reads their values."""

import os
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402, F401

DEADLINE_S = 30


def wait_for(what, probe):
    end = time.monotonic() + DEADLINE_S
    while time.monotonic() < end:
        try:
            found = probe()
        except gi.repository.GLib.GError:
            found = None  # an object disappeared during the search
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


def environment(**more):
    """The environment of a program that is to appear on the bus."""
    return dict(os.environ, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", **more)


def started(bin_dir, line):
    """The program, with settings of its own and the line as port 1."""
    return subprocess.Popen(
        [bin_dir / "ZtvLink"],
        env=environment(
            XDG_CONFIG_HOME=tempfile.mkdtemp(dir=line.parent),
            XDG_DATA_HOME=tempfile.mkdtemp(dir=line.parent),
            ZTVLINK_PORT_1=str(line),
        ),
    )
