"""Drives the real application on a virtual desktop as a person would, without eyes.

The panel is found, read and pressed through the accessibility bus, the menu-bar item through the
session bus or the pointer. For scripts started under scripts/virtual-desktop with the system's own
Python (/usr/bin/python3), which has the modules used here. One thread only.
"""

import os
import pathlib
import signal
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
PATIENCE = 15    # seconds until something that should happen counts as not happening
START_PATIENCE = 240    # a cold start on a slow machine; an application that ends is noticed at once
POLL = 0.02
ROLES = {"button": "push button"}    # the name that later accessibility libraries give -> the earlier one


class Missed(AssertionError):
    """Something that should have happened did not."""


def waitFor(question, what, seconds=PATIENCE, pause=POLL):
    """Asks until the answer is true, and returns it; Missed after that many seconds."""
    deadline = time.monotonic() + seconds
    while True:
        answer = question()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise Missed(f"not within {seconds} s: {what}")
        time.sleep(pause)


def check(condition, claim):
    if not condition:
        raise Missed(claim)


# Processes ---------------------------------------------------------------------------------------

def processes():
    """Every process: pid -> (parent, state, command line)."""
    found = {}
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            stat = pathlib.Path("/proc", entry, "stat").read_text()
            words = pathlib.Path("/proc", entry, "cmdline").read_bytes().split(b"\0")[:-1]
        except OSError:
            continue    # ended while we looked
        state, parent = stat.rpartition(")")[2].split()[:2]
        found[int(entry)] = (int(parent), state, [os.fsdecode(word) for word in words])
    return found


def below(pid):
    """The command lines of all live descendants of a process: pid -> words."""
    everything, found, parents = processes(), {}, {pid}
    while parents:
        parents = {p for p, (parent, state, _) in everything.items() if parent in parents}
        found |= {p: everything[p][2] for p in parents if everything[p][1] != "Z"}
    return found


def isAlive(pid):
    return pid in processes() and processes()[pid][1] != "Z"


def descriptors(pid):
    """What each open descriptor of a process refers to."""
    folder, found = f"/proc/{pid}/fd", {}
    for entry in os.listdir(folder):
        try:
            found[int(entry)] = os.readlink(f"{folder}/{entry}")
        except OSError:
            pass
    return found


def zombies(pid):
    return [p for p, (parent, state, _) in processes().items() if parent == pid and state == "Z"]


