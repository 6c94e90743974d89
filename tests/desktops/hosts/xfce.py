"""Xfce."""

import os
import subprocess

from hosts.x11 import X11


class Desktop(X11):
    name = "xfce"
    title = "Xfce 4.18"
    packages = ["xfce4-panel", "xfwm4", "xfdesktop4", "xfce4-settings", "gnome-themes-extra",
                "x11-xserver-utils", "xterm"]
    currentDesktop = "XFCE"
    manager = ["xfwm4"]
    thickness = 26
    items = (0.885, 0.913)    # between pager and clock

    def startSession(self):
        os.environ["XFCE_PANEL_MIGRATE_DEFAULT"] = "1"
        super().startSession()
        self.run("settings", "xfsettingsd", "--no-daemon")
        self.run("desktop", "xfdesktop")
        self.set("/Xft/DPI", "int", 96 * self.scale)

    def set(self, name, kind, value):
        subprocess.run(["xfconf-query", "-c", "xsettings", "-p", name, "-n", "-t", kind, "-s",
                        str(value)], check=False, stdout=self.log, stderr=self.log)

    def setDark(self, isDark):
        self.set("/Net/ThemeName", "string", "Adwaita-dark" if isDark else "Adwaita")

    def startBar(self):
        self.run("bar", "xfce4-panel", "--disable-wm-check")
