"""Xfce."""

import pathlib
import subprocess

from hosts.x11 import X11
from session import waitFor

PANEL = pathlib.Path("/etc/xdg/xfce4/panel/default.xml")    # what a first start offers


class Desktop(X11):
    name = "xfce"
    title = "Xfce 4.18"
    packages = ["xfce4-panel", "xfwm4", "xfdesktop4", "xfce4-settings", "gnome-themes-extra",
                "x11-xserver-utils", "xterm"]
    currentDesktop = "XFCE"
    manager = ["xfwm4"]
    tellsScale = True
    thickness = 26

    def __init__(self, scale):
        super().__init__(scale)
        self.items = (0.885, 0.913) if scale == 1 else (0.898, 0.918)    # between pager and clock

    def startSession(self):
        settings = PANEL.read_text().replace('name="size" type="uint" value="26"',
                                             f'name="size" type="uint" value="{26 * self.scale}"')
        self.write("xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", settings)
        super().startSession()
        # Its window scaling would reach GTK's programs alone; the fonts' resolution reaches all.
        self.set("/Xft/DPI", "int", 96 * self.scale)
        self.run("settings", "xfsettingsd", "--no-daemon")

        def isTold():
            told = subprocess.run(["xrdb", "-query"], capture_output=True, text=True).stdout.split()
            return str(96 * self.scale) in told
        waitFor(isTold, "the fonts' resolution", 30, 0.2)
        self.run("desktop", "xfdesktop")

    def set(self, name, kind, value):
        subprocess.run(["xfconf-query", "-c", "xsettings", "-p", name, "-n", "-t", kind, "-s",
                        str(value)], check=False, stdout=self.log, stderr=self.log)

    def setDark(self, isDark):
        self.set("/Net/ThemeName", "string", "Adwaita-dark" if isDark else "Adwaita")

    def startBar(self):
        self.run("bar", "xfce4-panel", "--disable-wm-check")