class Application:
    """The application as a child process, its console kept in a file. Ends with the with-block."""

    def __init__(self, bundle, console, errors, **environment):
        self.console = pathlib.Path(console)
        self.errors = pathlib.Path(errors)
        with open(self.console, "wb") as out, open(self.errors, "wb") as err:
            self.process = subprocess.Popen(
                [f"{bundle}/Contents/MacOS/bonkora"], stdin=subprocess.DEVNULL, stdout=out,
                stderr=err, env=os.environ | environment)
        self.pid = self.process.pid
        self.acted = 0.0    # the moment of the last press or change, on the monotonic clock

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(3)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def lines(self):
        """The console's complete lines so far."""
        return self.console.read_text(errors="replace").split("\n")[:-1]

    def complaints(self):
        """What it wrote on standard error; not Qt's remarks on elements that have just gone."""
        lines = self.errors.read_text(errors="replace").splitlines()
        remarks = ("AtSpiAdaptor", "Could not find accessible on path")    # the latter from Qt 6.8 on
        return [line for line in lines if not any(remark in line for remark in remarks)]

    def waitForLine(self, start, seconds=PATIENCE, after=0):
        """The number of the first console line from `after` on that begins so."""
        def found():
            numbers = [n for n, line in enumerate(self.lines()) if line.startswith(start)]
            return next((n + 1 for n in numbers if n >= after), 0)
        return waitFor(found, f"a console line {start!r}", seconds) - 1

    def end(self, number=signal.SIGTERM, seconds=PATIENCE):
        """Asks the application to end and returns its status."""
        self.process.send_signal(number)
        return self.process.wait(seconds)

    # The menu-bar item ---------------------------------------------------------------------------

    def click(self):
        """Clicks the menu-bar item: in the tray where it is embedded, else over the session bus."""
        def item():
            check(self.process.poll() is None, "the application lives until it has a menu-bar item")
            return self.trayWindow() or self.hasBusItem()
        window = waitFor(item, "a menu-bar item", START_PATIENCE)
        if window is True:
            Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
                self.busName(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate",
                GLib.Variant("(ii)", (1200, 10)), None, Gio.DBusCallFlags.NONE, 5000, None)
        else:
            xdotool("mousemove", "--window", window, "8", "8", "click", "1")

    def busName(self):
        return f"org.kde.StatusNotifierItem-{self.pid}-1"

    def hasBusItem(self):
        answer = Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
            GLib.Variant("(s)", (self.busName(),)), None, Gio.DBusCallFlags.NONE, 5000, None)
        return answer.unpack()[0]

    def trayWindow(self):
        """The X window of an embedded icon, or nothing."""
        for window in xdotool("search", "--pid", str(self.pid), check=False).split():
            shape = dict(line.split("=") for line in
                         xdotool("getwindowgeometry", "--shell", window, check=False).split())
            mapped = "IsViewable" in subprocess.run(["xwininfo", "-id", window], text=True,
                                                    capture_output=True).stdout
            if mapped and shape and int(shape["HEIGHT"]) <= 64:
                return window
        return None

    # The panel -----------------------------------------------------------------------------------

    def root(self):
        """The application on the accessibility bus, or nothing; what was known of it is forgotten."""
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for number in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(number)
            if child and child.get_process_id() == self.pid:
                child.clear_cache()
                return child
        return None

    def elements(self):
        """Everything that shows, in reading order, as (role, name, accessible)."""
        found = []

        def visit(node):
            for number in range(node.get_child_count()):
                child = node.get_child_at_index(number)
                if child and child.get_state_set().contains(Atspi.StateType.SHOWING):
                    role = child.get_role_name()
                    found.append((ROLES.get(role, role), child.get_name(), child))
                    visit(child)
        try:
            if root := self.root():
                visit(root)
        except GLib.Error:
            return []    # it changed while we looked
        return found

    def seek(self, role, name):
        """The element of that role whose name or text is or begins with `name`, or nothing."""
        named = [(n, a) for r, n, a in self.elements() if r == role]
        return next((a for n, a in named if n == name),
                    next((a for n, a in named if n.startswith(name)), None))

    def find(self, role, name, seconds=PATIENCE):
        return waitFor(lambda: self.seek(role, name), f"a {role} {name!r}", seconds)

    def waitUntilGone(self, role, name, seconds=PATIENCE):
        waitFor(lambda: not self.seek(role, name), f"no {role} {name!r} any more", seconds)

    def labels(self):
        """Every text that shows, in reading order."""
        return [name for role, name, _ in self.elements() if role == "label"]

    def openPanel(self):
        """Clicks, and again where a tray that was still arranging itself lost the click."""
        for _ in range(4):
            if not self.seek("push button", "Quit"):
                self.click()
            try:
                return self.find("push button", "Quit", PATIENCE / 4)
            except Missed:
                continue
        raise Missed("no panel after four clicks")

    def panelBox(self):
        """Of the open panel on the screen: x, y, width, height; nothing if it is not open."""
        for role, name, accessible in self.elements():
            if name == "Bonkora" and role != "label":
                box = accessible.get_extents(Atspi.CoordType.SCREEN)
                return box.x, box.y, box.width, box.height
        return None

    def press(self, role, name):
        """Does what the element's first action says: presses, toggles, selects."""
        element = self.find(role, name)
        self.acted = time.monotonic()
        check(element.do_action(0), f"{role} {name!r} can be pressed")

    def setValue(self, name, value):
        slider = self.find("slider", name)
        self.acted = time.monotonic()
        check(slider.set_current_value(value), f"slider {name!r} takes {value}")

    def value(self, name):
        return self.find("slider", name).get_current_value()

    def isChecked(self, role, name):
        return self.find(role, name).get_state_set().contains(Atspi.StateType.CHECKED)


def xdotool(*words, check=True):
    done = subprocess.run(["xdotool", *words], text=True, capture_output=True, check=False)
    if check and done.returncode != 0:
        raise Missed(f"xdotool {' '.join(words)}: {done.stderr.strip()}")
    return done.stdout


def centre(accessible):
    """The middle of an element on the screen, in pixels."""
    box = accessible.get_extents(Atspi.CoordType.SCREEN)
    return box.x + box.width // 2, box.y + box.height // 2


def screenshot(path):
    subprocess.run(["import", "-silent", "-window", "root", str(path)], check=True)


def setScreenSize(width, height):
    """Gives the screen another size, no larger than that with which it was started."""
    mode = f"{width}x{height}"
    if mode not in subprocess.check_output(["xrandr"], text=True):
        lines = [str(n) for n in (60, *[width] * 4, *[height] * 4)]
        subprocess.run(["xrandr", "--newmode", mode, *lines], check=True)
        subprocess.run(["xrandr", "--addmode", "screen", mode], check=True)
    subprocess.run(["xrandr", "--output", "screen", "--mode", mode], check=True)
