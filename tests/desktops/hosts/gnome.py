"""GNOME with the AppIndicator extension, nested. GNOME Shell hands its environment to a session
manager that is not here, so its Wayland socket is given a name, and its X display is read from what
it prints."""

import os
import re
import subprocess
import time

from session import PALE, Host, setColorScheme, waitFor

EXTENSION = "ubuntu-appindicators@ubuntu.com"


class Desktop(Host):
    name = "gnome"
    title = "GNOME 43, AppIndicator extension"
    packages = ["gnome-shell", "gnome-settings-daemon", "gnome-shell-extension-appindicator",
                "xdg-desktop-portal", "xdg-desktop-portal-gnome", "dconf-gsettings-backend", "xwayland",
                "qt6-wayland", "xterm"]
    currentDesktop = "GNOME"
    isWayland = True
    thickness = 32
    items = (0.6, 1.0)
    clicks = 2
    limits = {"single": "the extension shows an item's menu for a click, and calls Activate for a"
                        " double one only (its indicatorStatusIcon.js)"}

    def startSession(self):
        for schema, key, value in (
                ("org.gnome.shell", "enabled-extensions", f"['{EXTENSION}']"),
                ("org.gnome.shell", "welcome-dialog-last-shown-version", "'99'"),
                ("org.gnome.desktop.interface", "enable-animations", "false"),
                ("org.gnome.desktop.background", "picture-options", "'none'"),
                ("org.gnome.desktop.background", "primary-color", f"'{PALE}'"),
                ("org.gnome.desktop.screensaver", "lock-enabled", "false")):
            subprocess.run(["gsettings", "set", schema, key, value], check=False)
        width, height = self.screen.width, self.screen.height
        self.run("shell", "gnome-shell", "--nested", "--wayland", "--wayland-display",
                 "wayland-gnome", MUTTER_DEBUG_DUMMY_MODE_SPECS=f"{width}x{height}",
                 MUTTER_DEBUG_DUMMY_MONITOR_SCALES=str(self.scale), LIBGL_ALWAYS_SOFTWARE="1",
                 XDG_SESSION_TYPE="wayland")

        def display():
            log = (self.runtime / "session.log").read_text(errors="replace")
            found = re.search(r"public X11 display (:\d+)", log)
            return found and (self.runtime / "wayland-gnome").exists() and found.group(1)
        os.environ.update(DISPLAY=waitFor(display, "GNOME Shell", 90),
                          WAYLAND_DISPLAY="wayland-gnome", XDG_SESSION_TYPE="wayland")
        for authority in self.runtime.glob(".mutter-Xwaylandauth*"):
            os.environ["XAUTHORITY"] = str(authority)
        self.tellBus()
        # Tells the scale to programs that come through XWayland.
        self.run("settings", "/usr/libexec/gsd-xsettings", GDK_BACKEND="x11")

    def waitForBar(self):
        """GNOME begins with its overview, and warns of sessions of root's in a banner."""
        super().waitForBar()
        colour = [int(PALE[first:first + 2], 16) for first in (1, 3, 5)]

        def isBare():
            self.screen.key("Escape")
            time.sleep(2)
            seen = self.screen.take()
            x, y = self.desk()    # the pointer is there
            below = 3 * self.thickness * self.scale
            return all((abs(seen[row, column, 2::-1].astype(int) - colour) < 8).all()
                       for row, column in ((y + 60, x + 60), (below, self.screen.width // 2)))
        waitFor(isBare, "the bare desktop", 60)
        return self.screen.takeStill(1.5, 40)

    def stopBar(self):
        subprocess.run(["gnome-extensions", "disable", EXTENSION], check=True)

    def startBar(self):
        subprocess.run(["gnome-extensions", "enable", EXTENSION], check=False)

    def setDark(self, isDark):
        setColorScheme(isDark)
