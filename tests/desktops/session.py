"""A session to try the program in: what every host needs, and what each says of itself.

A host is a short description: a subclass of Host in hosts/. Its session runs on the outer X screen
that scripts/virtual-desktop gives, and gets its pointer and keys from there, so that the host's own
compositor or window manager handles them. One thread only.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import time

from desktop import Missed, check, waitFor
from picture import Box, Screen, part

PALE = "#5a6b7b"    # what every desktop is painted with
BAR_SECONDS = 90    # for a bar to come up on a busy machine


class Host:
    """One desktop. Sizes are logical pixels; `bar` is the edge of the screen that the bar is at."""

    name = ""
    title = ""
    packages = []           # Debian packages, beside those of the virtual desktop
    currentDesktop = ""     # XDG_CURRENT_DESKTOP
    isWayland = False
    bar = "top"
    thickness = 24          # of the bar
    items = (0.5, 1.0)      # the part of the bar's length in which items may come up
    isExact = False         # whether the panel must be over the item wherever that is
    covers = 0.8            # the part of the bar's place that it covers, at least
    window = ["xterm", "-geometry", "40x8+60+500"]    # another program's window
    size = "1280x800"       # of all its screens together, logical pixels
    others = 0              # screens beside the first, of another scale
    scaling = True          # whether the session can be had at scale 2
    clicks = 1              # that it takes to activate an item
    menuEntry = 20          # from the top of the item's menu to its first entry
    limits = {}             # checks that the host itself does not allow, with the reason
    faults = {}             # checks that our program still fails there, with what is known of it

    def __init__(self, scale):
        self.scale = scale
        self.runtime = pathlib.Path(os.environ["XDG_RUNTIME_DIR"])
        self.home = pathlib.Path(os.environ["HOME"])
        self.config = pathlib.Path(os.environ["XDG_CONFIG_HOME"])
        self.log = open(self.runtime / "session.log", "wb")
        self.screen = Screen(os.environ["DISPLAY"])
        self.running = {}
        for name in ("QT_QPA_PLATFORM", "QT_SCALE_FACTOR"):
            os.environ.pop(name, None)
        os.environ["XDG_CURRENT_DESKTOP"] = self.currentDesktop
        os.environ["XDG_SESSION_DESKTOP"] = self.currentDesktop
        os.environ["XDG_SESSION_TYPE"] = "x11"
        # Some shells give up without a system bus; one on which nobody answers will do.
        address = f"unix:path={self.runtime}/system-bus"
        self.run("system bus", "dbus-daemon", "--session", "--nofork", "--address=" + address)
        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = address

    # What a host says ----------------------------------------------------------------------------

    def startSession(self):
        """Starts everything but the bar."""

    def startBar(self):
        """Starts the bar, where it is a program of its own."""

    def stopBar(self):
        self.stop("bar")

    def setDark(self, isDark):
        """Asks the desktop for dark or light, as its settings would."""
        setColorScheme(isDark)

    # Tools for it --------------------------------------------------------------------------------

    def run(self, what, *command, **environment):
        """Starts a part of the session, in a process group of its own, and remembers it by name."""
        self.running[what] = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log,
            start_new_session=True, env=os.environ | environment)
        return self.running[what]

    def stop(self, what):
        process = self.running.pop(what, None)
        if process and process.poll() is None:
            os.killpg(process.pid, signal.SIGTERM)
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()

    def write(self, path, text):
        path = self.config / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def enterWayland(self, told, *names):
        """Lets what is started from now on use the compositor: takes what that gives its children,
        from the file in which one of them has written it down."""
        names = ("DISPLAY", "WAYLAND_DISPLAY", *names)

        def given():
            lines = told.read_text().splitlines() if told.exists() else []
            values = dict(line.partition("=")[::2] for line in lines)
            return values if all(name in values for name in names) else None
        values = waitFor(given, "the compositor's environment", 60)
        os.environ.update({name: values[name] for name in names}, XDG_SESSION_TYPE="wayland")
        # The socket may lie in a runtime folder of the compositor's own.
        folder = pathlib.Path(values.get("XDG_RUNTIME_DIR", self.runtime))
        os.environ["WAYLAND_DISPLAY"] = str(folder / values["WAYLAND_DISPLAY"])
        self.tellBus()

    def tellBus(self):
        """What the bus starts (portals) must know of the session that came after the bus."""
        names = ("DISPLAY", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE",
                 "XDG_RUNTIME_DIR")
        subprocess.run(["dbus-update-activation-environment",
                        *[n for n in names if n in os.environ]], check=False,
                       stdout=self.log, stderr=self.log)

    def paintRoot(self):
        subprocess.run(["xsetroot", "-solid", PALE], check=False)

    def waitForBar(self):
        """Until there is something at the bar's place that the desktop is not, and nothing moves."""
        def isThere():
            bar = self.running.get("bar")
            check(not bar or bar.poll() is None, "the bar lives")
            picture = self.screen.take()[..., :3].astype(int)
            x, y = self.desk()
            bare = picture[y, x]
            return (abs(part(picture, self.barBox()) - bare).max(axis=2) > 12).mean() > self.covers
        try:
            waitFor(isThere, "the bar", BAR_SECONDS, 0.5)
        except Missed:
            self.screen.save(self.runtime / "no-bar.png")
            raise
        return self.screen.takeStill(2.5, 40)

    # Where things are, in pixels -----------------------------------------------------------------

    def area(self):
        """The desktop's screen, or that of several which is looked at."""
        return Box(0, 0, self.screen.width, self.screen.height)

    def barBox(self):
        area, thickness = self.area(), round(self.thickness * self.scale)
        y = area.y if self.bar == "top" else area.bottom - thickness
        return Box(area.x, y, area.width, thickness)

    def itemStrip(self):
        """The part of the bar in which the item comes up."""
        box = self.barBox()
        first, end = (int(part * box.width) for part in self.items)
        return Box(box.x + first, box.y, end - first, box.height)

    def below(self):
        """The screen without the bar."""
        area, bar = self.area(), self.barBox()
        return Box(area.x, bar.bottom if self.bar == "top" else area.y, area.width,
                   area.height - bar.height)

    def desk(self):
        """A place that is bare desktop, and that no panel covers."""
        area = self.area()
        return area.x + int(0.32 * area.width), area.y + int(0.45 * area.height)


def setColorScheme(isDark):
    subprocess.run(["gsettings", "set", "org.gnome.desktop.interface", "color-scheme",
                    "prefer-dark" if isDark else "default"], check=True)


def hasProgram(name):
    return shutil.which(name) is not None


__all__ = ["Box", "Host", "Missed", "check", "hasProgram", "setColorScheme", "time", "waitFor", "PALE"]
