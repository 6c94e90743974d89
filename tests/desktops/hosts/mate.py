"""MATE."""

import subprocess

from hosts.x11 import X11


class Desktop(X11):
    name = "mate"
    title = "MATE 1.27"
    packages = ["mate-panel", "marco", "mate-settings-daemon", "gnome-themes-extra",
                "dconf-gsettings-backend", "x11-xserver-utils", "xterm"]
    currentDesktop = "MATE"
    manager = ["marco", "--no-composite"]
    thickness = 25
    items = (0.5, 1.0)

    def startSession(self):
        super().startSession()
        self.setDark(False)
        subprocess.run(["gsettings", "set", "org.mate.font-rendering", "dpi",
                        str(96.0 * self.scale)], check=True)
        self.run("settings", "mate-settings-daemon", "--no-daemon")

    def setDark(self, isDark):
        subprocess.run(["gsettings", "set", "org.mate.interface", "gtk-theme",
                        "Adwaita-dark" if isDark else "Adwaita"], check=True)

    def startBar(self):
        self.run("bar", "mate-panel", "--replace")
